"""Prompt jobs: with [bridge] prompt a job is taken when its writer has finished, not at the next tick."""

import threading
import time
import unittest

import fiscal_driver
from harness import ON_WINDOWS, Scenario, wait_for
from process_figures import wake_ups

SLOW = 5.0  # seconds between two ticks: what comes sooner was not brought by a tick


class Prompt(Scenario):
    def configure(self, **more):
        (self.desk.main / "devices.toml").write_text("[bridge]\nprompt = true\n")
        # Every job goes to a driver that watches its input file; the bridge waits until that is free.
        fiscal_driver.configure(self.desk, "CASIO/DITRON - 24", delay=0, **more)
        fiscal_driver.watching(self.desk, self.desk.c("MF\\in.txt"), work=1)

    def append(self, name, line):
        with open(self.desk.main / "Orbis" / name, "ab") as job:
            job.write(line)

    def warm_up(self):
        """The first tick begins the watch."""
        self.desk.drop("primo.txt", "primo")
        wait_for(lambda: fiscal_driver.receipts(self.desk) == ["primo"], "the first receipt", 30)

    def test_a_renamed_job_is_taken_at_once(self):
        self.configure()
        self.desk.start(polling=SLOW)
        self.warm_up()
        begun = time.monotonic()
        self.desk.drop("scontrino.txt", "secondo")
        wait_for(lambda: len(fiscal_driver.receipts(self.desk)) == 2, "the second receipt")
        self.assertLess(time.monotonic() - begun, SLOW / 2)

    def test_a_written_job_is_taken_when_it_is_quiet(self):
        self.configure()
        self.desk.start(polling=SLOW)
        self.warm_up()
        begun = time.monotonic()
        self.append("scontrino.txt", b"secondo")
        wait_for(lambda: len(fiscal_driver.receipts(self.desk)) == 2, "the second receipt")
        self.assertLess(time.monotonic() - begun, SLOW / 2)

    def test_jobs_written_line_by_line_are_never_cut(self):
        self.configure()
        # Ticks come in the midst of every job.
        self.desk.start(polling=0.007)
        self.warm_up()

        slow_writes = []

        def write(number):
            last = time.monotonic()
            for line in range(4):
                self.append(f"scontrino{number}.txt", b"riga %d\r\n" % line)
                now = time.monotonic()
                if now - last > 0.025:
                    slow_writes.append(number)
                last = now
                time.sleep(0.01)

        for number in range(20):
            writer = threading.Thread(target=write, args=(number,))
            writer.start()
            writer.join()
            wait_for(lambda: not self.desk.jobs() and not self.desk.jobs("IN"), "the job taken")
        whole = "".join(f"riga {line}\r\n" for line in range(4))
        cut = [text for text in fiscal_driver.receipts(self.desk)[1:] if text != whole]
        # A writer that this machine kept waiting for longer than the quiet time was quiet in truth.
        self.assertLessEqual(len(cut), 4 * len(slow_writes), cut)
        self.assertLess(len(slow_writes), 10, "this machine is too busy for the scenario")

    def test_the_wait_for_an_answer_ends_with_the_answer(self):
        (self.desk.main / "devices.toml").write_text("[bridge]\nprompt = true\n")
        fiscal_driver.configure(
            self.desk, "ONDA DRIVER - 91", delay=1000, MF_Driver=fiscal_driver.command_line(self.desk, work=50)
        )
        self.desk.start()
        begun = time.monotonic()
        self.desk.drop("scontrino.txt", "uno")
        wait_for(lambda: len(fiscal_driver.receipts(self.desk)) == 1 and not self.desk.jobs("IN"), "the job done")
        self.assertLess(time.monotonic() - begun, 5, "MF_Ritardo is 10 s")


@unittest.skipIf(ON_WINDOWS, "the count is that of Linux")
class AtRest(Scenario):
    def woken(self, devices_file):
        (self.desk.main / "devices.toml").write_text(devices_file)
        program = self.desk.start(polling=0.05)
        time.sleep(1)
        before = wake_ups(program.process.pid)
        time.sleep(5)
        woken = wake_ups(program.process.pid) - before
        program.stop()
        return woken

    def test_an_idle_bridge_wakes_up_no_more_often_than_without(self):
        fiscal_driver.configure(self.desk, "CASIO/DITRON - 24", delay=0)
        self.desk.settings(Display_Active=-1, Display_File="C:\\d.txt", RF_Active=-1, RF_File="C:\\r.txt", CORT_Active=-1)
        without = self.woken("")
        self.assertGreater(without, 20, "a tick wakes it up")
        # A busy machine leaves out a tick here and there.
        self.assertLess(self.woken("[bridge]\nprompt = true\n"), 1.2 * without)


if __name__ == "__main__":
    unittest.main()
