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
        self._do("windowfocus", "--sync", self._window()[-1])
        self._do("key", key)

    def _click_icon(self, button):
        self._do("mousemove", *map(str, TRAY_ICON), "click", button)

    def test_save_hide_and_bring_back(self):
        self.desk.settings_file.unlink()
        self._press("alt+s")
        wait_for(lambda: "CORT_Logo" in self.desk.read_settings(), "the settings saved, to the last")
        self.assertEqual(self.desk.read_settings()["Orbis_Directory"], "C:\\Meridia")
        self.assertEqual(self.desk.read_settings()["Display_Active"], "0")
        self._press("alt+n")
        wait_for(lambda: self._state() == "IsUnMapped", "the window hidden")
        self._click_icon("3")
        self.assertEqual(self._state(), "IsUnMapped")
        self._click_icon("1")
        wait_for(lambda: self._state() == "IsViewable", "the window back")
        self.program.send_signal(signal.SIGINT)


if __name__ == "__main__":
    unittest.main()
