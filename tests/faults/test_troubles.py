"""Troubles around the bridge: drivers that die, spoolers that stop, lines that hang up, disks that fill, clocks set back.
What was under way may be lost; what comes after the trouble comes out whole, and nothing twice."""

import os
import shutil
import signal
import subprocess
import tempfile
import time
import unittest
from pathlib import Path

from fault_desk import POLLING, FaultDesk, Jobs
import fiscal_driver
from ftp_servers import PASSWORD, USER, HangingUpServer, PlainServer
from harness import Scenario, wait_for

PRIVATE_CUPS = Path(__file__).parent.parent / "platform" / "linux" / "printing" / "private_cups.sh"
CLOCK_SHIFT = os.environ.get("CLOCK_SHIFT_LIBRARY", "")
ESC_POS_BEGIN = b"\x1b@\x1bt\x10"


class Troubles(unittest.TestCase):
    """A desk with every device; `expect` is what a round brings where nothing is wrong."""

    def make_desk(self, **more):
        desk = FaultDesk()
        self.addCleanup(desk.close)
        self.furnish(desk.desk)
        self.program = desk.start(**more)
        self.before_all(desk)
        return desk

    def furnish(self, desk):
        """What a desk gets before its bridge starts."""

    def before_all(self, desk):
        """A round without trouble, by which the later ones are measured."""
        desk.drop(Jobs("terzo", desk.devices))
        self.assertTrue(desk.settle(10), "the first jobs taken")
        self.usual = desk.outcome()
        self.assertEqual(len(self.usual.receipts), 1)

    def expect(self, word):
        """What a round of this word brings."""
        return self.usual.reworded("terzo", word)

    def round_comes_out(self, desk, word):
        before = desk.outcome()
        desk.drop(Jobs(word, desk.devices))
        expected = self.expect(word)
        end = time.monotonic() + 15
        while time.monotonic() < end and not desk.outcome().since(before).reaches(expected):
            time.sleep(0.02)
        time.sleep(3 * POLLING)
        self.assertEqual(desk.outcome().since(before).differences(expected), [])
        return before


class SerialLine(Troubles):
    def test_a_display_that_hangs_up_costs_its_own_text_alone(self):
        desk = self.make_desk()
        desk.line.pull_out()
        before = desk.outcome()
        desk.drop(Jobs("primo", desk.devices))
        self.assertTrue(desk.settle(15), "the jobs taken")
        without_display = self.expect("primo")
        without_display.display = b""
        time.sleep(2 * POLLING)
        self.assertEqual(desk.outcome().since(before).differences(without_display), [])
        desk.line.plug_in()
        self.round_comes_out(desk, "sesto")


class Driver(Scenario):
    def test_a_driver_that_dies_in_the_midst_does_not_get_its_receipt_again(self):
        wrapper = self.desk.root / "driver.sh"
        died = self.desk.root / "died"
        simulator = fiscal_driver.command_line(self.desk, work=0)
        wrapper.write_text(f'#!/bin/sh\n[ -e {died} ] && exec {simulator}\ntouch {died}\n{simulator} --dies\nkill -9 $$\n')
        wrapper.chmod(0o755)
        fiscal_driver.configure(self.desk, "GLOBE DRIVER - 106", delay=1, MF_Driver=str(wrapper))
        self.desk.start()
        for word in ("primo", "sesto"):
            self.desk.drop(word + ".txt", word)
            wait_for(lambda: not self.desk.jobs() and not self.desk.jobs("IN"), "the job taken")
        self.assertEqual(fiscal_driver.receipts(self.desk), ["primo", "sesto"])


class Spooler(Scenario):
    """A print server that stops and comes back."""

    def setUp(self):
        super().setUp()
        self.folder = Path(tempfile.mkdtemp(prefix="cups-"))
        self.addCleanup(shutil.rmtree, self.folder, True)
        self.server = None
        self.addCleanup(self.stop_server)

    def start_server(self):
        self.server = subprocess.Popen([str(PRIVATE_CUPS), str(self.folder), "pos"], stdout=subprocess.PIPE)
        self.assertEqual(self.server.stdout.readline(), b"pronto\n", "cupsd and lpadmin are needed")

    def stop_server(self):
        if self.server:
            self.server.terminate()
            self.server.wait()
            self.server.stdout.close()
            self.server = None

    def printed(self):
        files = sorted((self.folder / "out").glob("pos-*.bin"), key=lambda file: int(file.stem.split("-")[1]))
        return [file.read_bytes() for file in files]

    def test_receipts_after_its_return_are_printed_once_each(self):
        self.start_server()
        with open(self.desk.main / "devices.toml", "a", encoding="utf-8") as devices:
            devices.write('[[printer]]\nname = "OLIVETTI PRT100"\nport = "COM3:"\ntarget = "escpos:cups:pos"\n')
        self.desk.settings(Orbis_Setting=0, CORT_Active=-1, CORT_Printer="OLIVETTI PRT100 NonFiscale", CORT_COM=3)
        self.desk.start(environment={"CUPS_SERVER": str(self.folder / "run" / "cups.sock")})
        self.print("uno")
        wait_for(lambda: len(self.printed()) == 1, "the first receipt")
        self.stop_server()
        self.print("perso")
        self.start_server()
        self.print("tre")
        wait_for(lambda: ESC_POS_BEGIN + b"tre\n" in self.printed(), "the third receipt")
        time.sleep(0.5)
        printed = [text for text in self.printed() if text != ESC_POS_BEGIN + b"perso\n"]
        self.assertEqual(printed, [ESC_POS_BEGIN + b"uno\n", ESC_POS_BEGIN + b"tre\n"])
        self.assertLessEqual(len(self.printed()), 3)

    def print(self, text):
        self.desk.drop(text + ".txt", text + "\r\n", "CortOrbis")
        wait_for(lambda: not self.desk.jobs("CortOrbis") and not self.desk.jobs("CortIN"), "the job taken")


