"""The guide's examples: devices files that the bridge reads, settings that it knows."""

import re
import shlex
import subprocess
import unittest
from pathlib import Path

from harness import ON_WINDOWS, PROGRAM, Scenario

HOUSE = Path(__file__).resolve().parents[2]


def examples(language):
    """The text of every block in this language, with the chapter that it is in."""
    for chapter in sorted((HOUSE / "docs" / "guida").glob("[0-9]-*.md")):
        for text in re.findall(rf"^```{language}\n(.*?)^```", chapter.read_text(encoding="utf-8"), re.S | re.M):
            yield chapter.name, text


@unittest.skipIf(ON_WINDOWS, "the same text")
class Guide(Scenario):
    def test_every_devices_file_is_one_that_the_bridge_reads(self):
        shown = list(examples("toml"))
        self.assertGreater(len(shown), 2)
        for chapter, text in shown:
            with self.subTest(chapter, text=text):
                # What an example includes is the one above it, which begins with its name.
                name = re.match(r"# (\w+\.toml)\n", text)
                (self.desk.main / "devices.toml").write_text(text)
                self.assertEqual(self.desk.start().stop(), 0)
                if name:
                    (self.desk.main / name[1]).write_text(text)

    def test_every_setting_is_one_that_the_program_reads(self):
        sources = "".join(path.read_text(encoding="utf-8") for path in (HOUSE / "src").rglob("*.cpp")).lower()
        keys = {line.split("=")[0] for _, text in examples("ini") for line in text.splitlines() if "=" in line}
        self.assertGreater(len(keys), 20)
        self.assertEqual([key for key in sorted(keys) if f'"{key.lower()}"' not in sources], [])

    def test_its_own_devices_file_with_every_line_switched_on_is_read(self):
        template = (HOUSE / "packaging" / "debian" / "devices.toml").read_text(encoding="utf-8")
        (self.desk.main / "devices.toml").write_text(re.sub(r"^#(?=\S)", "", template, flags=re.M))
        self.assertEqual(self.desk.start().stop(), 0)

    def test_the_commands_for_looking_around_do_what_it_says(self):
        installed = "runuser -u tellaxis -- tellaxisd --main-folder /var/lib/tellaxis"
        lines = [line for _, text in examples("sh") for line in text.splitlines() if re.search(" (controlla|porte)( |$)", line)]
        self.assertEqual(len(lines), 2)
        for line in lines:
            self.assertIn(installed, line)
            here = line.replace(installed, shlex.join([str(PROGRAM), *self.desk.arguments()]))
            done = subprocess.run(["bash", "-ec", here], capture_output=True, text=True, check=False)
            self.assertEqual((done.returncode, done.stderr), (0, ""), line)
            self.assertIn("Stampanti:" if "porte" in line else "Generale:", done.stdout)

    def test_the_trials_it_names_are_commands_of_the_program(self):
        chapters = (HOUSE / "docs" / "guida").glob("[0-9]-*.md")
        named = {name for chapter in chapters for name in re.findall(r"`tellaxisd (prova \w+)`", chapter.read_text("utf-8"))}
        self.assertEqual(named, {"prova display", "prova preconto", "prova ricevuta"})
        for name in sorted(named):
            program = self.desk.launch(*self.desk.arguments(), *name.split())
            self.assertEqual(program.wait(), 1, "no bridge runs here")
            self.assertEqual(program.complaints, [])
