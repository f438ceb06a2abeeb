"""Serial: the test print of the serial courtesy printer, from the button to the line."""

import os
import pty
import tty
import unittest

from screen import WindowScenario, wait_for


class SerialTest(WindowScenario):
    settings = dict(CORT_Printer="DPT-282", CORT_COM="3", CORT_Sett="9600,N,8,1")

    def setUp(self):
        self.printer, line = pty.openpty()
        tty.setraw(line)
        self.devices = f'[[serial]]\nport = 3\ndevice = "{os.ttyname(line)}"\n'
        os.set_blocking(self.printer, False)
        self.addCleanup(os.close, self.printer)
        self.addCleanup(os.close, line)
        super().setUp()

    def test_the_button_prints_the_test_text_and_cuts(self):
        expected = b"ambaraBA CICI COCO TRE CIVETTE" + b" \r\n" * 5 + b"\x1bm"
        printed = bytearray()

        def all_there():
            try:
                printed.extend(os.read(self.printer, 4096))
            except BlockingIOError:
                pass
            return len(printed) >= len(expected)

        self.window.press("Prova seriale")
        wait_for(all_there, "the test print")
        self.assertEqual(bytes(printed), expected)


if __name__ == "__main__":
    unittest.main()
