"""Few descriptors: a start with fewer files than the bridge needs is refused; where they run out later it recovers.

TELLAXIS_FAULTS=every tries every number; without it one in four is tried."""

import os
import resource
import time
import unittest
from concurrent.futures import ThreadPoolExecutor

from fault_desk import POLLING, FaultDesk, Jobs

STRIDE = 1 if os.environ.get("TELLAXIS_FAULTS") == "every" else 4
FEWEST, MOST = 4, 48
ENOUGH = 1024
WORKERS = 2


def limited(number):
    """The command that lets a program have so many descriptors."""
    return ["sh", "-c", f'ulimit -S -n {number} && exec "$@"', "sh"]


class Run:
    """A desk whose bridge may open so few files during a round, and enough of them again in the next."""

    def __init__(self, number, usual):
        self.number = number
        self.desk = FaultDesk()
        try:
            self.faults = self._faults(usual)
        finally:
            self.desk.close()

    def _faults(self, usual):
        desk = self.desk
        program = desk.start()
        resource.prlimit(program.process.pid, resource.RLIMIT_NOFILE, (self.number, ENOUGH))
        desk.drop(Jobs("primo", desk.devices))
        self.settled = desk.settle(3)
        if program.process.poll() is not None:
            return [f"ended with {program.process.returncode}"]
        resource.prlimit(program.process.pid, resource.RLIMIT_NOFILE, (ENOUGH, ENOUGH))
        found = [] if desk.settle(20) else [f"still waiting: {desk.waiting()}"]
        first = desk.outcome()
        found += [f"first round, {what}" for what in first.excess(usual)]
        desk.drop(Jobs("sesto", desk.devices))
        expected = usual.reworded("primo", "sesto")
        end = time.monotonic() + 20
        while time.monotonic() < end and not desk.outcome().since(first).reaches(expected):
            time.sleep(0.02)
        time.sleep(2 * POLLING)
        found += [f"second round, {what}" for what in desk.outcome().since(first).differences(expected)]
        if program.stop() != 0:
            found.append("it did not end well")
        return found and found + list(dict.fromkeys(program.complaints))


class FewDescriptors(unittest.TestCase):
    def usual(self):
        """What a round brings where nothing is lacking."""
        desk = FaultDesk()
        self.addCleanup(desk.close)
        program = desk.start()
        desk.drop(Jobs("primo", desk.devices))
        self.assertTrue(desk.settle(10))
        self.assertEqual(program.stop(), 0)
        return desk.outcome()

    def test_a_start_with_few_of_them_says_so_and_touches_nothing(self):
        desk = FaultDesk()
        self.addCleanup(desk.close)
        (desk.desk.main / "Orbis").mkdir()
        desk.desk.drop("a.txt")
        for number in (*range(FEWEST, 63, STRIDE), 63):
            desk.desk.before = limited(number)
            program = desk.desk.launch(*desk.desk.arguments(POLLING))
            self.assertIn(program.wait(), (1, 2, 127), number)
            self.assertTrue(program.complaints, number)
            if number > 8:
                self.assertIn("file aperti", program.complaints[0])
            self.assertEqual(desk.desk.jobs(), ["a.txt"])
        desk.desk.before = limited(64)
        self.assertEqual(desk.start().stop(), 0)

    def test_where_they_run_out_no_job_comes_twice_and_with_enough_of_them_all_come(self):
        usual = self.usual()
        with ThreadPoolExecutor(WORKERS) as pool:
            runs = [*pool.map(lambda number: Run(number, usual), range(FEWEST, MOST, STRIDE))]
        print(", ".join(f"{run.number}: {'done' if run.settled else 'waits'}" for run in runs), flush=True)
        self.assertTrue(any(run.settled for run in runs) and not all(run.settled for run in runs))
        failed = [f"\n{run.number} descriptors:\n  " + "\n  ".join(run.faults) for run in runs if run.faults]
        if failed:
            self.fail("".join(failed))


if __name__ == "__main__":
    unittest.main()
