"""Process: time from start to "pronto", and memory when idle, of the real tellaxisd."""

import os
import statistics
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tests" / "desk"))
build = Path(sys.argv[1] if len(sys.argv) > 1 else "build/linux-release").resolve()
os.environ.setdefault("TELLAXISD", str(build / "src/app/tellaxisd"))
os.environ.setdefault("TELLAXIS_TOOLS", str(build / "tools"))
tempfile.tempdir = "/dev/shm"

from harness import Desk  # noqa: E402  (the harness reads the environment)
from process_figures import memory  # noqa: E402

STARTS = 30


def main():
    desk = Desk()
    try:
        times = []
        for _ in range(STARTS):
            program = desk.start()
            times.append(program.ready_after * 1000)
            time.sleep(0.2)
            resident, private = memory(program.process.pid)
            program.stop()
        print(f"pronto after: median {statistics.median(times):.1f} ms, slowest {max(times):.1f} ms of {STARTS} starts")
        print(f"memory when idle: {resident} KB resident, {private} KB private")
    finally:
        desk.close()


main()
