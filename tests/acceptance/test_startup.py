"""Start-up of the real program, its command line and its end."""

import os
import signal
import unittest

import fiscal_driver
from harness import ON_WINDOWS, Scenario, program_path, some_ticks, wait_for


class StartUp(Scenario):
    def test_a_first_start_makes_folders_and_settings(self):
        program = self.desk.start()
        for folder in ("CortOrbis", "CortIN", "Orbis", "IN"):
            self.assertTrue((self.desk.main / folder).is_dir(), folder)
        settings = self.desk.read_settings()
        for key in ("MF_Vuoto", "RF_Vuoto", "Cort_Vuoto"):
            self.assertEqual(settings[key], "-1")
        self.assertEqual(settings["Orbis_Directory"], "C:\\Meridia")
        self.assertEqual(settings["RunTimeOrbis51"], "C:\\Programmi\\Access 97 Runtime\\msaccess.exe")
        self.assertEqual(program.stop(), 0)
        self.assertEqual(program.output, ["pronto"])

    def test_jobs_left_from_before_are_deleted_and_not_run(self):
        fiscal_driver.configure(self.desk, "CASIO/DITRON - 24", delay=0)
        for folder in ("Orbis", "IN", "CortOrbis", "CortIN"):
            (self.desk.main / folder).mkdir()
            (self.desk.main / folder / "vecchio.txt").write_text("x")
        self.desk.start()
        some_ticks()
        for folder in ("Orbis", "IN", "CortOrbis", "CortIN"):
            self.assertEqual(self.desk.jobs(folder), [], folder)
        self.assertFalse(self.desk.c("MF\\in.txt").exists())

    @unittest.skipIf(ON_WINDOWS, "symbolic links are made natively")
    def test_emptying_spares_sub_folders_and_what_links_point_to(self):
        outside = self.desk.root / "fuori"
        outside.mkdir()
        (outside / "prezioso.txt").write_text("x")
        folder = self.desk.main / "Orbis"
        (folder / "archivio").mkdir(parents=True)
        (folder / "archivio" / "dentro.txt").write_text("x")
        (folder / "legame").symlink_to(outside)
        (folder / "file").symlink_to(outside / "prezioso.txt")
        self.desk.start()
        self.assertTrue((outside / "prezioso.txt").exists())
        self.assertTrue((folder / "archivio" / "dentro.txt").exists())
        self.assertFalse((folder / "file").is_symlink())

    def test_a_trailing_backslash_is_dropped_from_the_point_of_sale_folder(self):
        self.desk.settings(Orbis_Directory="C:\\MERIDIA\\")
        self.desk.start()
        self.assertEqual(self.desk.read_settings()["Orbis_Directory"], "C:\\MERIDIA")

    def test_a_single_backslash_is_kept_as_point_of_sale_folder(self):
        self.desk.settings(Orbis_Directory="\\")
        self.desk.start()
        self.assertEqual(self.desk.read_settings()["Orbis_Directory"], "\\")

    @unittest.skipIf(ON_WINDOWS, "Wine drops the blanks around equals signs")
    def test_other_lines_of_the_settings_file_keep_their_bytes(self):
        text = "; cassa 1\r\n[Altro]\r\nx = 1\r\n\r\n[VARIE]\r\nmf_vuoto=-1\r\nOrbis_Directory=C:\\MERIDIA\r\nOrbis_Setting=0\r\n; fine\r\n"
        self.desk.settings_file.write_bytes(text.encode())
        self.desk.start()
        self.assertEqual(
            self.desk.settings_file.read_bytes().decode(),
            "; cassa 1\r\n[Altro]\r\nx = 1\r\n\r\n[VARIE]\r\nmf_vuoto=-1\r\nOrbis_Directory=C:\\MERIDIA\r\nOrbis_Setting=0\r\n"
            "RF_Vuoto=-1\r\nCort_Vuoto=-1\r\nRunTimeOrbis51=C:\\Programmi\\Access 97 Runtime\\msaccess.exe\r\n; fine\r\n",
        )


