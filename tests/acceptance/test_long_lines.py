"""Long lines: a job with a line of 200 MB costs the rest of that line, and hardly any memory."""

import json
import unittest
from pathlib import Path

from harness import ON_WINDOWS, wait_for
from sample_jobs import SLIP
from serial_line import SerialScenario

LONG = 200 << 20
MOST_MEMORY = 64 << 20  # a page with a line of 1 MB included


def peak(program):
    """Bytes of memory that the program has had at most."""
    status = Path(f"/proc/{program.process.pid}/status").read_text()
    return int(status.split("VmHWM:")[1].split()[0]) << 10


@unittest.skipIf(ON_WINDOWS, "the memory of a process is told natively")
class LongLines(SerialScenario):
    def start(self, **settings):
        with open(self.desk.main / "devices.toml", "a", encoding="utf-8") as devices:
            for name, port in (("OLIVETTI PRT100", "COM9:"), ("SAMSUNG SRP-500", "COM8:"), ("EPSON TM-L90 Receipt", "LPT1:")):
                devices.write(f'[[printer]]\nname = "{name}"\nport = "{port}"\ntarget = "folder:spool"\n')
        self.desk.settings(Orbis_Setting=0, **settings)
        program = self.desk.start("--trace")
        if "libasan" in Path(f"/proc/{program.process.pid}/maps").read_text():
            self.skipTest("the address sanitizer needs memory of its own")
        return program

    def put(self, path, before, after):
        """A job appears whose line of 200 MB stands between these two texts; the file takes hardly any room."""
        unfinished = self.desk.root / "lungo"
        with open(unfinished, "wb") as job:
            job.write(before.encode("cp1252"))
            job.seek(LONG, 1)
            job.write(after.encode("cp1252"))
        unfinished.replace(path)
        wait_for(lambda: not path.exists() and not any((self.desk.main / "CortIN").iterdir()), "the job taken", 60)

    def check(self, program, path):
        self.assertIsNone(program.process.poll(), program.complaints)
        self.assertEqual(len([line for line in program.complaints if "1 MB" in line]), 1, program.complaints)
        self.assertIn(path, "\n".join(program.complaints))
        self.assertLess(peak(program), MOST_MEMORY)
        self.assertEqual(program.stop(), 0)

    def printed(self):
        """The texts of the one document."""
        (document,) = (self.desk.main / "spool").glob("*.jsonl")
        operations = [json.loads(line) for line in document.read_text("utf-8").splitlines()]
        return [operation["text"] for operation in operations if operation["op"] == "print"]

    def test_of_a_courtesy_receipt(self):
        program = self.start(CORT_Active=-1, CORT_Printer="SAMSUNG", CORT_COM=8)
        self.put(self.desk.main / "CortOrbis" / "a.txt", "prima#0#18#5#1#N\r\n", "\r\nultima#0#18#5#1#N\r\n#1\r\n")
        self.check(program, "CortIN\\a.txt")
        texts = self.printed()
        self.assertIn("prima", texts)
        self.assertIn("ultima", texts)

    def test_of_a_line_printer(self):
        program = self.start(CORT_Active=-1, CORT_Printer="OLIVETTI PRT100 NonFiscale", CORT_COM=9)
        self.put(self.desk.main / "CortOrbis" / "a.txt", "prima\r\n", "\r\nultima\r\n")
        self.check(program, "CortIN\\a.txt")
        self.assertEqual([text for text in self.printed() if len(text) < 100], ["prima", "ultima"])

    def test_of_a_slip(self):
        program = self.start(
            RF_Active=-1, RF_Stampante="EPSON TM-L90 Receipt", RF_Seriale="LPT1:", RF_File="C:\\MERIDIA\\Ricevuta.txt"
        )
        self.put(self.desk.c("MERIDIA\\Ricevuta.txt"), SLIP.splitlines()[0], "\r\n" + "".join(SLIP.splitlines(True)[1:]))
        self.check(program, "Ricevuta.txt")
        self.assertTrue(self.printed())

    def test_of_a_display(self):
        program = self.start(
            Display_Active=-1,
            Display_File="C:\\MERIDIA\\Display.txt",
            Display_Type="WINCOR-NIXDORF",
            Display_COM=3,
            Display_Parametri="9600,N,8,1",
            Display_Delay=0,
        )
        self.put(self.desk.c("MERIDIA\\Display.txt"), "TOTALE", "\r\nGRAZIE\r\n")
        wait_for(lambda: b"GRAZIE" in bytes(self.line.received), "the line after it")
        self.check(program, "Display.txt")


if __name__ == "__main__":
    unittest.main()
