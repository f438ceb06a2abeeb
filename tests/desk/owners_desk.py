"""Owners' desk: the bridge under a user of its own, a point of sale under another, and mounts that nobody else sees."""

import ctypes
import os
import shutil
import subprocess
import sys

import fiscal_driver
from harness import ON_WINDOWS, Desk, Scenario, wait_for

SERVICE = 12345
POINT_OF_SALE = 12346
GROUP = 12345  # both are in it
SETTLING = 0.45  # seconds that a file of which nobody knows the writer must stay the same
NEW_MOUNT_NAMESPACE = 0x00020000

# Truncates a file, or makes it, and writes its parts one after the other; the time this took goes to standard output.
SLOW_WRITER = """
import sys, time
path, pause, *parts = sys.argv[1:]
begun = time.monotonic()
with open(path, "wb", buffering=0) as file:
    longest = 0
    for part in parts:
        before = time.monotonic()
        file.write(part.encode("cp1252"))
        time.sleep(float(pause))
        longest = max(longest, time.monotonic() - before)
print(longest)
"""


def why_not():
    """Why there cannot be other users here; empty where there can."""
    if ON_WINDOWS:
        return "users and their rights are native"
    if os.geteuid() != 0:
        return "needs root, to be several users"
    return "" if shutil.which("setpriv") else "setpriv is missing"


def mount(*words):
    subprocess.run(["mount", *map(str, words)], check=True)


class OwnersDesk(Desk):
    """Folders and files belong to the service, and the group may change them, as a package makes them."""

    def __init__(self):
        super().__init__()
        self.driven_file = self.root / "driven"
        self.root.chmod(0o755)
        self.driven_file.touch()
        self.driven_file.chmod(0o666)
        self.hand_over_lease(False)

    def hand_over_lease(self, given):
        """Whether the service may ask after the writers of other users' files."""
        lease = ["--inh-caps=-all,+lease", "--ambient-caps=-all,+lease"] if given else ["--inh-caps=-all"]
        bounds = "--bounding-set=-all,+lease" if given else "--bounding-set=-all"
        self.before = ["setpriv", f"--reuid={SERVICE}", f"--regid={GROUP}", "--clear-groups", *lease, bounds, "--no-new-privs"]

    def settings(self, **values):
        super().settings(**values)
        self.give(self.settings_file, SERVICE, 0o664)

    def furnish(self):
        """Makes the folders that jobs come by, and gives everything to the service."""
        for folder in ("Orbis", "IN", "CortOrbis", "CortIN"):
            (self.main / folder).mkdir(exist_ok=True)
        for path in [self.main, *self.main.rglob("*"), self.drive_c, *self.drive_c.rglob("*")]:
            self.give(path, SERVICE, 0o2775 if path.is_dir() else 0o664)

    @staticmethod
    def give(path, owner, mode, group=GROUP):
        os.chown(path, owner, group, follow_symlinks=False)
        if not path.is_symlink():
            path.chmod(mode)

    def drop_as(self, owner, mode, name, text="scontrino", folder="Orbis"):
        """A job of this owner appears whole."""
        unfinished = self.main / folder / ".unfinished"
        unfinished.write_text(text)
        self.give(unfinished, owner, mode)
        unfinished.replace(self.main / folder / name)

    def write_slowly(self, path, pause, parts):
        """The point of sale writes a file part by part; `wait` of the result ends with it."""
        return subprocess.Popen(
            [sys.executable, "-c", SLOW_WRITER, str(path), str(pause), *parts],
            user=POINT_OF_SALE,
            group=GROUP,
            extra_groups=[],
            umask=0o002,
            cwd="/",
            stdout=subprocess.PIPE,
            text=True,
        )

    def use_driver(self, **more):
        """A driver program that notes each receipt that it is started for."""
        script = self.root / "driver.sh"
        took, answer = self.c("MF\\in.txt"), self.c("MF\\out.txt")
        note = f'printf "%s|" "$(cat {took})" >>{self.driven_file}'
        script.write_text(f"#!/bin/sh\n{note}\necho OK >{answer}\n")
        script.chmod(0o755)
        fiscal_driver.configure(self, "ONDA DRIVER - 91", delay=2, MF_Driver=script, **more)

    def driven(self):
        """The receipts that the driver was started for, in order."""
        return self.driven_file.read_text().split("|")[:-1]


class OwnersScenario(Scenario):
    """The bridge as a user of its own, with a driver program."""

    def setUp(self):
        reason = why_not()
        if reason:
            self.skipTest(reason)
        self.desk = OwnersDesk()
        self.addCleanup(self.desk.close)

    def start(self, lease=False, **more):
        self.desk.use_driver(**more)
        self.desk.furnish()
        self.desk.hand_over_lease(lease)
        return self.desk.start("--trace")

    def wait_for_receipts(self, *receipts):
        wait_for(lambda: len(self.desk.driven()) >= len(receipts), f"the receipts {receipts}")
        self.assertEqual(self.desk.driven(), list(receipts))


class MountScenario(OwnersScenario):
    """The same, where the scenario mounts what it wants: its mounts are its own and end with it."""

    def setUp(self):
        super().setUp()
        if ctypes.CDLL(None, use_errno=True).unshare(NEW_MOUNT_NAMESPACE) != 0:
            self.skipTest("no mounts of one's own here: " + os.strerror(ctypes.get_errno()))
        mount("--make-rprivate", "/")

    def mount_at(self, path, *words):
        """Mounts at a path, until the scenario's end."""
        mount(*words, path)
        self.addCleanup(subprocess.run, ["umount", "--lazy", path], check=True)
