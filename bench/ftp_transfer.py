"""FTP transfer: 200 MiB each way by the real tellaxisd, beside curl on the same server, turn by turn."""

import os
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tests" / "desk"))
build = Path(sys.argv[1] if len(sys.argv) > 1 else "build/linux-release").resolve()
os.environ.setdefault("TELLAXISD", str(build / "src/app/tellaxisd"))
os.environ.setdefault("TELLAXIS_TOOLS", str(build / "tools"))
tempfile.tempdir = "/dev/shm"

from ftp_servers import PASSWORD, USER, PlainServer  # noqa: E402  (the harness reads the environment)
from harness import PROGRAM, Desk  # noqa: E402

SIZE = 200 * 1024 * 1024
TURNS = 7
NAME = "archivio.dat"


def timed(command, environment=None):
    start = time.monotonic()
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL, env=environment)
    return time.monotonic() - start


class Bench:
    def __init__(self, desk):
        self.desk = desk
        self.home = desk.root / "server"
        self.home.mkdir()
        self.folder = desk.c("dati")
        self.folder.mkdir()
        self.remote = self.home / NAME
        self.local = self.folder / NAME
        self.namesake = self.home / f"C:\\dati\\{NAME}"
        self.remote.write_bytes(os.urandom(SIZE))
        self.server = PlainServer(self.home)
        self.url = f"ftp://{USER}:{PASSWORD}@{self.server.address}/"

    def by_tellaxisd(self, action):
        self.desk.settings(
            FTP_Indirizzo=self.server.address,
            FTP_User=USER,
            FTP_Pw=PASSWORD,
            FTP_Azione=action,
            FTP_Directory="C:\\dati\\",
            FTP_NomeFile=NAME,
        )
        return timed([PROGRAM, *self.desk.arguments(), "ftp"], self.desk.environment())

    def get(self):
        """Seconds of tellaxisd and of curl; each makes a file that was not there."""
        self.local.unlink(missing_ok=True)
        ours = self.by_tellaxisd(2)
        self.local.unlink()
        return ours, timed(["curl", "-s", "-o", self.local, self.url + NAME])

    def put(self):
        """The same for an upload after the delete of a file."""
        self.namesake.write_bytes(b"")
        self.remote.unlink()
        ours = self.by_tellaxisd(1)
        self.namesake.write_bytes(b"")
        self.remote.unlink()
        theirs = timed(["curl", "-s", "-T", self.local, "-Q", f"DELE {self.namesake.name}", self.url + NAME])
        return ours, theirs


def report(way, turns):
    ours, theirs = (statistics.median(column) for column in zip(*turns))
    ratio = statistics.median(mine / other for mine, other in turns)
    print(f"{way}: tellaxisd {ours * 1000:.0f} ms, curl {theirs * 1000:.0f} ms, ratio {ratio:.2f} (medians of {TURNS})")


def main():
    desk = Desk()
    try:
        bench = Bench(desk)
        try:
            bench.get()
            report("get", [bench.get() for _ in range(TURNS)])
            report("put", [bench.put() for _ in range(TURNS)])
        finally:
            bench.server.close()
    finally:
        desk.close()


main()
