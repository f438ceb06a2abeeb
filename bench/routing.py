"""Routing: the bench of the router, and the same loop in plain Python in the same run.

  bench/routing.py [BUILD]      build/linux-release by default
"""

import os
import re
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

BUILD = Path(sys.argv[1] if len(sys.argv) > 1 else "build/linux-release")
JOBS = 100
TEXT = b"x" * 2048
ROUNDS = 200


def routed(drop, work, target):
    """What the router does, without its guarantees: all jobs are moved, then each is handed over and deleted."""
    names = sorted(os.listdir(drop))
    for name in names:
        os.rename(f"{drop}/{name}", f"{work}/{name}")
    for name in names:
        shutil.copyfile(f"{work}/{name}", target)
        os.unlink(f"{work}/{name}")


def main():
    bench = subprocess.run([BUILD / "bench" / "bench_routing"], check=True, capture_output=True, text=True).stdout
    print(bench, end="")
    ours = float(re.search(r"^routing pass of 100 jobs: ([\d.]+) us", bench, re.M).group(1))
    times = []
    with tempfile.TemporaryDirectory(dir="/dev/shm") as folder:
        drop, work = Path(folder, "Orbis"), Path(folder, "IN")
        drop.mkdir()
        work.mkdir()
        for _ in range(ROUNDS):
            for number in range(JOBS):
                (drop / f"job{number}.txt").write_bytes(TEXT)
            begun = time.perf_counter()
            routed(str(drop), str(work), f"{folder}/in.txt")
            times.append((time.perf_counter() - begun) * 1e6)
    theirs = statistics.median(times)
    print(f"  Python: {theirs:.0f} us, ratio {ours / theirs:.2f}")


main()
