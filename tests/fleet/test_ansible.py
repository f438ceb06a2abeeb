"""Ansible: the example's playbook, as it is, on three desks in namespaces: set up, left alone the second time, told."""

import json
import os
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from harness import PROGRAM
from monitoring_tools import UNPACKED, monitoring_tool, why_no_tools

HOUSE = Path(__file__).resolve().parents[2]
EXAMPLE = HOUSE / "packaging" / "fleet" / "ansible"
COURTESY = "[Varie]\r\nOrbis_Setting=0\r\nCORT_Active=-1\r\nCORT_Printer=OLIVETTI PRT100 NonFiscale\r\nCORT_COM=3\r\n"
NOTHING = "[Varie]\r\nOrbis_Setting=0\r\n"
TELLAXIS = 12345  # the service's user and group on the desks

# A computer of its own: this one's programs, folders of its own, and no network at all.
MACHINE = """
cd "$1"
for folder in usr proc dev sys; do mkdir -p $folder && mount --rbind /$folder $folder; done
mount --bind local usr/local
for link in bin sbin lib lib64; do ln -s usr/$link $link; done
mkdir -p ".$2" && mount --bind "$2" ".$2"
exec chroot . sleep infinity
"""

# What Ansible calls for ssh: options, the desk's address and the command, which runs on that desk.
SSH = """#!/bin/bash
command="${!#}"
address="${@: -2:1}"
[ -f "%(folder)s/$address" ] || exit 0
exec nsenter --target "$(cat "%(folder)s/$address")" --mount --net --root --wd=/root env -i HOME=/root PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin \
  LC_ALL=C.UTF-8 sh -c "$command"
"""


def why_not():
    if os.geteuid() != 0:
        return "needs root, to make desks in namespaces"
    trial = subprocess.run(["unshare", "--mount", "--net", "true"], capture_output=True, text=True, check=False)
    return f"no namespaces here: {trial.stderr.strip()}" if trial.returncode else why_no_tools(("ansible-playbook",))


WHY_NOT = why_not()


class Machine:
    """A desk's computer; what it has of its own lies in `root`."""

    def __init__(self, root, settings):
        self.root = root
        for folder in ("etc/tellaxis", "var/lib/tellaxis/drive_c", "var/tmp", "tmp", "run", "root", "local/bin", "local/sbin"):
            (root / folder).mkdir(parents=True)
        (root / "tmp").chmod(0o1777)
        for folder in ("pam.d", "security"):
            shutil.copytree(f"/etc/{folder}", root / "etc" / folder, symlinks=True)
        for file in ("ld.so.cache", "nsswitch.conf", "login.defs"):
            if Path("/etc", file).exists():
                shutil.copy(f"/etc/{file}", root / "etc")
        (root / "etc/passwd").write_text(f"root:x:0:0::/root:/bin/bash\ntellaxis:x:{TELLAXIS}:{TELLAXIS}::/var/lib/tellaxis:/bin/sh\n")
        (root / "etc/group").write_text(f"root:x:0:\ntellaxis:x:{TELLAXIS}:\n")
        (root / "etc/shadow").write_text("root:*:::::::\ntellaxis:*:::::::\n")
        (root / "local/bin/tellaxisd").symlink_to(PROGRAM.resolve())
        restart = root / "local/sbin/riavvia"
        restart.write_text("#!/bin/sh\necho ripartito >>/root/riavvii\n")
        restart.chmod(0o755)
        (root / "var/lib/tellaxis/_Tellaxis.ini").write_text(settings, newline="")
        for path in (root / "var/lib/tellaxis", *(root / "var/lib/tellaxis").rglob("*")):
            os.chown(path, TELLAXIS, TELLAXIS)
        programs = str(PROGRAM.resolve().parents[1])
        words = ["unshare", "--mount", "--net", "--propagation", "private", "sh", "-ec", MACHINE, "sh", str(root), programs]
        self.process = subprocess.Popen(words, stdin=subprocess.DEVNULL)

    def restarts(self):
        notes = self.root / "root/riavvii"
        return len(notes.read_text().splitlines()) if notes.exists() else 0

    def read(self, path):
        return (self.root / path).read_text("utf-8")

    def close(self):
        self.process.kill()
        self.process.wait()


