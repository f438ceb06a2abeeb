"""Documents of the bridge on printers of Windows: the drivers' own fonts, the order of texts, pictures, ports."""

import struct
import unittest

from device_printer import DevicePrinter, printed
from harness import Scenario, some_ticks, wait_for


def bitmap(width, height):
    """A red bitmap file of 24 bits a pixel."""
    line = b"\x00\x00\xff" * width + b"\x00" * (-width * 3 % 4)
    header = struct.pack("<IiiHHIIiiII", 40, width, height, 1, 24, 0, len(line) * height, 3780, 3780, 0, 0)
    return b"BM" + struct.pack("<IHHI", 54 + len(line) * height, 0, 0, 54) + header + line * height


class DeviceFonts(Scenario):
    def test_a_courtesy_receipt_goes_to_the_printer_on_its_port_in_the_fonts_of_its_driver(self):
        printer = DevicePrinter(self.desk, "SAMSUNG SRP-500", "COM3:", ["FontControl", "FontA15cpi", "FontB17cpi"])
        self.desk.settings(Cort_Active=-1, Cort_Printer="SAMSUNG", Cort_Com=3, Cort_Logo=0)
        program = self.desk.start("--trace")
        self.desk.drop("preconto.txt", "Tavolo 4#0#9#0\r\nCaffe#0#8#0\r\nTotale#0#18#5#1#R\r\n#1\r\n", folder="CortOrbis")
        wait_for(lambda: len(printer.documents()) == 1 and "%%EOF" in printer.documents()[0], "the document", 30)
        self.assertEqual(
            printed(printer.documents()[0]),
            [
                ("FontControl", "w"),
                ("FontA15cpi", "Tavolo 4"),
                ("FontB17cpi", "Caffe"),
                ("FontA15cpi", "Totale"),
                ("FontControl", "P"),
            ],
        )
        program.stop()
        self.assertEqual([line for line in program.complaints if "FontName" in line], [])

    def test_the_logo_is_a_document_of_its_own_before_the_receipt(self):
        printer = DevicePrinter(self.desk, "SAMSUNG SRP-500", "COM3:", ["FontControl", "FontA15cpi", "FontB17cpi"])
        self.desk.c("MERIDIA\\logo.bmp").write_bytes(bitmap(24, 10))
        self.desk.settings(
            Cort_Active=-1, Cort_Printer="SAMSUNG", Cort_Com=3, Cort_Logo=-1, Cort_File="C:\\MERIDIA\\logo.bmp"
        )
        self.desk.start()
        self.desk.drop("preconto.txt", "Totale#0#9#0\r\n#1\r\n", folder="CortOrbis")
        wait_for(lambda: len(printer.documents()) == 2 and "%%EOF" in printer.documents()[1], "both documents", 30)
        logo, receipt = printer.documents()
        self.assertEqual(printed(logo), [])
        self.assertRegex(logo, r"\b24 10 8\b|/Width 24")
        self.assertEqual(printed(receipt)[1], ("FontA15cpi", "Totale"))

    def test_a_slip_is_printed_twice_in_both_fonts_of_its_layout(self):
        printer = DevicePrinter(self.desk, "EPSON TM-L90 Receipt", "LPT1:", ["fontA11", "fontB12"])
        self.desk.settings(RF_Active=-1, RF_Stampante="EPSON TM-L90 Receipt", RF_Seriale=1, RF_File="C:\\MERIDIA\\rf.txt")
        program = self.desk.start("--trace")
        job = self.desk.c("MERIDIA\\rf.txt")
        job.write_bytes(b"I1 Bar Centrale\r\nI2 Ricevuta 7\r\nRR Cena\r\nRR Vino\r\n")
        wait_for(lambda: len(printer.documents()) == 1 and "%%EOF" in printer.documents()[0], "the document", 30)
        wait_for(lambda: not job.exists(), "the job deleted")
        shown = [(font, text) for font, text in printed(printer.documents()[0]) if text.strip()]
        copy = [("fontB12", "Bar Centrale"), ("fontA11", "Ricevuta 7"), ("fontA11", "Cena"), ("fontA11", "Vino")]
        self.assertEqual(shown, copy * 2)
        program.stop()
        # The empty statement that opens the document comes before the first font.
        self.assertEqual([line for line in program.complaints if "FontName font" in line], [])

    def test_nothing_of_a_slip_that_cannot_be_read_is_printed(self):
        name = "EPSON TM-U295 Slip"
        printer = DevicePrinter(self.desk, name, "LPT1:", ["fontA11", "fontB12"])
        self.desk.settings(RF_Active=-1, RF_Stampante=name, RF_Seriale=1, RF_File="C:\\MERIDIA\\rf.txt")
        program = self.desk.start("--trace")
        job = self.desk.c("MERIDIA\\rf.txt")
        job.write_bytes(b"I1 PERDUTA UNO\r\nI2 PERDUTA DUE\r\nI\r\n")
        wait_for(lambda: any("LanciaFileRF" in line for line in program.complaints), "the record that is too short", 30)
        some_ticks()
        self.assertTrue(job.exists())
        self.assertEqual(printer.documents(), [])
        self.desk.write_whole(job, "I1 Bar Centrale\r\nI2 Ricevuta 7\r\nRR Cena\r\n")
        wait_for(lambda: not job.exists(), "the whole slip printed", 30)
        wait_for(lambda: printer.documents() and "%%EOF" in printer.documents()[-1], "the document", 30)
        program.stop()
        texts = [text for document in printer.documents() for _, text in printed(document)]
        self.assertIn("Cena", texts)
        self.assertEqual([text for text in texts if "PERDUTA" in text], [])

    def test_a_face_that_the_driver_lacks_is_told(self):
        printer = DevicePrinter(self.desk, "SAMSUNG SRP-500", "COM3:", ["FontControl"])
        self.desk.settings(Cort_Active=-1, Cort_Printer="SAMSUNG", Cort_Com=3, Cort_Logo=0)
        program = self.desk.start("--trace")
        self.desk.drop("preconto.txt", "Totale#0#9#0\r\n#1\r\n", folder="CortOrbis")
        wait_for(lambda: len(printer.documents()) == 1, "the document", 30)
        program.stop()
        told = [line for line in program.complaints if "FontA15cpi" in line]
        self.assertEqual(len(told), 1, program.complaints)
        self.assertIn("non ha questo carattere", told[0])

    def test_a_driver_without_the_control_font_is_told_of_by_the_check(self):
        DevicePrinter(self.desk, "SAMSUNG SRP-500", "COM3:", ["FontA15cpi"])
        self.assertIn("control-font-missing", self.checked())

    def test_a_driver_with_the_control_font_is_in_order(self):
        DevicePrinter(self.desk, "SAMSUNG SRP-500", "COM3:", ["FontA15cpi", "FontControl"])
        self.assertNotIn("control-font-missing", self.checked())

    def checked(self):
        self.desk.settings(Orbis_Setting=0, Cort_Active=-1, Cort_Printer="SAMSUNG", Cort_Com=3, Cort_Logo=0)
        program = self.desk.launch(*self.desk.arguments(), "controlla", "--json")
        program.wait(60)
        self.assertTrue(program.output, program.complaints)
        return "\n".join(program.output)

    def test_a_printer_that_asks_for_a_file_name_is_refused_and_the_next_job_is_printed(self):
        DevicePrinter(self.desk, "Stampa in un file", "FILE:", ["FontA11"])
        self.desk.settings(Cort_Active=-1, Cort_Printer="OLIVETTI PRT100 NonFiscale", Cort_Com="LPT7", Cort_Logo=0)
        program = self.desk.start("--trace")
        for number in (1, 2):
            self.desk.drop(f"preconto{number}.txt", "N:SCO:TXT:Caffe\r\n", folder="CortOrbis")
            wait_for(lambda: not self.desk.jobs("CortOrbis") and not self.desk.jobs("CortIN"), "the job taken", 30)
        program.stop()
        refused = [line for line in program.complaints if "chiede il nome di un file" in line]
        self.assertGreaterEqual(len(refused), 2, program.complaints)
        self.assertIn("FILE:", refused[0])


if __name__ == "__main__":
    unittest.main()
