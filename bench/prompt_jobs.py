"""Prompt jobs: from the end of a job's writing to the driver's input file, beside the plain tick; and writers that
close after every line.

  bench/prompt_jobs.py [BUILD [JOBS [LINE_JOBS]]]      build/linux-release, 200 and 10000 by default
"""

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

import fiscal_driver  # noqa: E402  (the harness reads the environment)
from harness import Desk  # noqa: E402

JOBS = int(sys.argv[2]) if len(sys.argv) > 2 else 200
LINE_JOBS = int(sys.argv[3]) if len(sys.argv) > 3 else 10_000
LINES = [b"riga %d\r\n" % number for number in range(4)]
LONGEST_PAUSE = 0.02


def started(prompt):
    """A cash desk at the usual interval whose driver's input file this program takes itself."""
    desk = Desk()
    (desk.main / "devices.toml").write_text(f"[bridge]\nprompt = {str(prompt).lower()}\n")
    fiscal_driver.configure(desk, "CASIO/DITRON - 24", delay=0, MF_ChkLog=0)
    desk.start(polling=0.5)
    time.sleep(0.6)  # the first tick begins the watch
    return desk


def taken(desk):
    """Waits for the driver's input file and takes it: the moment of its coming and its text."""
    path = desk.c("MF\\in.txt")
    limit = time.monotonic() + 10
    while not path.exists():
        assert time.monotonic() < limit, "the job got lost"
        time.sleep(0.0001)
    moment = time.monotonic()
    text = path.read_bytes()
    path.unlink()
    return moment, text


def latencies(prompt, drop):
    desk = started(prompt)
    try:
        figures = []
        for number in range(JOBS):
            time.sleep(random.uniform(0.01, 0.6 if not prompt else 0.05))
            finished = drop(desk, f"job{number}.txt")
            figures.append((taken(desk)[0] - finished) * 1000)
        return sorted(figures)
    finally:
        desk.close()


def renamed(desk, name):
    unfinished = desk.root / "unfinished"
    unfinished.write_bytes(b"".join(LINES))
    finished = time.monotonic()
    unfinished.rename(desk.main / "Orbis" / name)
    return finished


def written(desk, name):
    (desk.main / "Orbis" / name).write_bytes(b"".join(LINES))
    return time.monotonic()


def cut_jobs():
    """Jobs written line by line, each line by an open, an append and a close: how many came in pieces, and how many
    pauses were longer than they were meant to be, since this computer was busy."""
    desk = started(True)
    cut = late = 0
    try:
        for number in range(LINE_JOBS):
            overslept = False
            for line in LINES:
                with open(desk.main / "Orbis" / f"job{number}.txt", "ab") as job:
                    job.write(line)
                closed = time.monotonic()
                time.sleep(random.uniform(0, LONGEST_PAUSE))
                overslept = overslept or time.monotonic() - closed > 0.028
            whole = taken(desk)[1] == b"".join(LINES)
            late += overslept
            cut += not whole and not overslept
            if not whole:  # the rest of it comes as another job
                while taken(desk)[1][-len(LINES[-1]) :] != LINES[-1]:
                    pass
    finally:
        desk.close()
    return cut, late


def show(what, figures):
    print(f"{what:42} median {statistics.median(figures):7.2f} ms   99 % {figures[int(len(figures) * 0.99)]:7.2f} ms")


for how in (renamed, written):
    for prompt in (False, True):
        show(f"{how.__name__}, {'prompt' if prompt else 'plain tick of 500 ms'}", latencies(prompt, how))
cut, late = cut_jobs()
print(f"{LINE_JOBS} jobs written line by line: {cut} cut; in {late} of them a pause came out longer than meant")
sys.exit(cut > 0)
