"""The bridge as a service of systemd: what it tells its manager and the journal, and when it falls silent."""

import os
import re
import shutil
import signal
import time
import unittest

import fiscal_driver
from harness import ON_WINDOWS, POLLING, Scenario, some_ticks, wait_for
from service_manager import Journal, ServiceManager

PATIENCE = 2  # seconds


def libraries_of(program):
    with open(f"/proc/{program.process.pid}/maps", encoding="utf-8") as maps:
        return maps.read()


def tracer_of(program):
    with open(f"/proc/{program.process.pid}/status", encoding="utf-8") as status:
        return int(re.search(r"^TracerPid:\s*(\d+)$", status.read(), re.M)[1])


@unittest.skipIf(ON_WINDOWS, "systemd runs services of Linux")
class Manager(Scenario):
    def start_under(self, manager, *more):
        return self.desk.start(*more, environment=manager.environment)

    def test_it_is_ready_when_it_polls_and_says_when_it_stops(self):
        manager = ServiceManager(self)
        program = self.start_under(manager)
        wait_for(lambda: len(manager.messages) >= 2, "the service says that it is ready")
        self.assertEqual(manager.texts(), ["READY=1", "STATUS=nessun dispositivo attivo"])
        self.assertEqual(program.stop(), 0)
        wait_for(lambda: len(manager.messages) >= 3, "the service says that it stops")
        self.assertEqual(manager.texts()[2:], ["STOPPING=1"])
        self.assertEqual((program.output, program.complaints), (["pronto"], []))

    def test_it_says_how_many_devices_it_serves_and_when_the_last_receipt_went(self):
        fiscal_driver.configure(
            self.desk, "ONDA DRIVER - 91", MF_Driver=fiscal_driver.command_line(self.desk), CORT_Active=-1
        )
        manager = ServiceManager(self)
        self.start_under(manager)
        wait_for(lambda: manager.statuses() == ["2 dispositivi attivi"], "the number of devices")
        some_ticks()
        self.assertEqual(len(manager.statuses()), 1, "what has not changed is not said again")
        self.desk.drop("scontrino.txt")
        wait_for(lambda: len(manager.statuses()) == 2, "the last receipt")
        self.assertRegex(manager.statuses()[1], r"^2 dispositivi attivi, ultimo scontrino \d\d:\d\d$")

    def test_an_idle_bridge_gives_signs_of_life_no_more_often_than_it_must(self):
        manager = ServiceManager(self, PATIENCE)
        self.start_under(manager)
        wait_for(lambda: len(manager.signs_of_life()) >= 4, "signs of life")
        signs = manager.signs_of_life()
        self.assertGreater(signs[3] - signs[0], 3 * (PATIENCE / 4 - POLLING) * 0.8)

    def test_with_a_polling_interval_longer_than_the_patience_it_gives_them_all_the_same(self):
        manager = ServiceManager(self, 120)
        # The pieces of a long wait are as long as the usual interval of the signs, 30 s.
        program = self.desk.start(polling=3600, environment=manager.environment)
        wait_for(manager.signs_of_life, "the first sign of life", seconds=60)
        self.assertEqual(program.stop(), 0)

    def test_a_driver_that_is_waited_for_is_no_hang(self):
        self.waits_and_lives()

    def test_nor_is_one_whose_answer_is_listened_for(self):
        (self.desk.main / "devices.toml").write_text("[bridge]\nprompt = true\n")
        self.waits_and_lives()

    def waits_and_lives(self):
        # A driver that never answers is looked for 102 times.
        fiscal_driver.configure(self.desk, "ONDA DRIVER - 91", delay=3 * PATIENCE, MF_Driver="/bin/true")
        manager = ServiceManager(self, PATIENCE)
        self.start_under(manager)
        self.desk.drop("scontrino.txt")
        wait_for(lambda: self.desk.jobs("IN"), "the job is under way")
        begun = time.monotonic()
        wait_for(lambda: not self.desk.jobs("IN"), "the wait is over", seconds=60)
        ended = time.monotonic()
        self.assertGreater(ended - begun, PATIENCE, "the wait was a long one")
        signs = [begun, *(sign for sign in manager.signs_of_life() if begun < sign < ended), ended]
        self.assertGreater(len(signs), (ended - begun) / PATIENCE)

    @unittest.skipUnless(shutil.which("strace"), "needs strace")
    def test_a_folder_that_does_not_answer_is_a_hang(self):
        hung = self.desk.c("rete")
        hung.mkdir()
        self.desk.settings(Orbis_Setting=0, Display_Active=-1, Display_File="C:\\rete\\display.txt")
        # Every call that names the folder or the file in it hangs, as on a network drive whose server is gone.
        paths = [word for path in (hung, hung / "display.txt") for word in ("-P", str(path))]
        self.desk.before = ["strace", "-D", "-f", "-qq", "-o", "/dev/null", *paths, "-e", "inject=file:delay_enter=120000000"]
        manager = ServiceManager(self, PATIENCE)
        program = self.start_under(manager)
        self.addCleanup(os.kill, tracer_of(program), signal.SIGKILL)
        wait_for(lambda: "READY=1" in manager.texts(), "ready")
        ready = manager.messages[0][0]
        wait_for(lambda: time.monotonic() - ready > 2 * PATIENCE, "the manager's patience is over")
        self.assertEqual(manager.signs_of_life(), [])

    def test_nobody_asked_nothing_loaded(self):
        self.assertNotIn("systemd", libraries_of(self.desk.start("--trace")))

    def test_asked_it_loads_what_it_needs(self):
        self.assertIn("libsystemd", libraries_of(self.start_under(ServiceManager(self))))


