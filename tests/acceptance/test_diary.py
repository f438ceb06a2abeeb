"""Diary: what became of each job, also of those that were under way when the program was killed, and reprints."""

import datetime
import json
import time
import unittest

import fiscal_driver
from harness import ON_WINDOWS, Scenario, some_ticks, wait_for
from serial_line import SerialLine


class DiaryScenario(Scenario):
    def setUp(self):
        super().setUp()
        fiscal_driver.configure(self.desk, "CASIO/DITRON - 24", delay=0)
        self.diary = self.desk.main / "diario"
        self.devices('[bridge]\ndiary = "diario"\narchive = true\n')

    def devices(self, text):
        with open(self.desk.main / "devices.toml", "a", encoding="utf-8") as devices:
            devices.write(text)

    def run_once(self, *words):
        program = self.desk.launch(*self.desk.arguments(), *words)
        status = program.wait()
        return status, program.output + program.complaints

    def entries(self, *words):
        status, output = self.run_once("diario", "--json", *words)
        self.assertEqual(status, 0, output)
        return [json.loads(line) for line in output]

    def has_a_line(self):
        return any(file.stat().st_size for file in self.diary.glob("*.jsonl"))

    def under_way(self, device):
        """Whether the diary has noted that a job of the device has begun, and no line says that it ended."""
        note = self.diary / "ultimo.json"
        if not note.exists():
            return False
        last = json.loads(note.read_text("utf-8").splitlines()[-1])
        lines = "".join(file.read_text("utf-8") for file in self.diary.glob("*.jsonl"))
        return last["device"] == device and f'"{last["id"]}"' not in lines

    def kill_during(self, program, device):
        wait_for(lambda: self.under_way(device), f"a {device} job under way")
        time.sleep(0.1)
        self.assertTrue(self.under_way(device), "it is under way for long enough")
        program.kill()


class Diary(DiaryScenario):
    def test_without_the_table_there_is_no_diary(self):
        (self.desk.main / "devices.toml").unlink()
        self.desk.start()
        self.desk.drop("uno.txt")
        wait_for(lambda: not self.desk.jobs() and not self.desk.jobs("IN"), "the job done")
        self.assertFalse(self.diary.exists())
        self.assertEqual(self.run_once("diario")[0], 1)
        self.assertEqual(self.run_once("ristampa", "261121-1")[0], 1)

    def test_a_delivered_job_is_a_line_of_today_and_its_file_is_kept(self):
        before = datetime.date.today()
        self.desk.start()
        self.desk.drop("uno.txt", "Totale 3 €\r\n")
        wait_for(self.has_a_line, "a line")
        (entry,) = self.entries()
        self.assertEqual((entry["device"], entry["job"], entry["outcome"]), ("fiscal", "uno.txt", "delivered"))
        self.assertEqual(entry["bytes"], len("Totale 3 €\r\n"))
        self.assertIn(entry["time"][:10], (before.isoformat(), datetime.date.today().isoformat()))
        copy = self.diary / entry["copy"].replace("\\", "/")
        self.assertEqual(copy.read_bytes().decode("cp1252"), "Totale 3 €\r\n")

    def test_the_list_names_the_problem_in_italian(self):
        self.desk.settings(MF_Prot="Nessuno")
        self.desk.start()
        self.desk.drop("uno.txt")
        wait_for(self.has_a_line, "a line")
        status, output = self.run_once("diario", "--problemi")
        self.assertEqual(status, 0)
        self.assertEqual(len(output), 1)
        for part in ("fiscale", "non riuscito", "uno.txt"):
            self.assertIn(part, output[0])
        self.assertEqual(self.run_once("diario", "--problemi", "--dispositivo", "display")[1], ["nessun lavoro"])

    def test_jobs_that_waited_at_the_start_are_discarded_and_can_be_fetched_again(self):
        (self.desk.main / "Orbis").mkdir()
        self.desk.drop("perso.txt", "scontrino perso")
        self.desk.start()
        (entry,) = self.entries()
        self.assertEqual((entry["job"], entry["outcome"]), ("perso.txt", "discarded"))
        self.assertEqual(self.run_once("ristampa", entry["id"])[0], 1, "a fiscal job takes consent")
        some_ticks()
        self.assertFalse(self.desk.c("MF\\in.txt").exists())
        self.assertEqual(self.run_once("ristampa", entry["id"], "--fiscale")[0], 0)
        wait_for(lambda: self.desk.c("MF\\in.txt").exists(), "the job handed over")
        self.assertEqual(self.desk.c("MF\\in.txt").read_text(), "scontrino perso")

    def test_a_receipt_that_came_out_is_not_printed_again_without_being_asked_twice(self):
        self.desk.start()
        self.desk.drop("uno.txt")
        wait_for(self.has_a_line, "a line")
        self.desk.c("MF\\in.txt").unlink()
        (entry,) = self.entries()
        self.assertEqual(self.run_once("ristampa", entry["id"], "--fiscale")[0], 1)
        self.assertEqual(self.run_once("ristampa", entry["id"], "--fiscale", "--anche-se-emesso")[0], 0)
        wait_for(lambda: self.desk.c("MF\\in.txt").exists(), "the job handed over again")

    def test_nothing_is_put_into_a_drop_folder_that_nobody_serves(self):
        program = self.desk.start()
        self.desk.drop("uno.txt")
        wait_for(self.has_a_line, "a line")
        program.stop()
        (entry,) = self.entries()
        status, output = self.run_once("ristampa", entry["id"], "--fiscale", "--anche-se-emesso")
        self.assertEqual(status, 1)
        self.assertIn("non è in funzione", output[0])
        self.assertEqual(self.desk.jobs(), [])

    def test_a_diary_that_cannot_be_written_costs_the_jobs_nothing(self):
        self.diary.write_text("a file where the folder should be")
        self.desk.start()
        self.desk.drop("uno.txt", "scontrino")
        wait_for(lambda: self.desk.c("MF\\in.txt").exists(), "the job handed over")
        self.assertEqual(self.desk.c("MF\\in.txt").read_text(), "scontrino")

    def test_unusable_arguments_are_named(self):
        for words in (
            ["diario", "--dal", "ieri"],
            ["diario", "--dispositivo", "forno"],
            ["diario", "261121-1"],
            ["diario", "--fiscale"],
            ["ristampa"],
            ["ristampa", "261121-1", "--json"],
            ["ftp", "--problemi"],
        ):
            status, output = self.run_once(*words)
            self.assertEqual((status, len(output)), (2, 1), (words, output))


