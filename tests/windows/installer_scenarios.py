"""Not among the tests yet, since the first scenario does not pass under Wine; run by hand: python3 -m unittest
installer_scenarios, with the environment of tests/windows/CMakeLists.txt.

The installer under Wine: installs, upgrades over a running copy, and leaves what is the desk's when it goes."""

import os
import re
import shutil
import subprocess
import unittest
from pathlib import Path

from harness import EMULATOR, TOOLS, Scenario, wait_for

HOUSE = Path(__file__).resolve().parents[2]
NOWHERE = {"stdin": subprocess.DEVNULL, "stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
RECEIPT = "TRATTORIA AL PORTO#0#14#1\r\nTOTALE EURO  37,00#0#14#1\r\n#1\r\n"
DEVICES = '[[printer]]\nname = "SAMSUNG SRP-350"\nport = "COM3:"\ntarget = "folder:preconti"\n'
SETTINGS = "[Varie]\r\nOrbis_Setting=0\r\nCort_Active=-1\r\nCort_Printer=SAMSUNG\r\nCort_Com=3\r\n"


def guide_commands():
    """The commands for Windows in the guide, line by line."""
    chapters = sorted((HOUSE / "docs" / "guida").glob("[0-9]-*.md"))
    text = "".join(chapter.read_text(encoding="utf-8") for chapter in chapters)
    return "".join(re.findall(r"^```bat\n(.*?)^```", text, re.S | re.M)).splitlines()


@unittest.skipUnless(all(shutil.which(name) for name in ("makensis", "pandoc", "Xvfb")), "needs makensis, pandoc and Xvfb")
class Installer(Scenario):
    def setUp(self):
        super().setUp()
        self.environment = {**self.desk.environment(), "DISPLAY": self._open_display()}
        self.folder = self.desk.c("Tellaxis")
        self.folder.rmdir()

    def _open_display(self):
        reading, writing = os.pipe()
        server = subprocess.Popen(["Xvfb", "-displayfd", str(writing)], pass_fds=[writing], **NOWHERE)
        self.addCleanup(server.wait)
        self.addCleanup(server.terminate)
        os.close(writing)
        with os.fdopen(reading) as number:
            return ":" + number.readline().strip()

    def packed(self, version):
        """An installer of these programs under a version number of its own, on drive C:; its path there."""
        subprocess.run([HOUSE / "scripts" / "pack-windows", TOOLS.parent, self.desk.drive_c, version], check=True, **NOWHERE)
        return f"C:\\tellaxis-{version}-installa.exe"

    def run_to_end(self, *command):
        return subprocess.run([*EMULATOR, *command], env=self.environment, timeout=180, check=False, **NOWHERE).returncode

    def install(self, version, *options):
        status = self.run_to_end(self.packed(version), "/S", *options, "/D=C:\\Tellaxis")
        self.assertEqual(status, 0)

    def registered(self, value):
        """What Windows' list of programs says of this one; None where it is not in it."""
        key = "HKLM\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Tellaxis"
        answer = subprocess.run(
            [*EMULATOR, "reg", "query", key, "/v", value], env=self.environment, capture_output=True, text=True, check=False
        )
        return answer.stdout.split("REG_SZ")[-1].strip() if answer.returncode == 0 else None

    def links(self):
        return sorted(path.name for path in self.desk.drive_c.rglob("*.lnk") if "windows" not in path.parts)

    def start(self, program="Tellaxis.exe"):
        started = subprocess.Popen([*EMULATOR, f"C:\\Tellaxis\\{program}"], env=self.environment, **NOWHERE)
        self.addCleanup(started.wait)
        self.addCleanup(self.run_to_end, f"C:\\Tellaxis\\{program}", "--esci")
        wait_for((self.folder / "CortOrbis").is_dir, "the job folders", 60)
        return started

    def printed(self):
        return len(list((self.folder / "preconti").glob("*.jsonl")))

    def print_one(self):
        """Drops a job; whoever serves the folder prints it."""
        before = self.printed()
        self.desk.write_whole(self.folder / "CortOrbis" / "preconto.txt", RECEIPT)
        wait_for(lambda: self.printed() == before + 1, "the receipt", 60)

    def configure(self):
        (self.folder / "devices.toml").write_text(DEVICES)
        (self.folder / "_Tellaxis.ini").write_text(SETTINGS, newline="")

    def test_installs_prints_upgrades_over_a_running_copy_and_goes(self):
        self.install("0.1.0")
        self.assertEqual(self.registered("DisplayVersion"), "0.1.0")
        self.assertEqual(self.registered("InstallLocation"), "C:\\Tellaxis")
        self.assertEqual(
            self.links(), ["Disinstalla Tellaxis.lnk", "Guida.lnk", "Tellaxis.lnk", "Tellaxis.lnk"], "menu and start-up"
        )
        self.assertIn("Misuratore fiscale", (self.folder / "guida.html").read_text(encoding="utf-8"))

        self.configure()
        first = self.start()
        self.print_one()
        settings = (self.folder / "_Tellaxis.ini").read_bytes()
        devices = (self.folder / "devices.toml").read_bytes()

        self.install("0.1.1")
        self.assertEqual(first.wait(30), 0, "the running copy ended by itself")
        self.assertEqual(self.registered("DisplayVersion"), "0.1.1")
        self.assertEqual((self.folder / "devices.toml").read_bytes(), devices)
        self.assertEqual((self.folder / "_Tellaxis.ini").read_bytes(), settings)
        # The copy that the installer has started: nobody else would refuse a second one, or print.
        wait_for(lambda: self.run_to_end("C:\\Tellaxis\\tellaxisd.exe") == 3, "a copy is running again", 60)
        self.print_one()

        self.assertEqual(self.run_to_end("C:\\Tellaxis\\disinstalla.exe", "/S", "_?=C:\\Tellaxis"), 0)
        self.assertEqual((self.registered("DisplayVersion"), self.links()), (None, []))
        # Run in place so that it can be waited for, the uninstaller alone stays.
        self.assertEqual([path.name for path in self.folder.glob("*.exe")], ["disinstalla.exe"])
        for kept in ("_Tellaxis.ini", "devices.toml", "preconti/000001.jsonl"):
            self.assertTrue((self.folder / kept).exists(), kept)

    def test_the_guides_commands_install_it_and_end_it(self):
        self.desk.c(self.packed("0.1.0")[3:]).rename(self.desk.c("tellaxis-installa.exe"))
        install, end = guide_commands()
        self.assertEqual(self.run_to_end(*f"C:\\{install}".split()), 0)
        self.assertEqual(self.run_to_end(*end.split()), 4, "nothing to end yet")
        running = self.start()
        self.assertEqual(self.run_to_end(*end.split()), 0)
        self.assertEqual(running.wait(30), 0)

    def test_uninstalling_everything_leaves_only_documents(self):
        self.install("0.1.0", "/NOAUTO")
        self.assertEqual(self.links(), ["Disinstalla Tellaxis.lnk", "Guida.lnk", "Tellaxis.lnk"], "no start-up")
        self.configure()
        self.start()
        self.print_one()
        self.assertEqual(self.run_to_end("C:\\Tellaxis\\disinstalla.exe", "/S", "/TUTTO", "_?=C:\\Tellaxis"), 0)
        self.assertEqual(sorted(path.name for path in self.folder.iterdir() if path.suffix != ".exe"), ["preconti"])

    def test_a_job_in_hand_is_finished_before_the_programs_change(self):
        self.install("0.1.0")
        self.configure()
        with open(self.folder / "_Tellaxis.ini", "a", newline="") as settings:
            settings.write("MF_Active=-1\r\nMF_Prot=ONDA DRIVER - 91\r\nMF_File=C:\\MF\\in.txt\r\n")
            settings.write("MF_File_Output=C:\\MF\\out.txt\r\nMF_Ritardo=5\r\n")
            settings.write(
                "MF_Driver=C:\\Tellaxis\\fiscal_driver_simulator.exe program --input C:\\MF\\in.txt "
                "--output C:\\MF\\out.txt --work 4000 --receipts C:\\MF\\scontrini\r\n"
            )
        self.desk.c("MF").mkdir()
        running = self.start()
        self.desk.write_whole(self.folder / "Orbis" / "scontrino.txt", "VENDITA\r\n")
        wait_for(self.desk.c("MF\\in.txt").exists, "the receipt under way", 60)
        self.install("0.1.1")
        self.assertEqual(running.wait(30), 0)
        self.assertEqual(len(list(self.desk.c("MF\\scontrini").rglob("*.txt"))), 1, "the driver had its whole time")
        self.assertEqual(list((self.folder / "IN").iterdir()), [])

    def test_the_scheduled_operations_are_called_without_a_console(self):
        self.install("0.1.0")
        self.desk.c("MERIDIA\\_Schedulatore.ini").write_text("[VARIE]\r\nLUN#0930=30#PROVA#\r\n", newline="")
        (self.folder / "Orbis52.bat").write_text("@echo corsa>> C:\\corse.txt\r\n", newline="")
        operations = ("C:\\Tellaxis\\Tellaxis.exe", "pianificate", "--locale", "it_IT", "--now")
        self.assertEqual(self.run_to_end(*operations, "2003-03-03 09:29"), 0)
        self.assertFalse(self.desk.c("corse.txt").exists(), "not its minute")
        self.assertEqual(self.run_to_end(*operations, "2003-03-03 09:30"), 0)
        wait_for(self.desk.c("corse.txt").exists, "the operation", 60)
