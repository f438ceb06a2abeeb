"""Group policy: the example's start-up script, as it is, on three Windows desks with one shared folder."""

import json
import os
import shutil
import subprocess
import unittest
from pathlib import Path

from harness import EMULATOR, Desk
from screen import NOWHERE
from versioned_desk import VersionedDesk

EXAMPLE = Path(__file__).resolve().parents[3] / "packaging" / "fleet" / "gpo"
INSTALLERS = Path(os.environ["INSTALLERS"] or "none")  # of two versions of the programs under test
COURTESY = "[Varie]\r\nOrbis_Setting=0\r\nCort_Active=-1\r\nCort_Printer=OLIVETTI PRT100 NonFiscale\r\nCort_Com=%d\r\n"


@unittest.skipUnless(shutil.which("Xvfb") and INSTALLERS.is_dir(), "needs Xvfb, and makensis and pandoc for the build")
class StartUpScript(VersionedDesk):
    def setUp(self):
        super().setUp()
        self.share = self.desk.root / "rete"
        shutil.copytree(EXAMPLE, self.share)
        (self.share / "casse" / "CASSA1.toml").unlink()  # its printer would be asked over the network
        (self.share / "casse" / "CASSA3.toml").write_text('include = "comune.toml"\n[bridge]\nkeep_days = 0.5\n')
        (self.share / "esiti").mkdir()
        self.offer("0.1.0")
        self.desks = {"CASSA1": self.desk}
        for name in ("CASSA2", "CASSA3"):
            self.desks[name] = Desk()
            self.addCleanup(self.desks[name].close)
        for desk in self.desks.values():
            desk.c("Tellaxis").rmdir()

    def offer(self, version):
        shutil.copy(INSTALLERS / f"tellaxis-{version}-installa.exe", self.share / "tellaxis-installa.exe")
        (self.share / "versione.txt").write_text(version + "\r\n", newline="")

    def start_up(self, name):
        """The script's exit status on the desk of this name, as the computer starts."""
        share = "Z:" + str(self.share).replace("/", "\\")
        command = [*EMULATOR, "cmd", "/c", share + "\\tellaxis-casse.cmd", share, name]
        environment = {**self.environment, **self.desks[name].environment()}
        return subprocess.run(command, env=environment, timeout=180, check=False, **NOWHERE).returncode

    def set_up(self, name, port):
        """Saved settings: a courtesy printer on this port."""
        self.desks[name].c("Tellaxis\\_Tellaxis.ini").write_text(COURTESY % port, newline="")

    def errors(self, name):
        """The codes of what is wrong with the desk, as it told the share."""
        result = json.loads((self.share / "esiti" / f"{name}.json").read_text("utf-8"))
        return [row["code"] for row in result if row["level"] == "error"]

    def told(self, name):
        text = (self.share / "esiti" / f"{name}.txt").read_text("cp1252")
        return [line.rstrip() for line in text.splitlines()]

    def test_three_desks_are_installed_set_up_checked_and_told(self):
        # Nobody has saved settings yet, and the third one's own file has a mistake.
        self.assertEqual([self.start_up(name) for name in self.desks], [1, 1, 2])
        self.assertEqual(self.errors("CASSA1"), ["settings-unreadable"])
        # The second one's printer is nowhere.
        self.set_up("CASSA1", 3)
        self.set_up("CASSA2", 7)
        self.assertEqual([self.start_up(name) for name in self.desks], [0, 1, 2])

        common = (EXAMPLE / "comune.toml").read_bytes()
        for desk in self.desks.values():
            self.assertEqual(desk.c("Tellaxis\\comune.toml").read_bytes(), common)
            self.assertEqual(desk.c("Tellaxis\\versione.txt").read_text(), "0.1.0\n")
        self.assertEqual((self.errors("CASSA1"), self.errors("CASSA2")), ([], ["printer-missing"]))
        self.assertIn("devices.toml, riga 3, colonna", self.told("CASSA3-errori")[0])
        self.assertEqual([self.told(name)[0] for name in self.desks], [f"0.1.0 controlla: {status}" for status in (0, 1, 2)])

    def test_another_version_is_installed_once(self):
        self.start_up("CASSA2")
        self.set_up("CASSA2", 3)
        program = self.desks["CASSA2"].c("Tellaxis\\tellaxisd.exe")
        os.utime(program, ns=(1, 1))
        self.assertEqual(self.start_up("CASSA2"), 0)
        self.assertEqual(program.stat().st_mtime_ns, 1, "the same version stays")
        self.offer("0.1.1")
        self.assertEqual(self.start_up("CASSA2"), 0)
        self.assertNotEqual(program.stat().st_mtime_ns, 1, "another one takes its place")
        self.assertEqual(self.told("CASSA2")[0], "0.1.1 controlla: 0")

    def test_what_cannot_be_had_is_told(self):
        (self.share / "tellaxis-installa.exe").unlink()
        self.assertEqual((self.start_up("CASSA1"), self.told("CASSA1")), (3, ["0.1.0 non installato"]))
        (self.share / "comune.toml").unlink()
        self.assertEqual(self.start_up("CASSA1"), 4)


if __name__ == "__main__":
    unittest.main()
