"""The window of the program under Wine, on a display of its own: shown, saved, hidden and brought back from the tray."""

import os
import shutil
import signal
import subprocess
import unittest
from pathlib import Path

from harness import EMULATOR, Scenario, program_path, wait_for
from screen import NOWHERE, open_screen

PROGRAM = Path(os.environ["TELLAXIS"])
EMPTY_PLACE = ("80", "470")  # in the window's lower left corner
TRAY_ICON = (11, 886)  # in the lower left corner, where the tray is made


@unittest.skipUnless(
    all(shutil.which(name) for name in ("Xvfb", "trayer", "xdotool", "xwininfo")), "needs Xvfb, trayer, xdotool and xwininfo"
)
class Window(Scenario):
    def setUp(self):
        super().setUp()
        self.display = open_screen(self)
        self.environment = {**self.desk.environment(), "DISPLAY": self.display}
        self._accompany("trayer", "--edge", "bottom", "--align", "left", "--widthtype", "percent", "--width", "100")
        options = ["--main-folder", program_path(self.desk.main), "--locale", "it_IT"]
        self.program = self._accompany(*EMULATOR, str(PROGRAM), *options)
        wait_for(lambda: self._state() == "IsViewable", "the window", 60)

    def _keep(self, process):
        def end():
            process.terminate()
            process.wait()

        self.addCleanup(end)
        return process

    def _accompany(self, *command):
        return self._keep(subprocess.Popen(command, env=self.environment, **NOWHERE))

    def _do(self, *words):
        return subprocess.run(["xdotool", *words], env=self.environment, capture_output=True, text=True, check=False).stdout

    def _window(self):
        return self._do("search", "--name", "^Tellaxis$").split()

    def _state(self):
        windows = self._window()
        if not windows:
            return None
        facts = subprocess.run(
            ["xwininfo", "-id", windows[-1]], env=self.environment, capture_output=True, text=True, check=False
        ).stdout
        return next((line.split(":")[1].strip() for line in facts.splitlines() if "Map State" in line), None)

    def _press(self, key):
        """Without a window manager only a click in the window, on an empty place, makes sure that Windows too takes it for
        the one in front."""
        window = self._window()[-1]
        self._do("windowfocus", "--sync", window)
        self._do("mousemove", "--window", window, *EMPTY_PLACE, "click", "1")
        self._do("key", key)

    def _until(self, condition, what, action, *arguments):
        """Does something again and again until the condition holds: on a busy machine Wine may miss a click."""
        for _ in range(5):
            action(*arguments)
            try:
                return wait_for(condition, what, 5)
            except AssertionError:
                continue
        self.fail(f"in vain: {what}")

    def _click_icon(self, button):
        self._do("mousemove", *map(str, TRAY_ICON), "click", button)

    def test_save_hide_and_bring_back(self):
        self.desk.settings_file.unlink()
        saved = "CORT_Logo"  # the last one
        self._until(lambda: saved in self.desk.read_settings(), "the settings saved", self._press, "alt+s")
        self.assertEqual(self.desk.read_settings()["Orbis_Directory"], "C:\\Meridia")
        self.assertEqual(self.desk.read_settings()["Display_Active"], "0")
        self._until(lambda: self._state() == "IsUnMapped", "the window hidden", self._press, "alt+n")
        self._click_icon("3")
        self.assertEqual(self._state(), "IsUnMapped")
        self._until(lambda: self._state() == "IsViewable", "the window back", self._click_icon, "1")
        self.program.send_signal(signal.SIGINT)


if __name__ == "__main__":
    unittest.main()
