"""FTP transfers over a dial-up line: a client on the path that notes what it is told."""

import os
import unittest

from ftp_servers import PASSWORD, USER, PlainServer
from harness import ON_WINDOWS, Scenario


@unittest.skipIf(ON_WINDOWS, "the dial-up client is a script")
class DialUp(Scenario):
    def setUp(self):
        super().setUp()
        self.home = self.desk.root / "server"
        self.home.mkdir()
        (self.home / "listino.txt").write_bytes(b"listino")
        self.desk.c("dati").mkdir()
        self.server = PlainServer(self.home)
        self.addCleanup(self.server.close)
        self.batch_file = self.desk.root / "cassaDial.bat"
        self.notes = self.desk.root / "telefonate"
        self.programs = self.desk.root / "programmi"
        self.programs.mkdir()
        self.client("exit 0")
        self.desk.settings(
            FTP_Indirizzo=self.server.address,
            FTP_User=USER,
            FTP_Pw=PASSWORD,
            FTP_Azione=2,
            FTP_Directory="C:\\dati\\",
            FTP_NomeFile="listino.txt",
            WEB_chkDial=-1,
            Int_Indirizzo="Provider",
            Ind_User="mario",
            Ind_Pw="parola",
        )

    def client(self, end):
        """The client notes its arguments and the batch file's permissions, then ends so."""
        script = self.programs / "rasdial"
        script.write_text(f'#!/bin/sh\necho "$(stat -c %a {self.batch_file}) $*" >> {self.notes}\n{end}\n')
        script.chmod(0o755)

    def run_ftp(self):
        path = f"{self.programs}:{os.environ['PATH']}"
        program = self.desk.launch(*self.desk.arguments(), "ftp", environment={"PATH": path})
        status = program.wait()
        self.assertEqual(self.desk.read_settings()["FTP_Esito"], "-1" if status == 0 else "0")
        return status

    def calls(self):
        return self.notes.read_text().splitlines() if self.notes.exists() else []

    def test_the_transfer_stands_between_connect_and_disconnect(self):
        self.assertEqual(self.run_ftp(), 0)
        self.assertEqual(self.calls(), ["600 Provider mario parola", "600 /disconnect"])
        self.assertEqual((self.desk.c("dati") / "listino.txt").read_bytes(), b"listino")

    def test_the_batch_file_lies_beside_the_program_folder_and_holds_the_last_line(self):
        self.run_ftp()
        self.assertEqual(self.batch_file.read_bytes(), b"rasdial /disconnect\r\n")

    def test_a_connect_that_fails_is_not_noticed(self):
        self.client("exit 1")
        self.assertEqual(self.run_ftp(), 0)
        self.assertEqual(len(self.calls()), 2)

    def test_without_a_client_the_transfer_goes_its_way(self):
        (self.programs / "rasdial").unlink()
        self.assertEqual(self.run_ftp(), 0)

    def test_a_hang_up_that_cannot_be_made_spoils_the_transfer(self):
        self.client(f"sed -i 's/^Ind_Pw=.*/Ind_Pw=\\r/' {self.desk.settings_file}")
        self.assertEqual(self.run_ftp(), 1)
        self.assertEqual(len(self.calls()), 1)
        self.assertEqual((self.desk.c("dati") / "listino.txt").read_bytes(), b"listino")

    def test_the_line_is_hung_up_after_a_transfer_that_failed(self):
        (self.home / "listino.txt").unlink()
        self.assertEqual(self.run_ftp(), 1)
        self.assertEqual(len(self.calls()), 2)

    def test_an_incomplete_account_dials_and_transfers_nothing(self):
        self.desk.settings(Ind_User="")
        self.assertEqual(self.run_ftp(), 1)
        self.assertEqual(self.calls(), [])
        self.assertEqual(self.server.commands, [])
        self.assertFalse(self.batch_file.exists())


if __name__ == "__main__":
    unittest.main()
