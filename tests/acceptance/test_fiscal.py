"""Fiscal jobs through the real program and the driver simulator."""

import time
import unittest

import fiscal_driver
from harness import ON_WINDOWS, Scenario, wait_for
from process_figures import processor_time


class ProgramDrivers(Scenario):
    def test_a_receipt_reaches_every_kind_of_driver_program(self):
        for number, protocol in enumerate(fiscal_driver.PROGRAM_PROTOCOLS, 1):
            with self.subTest(protocol):
                fiscal_driver.configure(self.desk, protocol, MF_Driver=fiscal_driver.command_line(self.desk))
                program = self.desk.start()
                self.desk.drop("scontrino.txt", f"scontrino {number}\r\n")
                wait_for(lambda: len(fiscal_driver.receipts(self.desk)) == number, "the receipt at the driver")
                wait_for(lambda: not self.desk.jobs("IN"), "the job deleted")
                self.assertEqual(fiscal_driver.receipts(self.desk)[-1], f"scontrino {number}\r\n")
                wait_for(lambda: not self.desk.c("MF\\out.txt").exists(), "the answer deleted")
                self.assertEqual(program.stop(), 0)
        self.assertEqual(self.desk.log(), [])

    def test_a_driver_that_never_answers_costs_102_waits_and_the_input_file(self):
        fiscal_driver.configure(
            self.desk, "ONDA DRIVER - 91", delay=2, MF_Driver=fiscal_driver.command_line(self.desk, "--never")
        )
        self.desk.start()
        self.desk.drop("scontrino.txt")
        wait_for(lambda: self.desk.c("MF\\in.txt").exists(), "the input file")
        begun = time.monotonic()
        wait_for(lambda: self.desk.log() != [], "the log line")
        self.assertGreater(time.monotonic() - begun, 102 * 0.02 - 0.1)
        self.assertFalse(self.desk.c("MF\\in.txt").exists())
        self.assertEqual(len(self.desk.log()), 1)
        line = self.desk.log()[0]
        self.assertTrue(line.startswith("File scontrino: "), line)
        self.assertTrue(line.endswith("\\IN\\scontrino.txt - non ha generato file di output C:\\MF\\out.txt"), line)
        wait_for(lambda: not self.desk.jobs("IN"), "the job deleted all the same")

    def test_a_driver_that_dies_is_a_driver_that_never_answers(self):
        fiscal_driver.configure(
            self.desk, "GLOBE DRIVER - 106", delay=1, MF_Driver=fiscal_driver.command_line(self.desk, "--dies")
        )
        self.desk.start()
        self.desk.drop("scontrino.txt")
        wait_for(lambda: len(self.desk.log()) == 1, "the log line")
        self.assertIn("non ha generato file di output", self.desk.log()[0])

    def test_a_late_driver_is_waited_for(self):
        fiscal_driver.configure(
            self.desk, "NUCLEO DRIVER - 93", delay=5, MF_Driver=fiscal_driver.command_line(self.desk, work=2000)
        )
        self.desk.start()
        self.desk.drop("a.txt", "uno")
        self.desk.drop("b.txt", "due")
        wait_for(lambda: len(fiscal_driver.receipts(self.desk)) == 2, "both receipts", 30)
        wait_for(lambda: not self.desk.jobs("IN"), "both jobs deleted")
        self.assertEqual(fiscal_driver.receipts(self.desk), ["uno", "due"])
        self.assertEqual(self.desk.log(), [])

    def test_an_answer_left_from_before_does_not_count(self):
        fiscal_driver.configure(
            self.desk, "ONDA DRIVER - 91", delay=1, MF_Driver=fiscal_driver.command_line(self.desk, "--never")
        )
        self.desk.c("MF\\out.txt").write_text("vecchia risposta")
        self.desk.start()
        wait_for(lambda: not self.desk.c("MF\\out.txt").exists(), "the old answer deleted")


