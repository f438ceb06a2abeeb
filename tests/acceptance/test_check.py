"""Check, trial and ports: what is wrong with an installation, told without a change to it; a sample job; what is plugged in."""

import json
import os
import unittest

import fiscal_driver
import sample_jobs
from ftp_servers import PASSWORD, USER, PlainServer
from harness import ON_WINDOWS, Scenario, wait_for
from serial_line import SerialLine

LEVELS = ("ok", "off", "warning", "error")
DEVICES = ("general", "fiscal", "display", "slip", "courtesy", "ftp", "dialup", "schedule")


class Installation(Scenario):
    """A cash desk with every device in order; printers are folders."""

    def setUp(self):
        super().setUp()
        self.devices('[bridge]\nmidnight = true\ndiary = "diario"\n')
        self.printer("EPSON TM-L90 Receipt", "LPT1:", "ricevute")
        self.printer("SAMSUNG SRP-500", "COM4:", "preconti")
        self.desk.c("MERIDIA\\_Local.ini").write_text("[Varie]\r\n")
        self.desk.c("MERIDIA\\LogoCassa.bmp").write_bytes(sample_jobs.logo())
        fiscal_driver.configure(self.desk, "ONDA DRIVER - 91", MF_Driver=fiscal_driver.command_line(self.desk))
        self.desk.settings(
            RF_Active=-1,
            RF_Stampante="EPSON TM-L90 Receipt",
            RF_Seriale="LPT1:",
            RF_File="C:\\MERIDIA\\Ricevuta.txt",
            CORT_Active=-1,
            CORT_Printer="SAMSUNG",
            CORT_COM=4,
            CORT_Logo=-1,
            CORT_File="C:\\MERIDIA\\LogoCassa.bmp",
        )

    def devices(self, text):
        with open(self.desk.main / "devices.toml", "a", encoding="utf-8") as devices:
            devices.write(text)

    def printer(self, name, port, folder):
        self.devices(f'[[printer]]\nname = "{name}"\nport = "{port}"\ntarget = "folder:{folder}"\n')

    def display(self):
        """An ASEM display on COM 3."""
        line = SerialLine(self.desk, 3).plug_in()
        self.addCleanup(line.pull_out)
        self.desk.settings(
            Display_Active=-1,
            Display_File="C:\\MERIDIA\\Display.txt",
            Display_Type="ASEM",
            Display_COM=3,
            Display_Parametri="9600,N,8,1",
            Display_Delay=0,
        )
        return line

    def run_once(self, *words):
        program = self.desk.launch(*self.desk.arguments(), *words)
        status = program.wait()
        return status, program.output, program.complaints

    def check(self, *words):
        """Status and findings of `controlla --json`."""
        status, output, complaints = self.run_once("controlla", "--json", *words)
        self.assertEqual(complaints, [])
        return status, json.loads("\n".join(output))

    def problems(self, *words):
        status, findings = self.check(*words)
        problems = {(finding["device"], finding["code"]) for finding in findings if finding["level"] in ("warning", "error")}
        self.assertEqual(status, int(any(finding["level"] == "error" for finding in findings)))
        return problems

    def jobs_in_diary(self):
        return sum(len(day.read_text("utf-8").splitlines()) for day in self.desk.main.glob("diario/*.jsonl"))

    def assert_unchanged(self, before):
        after = self.state()
        self.assertEqual([path for path in sorted({*before, *after}) if before.get(path) != after.get(path)], [])

    def state(self):
        """Everything that lies on the desk, with content, times and rights."""
        found = {}
        # Wine fills its user's profile whenever a program starts.
        profile = self.desk.drive_c / "users"
        for top in (self.desk.main, self.desk.drive_c):
            for path in [top, *sorted(top.rglob("*"))]:
                if ON_WINDOWS and (path == self.desk.drive_c or path.is_relative_to(profile)):
                    continue
                status = path.lstat()
                content = path.read_bytes() if path.is_file() else b""
                found[str(path)] = (status.st_mode, status.st_ino, status.st_mtime_ns, status.st_ctime_ns, content)
        return found


