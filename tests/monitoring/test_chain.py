"""Chain: five real bridges, an exporter each and one Prometheus; the alert that fires is the right one, for the right desk."""

import json
import re
import signal
import tempfile
import time
import unittest
from pathlib import Path

import fiscal_driver
from harness import Desk, wait_for
from monitoring_tools import why_no_tools
from prometheus import NodeExporter, Prometheus, scrape_settings
from receipt_printer import ReceiptPrinter

MONITORING = Path(__file__).resolve().parents[2] / "packaging" / "monitoring"
WHY_NOT = why_no_tools(("prometheus", "prometheus-node-exporter"))
NAMES = ("cassa1", "cassa2", "cassa3", "cassa4", "cassa5")
PATIENCE = 180  # seconds; a bridge writes its file every 15

# The rules' times for somebody who does not want to wait; the shops are open at whatever time this runs.
SHORTER = ((r"\[2m\]", "[40s]"), (r"for: 1m\n", "for: 5s\n"), (r"for: 2m\n", "for: 25s\n"), (r"for: 10m\n", "for: 30s\n"))
ALWAYS_OPEN = (r"(?s)(- record: tellaxis:open\n +expr:) \|.*?\n\n", r"\1 vector(1)\n\n")


def impatient_rules(folder):
    text = (MONITORING / "tellaxis.rules.yml").read_text("utf-8")
    for pattern, replacement in (*SHORTER, ALWAYS_OPEN):
        text, count = re.subn(pattern, replacement, text)
        if not count:
            raise AssertionError(f"the rules have no {pattern}")
    (folder / "rules.yml").write_text(text, "utf-8")
    return folder / "rules.yml"


def dashboard_queries():
    """Title and query of each panel, for all desks and a graph of a minute's step."""
    dashboard = json.loads((MONITORING / "tellaxis-casse.json").read_text("utf-8"))
    for panel in dashboard["panels"]:
        for target in panel["targets"]:
            yield panel["title"], target["expr"].replace("$cassa", ".*").replace("$__rate_interval", "1m")


class WatchedDesk(Desk):
    """A desk with a fiscal driver that answers, a receipt printer, and its metrics where its exporter looks."""

    def __init__(self, name):
        super().__init__()
        self.name = name
        self.paper = ReceiptPrinter(self.root / "received.bin")
        fiscal_driver.configure(self, "ONDA DRIVER - 91", MF_Driver=fiscal_driver.command_line(self))
        self.settings(CORT_Active=-1, CORT_Printer="OLIVETTI PRT100 NonFiscale", CORT_COM=3)
        folder = self.root / "metriche"
        self.exporter = NodeExporter(folder)
        (self.main / "devices.toml").write_text(
            f'[[printer]]\nname = "POS"\nport = "COM3:"\ntarget = "escpos:tcp://127.0.0.1:{self.paper.port}"\n'
            f'wait_for_paper = true\n[bridge]\ndiary = "diario"\nkeep_waiting = true\nmetrics = "{folder}/tellaxis.prom"\n'
        )
        self.bridge = self.start(polling=0.5)

    def sell(self):
        self.drop("scontrino.txt")
        self.drop("preconto.txt", folder="CortOrbis")

    def close(self):
        self.exporter.close()
        self.paper.close()
        super().close()


@unittest.skipIf(WHY_NOT, WHY_NOT)
class Chain(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.desks = {}
        for name in NAMES:
            self.desks[name] = WatchedDesk(name)
            self.addCleanup(self.desks[name].close)
        exporters = {name: desk.exporter.port for name, desk in self.desks.items()}
        rules = impatient_rules(Path(folder.name))
        self.server = Prometheus(Path(folder.name), scrape_settings(exporters, 1), [rules])
        self.addCleanup(self.server.close)
        self.fired = set()

    def firing(self):
        now = self.server.alerts()
        self.fired |= now
        return now

    def wait_until_firing(self, expected, what):
        seen = []

        def holds():
            time.sleep(0.5)
            seen[:] = [self.firing()]
            return seen[0] == expected

        try:
            wait_for(holds, what, PATIENCE)
        except AssertionError as failure:
            raise AssertionError(f"{failure}; fires: {seen}") from failure

    def confirmed(self, name):
        return sum(value for _, value in self.server.query(f'tellaxis_jobs_total{{outcome=~"confirmed|done",instance="{name}"}}'))

    def check_dashboard(self):
        count = 0
        for title, expression in dashboard_queries():
            with self.subTest(title, query=expression):
                self.assertNotEqual(self.server.query(expression), [])
            count += 1
        self.assertGreater(count, 15)

    def test_no_paper_and_a_kill_are_told_for_their_desks_and_clear(self):
        for desk in self.desks.values():
            desk.sell()
        wait_for(lambda: all(self.confirmed(name) == 2 for name in NAMES), "every desk's two jobs", PATIENCE)
        wait_for(lambda: self.server.query("sum(tellaxis:alive)") == [({}, 5)], "five bridges", PATIENCE)
        self.wait_until_firing(set(), "no trouble")

        out_of_paper, killed = self.desks["cassa2"], self.desks["cassa4"]
        out_of_paper.paper.tell("senza carta")
        out_of_paper.drop("preconto.txt", folder="CortOrbis")
        killed.bridge.stop(signal.SIGKILL)
        paper, down = ("TellaxisCartaFinita", "cassa2", "courtesy"), ("TellaxisPonteFermo", "cassa4", "")
        self.wait_until_firing({paper, down}, "no paper at cassa2, no bridge at cassa4")
        self.assertEqual(self.server.query("up == 0"), [], "the exporters all answer")
        self.check_dashboard()

        out_of_paper.paper.tell("carta")
        killed.bridge = killed.start(polling=0.5)
        self.wait_until_firing(set(), "paper and bridge are back")
        self.assertEqual(self.fired, {paper, down}, "nothing else has fired")


if __name__ == "__main__":
    unittest.main()
