"""FTP transfers requested in the settings file, against real servers on loopback."""

import os
import time
import unittest

from ftp_servers import PASSWORD, USER, HangingUpServer, PlainServer, SilentServer, StallingServer, TlsServer
from harness import ON_WINDOWS, PROGRAM, WINDOW_PROGRAM, Program, Scenario, wait_for

UPLOAD = 1
DOWNLOAD = 2
BIG = 200 * 1024 * 1024


class FtpScenario(Scenario):
    def setUp(self):
        super().setUp()
        self.home = self.desk.root / "server"
        self.home.mkdir()
        self.folder = self.desk.c("dati")
        self.folder.mkdir()

    def serve(self, server):
        self.addCleanup(server.close)
        return server

    def request(self, server, action, name="chiusura.txt", password=PASSWORD, scheme="", **more):
        self.desk.settings(
            FTP_Indirizzo=scheme + server.address,
            FTP_User=USER,
            FTP_Pw=password,
            FTP_Azione=action,
            FTP_Directory="C:\\dati\\",
            FTP_NomeFile=name,
            **more,
        )

    def run_ftp(self, environment=None, seconds=60):
        """Runs the command once; its status and the answer must agree, and the request must be gone."""
        program = self.desk.launch(*self.desk.arguments(), "--trace", "ftp", environment=environment)
        status = program.wait(seconds)
        self.complaints = "\n".join(program.complaints)
        settings = self.desk.read_settings()
        self.assertEqual(settings["FTP_Finish"], "Finito")
        self.assertEqual(settings["FTP_Azione"], "")
        self.assertEqual(settings["FTP_NomeFile"], "")
        self.assertEqual(settings["FTP_Esito"], "-1" if status == 0 else "0")
        self.assertNotIn(PASSWORD, self.complaints)
        self.assertEqual(program.output, [])
        return status

    def remote_namesake(self, name="chiusura.txt"):
        """The file that an upload deletes first: its name on the server is the whole local path."""
        return self.home / f"C:\\dati\\{name}"

    def nothing_left_over(self, *names):
        self.assertEqual(sorted(entry.name for entry in self.folder.iterdir()), sorted(names))