class Check(Installation):
    def test_a_healthy_installation_is_in_order(self):
        if not ON_WINDOWS:
            self.display()
        self.desk.start()
        status, output, complaints = self.run_once("controlla")
        self.assertEqual((status, complaints), (0, []), output)
        self.assertIn("Generale: in ordine", output)
        self.assertIn("Misuratore fiscale: in ordine", output)
        self.assertEqual(output[-1], "0 errori, 0 avvisi.")

    def test_json_is_an_array_of_findings_with_five_members_each(self):
        program = self.desk.start()
        status, findings = self.check()
        self.assertEqual(status, 0)
        for finding in findings:
            self.assertEqual(list(finding), ["device", "level", "code", "text", "remedy"])
            self.assertIn(finding["level"], LEVELS)
            self.assertEqual(bool(finding["remedy"]), finding["level"] in ("warning", "error"), finding)
        self.assertEqual(tuple(dict.fromkeys(finding["device"] for finding in findings)), DEVICES)
        (running,) = [finding for finding in findings if finding["code"] == "second-copy"]
        self.assertIn("in funzione", running["text"])
        if not ON_WINDOWS:
            self.assertIn(f"processo {program.process.pid}", running["text"])

    def test_a_missing_driver_is_an_error_that_says_what_was_looked_for(self):
        self.desk.settings(MF_Driver="C:\\OndaDriver\\OndaDriver.exe")
        self.desk.start()
        status, findings = self.check()
        (missing,) = [finding for finding in findings if finding["level"] == "error"]
        self.assertEqual((status, missing["device"], missing["code"]), (1, "fiscal", "driver-missing"))
        self.assertIn("C:\\OndaDriver\\OndaDriver.exe", missing["text"])
        status, output, _ = self.run_once("controlla")
        self.assertEqual(status, 1)
        self.assertIn("Misuratore fiscale: ERRORE", output)
        self.assertEqual(output[-1], "1 errore, 0 avvisi.")

    def test_a_driver_that_is_no_program_cannot_be_started(self):
        self.desk.c("OndaDriver.exe").write_text("testo")
        self.desk.settings(MF_Driver="C:\\OndaDriver.exe")
        self.assertIn(("fiscal", "driver-not-executable"), self.problems())

    def test_nothing_is_changed_where_no_bridge_runs(self):
        before = self.state()
        self.assertEqual(self.problems(), {("general", "not-running")})
        self.assertEqual(self.run_once("controlla")[0], 0)
        self.assertEqual(self.run_once("porte")[0], 0)
        self.assert_unchanged(before)

    def test_nothing_is_changed_in_an_empty_folder(self):
        for path in (self.desk.settings_file, self.desk.main / "devices.toml"):
            path.unlink()
        before = self.state()
        self.assertIn(("general", "settings-unreadable"), self.problems())
        self.assert_unchanged(before)

    def test_beside_a_running_bridge_nothing_is_changed_and_the_bridge_goes_on(self):
        if not ON_WINDOWS:
            line = self.display()
        program = self.desk.start()
        self.desk.drop("uno.txt")
        wait_for(lambda: len(fiscal_driver.receipts(self.desk)) == 1 and not self.desk.jobs("IN"), "the first receipt")
        if not ON_WINDOWS:
            self.desk.write_whole(self.desk.c("MERIDIA\\Display.txt"), "Totale\r\n")
            wait_for(lambda: line.is_open_in(program), "the display's line open")
            wait_for(lambda: not self.desk.c("MERIDIA\\Display.txt").exists(), "the message shown")
        wait_for(lambda: not self.desk.c("MF\\in.txt").exists(), "the driver ended")
        # The diary's line is the last thing that the bridge writes of a job.
        wait_for(lambda: self.jobs_in_diary() == (1 if ON_WINDOWS else 2), "each job in the diary")
        wait_for(lambda: not any(self.desk.main.glob("~tlx*")), "the job's file gone, also for those who looked at it")
        before = self.state()
        for _ in range(3):
            self.assertEqual(self.problems(), set())
        self.assert_unchanged(before)
        self.desk.drop("due.txt")
        wait_for(lambda: len(fiscal_driver.receipts(self.desk)) == 2, "the second receipt")
        self.assertEqual(program.stop(), 0)

    def test_a_closed_gate_tells_of_its_jobs(self):
        self.desk.start()
        self.desk.settings(MF_Vuoto=0)
        self.desk.drop("uno.txt")
        status, findings = self.check()
        (closed,) = [finding for finding in findings if finding["code"] == "gate-closed"]
        self.assertEqual((status, closed["level"]), (0, "warning"))
        self.assertIn("1 lavoro aspetta", closed["text"])

    @unittest.skipIf(ON_WINDOWS, "who holds a line is told by Linux alone")
    def test_a_port_that_another_program_holds_is_named_with_its_holder(self):
        line = self.display()
        held = os.open(line.device, os.O_RDWR | os.O_NOCTTY)
        self.addCleanup(os.close, held)
        _, findings = self.check()
        (busy,) = [finding for finding in findings if finding["code"] == "port-busy"]
        self.assertIn(f"({os.getpid()})", busy["text"])

    @unittest.skipIf(ON_WINDOWS, "a pseudo terminal is Linux'")
    def test_a_port_that_was_pulled_out_is_missing(self):
        self.display().pull_out()
        self.assertIn(("display", "port-missing"), self.problems())

    def test_a_printer_that_is_not_there_and_what_takes_its_place(self):
        self.desk.settings(RF_Stampante="EPSON TM-U295 Slip", CORT_COM=9)
        _, findings = self.check()
        missing = {finding["device"]: finding["text"] for finding in findings if finding["code"] == "printer-missing"}
        self.assertIn("si stampa su EPSON TM-L90 Receipt", missing["slip"])
        self.assertIn("non si stampa nulla", missing["courtesy"])
        self.assertIn("SAMSUNG SRP-500 (COM4:)", missing["courtesy"])

    def test_a_logo_that_is_no_picture(self):
        self.desk.c("MERIDIA\\LogoCassa.bmp").write_text("testo")
        self.assertIn(("courtesy", "logo-unreadable"), self.problems())

    @unittest.skipIf(ON_WINDOWS or os.geteuid() == 0, "rights that bind this user are needed")
    def test_what_may_not_be_written(self):
        self.desk.settings_file.chmod(0o444)
        self.desk.main.chmod(0o555)
        self.desk.c("MF").chmod(0o555)
        try:
            found = self.problems()
        finally:
            self.desk.main.chmod(0o755)
        self.assertLessEqual(
            {
                ("general", "settings-not-writable"),
                ("general", "main-folder-not-writable"),
                ("fiscal", "mf-file-folder-not-writable"),
            },
            found,
        )

    def test_unusable_arguments_are_named(self):
        for words in (["controlla", "tutto"], ["controlla", "--dal", "oggi"], ["prova"], ["prova", "fiscale"], ["ftp", "--rete"]):
            status, output, complaints = self.run_once(*words)
            self.assertEqual((status, output, len(complaints)), (2, [], 1), words)


