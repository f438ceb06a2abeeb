"""Receipt printer: the simulated one of the tools, as a program on a port of its own."""

import subprocess
import threading

from harness import TOOLS


class ReceiptPrinter:
    """The simulated receipt printer, on a port of its own."""

    def __init__(self, bytes_file):
        self.bytes_file = bytes_file
        bytes_file.write_bytes(b"")
        self.process = subprocess.Popen(
            [TOOLS / "receipt_printer", "--port", "0", "--bytes", bytes_file],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
        )
        self.port = int(self.process.stdout.readline().split()[1])
        self.lines = []
        self.reader = threading.Thread(target=self._read, daemon=True)
        self.reader.start()

    def _read(self):
        for line in self.process.stdout:
            self.lines.append(line.decode("utf-8").rstrip("\n"))

    def tell(self, command):
        """Says a command and waits until it is carried out."""
        self.process.stdin.write(command.encode() + b"\n")
        self.process.stdin.flush()
        answer = self.process.stderr.readline()
        if answer != b"fatto\n":
            raise AssertionError(f"{command}: {answer}")

    def received(self):
        return self.bytes_file.read_bytes()

    def close(self):
        self.process.kill()
        self.process.wait()
        self.reader.join(5)
        for stream in (self.process.stdin, self.process.stdout, self.process.stderr):
            stream.close()
