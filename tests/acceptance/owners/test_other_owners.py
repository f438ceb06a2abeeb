"""Files of other owners: a receipt of theirs is handed over at most once, whole, and what cannot be, stays and is said."""

import os
import re
import unittest
from pathlib import Path

from harness import some_ticks, wait_for
from owners_desk import POINT_OF_SALE, SERVICE, SETTLING, OwnersScenario

KEYS = {f"Altra_Chiave_{number}": f"valore {number}" for number in range(32)}


class SlowWriters(OwnersScenario):
    def test_a_job_of_another_owner_written_slowly_is_handed_over_whole(self):
        self.start()
        parts = [f"riga {number:02} " for number in range(20)]
        for attempt in range(5):
            writer = self.desk.write_slowly(self.desk.main / "Orbis" / f"lento{attempt}.txt", 0.1, parts)
            pause = float(writer.communicate()[0])
            wait_for(lambda: not self.desk.jobs() and not self.desk.jobs("IN"), "the job taken")
            if pause < SETTLING:
                break
            self.desk.driven_file.write_text("")  # this computer was too busy for the writer's pauses
        self.assertLess(pause, SETTLING, "no writer got through without a long pause")
        self.assertEqual(self.desk.driven(), ["".join(parts)])

    def test_with_the_right_to_leases_the_pauses_of_its_writer_may_be_long(self):
        self.start(lease=True)
        writer = self.desk.write_slowly(self.desk.main / "Orbis" / "lento.txt", 1.2, ["prima ", "seconda ", "terza"])
        writer.communicate()
        self.wait_for_receipts("prima seconda terza")

    def test_settings_that_another_owner_truncates_and_writes_keep_every_key(self):
        program = self.start()
        whole = self.desk.settings_file.read_text() + "".join(f"{key}={value}\n" for key, value in KEYS.items())
        self.desk.give(self.desk.settings_file, POINT_OF_SALE, 0o664)
        tried = 0
        for _ in range(8):
            # The first part is empty: what is there is gone for as long as the writer waits.
            writer = self.desk.write_slowly(self.desk.settings_file, 0.4, ["", whole])
            self.desk.drop_as(SERVICE, 0o644, "scontrino.txt")
            if float(writer.communicate()[0]) >= SETTLING:
                continue
            tried += 1
            wait_for(lambda: not self.desk.jobs() and not self.desk.jobs("IN"), "the job taken")
            some_ticks()
            found = self.desk.read_settings()
            self.assertEqual({key: found.get(key) for key in KEYS}, KEYS)
        self.assertGreater(tried, 0, "no writer got through in time")
        self.assertEqual(program.stop(), 0)


class Permissions(OwnersScenario):
    def test_a_job_that_may_not_be_read_stays_and_the_others_go_on(self):
        program = self.start()
        self.desk.drop_as(POINT_OF_SALE, 0o600, "a.txt", "segreto")
        self.desk.drop_as(POINT_OF_SALE, 0o644, "b.txt", "leggibile")
        self.wait_for_receipts("leggibile")
        some_ticks(10)
        self.assertEqual(self.desk.jobs(), ["a.txt"])
        self.assertEqual(self.desk.jobs("IN"), [])
        said = [line for line in program.complaints if "Orbis\\a.txt" in line]
        self.assertEqual(len(said), 1, program.complaints)
        (self.desk.main / "Orbis" / "a.txt").chmod(0o644)
        self.wait_for_receipts("leggibile", "segreto")

    def test_a_job_in_a_sticky_folder_that_may_not_be_taken_away_starts_no_driver(self):
        program = self.start()
        self.desk.give(self.desk.main / "Orbis", 0, 0o1777)
        self.desk.drop_as(POINT_OF_SALE, 0o644, "a.txt", "altrui")
        self.desk.drop_as(SERVICE, 0o644, "b.txt", "proprio")
        self.wait_for_receipts("proprio")
        some_ticks(20)
        self.assertEqual(self.desk.driven(), ["proprio"])
        self.assertEqual(self.desk.jobs(), ["a.txt"])
        self.assertEqual(len([line for line in program.complaints if "Orbis\\a.txt" in line]), 1, program.complaints)
        self.desk.give(self.desk.main / "Orbis", 0, 0o777)
        self.wait_for_receipts("proprio", "altrui")

    def test_jobs_in_a_folder_that_may_not_be_written_start_no_driver(self):
        self.start()
        self.desk.give(self.desk.main / "Orbis", POINT_OF_SALE, 0o755, POINT_OF_SALE)
        self.desk.drop_as(POINT_OF_SALE, 0o644, "a.txt", "fermo")
        some_ticks(20)
        self.assertEqual(self.desk.driven(), [])
        self.assertEqual(self.desk.jobs(), ["a.txt"])
        self.desk.give(self.desk.main / "Orbis", SERVICE, 0o2775)
        self.wait_for_receipts("fermo")


