"""Scheduled operations of the real program, driven through a pretended time of day."""

import os
import unittest
from datetime import date, timedelta

from harness import EMULATOR, ON_WINDOWS, PROGRAM, Scenario, program_path, wait_for

WEEKDAYS = ("LUN", "MAR", "MER", "GIO", "VEN", "SAB", "DOM")
MONDAY = date(2003, 3, 3)


def read_keys(file):
    if not file.exists():
        return {}
    lines = file.read_bytes().decode("cp1252").splitlines()
    return dict(line.split("=", 1) for line in lines if "=" in line)


def write_keys(file, keys):
    text = "[VARIE]\r\n" + "".join(f"{key}={value}\r\n" for key, value in keys.items())
    file.write_bytes(text.encode("cp1252"))


class Shop:
    """A desk whose restore and second application are batch files that note each of their runs."""

    def __init__(self, desk):
        self.desk = desk
        self.timetable = desk.c("MERIDIA\\_Schedulatore.ini")
        self.local = desk.c("MERIDIA\\_Local.ini")
        self.environment = desk.environment()

    def note_runs(self, name):
        notes = self.desk.root / f"{name}.note"
        line = f'@echo corsa>> "{program_path(notes)}"' if ON_WINDOWS else f"echo corsa >> '{notes}'"
        (self.desk.main / name).write_bytes(f"{line}\r\n".encode())

    def runs(self, name):
        notes = self.desk.root / f"{name}.note"
        return len(notes.read_text().splitlines()) if notes.exists() else 0

    def run_at(self, moment, *more):
        """Without the harness's readers: these are thousands of runs."""
        words = [*EMULATOR, str(PROGRAM), *self.desk.arguments(), "pianificate", "--now", moment, *more]
        process = os.posix_spawn(words[0], words, self.environment)
        return os.waitstatus_to_exitcode(os.waitpid(process, 0)[1])


@unittest.skipIf(ON_WINDOWS, "ten thousand starts")
class Week(Scenario):
    """Every minute of a week has its entry; each day is lived through on a desk of its own."""

    def test_every_entry_of_monday_is_carried_out_exactly_once(self):
        self.live_through(0)

    def test_every_entry_of_tuesday_is_carried_out_exactly_once(self):
        self.live_through(1)

    def test_every_entry_of_wednesday_is_carried_out_exactly_once(self):
        self.live_through(2)

    def test_every_entry_of_thursday_is_carried_out_exactly_once(self):
        self.live_through(3)

    def test_every_entry_of_friday_is_carried_out_exactly_once(self):
        self.live_through(4)

    def test_every_entry_of_saturday_is_carried_out_exactly_once(self):
        self.live_through(5)

    def test_every_entry_of_sunday_is_carried_out_exactly_once(self):
        self.live_through(6)

    def live_through(self, weekday):
        shop = Shop(self.desk)
        shop.note_runs("Restore51.bat")
        shop.note_runs("Orbis52.bat")
        name = WEEKDAYS[weekday]
        minutes = [f"{minute // 60:02}{minute % 60:02}" for minute in range(1440)]
        codes = {minute: ("2" if int(minute) % 3 == 0 else "1") + name + minute for minute in minutes}
        write_keys(shop.timetable, {f"{name}#{minute}": f"{codes[minute]}#T{minute}#" for minute in minutes})
        day = MONDAY + timedelta(weekday)
        for minute in minutes:
            moment = f"{day} {minute[:2]}:{minute[2:]}"
            self.assertEqual(shop.run_at(moment), 0)
            local = read_keys(shop.local)
            self.assertEqual((local["TLX_SO_OPE"], local["TLX_SO_TAG"]), (codes[minute], f"T{minute}"), moment)
            self.assertEqual(read_keys(self.desk.settings_file)["OP_LAST"], f"{day:%d%m%Y}#{name}#{minute}")
            if minute.endswith("7"):
                self.assertEqual(shop.run_at(moment), 0)
        restores = sum(code.startswith("2") for code in codes.values())
        self.wait_for_runs(shop, "Restore51.bat", restores)
        self.wait_for_runs(shop, "Orbis52.bat", 1440 - restores)

    def wait_for_runs(self, shop, name, count):
        wait_for(lambda: shop.runs(name) >= count, f"{count} runs of {name}")
        self.assertEqual(shop.runs(name), count)


