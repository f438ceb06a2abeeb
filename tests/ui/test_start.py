"""Start: what the program with the window says when it cannot open one, or need not."""

import os
import subprocess
import unittest

import fiscal_driver
from screen import PROGRAM, Desk, Window, run, wait_for


class Start(unittest.TestCase):
    def setUp(self):
        self.desk = Desk()
        self.addCleanup(self.desk.close)

    def run_program(self, *arguments, **environment):
        return subprocess.run(
            [PROGRAM, *arguments], env={**os.environ, **environment}, capture_output=True, text=True, encoding="utf-8", timeout=30
        )

    def test_without_a_display_it_names_the_program_for_that(self):
        for display in ("", ":9876"):
            ended = self.run_program(*self.desk.arguments(), DISPLAY=display)
            self.assertEqual(ended.returncode, 2)
            self.assertEqual(ended.stderr.count("\n"), 1, ended.stderr)
            self.assertIn("tellaxisd", ended.stderr)
        self.assertFalse(self.desk.settings_file.exists())

    def test_arguments_are_those_of_the_program_without_a_window(self):
        self.assertIn("--main-folder", self.run_program("--help").stdout)
        self.assertRegex(self.run_program("--version").stdout, r"^Tellaxis \d")
        for words in (["--interval", "presto"], ["stampa"], ["--mai"]):
            ended = self.run_program(*words)
            self.assertEqual(ended.returncode, 2, words)
            self.assertIn(words[0], ended.stderr)

    def test_an_unreadable_devices_file_is_named_with_its_line(self):
        (self.desk.main / "devices.toml").write_text("[[printer]]\nname = \n")
        ended = self.run_program(*self.desk.arguments())
        self.assertEqual(ended.returncode, 2)
        self.assertIn("devices.toml, riga 2, colonna 8", ended.stderr)

    def test_beside_a_copy_without_a_window_it_is_refused(self):
        self.desk.start()
        ended = self.run_program(*self.desk.arguments())
        self.assertEqual(ended.returncode, 3)
        self.assertIn("senza finestra", ended.stderr)

    def test_no_desktop_asks_its_windows_for_a_sign_of_life(self):
        window = Window(self.desk)
        self.addCleanup(window.kill)
        window.main()
        wait_for(window.is_visible, "the window")
        understood = run("xprop", "-id", window.main_id(), "WM_PROTOCOLS")
        self.assertIn("WM_DELETE_WINDOW", understood)
        self.assertNotIn("_NET_WM_PING", understood)

    def test_a_clean_end_lets_the_next_copy_start(self):
        for _ in range(2):
            window = Window(self.desk)
            window.main()
            wait_for(window.is_visible, "the window")
            self.assertEqual(window.stop(), 0)

    def test_the_metrics_are_written_at_the_first_tick_and_at_the_end(self):
        (self.desk.main / "devices.toml").write_text('[bridge]\nmetrics = "metriche.prom"\n')
        fiscal_driver.configure(self.desk, "CASIO/DITRON - 24", delay=0)
        window = Window(self.desk)
        self.addCleanup(window.kill)
        window.main()
        file = self.desk.main / "metriche.prom"
        wait_for(file.exists, "the first tick's file")
        self.assertIn('outcome="delivered"} 0\n', file.read_text("utf-8"))
        self.desk.drop("uno.txt")
        wait_for(lambda: not self.desk.jobs() and not self.desk.jobs("IN"), "the job done")
        self.assertEqual(window.stop(), 0)
        self.assertIn('outcome="delivered"} 1\n', file.read_text("utf-8"))


if __name__ == "__main__":
    unittest.main()