@unittest.skipIf(ON_WINDOWS, "the journal is Linux'")
@unittest.skipUnless(ON_WINDOWS or Journal.is_possible(), "needs a view of the file system of its own")
class FailingStepsInTheJournal(Scenario):
    def failing_job(self, journal, *more):
        """A fiscal job whose driver is not there."""
        fiscal_driver.configure(self.desk, "ONDA DRIVER - 91", MF_Driver="C:\\manca\\driver.exe")
        self.desk.before = journal.before
        program = self.desk.start(*more, environment=journal.environment)
        self.desk.drop("società.txt")
        wait_for(lambda: not self.desk.jobs() and not self.desk.jobs("IN"), "the job is gone", seconds=60)
        self.assertEqual(program.stop(), 0)
        self.printed = journal.errors.read_text(encoding="utf-8")

    def test_each_is_an_entry_with_device_job_and_operation(self):
        journal = Journal(self)
        self.failing_job(journal, "--trace")
        wait_for(lambda: [e for e in journal.entries() if e["TELLAXIS_OPERATION"] == "start"], "the entry of the driver")
        (entry,) = [entry for entry in journal.entries() if entry["TELLAXIS_OPERATION"] == "start"]
        self.assertRegex(entry.pop("MESSAGE"), r"^passo fallito: start C:\\manca\\driver.exe.*: .+$")
        self.assertRegex(entry.pop("TELLAXIS_SUBJECT"), r"^C:\\manca\\driver.exe")
        self.assertEqual(
            entry,
            {
                "PRIORITY": "4",
                "SYSLOG_IDENTIFIER": "tellaxisd",
                "TELLAXIS_OPERATION": "start",
                "TELLAXIS_DEVICE": "fiscal",
                "TELLAXIS_JOB": "società.txt",
            },
        )
        self.assertNotIn("passo fallito", self.printed, "each is told once")

    def test_without_trace_they_go_there_where_the_devices_file_says_so(self):
        (self.desk.main / "devices.toml").write_text("[bridge]\nevent_log = true\n")
        journal = Journal(self)
        self.failing_job(journal)
        wait_for(lambda: [e for e in journal.entries() if e["TELLAXIS_OPERATION"] == "start"], "the entry of the driver")

    def test_they_stay_on_standard_error_where_that_leads_elsewhere(self):
        journal = Journal(self, is_error_stream=False)
        self.failing_job(journal, "--trace")
        self.assertTrue(re.search("^passo fallito: start ", self.printed, re.M), self.printed)
        self.assertEqual(journal.entries(), [])

    def test_nothing_is_said_of_them_unless_somebody_asks(self):
        journal = Journal(self)
        self.failing_job(journal)
        self.assertEqual((journal.entries(), self.printed), ([], ""))