class Server(Installation):
    def setUp(self):
        super().setUp()
        home = self.desk.root / "server"
        home.mkdir()
        self.server = PlainServer(home)
        self.desk.settings(FTP_Indirizzo=self.server.address, FTP_User=USER, FTP_Pw=PASSWORD)

    def end(self):
        if self.server:
            self.server.close()
            self.server = None

    def tearDown(self):
        self.end()

    def ftp(self):
        return {code for device, code in self.problems("--rete") if device == "ftp"}

    def test_a_server_that_takes_the_account_is_in_order_and_nothing_is_transferred(self):
        self.assertEqual(self.ftp(), set())
        spoken = {command.split()[0].upper() for command in self.server.commands}
        self.assertIn("PASS", spoken)
        self.assertFalse(spoken & {"RETR", "STOR", "DELE", "LIST", "NLST", "MKD", "APPE"}, spoken)

    def test_without_the_option_nobody_is_asked(self):
        self.assertEqual({code for device, code in self.problems() if device == "ftp"}, set())
        self.assertEqual(self.server.commands, [])

    def test_a_wrong_password_is_refused(self):
        self.desk.settings(FTP_Pw="sbagliata")
        self.assertEqual(self.ftp(), {"ftp-refused"})

    def test_a_server_that_is_away_is_unreachable(self):
        self.end()
        self.assertEqual(self.ftp(), {"ftp-unreachable"})


