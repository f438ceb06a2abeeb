"""Single faults: one system call of the running bridge fails once, at every place of a round of jobs. The jobs of that
round may fail; those of the next come out whole, for every device, and nothing of the first comes twice or in part.

TELLAXIS_FAULTS=every tries every place; without it one in sixteen is tried, spread evenly."""

import os
import subprocess
import time
import unittest
from concurrent.futures import ThreadPoolExecutor

from fault_desk import INPUT_FILE_DRIVER, POLLING, PROGRAM_DRIVER, PROMPT, FaultDesk, FaultScenario, Jobs, Outcome, Strace

EVERY = os.environ.get("TELLAXIS_FAULTS") == "every"
STRIDE = 1 if EVERY else 16
FIRST_ROUND = 20  # seconds that jobs which met a fault may take
SECOND_ROUND = 20
WORKERS = 3  # most of a run is waiting


def ended_by_a_library(program):
    """GLib ends the program where it cannot get memory for a thread; a service is started anew then."""
    return program.process.poll() is not None and any("GLib-ERROR" in line for line in program.complaints)


class Run:
    """Two rounds on a fresh desk; during the first the k-th `call` fails with `error`, where a call is given."""

    def __init__(self, devices, call="all", error=None, k=None):
        self.place = f"{call} {error} at {k}"
        fault_desk = FaultDesk(devices)
        try:
            self._rounds(fault_desk, call, error, k)
        finally:
            fault_desk.close()

    def _rounds(self, fault_desk, call, error, k):
        program = fault_desk.start()
        strace = Strace(program, call, error, k)
        fault_desk.drop(Jobs("primo", fault_desk.devices))
        self.settled = fault_desk.settle(FIRST_ROUND)
        self.calls = strace.detach()
        self.restarted = ended_by_a_library(program)
        if self.restarted:
            program = fault_desk.start()
            fault_desk.settle(FIRST_ROUND)
        self.first = fault_desk.outcome()
        self.left = fault_desk.waiting()
        fault_desk.drop(Jobs("sesto", fault_desk.devices))
        self.second = self._until(fault_desk)
        self.status = self._stop(program)
        self.at_end = fault_desk.outcome().since(self.first)
        self.settings = fault_desk.desk.settings_file.read_text("cp1252").replace(str(fault_desk.desk.root), "ROOT")
        self.trace = program.complaints
        self.hit = next((line for line in self.calls if "(INJECTED)" in line), "")
        self.undeletable = self._undeletable()

    @staticmethod
    def _stop(program):
        """The exit status; nothing where the program goes on."""
        try:
            return program.stop()
        except subprocess.TimeoutExpired:
            program.kill()
            return None

    def _undeletable(self):
        """The job file that stayed because of the fault: it could not be deleted, or its writer not be asked for before."""
        if self.hit.startswith("unlink"):
            return self.hit.split('"')[1]
        refused = [line for line in self.trace if line.startswith("passo fallito: remove") and not line.endswith("non esiste")]
        return refused[0].split(": ")[1].split(" ", 1)[1].replace("\\", "/") if refused else ""

    def _until(self, fault_desk):
        """What the second round brought: waits for as much as is expected, then for what may come beyond it."""
        reference = REFERENCES.get(fault_desk.devices)
        if reference is None:
            fault_desk.settle(SECOND_ROUND)
        else:
            self.expected = reference.second.after(self._owed(reference))
            end = time.monotonic() + SECOND_ROUND
            while time.monotonic() < end and not fault_desk.outcome().since(self.first).reaches(self.expected):
                time.sleep(0.02)
        time.sleep(2 * POLLING)
        return fault_desk.outcome().since(self.first)

    def faults(self, reference):
        """What the second round or the end shows that should not be there."""
        found = [f"first round, {what}" for what in self.first.excess(reference.first, self.undeletable)]
        found += [f"second round, {what}" for what in self.second.differences(self.expected)]
        if not found:
            found += [f"at the end, {what}" for what in self.at_end.differences(self.expected)]
        if self.settings != reference.settings:
            found.append(f"settings: {self.settings!r}")
        if self.status != 0:
            found.append(f"exit status {self.status}")
        return found


    def _owed(self, reference):
        """The jobs of the first round that could not be moved: they wait until their folder changes, and come out then."""
        return Outcome(
            reference.first.receipts if "Orbis/primo.txt" in self.left else [],
            b"",
            reference.first.courtesy if "CortOrbis/primo.txt" in self.left else [],
            [],
        )


