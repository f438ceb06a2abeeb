"""Paper: a receipt printer without paper, with an open cover, or dead in the midst, before, during and after a job."""

import json
import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from harness import ON_WINDOWS, Scenario, some_ticks, wait_for
from receipt_printer import ReceiptPrinter

PRIVATE_CUPS = Path(__file__).parent.parent / "platform" / "linux" / "printing" / "private_cups.sh"


class PaperScenario(Scenario):
    def devices(self, text):
        with open(self.desk.main / "devices.toml", "a", encoding="utf-8") as devices:
            devices.write(text)

    def courtesy(self):
        self.desk.settings(
            Orbis_Setting=0, CORT_Active=-1, CORT_Printer="OLIVETTI PRT100 NonFiscale", CORT_COM=3
        )

    def job(self, text, name="preconto.txt"):
        self.desk.drop(name, text + "\r\n", "CortOrbis")

    def wait_until_taken(self):
        wait_for(lambda: not self.desk.jobs("CortOrbis") and not self.desk.jobs("CortIN"), "the job is taken")

    def entries(self):
        """The diary's last line of each job, in the order of the jobs."""
        last = {}
        for file in sorted((self.desk.main / "diario").glob("*.jsonl")):
            for line in file.read_text("utf-8").splitlines():
                entry = json.loads(line)
                last[entry["id"]] = entry
        return list(last.values())

    def wait_for_entries(self, count):
        wait_for(lambda: len(self.entries()) == count, f"{count} jobs in the diary")
        return [(entry["job"], entry["outcome"], entry["reason"]) for entry in self.entries()]


