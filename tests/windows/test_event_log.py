"""The event log: Wine tells on standard error what a program reports to it."""

import fiscal_driver
from harness import Scenario, wait_for

REPORTED = "err:eventlog:ReportEventW"


class EventLog(Scenario):
    def failing_jobs(self, count, *more):
        """Fiscal jobs whose driver is not there; what was reported meanwhile."""
        fiscal_driver.configure(self.desk, "ONDA DRIVER - 91", MF_Driver="C:\\manca\\driver.exe")
        program = self.desk.start(*more, environment={"WINEDEBUG": "err+eventlog"})
        for _ in range(count):
            self.desk.drop("scontrino.txt")
            wait_for(lambda: not self.desk.jobs() and not self.desk.jobs("IN"), "the job is gone", seconds=60)
        self.assertEqual(program.stop(), 0)
        return [line for line in program.complaints if REPORTED in line]

    def ask(self):
        (self.desk.main / "devices.toml").write_text("[bridge]\nevent_log = true\n")

    def test_a_failing_step_is_reported_once_with_its_device_and_job(self):
        self.ask()
        reported = [line for line in self.failing_jobs(3) if "passo fallito: start " in line]
        self.assertEqual(len(reported), 1, reported)
        self.assertIn("manca", reported[0])
        self.assertIn("Periferica: fiscal, lavoro: scontrino.txt", reported[0])

    def test_nothing_is_reported_unless_the_devices_file_says_so(self):
        self.assertEqual(self.failing_jobs(1, "--trace"), [])
