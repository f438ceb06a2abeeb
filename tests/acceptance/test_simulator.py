"""The fiscal driver simulator: what it leaves is whole for whoever looks at that moment."""

import ctypes
import os
import struct
import subprocess
import unittest

import fiscal_driver
from harness import ON_WINDOWS, TOOLS, Scenario

IN_MOVED_TO, IN_CREATE = 0x80, 0x100
EVENT = struct.Struct("iIII")  # watch, kind, cookie, length of the name that follows


class Arrivals:
    """How files of a folder get their names."""

    def __init__(self, folder):
        libc = ctypes.CDLL(None, use_errno=True)
        self.notices = libc.inotify_init1(os.O_NONBLOCK)
        if self.notices < 0 or libc.inotify_add_watch(self.notices, os.fsencode(folder), IN_MOVED_TO | IN_CREATE) < 0:
            raise OSError(ctypes.get_errno(), "inotify")

    def all(self):
        told = os.read(self.notices, 65536)
        os.close(self.notices)
        found = []
        while told:
            _, kind, _, length = EVENT.unpack_from(told)
            name = told[EVENT.size : EVENT.size + length].rstrip(b"\0").decode()
            found.append((name, kind & (IN_MOVED_TO | IN_CREATE)))
            told = told[EVENT.size + length :]
        return found


@unittest.skipIf(ON_WINDOWS, "inotify is Linux's")
class Simulator(Scenario):
    def test_a_kept_receipt_appears_whole(self):
        folder = self.desk.root / "receipts"
        folder.mkdir()
        self.desk.c("MF").mkdir()
        self.desk.c("MF\\in.txt").write_text("VENDITA\r\n", newline="")
        arrivals = Arrivals(folder)
        command = [TOOLS / "fiscal_driver_simulator", *fiscal_driver.arguments(self.desk, work=1).split()]
        subprocess.run(command, check=True, stdout=subprocess.DEVNULL)
        self.assertEqual(fiscal_driver.receipts(self.desk), ["VENDITA\r\n"])
        self.assertEqual([kind for name, kind in arrivals.all() if name == "0001.txt"], [IN_MOVED_TO])


if __name__ == "__main__":
    unittest.main()