@unittest.skipIf(ON_WINDOWS, "the simulated printer is a program of Linux")
class OnTheNetwork(PaperScenario):
    def setUp(self):
        super().setUp()
        self.printer = ReceiptPrinter(self.desk.root / "received.bin")
        self.addCleanup(self.printer.close)
        self.courtesy()

    def target(self, wait=False, diary=False, name="POS", port="COM3:"):
        self.devices(
            f'[[printer]]\nname = "{name}"\nport = "{port}"\ntarget = "escpos:tcp://127.0.0.1:{self.printer.port}"\n'
            + ("wait_for_paper = true\n" if wait else "")
            + ('[bridge]\ndiary = "diario"\n' if diary else "")
        )

    def wait_for_lines(self, *lines):
        wait_for(lambda: self.printer.lines == list(lines), f"{lines} and not {self.printer.lines}")

    # Off

    def test_without_diary_and_waiting_no_printer_is_asked_anything(self):
        self.target()
        self.desk.start()
        for name in ("uno", "due"):
            self.job(name)
            self.wait_until_taken()
        self.wait_for_lines("uno", "due")
        self.assertEqual(self.printer.received(), b"\x1b@\x1bt\x10uno\n\x1b@\x1bt\x10due\n")

    def test_without_diary_and_waiting_a_job_is_sent_without_paper_too(self):
        self.target()
        self.printer.tell("senza carta")
        self.desk.start()
        self.job("uno")
        self.wait_until_taken()
        self.printer.tell("carta")
        self.wait_for_lines("uno")

    def test_an_idle_bridge_asks_nothing(self):
        self.target(wait=True, diary=True)
        self.printer.tell("senza carta")
        self.desk.start()
        some_ticks(30)
        self.assertEqual(self.printer.received(), b"")

    # The diary

    def test_a_job_that_comes_out_is_done(self):
        self.target(diary=True)
        self.desk.start()
        self.job("uno")
        self.assertEqual(self.wait_for_entries(1), [("preconto.txt", "done", "")])
        self.wait_for_lines("uno")

    def test_paper_that_was_out_before_the_job_makes_it_failed(self):
        self.target(diary=True)
        self.printer.tell("senza carta")
        self.desk.start()
        self.job("uno")
        self.assertEqual(self.wait_for_entries(1), [("preconto.txt", "failed", "manca la carta")])

    def test_paper_that_ends_during_the_job_makes_it_failed(self):
        self.target(diary=True)
        self.printer.tell("carta 1")
        self.desk.start()
        self.job("uno\r\ndue")
        self.assertEqual(self.wait_for_entries(1), [("preconto.txt", "failed", "manca la carta")])
        self.assertEqual(self.printer.lines, ["uno"])

    def test_paper_that_ends_after_the_job_is_the_next_ones_failure(self):
        self.target(diary=True)
        self.desk.start()
        self.job("uno", "a.txt")
        self.assertEqual(self.wait_for_entries(1)[0][1], "done")
        self.printer.tell("senza carta")
        self.job("due", "b.txt")
        self.assertEqual(self.wait_for_entries(2)[1], ("b.txt", "failed", "manca la carta"))

    def test_an_open_cover_is_said(self):
        self.target(diary=True)
        self.printer.tell("apri")
        self.desk.start()
        self.job("uno")
        self.assertEqual(self.wait_for_entries(1), [("preconto.txt", "failed", "il coperchio è aperto")])

    def test_paper_that_is_low_is_no_failure(self):
        self.target(diary=True)
        self.printer.tell("carta poca")
        self.desk.start()
        self.job("uno")
        self.assertEqual(self.wait_for_entries(1)[0][1], "done")

    def test_a_printer_that_answers_nothing_is_printed_on(self):
        self.target(wait=True, diary=True)
        self.printer.tell("muta")
        self.desk.start()
        self.job("uno")
        self.assertEqual(self.wait_for_entries(1)[0][1], "done")
        self.wait_for_lines("uno")

    def test_a_printer_that_dies_in_the_midst_makes_the_job_failed(self):
        self.target(diary=True)
        self.printer.tell("muori 9")
        self.desk.start()
        self.job("\r\n".join(f"riga {i}" for i in range(50)))
        self.assertEqual(self.wait_for_entries(1), [("preconto.txt", "failed", "la stampante non è in linea")])

    # Looking without a job

    def run_once(self, *words):
        program = self.desk.launch(*self.desk.arguments(), *words)
        program.wait()
        return program.output

    def test_the_check_and_the_list_say_what_the_printer_says(self):
        self.target()
        self.desk.start()
        self.printer.tell("senza carta")
        (finding,) = [
            finding
            for finding in json.loads("\n".join(self.run_once("controlla", "--json")))
            if finding["code"] == "printer-not-ready"
        ]
        self.assertEqual((finding["device"], finding["level"]), ("courtesy", "error"))
        self.assertIn("manca la carta", finding["text"])
        (row,) = [row for row in self.run_once("porte") if row.split()[:1] == ["POS"]]
        self.assertTrue(row.endswith("manca la carta"), row)
        self.printer.tell("carta")
        self.assertNotIn("printer-not-ready", "".join(self.run_once("controlla", "--json")))

    # Waiting

    def test_jobs_wait_for_paper_and_come_out_once_and_in_order(self):
        self.target(wait=True, diary=True)
        self.printer.tell("senza carta")
        self.desk.start()
        for name in ("b", "a", "c"):
            self.job(name, name + ".txt")
        some_ticks(10)
        self.assertEqual(self.desk.jobs("CortOrbis"), ["a.txt", "b.txt", "c.txt"])
        self.printer.tell("carta")
        self.wait_for_lines("a", "b", "c")
        self.wait_until_taken()
        some_ticks()
        self.assertEqual(self.printer.lines, ["a", "b", "c"])
        self.assertEqual([outcome for _, outcome, _ in self.wait_for_entries(3)], ["done"] * 3)

    def test_when_the_paper_ends_in_the_midst_nothing_is_lost_or_doubled(self):
        self.target(wait=True)
        self.printer.tell("carta 3")
        self.desk.start()
        for name in ("a", "b", "c"):
            self.job(f"{name}1\r\n{name}2", name + ".txt")
        wait_for(lambda: len(self.printer.lines) == 3, "the paper is used up")
        some_ticks(10)
        self.assertEqual(self.desk.jobs("CortOrbis"), ["c.txt"])
        self.printer.tell("carta")
        self.wait_for_lines("a1", "a2", "b1", "b2", "c1", "c2")
        self.wait_until_taken()

    def test_jobs_wait_for_a_printer_that_is_switched_off(self):
        self.target(wait=True)
        self.printer.tell("muori")
        self.desk.start()
        self.job("uno")
        some_ticks(10)
        self.assertEqual(self.desk.jobs("CortOrbis"), ["preconto.txt"])
        self.printer.tell("riaccendi")
        self.wait_for_lines("uno")

    def test_a_waiting_printer_is_asked_at_most_once_a_second(self):
        self.target(wait=True)
        self.printer.tell("senza carta")
        self.desk.start()
        self.job("uno")
        some_ticks(60)  # somewhat more than three seconds
        questions = self.printer.received().count(b"\x10\x04\x01")
        self.assertIn(questions, range(2, 5))

    def test_a_slip_waits_and_the_other_devices_go_on(self):
        self.target(wait=True, name="EPSON TM-U295 Slip", port="LPT1:")
        self.devices('[[printer]]\nname = "PRT100"\nport = "COM3:"\ntarget = "folder:spool"\n')
        self.desk.settings(
            RF_Active=-1, RF_Stampante="EPSON TM-U295 Slip", RF_Seriale="LPT1:", RF_File="C:\\MERIDIA\\Ricevuta.txt"
        )
        self.printer.tell("apri")
        self.desk.start()
        slip = self.desk.c("MERIDIA") / "Ricevuta.txt"
        self.desk.write_whole(slip, "RR uno\r\n")
        self.job("preconto")
        wait_for((self.desk.main / "spool" / "000001.jsonl").exists, "the courtesy receipt")
        self.assertTrue(slip.exists())
        self.printer.tell("chiudi")
        wait_for(lambda: not slip.exists(), "the slip's file is deleted")
        wait_for(lambda: "uno" in "".join(self.printer.lines), "the slip")


