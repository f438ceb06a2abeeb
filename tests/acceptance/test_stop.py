"""What a stop, or a job that goes wrong, leaves to the next start."""

import resource
import time
import unittest

import fiscal_driver
from harness import ON_WINDOWS, Scenario, tool, wait_for


class Stop(Scenario):
    def dead_driver(self):
        """A driver program that never answers: each receipt costs 102 waits of 0.02 s."""
        fiscal_driver.configure(self.desk, "ONDA DRIVER - 91", delay=2, MF_Driver=tool("nessuno"))

    def drop_three(self):
        for name in ("1.txt", "2.txt", "3.txt"):
            self.desk.drop(name, name)

    def wait_for_the_first(self):
        """Waits until the first receipt is under way: a stop before it lies at the driver would put it back too."""
        wait_for(lambda: self.desk.c("MF\\in.txt").exists(), "the first receipt under way")

    def test_it_waits_for_the_receipt_under_way_and_puts_the_others_back(self):
        self.dead_driver()
        program = self.desk.start(polling=1)
        self.drop_three()
        self.wait_for_the_first()
        asked = time.monotonic()
        self.assertEqual(program.stop(), 0)
        self.assertLess(time.monotonic() - asked, 2 * 102 * 0.02, "the time of two receipts")
        self.assertEqual(self.desk.jobs(), ["2.txt", "3.txt"])
        self.assertEqual(self.desk.jobs("IN"), [])

    def receipts_after_stop_and_start(self):
        """What reaches the driver when three receipts waited for a dead one, and one comes after the next start."""
        self.dead_driver()
        program = self.desk.start(polling=1)
        self.drop_three()
        self.wait_for_the_first()
        program.stop()
        self.desk.settings(MF_Driver=fiscal_driver.command_line(self.desk))
        self.desk.start()
        self.desk.drop("4.txt", "4.txt")
        wait_for(lambda: "4.txt" in fiscal_driver.receipts(self.desk), "the last receipt")
        return fiscal_driver.receipts(self.desk)

    def test_what_it_put_back_is_deleted_by_the_next_start(self):
        self.assertEqual(self.receipts_after_stop_and_start(), ["4.txt"])

    def test_what_it_put_back_is_handed_over_by_the_next_start_that_keeps_waiting_jobs(self):
        (self.desk.main / "devices.toml").write_text("[bridge]\nkeep_waiting = true\n")
        self.assertEqual(self.receipts_after_stop_and_start(), ["2.txt", "3.txt", "4.txt"])

    def test_waiting_jobs_are_handed_over_in_the_order_of_their_names(self):
        (self.desk.main / "devices.toml").write_text("[bridge]\nkeep_waiting = true\n")
        fiscal_driver.configure(self.desk, "ONDA DRIVER - 91", MF_Driver=fiscal_driver.command_line(self.desk, work=1))
        for folder in ("Orbis", "IN"):
            (self.desk.main / folder).mkdir()
        for name in ("c.txt", "a.txt", "B.txt"):
            self.desk.drop(name, name)
        self.desk.drop("sotto.txt", "sotto.txt", folder="IN")
        self.desk.start()
        wait_for(lambda: len(fiscal_driver.receipts(self.desk)) == 3, "the waiting receipts")
        self.assertEqual(fiscal_driver.receipts(self.desk), ["a.txt", "B.txt", "c.txt"])
        wait_for(lambda: not self.desk.jobs("IN"), "the last job deleted")


@unittest.skipIf(ON_WINDOWS, "the memory of a process is limited natively")
class LackOfMemory(Scenario):
    def test_a_job_that_does_not_fit_into_memory_ends_itself_alone(self):
        printer = '[[printer]]\nname = "SAMSUNG SRP-500"\nport = "COM3:"\ntarget = "folder:spool"\n'
        (self.desk.main / "devices.toml").write_text(printer)
        self.desk.settings(Orbis_Setting=0, CORT_Active=-1, CORT_Printer="SAMSUNG", CORT_COM=3)
        program = self.desk.start()
        if "libasan" in open(f"/proc/{program.process.pid}/maps").read():
            self.skipTest("the address sanitizer ends a program that gets no memory")
        size = 64 << 20
        used = int(open(f"/proc/{program.process.pid}/statm").read().split()[0]) * resource.getpagesize()
        resource.prlimit(program.process.pid, resource.RLIMIT_AS, (used + size // 2, used + size // 2))
        huge = self.desk.root / "enorme"
        with open(huge, "wb") as job:
            job.truncate(size)
        huge.rename(self.desk.main / "CortOrbis" / "enorme.txt")
        wait_for(lambda: not self.desk.jobs("CortOrbis") and not self.desk.jobs("CortIN"), "the end of the huge job")
        self.assertIsNone(program.process.poll(), program.complaints)
        self.desk.drop("b.txt", "Totale#0#18#5#1#R\r\n#1\r\n", folder="CortOrbis")
        wait_for(lambda: [*(self.desk.main / "spool").glob("*.jsonl")], "the next receipt")
        self.assertEqual(program.stop(), 0)


if __name__ == "__main__":
    unittest.main()