class Transfers(FtpScenario):
    def test_get_replaces_the_local_file(self):
        server = self.serve(PlainServer(self.home))
        content = bytes(range(256)) * 40 + b"\r\n\n\r"
        (self.home / "chiusura.txt").write_bytes(content)
        (self.folder / "chiusura.txt").write_bytes(b"prima")
        self.request(server, DOWNLOAD)
        self.assertEqual(self.run_ftp(), 0, self.complaints)
        self.assertEqual((self.folder / "chiusura.txt").read_bytes(), content)
        self.nothing_left_over("chiusura.txt")

    def test_put_after_delete(self):
        server = self.serve(PlainServer(self.home))
        content = bytes(range(256)) * 40 + b"\r\n\n\r"
        (self.folder / "Chiusura.TXT").write_bytes(content)
        self.remote_namesake().write_bytes(b"vecchio")
        self.request(server, UPLOAD)
        self.assertEqual(self.run_ftp(), 0, self.complaints)
        self.assertFalse(self.remote_namesake().exists())
        self.assertEqual((self.home / "Chiusura.TXT").read_bytes(), content)

    def test_without_a_remote_namesake_nothing_is_put(self):
        server = self.serve(PlainServer(self.home))
        (self.folder / "chiusura.txt").write_bytes(b"nuovo")
        self.request(server, UPLOAD)
        self.assertEqual(self.run_ftp(), 1)
        self.assertEqual(list(self.home.iterdir()), [])

    def test_a_refused_delete_prevents_the_put(self):
        server = self.serve(PlainServer(self.home, permissions="elrafmwMT"))
        (self.folder / "chiusura.txt").write_bytes(b"nuovo")
        self.remote_namesake().write_bytes(b"vecchio")
        self.request(server, UPLOAD)
        self.assertEqual(self.run_ftp(), 1)
        self.assertIn("550", self.complaints)
        self.assertEqual([entry.name for entry in self.home.iterdir()], [self.remote_namesake().name])

    def test_a_missing_local_file_still_deletes(self):
        server = self.serve(PlainServer(self.home))
        self.remote_namesake().write_bytes(b"vecchio")
        self.request(server, UPLOAD)
        self.assertEqual(self.run_ftp(), 1)
        self.assertEqual(list(self.home.iterdir()), [])

    def test_a_missing_remote_file_leaves_the_local_one(self):
        server = self.serve(PlainServer(self.home))
        (self.folder / "chiusura.txt").write_bytes(b"prima")
        self.request(server, DOWNLOAD)
        self.assertEqual(self.run_ftp(), 1)
        self.assertEqual((self.folder / "chiusura.txt").read_bytes(), b"prima")
        self.nothing_left_over("chiusura.txt")

    def test_a_wrong_password(self):
        server = self.serve(PlainServer(self.home))
        (self.home / "chiusura.txt").write_bytes(b"x")
        self.request(server, DOWNLOAD, password="sbagliata")
        self.assertEqual(self.run_ftp(), 1)
        self.assertNotIn("sbagliata", self.complaints)
        self.nothing_left_over()

    def test_no_action_transfers_nothing(self):
        server = self.serve(PlainServer(self.home))
        for action in ("", 3):
            self.request(server, action)
            self.assertEqual(self.run_ftp(), 1)
        self.assertEqual(server.commands, [])

    def test_a_server_that_hangs_up_in_mid_transfer_leaves_the_local_file(self):
        server = self.serve(HangingUpServer(b"x" * 300_000))
        (self.folder / "chiusura.txt").write_bytes(b"prima")
        self.request(server, DOWNLOAD)
        self.assertEqual(self.run_ftp(), 1)
        self.assertEqual((self.folder / "chiusura.txt").read_bytes(), b"prima")
        self.nothing_left_over("chiusura.txt")

    @unittest.skipUnless(ON_WINDOWS, "the client's own tests show it with shorter limits")
    def test_a_server_that_stalls_in_mid_transfer_is_given_up_after_a_minute(self):
        server = self.serve(StallingServer(b"x" * 300_000))
        (self.folder / "chiusura.txt").write_bytes(b"prima")
        self.request(server, DOWNLOAD)
        start = time.monotonic()
        self.assertEqual(self.run_ftp(seconds=150), 1)
        self.assertGreater(time.monotonic() - start, 59)
        # Wine's client holds its unfinished file until the program ends, so that this one stays.
        self.assertEqual((self.folder / "chiusura.txt").read_bytes(), b"prima")

    @unittest.skipIf(ON_WINDOWS, "the system's own limits hold there")
    def test_a_stop_ends_the_transfer_and_says_so(self):
        self.stop_ends_the_transfer_of(PROGRAM)

    @unittest.skipIf(ON_WINDOWS, "a program without a console is asked in another way there")
    @unittest.skipUnless(WINDOW_PROGRAM.is_file(), "the program with a window is not built")
    def test_a_stop_ends_the_transfer_of_the_program_with_a_window_too(self):
        self.stop_ends_the_transfer_of(WINDOW_PROGRAM)

    def stop_ends_the_transfer_of(self, program_file):
        self.request(self.serve(SilentServer()), DOWNLOAD)
        program = self.desk.launch(*self.desk.arguments(), "ftp", program=program_file)
        wait_for(lambda: self.desk.read_settings().get("FTP_Finish") == "In Corso", "the transfer under way")
        self.assertEqual(program.stop(), 1)
        settings = self.desk.read_settings()
        self.assertEqual((settings["FTP_Finish"], settings["FTP_Esito"]), ("Finito", "0"))
        self.nothing_left_over()

    def test_a_server_that_never_answers_is_given_up_after_15_seconds(self):
        server = self.serve(SilentServer())
        self.request(server, DOWNLOAD)
        start = time.monotonic()
        self.assertEqual(self.run_ftp(), 1)
        self.assertTrue(14.5 < time.monotonic() - start < (30 if ON_WINDOWS else 18), time.monotonic() - start)

    def test_names_and_accounts_reach_the_server_unchanged(self):
        user = "d'àcqua@x #1"
        password = "p:w/%41 «è»"
        server = self.serve(
            PlainServer(
                self.home,
                user.encode("cp1252").decode("utf-8", "surrogateescape"),
                password.encode("cp1252").decode("utf-8", "surrogateescape"),
            )
        )
        name = "perché no;type=i %20&#.txt"
        (self.home / name.encode("cp1252").decode("utf-8", "surrogateescape")).write_bytes(b"dati")
        self.request(server, DOWNLOAD, name=name)
        self.desk.settings(FTP_User=user, FTP_Pw=password)
        self.assertEqual(self.run_ftp(), 0, self.complaints)
        self.assertEqual((self.folder / name).read_bytes(), b"dati")

    def test_beside_a_running_copy_nothing_else_is_touched(self):
        server = self.serve(PlainServer(self.home))
        (self.home / "chiusura.txt").write_bytes(b"dati")
        resident = self.desk.start()
        self.desk.settings(MF_Vuoto=0, MF_Active=-1, MF_Type="24 - DITRON ZIP")
        self.desk.drop("attesa.txt")
        self.request(server, DOWNLOAD)
        before = {key: value for key, value in self.desk.read_settings().items() if not key.startswith("FTP_")}
        self.assertEqual(self.run_ftp(), 0, self.complaints)
        after = {key: value for key, value in self.desk.read_settings().items() if not key.startswith("FTP_")}
        self.assertEqual(after, before)
        self.assertEqual(self.desk.jobs(), ["attesa.txt"])
        self.assertEqual(resident.stop(), 0)

    def test_an_empty_folder_gains_no_job_folders(self):
        server = self.serve(PlainServer(self.home))
        self.request(server, DOWNLOAD)
        self.run_ftp()
        self.assertEqual([entry.name for entry in self.desk.main.iterdir() if entry.is_dir()], [])


