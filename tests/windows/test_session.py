"""The end of the user's session, and single operations of the program with the window, which need no screen."""

import os
import shutil
import subprocess
import unittest
from pathlib import Path

from harness import EMULATOR, PROGRAM, WINDOW_PROGRAM, Scenario, program_path, some_ticks
from screen import open_screen

END_SESSION = Path(os.environ["END_SESSION"])


@unittest.skipUnless(shutil.which("Xvfb"), "needs Xvfb")
class Session(Scenario):
    def setUp(self):
        super().setUp()
        self.screen = {"DISPLAY": open_screen(self)}
        self.program = self.desk.start("--trace", environment=self.screen)

    def _tell(self, what):
        told = subprocess.run(
            [*EMULATOR, str(END_SESSION), what],
            env={**self.desk.environment(), **self.screen},
            capture_output=True,
            text=True,
            check=True,
        )
        return int(told.stdout)

    def test_the_end_of_the_session_ends_the_bridge_and_waits_for_it(self):
        self.assertLess(self._tell("end"), 4000)
        self.assertEqual(self.program.wait(), 0)

    def test_an_end_that_another_program_refuses_changes_nothing(self):
        self._tell("stay")
        some_ticks()
        self.assertIsNone(self.program.process.poll())
        self.assertEqual(self.program.stop(), 0)


class OneOperation(Scenario):
    def _run(self, *words, program=WINDOW_PROGRAM, folder=None):
        command = [*EMULATOR, str(program), "--main-folder", program_path(folder or self.desk.main), *words]
        environment = {key: value for key, value in self.desk.environment().items() if key != "DISPLAY"}
        return subprocess.run(command, env=environment, stdin=subprocess.DEVNULL, capture_output=True, check=False, timeout=120)

    def test_the_program_with_the_window_carries_out_one_without_a_window(self):
        self.assertEqual(self._run("pianificate").returncode, 0)
        self.assertEqual(self._run("ftp").returncode, 1)
        self.assertEqual(self._run("altro").returncode, 2)

    def test_both_programs_take_a_folder_with_an_accent(self):
        accented = self.desk.root / "Cassà"
        accented.mkdir()
        for program in (WINDOW_PROGRAM, PROGRAM):
            self.assertEqual(self._run("pianificate", program=program, folder=accented).returncode, 0, program)
            missing = self._run("pianificate", program=program, folder=self.desk.root / "Cassè")
            self.assertEqual(missing.returncode, 2, program)


if __name__ == "__main__":
    unittest.main()
