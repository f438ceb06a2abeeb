"""Metrics: the file that collectors read, its figures, and that nothing of it is there where it is switched off."""

import os
import re
import shutil
import signal
import stat
import subprocess
import tempfile
import unittest
from pathlib import Path

import fiscal_driver
from harness import ON_WINDOWS, Scenario, program_path, some_ticks, wait_for
from monitoring_tools import monitoring_tool, why_no_tools
from receipt_printer import ReceiptPrinter

OUTCOMES = ("delivered", "confirmed", "unanswered", "given-up", "failed", "discarded")


def samples(text):
    """The value of each line that is none of the format's own words, by name and labels as they are written."""
    rows = {}
    for line in text.split("\n"):
        if line and not line.startswith("#"):
            name, value = line.rsplit(" ", 1)
            if name in rows:
                raise AssertionError(f"twice: {name}")
            rows[name] = float(value)
    return rows


class MetricsScenario(Scenario):
    def setUp(self):
        super().setUp()
        fiscal_driver.configure(self.desk, "CASIO/DITRON - 24", delay=0)
        self.file = self.desk.main / "metriche.prom"

    def switch_on(self, *more):
        (self.desk.main / "devices.toml").write_text("\n".join(["[bridge]", 'metrics = "metriche.prom"', *more, ""]), encoding="utf-8")

    def start(self, *more):
        program = self.desk.start(*more)
        wait_for(self.file.exists, "the first tick's file")
        return program

    def last_figures(self, program):
        """What is written at the orderly end."""
        self.assertEqual(program.stop(), 0)
        return samples(self.file.read_text("utf-8"))

    def jobs(self, figures, device="fiscal"):
        rows = {name: value for name, value in figures.items() if name.startswith(f'tellaxis_jobs_total{{device="{device}"')}
        return {re.search('outcome="([^"]*)"', name)[1]: value for name, value in rows.items()}

    def deliver(self, name):
        self.desk.drop(name)
        wait_for(lambda: not self.desk.jobs() and not self.desk.jobs("IN"), "the job done")