class Names(OwnersScenario):
    def test_a_name_with_a_backslash_stays_and_is_said_once(self):
        program = self.start()
        self.desk.drop_as(POINT_OF_SALE, 0o644, "a\\b.txt", "illeggibile")
        self.desk.drop_as(POINT_OF_SALE, 0o644, "c.txt", "buono")
        self.wait_for_receipts("buono")
        some_ticks(20)
        self.assertEqual(self.desk.driven(), ["buono"])
        self.assertEqual(self.desk.jobs(), ["a\\b.txt"])
        self.assertEqual(len([line for line in program.complaints if "a\\b.txt" in line]), 1, program.complaints)

    def test_of_two_names_that_differ_in_case_alone_each_is_handed_over_once(self):
        self.start()
        self.desk.settings_file.write_bytes(self.desk.settings_file.read_bytes() + b"MF_Vuoto=0\r\n")
        some_ticks(20)
        self.desk.drop_as(POINT_OF_SALE, 0o644, "Conto.txt", "maiuscolo")
        self.desk.drop_as(POINT_OF_SALE, 0o644, "conto.txt", "minuscolo")
        self.desk.settings_file.write_bytes(self.desk.settings_file.read_bytes().replace(b"MF_Vuoto=0", b"MF_Vuoto=-1"))
        self.wait_for_receipts("maiuscolo", "minuscolo")
        some_ticks()
        self.assertEqual(self.desk.jobs() + self.desk.jobs("IN"), [])


class Rights(OwnersScenario):
    """What those may do with new files who are in the service's group, and everybody else."""

    def start_with_mask(self, mask):
        self.desk.settings_file.unlink(missing_ok=True)
        self.desk.furnish()
        self.desk.before += ["sh", "-c", f'umask {mask} && exec "$@"', "sh"]
        program = self.desk.start()
        return program

    def mode_of_new_settings(self, mask):
        self.start_with_mask(mask)
        wait_for(self.desk.settings_file.exists, "the settings file")
        return self.desk.settings_file.stat().st_mode & 0o777

    def test_new_settings_are_the_groups_to_read(self):
        self.assertEqual(self.mode_of_new_settings("0022"), 0o640)

    def test_new_settings_are_nobodys_to_read_where_nothing_is_masked(self):
        self.assertEqual(self.mode_of_new_settings("0000"), 0o660)

    def test_with_the_mask_of_the_packages_unit_the_point_of_sale_writes_new_settings_in_place(self):
        unit = (Path(__file__).resolve().parents[3] / "packaging/systemd/tellaxisd.service").read_text()
        (mask,) = re.findall(r"^UMask=(\d+)$", unit, re.M)
        self.assertEqual(self.mode_of_new_settings(mask), 0o660)
        before = self.desk.settings_file.read_text()
        writer = self.desk.write_slowly(self.desk.settings_file, 0, [before, "Altra=1\r\n"])
        writer.communicate()
        self.assertEqual(writer.returncode, 0)
        self.assertEqual(self.desk.read_settings()["Altra"], "1")


class DialUp(OwnersScenario):
    """The file that holds the line's password is run only where the bridge has just made it."""

    def setUp(self):
        super().setUp()
        self.desk.settings(
            FTP_Indirizzo="127.0.0.1:1", FTP_User="u", FTP_Pw="p", FTP_Azione=2, FTP_Directory="C:\\", FTP_NomeFile="a",
            WEB_chkDial=-1, Int_Indirizzo="Provider", Ind_User="mario", Ind_Pw="parola",
        )  # fmt: skip
        self.desk.furnish()
        self.batch_file = self.desk.root / "cassaDial.bat"
        self.ran = self.desk.root / "eseguito"
        self.desk.give(self.desk.root, 0, 0o1777)

    def run_ftp(self):
        program = self.desk.launch(*self.desk.arguments(), "ftp")
        program.wait()
        return program

    def test_a_stale_one_of_somebody_else_is_not_run(self):
        self.batch_file.write_text(f"touch {self.ran}\n")
        self.desk.give(self.batch_file, POINT_OF_SALE, 0o777)
        self.run_ftp()
        self.assertFalse(self.ran.exists())
        self.assertIn("touch", self.batch_file.read_text())

    def test_a_pipe_of_somebody_else_gets_no_password_and_is_not_run(self):
        os.mkfifo(self.batch_file)
        self.desk.give(self.batch_file, POINT_OF_SALE, 0o666)
        reader = os.open(self.batch_file, os.O_RDWR | os.O_NONBLOCK)
        self.addCleanup(os.close, reader)
        os.write(reader, f"touch {self.ran}\n".encode())
        self.run_ftp()
        self.assertFalse(self.ran.exists())
        self.assertEqual(os.read(reader, 1000), f"touch {self.ran}\n".encode())

    def test_a_link_of_somebody_else_is_not_written_through(self):
        victim = self.desk.root / "altrui"
        victim.write_text("intatto")
        self.desk.give(victim, SERVICE, 0o600)
        self.batch_file.symlink_to(victim)
        os.chown(self.batch_file, POINT_OF_SALE, POINT_OF_SALE, follow_symlinks=False)
        self.run_ftp()
        self.assertEqual(victim.read_text(), "intatto")


