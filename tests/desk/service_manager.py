"""Service manager and journal: sockets that hear what a service tells systemd."""

import os
import shutil
import socket
import subprocess
import tempfile
import threading
import time
from pathlib import Path


class DatagramListener:
    """Gathers the datagrams that are sent to a socket, each with the moment it came."""

    def __init__(self, folder, name):
        self.path = Path(folder) / name
        self.messages = []
        self._socket = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        self._socket.bind(str(self.path))
        threading.Thread(target=self._listen, daemon=True).start()

    def _listen(self):
        while True:
            try:
                text = self._socket.recv(65536).decode("utf-8")
            except OSError:
                return
            self.messages.append((time.monotonic(), text))

    def close(self):
        self._socket.close()

    def texts(self):
        return [text for _, text in self.messages]


class ServiceManager(DatagramListener):
    """What systemd is to a service of Type=notify. The program ends it when it has heard nothing for `patience` seconds."""

    def __init__(self, scenario, patience=None):
        # The path of a socket may not be long.
        folder = Path(tempfile.mkdtemp(prefix="tellaxis-"))
        scenario.addCleanup(shutil.rmtree, folder, ignore_errors=True)
        super().__init__(folder, "notify")
        scenario.addCleanup(self.close)
        self.environment = {"NOTIFY_SOCKET": str(self.path)}
        if patience is not None:
            self.environment["WATCHDOG_USEC"] = str(int(patience * 1_000_000))

    def signs_of_life(self):
        return [moment for moment, text in self.messages if text == "WATCHDOG=1"]

    def statuses(self):
        return [text.removeprefix("STATUS=") for text in self.texts() if text.startswith("STATUS=")]


# Standard error goes to the file, and the journal's socket is where the folder is, for this program alone.
OWN_JOURNAL = 'mount -t tmpfs tmpfs /run && mkdir -p /run/systemd/journal && mount --bind "$1" /run/systemd/journal && shift'
OWN_NAMESPACE = ["unshare", "--mount"] if os.geteuid() == 0 else ["unshare", "--map-root-user", "--mount"]


class Journal(DatagramListener):
    """The journal of one program, which is started by the command `before` in the environment `environment`."""

    def __init__(self, scenario, is_error_stream=True):
        folder = Path(tempfile.mkdtemp(prefix="tellaxis-"))
        scenario.addCleanup(shutil.rmtree, folder, ignore_errors=True)
        super().__init__(folder, "socket")
        scenario.addCleanup(self.close)
        self.errors = folder / "stderr"
        self.errors.touch()
        status = self.errors.stat()
        self.before = [*OWN_NAMESPACE, "sh", "-c", f'{OWN_JOURNAL} && exec "$@" 2>>"$0"', str(self.errors), str(folder)]
        inode = status.st_ino if is_error_stream else status.st_ino + 1
        self.environment = {"JOURNAL_STREAM": f"{status.st_dev}:{inode}"}

    @staticmethod
    def is_possible():
        """Whether this user may have a view of the file system of their own."""
        words = [*OWN_NAMESPACE, "sh", "-c", OWN_JOURNAL, "sh", tempfile.gettempdir()]
        return subprocess.run(words, capture_output=True, check=False).returncode == 0

    def entries(self):
        """Each entry's fields."""
        return [dict(line.split("=", 1) for line in text.splitlines() if "=" in line) for text in self.texts()]
