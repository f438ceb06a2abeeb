"""Screen: the program's windows seen and used through the accessibility interface and the mouse."""

import os
import re
import signal
import subprocess
import sys
import time
import unittest
from pathlib import Path

import warnings

import pyatspi
from gi.repository import GLib

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "desk"))

import harness  # noqa: E402
from harness import Desk  # noqa: E402

warnings.filterwarnings("ignore", category=DeprecationWarning)

PROGRAM = os.environ["TELLAXIS"]
TRAY = os.environ.get("TRAY") != "no"
FONT = os.environ.get("FONT")


def run(*words):
    return subprocess.run(words, check=True, capture_output=True, text=True).stdout.strip()


def wait_for(condition, what, seconds=15):
    """Waits as the harness does; what goes away while it is looked at is looked for again."""

    def holds():
        try:
            return condition()
        except GLib.GError as error:
            if "does not exist" not in error.message:
                raise
            return False

    harness.wait_for(holds, what, seconds)


class Window:
    """The program running on the present desktop."""

    def __init__(self, desk, *more, polling=0.05, environment=None):
        self.desk = desk
        pyatspi.Registry.getDesktop(0).childCount  # the interface is up before the program looks for it
        self.process = subprocess.Popen(
            [PROGRAM, *desk.arguments(polling), *more],
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            env=environment,
        )
        desk.programs.append(self)

    def kill(self):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()
        self.process.stdout.close()
        self.process.stderr.close()

    def running(self):
        return self.process.poll() is None

    def stop(self):
        self.process.send_signal(signal.SIGTERM)
        return self.process.wait(20)

    # Windows

    def all_frames(self):
        """Title and accessible of each window on the screen."""
        for application in pyatspi.Registry.getDesktop(0):
            if application is not None and application.get_process_id() == self.process.pid:
                return [(frame.name, frame) for frame in application if frame is not None and is_showing(frame)]
        return []

    def frames(self):
        return dict(self.all_frames())

    def frame(self, title):
        wait_for(lambda: title in self.frames(), f"window {title!r}; there are {list(self.frames())}")
        return self.frames()[title]

    def main(self):
        return self.frame("Tellaxis")

    def main_id(self):
        """The number of the main window; a hidden one has none. (The icon's window bears the program's name too.)"""
        words = ["xdotool", "search", "--all", "--pid", str(self.process.pid), "--name", "^Tellaxis$"]
        for identity in subprocess.run(words, capture_output=True, text=True).stdout.split():
            if "window state:" in run("xprop", "-id", identity, "WM_STATE"):
                return identity
        return None

    def is_visible(self):
        """Whether the main window is on the screen; a hidden or a minimised one is not."""
        identity = self.main_id()
        return identity is not None and "window state: Normal" in run("xprop", "-id", identity, "WM_STATE")

    # Controls

    def control(self, name, window=None):
        """The control of this accessible name; of a list, the part that is typed into."""
        found = None

        def look():
            nonlocal found
            candidates = [item for item in walk(window or self.main()) if item.name == name]
            typed = [item for item in candidates if item.getRoleName() == "text"]
            found = (typed or candidates or [None])[0]
            return found is not None

        wait_for(look, f"control {name!r}")
        return found

    def text(self, name):
        return text_of(self.control(name))

    def checked(self, name):
        return self.control(name).getState().contains(pyatspi.STATE_CHECKED)

    def enter(self, name, text, window=None):
        self.control(name, window).queryEditableText().setTextContents(text)

    def tick(self, name, on=True):
        if self.checked(name) != on:
            click(self.control(name))
        wait_for(lambda: self.checked(name) == on, f"{name} {'checked' if on else 'cleared'}")

    def press(self, name, window=None):
        click(self.control(name, window))

    def menu(self, menu, entry):
        """Opens a menu with the mouse and picks an entry of it."""
        click(self.control(menu))
        item = self.control(entry)
        wait_for(lambda: is_showing(item), f"the entry {entry}")
        click(item)

    def choose(self, name, entry):
        """Picks an entry of a list."""
        lists = [item for item in walk(self.main()) if item.name == name and item.getRoleName() == "combo box"]
        self.control(entry, lists[0]).queryAction().doAction(0)

    def table(self, name, window):
        """The table of this name; its scrolling frame bears the name too."""
        self.control(name, window)
        return [item for item in walk(window) if item.name == name and item.getRoleName() == "table"][0]

    def labels(self, window=None):
        return [item.name for item in walk(window or self.main()) if item.getRoleName() == "label"]

    def save(self):
        self.press("Salva")
        wait_for(lambda: "Impostazioni salvate" in self.labels(), "the word that settings were saved")

    # Dialogs

    def dialog(self, title):
        return self.frame(title)

    def words(self, dialog):
        """The message of a box, as one text."""
        return "\n".join(item.name for item in walk(dialog) if item.getRoleName() == "label" and item.name)

    def answer(self, title, button):
        self.press(button, self.dialog(title))
        wait_for(lambda: not any(f.getRoleName() in ("dialog", "alert") for f in self.frames().values()), "the box gone")


