"""Fault desk: the real bridge with every device active, whose system calls fail where a test says so."""

import json
import os
import re
import shutil
import subprocess
import tempfile
import time
import unittest
from pathlib import Path

import fiscal_driver
import sample_jobs
from harness import Desk, wait_for
from serial_line import SerialLine

POLLING = 0.1  # seconds; long enough for all jobs of a round to appear within one interval
DISPLAY_FILE = "MERIDIA\\Display.txt"
SLIP_FILE = "MERIDIA\\Ricevuta.txt"
LEFT_OVER = 1.5  # seconds; longer than the bridge waits here for a driver that does not answer
FOREIGN_LINES = "; cassa 1\r\n[Altro]\r\nx=1\r\n"


class Devices:
    """Which devices a desk has, what a display job looks like on its line, and what else its bridge is to do."""

    def __init__(self, protocol, display, courtesy, courtesy_printer, courtesy_job, slip_printer, bridge=""):
        self.protocol = protocol
        self.display = display
        self.courtesy = courtesy
        self.courtesy_printer = courtesy_printer
        self.courtesy_job = courtesy_job
        self.slip_printer = slip_printer
        self.bridge = bridge


PROGRAM_DRIVER = Devices(
    "NUCLEO DRIVER - 93", "ASEM", "SAMSUNG", "SAMSUNG SRP-500", sample_jobs.COURTESY_500, "EPSON TM-L90 Receipt"
)
INPUT_FILE_DRIVER = Devices(
    "CASIO/DITRON - 24",
    "WINCOR-NIXDORF",
    "OLIVETTI PRT100 NonFiscale",
    "OLIVETTI PRT100",
    sample_jobs.LINE_PRINTER,
    "EPSON TM-U295 Slip",
)
PROMPT = Devices(
    "NUCLEO DRIVER - 93",
    "ASEM",
    "SAMSUNG",
    "SAMSUNG SRP-500",
    sample_jobs.COURTESY_500,
    "EPSON TM-L90 Receipt",
    '[bridge]\nprompt = true\ndiary = "diario"\narchive = true\n',
)


class Jobs:
    """One job for every device, told apart from those of another round by a word of five letters."""

    def __init__(self, word, devices):
        self.word = word
        self.receipt = f"{word} scontrino\r\nTOTALE        15,50\r\n"
        self.display = f"{word} TOTALE  15,50\r\n{word} GRAZIE\r\n"
        self.courtesy = devices.courtesy_job.replace("AL PORTO", word)
        self.slip = sample_jobs.SLIP.replace("Rossi Mario", word)


