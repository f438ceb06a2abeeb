"""The customer display on a serial line of its own."""

import subprocess
import time
import unittest
from pathlib import Path

import fiscal_driver
from harness import ON_WINDOWS, TOOLS, some_ticks, wait_for
from serial_line import SerialScenario

DATA = Path(__file__).resolve().parent.parent / "display" / "data"
ESC = b"\x1b"


class DisplayScenario(SerialScenario):
    def configure(self, family, delay=0, **more):
        self.desk.settings(
            Orbis_Setting=0,
            Orbis_Directory="C:\\MERIDIA",
            Display_Active=-1,
            Display_File="C:\\MERIDIA\\Display.txt",
            Display_Type=family,
            Display_COM=3,
            Display_Parametri="9600,N,8,1",
            Display_Delay=delay,
            **more,
        )
        self.job = self.desk.c("MERIDIA\\Display.txt")

    def show(self, text):
        """A display job appears whole and is taken."""
        self.put(text)
        wait_for(lambda: not self.job.exists(), "the job taken")

    def put(self, text):
        unfinished = self.desk.root / "display-job"
        unfinished.write_bytes(text if isinstance(text, bytes) else text.encode("cp1252"))
        unfinished.replace(self.job)


class Families(DisplayScenario):
    def check(self, family, golden, left_open, job="job.txt"):
        self.configure(family)
        program = self.desk.start()
        expected = (DATA / golden).read_bytes()
        self.show((DATA / job).read_bytes())
        self.assertEqual(self.line.wait_for(expected), expected)
        for _ in range(5):
            self.show((DATA / job).read_bytes())
        self.assertEqual(self.line.wait_for(expected * 6), expected * 6)
        if not ON_WINDOWS:
            self.assertEqual(self.line.is_open_in(program), left_open)
        self.assertEqual(program.stop(), 0)

    def test_wincor_nixdorf_is_sent_its_bytes_and_closed(self):
        self.check("WINCOR-NIXDORF", "wincor_nixdorf.bin", left_open=False)

    def test_asem_is_sent_its_bytes_and_left_open(self):
        self.check("ASEM", "asem.bin", left_open=True)

    def test_kube_is_sent_its_bytes_and_left_open(self):
        self.check("KUBE-D", "kube_d.bin", left_open=True, job="job_one_line.txt")

    def test_cd1_is_sent_its_bytes_and_left_open(self):
        self.check("CD1-01", "cd1_01.bin", left_open=True)

    def test_posline_is_sent_its_bytes_and_left_open(self):
        self.check("POSLINE", "posline.bin", left_open=True)

    def test_no_byte_of_a_text_is_changed(self):
        self.configure("ASEM")
        self.desk.start()
        values = bytes(value for value in range(256) if value not in b"\r\n\x1a")
        lines = [values[start : start + 20] for start in range(0, len(values), 20)]
        self.show(b"\r\n".join(lines))
        expected = ESC + b"QA" + lines[0] + b"\r" + b"".join(ESC + b"QB" + line + b"\r" for line in lines[1:])
        self.assertEqual(self.line.wait_for(expected), expected)

    def test_an_unknown_family_keeps_the_file_and_leaves_the_port_alone(self):
        self.configure("NON PRESENTE")
        program = self.desk.start()
        self.put("uno\r\n")
        some_ticks()
        self.assertTrue(self.job.exists())
        self.assertEqual(self.line.received, b"")
        if not ON_WINDOWS:
            self.assertFalse(self.line.is_open_in(program))

    def test_an_unknown_family_pauses_on_every_tick(self):
        self.configure("NON PRESENTE", delay=40)
        fiscal_driver.configure(self.desk, "CASIO/DITRON - 24", delay=0)
        self.desk.start()
        self.put("uno\r\n")
        time.sleep(0.2)
        start = time.monotonic()
        for number in range(3):
            self.desk.drop(f"{number}.txt")
            wait_for(lambda: not self.desk.jobs() and not self.desk.jobs("IN"), "the receipt handed over")
            self.desk.c("MF\\in.txt").unlink()
        self.assertGreater(time.monotonic() - start, 2 * 0.4)


class Writers(DisplayScenario):
    @unittest.skipIf(ON_WINDOWS, "Wine does not see what native programs hold")
    def test_a_text_still_being_written_is_not_shown_until_closed(self):
        self.configure("ASEM")
        self.desk.start()
        with open(self.job, "wb", buffering=0) as writer:
            writer.write(b"Caff")
            some_ticks(8)
            self.assertTrue(self.job.exists())
            self.assertFalse(self.line.received)
            writer.write(b"\xe8 1,20")
        expected = b"\x1bQACaff\xe8 1,20\r"
        self.assertEqual(self.line.wait_for(expected), expected)
        wait_for(lambda: not self.job.exists(), "the job taken")


