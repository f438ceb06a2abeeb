"""Messages that a tick raises: they show, and the jobs go on."""

import unittest

from screen import WindowScenario, wait_for

NOT_FOUND = "Stampante NON trovata"


class Notices(WindowScenario):
    settings = dict(Orbis_Setting=0, CORT_Active=-1, CORT_Printer="SAMSUNG", CORT_COM=3)

    def notices(self):
        return [words for words in (self.window.words(frame) for _, frame in self.window.all_frames()) if NOT_FOUND in words]

    def print_one(self, name):
        self.desk.drop(name, "Totale\r\n#1\r\n", "CortOrbis")
        wait_for(lambda: not self.desk.jobs("CortOrbis") and not self.desk.jobs("CortIN"), f"{name} taken")

    def test_a_message_does_not_keep_the_next_job_waiting_and_shows_once_with_its_count(self):
        self.print_one("1.txt")
        wait_for(lambda: len(self.notices()) == 1, "the message")
        self.assertRegex(self.notices()[0], r"Alle \d\d:\d\d:\d\d")
        self.print_one("2.txt")
        self.print_one("3.txt")
        wait_for(lambda: "3 volte, l'ultima alle " in "".join(self.notices()), "the count")
        self.assertEqual(len(self.notices()), 1)

    def test_a_message_that_was_closed_comes_anew(self):
        self.print_one("1.txt")
        wait_for(self.notices, "the message")
        frame = next(frame for _, frame in self.window.all_frames() if NOT_FOUND in self.window.words(frame))
        self.window.press("OK", frame)
        wait_for(lambda: not self.notices(), "the message gone")
        self.print_one("2.txt")
        wait_for(self.notices, "the message again")
        self.assertRegex(self.notices()[0], r"Alle \d\d:\d\d:\d\d")

    def test_it_ends_with_the_program(self):
        self.print_one("1.txt")
        wait_for(self.notices, "the message")
        self.assertEqual(self.window.stop(), 0)


if __name__ == "__main__":
    unittest.main()
