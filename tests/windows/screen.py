"""Screen: a display of its own for a scenario, without which Wine makes no window."""

import os
import subprocess

NOWHERE = {"stdin": subprocess.DEVNULL, "stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}


def open_screen(scenario):
    """The name of a new display, which ends with the scenario."""
    reading, writing = os.pipe()
    server = subprocess.Popen(
        ["Xvfb", "-displayfd", str(writing), "-screen", "0", "1280x900x24"], pass_fds=[writing], **NOWHERE
    )

    def end():
        server.terminate()
        server.wait()

    scenario.addCleanup(end)
    os.close(writing)
    with os.fdopen(reading) as number:
        return ":" + number.readline().strip()