class Operations(Scenario):
    MOMENT = "2003-03-07 09:30"  # a Friday

    def setUp(self):
        super().setUp()
        self.shop = Shop(self.desk)
        self.desk.settings(Orbis_Directory="C:\\MERIDIA")

    def runtime(self):
        """A database runtime that notes its arguments, one a line."""
        script = self.desk.c("Access 97 Runtime")
        script.mkdir()
        script /= "msaccess.exe"
        self.arguments = self.desk.root / "argomenti"
        unfinished = f"{self.arguments}.nuovo"
        script.write_text(f"#!/bin/sh\nprintf '%s\\n' \"$@\" > {unfinished}\nmv {unfinished} {self.arguments}\n")
        script.chmod(0o755)
        self.desk.settings(RunTimeOrbis51="C:\\Access 97 Runtime\\msaccess.exe")

    def noted_arguments(self):
        wait_for(self.arguments.exists, "the runtime's start")
        return self.arguments.read_text().splitlines()

    @unittest.skipIf(ON_WINDOWS, "the runtime is a script")
    def test_a_restore_without_a_batch_file_is_run_by_the_runtime(self):
        self.runtime()
        write_keys(self.shop.timetable, {"VEN#0930": "25#notte#"})
        self.assertEqual(self.shop.run_at(self.MOMENT, "--postazione", "SERVER"), 0)
        self.assertEqual(
            self.noted_arguments(),
            ["/runtime", "/wrkgrp", "C:\\MERIDIA\\System.mdw", "C:\\MERIDIA\\Restore_51.mde"],
        )
        self.assertEqual(
            read_keys(self.shop.local),
            {
                "TLX_SO_ACTIVE": "-1",
                "TLX_SO_OPE": "25",
                "TLX_SO_TAG": "NOTTE",
                "RESTORE_ACTIVE": "-1",
                "TLX_R51_ACTIVE": "1",
            },
        )

    @unittest.skipIf(ON_WINDOWS, "the runtime is a script")
    def test_another_operation_without_a_batch_file_is_run_by_the_runtime(self):
        self.runtime()
        write_keys(self.shop.timetable, {"VEN#0930": "1#x#"})
        self.assertEqual(self.shop.run_at(self.MOMENT), 0)
        self.assertEqual(self.noted_arguments()[3], "C:\\MERIDIA\\Orbis52.mde")

    def test_a_request_by_hand_is_taken_once(self):
        self.shop.note_runs("Restore51.bat")
        write_keys(self.shop.timetable, {"PRC_ACTIVE": "-1"})
        write_keys(self.shop.local, {"TLX_SO_OPE": "2"})
        for _ in range(2):
            self.assertEqual(self.shop.run_at(self.MOMENT), 0)
        wait_for(lambda: self.shop.runs("Restore51.bat") == 1, "the restore")
        self.assertEqual(read_keys(self.shop.timetable)["PRC_ACTIVE"], "0")
        self.assertEqual(read_keys(self.shop.local)["TLX_R51_ACTIVE"], "2")

    def test_the_role_of_the_devices_file_counts_unless_another_is_asked_for(self):
        self.shop.note_runs("Restore51.bat")
        (self.desk.main / "devices.toml").write_text('[bridge]\nrole = "SERVER"\n')
        write_keys(self.shop.timetable, {"VEN#0930": "2#x#", "VEN#0931": "2#x#"})
        self.assertEqual(self.shop.run_at(self.MOMENT), 0)
        self.assertEqual(read_keys(self.shop.local)["TLX_R51_ACTIVE"], "1")
        self.assertEqual(self.shop.run_at("2003-03-07 09:31", "--postazione", "CLIENT"), 0)
        self.assertEqual(read_keys(self.shop.local)["TLX_R51_ACTIVE"], "2")

    def test_with_nothing_due_nothing_is_written(self):
        write_keys(self.shop.timetable, {"VEN#0931": "1#x#"})
        before = self.desk.settings_file.read_bytes()
        self.assertEqual(self.shop.run_at(self.MOMENT), 0)
        self.assertEqual(self.desk.settings_file.read_bytes(), before)
        self.assertFalse(self.shop.local.exists())
        self.assertEqual(sorted(entry.name for entry in self.desk.main.iterdir()), ["_Tellaxis.ini"])

    def test_beside_a_running_copy_jobs_and_gates_are_left_alone(self):
        self.shop.note_runs("Orbis52.bat")
        write_keys(self.shop.timetable, {"VEN#0930": "1#x#"})
        resident = self.desk.start()
        self.desk.settings(MF_Vuoto=0)
        self.desk.drop("attesa.txt")
        self.assertEqual(self.shop.run_at(self.MOMENT), 0)
        wait_for(lambda: self.shop.runs("Orbis52.bat") == 1, "the second application")
        self.assertEqual(self.desk.jobs(), ["attesa.txt"])
        self.assertEqual(self.desk.read_settings()["MF_Vuoto"], "0")
        self.assertEqual(resident.stop(), 0)


class Arguments(Scenario):
    def test_the_pretended_time_belongs_to_the_scheduled_operations(self):
        for words in (["ftp"], []):
            program = self.desk.launch(*self.desk.arguments(), *words, "--now", "2003-03-07 09:30")
            self.assertEqual(program.wait(), 2)
            self.assertEqual(program.complaints, ["tellaxisd: --now: vale solo per pianificate"])
        self.assertFalse(self.desk.settings_file.exists())

    def test_the_present_minute_is_the_usual_one(self):
        program = self.desk.launch("pianificate", *self.desk.arguments())
        self.assertEqual(program.wait(), 0)
        self.assertEqual(program.complaints + program.output, [])


if __name__ == "__main__":
    unittest.main()