def is_showing(item):
    return item.getState().contains(pyatspi.STATE_SHOWING)


def walk(item):
    """Everything in a window, but not the cells of a table that nobody could look through."""
    if item.getRoleName() == "table" and item.childCount > 5000:
        return
    for index in range(item.childCount):
        child = item.getChildAtIndex(index)
        if child is None:
            continue
        yield child
        yield from walk(child)


def rows_of(table):
    """The texts of a table's rows."""
    cells = [item.name for item in walk(table) if item.getRoleName() == "table cell"]
    headers = sum(item.getRoleName() == "table column header" for item in walk(table))
    return [cells[first : first + headers] for first in range(0, len(cells), headers)]


def text_of(item):
    text = item.queryText()
    return text.getText(0, text.characterCount)


def middle(item):
    """The middle of a control on the screen, once the desktop has put its window there."""
    places = [None]

    def rests():
        place = item.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        places.append((place.x + place.width // 2, place.y + place.height // 2))
        time.sleep(0.05)
        return places[-1] == places[-2]

    wait_for(rests, f"{item.name!r} at rest")
    return places[-1]


def click(item, button=1):
    """Clicks on the middle of a control. (The accessibility interface would wait for a dialog that opens.)"""
    left, top = middle(item)
    run("xdotool", "mousemove", str(left), str(top), "click", str(button))


def type_keys(item, text):
    """Types into a control with the keyboard, one key after the other."""
    item.queryComponent().grabFocus()
    time.sleep(0.2)
    run("xdotool", "key", "--clearmodifiers", "ctrl+a")
    run("xdotool", "type", "--clearmodifiers", "--delay", "30", text)


def tray_icons():
    """The middle of each icon of the program that the tray shows, in pixels of the screen."""
    tray = run("xdotool", "search", "--onlyvisible", "--class", "trayer").split()[-1]
    found = []
    for line in run("xwininfo", "-id", tray, "-tree").splitlines():
        place = re.search(r'"tellaxis".* (\d+)x(\d+)\+\S+ +\+(\d+)\+(\d+)$', line)
        if place:
            width, height, left, top = map(int, place.groups())
            found.append((left + width // 2, top + height // 2))
    return found


def click_tray_icon(button=1):
    wait_for(lambda: len(tray_icons()) == 1, "the icon in the tray")
    left, top = tray_icons()[0]
    run("xdotool", "mousemove", str(left), str(top), "click", str(button))
    run("xdotool", "mousemove", "1", "1")


class WindowScenario(unittest.TestCase):
    """One desk and one running window a scenario."""

    settings = {}
    devices = None

    def setUp(self):
        self.desk = Desk()
        self.addCleanup(self.desk.close)
        self.desk.settings(**{"Orbis_Setting": 0, **self.settings})
        if self.devices:
            (self.desk.main / "devices.toml").write_text(self.devices)
        run("xdotool", "mousemove", "1", "1")
        self.window = Window(self.desk)
        self.window.main()
        wait_for(self.window.is_visible, "the main window on the screen")

    def stored(self, key):
        values = {name.lower(): value for name, value in self.desk.read_settings().items()}
        return values.get(key.lower())
