"""Folders that are read-only, full, or hold a file that cannot go: no driver starts twice, no slip is printed twice."""

import signal
import unittest

from harness import some_ticks, wait_for
from owners_desk import POINT_OF_SALE, SERVICE, MountScenario, mount
from sample_jobs import SLIP

SLIP_PRINTER = "EPSON TM-L90 Receipt"


class ReadOnly(MountScenario):
    def test_a_drop_folder_that_becomes_read_only_starts_no_driver(self):
        self.desk.use_driver()
        self.desk.furnish()
        folder = self.desk.main / "Orbis"
        self.mount_at(folder, "--bind", folder)
        program = self.start()
        self.desk.drop_as(POINT_OF_SALE, 0o644, "a.txt", "prima")
        self.wait_for_receipts("prima")
        program.process.send_signal(signal.SIGSTOP)
        (folder / "b.txt").write_text("dopo")
        mount("-o", "remount,bind,ro", folder)
        program.process.send_signal(signal.SIGCONT)
        some_ticks(40)
        self.assertEqual(self.desk.driven(), ["prima"])
        self.assertEqual(self.desk.jobs(), ["b.txt"])
        self.assertEqual(len([line for line in program.complaints if "Orbis\\b.txt" in line]), 1, program.complaints)
        mount("-o", "remount,bind,rw", folder)
        self.wait_for_receipts("prima", "dopo")
        some_ticks(10)
        self.assertEqual(self.desk.driven(), ["prima", "dopo"])
        self.assertEqual(self.desk.jobs() + self.desk.jobs("IN"), [])

    def test_a_work_folder_that_is_read_only_starts_no_driver(self):
        self.desk.use_driver()
        self.desk.furnish()
        folder = self.desk.main / "IN"
        self.mount_at(folder, "--bind", folder)
        mount("-o", "remount,bind,ro", folder)
        program = self.desk.start("--trace")
        self.desk.drop_as(POINT_OF_SALE, 0o644, "a.txt", "fermo")
        some_ticks(20)
        self.assertEqual(self.desk.driven(), [])
        self.assertEqual(self.desk.jobs(), ["a.txt"])
        self.assertEqual(len([line for line in program.complaints if "Orbis\\a.txt" in line]), 1, program.complaints)
        mount("-o", "remount,bind,rw", folder)
        self.wait_for_receipts("fermo")


class Full(MountScenario):
    def test_a_job_for_a_full_work_folder_waits_and_is_handed_over_once(self):
        self.desk.use_driver()
        self.desk.furnish()
        folder = self.desk.main / "IN"
        self.mount_at(folder, "-t", "tmpfs", "-o", f"size=64k,mode=2775,uid={SERVICE},gid={SERVICE}", "tmpfs")
        program = self.desk.start("--trace")
        filler = folder / ".pieno"
        with open(filler, "wb", buffering=0) as full:
            try:
                while True:
                    full.write(bytes(4096))
            except OSError:
                pass
        self.desk.drop_as(POINT_OF_SALE, 0o644, "a.txt", "grande " * 1000)
        some_ticks(20)
        self.assertEqual(self.desk.driven(), [])
        self.assertEqual(self.desk.jobs(), ["a.txt"])
        self.assertEqual(len([line for line in program.complaints if "Orbis\\a.txt" in line]), 1, program.complaints)
        filler.unlink()
        self.wait_for_receipts("grande " * 1000)
        some_ticks()
        self.assertEqual(self.desk.driven(), ["grande " * 1000])
        self.assertEqual(self.desk.jobs() + self.desk.jobs("IN"), [])


class Undeletable(MountScenario):
    """A slip whose file stays: where that can be foreseen nothing is printed, where it cannot it is printed once."""

    def setUp(self):
        super().setUp()
        with open(self.desk.main / "devices.toml", "w", encoding="utf-8") as devices:
            devices.write(f'[[printer]]\nname = "{SLIP_PRINTER}"\nport = "LPT1:"\ntarget = "folder:ricevute"\n')
        slip = dict(RF_Active=-1, RF_Stampante=SLIP_PRINTER, RF_Seriale="LPT1:", RF_File="C:\\MERIDIA\\Ricevuta.txt")
        self.program = self.start(**slip)
        self.folder = self.desk.c("MERIDIA")
        self.slip = self.folder / "Ricevuta.txt"

    def printed(self):
        return len([*self.desk.main.glob("ricevute/*.jsonl")])

    def put(self, slip=SLIP):
        unfinished = self.folder / ".unfinished"
        unfinished.write_bytes(slip.encode("cp1252"))
        unfinished.replace(self.slip)

    def usual(self):
        """How many documents one slip is."""
        self.put()
        wait_for(lambda: not self.slip.exists(), "the slip printed")
        self.assertGreater(self.printed(), 0)
        return self.printed()

    def test_a_slip_that_cannot_be_deleted_is_printed_once(self):
        usual = self.usual()
        other = self.desk.root / "altrove"
        other.write_bytes(SLIP.encode("cp1252"))
        self.program.process.send_signal(signal.SIGSTOP)
        self.slip.touch()
        # A file that something is mounted on cannot be deleted, and nothing tells so beforehand.
        self.mount_at(self.slip, "--bind", other)
        self.program.process.send_signal(signal.SIGCONT)
        wait_for(lambda: self.printed() >= 2 * usual, "the slip printed")
        some_ticks(40)
        self.assertEqual(self.printed(), 2 * usual)
        other.write_bytes(SLIP.replace("Rossi", "Verdi").encode("cp1252"))
        wait_for(lambda: self.printed() >= 3 * usual, "the changed slip printed")
        some_ticks(10)
        self.assertEqual(self.printed(), 3 * usual)

    def test_a_slip_in_a_sticky_folder_that_may_not_be_taken_away_is_not_printed(self):
        usual = self.usual()
        self.desk.give(self.folder, 0, 0o1777)
        self.put()
        self.desk.give(self.slip, POINT_OF_SALE, 0o644)
        some_ticks(20)
        self.assertEqual(self.printed(), usual)
        self.desk.give(self.folder, SERVICE, 0o2775)
        wait_for(lambda: not self.slip.exists(), "the slip printed", 40)
        self.assertEqual(self.printed(), 2 * usual)

    def test_a_slip_on_a_read_only_file_system_is_not_printed(self):
        usual = self.usual()
        self.program.process.send_signal(signal.SIGSTOP)
        self.mount_at(self.folder, "--bind", self.folder)
        self.put()
        mount("-o", "remount,bind,ro", self.folder)
        self.program.process.send_signal(signal.SIGCONT)
        some_ticks(20)
        self.assertEqual(self.printed(), usual)
        self.assertTrue(self.slip.exists())


if __name__ == "__main__":
    unittest.main()
