"""Display latency: from the job file's appearance to the last byte on the line, beyond the wait for the next poll."""

import os
import random
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
from serial_line import SerialLine  # noqa: E402

JOBS = 300
INTERVAL = 0.02
JOB = b"Totale      EUR12,50\r\nGrazie e arrivederci\r\n"
FAMILIES = {
    "ASEM": b"\x1bQATotale      EUR12,50\r\x1bQBGrazie e arrivederci\r",
    "WINCOR-NIXDORF": b"\x1b[1;1HTotale      EUR12,50\x1b[2;1HGrazie e arrivederci",
}


def latencies(family, expected):
    """Seconds from the appearance of each job to its last byte. Jobs come at any time between two polls."""
    desk = Desk()
    try:
        line = SerialLine(desk).plug_in()
        desk.settings(
            Orbis_Setting=0,
            Display_Active=-1,
            Display_File="C:\\MERIDIA\\Display.txt",
            Display_Type=family,
            Display_COM=3,
            Display_Parametri="9600,N,8,1",
            Display_Delay=0,
        )
        job = desk.c("MERIDIA\\Display.txt")
        unfinished = desk.root / "job"
        desk.start(polling=INTERVAL)
        figures = []
        for number in range(1, JOBS + 1):
            unfinished.write_bytes(JOB)
            # The bridge deletes a job once it was sent; one that came in between would go with it.
            while job.exists():
                time.sleep(0.001)
            time.sleep(random.uniform(INTERVAL, 3 * INTERVAL))
            appeared = time.monotonic()
            unfinished.rename(job)
            while len(line.received) < number * len(expected):
                assert time.monotonic() < appeared + 5, f"job {number} got lost"
                time.sleep(0.0001)
            figures.append(line.last_byte - appeared)
        assert bytes(line.received) == expected * JOBS
        line.pull_out()
        return figures
    finally:
        desk.close()


def main():
    # A job waits for the next poll from nothing to a whole interval, each wait as likely as any other; what the median
    # takes beyond half an interval, and the slowest ones beyond a whole one, is the bridge's own time.
    interval = 1000 * INTERVAL
    for family, expected in FAMILIES.items():
        figures = sorted(1000 * figure for figure in latencies(family, expected))
        print(
            f"{family}: {JOBS} jobs, polled every {interval:.0f} ms: fastest {figures[0]:.2f} ms; beyond the wait for the"
            f" poll: median {statistics.median(figures) - interval / 2:+.2f} ms,"
            f" 99 of 100 within {figures[JOBS * 99 // 100] - interval:+.2f} ms, slowest {figures[-1] - interval:+.2f} ms"
        )


main()
