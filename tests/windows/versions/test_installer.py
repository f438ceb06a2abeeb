"""The installer under Wine: installs, upgrades over a running copy, and leaves what is the desk's when it goes."""

import os
import re
import shutil
import subprocess
import time
import unittest
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from harness import EMULATOR, wait_for
from screen import NOWHERE
from versioned_desk import VersionedDesk

HOUSE = Path(__file__).resolve().parents[3]
INSTALLERS = Path(os.environ["INSTALLERS"] or "none")  # of two versions of the programs under test

LIST_OF_PROGRAMS = "HKLM\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Tellaxis"
EVENT_SOURCE = "HKLM\\SYSTEM\\CurrentControlSet\\Services\\EventLog\\Application\\Tellaxis"


def guide_commands():
    """The commands for Windows in the guide, line by line."""
    chapters = sorted((HOUSE / "docs" / "guida").glob("[0-9]-*.md"))
    text = "".join(chapter.read_text(encoding="utf-8") for chapter in chapters)
    return "".join(re.findall(r"^```bat\n(.*?)^```", text, re.S | re.M)).splitlines()


@unittest.skipUnless(shutil.which("Xvfb") and INSTALLERS.is_dir(), "needs Xvfb, and makensis and pandoc for the build")
class Installer(VersionedDesk):
    def setUp(self):
        super().setUp()
        self.folder = self.desk.c("Tellaxis")
        self.folder.rmdir()

    def installer(self, version):
        """Its path on drive C:, where it has the name that the guide gives it."""
        shutil.copy(INSTALLERS / f"tellaxis-{version}-installa.exe", self.desk.c("tellaxis-installa.exe"))
        return "C:\\tellaxis-installa.exe"

    def install(self, version, *options, status=0):
        self.assertEqual(self.run_to_end(self.installer(version), "/S", *options, "/D=C:\\Tellaxis"), status)

    def registered(self, value, key=LIST_OF_PROGRAMS):
        """What Windows' list of programs, or another key, says of this one; None where it is not in it."""
        answer = subprocess.run(
            [*EMULATOR, "reg", "query", key, "/v", value], env=self.environment, capture_output=True, text=True, check=False
        )
        return re.split("REG_(?:EXPAND_)?SZ", answer.stdout)[-1].strip() if answer.returncode == 0 else None

    def links(self):
        return sorted(path.name for path in self.desk.drive_c.rglob("*.lnk") if "windows" not in path.parts)

    def start(self):
        if not (self.folder / "_Tellaxis.ini").exists():
            self.configure(self.folder)
        return self.start_on(self.folder, "C:\\Tellaxis\\Tellaxis.exe")

    def start_on(self, folder, *program):
        """The program, serving the folder; it ends with the scenario at the latest."""
        started = subprocess.Popen([*EMULATOR, *program], env=self.environment, **NOWHERE)
        self.addCleanup(started.wait)
        self.addCleanup(self.run_to_end, *program, "--esci")
        self.wait_for_start(folder)
        return started

    def hold_program(self):
        """The installed program without a window, serving another folder, and its command."""
        other = self.desk.c("Altra")
        other.mkdir()
        self.configure(other)
        program = ("C:\\Tellaxis\\tellaxisd.exe", "--main-folder", "C:\\Altra")
        return self.start_on(other, *program), program

    def test_installs_prints_upgrades_over_a_running_copy_and_goes(self):
        self.install("0.1.0")
        self.assertEqual(self.registered("DisplayVersion"), "0.1.0")
        self.assertEqual(self.registered("InstallLocation"), "C:\\Tellaxis")
        self.assertEqual(self.registered("EventMessageFile", EVENT_SOURCE), "C:\\Tellaxis\\tellaxisd.exe")
        self.assertEqual(
            self.links(), ["Disinstalla Tellaxis.lnk", "Guida.lnk", "Tellaxis.lnk", "Tellaxis.lnk"], "menu and start-up"
        )
        self.assertIn("Misuratore fiscale", (self.folder / "guida.html").read_text(encoding="utf-8"))

        self.assertTrue((self.folder / "esempi" / "gpo" / "tellaxis-casse.cmd").exists())

        first = self.start()
        self.print_one(self.folder)
        settings = (self.folder / "_Tellaxis.ini").read_bytes()
        devices = (self.folder / "devices.toml").read_bytes()

        self.before_start(self.folder)
        self.install("0.1.1")
        self.assertEqual(first.wait(30), 0, "the running copy ended by itself")
        self.assertEqual(self.registered("DisplayVersion"), "0.1.1")
        self.assertEqual((self.folder / "devices.toml").read_bytes(), devices)
        # The copy that the installer has started: nobody else would store its start, refuse a second copy, or print.
        # It stores one value after the other.
        wait_for(lambda: (self.folder / "_Tellaxis.ini").read_bytes() == settings, "the settings as they were", 90)
        self.assertEqual(self.run_to_end("C:\\Tellaxis\\tellaxisd.exe"), 3)
        self.print_one(self.folder)

        self.assertEqual(self.run_to_end("C:\\Tellaxis\\disinstalla.exe", "/S", "_?=C:\\Tellaxis"), 0)
        self.assertEqual((self.registered("DisplayVersion"), self.links()), (None, []))
        self.assertIsNone(self.registered("EventMessageFile", EVENT_SOURCE))
        # Run in place so that it can be waited for, the uninstaller alone stays.
        self.assertEqual([path.name for path in self.folder.glob("*.exe")], ["disinstalla.exe"])
        self.assertFalse((self.folder / "esempi").exists())
        for kept in ("_Tellaxis.ini", "devices.toml", "preconti/000001.jsonl"):
            self.assertTrue((self.folder / kept).exists(), kept)

    def test_the_guides_commands_install_it_and_end_it(self):
        install, end = guide_commands()
        self.assertEqual(install.split()[0], "tellaxis-installa.exe")
        self.assertEqual(self.run_to_end(self.installer("0.1.0"), *install.split()[1:]), 0)
        self.assertEqual(self.run_to_end(*end.split()), 4, "nothing to end yet")
        running = self.start()
        self.assertEqual(self.run_to_end(*end.split()), 0)
        self.assertEqual(running.wait(30), 0)

    def test_uninstalling_everything_leaves_only_documents(self):
        self.install("0.1.0", "/NOAUTO")
        self.assertEqual(self.links(), ["Disinstalla Tellaxis.lnk", "Guida.lnk", "Tellaxis.lnk"], "no start-up")
        self.start()
        self.print_one(self.folder)
        self.assertEqual(self.run_to_end("C:\\Tellaxis\\disinstalla.exe", "/S", "/TUTTO", "_?=C:\\Tellaxis"), 0)
        self.assertEqual(sorted(path.name for path in self.folder.iterdir() if path.suffix != ".exe"), ["preconti"])

    def test_a_job_in_hand_is_finished_before_the_programs_change(self):
        self.install("0.1.0")
        self.configure(self.folder)
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

    def test_a_program_in_use_is_waited_for(self):
        self.install("0.1.0")
        installed = self.folder / "tellaxisd.exe"
        os.utime(installed, ns=(1, 1))
        running, program = self.hold_program()
        with ThreadPoolExecutor() as threads:
            installing = threads.submit(self.install, "0.1.1")
            time.sleep(5)
            self.assertFalse(installing.done())
            self.assertEqual(installed.stat().st_mtime_ns, 1)
            self.assertEqual(self.run_to_end(*program, "--esci"), 0)
            installing.result()
        self.assertEqual(running.wait(30), 0)
        self.assertNotEqual(installed.stat().st_mtime_ns, 1, "another one has taken its place")
        self.assertEqual(self.registered("DisplayVersion"), "0.1.1")

    def test_a_program_that_stays_in_use_is_left_and_the_desk_goes_on(self):
        self.install("0.1.0")
        self.start()
        self.before_start(self.folder)
        self.hold_program()
        self.install("0.1.1", status=3)
        self.assertEqual(self.registered("DisplayVersion"), "0.1.0")
        self.wait_for_start(self.folder)
        self.print_one(self.folder)

    def test_a_file_that_cannot_be_written_is_said_and_the_desk_goes_on(self):
        self.install("0.1.0")
        (self.folder / "guida.html").unlink()
        (self.folder / "guida.html").mkdir()
        self.start()
        self.before_start(self.folder)
        self.install("0.1.1", status=3)
        self.wait_for_start(self.folder)
        self.print_one(self.folder)

    def test_the_scheduled_operations_are_called_without_a_console(self):
        self.install("0.1.0")
        self.desk.c("MERIDIA\\_Schedulatore.ini").write_text("[VARIE]\r\nLUN#0930=30#PROVA#\r\n", newline="")
        (self.folder / "Orbis52.bat").write_text("@echo corsa>> C:\\corse.txt\r\n", newline="")
        operations = ("C:\\Tellaxis\\Tellaxis.exe", "pianificate", "--locale", "it_IT", "--now")
        self.assertEqual(self.run_to_end(*operations, "2003-03-03 09:29"), 0)
        self.assertFalse(self.desk.c("corse.txt").exists(), "not its minute")
        self.assertEqual(self.run_to_end(*operations, "2003-03-03 09:30"), 0)
        wait_for(self.desk.c("corse.txt").exists, "the operation", 60)