@unittest.skipIf(ON_WINDOWS, "the system's own client has no TLS")
class Tls(FtpScenario):
    def transfer_both_ways(self, server, scheme):
        trusting = {"SSL_CERT_FILE": str(server.certificate)}
        (self.home / "chiusura.txt").write_bytes(b"dati")
        (self.home / "chiusura.txt").chmod(0o644)
        self.request(server, DOWNLOAD, scheme=scheme)
        self.assertEqual(self.run_ftp(trusting), 0, self.complaints)
        self.assertEqual((self.folder / "chiusura.txt").read_bytes(), b"dati")
        self.remote_namesake().write_bytes(b"")
        (self.folder / "chiusura.txt").write_bytes(b"indietro" * 10_000)
        self.request(server, UPLOAD, scheme=scheme)
        (self.home / "chiusura.txt").unlink()
        self.assertEqual(self.run_ftp(trusting), 0, self.complaints)
        self.assertEqual((self.home / "chiusura.txt").read_bytes(), b"indietro" * 10_000)

    def serve_tls(self, **how):
        self.desk.root.chmod(0o755)
        return self.serve(TlsServer(self.desk.root / "tls", self.home, **how))

    def test_on_request(self):
        self.transfer_both_ways(self.serve_tls(), "ftpes://")

    def test_from_the_first_byte(self):
        self.transfer_both_ways(self.serve_tls(implicit=True), "ftps://")

    def test_a_certificate_that_nobody_vouches_for_is_refused(self):
        server = self.serve_tls()
        (self.home / "chiusura.txt").write_bytes(b"dati")
        self.request(server, DOWNLOAD, scheme="ftpes://")
        self.assertEqual(self.run_ftp(), 1)
        self.assertIn("certificato", self.complaints)
        self.nothing_left_over()

    def test_a_server_that_demands_tls_refuses_a_plain_request(self):
        server = self.serve_tls()
        self.request(server, DOWNLOAD)
        self.assertEqual(self.run_ftp(), 1)


def peak_memory(process):
    """The most that a process ever held, in KiB, looked at until it ends."""
    peak = 0
    while process.poll() is None:
        try:
            with open(f"/proc/{process.pid}/status") as status:
                peak = next((int(line.split()[1]) for line in status if line.startswith("VmHWM")), peak)
        except OSError:
            pass
        time.sleep(0.002)
    return peak


@unittest.skipIf(ON_WINDOWS, "memory is measured natively")
class BigTransfers(FtpScenario):
    ALLOWANCE = 4 * 1024  # KiB

    def run_measured(self):
        program = Program([*self.desk.arguments(), "ftp"], self.desk.environment())
        self.desk.programs.append(program)
        peak = peak_memory(program.process)
        self.assertEqual(program.wait(), 0)
        return peak

    def test_200_mib_both_ways_take_no_more_memory_than_a_byte(self):
        server = self.serve(PlainServer(self.home))
        block = os.urandom(1024 * 1024)
        peaks = {}
        for size in (1, BIG):
            content = block * (size // len(block)) if size > 1 else b"x"
            (self.home / "chiusura.txt").write_bytes(content)
            self.request(server, DOWNLOAD)
            peaks["get", size] = self.run_measured()
            self.assertTrue((self.folder / "chiusura.txt").read_bytes() == content)
            (self.home / "chiusura.txt").unlink()
            self.remote_namesake().write_bytes(b"")
            self.request(server, UPLOAD)
            peaks["put", size] = self.run_measured()
            self.assertTrue((self.home / "chiusura.txt").read_bytes() == content)
        print(f"peak memory in KiB: {peaks}")
        for way in ("get", "put"):
            self.assertLess(peaks[way, BIG], peaks[way, 1] + self.ALLOWANCE)


if __name__ == "__main__":
    unittest.main()