class Killed(DiaryScenario):
    def unconfirmed(self, device):
        """What the diary says after the next start, when the device is switched off."""
        self.desk.settings(MF_Active=0, CORT_Active=0, RF_Active=0, Display_Active=0)
        self.desk.start()
        entries = self.entries()
        self.assertEqual([(entry["device"], entry["outcome"]) for entry in entries], [(device, "unconfirmed")])
        return entries[0]

    def test_a_fiscal_job_is_unconfirmed(self):
        fiscal_driver.configure(self.desk, "ONDA DRIVER - 91", delay=500, MF_Driver="C:\\MF\\nessuno.exe")
        program = self.desk.start()
        self.desk.drop("uno.txt", "scontrino")
        self.kill_during(program, "fiscal")
        entry = self.unconfirmed("fiscal")
        self.assertEqual(entry["job"], "uno.txt")
        copy = self.diary / entry["copy"].replace("\\", "/")
        self.assertEqual(copy.read_text(), "scontrino")

    def test_the_jobs_behind_it_are_discarded(self):
        fiscal_driver.configure(self.desk, "ONDA DRIVER - 91", delay=500, MF_Driver="C:\\MF\\nessuno.exe")
        program = self.desk.start()
        self.desk.settings(MF_Vuoto=0)
        some_ticks(2)
        for name in ("a", "b", "c"):
            self.desk.drop(name + ".txt", name)
        self.desk.settings(MF_Vuoto=-1)
        self.kill_during(program, "fiscal")
        self.desk.settings(MF_Active=0)
        self.desk.start()
        found = [(entry["job"], entry["outcome"]) for entry in self.entries()]
        self.assertEqual(found, [("a.txt", "unconfirmed"), ("b.txt", "discarded"), ("c.txt", "discarded")])

    def test_a_display_job_is_unconfirmed(self):
        self.desk.settings(
            Display_Active=-1,
            Display_File="C:\\MERIDIA\\Display.txt",
            Display_Type="ASEM",
            Display_COM=3,
            Display_Parametri="9600,N,8,1",
            Display_Delay=1000,
        )
        program = self.desk.start()
        self.desk.write_whole(self.desk.c("MERIDIA\\Display.txt"), "Totale 3")
        self.kill_during(program, "display")
        self.assertEqual(self.unconfirmed("display")["job"], "Display.txt")

    def printer_that_takes_nothing(self, name, port):
        """A receipt printer on a line that nobody reads: a document longer than the line's buffer stays in the midst."""
        line = SerialLine(self.desk, 7).plug_in(listening=False)
        self.addCleanup(line.pull_out)
        self.devices(f'[[printer]]\nname = "{name}"\nport = "{port}"\ntarget = "escpos:{line.link}"\n')

    @unittest.skipIf(ON_WINDOWS, "a pseudo terminal as a printer is Linux'")
    def test_a_courtesy_job_is_unconfirmed(self):
        self.printer_that_takes_nothing("OLIVETTI PRT100", "COM3:")
        self.desk.settings(CORT_Active=-1, CORT_Printer="OLIVETTI PRT100 NonFiscale", CORT_COM=3)
        program = self.desk.start()
        self.desk.drop("preconto.txt", ("x" * 30 + "\r\n") * 2000, "CortOrbis")
        self.kill_during(program, "courtesy")
        self.unconfirmed("courtesy")

    @unittest.skipIf(ON_WINDOWS, "a pseudo terminal as a printer is Linux'")
    def test_a_slip_is_unconfirmed(self):
        self.printer_that_takes_nothing("EPSON TM-U295 Slip", "LPT1:")
        self.desk.settings(
            RF_Active=-1, RF_Stampante="EPSON TM-U295 Slip", RF_Seriale="LPT1:", RF_File="C:\\MERIDIA\\Ricevuta.txt"
        )
        program = self.desk.start()
        self.desk.write_whole(self.desk.c("MERIDIA\\Ricevuta.txt"), ("RR " + "x" * 400 + "\r\n") * 40)
        self.kill_during(program, "slip")
        self.unconfirmed("slip")

    def test_a_killed_bridge_between_two_jobs_leaves_no_doubt(self):
        program = self.desk.start()
        self.desk.drop("uno.txt")
        wait_for(self.has_a_line, "a line")
        wait_for(lambda: not self.desk.jobs("IN"), "the job deleted")
        program.kill()
        self.desk.settings(MF_Active=0)
        self.desk.start()
        self.assertEqual([entry["outcome"] for entry in self.entries()], ["delivered"])


if __name__ == "__main__":
    unittest.main()
