"""The guide's chapter on many desks: Prometheus takes its settings, and it names the alerts that there are, of metrics that are told."""

import re
import subprocess
import tempfile
import unittest
from pathlib import Path

from monitoring_tools import monitoring_tool, why_no_tools

HOUSE = Path(__file__).resolve().parents[2]
CHAPTER = (HOUSE / "docs" / "guida" / "9-molte-casse.md").read_text("utf-8")
RULES = HOUSE / "packaging" / "monitoring" / "tellaxis.rules.yml"
DASHBOARD = RULES.with_name("tellaxis-casse.json")
WHY_NOT = why_no_tools(("promtool",))


class Guide(unittest.TestCase):
    @unittest.skipIf(WHY_NOT, WHY_NOT)
    def test_prometheus_takes_the_settings(self):
        (settings,) = re.findall(r"^```yaml\n(.*?)^```", CHAPTER, re.S | re.M)
        installed = "/etc/prometheus/tellaxis.rules.yml"
        self.assertIn(f"cp /usr/share/doc/tellaxisd/examples/monitoring/tellaxis.rules.yml {installed.rsplit('/', 1)[0]}/\n", CHAPTER)
        with tempfile.NamedTemporaryFile("w", suffix=".yml") as file:
            file.write(settings.replace(installed, str(RULES)))
            file.flush()
            run = subprocess.run([monitoring_tool("promtool"), "check", "config", file.name], capture_output=True, text=True, check=False)
        self.assertEqual(run.returncode, 0, run.stdout + run.stderr)
        self.assertIn("1 rule files found", run.stdout)

    def test_it_names_every_alert(self):
        named = re.findall(r"^\| `(Tellaxis\w+)`.*\| (\w+) \|$", CHAPTER, re.M)
        alerts = re.findall(r"- alert: (\w+)\n.*?severity: (\w+)", RULES.read_text("utf-8"), re.S)
        self.assertEqual(sorted(named), sorted(alerts))

    def test_the_rules_and_the_dashboard_ask_for_metrics_that_there_are(self):
        source = (HOUSE / "src" / "metrics" / "metrics_file.cpp").read_text("utf-8")
        told = set(re.findall(r'"(tellaxis_\w+)"', source))
        for file in (RULES, DASHBOARD):
            asked = re.findall(r"\b(tellaxis_\w+?)(?:_(?:bucket|sum|count))?(?=[{ )])", file.read_text("utf-8"))
            self.assertGreater(len(set(asked)), 5, file.name)
            self.assertEqual(set(asked) - told, set(), file.name)

    def test_the_examples_are_where_it_says(self):
        packaged = (HOUSE / "debian" / "tellaxisd.examples").read_text().split()
        self.assertEqual(packaged, ["packaging/fleet", "packaging/monitoring"])
        for path in ("fleet/ansible/casse.yml", "fleet/gpo/tellaxis-casse.cmd", "monitoring/tellaxis-casse.json"):
            self.assertTrue((HOUSE / "packaging" / path).exists(), path)
            self.assertIn(path.rsplit("/", 1)[1], CHAPTER)


if __name__ == "__main__":
    unittest.main()