class Transfers(Scenario):
    """A server that dies in the midst of a transfer; the next request is carried out by one that lives."""

    def request(self, server, action):
        self.desk.settings(
            FTP_Indirizzo=server.address,
            FTP_User=USER,
            FTP_Pw=PASSWORD,
            FTP_Azione=action,
            FTP_Directory="C:\\dati\\",
            FTP_NomeFile="chiusura.txt",
        )
        return self.desk.launch(*self.desk.arguments(), "ftp").wait(60)

    def test_a_file_is_the_old_one_or_the_new_one(self):
        home = self.desk.root / "server"
        folder = self.desk.c("dati")
        home.mkdir()
        folder.mkdir()
        (folder / "chiusura.txt").write_text("vecchia")
        dying = HangingUpServer(b"nuova " * 10000)
        self.addCleanup(dying.close)
        self.assertEqual(self.request(dying, 2), 1)
        self.assertEqual((folder / "chiusura.txt").read_text(), "vecchia")
        self.assertEqual([entry.name for entry in folder.iterdir()], ["chiusura.txt"])
        server = PlainServer(home)
        self.addCleanup(server.close)
        (home / "chiusura.txt").write_text("nuova")
        self.assertEqual(self.request(server, 2), 0)
        self.assertEqual((folder / "chiusura.txt").read_text(), "nuova")


@unittest.skipUnless(os.geteuid() == 0, "needs root, to mount a small disk")
class Disk(Troubles):
    """The whole desk lies on a small disk of its own."""

    def setUp(self):
        self.disk = tempfile.mkdtemp(prefix="disk-")
        self.addCleanup(os.rmdir, self.disk)
        self.mount("-t", "tmpfs", "-o", "size=1m", "tmpfs")
        self.addCleanup(subprocess.run, ["umount", "--lazy", self.disk], check=True)
        usual, tempfile.tempdir = tempfile.tempdir, self.disk
        self.addCleanup(setattr, tempfile, "tempdir", usual)
        self.elsewhere = Path(tempfile.mkdtemp(dir=usual))
        self.addCleanup(shutil.rmtree, self.elsewhere)

    def furnish(self, desk):
        # What the driver keeps is not part of the desk. The lock is open for writing as long as the bridge runs, and no
        # disk with such a file can be made read-only by hand, as a disk that fails makes itself.
        receipts, lock, locked = self.elsewhere / "receipts", self.elsewhere / "lock", desk.main / ".tellaxis.lock"
        receipts.mkdir()
        (desk.root / "receipts").symlink_to(receipts)
        lock.touch()
        locked.touch()
        subprocess.run(["mount", "--bind", lock, locked], check=True)
        self.addCleanup(subprocess.run, ["umount", "--lazy", locked], check=True)

    def mount(self, *how):
        subprocess.run(["mount", *how, self.disk], check=True)

    def fill(self):
        with open(self.disk + "/filler", "wb", buffering=0) as filler:
            for size in (65536, 4096, 1):
                try:
                    while True:
                        filler.write(b"x" * size)
                except OSError:
                    pass

    def test_a_full_disk_costs_the_jobs_under_way_alone(self):
        desk = self.make_desk()
        before = desk.outcome()
        self.program.process.send_signal(signal.SIGSTOP)
        desk.drop(Jobs("primo", desk.devices))
        self.fill()
        settings = desk.desk.settings_file.read_bytes()
        self.program.process.send_signal(signal.SIGCONT)
        desk.settle(8)
        self.assertEqual(desk.desk.settings_file.read_bytes(), settings)
        os.unlink(self.disk + "/filler")
        self.assertTrue(desk.settle(8), desk.waiting())
        self.assertEqual(desk.outcome().since(before).excess(self.expect("primo")), [])
        self.round_comes_out(desk, "sesto")
        self.assertEqual(self.program.stop(), 0)

    def test_a_disk_that_becomes_read_only_and_writable_again_costs_nothing_twice(self):
        desk = self.make_desk()
        before = desk.outcome()
        self.program.process.send_signal(signal.SIGSTOP)
        desk.drop(Jobs("primo", desk.devices))
        self.mount("-o", "remount,ro")
        self.program.process.send_signal(signal.SIGCONT)
        time.sleep(5 * POLLING)
        self.mount("-o", "remount,rw")
        self.assertTrue(desk.settle(20), desk.waiting())
        brought = desk.outcome().since(before)
        # The text could not be deleted: the display shows it again at every look.
        brought.display = b""
        self.assertEqual(brought.excess(self.expect("primo")), [])
        self.round_comes_out(desk, "sesto")
        self.assertEqual(self.program.stop(), 0)


@unittest.skipUnless(CLOCK_SHIFT, "the library that shifts the clock is not built here")
class Clock(Troubles):
    def test_a_clock_set_back_an_hour_between_jobs_stops_none(self):
        shift = Path(tempfile.mkstemp()[1])
        self.addCleanup(shift.unlink)
        desk = self.make_desk(environment={"LD_PRELOAD": CLOCK_SHIFT, "CLOCK_SHIFT": str(shift)})
        for hours in (-1, 1):
            shift.write_text(str(hours * 3600))
            self.round_comes_out(desk, "primo" if hours < 0 else "sesto")
        self.assertEqual(self.program.stop(), 0)


if __name__ == "__main__":
    unittest.main()
