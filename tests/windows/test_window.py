"""The window of the program under Wine: shown, saved, hidden and brought back from the tray."""

import signal
import unittest

from wine_window import WineWindow

TRAY_ICON = (11, 886)  # in the lower left corner, where the tray is made


class Window(WineWindow):
    def click_icon(self, button):
        self.do("mousemove", *map(str, TRAY_ICON), "click", button)

    def test_save_hide_and_bring_back(self):
        self.start()
        self.desk.settings_file.unlink()
        saved = "CORT_Logo"  # the last one
        self.until(lambda: saved in self.desk.read_settings(), "the settings saved", self.press, "alt+s")
        self.assertEqual(self.desk.read_settings()["Orbis_Directory"], "C:\\Meridia")
        self.assertEqual(self.desk.read_settings()["Display_Active"], "0")
        self.until(lambda: self.state() == "IsUnMapped", "the window hidden", self.press, "alt+n")
        self.click_icon("3")
        self.assertEqual(self.state(), "IsUnMapped")
        self.until(lambda: self.state() == "IsViewable", "the window back", self.click_icon, "1")
        self.program.send_signal(signal.SIGINT)


if __name__ == "__main__":
    unittest.main()
