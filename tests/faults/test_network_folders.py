"""Network folders: file systems of other computers, which tell nothing of their files' writers, or refuse every lease."""

import errno
import os
import subprocess
import sys
import unittest

from harness import Scenario, some_ticks, wait_for
from owners_desk import SETTLING, SLOW_WRITER, OwnersDesk

NETWORK_FOLDER = os.environ.get("NETWORK_FOLDER_LIBRARY", "")
NFS, CIFS = 0x6969, 0xFF534D42


class NetworkDesk(OwnersDesk):
    """One user alone, on folders of another computer."""

    def hand_over_lease(self, given):
        self.before = []

    @staticmethod
    def give(path, owner, mode, group=None):
        pass


@unittest.skipUnless(NETWORK_FOLDER, "the library that makes folders look like another computer's is not built here")
class NetworkFolders(Scenario):
    def setUp(self):
        self.desk = NetworkDesk()
        self.addCleanup(self.desk.close)
        self.desk.use_driver()

    def start_on(self, kind, lease, lock=0):
        return self.desk.start("--trace", environment=self.preloading(kind, lease, lock))

    def preloading(self, kind, lease, lock=0):
        return {"LD_PRELOAD": NETWORK_FOLDER, "NETWORK_TYPE": str(kind), "NETWORK_LEASE": str(lease), "NETWORK_LOCK": str(lock)}

    def hands_over(self, kind, lease):
        """Whole jobs and one that is written slowly, while it is, come out whole and once, and settings are kept."""
        program = self.start_on(kind, lease)
        self.desk.drop("a.txt", "intero")
        wait_for(lambda: self.desk.driven() == ["intero"], "the first receipt")
        parts = [f"riga {number:02} " for number in range(15)]
        expected = ["intero"]
        for attempt in range(5):
            path = self.desk.main / "Orbis" / f"lento{attempt}.txt"
            writer = subprocess.run([sys.executable, "-c", SLOW_WRITER, path, "0.1", *parts], stdout=subprocess.PIPE, check=True)
            wait_for(lambda: not self.desk.jobs() and not self.desk.jobs("IN"), "the job taken")
            if float(writer.stdout) < SETTLING:
                break
            expected = self.desk.driven()
        else:
            self.fail("no writer got through without a long pause")
        self.assertEqual(self.desk.driven(), expected + ["".join(parts)])
        self.assertEqual(program.stop(), 0)

    def test_where_leases_are_unknown_jobs_are_handed_over_whole(self):
        self.hands_over(NFS, errno.EINVAL)

    def test_where_every_lease_is_refused_jobs_are_handed_over_whole(self):
        self.hands_over(NFS, errno.EAGAIN)

    def test_shares_of_windows_hand_jobs_over_whole(self):
        self.hands_over(CIFS, errno.EAGAIN)

    def test_without_locks_no_copy_starts_and_nothing_is_deleted(self):
        (self.desk.main / "Orbis").mkdir()
        self.desk.drop("a.txt", "resta")
        program = self.desk.launch(*self.desk.arguments(), environment=self.preloading(NFS, errno.EINVAL, errno.ENOLCK))
        self.assertEqual(program.wait(), 3)
        self.assertIn(".tellaxis.lock", "\n".join(program.complaints))
        self.assertEqual(self.desk.jobs(), ["a.txt"])

    def test_answers_of_a_driver_are_deleted_there_too(self):
        self.start_on(CIFS, errno.EAGAIN)
        for name in ("a", "b", "c"):
            self.desk.drop(name + ".txt", name)
        wait_for(lambda: len(self.desk.driven()) == 3, "three receipts", 30)
        self.assertEqual(self.desk.driven(), ["a", "b", "c"])
        some_ticks(4)
        self.assertFalse(self.desk.c("MF\\out.txt").exists())


if __name__ == "__main__":
    unittest.main()
