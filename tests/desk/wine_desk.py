"""Wine desk: a Windows computer of its own for one scenario, with the desk's folder as drive C:."""

import os
import re
import shutil
import subprocess
from pathlib import Path

CACHE = Path(os.environ.get("TELLAXIS_CACHE") or Path(os.environ.get("XDG_CACHE_HOME") or Path.home() / ".cache") / "tellaxis")
PATTERN = CACHE / "wine32"  # as cmake/wine-run.sh makes it
REGISTRY = ("system.reg", "user.reg", "userdef.reg", ".update-timestamp")
SERIAL_LINES = range(1, 17)


class WineDesk:
    """A Wine prefix beside the desk: the pattern's registry and system folder, and COM n at root/com<n>."""

    def __init__(self, root, drive_c, emulator):
        self.prefix = root / "wine"
        if not (PATTERN / ".ready").exists():
            subprocess.run([*emulator, "cmd", "/c", "exit"], check=True, stdout=subprocess.DEVNULL)
        (self.prefix / "dosdevices").mkdir(parents=True)
        for name in REGISTRY:
            shutil.copy(PATTERN / name, self.prefix / name)
        (self.prefix / "dosdevices" / "c:").symlink_to(drive_c)
        (self.prefix / "dosdevices" / "z:").symlink_to("/")
        (drive_c / "windows").symlink_to(PATTERN / "drive_c" / "windows")
        (self.prefix / "drive_c").symlink_to(drive_c)
        self._add_ports(root)
        (self.prefix / ".ready").touch()
        self.environment = {"TELLAXIS_WINEPREFIX": str(self.prefix)}
        # The first program brings the system's own ones along, which must not keep a scenario's pipes open.
        nowhere = {"stdin": subprocess.DEVNULL, "stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
        subprocess.run([*emulator, "cmd", "/c", "exit"], env={**os.environ, **self.environment}, check=True, **nowhere)

    def _add_ports(self, root):
        ports = "".join(f'"COM{number}"="{root}/com{number}"\n' for number in SERIAL_LINES)
        registry = self.prefix / "system.reg"
        text = re.sub(r"(?ms)^\[Software\\\\Wine\\\\Ports\].*?(?=^\[|\Z)", "", registry.read_text("latin-1"))
        registry.write_text(f"{text}\n[Software\\\\Wine\\\\Ports] 1\n{ports}", "latin-1")

    def close(self):
        environment = {**os.environ, "WINEPREFIX": str(self.prefix), "WINEDEBUG": "-all"}
        for how in ("-k", "-w"):
            subprocess.run(["wineserver", how], env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)
