"""Diagnosis: the window that says what is wrong, and tries the devices, while the bridge goes on."""

import socket
import time
import unittest

from screen import WindowScenario, rows_of, run, text_of, wait_for, walk

PRINTER = """
[[printer]]
name = "SAMSUNG SRP-500"
port = "COM4:"
target = "folder:spool"

[bridge]
midnight = true
diary = "diario"
"""


class DiagnosisScenario(WindowScenario):
    devices = PRINTER
    settings = dict(
        Orbis_Directory="C:\\MERIDIA",
        CORT_Active=-1,
        CORT_Printer="SAMSUNG",
        CORT_COM="4",
        RF_Active=-1,
        RF_File="C:\\RF\\ricevuta.txt",
        RF_Stampante="SAMSUNG SRP-500",
        RF_Seriale="COM4:",
    )

    def open(self):
        self.window.menu("Strumenti", "Diagnosi")
        frame = self.window.frame("Diagnosi")
        self.wait_until_checked(frame)
        return frame

    def says(self, frame, words):
        return any(words in label for label in self.window.labels(frame))

    def wait_until_checked(self, frame):
        wait_for(lambda: self.says(frame, "avvis"), "the findings")

    def findings(self, frame):
        return rows_of(self.window.table("Controlli", frame))

    def details(self, frame):
        return text_of(self.window.control("Dettagli", frame))

    def printed(self):
        return sorted((self.desk.main / "spool").glob("*.jsonl"))


class Diagnosis(DiagnosisScenario):
    def test_findings_have_device_state_text_and_remedy(self):
        frame = self.open()
        slip = [row for row in self.findings(frame) if row[0] == "Ricevuta fiscale" and row[1] == "ERRORE"]
        self.assertEqual(len(slip), 2, self.findings(frame))
        self.assertTrue(all(row[2] and row[3] for row in slip))
        running = [row for row in self.findings(frame) if "Il ponte è in funzione" in row[2]]
        self.assertIn(f"(processo {self.window.process.pid})", running[0][2])

    def test_the_first_error_is_shown_at_length_and_the_keyboard_goes_on_from_it(self):
        frame = self.open()
        first = self.details(frame)
        self.assertIn("ERRORE", first)
        self.assertIn("\nRimedio: ", first)
        run("xdotool", "key", "Down")
        wait_for(lambda: self.details(frame) != first, "the next finding")

    def test_looking_again_sees_what_was_mended(self):
        frame = self.open()
        missing = [row for row in self.findings(frame) if "C:\\RF" in row[2] and row[1] == "ERRORE"]
        self.assertEqual(len(missing), 1, self.findings(frame))
        self.desk.c("RF").mkdir()
        self.window.press("Controlla di nuovo", frame)
        wait_for(lambda: missing[0] not in self.findings(frame), "the finding gone")

    def test_a_sample_job_goes_the_way_of_every_job(self):
        frame = self.open()
        self.window.press("Prova preconto", frame)
        wait_for(lambda: self.says(frame, "Prova finita."), "the end of the trial")
        self.assertEqual(
            self.details(frame), "preconto: il ponte ha preso il lavoro di prova e l'ha finito; diario: fatto"
        )
        self.assertTrue(self.printed())
        self.window.press("Prova display", frame)
        wait_for(lambda: "la periferica è spenta" in self.details(frame), "what keeps the display from it")

    def test_there_is_one_of_it_and_it_closes(self):
        frame = self.open()
        self.window.press("Chiudi", frame)
        wait_for(lambda: "Diagnosi" not in self.window.frames(), "the window closed")
        self.open()
        self.assertEqual([title for title, _ in self.window.all_frames()].count("Diagnosi"), 1)
        self.assertTrue(self.window.running())


class NetworkDiagnosis(DiagnosisScenario):
    """A server that takes the connection and never says a word."""

    def setUp(self):
        server = socket.create_server(("127.0.0.1", 0))
        self.addCleanup(server.close)
        self.settings = {**DiagnosisScenario.settings, "FTP_Indirizzo": f"127.0.0.1:{server.getsockname()[1]}"}
        self.server = server
        super().setUp()

    def asked(self):
        self.server.settimeout(15)
        connection, _ = self.server.accept()
        self.addCleanup(connection.close)

    def test_the_server_is_asked_only_where_that_is_wanted_and_polling_goes_on_meanwhile(self):
        frame = self.open()
        self.server.setblocking(False)
        self.assertRaises(BlockingIOError, self.server.accept)
        self.window.press("Controlla anche la rete", frame)
        self.asked()
        self.assertTrue(self.says(frame, "Controllo in corso, anche della rete"))
        self.assertTrue(any(item.getRoleName() == "progress bar" for item in walk(frame)))
        self.desk.drop("preconto.txt", "Totale#0#18#5#1#R\r\n#1\r\n", folder="CortOrbis")
        wait_for(lambda: self.printed() and not self.desk.jobs("CortOrbis"), "the job printed")
        self.assertTrue(self.says(frame, "Controllo in corso, anche della rete"))

    def test_the_program_ends_without_waiting_for_the_server(self):
        frame = self.open()
        self.window.press("Controlla anche la rete", frame)
        self.asked()
        begun = time.monotonic()
        self.assertEqual(self.window.stop(), 0)
        self.assertLess(time.monotonic() - begun, 10)



if __name__ == "__main__":
    unittest.main()
