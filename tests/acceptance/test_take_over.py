"""Take-over of all devices from the point-of-sale application's settings, compared byte for byte."""

import unittest
from pathlib import Path

import fiscal_driver
from harness import Scenario, wait_for
from serial_line import SerialScenario

DATA = Path(__file__).resolve().parent / "data" / "take_over"

# Keys of the point-of-sale side beside the code that a case is about.
DISPLAY_LINE = {"Dis_PortaCom": "3", "Dis_Parametri": "9600,N,8,1"}
FISCAL_LINE = {"CommPre": "2", "CF_SETTAGGIO": "19200,E,7,1", "Delay": "80"}
FTP_ACCOUNT = {"Si_FTP_ptp": "ftp.example.it:2121", "Si_NomeUT_ptp": "banco", "Si_Psw_ptp": "00segreta"}
DIAL_UP_ACCOUNT = {"GG_CONNESSIONE": "Provider", "GG_ACCOUNT": "utente", "GG_PSW": "12,50"}


def display(code, **more):
    return {"Banco_DisplayNoNd": code, **DISPLAY_LINE, **more}


def fiscal(code, **more):
    return {"MisPre": code, **FISCAL_LINE, **more}


# Each with the settings that the point-of-sale side has; blanks around a value count only within quotes.
CASES = {
    "display_1": display("1"),
    "display_2": display("2"),
    "display_4": display("4"),
    "display_999": display("999"),
    "display_3": display("3"),
    "display_0": display("0"),
    "display_empty": display(""),
    "display_02": display("02"),
    "display_blank_2": display('" 2"'),
    "display_2_blank": display('"2 "'),
    "display_trimmed_2": display("  2  "),
    "display_absent": DISPLAY_LINE,
    "display_2_blank_line": display("2", Dis_PortaCom="", Dis_Parametri='"  "'),
    "display_2_without_line": {"Banco_DisplayNoNd": "2"},
    "fiscal_24": fiscal("24"),
    "fiscal_91": fiscal("91"),
    "fiscal_93": fiscal("93"),
    "fiscal_106": fiscal("106"),
    "fiscal_0": fiscal("0"),
    "fiscal_29": fiscal("29"),
    "fiscal_25": fiscal("25"),
    "fiscal_empty": fiscal(""),
    "fiscal_blank_24": fiscal('" 24"'),
    "fiscal_24_blank": fiscal('"24 "'),
    "fiscal_trimmed_24": fiscal(" 24 "),
    "fiscal_absent": FISCAL_LINE,
    "fiscal_93_own_driver": fiscal("93", MF_FILE_DRIVER="D:\\Driver\\Nucleo.exe /q"),
    "fiscal_24_without_line": {"MisPre": "24"},
    "fiscal_91_without_line": {"MisPre": "91"},
    "fiscal_91_numbers": fiscal("91", CommPre="1.000", Delay="1.000"),
    "fiscal_24_numbers": fiscal("24", CommPre="1.000", Delay="1.000"),
    "accounts": {**FTP_ACCOUNT, **DIAL_UP_ACCOUNT},
    "accounts_without_password": {**FTP_ACCOUNT, **DIAL_UP_ACCOUNT, "GG_PSW": ""},
    "accounts_absent": {"RT_Access": "C:\\Access\\msaccess.exe"},
}


def settings_text(values):
    return ("[Varie]\r\n" + "".join(f"{key}={value}\r\n" for key, value in values.items())).encode("cp1252")


