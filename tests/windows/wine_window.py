"""Wine window: the program's window under Wine, on a display of its own, used by keyboard and mouse."""

import os
import pwd
import shutil
import subprocess
import unittest
from pathlib import Path

from harness import EMULATOR, Scenario, program_path, wait_for
from screen import NOWHERE, open_screen

PROGRAM = Path(os.environ["TELLAXIS"])
EMPTY_PLACE = ("80", "470")  # in the main window's lower left corner


@unittest.skipUnless(
    all(shutil.which(name) for name in ("Xvfb", "trayer", "xdotool", "xwininfo", "import")),
    "needs Xvfb, trayer, xdotool, xwininfo and import",
)
class WineWindow(Scenario):
    def setUp(self):
        super().setUp()
        # A desk's drive has none of its own, and the pages of the diary are drawn in it.
        (self.desk.drive_c / "users" / pwd.getpwuid(os.getuid()).pw_name / "Temp").mkdir(parents=True, exist_ok=True)
        self.display = open_screen(self)
        self.environment = {**self.desk.environment(), "DISPLAY": self.display}
        self._accompany("trayer", "--edge", "bottom", "--align", "left", "--widthtype", "percent", "--width", "100")

    def start(self):
        options = ["--main-folder", program_path(self.desk.main), "--locale", "it_IT"]
        self.program = self._accompany(*EMULATOR, str(PROGRAM), *options)
        wait_for(lambda: self.state() == "IsViewable", "the window", 60)

    def _accompany(self, *command):
        process = subprocess.Popen(command, env=self.environment, **NOWHERE)

        def end():
            process.terminate()
            process.wait()

        self.addCleanup(end)
        return process

    def do(self, *words):
        return subprocess.run(["xdotool", *words], env=self.environment, capture_output=True, text=True, check=False).stdout

    def window(self, title="Tellaxis"):
        """The number of the window of this title; none where there is no such window."""
        return next(reversed(self.do("search", "--name", f"^{title}$").split()), None)

    def state(self, title="Tellaxis"):
        window = self.window(title)
        if window is None:
            return None
        facts = subprocess.run(["xwininfo", "-id", window], env=self.environment, capture_output=True, text=True, check=False).stdout
        return next((line.split(":")[1].strip() for line in facts.splitlines() if "Map State" in line), None)

    def pixels(self, title):
        """What the window shows: red, green and blue of each dot."""
        command = ["import", "-window", self.window(title), "-depth", "8", "rgb:-"]
        dots = subprocess.run(command, env=self.environment, capture_output=True, check=False).stdout
        return list(zip(dots[0::3], dots[1::3], dots[2::3]))

    def press(self, *keys):
        """Without a window manager only a click in the window, on an empty place, makes sure that Windows too takes it for
        the one in front."""
        window = self.window()
        self.do("windowfocus", "--sync", window)
        self.do("mousemove", "--window", window, *EMPTY_PLACE, "click", "1")
        for key in keys:
            self.do("key", key)

    def until(self, condition, what, action, *arguments):
        """Does something again and again until the condition holds: on a busy machine Wine may miss a click."""
        for _ in range(5):
            action(*arguments)
            try:
                return wait_for(condition, what, 5)
            except AssertionError:
                continue
        self.fail(f"in vain: {what}")
