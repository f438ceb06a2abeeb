"""Metrics: what they cost the real tellaxisd in memory and in processor time at rest, beside the same without them."""

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

from harness import Desk  # noqa: E402  (the harness reads the environment)
from process_figures import memory, processor_time, wake_ups  # noqa: E402

SECONDS = 50  # three files and the first one
ROUNDS = 3


def at_rest(metrics):
    desk = Desk()
    try:
        devices = ("MF_Active", "Display_Active", "RF_Active", "CORT_Active")
        desk.settings(Orbis_Setting=0, MF_File="C:\\in.txt", Display_File="C:\\d.txt", RF_File="C:\\r.txt", **dict.fromkeys(devices, -1))
        if metrics:
            (desk.main / "devices.toml").write_text('[bridge]\nmetrics = "tellaxis.prom"\n')
        program = desk.start(polling=0.5)
        pid = program.process.pid
        time.sleep(1)
        before, woken = processor_time(pid), wake_ups(pid)
        time.sleep(SECONDS)
        figures = memory(pid)[1], 1e3 * (processor_time(pid) - before), wake_ups(pid) - woken
        program.stop()
        return figures
    finally:
        desk.close()


def main():
    for metrics in (False, True):
        rounds = [at_rest(metrics) for _ in range(ROUNDS)]
        memory, processor, woken = (sorted(column)[ROUNDS // 2] for column in zip(*rounds))
        print(f"at rest {'with' if metrics else 'without'} metrics: {memory} KB private, {processor:.1f} ms of processor and {woken} wake-ups in {SECONDS} s")


main()