class Metrics(MetricsScenario):
    def test_without_the_option_there_is_no_file(self):
        (self.desk.main / "devices.toml").write_text("[bridge]\nkeep_waiting = true\n")
        program = self.desk.start()
        self.deliver("uno.txt")
        self.assertEqual(program.stop(), 0)
        self.assertEqual(list(self.desk.root.rglob("*.prom")), [])

    def test_the_first_tick_tells_of_every_outcome_and_of_active_devices_alone(self):
        self.switch_on('role = "CLIENT"')
        self.start()
        text = self.file.read_text("utf-8")
        self.assertTrue(text.endswith("\n# EOF\n"))
        self.assertNotIn("\r", text)
        figures = samples(text)
        self.assertEqual(self.jobs(figures), dict.fromkeys(OUTCOMES, 0))
        self.assertEqual({device for device in re.findall('device="([^"]*)"', text)}, {"fiscal"})
        self.assertRegex(text, r'\ntellaxis_info\{version="[0-9.]+",role="CLIENT"\} 1\n')
        self.assertEqual(figures['tellaxis_gate_open{device="fiscal"}'], 1)
        self.assertEqual(figures['tellaxis_waiting_jobs{device="fiscal"}'], 0)

    def test_a_delivered_job_counts_and_is_timed(self):
        self.switch_on()
        program = self.start()
        for name in ("uno.txt", "due.txt"):
            self.desk.c("MF\\in.txt").unlink(missing_ok=True)
            self.deliver(name)
        figures = self.last_figures(program)
        self.assertEqual(self.jobs(figures), {**dict.fromkeys(OUTCOMES, 0), "delivered": 2})
        self.assertEqual(figures['tellaxis_job_seconds_count{device="fiscal"}'], 2)
        self.assertEqual(figures['tellaxis_job_seconds_bucket{device="fiscal",le="+Inf"}'], 2)
        self.assertGreater(figures['tellaxis_job_seconds_sum{device="fiscal"}'], 0)
        started = figures["tellaxis_start_timestamp_seconds"]
        last = figures['tellaxis_last_job_timestamp_seconds{device="fiscal"}']
        self.assertGreater(last, started)
        written = self.file.stat().st_mtime
        # Some file systems keep whole seconds.
        self.assertLess(abs(written - last), 60)
        self.assertGreater(figures["tellaxis_tick_seconds_max"], 0)

    def test_what_waits_behind_a_closed_gate_is_told(self):
        self.switch_on()
        program = self.start()
        self.desk.settings(MF_Vuoto=0)
        some_ticks(2)
        for name in ("uno.txt", "due.txt"):
            self.desk.drop(name)
        figures = self.last_figures(program)
        self.assertEqual(figures['tellaxis_gate_open{device="fiscal"}'], 0)
        self.assertEqual(figures['tellaxis_waiting_jobs{device="fiscal"}'], 2)

    def test_a_failing_step_is_counted_by_its_operation(self):
        self.switch_on()
        self.desk.settings(MF_File="C:\\manca\\in.txt")
        program = self.start()
        self.deliver("uno.txt")
        figures = self.last_figures(program)
        self.assertGreaterEqual(figures['tellaxis_failed_steps_total{operation="copy"}'], 1)

    def test_jobs_that_the_start_emptied_are_discarded(self):
        self.switch_on()
        (self.desk.main / "Orbis").mkdir()
        for name in ("uno.txt", "due.txt"):
            self.desk.drop(name)
        figures = self.last_figures(self.start())
        self.assertEqual(self.jobs(figures)["discarded"], 2)

    def test_with_a_diary_a_job_that_a_kill_interrupted_is_unconfirmed(self):
        self.switch_on('diary = "diario"')
        fiscal_driver.configure(self.desk, "ONDA DRIVER - 91", delay=500, MF_Driver="C:\\MF\\nessuno.exe")
        program = self.start()
        self.desk.drop("uno.txt")
        wait_for((self.desk.main / "diario" / "ultimo.json").exists, "the job under way")
        program.kill()
        self.file.unlink()
        figures = self.last_figures(self.start())
        self.assertEqual((self.jobs(figures)["unconfirmed"], self.jobs(figures)["discarded"]), (1, 0))

    def test_the_file_may_lie_anywhere(self):
        folder = self.desk.root / "città"
        folder.mkdir()
        self.file = folder / "tellaxis.prom"
        (self.desk.main / "devices.toml").write_text(f"[bridge]\nmetrics = '{program_path(self.file)}'\n", encoding="utf-8")
        self.last_figures(self.start())
        self.assertEqual([entry.name for entry in folder.iterdir()], ["tellaxis.prom"], "nothing else stays there")

    def test_a_file_that_cannot_be_written_costs_a_traced_step_and_nothing_else(self):
        (self.desk.main / "devices.toml").write_text('[bridge]\nmetrics = "manca/metriche.prom"\n')
        program = self.desk.start("--trace")
        self.deliver("uno.txt")
        self.assertTrue(self.desk.c("MF\\in.txt").exists())
        self.assertEqual(program.stop(), 0)
        self.assertEqual(len([line for line in program.complaints if "passo fallito: create" in line]), 2, program.complaints)

    @unittest.skipIf(ON_WINDOWS, "on Windows the folder says who may read")
    def test_other_users_may_read_it(self):
        self.switch_on()
        self.file.write_text("before")
        self.file.chmod(0o600)
        mask = os.umask(0o077)
        self.addCleanup(os.umask, mask)
        self.last_figures(self.start())
        self.assertEqual(stat.S_IMODE(self.file.stat().st_mode), 0o644)


