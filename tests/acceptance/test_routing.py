"""Routing of job files through the real program."""

import unittest

import fiscal_driver
from harness import ON_WINDOWS, Scenario, some_ticks, wait_for


class Routing(Scenario):
    def setUp(self):
        super().setUp()
        fiscal_driver.configure(self.desk, "Nessuno", delay=0)

    def test_of_105_jobs_101_are_done_and_four_stay_in_the_work_folder(self):
        self.desk.settings(MF_Vuoto=0)
        self.desk.start()
        self.desk.settings(MF_Vuoto=0)
        some_ticks()
        for number in range(105):
            self.desk.drop(f"job{number:03}.txt")
        self.desk.settings(MF_Vuoto=-1)
        wait_for(lambda: not self.desk.jobs(), "the drop folder empty")
        wait_for(lambda: len(self.desk.jobs("IN")) == 4, "101 jobs done")
        some_ticks()
        self.assertEqual(self.desk.jobs("IN"), [f"job{number}.txt" for number in range(101, 105)])

    def test_a_closed_gate_piles_jobs_up_and_an_open_one_resumes(self):
        self.desk.start()
        for closed in ("0", "Falso", "False"):
            self.desk.settings(MF_Vuoto=closed)
            some_ticks(2)
            self.desk.drop(f"{closed}.txt")
            some_ticks()
            self.assertIn(f"{closed}.txt", self.desk.jobs())
        self.desk.settings(MF_Vuoto=-1)
        wait_for(lambda: not self.desk.jobs(), "the jobs taken")

    @unittest.skipIf(ON_WINDOWS, "Wine does not see what native programs hold")
    def test_a_job_still_being_written_is_not_taken_until_closed(self):
        fiscal_driver.configure(self.desk, "CASIO/DITRON - 24", delay=0)
        self.desk.start()
        job = self.desk.main / "Orbis" / "lento.txt"
        with open(job, "wb", buffering=0) as writer:
            writer.write(b"prima met\xe0, ")
            some_ticks()
            self.assertTrue(job.exists())
            self.assertFalse(self.desk.c("MF\\in.txt").exists())
            writer.write(b"seconda met\xe0")
        wait_for(lambda: self.desk.c("MF\\in.txt").exists(), "the job handed over")
        self.assertEqual(self.desk.c("MF\\in.txt").read_bytes(), b"prima met\xe0, seconda met\xe0")
        self.assertFalse(job.exists())

    def test_jobs_run_in_the_order_of_their_names(self):
        fiscal_driver.configure(
            self.desk, "ONDA DRIVER - 91", delay=1, MF_Driver=fiscal_driver.command_line(self.desk, work=0)
        )
        self.desk.start()
        self.desk.settings(MF_Vuoto=0)
        some_ticks(2)
        for name in ("b", "A", "c"):
            self.desk.drop(name + ".txt", name)
        self.desk.settings(MF_Vuoto=-1)
        wait_for(lambda: len("".join(fiscal_driver.receipts(self.desk))) == 3, "three whole receipts")
        self.assertEqual(fiscal_driver.receipts(self.desk), ["A", "b", "c"])

    def test_missing_folders_are_made_again(self):
        self.desk.start()
        (self.desk.main / "Orbis").rmdir()
        (self.desk.main / "IN").rmdir()
        wait_for(lambda: (self.desk.main / "Orbis").is_dir() and (self.desk.main / "IN").is_dir(), "the folders")

    def test_without_a_driver_input_file_nothing_is_routed(self):
        self.desk.settings(MF_File="")
        self.desk.start()
        self.desk.drop("scontrino.txt")
        some_ticks()
        self.assertEqual(self.desk.jobs(), ["scontrino.txt"])

    def test_an_inactive_courtesy_printer_leaves_its_jobs(self):
        self.desk.start()
        self.desk.drop("preconto.txt", folder="CortOrbis")
        some_ticks()
        self.assertEqual(self.desk.jobs("CortOrbis"), ["preconto.txt"])

    def test_a_newer_job_replaces_an_older_one_in_the_work_folder(self):
        fiscal_driver.configure(self.desk, "CASIO/DITRON - 24", delay=0)
        self.desk.start()
        self.desk.settings(MF_Vuoto=0)
        some_ticks(2)
        (self.desk.main / "IN" / "scontrino.txt").write_text("vecchio")
        self.desk.drop("scontrino.txt", "nuovo")
        self.desk.settings(MF_Vuoto=-1)
        wait_for(lambda: self.desk.c("MF\\in.txt").exists(), "the job handed over")
        self.assertEqual(self.desk.c("MF\\in.txt").read_text(), "nuovo")

    def test_an_idle_bridge_never_writes_its_settings_file(self):
        self.desk.start()
        before = self.desk.settings_file.stat()
        some_ticks(10)
        after = self.desk.settings_file.stat()
        self.assertEqual((before.st_ino, before.st_mtime_ns), (after.st_ino, after.st_mtime_ns))


if __name__ == "__main__":
    unittest.main()
