"""The windows of the tools menu under Wine: the diagnosis tries a printer, and the diary prints a job again."""

import unittest

from harness import wait_for
from wine_window import WineWindow

DEVICES = """
[[printer]]
name = "SAMSUNG SRP-500"
port = "COM4:"
target = "folder:spool"

[bridge]
diary = "diario"
archive = true
"""
JOB = "Totale#0#18#5#1#R\r\nCoperto 2,00#0#9#0#0#N\r\n#1\r\n"
WHITE = (255, 255, 255)
DESK = (0xC4, 0xC4, 0xC4)  # what the paper lies on


class ToolWindows(WineWindow):
    def setUp(self):
        super().setUp()
        (self.desk.main / "devices.toml").write_text(DEVICES)
        self.desk.settings(Orbis_Setting=0, CORT_Active=-1, CORT_Printer="SAMSUNG", CORT_COM=4)
        self.start()

    def open(self, letter, title):
        """Opens a window of the menu by its letter; the keys go to it from then on."""
        self.until(lambda: self.state(title) == "IsViewable", f"the window {title}", self.press, "Escape", "alt+t", letter)
        self.do("windowfocus", "--sync", self.window(title))

    def printed(self):
        return len(list((self.desk.main / "spool").glob("*.jsonl")))

    def test_the_diagnosis_tries_the_printer(self):
        self.open("d", "Diagnosi")
        self.until(lambda: self.printed() >= 1, "the sample printed", self.do, "key", "alt+p")

    def test_the_diary_prints_a_job_again_after_a_yes(self):
        self.desk.drop("preconto.txt", JOB, folder="CortOrbis")
        wait_for(lambda: self.printed() == 1 and not self.desk.jobs("CortIN"), "the job printed")
        self.open("i", "Diario")
        self.until(lambda: self.state("Ristampa") == "IsViewable", "the question", self.do, "key", "alt+r")
        self.assertEqual(self.printed(), 1)
        self.do("windowfocus", "--sync", self.window("Ristampa"))
        self.until(lambda: self.printed() == 2, "the job printed again", self.do, "key", "alt+r")

    def test_the_diary_shows_the_page_of_a_job_as_it_comes_out_of_the_printer(self):
        self.desk.drop("preconto.txt", JOB, folder="CortOrbis")
        wait_for(lambda: self.printed() == 1 and not self.desk.jobs("CortIN"), "the job printed")
        self.open("i", "Diario")
        wait_for(self.page_is_shown, "red letters on paper, the paper on its desk", 60)
        self.assertEqual(self.printed(), 1, "looking at a job prints nothing")

    def page_is_shown(self):
        """Nothing else in the window has these colours; the letters' edges are paler than the letters."""
        pixels = self.pixels("Diario")
        red = sum(1 for red, green, blue in pixels if red > 200 and green < 90 and blue < 90)
        return red > 40 and pixels.count(DESK) > 2000 and pixels.count(WHITE) > 2000


if __name__ == "__main__":
    unittest.main()
