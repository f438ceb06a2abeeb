"""Large font: the window follows the system's font and stays usable on the smallest screen."""

import os
import unittest

import pyatspi
from screen import FONT, Desk, Window, WindowScenario, run, wait_for


@unittest.skipUnless(FONT, "needs a desktop with a large font")
class LargeFont(WindowScenario):
    settings = dict(MF_Active=-1, MF_File="C:\\MF\\in.txt", MF_Type="91 - RCH ONDA")

    def place(self, name, window=None):
        return (window or self.window).control(name).queryComponent().getExtents(pyatspi.DESKTOP_COORDS)

    def usual_height(self):
        """Pixels that a label takes with the desktop's usual font, whichever that is on this computer."""
        desk = Desk()
        self.addCleanup(desk.close)
        without_settings = desk.root / "desktop"
        without_settings.mkdir()
        usual = Window(desk, environment={**os.environ, "XDG_CONFIG_HOME": str(without_settings)})
        height = self.place("Cartella di Orbis51", usual).height
        self.assertEqual(usual.stop(), 0)
        return height

    def test_controls_grow_and_the_last_field_and_the_buttons_can_be_reached(self):
        window = self.window.main().queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        self.assertLessEqual(window.x + window.width, 1024)
        self.assertLessEqual(window.y + window.height, 768)
        save = self.place("Salva")
        self.assertLess(save.y + save.height, window.y + window.height)
        # The large font has 13 points and the usual one 10.
        self.assertGreater(self.place("Cartella di Orbis51").height, 1.15 * self.usual_height())
        self.window.control("Sfoglia: Immagine del logo").queryComponent().grabFocus()
        wait_for(lambda: self.place("Sfoglia: Immagine del logo").y < save.y, "the last field scrolled into sight")
        last = self.place("Sfoglia: Immagine del logo")
        self.assertLessEqual(last.x + last.width, window.x + window.width)
        run("xdotool", "mousemove", "1", "1")

    def test_the_diagnosis_is_no_wider_than_the_screen(self):
        self.window.menu("Strumenti", "Diagnosi")
        frame = self.window.frame("Diagnosi")
        wait_for(lambda: any("avvis" in label for label in self.window.labels(frame)), "the findings")
        window = frame.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        self.assertLessEqual(window.width, 1024)
        self.assertLessEqual(window.height, 768)


if __name__ == "__main__":
    unittest.main()
