"""Secrets: no password of the settings is ever said, noted or printed, whatever fails."""

import os
import re
import unittest
from pathlib import Path

import fiscal_driver
from ftp_servers import PlainServer, free_port
from harness import ON_WINDOWS, Desk, Scenario, some_ticks, wait_for
from owners_desk import OwnersDesk, why_not

SOURCES = Path(__file__).resolve().parents[3] / "src"
SECRET = "parolasegreta"
OWN_KEYS = ("FTP_Pw", "Ind_Pw", "WEB_Pw")
POINT_OF_SALE_KEYS = ("Si_Psw_ptp", "GG_PSW")


class RepeatingServer(PlainServer):
    """Refuses everybody, and repeats what it was told."""

    def __init__(self, home):
        super().__init__(home, user="nessuno", pre_process_command=self.refuse)

    @staticmethod
    def refuse(handler, line, command, argument):
        handler.respond(("331 " if command == "USER" else "530 ") + line)


class Secrets(Scenario):
    def setUp(self):
        self.desk = Desk() if why_not() else OwnersDesk()
        self.addCleanup(self.desk.close)
        self.said = []

    def test_every_key_that_holds_a_password_is_known_here(self):
        sources = "".join(path.read_text("utf-8") for path in SOURCES.rglob("*.cpp"))
        found = set(re.findall(r'"(\w*(?:pw|psw|passw|segret)\w*)"', sources, re.IGNORECASE))
        self.assertEqual(found, {*OWN_KEYS, *POINT_OF_SALE_KEYS})

    def configure(self, server):
        """Devices that all fail, a diary with copies, and a secret in every password."""
        desk = self.desk
        with open(desk.main / "devices.toml", "w", encoding="utf-8") as devices:
            devices.write('[bridge]\ndiary = "diario"\narchive = true\nmidnight = true\n')
            devices.write('[[printer]]\nname = "SAMSUNG SRP-500"\nport = "COM3:"\ntarget = "folder:non/si/puo"\n')
        fiscal_driver.configure(
            desk,
            "ONDA DRIVER - 91",
            delay=0,
            MF_Driver="C:\\manca\\driver.exe",
            Display_Active=-1,
            Display_File="C:\\MERIDIA\\Display.txt",
            Display_Type="WINCOR-NIXDORF",
            Display_COM=99,
            Display_Delay=0,
            CORT_Active=-1,
            CORT_Printer="SAMSUNG",
            CORT_COM=4,
            RF_Active=-1,
            RF_Stampante="manca",
            RF_Seriale="LPT1:",
            RF_File="C:\\MERIDIA\\Ricevuta.txt",
            Orbis_Setting=0,
            FTP_Indirizzo=server,
            FTP_User="utente",
            FTP_Azione=2,
            FTP_Directory="C:\\manca\\",
            FTP_NomeFile="chiusura.txt",
            WEB_chkDial=-1,
            Int_Indirizzo="Provider",
            Ind_User="mario",
            **{key: SECRET + key for key in OWN_KEYS},
        )
        keys = {"Si_FTP_ptp": server, "Si_NomeUT_ptp": "utente", **{key: SECRET + key for key in POINT_OF_SALE_KEYS}}
        lines = "".join(f"{key}={value}\r\n" for key, value in keys.items())
        desk.c("MERIDIA\\_Local.ini").write_bytes(f"[Varie]\r\n{lines}".encode())

    def run_once(self, *words):
        program = self.desk.launch(*self.desk.arguments(), "--trace", *words)
        program.wait(60)
        self.said += program.output + program.complaints

    def run_everything(self, server):
        """The bridge with a job for each device, and each single operation."""
        self.configure(server)
        if isinstance(self.desk, OwnersDesk):
            self.desk.furnish()
        program = self.desk.start("--trace")
        for folder in ("Orbis", "CortOrbis"):
            self.desk.drop("a.txt", "lavoro", folder)
        for name in ("Display.txt", "Ricevuta.txt"):
            self.desk.write_whole(self.desk.c("MERIDIA\\" + name), "lavoro")
        wait_for(lambda: not self.desk.jobs() and not self.desk.jobs("CortOrbis"), "the jobs taken", 60)
        some_ticks()
        self.assertTrue([*self.desk.main.glob("diario/*.jsonl")], "the diary")
        for words in (
            ["ftp"],
            ["pianificate", "--postazione", "SERVER"],
            ["diario", "--json"],
            ["ristampa", "1"],
            ["controlla", "--rete"],
            ["controlla", "--json", "--rete"],
            ["porte"],
        ):
            self.run_once(*words)
        program.stop()
        self.said += program.output + program.complaints
        # Another start takes all settings over from the point of sale, accounts included.
        self.desk.settings(Orbis_Setting=-1)
        program = self.desk.start("--trace")
        self.assertEqual(self.desk.read_settings()["FTP_Pw"], SECRET + "Si_Psw_ptp")
        program.stop()
        self.said += program.output + program.complaints

    def check(self):
        """Looks at all that was said and written; what holds the passwords by its purpose is read by nobody else."""
        self.assertTrue(any("passo fallito" in line for line in self.said), self.said)
        self.assertEqual([line for line in self.said if SECRET in line], [])
        kept = (self.desk.settings_file, self.desk.c("MERIDIA\\_Local.ini"), self.desk.root / "cassaDial.bat")
        for path in self.desk.root.rglob("*"):
            if path.is_file() and path not in kept and "prefix" not in path.parts:
                self.assertNotIn(SECRET.encode(), path.read_bytes(), path)

    def test_where_nobody_answers_no_password_is_said(self):
        self.run_everything(f"127.0.0.1:{free_port()}")
        self.check()
        self.assertTrue(any("bQGetFile" in line for line in self.said), self.said)
        self.assertTrue(any('"ftp-unreachable"' in line for line in self.said), self.said)

    def test_where_the_server_repeats_the_password_it_is_not_said(self):
        home = self.desk.root / "server"
        home.mkdir()
        server = RepeatingServer(home)
        self.addCleanup(server.close)
        self.run_everything(server.address)
        self.check()
        self.assertTrue(any('"ftp-refused"' in line for line in self.said), self.said)

    def test_a_password_that_would_be_a_second_command_is_not_said(self):
        self.configure("127.0.0.1:1")
        self.desk.settings(FTP_Pw=SECRET + "\x01\x7f")
        self.run_once("ftp")
        self.check()

    @unittest.skipIf(ON_WINDOWS, "permissions are native")
    def test_where_nothing_can_be_written_no_password_is_said(self):
        self.configure("127.0.0.1:1")
        if isinstance(self.desk, OwnersDesk):
            self.desk.furnish()
        elif os.geteuid() == 0:
            self.skipTest("root may write everywhere")
        closed = [self.desk.settings_file, self.desk.c("MERIDIA\\_Local.ini"), self.desk.main, self.desk.c("MERIDIA")]
        for path in closed:
            path.chmod(0o555 if path.is_dir() else 0o444)
            self.addCleanup(path.chmod, 0o755)
        program = self.desk.launch(*self.desk.arguments(), "--trace")
        wait_for(lambda: "pronto" in program.output or program.process.poll() is not None, "the start")
        for words in (["ftp"], ["pianificate", "--postazione", "SERVER"]):
            self.run_once(*words)
        some_ticks()
        if program.process.poll() is None:
            program.stop()
        self.said += program.output + program.complaints
        self.check()


if __name__ == "__main__":
    unittest.main()
