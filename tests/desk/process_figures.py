"""Process figures: what the system counts of a running process on Linux."""

from pathlib import Path


def processor_time(pid):
    """Seconds of a processor so far, by the scheduler's own count."""
    return int(Path(f"/proc/{pid}/schedstat").read_text().split()[0]) / 1e9


def wake_ups(pid):
    """How often the threads of the process have gone to sleep so far."""
    counted = 0
    for status in Path(f"/proc/{pid}/task").glob("*/status"):
        counted += int(status.read_text().split("voluntary_ctxt_switches:", 1)[1].split()[0])
    return counted


def memory(pid):
    """Resident and private memory in KB."""
    figures = {}
    for line in Path(f"/proc/{pid}/smaps_rollup").read_text().splitlines()[1:]:
        name, value = line.split(":")
        figures[name] = int(value.split()[0])
    return figures["Rss"], figures["Private_Clean"] + figures["Private_Dirty"]