@unittest.skipIf(WHY_NOT, WHY_NOT)
class Playbook(unittest.TestCase):
    def setUp(self):
        self.folder = Path(tempfile.mkdtemp(prefix="casse-"))
        self.addCleanup(shutil.rmtree, self.folder, True)
        self.folder.chmod(0o755)
        self.example = self.folder / "ansible"
        shutil.copytree(EXAMPLE, self.example)
        addresses = self.folder / "indirizzi"
        addresses.mkdir()
        self.machines = {}
        for number, settings in ((1, COURTESY), (2, COURTESY), (3, NOTHING)):
            machine = Machine(self.folder / f"cassa{number}", settings)
            self.addCleanup(machine.close)
            self.machines[f"cassa{number}"] = machine
            (addresses / f"192.168.1.1{number}").write_text(str(machine.process.pid))
        self.ssh = self.folder / "ssh"
        self.ssh.write_text(SSH % {"folder": addresses})
        self.ssh.chmod(0o755)

    def play(self):
        """What Ansible says, and its exit status."""
        environment = {
            "HOME": str(self.folder),
            "PATH": os.environ["PATH"],
            "LC_ALL": "C.UTF-8",
            "PYTHONPATH": str(UNPACKED / "usr/lib/python3/dist-packages"),
            "ANSIBLE_SSH_EXECUTABLE": str(self.ssh),
            "ANSIBLE_SSH_TRANSFER_METHOD": "piped",
            "ANSIBLE_PIPELINING": "true",
            "ANSIBLE_LOCALHOST_WARNING": "false",
        }
        (guide,) = re.findall(r"`ansible-playbook (.*?)`", (HOUSE / "docs/guida/9-molte-casse.md").read_text("utf-8"))
        words = ["/usr/bin/python3", monitoring_tool("ansible-playbook"), *guide.split()]
        words += ["-e", json.dumps({"tellaxis_restart": ["/usr/local/sbin/riavvia"]})]
        run = subprocess.run(words, cwd=self.example, env=environment, capture_output=True, text=True, check=False)
        self.assertIn("PLAY RECAP", run.stdout, run.stderr)
        return run.stdout, run.returncode

    def counts(self, said, what):
        """One figure of each desk in the closing table."""
        table = said.split("PLAY RECAP")[1]
        return {name: int(count) for name, count in re.findall(rf"^(\w+) .*\b{what}=(\d+)", table, re.M)}

    def report(self, name):
        return json.loads((self.example / "rapporto" / f"{name}.json").read_text("utf-8"))

    def failures(self, said):
        """What each desk failed of: the task's name, and what it tells."""
        found = {}
        for task in said.split("\nTASK [")[1:]:
            for name, result in re.findall(r"^fatal: \[(\w+)[^]]*\]: FAILED! => (.*)$", task, re.M):
                found[name] = (task.split("]")[0], result)
        return found

    def test_three_desks_are_set_up_once_checked_each_time_and_told(self):
        said, status = self.play()
        failures = self.failures(said)
        self.assertEqual(sorted(failures), ["cassa1"], failures)
        self.assertEqual(failures["cassa1"][0], "Nessun errore")
        self.assertIn("Rimedio: Mettere la carta", failures["cassa1"][1])
        self.assertEqual(status, 2)

        self.assertEqual({name: machine.restarts() for name, machine in self.machines.items()}, dict.fromkeys(self.machines, 1))
        for machine in self.machines.values():
            self.assertEqual(machine.read("etc/tellaxis/comune.toml"), (EXAMPLE / "files/comune.toml").read_text("utf-8"))
            self.assertIn('include = "comune.toml"', machine.read("etc/tellaxis/devices.toml"))
        self.assertIn('target = "escpos:tcp://192.168.1.61:9100"', self.machines["cassa1"].read("etc/tellaxis/devices.toml"))
        errors = {name: [row["code"] for row in self.report(name) if row["level"] == "error"] for name in self.machines}
        self.assertEqual(errors, {"cassa1": ["printer-not-ready"], "cassa2": [], "cassa3": []})
        for name in self.machines:
            self.assertIn("not-running", [row["code"] for row in self.report(name)])

        again, _ = self.play()
        self.assertEqual(self.counts(again, "changed"), dict.fromkeys(self.machines, 0), again)
        self.assertEqual({name: machine.restarts() for name, machine in self.machines.items()}, dict.fromkeys(self.machines, 1))

    def test_a_mistake_in_the_common_file_is_told_for_each_desk(self):
        with open(self.example / "files" / "comune.toml", "a", encoding="utf-8") as common:
            common.write("keep_days = \n")
        said, _ = self.play()
        failures = self.failures(said)
        self.assertEqual(sorted(failures), sorted(self.machines))
        for task, what in failures.values():
            self.assertEqual(task, "Controllo")
            self.assertIn("comune.toml", what)


if __name__ == "__main__":
    unittest.main()
