"""Two programs: what an idle tick and a handed-over job cost two versions of the real tellaxisd, turn and turn about.

  bench/two_programs.py BEFORE NOW      two programs, such as those of two commits

Processor time by the scheduler's own count, tmpfs, all devices active, no [bridge] table: whatever one of the two has more
is switched off in it. The difference counts beside the noise, which is how far the rounds of one program lie apart."""

import os
import statistics
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tests" / "desk"))
tempfile.tempdir = "/dev/shm"
if len(sys.argv) != 3:
    sys.exit(__doc__)
BEFORE, NOW = (Path(word).resolve() for word in sys.argv[1:])
os.environ.setdefault("TELLAXISD", str(NOW))
os.environ.setdefault("TELLAXIS_TOOLS", str(NOW.parent.parent.parent / "tools"))

import fiscal_driver  # noqa: E402  (the harness reads the environment)
from harness import Desk  # noqa: E402
from process_figures import processor_time, wake_ups  # noqa: E402

ROUNDS = 15
INTERVAL = 0.01
IDLE_SECONDS = 5
PASSES, JOBS = 20, 100
RECEIPT = b"x" * 2048


def idle_tick(pid):
    """In seconds of a processor."""
    before, woken = processor_time(pid), wake_ups(pid)
    time.sleep(IDLE_SECONDS)
    return (processor_time(pid) - before) / (wake_ups(pid) - woken)


def job(desk, pid, tick):
    """What a job costs beyond the ticks that pass meanwhile, in seconds of a processor."""
    spent = 0
    for _ in range(PASSES):
        ready = desk.main / "ready"
        ready.mkdir()
        for number in range(JOBS):
            (ready / f"job{number}").write_bytes(RECEIPT)
        before, woken = processor_time(pid), wake_ups(pid)
        for file in sorted(ready.iterdir()):
            file.rename(desk.main / "Orbis" / file.name)
        ready.rmdir()
        while any(os.scandir(desk.main / "Orbis")) or any(os.scandir(desk.main / "IN")):
            time.sleep(0.002)
        spent += processor_time(pid) - before - tick * (wake_ups(pid) - woken)
    return spent / (PASSES * JOBS)


def measured(program):
    desk = Desk()
    try:
        fiscal_driver.configure(desk, "CASIO/DITRON - 24", delay=0, MF_ChkLog=0)
        devices = ("Display_Active", "RF_Active", "CORT_Active")
        desk.settings(Display_File="C:\\d.txt", RF_File="C:\\r.txt", **dict.fromkeys(devices, -1))
        running = desk.launch(*desk.arguments(INTERVAL), program=program)
        running.wait_until_ready()
        pid = running.process.pid
        time.sleep(3)  # folders that rest
        tick = idle_tick(pid)
        return tick, job(desk, pid, tick)
    finally:
        desk.close()


def said(rounds):
    quarter = statistics.quantiles(rounds, n=4)
    return f"{1e6 * statistics.median(rounds):.1f} us (half of the rounds {1e6 * quarter[0]:.1f} to {1e6 * quarter[2]:.1f})"


def main():
    rounds = {BEFORE: [], NOW: []}
    for _ in range(ROUNDS):
        for program, figures in rounds.items():
            figures.append(measured(program))
    for number, what in enumerate(("idle tick", "job")):
        before, now = ([figures[number] for figures in rounds[program]] for program in (BEFORE, NOW))
        change = statistics.median(now) / statistics.median(before) - 1
        print(f"{what}: before {said(before)}, now {said(now)}, {100 * change:+.1f} %")


main()