class Links(OwnersScenario):
    def setUp(self):
        super().setUp()
        self.secret = self.desk.root / "segreto"
        self.secret.write_text("segreto del servizio")
        self.desk.give(self.secret, SERVICE, 0o600)

    def link(self, path):
        path.parent.mkdir(exist_ok=True)
        path.symlink_to(self.secret)
        return path

    def test_a_link_in_a_drop_folder_is_no_job(self):
        self.start()
        link = self.link(self.desk.main / "Orbis" / "a.txt")
        self.desk.drop_as(POINT_OF_SALE, 0o644, "b.txt", "vero")
        self.wait_for_receipts("vero")
        some_ticks(10)
        self.assertEqual(self.desk.driven(), ["vero"])
        self.assertTrue(link.is_symlink())

    def test_a_link_where_the_driver_reads_is_replaced_and_its_target_untouched(self):
        link = self.link(self.desk.c("MF\\in.txt"))
        self.start()
        self.desk.drop_as(POINT_OF_SALE, 0o644, "a.txt", "nuovo")
        self.wait_for_receipts("nuovo")
        self.assertEqual(self.secret.read_text(), "segreto del servizio")
        self.assertFalse(link.is_symlink())

    def test_a_link_in_the_place_of_the_log_is_not_written_through(self):
        self.link(self.desk.c("Tellaxis\\MF.log"))
        self.start()
        self.desk.drop_as(POINT_OF_SALE, 0o644, "a.txt", "nuovo")
        self.wait_for_receipts("nuovo")
        wait_for(lambda: not self.desk.jobs("IN"), "the job done")
        self.assertEqual(self.secret.read_text(), "segreto del servizio")

    def test_a_link_in_the_place_of_a_slip_prints_nothing(self):
        with open(self.desk.main / "devices.toml", "w", encoding="utf-8") as devices:
            devices.write('[[printer]]\nname = "EPSON TM-L90 Receipt"\nport = "LPT1:"\ntarget = "folder:ricevute"\n')
        self.secret.write_text('"segreto","del","servizio"\r\n' * 20)
        link = self.link(self.desk.c("MERIDIA\\Ricevuta.txt"))
        slip = dict(RF_Active=-1, RF_Stampante="EPSON TM-L90 Receipt", RF_Seriale="LPT1:", RF_File="C:\\MERIDIA\\Ricevuta.txt")
        program = self.start(**slip)
        some_ticks(20)
        program.stop()
        self.assertTrue(link.is_symlink())
        self.assertEqual([*self.desk.main.glob("ricevute/*")], [])


class Lock(OwnersScenario):
    def test_a_lock_that_only_root_may_write_is_refused_by_its_name(self):
        lock = self.desk.main / ".tellaxis.lock"
        lock.touch()
        job = self.desk.main / "Orbis" / "a.txt"
        self.desk.furnish()
        job.write_text("resta")
        self.desk.give(lock, 0, 0o600, 0)
        program = self.desk.launch(*self.desk.arguments())
        self.assertEqual(program.wait(), 3)
        complaint = "\n".join(program.complaints)
        self.assertIn(".tellaxis.lock", complaint)
        self.assertIn("non si può sapere", complaint)
        self.assertTrue(job.exists())

    def test_a_lock_that_a_copy_started_by_root_left_is_the_services(self):
        self.desk.use_driver()
        self.desk.furnish()
        before, self.desk.before = self.desk.before, []
        self.assertEqual(self.desk.start().stop(), 0)
        self.desk.before = before
        self.assertEqual(os.stat(self.desk.main / ".tellaxis.lock").st_uid, SERVICE)
        self.assertEqual(self.desk.start().stop(), 0)


if __name__ == "__main__":
    unittest.main()
