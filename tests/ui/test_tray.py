"""Tray: hiding, coming back, ending, and work that goes on meanwhile."""

import time
import unittest

from screen import TRAY, Window, WindowScenario, click_tray_icon, run, tray_icons, wait_for
import fiscal_driver  # in the folder that screen puts on the path

QUESTION = "Chiudere il programma"


@unittest.skipUnless(TRAY, "needs a tray")
class Hiding(WindowScenario):
    def hide(self):
        self.window.press("Nascondi")
        wait_for(lambda: not self.window.is_visible(), "the window hidden")

    def test_a_click_on_the_icon_brings_the_hidden_window_back(self):
        self.hide()
        click_tray_icon()
        wait_for(self.window.is_visible, "the window back")
        self.assertEqual(len(tray_icons()), 1)

    def test_a_right_click_on_the_icon_does_nothing(self):
        self.hide()
        click_tray_icon(button=3)
        time.sleep(0.7)
        self.assertFalse(self.window.is_visible())

    def test_a_click_while_the_window_is_visible_changes_nothing(self):
        click_tray_icon()
        time.sleep(0.5)
        self.assertTrue(self.window.is_visible())
        self.assertEqual(len(tray_icons()), 1)

    def test_hiding_twice_leaves_one_icon(self):
        for _ in range(2):
            self.hide()
            click_tray_icon()
            wait_for(self.window.is_visible, "the window back")
        self.assertEqual(len(tray_icons()), 1)

    def test_the_icon_goes_with_the_program(self):
        wait_for(lambda: len(tray_icons()) == 1, "the icon")
        self.assertEqual(self.window.stop(), 0)
        wait_for(lambda: tray_icons() == [], "the icon gone")

    def test_a_second_copy_shows_the_window_of_the_first_and_ends(self):
        self.hide()
        (self.desk.main / "Orbis" / "waiting.txt").write_text("x")
        second = Window(self.desk)
        self.assertEqual(second.process.wait(15), 0)
        wait_for(self.window.is_visible, "the first copy's window")
        self.assertEqual(self.desk.jobs(), ["waiting.txt"])  # a start would have emptied the folder

    def test_a_fiscal_job_passes_while_the_window_is_hidden(self):
        self.window.kill()
        fiscal_driver.configure(self.desk, "CASIO/DITRON - 24", MF_Type="24 - DITRON ZIP")
        self.window = Window(self.desk)
        wait_for(self.window.is_visible, "the window")
        self.hide()
        self.desk.drop("scontrino.txt", "VENDITA 1,00\r\n")
        wait_for(lambda: self.desk.c("MF\\in.txt").exists(), "the driver's input file")
        self.assertEqual(self.desk.c("MF\\in.txt").read_text(), "VENDITA 1,00\n")
        wait_for(lambda: self.desk.jobs("IN") == [], "the job deleted")
        click_tray_icon()
        wait_for(self.window.is_visible, "the window back")
        wait_for(lambda: any(label.endswith("scontrino.txt eseguito") for label in self.window.labels()), "the job in the strip")


class WithoutTray(WindowScenario):
    @unittest.skipIf(TRAY, "needs a desktop without a tray")
    def test_hiding_makes_the_window_small_instead(self):
        self.window.press("Nascondi")
        wait_for(lambda: not self.window.is_visible(), "the window small")
        identity = self.window.main_id()
        self.assertIn("Iconic", run("xprop", "-id", identity, "WM_STATE"))
        self.assertIn("_NET_WM_STATE_HIDDEN", run("xprop", "-id", identity, "_NET_WM_STATE"))
        run("xdotool", "windowmap", identity)
        wait_for(self.window.is_visible, "the window back")


class Exit(WindowScenario):
    def ask(self):
        self.window.menu("File", "Esci")
        wait_for(lambda: self.question() is not None, "the question")

    def question(self):
        for frame in self.window.frames().values():
            if QUESTION in self.window.words(frame):
                return frame
        return None

    def answer(self, button):
        self.window.press(button, self.question())

    def test_yes_ends_the_program(self):
        self.ask()
        self.answer("Sì")
        self.assertEqual(self.window.process.wait(15), 0)

    def test_no_keeps_it_running(self):
        self.ask()
        self.answer("No")
        wait_for(lambda: self.question() is None, "the question gone")
        time.sleep(0.5)
        self.assertTrue(self.window.running())
        self.assertTrue(self.window.is_visible())

    def test_the_windows_own_button_ends_the_program_without_a_question(self):
        run("xdotool", "key", "alt+F4")
        self.assertEqual(self.window.process.wait(15), 0)

    def test_a_wish_to_stop_is_heeded_while_the_question_is_open(self):
        self.ask()
        self.assertEqual(self.window.stop(), 0)

    def test_a_wish_to_stop_is_heeded_while_a_file_is_looked_for(self):
        self.window.press("Sfoglia: File per il driver")
        self.window.dialog("File per il driver")
        self.assertEqual(self.window.stop(), 0)

    def test_polling_goes_on_while_the_question_and_while_a_menu_is_open(self):
        self.window.kill()
        fiscal_driver.configure(self.desk, "CASIO/DITRON - 24", MF_Type="24 - DITRON ZIP")
        fiscal_driver.watching(self.desk, self.desk.c("MF\\in.txt"))
        self.window = Window(self.desk)
        wait_for(self.window.is_visible, "the window")
        self.ask()
        self.desk.drop("one.txt", "UNO\r\n")
        wait_for(lambda: fiscal_driver.receipts(self.desk) == ["UNO\r\n"], "the receipt while the question is open")
        self.assertIsNotNone(self.question())
        self.answer("No")
        wait_for(lambda: self.question() is None, "the question gone")
        self.window.press("Strumenti")
        self.desk.drop("two.txt", "DUE\r\n")
        wait_for(lambda: fiscal_driver.receipts(self.desk) == ["UNO\r\n", "DUE\r\n"], "the receipt while a menu is open")


class Blocking(WindowScenario):
    """A driver that never answers: the window waits with the job, and polls again afterwards."""

    def setUp(self):
        super().setUp()
        self.window.kill()
        never = dict(MF_Driver=fiscal_driver.command_line(self.desk, "--never"))
        fiscal_driver.configure(self.desk, "ONDA DRIVER - 91", delay=2, **never)
        self.window = Window(self.desk)
        wait_for(self.window.is_visible, "the window")

    def test_a_waiting_job_blocks_the_window_until_it_is_given_up(self):
        self.window.control("Salva")
        begun = time.monotonic()
        self.desk.drop("one.txt", "UNO\r\n")
        wait_for(lambda: self.desk.jobs() == [], "the job taken")
        self.window.press("Salva")  # heard only once the window works again
        wait_for(lambda: "Impostazioni salvate" in self.window.labels(), "the window at work again")
        self.assertGreater(time.monotonic() - begun, 1.5)
        self.assertEqual(self.desk.jobs("IN"), [])
        self.assertTrue(any(label.endswith("one.txt con errori") for label in self.window.labels()), self.window.labels())


if __name__ == "__main__":
    unittest.main()