class CommandLine(Scenario):
    def run_to_end(self, *arguments):
        program = self.desk.launch(*arguments)
        status = program.wait()
        return status, program.output, program.complaints

    def test_help_and_version_are_printed(self):
        status, output, complaints = self.run_to_end("--help")
        self.assertEqual((status, complaints), (0, []))
        self.assertTrue(output[0].startswith("Uso: tellaxisd"), output)
        status, output, complaints = self.run_to_end("--version")
        self.assertEqual((status, complaints), (0, []))
        self.assertRegex(output[0], r"^Tellaxis \d+\.\d+\.\d+$")

    def test_unusable_arguments_give_one_line_that_names_them(self):
        for arguments, name in (
            (["--strano"], "--strano"),
            (["--interval", "zero"], "--interval"),
            (["--interval", "0"], "--interval"),
            (["--interval"], "--interval"),
            (["--drive", "pippo"], "--drive"),
            (["--main-folder", program_path(self.desk.root / "manca")], "--main-folder"),
            (["stampa"], "stampa"),
            ([*self.desk.arguments(), "--locale", "xx_YY"], "--locale"),
        ):
            with self.subTest(arguments):
                status, output, complaints = self.run_to_end(*arguments)
                self.assertEqual((status, output, len(complaints)), (2, [], 1), complaints)
                self.assertIn(name, complaints[0])

    @unittest.skipIf(ON_WINDOWS, "pipes and devices as files are native")
    def test_a_pipe_or_an_endless_device_in_the_place_of_the_devices_file_is_refused(self):
        pipe = self.desk.main / "devices.toml"
        os.mkfifo(pipe)
        self.assertEqual(self.run_to_end(*self.desk.arguments())[0], 2)
        pipe.unlink()
        pipe.symlink_to("/dev/zero")
        self.assertEqual(self.run_to_end(*self.desk.arguments())[0], 2)

    def test_a_second_copy_is_refused_before_it_touches_anything(self):
        self.desk.start()
        before = self.desk.settings_file.stat().st_mtime_ns
        self.desk.drop("scontrino.txt")
        status, output, complaints = self.run_to_end(*self.desk.arguments())
        self.assertEqual((status, output, len(complaints)), (3, [], 1))
        self.assertIn("cassa", complaints[0])
        self.assertEqual(self.desk.jobs(), ["scontrino.txt"])
        self.assertEqual(self.desk.settings_file.stat().st_mtime_ns, before)

    def test_a_copy_that_was_killed_does_not_keep_the_next_from_starting(self):
        program = self.desk.start()
        program.kill()
        self.assertEqual(self.desk.start().stop(), 0)

    def test_a_copy_that_is_asked_to_end_ends_cleanly_and_leaves_its_folder(self):
        program = self.desk.start()
        self.assertEqual(self.run_to_end(*self.desk.arguments(), "--esci"), (0, [], []))
        self.assertEqual(program.wait(), 0)
        self.assertEqual(self.run_to_end(*self.desk.arguments(), "--esci"), (4, [], []), "there is no copy any more")
        self.assertEqual(self.desk.start().stop(), 0)

    def test_a_copy_that_is_asked_to_end_finishes_its_job_first(self):
        fiscal_driver.configure(
            self.desk, "ONDA DRIVER - 91", delay=5, MF_Driver=fiscal_driver.command_line(self.desk, work=800)
        )
        program = self.desk.start()
        self.desk.drop("scontrino.txt")
        wait_for(lambda: self.desk.jobs("IN"), "the job is under way")
        self.assertEqual(self.run_to_end(*self.desk.arguments(), "--esci"), (0, [], []))
        self.assertEqual(program.wait(), 0)
        self.assertEqual((self.desk.jobs(), self.desk.jobs("IN")), ([], []))
        self.assertEqual(len(fiscal_driver.receipts(self.desk)), 1)

    def test_both_signals_end_the_bridge_cleanly(self):
        for how in (signal.SIGTERM, signal.SIGINT):
            with self.subTest(how):
                self.assertEqual(self.desk.start().stop(how), 0)

    def test_a_request_to_stop_lets_the_present_tick_finish(self):
        fiscal_driver.configure(
            self.desk, "ONDA DRIVER - 91", delay=5, MF_Driver=fiscal_driver.command_line(self.desk, work=800)
        )
        program = self.desk.start()
        self.desk.drop("scontrino.txt")
        wait_for(lambda: fiscal_driver.receipts(self.desk), "the driver at work")
        self.assertEqual(program.stop(), 0)
        self.assertEqual(len(fiscal_driver.receipts(self.desk)), 1)
        self.assertEqual(self.desk.jobs("IN"), [])
        self.assertFalse(self.desk.c("MF\\out.txt").exists())

    def test_failing_steps_are_told_with_trace_alone(self):
        fiscal_driver.configure(self.desk, "CASIO/DITRON - 24", delay=0, MF_File="C:\\manca\\in.txt")
        for more, expected in (((), 0), (("--trace",), 1)):
            program = self.desk.start(*more)
            self.desk.drop("scontrino.txt")
            wait_for(lambda: not self.desk.jobs() and not self.desk.jobs("IN"), "the job deleted")
            program.stop()
            told = [line for line in program.complaints if "C:\\manca\\in.txt" in line]
            self.assertEqual(len(told), expected, program.complaints)


if __name__ == "__main__":
    unittest.main()
