"""Harness: a cash desk in a temporary folder, with the real program running on it."""

import os
import shutil
import signal
import subprocess
import tempfile
import threading
import time
import unittest
from pathlib import Path

from wine_desk import WineDesk

PROGRAM = Path(os.environ["TELLAXISD"])
WINDOW_PROGRAM = Path(os.environ.get("TELLAXIS", "tellaxis"))
TOOLS = Path(os.environ["TELLAXIS_TOOLS"])
EMULATOR = os.environ.get("TELLAXIS_EMULATOR", "").split()
ON_WINDOWS = bool(EMULATOR)
POLLING = 0.05  # seconds; the scenarios poll ten times as fast as a cash desk does


def program_path(path):
    """A native path as the program under test takes it on its command line and in its settings."""
    return "Z:" + str(path).replace("/", "\\") if ON_WINDOWS else str(path)


def tool(name):
    """The path of a simulator, for use in the setting of a driver program."""
    return program_path(TOOLS / (name + (".exe" if ON_WINDOWS else "")))


class Program:
    """A running program, tellaxisd as a rule, whose output is gathered line by line; started by the command `before`, if there is one."""

    def __init__(self, arguments, environment=None, before=(), program=PROGRAM):
        self.started = time.monotonic()
        self.process = subprocess.Popen(
            [*before, *EMULATOR, str(program), *arguments],
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            env=environment,
        )
        self.output = []
        self.complaints = []
        self._readers = [
            self._gather(self.process.stdout, self.output),
            self._gather(self.process.stderr, self.complaints),
        ]

    @staticmethod
    def _gather(stream, lines):
        def read():
            for line in stream:
                lines.append(line.decode("utf-8").rstrip("\r\n"))

        reader = threading.Thread(target=read, daemon=True)
        reader.start()
        return reader

    def wait_until_ready(self, seconds=30):
        while "pronto" not in self.output:
            if self.process.poll() is not None:
                raise AssertionError(f"ended with {self.process.returncode}: {self.complaints}")
            if time.monotonic() - self.started > seconds:
                raise AssertionError("not ready in time")
            time.sleep(0.002)
        self.ready_after = time.monotonic() - self.started

    def wait(self, seconds=30):
        status = self.process.wait(seconds)
        for reader in self._readers:
            reader.join(5)
        return status

    def stop(self, how=signal.SIGTERM):
        # Under Wine the one signal that a program hears of is Ctrl-C.
        self.process.send_signal(signal.SIGINT if ON_WINDOWS else how)
        return self.wait()

    def kill(self):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()
        for reader in self._readers:
            reader.join(5)
        # A program that this one started may live on with its pipes: closing them would wait for it.
        if not any(reader.is_alive() for reader in self._readers):
            self.process.stdout.close()
            self.process.stderr.close()


class Desk:
    """The folders of a cash desk: main folder, drive C: and what lies in them."""

    def __init__(self):
        self.root = Path(tempfile.mkdtemp(prefix="tellaxis-"))
        self.main = self.root / "cassa"
        self.drive_c = self.root / "c"
        self.settings_file = self.main / "_Tellaxis.ini"
        self.programs = []
        self.before = []
        for folder in (self.main, self.drive_c, self.drive_c / "Tellaxis", self.drive_c / "MERIDIA"):
            folder.mkdir()
        self.wine = WineDesk(self.root, self.drive_c, EMULATOR) if ON_WINDOWS else None

    def environment(self):
        """What programs on this desk are started with."""
        return {**os.environ, **(self.wine.environment if self.wine else {})}

    def close(self):
        for program in self.programs:
            program.kill()
        if self.wine:
            self.wine.close()
        shutil.rmtree(self.root, ignore_errors=True)

    # Settings

    def settings(self, **values):
        """Writes keys into the settings file as the point-of-sale side would: a whole new file, put in place at once."""
        keys = self.read_settings()
        keys.update({key: str(value) for key, value in values.items()})
        text = "[Varie]\r\n" + "".join(f"{key}={value}\r\n" for key, value in keys.items())
        unfinished = self.main / ".settings"
        unfinished.write_bytes(text.encode("cp1252"))
        unfinished.replace(self.settings_file)

    def read_settings(self):
        if not self.settings_file.exists():
            return {}
        text = self.settings_file.read_bytes()
        if ON_WINDOWS and not text:  # Wine empties the file before it writes it anew.
            time.sleep(0.1)
            text = self.settings_file.read_bytes()
        lines = text.decode("cp1252").splitlines()
        return dict(line.split("=", 1) for line in lines if "=" in line)

    def c(self, path):
        """The native path of C:\\path."""
        return self.drive_c / path.replace("\\", "/")

    # Jobs

    def drop(self, name, text="scontrino\r\n", folder="Orbis"):
        """A job appears in a drop folder."""
        self.write_whole(self.main / folder / name, text)

    def write_whole(self, path, text):
        """A file appears at once with all its text."""
        unfinished = self.root / ("unfinished-" + path.name)
        unfinished.write_bytes(text if isinstance(text, bytes) else text.encode("cp1252"))
        unfinished.replace(path)

    def jobs(self, folder="Orbis"):
        return sorted(entry.name for entry in (self.main / folder).iterdir())

    def log(self):
        """The messages of the fiscal log, without their dates."""
        log = self.c("Tellaxis\\MF.log")
        if not log.exists():
            return []
        return [line.split(" - ", 1)[1] for line in log.read_bytes().decode("cp1252").split("\r\n") if line]

    # The program

    def arguments(self, polling=POLLING):
        drive = [] if ON_WINDOWS else ["--drive", f"C={self.drive_c}"]
        interval = str(int(polling * 1000))
        return ["--main-folder", program_path(self.main), *drive, "--interval", interval, "--locale", "it_IT"]

    def start(self, *more, polling=POLLING, environment=None):
        """Starts the bridge and waits until it polls."""
        program = self.launch(*self.arguments(polling), *more, environment=environment)
        program.wait_until_ready()
        return program

    def launch(self, *arguments, environment=None, program=PROGRAM):
        program = Program(arguments, {**self.environment(), **(environment or {})}, self.before, program)
        self.programs.append(program)
        return program


def wait_for(condition, what, seconds=15):
    """Waits until the condition holds; a scenario fails when it does not in time."""
    end = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > end:
            raise AssertionError(f"in vain for {seconds} s: {what}")
        time.sleep(0.005)


def some_ticks(count=4):
    """Lets the bridge poll a few times."""
    time.sleep(count * POLLING + 0.1)


class Scenario(unittest.TestCase):
    """One desk a scenario."""

    def setUp(self):
        self.desk = Desk()
        self.addCleanup(self.desk.close)