class DriverPaths(Scenario):
    """A driver program whose path has blanks in it is started as the system starts it, quoted or not."""

    PROGRAM = "Program Files (x86)\\Onda Driver\\OndaDriver.exe"

    def setUp(self):
        super().setUp()
        fiscal_driver.install(self.desk, self.PROGRAM)

    def print_a_receipt(self):
        begun = time.monotonic()
        self.desk.drop("scontrino.txt", "VENDITA 12,50\r\n")
        wait_for(lambda: fiscal_driver.receipts(self.desk) == ["VENDITA 12,50\r\n"], "the receipt at the driver")
        wait_for(lambda: not self.desk.jobs("IN"), "the job deleted")
        self.assertLess(time.monotonic() - begun, 20, "no wait for a driver that was never started")
        self.assertEqual(self.desk.log(), [])

    def test_without_quotes(self):
        driver = f"C:\\{self.PROGRAM} {fiscal_driver.arguments(self.desk)}"
        fiscal_driver.configure(self.desk, "ONDA DRIVER - 91", delay=50, MF_Driver=driver)
        self.desk.start()
        self.print_a_receipt()

    def test_without_quotes_and_ending(self):
        driver = f"C:\\{self.PROGRAM.removesuffix('.exe')} {fiscal_driver.arguments(self.desk)}"
        fiscal_driver.configure(self.desk, "ONDA DRIVER - 91", delay=50, MF_Driver=driver)
        self.desk.start()
        self.print_a_receipt()

    def test_with_quotes(self):
        driver = f'"C:\\{self.PROGRAM}" {fiscal_driver.arguments(self.desk)}'
        fiscal_driver.configure(self.desk, "ONDA DRIVER - 91", delay=50, MF_Driver=driver)
        self.desk.start()
        self.print_a_receipt()

    def test_taken_over_from_the_point_of_sale(self):
        driver = f"C:\\{self.PROGRAM} {fiscal_driver.arguments(self.desk)}"
        local = f"[Varie]\r\nMisPre=91\r\nDelay=50\r\nMF_FILE_DRIVER={driver}\r\n"
        self.desk.c("MERIDIA\\_Local.ini").write_bytes(local.encode("cp1252"))
        fiscal_driver.configure(self.desk, "ONDA DRIVER - 91", Orbis_Setting=-1)
        self.desk.start()
        self.print_a_receipt()
        self.assertEqual(self.desk.read_settings()["MF_Driver"], driver)


class InputFileDrivers(Scenario):
    def test_receipts_reach_a_driver_that_consumes_its_input_file(self):
        fiscal_driver.configure(self.desk, "CASIO/DITRON - 24")
        fiscal_driver.watching(self.desk, self.desk.c("MF\\in.txt"), work=60)
        self.desk.start()
        for text in ("uno", "due", "tre"):
            self.desk.drop(text + ".txt", text)
            wait_for(lambda: not self.desk.jobs() and not self.desk.jobs("IN"), "the job taken")
        wait_for(lambda: len(fiscal_driver.receipts(self.desk)) == 3, "three receipts")
        self.assertEqual(fiscal_driver.receipts(self.desk), ["uno", "due", "tre"])
        self.assertEqual([line for line in self.desk.log() if "annullato" in line], [])

    def test_a_busy_driver_is_given_up_after_six_waits(self):
        fiscal_driver.configure(self.desk, "CASIO/DITRON - 24", delay=3)
        self.desk.c("MF\\in.txt").write_text("prima")
        self.desk.start()
        self.desk.drop("scontrino.txt", "dopo")
        wait_for(lambda: any("annullato" in line for line in self.desk.log()), "the job given up")
        self.assertEqual(self.desk.log()[:-1], ["Loop in attesa di liberare C:\\MF\\in.txt"] * 6)
        self.assertTrue(self.desk.log()[-1].startswith("Invio file annullato: "))
        wait_for(lambda: not self.desk.jobs("IN"), "the job deleted all the same")
        self.assertEqual(self.desk.c("MF\\in.txt").read_text(), "prima")

    def test_a_free_input_file_is_written_after_one_wait(self):
        fiscal_driver.configure(self.desk, "CASIO/DITRON - 24", delay=40)
        self.desk.start()
        self.desk.drop("scontrino.txt")
        wait_for(lambda: self.desk.log() != [], "the log line")
        begun = time.monotonic()
        wait_for(lambda: self.desk.c("MF\\in.txt").exists(), "the input file")
        self.assertGreater(time.monotonic() - begun, 0.3)
        self.assertTrue(self.desk.log()[0].startswith("Invio file: "))

    def test_a_zip_job_is_written_without_the_wait(self):
        fiscal_driver.configure(self.desk, "CASIO/DITRON - 24", delay=300)
        self.desk.start()
        self.desk.drop("DLY_ZIP.TXT")
        wait_for(lambda: self.desk.c("MF\\in.txt").exists(), "the input file", 2)


