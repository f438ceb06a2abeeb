"""The guide: opened from the menu where it is installed with the program."""

import os
import shutil
import stat
from pathlib import Path

import screen
from screen import Window, WindowScenario, wait_for, walk

BROWSER = """[Desktop Entry]
Type=Application
Name=Browser
Exec={} %u
MimeType=text/html;x-scheme-handler/file;
"""


class Guide(WindowScenario):
    def item(self):
        return next(item for item in walk(self.window.main()) if item.name == "Guida")

    def installed_with_a_guide(self):
        """The program where a guide lies beside it, on a desktop whose browser notes what it is to show."""
        folder = self.desk.root / "programma"
        folder.mkdir()
        (folder / "guida.html").write_text("<p>Guida</p>")
        program = Path(shutil.copy(screen.PROGRAM, folder))
        self.shown = self.desk.root / "mostrato"
        browser = self.desk.root / "xdg-open"
        browser.write_text(f'#!/bin/sh\necho "$1" >"{self.shown}"\n')
        browser.chmod(browser.stat().st_mode | stat.S_IXUSR)
        applications = self.desk.root / "share" / "applications"
        applications.mkdir(parents=True)
        (applications / "browser.desktop").write_text(BROWSER.format(browser))
        (applications / "mimeapps.list").write_text(
            "[Default Applications]\ntext/html=browser.desktop\nx-scheme-handler/file=browser.desktop\n"
        )
        return program, {
            **os.environ,
            "XDG_DATA_HOME": str(self.desk.root / "share"),
            "PATH": f"{self.desk.root}:{os.environ['PATH']}",
        }

    def test_the_menu_opens_it(self):
        self.window.stop()
        program, environment = self.installed_with_a_guide()
        former, screen.PROGRAM = screen.PROGRAM, str(program)
        self.addCleanup(setattr, screen, "PROGRAM", former)
        self.window = Window(self.desk, environment=environment)
        self.window.main()
        self.window.menu("About", "Guida")
        wait_for(self.shown.exists, "the browser")
        wait_for(lambda: "guida.html" in self.shown.read_text(), "the guide in it")
        self.assertTrue(self.window.running())

    def test_without_a_guide_there_is_nothing_to_open(self):
        self.assertFalse(self.item().getState().contains(screen.pyatspi.STATE_SENSITIVE))
