"""Both programs on each version of Windows: they start, print a job and end."""

import shutil
import subprocess
import unittest

from harness import EMULATOR, PROGRAM, WINDOW_PROGRAM, program_path, wait_for
from screen import NOWHERE
from versioned_desk import VersionedDesk


@unittest.skipUnless(all(shutil.which(name) for name in ("Xvfb", "xdotool")), "needs Xvfb and xdotool")
class Programs(VersionedDesk):
    def setUp(self):
        super().setUp()
        self.configure(self.desk.main)

    def _start(self, program):
        options = ["--main-folder", program_path(self.desk.main), "--locale", "it_IT"]
        running = subprocess.Popen([*EMULATOR, str(program), *options], env=self.environment, **NOWHERE)
        self.addCleanup(running.wait)
        self.addCleanup(running.kill)
        self.wait_for_start(self.desk.main)
        return running

    def _end(self, program):
        return self.run_to_end(str(program), "--main-folder", program_path(self.desk.main), "--esci")

    def _windows(self):
        found = subprocess.run(
            ["xdotool", "search", "--onlyvisible", "--name", "^Tellaxis"],
            env=self.environment,
            capture_output=True,
            text=True,
            check=False,
        )
        return found.stdout.split()

    def test_the_program_without_a_window_prints_a_job(self):
        running = self._start(PROGRAM)
        self.print_one(self.desk.main)
        self.assertEqual(self._end(PROGRAM), 0)
        self.assertEqual(running.wait(60), 0)

    def test_the_window_opens_and_prints_a_job(self):
        running = self._start(WINDOW_PROGRAM)
        wait_for(self._windows, "the window", 60)
        self.print_one(self.desk.main)
        self.assertEqual(self._end(WINDOW_PROGRAM), 0)
        self.assertEqual(running.wait(60), 0)
