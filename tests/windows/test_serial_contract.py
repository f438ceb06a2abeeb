"""Serial contract: what every serial port owes its callers, on a line of Windows whose far end is here."""

import getpass
import os
import subprocess
import unittest
from pathlib import Path

from harness import EMULATOR
from serial_line import SerialScenario

CONTRACT = Path(os.environ["SERIAL_CONTRACT"])
TESTS = 8


class Contract(SerialScenario):
    def answer(self, question):
        """Does what the program asks for at the far end of its line; the answer in one line."""
        what, *size = question.split()
        if what == "pull-out":
            self.line.pull_out()
        elif what == "put-back":
            self.line.plug_in()
            self.line.received.clear()
        else:
            return self.line.wait_for(b"x" * int(size[0])).decode("ascii")
        return "done"

    def test_the_line_of_the_system_keeps_it(self):
        # The system says where temporary files go, but no profile has been made on this computer.
        (self.desk.drive_c / "users" / getpass.getuser() / "Temp").mkdir(parents=True)
        told = []
        with subprocess.Popen(
            [*EMULATOR, str(CONTRACT)],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            text=True,
            env=self.desk.environment(),
        ) as program:
            for line in program.stdout:
                if line.startswith("@"):
                    program.stdin.write(self.answer(line[1:]) + "\n")
                    program.stdin.flush()
                told.append(line.rstrip())
        self.assertEqual(program.returncode, 0, "\n".join(told))
        self.assertIn(f"[  PASSED  ] {TESTS} tests.", told)


if __name__ == "__main__":
    unittest.main()
