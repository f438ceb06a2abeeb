"""Serial line: a pseudo terminal that the bridge knows as a COM port, with somebody who listens at its far end."""

import errno
import os
import threading
import time
from pathlib import Path

from harness import ON_WINDOWS, Scenario, wait_for


class SerialLine:
    """COM `number` of a desk. What comes out of it is gathered from the start, unless nobody listens."""

    def __init__(self, desk, number=3):
        self.link = desk.root / f"com{number}"
        self.number = number
        self.received = bytearray()
        self.master = None
        self.listener = None
        if not ON_WINDOWS:
            entry = f'[[serial]]\nport = {number}\ndevice = "{self.link}"\n'
            with open(desk.main / "devices.toml", "a", encoding="utf-8") as devices:
                devices.write(entry)

    def plug_in(self, listening=True):
        """A new device appears under the line's name."""
        self.pull_out()
        self.master, slave = os.openpty()
        self.device = os.ttyname(slave)
        os.close(slave)
        os.set_blocking(self.master, False)
        self.link.symlink_to(self.device)
        if listening:
            self._listen()
        return self

    def pull_out(self):
        """The device goes away, and its name with it."""
        if self.listener:
            listener, self.listener = self.listener, None
            listener.join()
        if self.master is not None:
            os.close(self.master)
            self.master = None
        if self.link.is_symlink():
            self.link.unlink()

    def _listen(self):
        def read():
            while self.listener:
                try:
                    self.received += os.read(self.master, 65536)
                    self.last_byte = time.monotonic()
                except BlockingIOError:
                    time.sleep(0.0001)
                except OSError as failure:
                    # The bridge has the line closed.
                    if failure.errno != errno.EIO:
                        raise
                    time.sleep(0.0001)

        self.listener = threading.Thread(target=read, daemon=True)
        self.listener.start()

    def wait_for(self, expected):
        wait_for(lambda: len(self.received) >= len(expected), f"{len(expected)} bytes on COM{self.number}")
        time.sleep(0.05)
        return bytes(self.received)

    def is_open_in(self, program):
        """True when the program has the line open. Linux alone tells."""
        folder = Path(f"/proc/{program.process.pid}/fd")
        for entry in folder.iterdir():
            try:
                if os.readlink(entry) == self.device:
                    return True
            except FileNotFoundError:
                pass
        return False


class SerialScenario(Scenario):
    """One desk with one serial line."""

    def setUp(self):
        super().setUp()
        self.line = SerialLine(self.desk).plug_in()
        self.addCleanup(self.line.pull_out)