class FaultDesk:
    """A desk with a running bridge; `run` is one round of jobs."""

    def __init__(self, devices=PROGRAM_DRIVER):
        self.devices = devices
        self.desk = Desk()
        self.line = SerialLine(self.desk, 5).plug_in()
        self._configure()
        self.program = None

    def _configure(self):
        desk, devices = self.desk, self.devices
        with open(desk.main / "devices.toml", "a", encoding="utf-8") as file:
            file.write(devices.bridge)
            file.write(f'[[printer]]\nname = "{devices.courtesy_printer}"\nport = "COM3:"\ntarget = "folder:preconti"\n')
            file.write(f'[[printer]]\nname = "{devices.slip_printer}"\nport = "LPT1:"\ntarget = "folder:ricevute"\n')
        if devices.protocol.startswith("CASIO"):
            driver = {}
            fiscal_driver.watching(desk, desk.c("MF\\in.txt"), work=0)
        else:
            # A setting holds 255 characters, fewer than the simulator's options may take.
            script = desk.root / "driver.sh"
            script.write_text(f"#!/bin/sh\nexec {fiscal_driver.command_line(desk, work=0)}\n")
            script.chmod(0o755)
            driver = {"MF_Driver": script}
        fiscal_driver.configure(
            desk,
            devices.protocol,
            delay=1,
            **driver,
            Display_Active=-1,
            Display_File="C:\\" + DISPLAY_FILE,
            Display_Type=devices.display,
            Display_COM=5,
            Display_Parametri="9600,N,8,1",
            Display_Delay=0,
            CORT_Active=-1,
            CORT_Printer=devices.courtesy,
            CORT_COM=3,
            RF_Active=-1,
            RF_Stampante=devices.slip_printer,
            RF_Seriale="LPT1:",
            RF_File="C:\\" + SLIP_FILE,
        )
        desk.settings_file.write_bytes(FOREIGN_LINES.encode() + desk.settings_file.read_bytes())

    def start(self, **more):
        self.program = self.desk.start("--trace", polling=POLLING, **more)
        return self.program

    def close(self):
        self.desk.close()
        self.line.pull_out()

    # Jobs

    def drop(self, jobs):
        """All jobs of a round appear, each at once and whole."""
        desk = self.desk
        desk.write_whole(desk.c(DISPLAY_FILE), jobs.display)
        desk.drop(jobs.word + ".txt", jobs.receipt)
        desk.write_whole(desk.c(SLIP_FILE), jobs.slip)
        desk.drop(jobs.word + ".txt", jobs.courtesy, "CortOrbis")

    def waiting(self):
        """The jobs that the bridge has not done with."""
        desk = self.desk
        found = [path.name for path in (desk.c(DISPLAY_FILE), desk.c(SLIP_FILE)) if path.exists()]
        for folder in ("Orbis", "IN", "CortOrbis", "CortIN"):
            found += [f"{folder}/{name}" for name in self.names(desk.main / folder)]
        if self.devices.protocol.startswith("CASIO") and desk.c("MF\\in.txt").exists():
            found.append("in.txt")
        return found

    @staticmethod
    def names(folder):
        return sorted(entry.name for entry in folder.iterdir()) if folder.is_dir() else []

    def settle(self, seconds):
        """Waits until no job is waiting, but no longer than this; tells whether that came. Where nothing changes for a
        while what waits is left: it could not be deleted or moved, and is not looked at again."""
        now = since = time.monotonic()
        end = now + seconds
        before = []
        while waiting := self.waiting():
            now = time.monotonic()
            if waiting != before:
                before, since = waiting, now
            in_work = all(name.startswith(("IN/", "CortIN/")) for name in waiting)
            if now > end or now - since > (LEFT_OVER if in_work else 4 * LEFT_OVER):
                return False
            time.sleep(0.005)
        time.sleep(0.1)
        return True

    # What came out

    def receipts(self):
        return fiscal_driver.receipts(self.desk)

    def documents(self, folder):
        """Each document of a folder printer as its operations; one that is not there with all its files is a failure."""
        found = []
        for path in sorted((self.desk.main / folder).glob("[0-9]*.jsonl")):
            operations = [json.loads(line) for line in path.read_text("utf-8").splitlines()]
            beside = [path.with_suffix(kind) for kind in (".txt", ".pdf", ".png")]
            found.append([operations, [other.suffix for other in beside if not other.exists() or not other.stat().st_size]])
        return found

    def outcome(self):
        return Outcome(self.receipts(), bytes(self.line.received), self.documents("preconti"), self.documents("ricevute"))


class Outcome:
    """What has reached each device so far."""

    def __init__(self, receipts, display, courtesy, slips):
        self.receipts = receipts
        self.display = display
        self.courtesy = courtesy
        self.slips = slips

    def reworded(self, word, other):
        """The same outcome of jobs that bear another word."""
        return Outcome(
            [receipt.replace(word, other) for receipt in self.receipts],
            self.display.replace(word.encode(), other.encode()),
            *(json.loads(json.dumps(documents).replace(word, other)) for documents in (self.courtesy, self.slips)),
        )

    def since(self, before):
        return Outcome(
            self.receipts[len(before.receipts) :],
            self.display[len(before.display) :],
            self.courtesy[len(before.courtesy) :],
            self.slips[len(before.slips) :],
        )

    def after(self, before):
        """What both together bring, `before` first."""
        return Outcome(
            before.receipts + self.receipts,
            before.display + self.display,
            before.courtesy + self.courtesy,
            before.slips + self.slips,
        )

    def reaches(self, expected):
        """True when as much has come as is expected, so that it is time to compare."""
        return (
            len(self.receipts) >= len(expected.receipts)
            and len(self.display) >= len(expected.display)
            and len(self.courtesy) >= len(expected.courtesy)
            and len(self.slips) >= len(expected.slips)
        )

    def differences(self, expected):
        """What is not as expected, device by device."""
        found = [
            f"{device}: {getattr(self, device)!r}"
            for device in ("receipts", "display")
            if getattr(self, device) != getattr(expected, device)
        ]
        found += [f"courtesy: {difference(self.courtesy, expected.courtesy)}"] * (
            without_repeated_controls(self.courtesy) != expected.courtesy
        )
        found += [f"slips: {difference(self.slips, expected.slips)}"] * (self.slips != expected.slips)
        return found

    def excess(self, whole, undeletable=""):
        """What a round in which something failed may not have brought: anything twice, and a receipt or slip in part.
        A statement of a courtesy receipt or a line of the display that fails costs itself, and the next one runs.
        `undeletable` is a job file that could not be deleted: a text of the display is shown again, as it is given to
        do; a slip is not printed again."""
        found = []
        if self.receipts not in ([], whole.receipts):
            found.append(f"receipts: {self.receipts!r}")
        if self.slips and operations_of(self.slips) != operations_of(whole.slips):
            found.append(f"slips: {difference(self.slips, whole.slips)}")
        again = 2 if undeletable.endswith(DISPLAY_FILE.rsplit("\\", 1)[1]) else 1
        if not is_subsequence(self.display, whole.display * again):
            found.append(f"display: {self.display!r}")
        if not is_subsequence(texts_of(self.courtesy), texts_of(whole.courtesy)):
            found.append(f"courtesy: {difference(self.courtesy, whole.courtesy)}")
        return found