class FpMateDriver(Scenario):
    def setUp(self):
        super().setUp()
        self.desk.c("MERIDIA\\Epson").mkdir()
        self.desk.c("MERIDIA\\_Buffer").mkdir()
        self.target = self.desk.c("MERIDIA\\Epson\\Scontr.xml")

    def test_the_lowest_buffered_receipt_goes_first_and_one_a_job(self):
        fiscal_driver.configure(self.desk, "FPMate - 29", MF_Buffer=1)
        self.desk.c("MERIDIA\\_Buffer\\#0003").write_text("terzo")
        self.desk.c("MERIDIA\\_Buffer\\#0007").write_text("settimo")
        self.desk.start()
        self.desk.drop("segnale.txt")
        wait_for(self.target.exists, "the receipt in the folder")
        self.assertEqual(self.target.read_text(), "terzo")
        wait_for(lambda: not self.desk.jobs("IN"), "the job deleted")
        self.assertTrue(self.desk.c("MERIDIA\\_Buffer\\#0007").exists())
        self.assertFalse(self.desk.c("MERIDIA\\_Buffer\\#0003").exists())
        self.desk.drop("segnale.txt")
        wait_for(lambda: not self.desk.jobs() and not self.desk.jobs("IN"), "the second job done")
        self.assertEqual(self.target.read_text(), "terzo")
        self.target.unlink()
        self.desk.drop("segnale.txt")
        wait_for(self.target.exists, "the second receipt")
        self.assertEqual(self.target.read_text(), "settimo")

    def test_without_buffer_the_input_file_is_moved(self):
        fiscal_driver.configure(self.desk, "FPMate - 29")
        self.desk.c("MF\\in.txt").write_text("<xml/>")
        self.desk.start()
        self.desk.drop("segnale.txt")
        wait_for(self.target.exists, "the receipt in the folder")
        wait_for(lambda: not self.desk.c("MF\\in.txt").exists(), "the input file gone")
        self.assertEqual(self.target.read_text(), "<xml/>")

    @unittest.skipIf(ON_WINDOWS, "Wine does not see what native programs hold")
    def test_an_input_file_still_being_written_stays_and_goes_whole_with_the_next_job(self):
        fiscal_driver.configure(self.desk, "FPMate - 29")
        self.desk.start()
        receipt = self.desk.c("MF\\in.txt")
        with open(receipt, "wb", buffering=0) as writer:
            writer.write(b"<xml>")
            self.desk.drop("segnale.txt")
            wait_for(lambda: not self.desk.jobs() and not self.desk.jobs("IN"), "the job done")
            self.assertTrue(receipt.exists())
            self.assertFalse(self.target.exists())
            writer.write(b"</xml>")
        self.desk.drop("segnale.txt")
        wait_for(lambda: not receipt.exists(), "the input file gone")
        self.assertEqual(self.target.read_bytes(), b"<xml></xml>")

    def test_without_an_input_file_nothing_else_happens(self):
        fiscal_driver.configure(self.desk, "FPMate - 29")
        self.desk.start()
        self.desk.drop("segnale.txt")
        wait_for(lambda: not self.desk.jobs() and not self.desk.jobs("IN"), "the job deleted")
        self.assertFalse(self.target.exists())


class OtherProtocols(Scenario):
    def test_an_unknown_protocol_hands_nothing_over_and_removes_the_job(self):
        fiscal_driver.configure(self.desk, "Nessuno")
        self.desk.start()
        self.desk.drop("scontrino.txt")
        wait_for(lambda: not self.desk.jobs() and not self.desk.jobs("IN"), "the job deleted")
        self.assertFalse(self.desk.c("MF\\in.txt").exists())


class Waits(Scenario):
    def test_waiting_for_a_driver_takes_at_most_one_percent_of_a_processor(self):
        fiscal_driver.configure(
            self.desk, "ONDA DRIVER - 91", delay=300, MF_Driver=fiscal_driver.command_line(self.desk, "--never")
        )
        program = self.desk.start()
        self.desk.drop("scontrino.txt")
        wait_for(lambda: self.desk.c("MF\\in.txt").exists(), "the wait begun")
        before, begun = processor_time(program.process.pid), time.monotonic()
        time.sleep(3)
        share = (processor_time(program.process.pid) - before) / (time.monotonic() - begun)
        self.assertLess(share, 0.01)


if __name__ == "__main__":
    unittest.main()