REFERENCES = {}  # by devices, the run in which nothing failed


def reference_of(devices):
    if devices not in REFERENCES:
        REFERENCES[devices] = Run(devices)
    return REFERENCES[devices]


class SingleFaults(FaultScenario):
    """One scenario a kind of system call."""

    def sweep(self, *calls, desks=(PROGRAM_DRIVER, INPUT_FILE_DRIVER)):
        met = sum(self.sweep_with(devices, calls) for devices in desks)
        if met == 0:
            self.skipTest("the bridge makes no such call")

    def sweep_with(self, devices, calls):
        """Lets the calls fail in rounds with these devices; returns how many places were met."""
        reference = reference_of(devices)
        self.assertTrue(reference.settled and reference.status == 0 and not reference.first.excess(reference.first))
        places = []
        for call, error in calls:
            count = sum(line.startswith(call + "(") for line in reference.calls)
            places += [(call, error, k) for k in range(1 + len(places) % STRIDE, count + 1, STRIDE)]
        with ThreadPoolExecutor(WORKERS) as pool:
            runs = [run for run in pool.map(lambda place: Run(devices, *place), places) if run.hit]
        failed = [(run, faults) for run in runs for faults in [run.faults(reference)] if faults]
        restarted = sum(run.restarted for run in runs)
        name = f"{devices.protocol}{', prompt, with diary' if devices.bridge else ''}"
        print(f"{self._testMethodName}, {name}: {len(runs)} places, {len(failed)} failed, {restarted} after a"
              " new start", flush=True)  # fmt: skip
        with self.subTest(name):
            self.assertTrue(runs or not places, "no place was met")
            if failed:
                self.fail("".join(self.story(*pair) for pair in failed))
        return len(places)

    @staticmethod
    def story(run, faults):
        return f"\n{run.place}: {run.hit}\n  " + "\n  ".join(faults + list(dict.fromkeys(run.trace)))

    def test_opening_a_file(self):
        self.sweep(("openat", "EMFILE"))

    def test_reading(self):
        self.sweep(("read", "EIO"))

    def test_writing(self):
        self.sweep(("write", "ENOSPC"), ("writev", "EIO"), ("pwrite64", "ENOSPC"), desks=(PROGRAM_DRIVER, INPUT_FILE_DRIVER, PROMPT))

    def test_renaming(self):
        self.sweep(("rename", "EIO"), ("renameat", "EIO"), ("renameat2", "EIO"))

    def test_deleting(self):
        self.sweep(("unlink", "EBUSY"), ("unlinkat", "EBUSY"))

    def test_looking_at_a_file(self):
        self.sweep(("newfstatat", "EIO"), ("statx", "EIO"), ("access", "EIO"), ("readlink", "EIO"))

    def test_asking_for_a_lease_or_a_lock(self):
        self.sweep(("fcntl", "EAGAIN"), ("flock", "ENOLCK"))

    def test_listing_a_folder(self):
        self.sweep(("getdents64", "EIO"))

    def test_making_a_folder(self):
        self.sweep(("mkdir", "ENOSPC"))

    def test_setting_up_a_device(self):
        self.sweep(("ioctl", "EIO"))

    def test_flushing_to_the_disk(self):
        self.sweep(("fsync", "EIO"), ("fdatasync", "EIO"))

    def test_waiting(self):
        self.sweep(("poll", "ENOMEM"), ("ppoll", "ENOMEM"), ("epoll_wait", "EINTR"), ("clock_nanosleep", "EINTR"))

    def test_getting_memory(self):
        # Not brk: small blocks that cairo asks for and does not get are its end, and ours.
        self.sweep(("mmap", "ENOMEM"))

    def test_asking_for_the_file_system(self):
        self.sweep(("fstatfs", "EIO"), ("statfs", "EIO"))

    def test_asking_for_notices(self):
        self.sweep(("inotify_init1", "EMFILE"), ("inotify_add_watch", "ENOSPC"), ("inotify_rm_watch", "EINVAL"), desks=(PROMPT,))

    def test_starting_a_program(self):
        self.sweep(("clone3", "EAGAIN"), ("vfork", "EAGAIN"), ("pidfd_open", "EMFILE"))


if __name__ == "__main__":
    unittest.main()