class Devices(DisplayScenario):
    def test_a_device_that_goes_away_and_comes_back_shows_the_next_job(self):
        for family, prefix, end in (("ASEM", b"\x1bQA", b"\r"), ("WINCOR-NIXDORF", b"\x1b[1;1H", b"")):
            with self.subTest(family):
                self.line.plug_in()
                self.line.received.clear()
                self.configure(family)
                program = self.desk.start()
                self.show("prima")
                self.line.wait_for(prefix + b"prima" + end)
                self.line.pull_out()
                self.show("perso")
                self.line.received.clear()
                self.line.plug_in()
                self.show("dopo")
                self.assertEqual(self.line.wait_for(prefix + b"dopo" + end), prefix + b"dopo" + end)
                self.assertEqual(program.stop(), 0)
                self.line.pull_out()

    def test_a_device_exchanged_between_two_jobs_loses_none(self):
        self.configure("ASEM")
        self.desk.start()
        self.show("prima")
        self.line.wait_for(b"\x1bQAprima\r")
        self.line.pull_out()
        self.line.received.clear()
        self.line.plug_in()
        self.show("dopo")
        self.assertEqual(self.line.wait_for(b"\x1bQAdopo\r"), b"\x1bQAdopo\r")

    def test_a_missing_device_loses_the_job_and_holds_nothing_up(self):
        self.line.pull_out()
        self.configure("ASEM")
        fiscal_driver.configure(self.desk, "CASIO/DITRON - 24", delay=0)
        program = self.desk.start("--trace")
        self.show("uno\r\ndue\r\n")
        self.desk.drop("scontrino.txt")
        wait_for(lambda: self.desk.c("MF\\in.txt").exists(), "the receipt handed over", seconds=2)
        program.stop()
        self.assertTrue(any("COM3" in line for line in program.complaints), program.complaints)

    @unittest.skipIf(ON_WINDOWS, "the emulator's port buffers differently")
    def test_a_device_that_never_reads_holds_the_other_devices_up_for_seconds_only(self):
        self.line.pull_out()
        self.line.plug_in(listening=False)
        self.configure("ASEM")
        fiscal_driver.configure(self.desk, "CASIO/DITRON - 24", delay=0)
        program = self.desk.start()
        self.put("12345678901234567890\r\n" * 1000)
        time.sleep(0.2)
        self.desk.drop("scontrino.txt")
        start = time.monotonic()
        wait_for(lambda: self.desk.c("MF\\in.txt").exists(), "the receipt handed over", seconds=8)
        self.assertGreater(time.monotonic() - start, 1)
        self.assertFalse(self.job.exists())
        start = time.monotonic()
        self.assertEqual(program.stop(), 0)
        self.assertLess(time.monotonic() - start, 1)

    @unittest.skipIf(ON_WINDOWS, "the simulator is native")
    def test_the_simulator_shows_what_the_customer_sees(self):
        pictures = (
            ("WINCOR-NIXDORF", "job.txt", ["Caffè macchiato dopp", "Perché no? ÀÈÌÒÙ fin"]),
            ("ASEM", "job.txt", ["Caffè macchiato dopp", "Perché no? ÀÈÌÒÙ fin"]),
            ("CD1-01", "job.txt", ["Caffè macchiato dopp", "Perché no? ÀÈÌÒÙ fin"]),
            ("POSLINE", "job.txt", ["Caffè macchiato dop ", "Perché no? ÀÈÌÒÙ fin"]),
            ("KUBE-D", "job_one_line.txt", ["Totale         12,50Grazie e arrivedérci"]),
        )
        for family, job, lines in pictures:
            with self.subTest(family):
                self.line.pull_out()
                self.configure(family)
                command = [str(TOOLS / "pole_display"), "--once", "--link", str(self.line.link)]
                with subprocess.Popen(command, stdout=subprocess.PIPE, text=True) as display:
                    wait_for(self.line.link.is_symlink, "the simulator's line")
                    program = self.desk.start()
                    self.show((DATA / job).read_bytes())
                    output, _ = display.communicate(timeout=10)
                frame = "─" * len(lines[0])
                picture = [f"┌{frame}┐", *(f"│{line}│" for line in lines), f"└{frame}┘"]
                self.assertEqual(output.splitlines()[1:], picture)
                self.assertEqual(program.stop(), 0)


if __name__ == "__main__":
    unittest.main()
