"""Growth: how the time of the real program grows with the number of jobs, a job's size and the size of the settings file.

  bench/growth.py [BUILD]      build/linux-release by default

An exponent of 1 is twice the time for twice as much; it is the slope between the last two points."""

import math
import os
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tests" / "desk"))
build = Path(sys.argv[1] if len(sys.argv) > 1 else "build/linux-release").resolve()
os.environ.setdefault("TELLAXISD", str(build / "src/app/tellaxisd"))
os.environ.setdefault("TELLAXIS_TOOLS", str(build / "tools"))
tempfile.tempdir = "/dev/shm"

import fiscal_driver  # noqa: E402  (the harness reads the environment)
from harness import Desk  # noqa: E402
from process_figures import processor_time  # noqa: E402

JOBS = (10, 100, 1_000, 10_000, 100_000)
SIZES = (1 << 10, 1 << 15, 1 << 20, 1 << 25, 1 << 30)
SETTINGS = (1 << 10, 1 << 13, 1 << 16, 1 << 20)
INTERVAL = 0.01
LONGEST = 600


def desk():
    """A desk whose gate is closed, and whose driver's input file nobody takes."""
    made = Desk()
    fiscal_driver.configure(made, "CASIO/DITRON - 24", delay=0, MF_ChkLog=0)
    made.start(polling=INTERVAL)
    # The start opens the gates.
    made.settings(MF_Vuoto=0)
    time.sleep(20 * INTERVAL)
    return made


def until(condition):
    begun = time.monotonic()
    while not condition():
        assert time.monotonic() - begun < LONGEST, "it takes too long"
        time.sleep(0.0005)
    return time.monotonic() - begun


def time_of_jobs(count):
    """Seconds until a pass has moved all jobs out of the drop folder, once their gate opens."""
    made = desk()
    try:
        for number in range(count):
            made.drop(f"job{number:06}.txt")
        assert len(os.listdir(made.main / "Orbis")) == count, "the gate is open"
        made.settings(MF_Vuoto=-1)
        return until(lambda: not any(os.scandir(made.main / "Orbis")))
    finally:
        made.close()


def time_of_size(size):
    """Seconds until the job of this size lies whole in the driver's input file."""
    made = desk()
    try:
        unfinished = made.root / "unfinished"
        with open(unfinished, "wb") as job:
            job.truncate(size)
        unfinished.rename(made.main / "Orbis" / "job.txt")
        assert not made.c("MF\\in.txt").exists(), "the gate is open"
        made.settings(MF_Vuoto=-1)
        target = made.c("MF\\in.txt")
        return until(lambda: target.exists() and target.stat().st_size == size)
    finally:
        made.close()


def time_of_settings(size):
    """Seconds of a processor that an idle tick takes."""
    made = desk()
    try:
        line = "Commento di un altro programma=" + "x" * 60 + "\r\n"
        with open(made.settings_file, "ab") as settings:
            settings.write(b"[Altro]\r\n" + line.encode() * (size // len(line)))
        pid = made.programs[0].process.pid
        time.sleep(0.3)
        before = processor_time(pid)
        time.sleep(2)
        return (processor_time(pid) - before) / (2 / INTERVAL)
    finally:
        made.close()


def show(what, sizes, measure):
    times = [measure(size) for size in sizes]
    points = "  ".join(f"{size}: {1000 * seconds:.2f} ms" for size, seconds in zip(sizes, times))
    exponent = math.log(times[-1] / times[-2]) / math.log(sizes[-1] / sizes[-2])
    print(f"{what}: {points}\n{what}: exponent {exponent:.2f}", flush=True)


show("jobs", JOBS, time_of_jobs)
show("size of a job", SIZES, time_of_size)
show("settings file", SETTINGS, time_of_settings)