@unittest.skipIf(ON_WINDOWS, "CUPS is the spooler of Linux")
class OnAQueue(PaperScenario):
    def setUp(self):
        super().setUp()
        self.folder = Path(tempfile.mkdtemp(prefix="cups-"))
        self.addCleanup(shutil.rmtree, self.folder, True)
        server = subprocess.Popen([str(PRIVATE_CUPS), str(self.folder), "pos"], stdout=subprocess.PIPE)
        self.addCleanup(server.stdout.close)
        self.addCleanup(server.wait)
        self.addCleanup(server.terminate)
        self.assertEqual(server.stdout.readline(), b"pronto\n", "cupsd and lpadmin are needed")
        self.environment = {"CUPS_SERVER": str(self.folder / "run" / "cups.sock")}
        self.courtesy()

    def tell(self, command):
        environment = {**os.environ, **self.environment, "PATH": os.environ["PATH"] + ":/usr/sbin"}
        subprocess.run([command, "pos"], env=environment, check=True)

    def test_jobs_wait_while_the_queue_is_stopped(self):
        self.devices('[[printer]]\nname = "POS"\nport = "COM3:"\ntarget = "escpos:cups:pos"\nwait_for_paper = true\n')
        for stop, go in (("cupsdisable", "cupsenable"), ("cupsreject", "cupsaccept")):
            self.tell(stop)
            program = self.desk.start(environment=self.environment)
            self.job(stop)
            some_ticks(10)
            self.assertEqual(self.desk.jobs("CortOrbis"), ["preconto.txt"])
            self.tell(go)
            self.wait_until_taken()
            program.stop()
        wait_for(lambda: len(list((self.folder / "out").glob("*.bin"))) == 2, "both are printed")

    def test_a_stopped_queue_makes_the_job_failed_in_the_diary(self):
        self.devices(
            '[[printer]]\nname = "POS"\nport = "COM3:"\ntarget = "escpos:cups:pos"\n[bridge]\ndiary = "diario"\n'
        )
        self.tell("cupsdisable")
        self.desk.start(environment=self.environment)
        self.job("uno")
        self.assertEqual(self.wait_for_entries(1), [("preconto.txt", "failed", "la stampante non è in linea")])


if __name__ == "__main__":
    unittest.main()
