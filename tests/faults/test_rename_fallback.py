"""A file system without the safe rename: a job gets its second name by a link, and where its first cannot go, loses it."""

import re
import subprocess
import tempfile
import unittest
from pathlib import Path

from fault_desk import FaultScenario, Strace
import fiscal_driver
from harness import Desk, some_ticks, wait_for


class StraceOfPath(Strace):
    """Lets calls of a running program fail: each of `errors` by its call's name, those on `path` alone where given."""

    def __init__(self, program, errors, path=None):
        self.pid = program.process.pid
        self.log = Path(tempfile.mkstemp(prefix="tellaxis-strace-")[1])
        words = ["strace", "-q", "-p", str(self.pid), "-o", str(self.log), "-e", "trace=" + ",".join(errors)]
        for call, error in errors.items():
            words += ["-e", f"inject={call}:error={error}"]
        words += ["-P", str(path)] if path else []
        streams = dict(stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.process = subprocess.Popen(words, **streams)
        wait_for(lambda: self._is_attached() or self.process.poll() is not None, "strace attached")


class RenameFallback(FaultScenario):
    def setUp(self):
        super().setUp()
        self.desk = Desk()
        self.addCleanup(self.desk.close)
        fiscal_driver.configure(
            self.desk, "ONDA DRIVER - 91", delay=2, MF_Driver=fiscal_driver.command_line(self.desk, work=0)
        )

    def test_a_job_moved_by_a_link_comes_out_once(self):
        program = self.desk.start("--trace")
        strace = StraceOfPath(program, {"renameat2": "EINVAL"})
        for name in ("a", "b"):
            self.desk.drop(name + ".txt", name)
        wait_for(lambda: len(fiscal_driver.receipts(self.desk)) == 2, "two receipts", 30)
        some_ticks()
        calls = strace.detach()
        self.assertTrue(any(re.match(r'renameat2.*IN/.*EINVAL', call) for call in calls), calls)
        self.assertEqual(fiscal_driver.receipts(self.desk), ["a", "b"])
        self.assertEqual(self.desk.jobs() + self.desk.jobs("IN"), [])

    def test_a_job_whose_first_name_cannot_go_is_in_one_place_and_starts_the_driver_at_most_once(self):
        program = self.desk.start("--trace")
        job = self.desk.main / "Orbis" / "a.txt"
        strace = StraceOfPath(program, {"renameat2": "EINVAL", "unlink": "EPERM", "rename": "EPERM"}, job)
        self.desk.drop("a.txt", "a")
        wait_for(lambda: any("Orbis\\a.txt" in line for line in program.complaints), "the refused move")
        some_ticks(40)
        calls = strace.detach()
        self.assertTrue(any(call.startswith("unlink(") for call in calls), calls)
        self.assertEqual(self.desk.jobs(), ["a.txt"])
        self.assertEqual(self.desk.jobs("IN"), [])
        # The router runs what it could not move once, as given; the input file that its driver finds is not this job's.
        self.assertLessEqual(len(fiscal_driver.receipts(self.desk)), 1)
        self.assertEqual(len([call for call in calls if call.startswith("unlink(")]), 1, calls)
        self.desk.drop("b.txt", "b")
        wait_for(lambda: not self.desk.jobs() and not self.desk.jobs("IN"), "both jobs taken")
        # The stuck job is looked at again only once its folder has changed, which the other one brought about.
        self.assertEqual(sorted(text for text in fiscal_driver.receipts(self.desk) if text), ["a", "b"])


if __name__ == "__main__":
    unittest.main()