class Codes(Scenario):
    def take_over(self, before, values):
        """The settings file after one start, which found `before` in it."""
        self.desk.settings_file.unlink(missing_ok=True)
        if before is not None:
            self.desk.settings_file.write_bytes(before)
        local = self.desk.c("MERIDIA\\_Local.ini")
        local.unlink(missing_ok=True)
        if values is not None:
            local.write_bytes(settings_text(values))
        self.assertEqual(self.desk.start().stop(), 0)
        return self.desk.settings_file.read_bytes()

    def compare(self, name, before, values):
        self.assertEqual(
            self.take_over(before, values).decode("cp1252"), (DATA / f"{name}.ini").read_bytes().decode("cp1252"), name
        )

    def test_every_code_changes_the_settings_as_it_should(self):
        before = (DATA / "before.ini").read_bytes()
        for name, values in CASES.items():
            with self.subTest(name):
                self.compare(name, before, values)

    def test_a_fresh_settings_file_gets_everything(self):
        values = {**display("2"), **fiscal("91"), **FTP_ACCOUNT, **DIAL_UP_ACCOUNT}
        self.compare("fresh", None, values)

    def test_without_point_of_sale_settings_there_are_no_devices(self):
        self.compare("fresh_without_point_of_sale", None, None)

    def test_a_second_start_changes_nothing_more(self):
        values = {**display("2"), **fiscal("91"), **FTP_ACCOUNT, **DIAL_UP_ACCOUNT}
        once = self.take_over(None, values)
        self.assertEqual(self.take_over(once, values), once)

    def test_switched_off_only_the_courtesy_printer_is_taken_over(self):
        before = b"[VARIE]\r\nOrbis_Setting=0\r\nOrbis_Directory=C:\\MERIDIA\r\nDisplay_Active=-1\r\nMF_Active=-1\r\n"
        everything = {**display("1"), **fiscal("24"), **FTP_ACCOUNT, **DIAL_UP_ACCOUNT}
        self.compare("off", before, everything)
        self.compare("off_courtesy", before, {**everything, "BANCO_DS_STAMPANTE": "28", "BANCO_DS_STAMPANTE_C": "LPT1"})


class FirstJobs(SerialScenario):
    """An installation that is configured on the point-of-sale side alone."""

    def install(self, driver):
        (self.desk.drive_c / "MERIDIA" / "Casio").mkdir()
        values = {**display("2"), **fiscal(driver), "Delay": "1"}
        self.desk.c("MERIDIA\\_Local.ini").write_bytes(settings_text(values))
        # What the point-of-sale side does not know, the operator has set.
        self.desk.settings(
            Orbis_Directory="C:\\MERIDIA", Display_File="C:\\MERIDIA\\Display.txt"
        )

    def test_display_and_ditron_work_after_one_start(self):
        self.install("24")
        self.desk.start()
        self.desk.c("MERIDIA\\Display.txt").write_bytes(b"Totale\r\n12,50\r\n")
        expected = b"\x1bQATotale\r\x1bQB12,50\r"
        self.assertEqual(self.line.wait_for(expected), expected)
        self.desk.drop("scontrino.txt", "VENDITA 12,50\r\n")
        receipt = self.desk.c("MERIDIA\\Casio\\CAS.txt")
        wait_for(receipt.exists, "the receipt")
        self.assertEqual(receipt.read_bytes(), b"VENDITA 12,50\r\n")

    def test_display_and_onda_work_after_one_start(self):
        self.install("91")
        self.desk.c("MF").mkdir()
        local = self.desk.c("MERIDIA\\_Local.ini")
        driver = f"MF_FILE_DRIVER={fiscal_driver.command_line(self.desk)}\r\n"
        local.write_bytes(local.read_bytes() + driver.encode("cp1252"))
        self.desk.settings(MF_File="C:\\MF\\in.txt", MF_File_Output="C:\\MF\\out.txt")
        self.desk.start()
        self.desk.drop("scontrino.txt", "VENDITA 12,50\r\n")
        wait_for(lambda: fiscal_driver.receipts(self.desk), "the receipt")
        self.assertEqual(fiscal_driver.receipts(self.desk), ["VENDITA 12,50\r\n"])
        wait_for(lambda: not self.desk.jobs("IN"), "the job done")
        self.desk.c("MERIDIA\\Display.txt").write_bytes(b"Grazie\r\n")
        self.assertEqual(self.line.wait_for(b"\x1bQAGrazie\r"), b"\x1bQAGrazie\r")


if __name__ == "__main__":
    unittest.main()