@unittest.skipIf(ON_WINDOWS, "the simulated printer is a program of Linux")
class Paper(MetricsScenario):
    def setUp(self):
        super().setUp()
        self.printer = ReceiptPrinter(self.desk.root / "received.bin")
        self.addCleanup(self.printer.close)
        self.desk.settings(MF_Active=0, CORT_Active=-1, CORT_Printer="OLIVETTI PRT100 NonFiscale", CORT_COM=3)
        target = f"escpos:tcp://127.0.0.1:{self.printer.port}"
        self.switch_on("[[printer]]", 'name = "POS"', 'port = "COM3:"', f'target = "{target}"')

    def print_one(self):
        program = self.start()
        self.desk.drop("preconto.txt", "uno\r\n", "CortOrbis")
        wait_for(lambda: not self.desk.jobs("CortOrbis") and not self.desk.jobs("CortIN"), "the job taken")
        return self.last_figures(program)

    def test_a_printer_that_can_print_is_ready(self):
        figures = self.print_one()
        self.assertEqual(figures['tellaxis_device_ready{device="courtesy"}'], 1)
        self.assertEqual(self.jobs(figures, "courtesy"), {"done": 1, "failed": 0, "discarded": 0})

    def test_a_printer_without_paper_is_not_ready(self):
        self.printer.tell("senza carta")
        figures = self.print_one()
        self.assertEqual(figures['tellaxis_device_ready{device="courtesy"}'], 0)
        self.assertEqual(self.jobs(figures, "courtesy"), {"done": 0, "failed": 1, "discarded": 0})

    def test_nothing_is_said_of_a_printer_that_was_not_asked(self):
        self.assertNotIn('tellaxis_device_ready{device="courtesy"}', self.last_figures(self.start()))


@unittest.skipIf(why_no_tools(("promtool",)), why_no_tools(("promtool",)))
class Promtool(MetricsScenario):
    def test_it_has_nothing_to_say(self):
        self.switch_on('diary = "diario"', 'role = "SERVER"')
        self.desk.settings(
            CORT_Active=-1, CORT_Printer="OLIVETTI PRT100 NonFiscale", CORT_COM=3, MF_File="C:\\manca\\in.txt"
        )
        program = self.start()
        self.deliver("uno.txt")
        self.desk.drop("preconto.txt", "uno\r\n", "CortOrbis")
        wait_for(lambda: not self.desk.jobs("CortOrbis") and not self.desk.jobs("CortIN"), "the job taken")
        self.assertEqual(program.stop(), 0)
        text = self.file.read_bytes()
        self.assertEqual(self.check(text), (0, ""))
        self.assertIn(b"tellaxis_failed_steps_total{", text)
        wrong = text.replace(b"tellaxis_jobs_total", b"tellaxis_jobs")
        self.assertIn("_total", self.check(wrong)[1], "it would say what is against the conventions")

    @staticmethod
    def check(text):
        done = subprocess.run([monitoring_tool("promtool"), "check", "metrics"], input=text, capture_output=True, check=False)
        return done.returncode, (done.stdout + done.stderr).decode("utf-8")


def why_no_strace():
    scope = Path("/proc/sys/kernel/yama/ptrace_scope")
    if ON_WINDOWS or not shutil.which("strace"):
        return "strace is missing"
    if os.geteuid() != 0 and scope.exists() and scope.read_text().strip() != "0":
        return "ptrace_scope keeps an ordinary user from tracing a running program"
    return ""


@unittest.skipIf(why_no_strace(), why_no_strace())
class AtRest(MetricsScenario):
    """What an idle bridge asks of the system from one wait to the next."""

    def ticks(self, program):
        """The calls of each of many ticks, by their names."""
        with tempfile.NamedTemporaryFile("r", prefix="tellaxis-strace-") as log:
            strace = subprocess.Popen(["strace", "-q", "-p", str(program.process.pid), "-o", log.name])
            wait_for(lambda: log.seek(0) == 0 and log.read().count("poll(") > 120, "120 ticks", 120)
            strace.send_signal(signal.SIGINT)
            strace.wait()
            log.seek(0)
            calls = re.findall(r"^([a-z_0-9]+)\(", log.read(), re.M)
        # An interrupted wait is gone on with at once.
        return [tick.split() for tick in " ".join(calls).split("poll")[1:-1] if tick.strip()]

    def idle(self):
        program = self.desk.start()
        some_ticks()
        ticks = self.ticks(program)
        program.stop()
        return ticks

    @staticmethod
    def least(ticks):
        """The calls of the tick that asks least; after a change in a folder the bridge looks twice for a while."""
        return min(ticks, key=len)

    def test_a_tick_costs_no_call_more_than_without_metrics(self):
        without = self.idle()
        self.assertFalse([tick for tick in without if "rename" in tick])
        self.switch_on()
        self.assertEqual(self.least(self.idle()), self.least(without))


if __name__ == "__main__":
    unittest.main()
