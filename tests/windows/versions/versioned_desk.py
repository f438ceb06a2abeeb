"""Versioned desk: a cash desk on a Windows of a given version, with a screen, and a courtesy printer that prints into a folder."""

import os
import subprocess

from harness import EMULATOR, Scenario, wait_for
from screen import NOWHERE, open_screen

VERSION = os.environ["WINDOWS_VERSION"]  # as Wine calls it
REPORTED = {"winxp": "5.1.", "win10": "10.0."}  # as programs see it
RECEIPT = "TRATTORIA AL PORTO#0#14#1\r\nTOTALE EURO  37,00#0#14#1\r\n#1\r\n"
DEVICES = '[[printer]]\nname = "SAMSUNG SRP-350"\nport = "COM3:"\ntarget = "folder:preconti"\n'
SETTINGS = "[Varie]\r\nOrbis_Setting=0\r\nCort_Active=-1\r\nCort_Printer=SAMSUNG\r\nCort_Com=3\r\n"
# What every start stores right after it has emptied the job folders.
STARTED, NOT_STARTED = b"RunTimeOrbis51=C:\\", b"RunTimeOrbis51=?:\\"


class VersionedDesk(Scenario):
    def setUp(self):
        super().setUp()
        self.environment = {**self.desk.environment(), "DISPLAY": open_screen(self)}
        self.assertEqual(self.run_to_end("winecfg", "-v", VERSION), 0)
        told = subprocess.run([*EMULATOR, "cmd", "/c", "ver"], env=self.environment, capture_output=True, text=True, check=True)
        self.assertIn(f"Windows {REPORTED[VERSION]}", told.stdout)

    def run_to_end(self, *command):
        return subprocess.run([*EMULATOR, *command], env=self.environment, timeout=180, check=False, **NOWHERE).returncode

    def configure(self, folder):
        (folder / "devices.toml").write_text(DEVICES)
        (folder / "_Tellaxis.ini").write_text(SETTINGS, newline="")

    def before_start(self, folder):
        """Makes the next start show its end in the settings file; a copy that runs does not look at this key, but at others."""
        settings = folder / "_Tellaxis.ini"
        self.desk.write_whole(settings, settings.read_bytes().replace(STARTED, NOT_STARTED))

    def wait_for_start(self, folder):
        """Until start-up is over: what is dropped before it is discarded."""
        settings = folder / "_Tellaxis.ini"
        wait_for(lambda: settings.exists() and STARTED in settings.read_bytes(), "the end of start-up", 90)

    def printed(self, folder):
        return len(list((folder / "preconti").glob("[0-9]*.jsonl")))

    def print_one(self, folder):
        """Drops a job; whoever serves the folder prints it."""
        before = self.printed(folder)
        self.desk.write_whole(folder / "CortOrbis" / "preconto.txt", RECEIPT)
        wait_for(lambda: self.printed(folder) == before + 1, "the receipt", 60)
        newest = folder / "preconti" / f"{before + 1:06}.txt"
        self.assertIn("TOTALE EURO  37,00", newest.read_text(encoding="utf-8"))