def is_control(operation):
    """Characters for the printer's driver, such as "to the left"; nothing of them is seen on the paper."""
    return operation.get("font") == "FontControl"


def texts_of(documents):
    """What a reader of the paper sees."""
    return [operation for operation in operations_of(documents) if not is_control(operation)]


def without_repeated_controls(documents):
    """The documents where a control that was given twice in a row stands once: a job whose file could not be opened
    leaves its first one behind."""
    return [
        [[this for before, this in zip([None, *operations], operations) if not (is_control(this) and this == before)], lacking]
        for operations, lacking in documents
    ]


def difference(documents, expected):
    """In few words, what one list of documents has that the other has not."""
    if len(documents) != len(expected):
        return f"{len(documents)} documents where {len(expected)} should be"
    for (mine, lacking), (theirs, _) in zip(documents, expected):
        for number, (this, that) in enumerate(zip(mine, theirs)):
            if this != that:
                return f"statement {number} is {this} where {that} should be"
        if len(mine) != len(theirs):
            return f"{len(mine)} statements where {len(theirs)} should be"
        if lacking:
            return f"without {lacking}"
    return "none"


def operations_of(documents):
    return [operation for operations, _ in documents for operation in operations]


def is_subsequence(part, whole):
    rest = iter(whole)
    return all(item in rest for item in part)


class Strace:
    """Looks at one system call of a running program, and lets the k-th one fail with `error` if that is given."""

    def __init__(self, program, call, error=None, k=None):
        self.pid = program.process.pid
        self.log = Path(tempfile.mkstemp(prefix="tellaxis-strace-")[1])
        words = ["strace", "-q", "-p", str(self.pid), "-o", str(self.log), "-e", f"trace={call}"]
        if error:
            words += ["-e", f"inject={call}:error={error}:when={k}"]
        self.process = subprocess.Popen(words, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wait_for(lambda: self._is_attached() or self.process.poll() is not None, "strace attached")

    def _is_attached(self):
        status = Path(f"/proc/{self.pid}/status").read_text()
        return re.search(r"^TracerPid:\t(\d+)", status, re.M).group(1) == str(self.process.pid)

    def detach(self):
        """The calls seen, one a line; the program goes on alone."""
        self.process.send_signal(2)
        self.process.wait()
        lines = [line for line in self.log.read_text("utf-8", "replace").splitlines() if re.match(r"[a-z_0-9]+\(", line)]
        self.log.unlink()
        return lines


def strace_can_attach():
    """Why a running program cannot be traced here; empty where it can."""
    if not shutil.which("strace"):
        return "strace is missing"
    scope = Path("/proc/sys/kernel/yama/ptrace_scope")
    if os.geteuid() != 0 and scope.exists() and scope.read_text().strip() != "0":
        return "ptrace_scope keeps an ordinary user from tracing a running program"
    return ""


class FaultScenario(unittest.TestCase):
    def setUp(self):
        why = strace_can_attach()
        if why:
            self.skipTest(why)
