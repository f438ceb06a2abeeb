"""Fiscal drivers: the simulator as the scenarios configure and start it."""

import shutil
import subprocess

from harness import EMULATOR, TOOLS, ON_WINDOWS, program_path, tool

PROGRAM_PROTOCOLS = ("ONDA DRIVER - 91", "NUCLEO DRIVER - 93", "GLOBE DRIVER - 106")


def native(desk, windows_path):
    return desk.c(windows_path[3:])


def arguments(desk, *options, work=20):
    """The arguments of a driver program that takes C:\\MF\\in.txt and answers with C:\\MF\\out.txt."""
    words = ["program", "--input", program_path(desk.c("MF\\in.txt")), "--output", program_path(desk.c("MF\\out.txt"))]
    words += ["--receipts", program_path(desk.root / "receipts"), "--work", str(work), *options]
    return " ".join(f'"{word}"' if " " in word else word for word in words)


def command_line(desk, *options, work=20):
    """The setting of the driver program where it was built."""
    program = tool("fiscal_driver_simulator")
    return (f'"{program}" ' if " " in program else f"{program} ") + arguments(desk, *options, work=work)


def install(desk, windows_path):
    """Puts the driver program at C:\\path.exe."""
    target = desk.c(windows_path)
    target.parent.mkdir(parents=True, exist_ok=True)
    shutil.copy(TOOLS / ("fiscal_driver_simulator" + (".exe" if ON_WINDOWS else "")), target)


def watching(desk, input_file, *options, work=20):
    """Starts a driver that watches a file and consumes it; ended with the scenario."""
    path = TOOLS / ("fiscal_driver_simulator" + (".exe" if ON_WINDOWS else ""))
    arguments = ["watch", "--input", program_path(input_file), "--receipts", program_path(desk.root / "receipts")]
    process = subprocess.Popen([*EMULATOR, str(path), *arguments, "--work", str(work), *options], stdin=subprocess.DEVNULL, env=desk.environment())

    class Watching:
        def kill(self):
            process.terminate()
            process.wait()

    desk.programs.append(Watching())
    return process


def receipts(desk):
    """The texts of the receipts that reached the driver, in order."""
    folder = desk.root / "receipts"
    return [file.read_bytes().decode("cp1252") for file in sorted(folder.glob("*.txt"))] if folder.exists() else []


def configure(desk, protocol, delay=5, **more):
    """Settings of an active fiscal printer with its log switched on; the delay is in hundredths of a second."""
    desk.c("MF").mkdir(exist_ok=True)
    settings = dict(
        Orbis_Setting=0,
        Orbis_Directory="C:\\MERIDIA",
        MF_Active=-1,
        MF_Prot=protocol,
        MF_Type="91 - RCH ONDA",
        MF_File="C:\\MF\\in.txt",
        MF_File_Output="C:\\MF\\out.txt",
        MF_Ritardo=delay,
        MF_ChkLog=-1,
    )
    desk.settings(**{**settings, **more})