class Trial(Installation):
    def attempt(self, device):
        status, output, complaints = self.run_once("prova", device)
        self.assertEqual((len(output), complaints), (1, []), output)
        return status, output[0]

    @unittest.skipIf(ON_WINDOWS, "a pseudo terminal is Linux'")
    def test_the_display_shows_its_sample(self):
        line = self.display()
        self.desk.start()
        status, said = self.attempt("display")
        self.assertEqual(status, 0, said)
        self.assertIn("diario: fatto", said)
        sent = line.wait_for(b"x" * 40).decode("cp1252")
        self.assertIn("Prova: è à ò ù ì €", sent)
        self.assertIn("Totale       12,50 €", sent)

    def printed(self, folder):
        return "".join(page.read_text("utf-8") for page in sorted((self.desk.main / folder).glob("*.txt")))

    def test_the_courtesy_printer_prints_its_sample_in_every_font(self):
        self.desk.start()
        status, said = self.attempt("preconto")
        self.assertEqual(status, 0, said)
        self.assertIn("preconto: il ponte ha preso", said)
        self.assertIn("Accenti à è é ì ò ù, euro €", self.printed("preconti"))
        fonts = "".join(page.read_text("utf-8") for page in (self.desk.main / "preconti").glob("*.jsonl"))
        for part in ("FontA15cpi", "FontB17cpi", '"size":18', '"bold":true', "#ff0000"):
            self.assertIn(part, fonts)

    def test_the_slip_printer_prints_its_sample(self):
        self.desk.start()
        status, said = self.attempt("ricevuta")
        self.assertEqual(status, 0, said)
        self.assertIn("Accenti à è é ì ò ù, euro €", self.printed("ricevute"))
        self.assertFalse(self.desk.c("MERIDIA\\Ricevuta.txt").exists())

    def test_a_trial_that_fails_says_so_in_the_diarys_words(self):
        self.desk.settings(CORT_COM=9)
        self.desk.start()
        status, said = self.attempt("preconto")
        self.assertEqual(status, 1, said)
        self.assertIn("nessuna stampante sulla porta COM9:", said)

    def test_without_a_bridge_nothing_is_put_anywhere(self):
        before = self.state()
        for device in ("display", "preconto", "ricevuta"):
            self.assertEqual(self.attempt(device)[0], 1)
        self.assert_unchanged(before)


class Ports(Installation):
    def test_lines_and_printers_are_listed_with_what_is_behind_them(self):
        line = None if ON_WINDOWS else self.display()
        status, output, complaints = self.run_once("porte")
        self.assertEqual((status, complaints), (0, []))
        printers = output[output.index("Stampanti:") + 1 :]
        self.assertEqual(printers[0].split(), "EPSON TM-L90 Receipt LPT1: folder:ricevute pronta".split())
        self.assertEqual(printers[1].split(), "SAMSUNG SRP-500 COM4: folder:preconti pronta".split())
        if line:
            (com3,) = [row for row in output if row.split()[:1] == ["COM3"]]
            self.assertIn(str(line.link), com3)
            line.pull_out()
            (com3,) = [row for row in self.run_once("porte")[1] if row.split()[:1] == ["COM3"]]
            self.assertIn("non collegata", com3)


if __name__ == "__main__":
    unittest.main()
