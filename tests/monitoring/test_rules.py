"""Rules: which alert fires for which desk, and when it clears, on series of one sample a minute; promtool computes."""

import json
import subprocess
import tempfile
import unittest
from pathlib import Path

from monitoring_tools import monitoring_tool, why_no_tools

RULES = Path(__file__).resolve().parents[2] / "packaging" / "monitoring" / "tellaxis.rules.yml"
WHY_NOT = why_no_tools(("promtool",))
TEN_O_CLOCK = 9 * 60  # in Italy in winter: minutes from midnight UTC; promtool's first day is a Thursday
FILE = "/var/lib/prometheus/node-exporter/tellaxis.prom"
ON_WINDOWS = "C:\\\\metriche\\\\tellaxis.prom"
DAY = 24 * 60


def named(name, **labels):
    return name + "{" + ",".join(f'{label}="{value}"' for label, value in labels.items()) + "}"


class Desk:
    """The series of one desk; values are said from a minute on, and stay."""

    def __init__(self, name, begin=0, file=("node", FILE)):
        self.name = name
        self.begin = begin
        self.series = {}
        self.info = self.key("tellaxis_info", version="1.2.0", role="CLIENT")
        self.file = self.key(f"{file[0]}_textfile_mtime_seconds", file=file[1])
        self.up = self.key("up")
        self.lines = {self.up: [(begin, "1")], self.info: [(begin, "1")], self.file: [(begin, "grows")]}
        self.gauge("tellaxis_start_timestamp_seconds", begin, begin * 60)
        for outcome in ("confirmed", "unanswered", "given-up", "unconfirmed"):
            self.gauge("tellaxis_jobs_total", begin, 0, device="fiscal", outcome=outcome)
        self.done = [self.key("tellaxis_jobs_total", device="fiscal", outcome="confirmed"), self.key("tellaxis_job_seconds_count", device="fiscal")]
        self.lines.update((key, [(begin, "grows")]) for key in self.done)

    def key(self, metric, **labels):
        return named(metric, job="casse", instance=self.name, **labels)

    def gauge(self, metric, minute, value, **labels):
        self.lines.setdefault(self.key(metric, **labels), []).append((minute, str(value)))
        return self

    def jobs(self, minute, value, outcome, device="fiscal"):
        return self.gauge("tellaxis_jobs_total", minute, value, device=device, outcome=outcome)

    def no_jobs_from(self, minute):
        for key in self.done:
            self.lines[key].append((minute, "0"))
        return self

    def confirms(self, minute):
        """One job more than before, which were none."""
        for key in self.done:
            self.lines[key].append((minute, "1"))
        return self

    def killed(self, minute):
        """The file stays as it is."""
        self.lines[self.file].append((minute, "stays"))
        return self

    def started(self, minute):
        self.lines[self.file].append((minute, "grows"))
        return self

    def switched_off(self, minute):
        for key in self.lines:
            self.lines[key].append((minute, "0" if key == self.up else "stale"))
        return self

    def values(self, key, end):
        """One value a minute, as promtool writes them."""
        changes = self.lines[key] + [(end + 1, "")]
        words = [f"_x{self.begin}"] if self.begin else []
        for (minute, value), (until, _) in zip(changes, changes[1:]):
            count = until - minute - 1
            if count < 0:  # said otherwise for the same minute
                continue
            if value in ("grows", "stays"):
                last = minute * 60
                words.append(f"{last}{'+60' if value == 'grows' else '+0'}x{count}")
            elif value == "stale":
                words += ["stale", f"_x{count}"] if count else ["stale"]
            else:
                words.append(f"{value}+0x{count}")
        return " ".join(words)


@unittest.skipIf(WHY_NOT, WHY_NOT)
class Rules(unittest.TestCase):
    def promtool(self, *words):
        run = subprocess.run([monitoring_tool("promtool"), *words], capture_output=True, text=True, check=False)
        self.assertEqual(run.returncode, 0, run.stdout + run.stderr)

    def computed(self, desks, expectations, step="1m"):
        """Each of (minute, expression, {labels: value}) holds."""
        end = max(minute for minute, _, _ in expectations)
        series = [{"series": key, "values": desk.values(key, end)} for desk in desks for key in desk.lines]
        tests = [
            {"expr": expression, "eval_time": f"{minute}m", "exp_samples": [{"labels": k, "value": v} for k, v in found.items()]}
            for minute, expression, found in expectations
        ]
        whole = {
            "rule_files": [str(RULES)],
            "evaluation_interval": step,
            "tests": [{"interval": "1m", "input_series": series, "promql_expr_test": tests}],
        }
        with tempfile.NamedTemporaryFile("w", suffix=".yml") as file:
            json.dump(whole, file)
            file.flush()
            self.promtool("test", "rules", file.name)

    def firing(self, desks, moments, step="1m"):
        """What fires at each minute, and nothing else: "Alert desk" or "Alert desk device"."""
        expectations = []
        for minute, alerts in moments.items():
            found = {}
            for alert in alerts:
                labels = zip(("alertname", "instance", "device"), alert.split())
                found["{" + ", ".join(f'{label}="{value}"' for label, value in labels) + "}"] = 1
            expression = 'count by (alertname, instance, device) (ALERTS{alertstate="firing"})'
            expectations.append((minute, expression, found))
        self.computed(desks, expectations, step)


class TheFile(Rules):
    def test_prometheus_reads_the_rules(self):
        self.promtool("check", "rules", str(RULES))

    def test_every_alert_has_a_severity_and_says_which_desk(self):
        text = RULES.read_text("utf-8")
        alerts = text.split("- alert: ")[1:]
        self.assertEqual(len(alerts), 8)
        for alert in alerts:
            self.assertRegex(alert, r"severity: (critical|warning)\n")
            for part in ("summary", "description"):
                self.assertRegex(alert, part + r': ".*\{\{ \$labels\.instance \}\}')


class Bridge(Rules):
    def test_a_day_without_trouble_says_nothing(self):
        self.firing([Desk("cassa1"), Desk("cassa2", file=("windows", ON_WINDOWS))], {minute: [] for minute in range(0, DAY, 45)}, "5m")

    def test_a_killed_bridge_is_down_after_four_minutes_until_it_starts_again(self):
        for file in (("node", FILE), ("windows", ON_WINDOWS)):
            with self.subTest(file[0]):
                desks = [Desk("cassa1", file=file), Desk("cassa2", file=file).killed(60).started(90)]
                down = ["TellaxisPonteFermo cassa2"]
                self.firing(desks, {59: [], 62: [], 65: down, 89: down, 92: []})

    def test_what_a_dead_file_says_counts_no_more(self):
        desk = Desk("cassa1", TEN_O_CLOCK - 60)
        desk.gauge("tellaxis_gate_open", desk.begin, 1, device="fiscal").gauge("tellaxis_gate_open", TEN_O_CLOCK, 0, device="fiscal")
        desk.gauge("tellaxis_device_ready", TEN_O_CLOCK, 0, device="courtesy")
        desk.gauge("tellaxis_waiting_jobs", TEN_O_CLOCK, 3, device="fiscal")
        desk.killed(TEN_O_CLOCK)
        self.firing([desk], {TEN_O_CLOCK + 5: ["TellaxisPonteFermo cassa1"], TEN_O_CLOCK + 30: ["TellaxisPonteFermo cassa1"]})

    def test_the_file_of_another_program_is_no_bridge(self):
        desk = Desk("cassa1")
        desk.lines[named("node_textfile_mtime_seconds", job="casse", instance="cassa1", file="/srv/apt.prom")] = [(0, "0")]
        self.firing([desk], {30: []})

    def test_a_desk_switched_off_is_unreachable_when_it_is_open_and_no_dead_bridge(self):
        desk = Desk("cassa1").switched_off(TEN_O_CLOCK)
        gone = ["TellaxisCassaIrraggiungibile cassa1"]
        self.firing([desk, Desk("cassa2")], {TEN_O_CLOCK + 4: [], TEN_O_CLOCK + 6: gone, TEN_O_CLOCK + 599: gone, TEN_O_CLOCK + 601: []})

    def test_a_server_without_tellaxis_is_not_ours(self):
        server = Desk("server")
        server.lines = {server.up: [(0, "0")]}
        self.firing([server], {TEN_O_CLOCK + 30: []})


class Fiscal(Rules):
    def test_a_driver_that_does_not_answer_until_it_confirms_again(self):
        for outcome in ("unanswered", "given-up"):
            with self.subTest(outcome):
                desk = Desk("cassa1").no_jobs_from(30).jobs(40, 1, outcome).confirms(50)
                expression = 'count by (instance, device) (ALERTS{alertname="TellaxisDriverFiscaleMuto",alertstate="firing"})'
                fires = {'{device="fiscal", instance="cassa1"}': 1}
                moments = [(39, expression, {}), (41, expression, fires), (49, expression, fires), (51, expression, {}), (53, expression, {}), (54, expression, {}), (60, expression, {})]
                self.computed([desk, Desk("cassa2")], moments)

    def test_a_driver_that_confirms_the_others_is_not_mute(self):
        desk = Desk("cassa1").jobs(40, 1, "given-up")
        self.firing([desk], {41: [], 45: []})

    def test_a_receipt_that_may_have_come_out_is_told_for_an_hour(self):
        desk = Desk("cassa1").jobs(40, 1, "unanswered")
        unconfirmed = ["TellaxisScontriniSenzaConferma cassa1 fiscal"]
        self.firing([desk, Desk("cassa2")], {39: [], 40: unconfirmed, 99: unconfirmed, 101: []})

    def test_a_job_under_way_at_the_kill_is_told_at_the_next_start(self):
        desk = Desk("cassa1").killed(40).started(41).gauge("tellaxis_start_timestamp_seconds", 41, 41 * 60)
        desk.jobs(0, 0, "unconfirmed", "courtesy").jobs(41, 1, "unconfirmed", "courtesy")
        desk.killed(100).started(101).gauge("tellaxis_start_timestamp_seconds", 101, 101 * 60)
        unconfirmed = ["TellaxisScontriniSenzaConferma cassa1 courtesy"]
        # The second time too there was one: the counter begins anew and looks as before.
        self.firing([desk], {40: [], 42: unconfirmed, 99: unconfirmed, 102: unconfirmed, 162: []})


class Paper(Rules):
    def test_a_printer_without_paper_until_it_has_some(self):
        for device in ("courtesy", "slip"):
            with self.subTest(device):
                desk = Desk("cassa1")
                for minute, ready in ((0, 1), (30, 0), (50, 1)):
                    desk.gauge("tellaxis_device_ready", minute, ready, device=device)
                other = Desk("cassa2").gauge("tellaxis_device_ready", 0, 1, device=device)
                out = [f"TellaxisCartaFinita cassa1 {device}"]
                self.firing([desk, other], {30: [], 31: out, 49: out, 50: []})

    def test_its_waiting_jobs_are_the_same_trouble(self):
        desk = Desk("cassa1").gauge("tellaxis_device_ready", 0, 0, device="slip")
        desk.gauge("tellaxis_waiting_jobs", 0, 2, device="slip").gauge("tellaxis_waiting_jobs", 0, 1, device="fiscal")
        self.firing([desk], {20: ["TellaxisCartaFinita cassa1 slip", "TellaxisLavoriInAttesa cassa1 fiscal"]})


class Waiting(Rules):
    def test_jobs_that_wait_for_two_minutes(self):
        desk = Desk("cassa1")
        for minute, count in ((0, 0), (30, 1), (40, 0)):
            desk.gauge("tellaxis_waiting_jobs", minute, count, device="fiscal")
        waiting = ["TellaxisLavoriInAttesa cassa1 fiscal"]
        self.firing([desk, Desk("cassa2")], {31: [], 32: waiting, 39: waiting, 40: []})

    def test_a_queue_that_empties_in_between_does_not_wait(self):
        desk = Desk("cassa1")
        for minute in range(0, 60):
            desk.gauge("tellaxis_waiting_jobs", minute, int(minute % 3 > 0), device="fiscal")
        self.firing([desk], {minute: [] for minute in range(60)})


class OpeningHours(Rules):
    def test_a_gate_closed_for_ten_minutes_until_it_opens(self):
        desk = Desk("cassa1", TEN_O_CLOCK)
        for minute, is_open in ((0, 1), (5, 0), (30, 1)):
            desk.gauge("tellaxis_gate_open", TEN_O_CLOCK + minute, is_open, device="fiscal")
        closed = ["TellaxisCancelloChiuso cassa1 fiscal"]
        self.firing([desk], {TEN_O_CLOCK + 14: [], TEN_O_CLOCK + 15: closed, TEN_O_CLOCK + 29: closed, TEN_O_CLOCK + 30: []})

    def test_a_gate_closed_over_night_counts_from_nine_to_twenty(self):
        desk = Desk("cassa1").gauge("tellaxis_gate_open", 0, 0, device="fiscal")
        closed = ["TellaxisCancelloChiuso cassa1 fiscal"]
        self.firing([desk], {8 * 60 - 1: [], 8 * 60 + 9: [], 8 * 60 + 10: closed, 19 * 60 - 1: closed, 19 * 60 + 1: []})

    def test_on_a_sunday_the_shop_is_closed(self):
        desk = Desk("cassa1").gauge("tellaxis_gate_open", 0, 0, device="fiscal")
        sunday, monday = 3 * DAY, 4 * DAY
        self.firing([desk], {sunday + 12 * 60: [], monday + 12 * 60: ["TellaxisCancelloChiuso cassa1 fiscal"]}, "20m")

    def test_a_desk_without_a_job_for_an_hour_of_the_day_is_silent(self):
        desk = Desk("cassa1").no_jobs_from(TEN_O_CLOCK).confirms(TEN_O_CLOCK + 180)
        silent = ["TellaxisCassaMuta cassa1"]
        moments = {TEN_O_CLOCK + 58: [], TEN_O_CLOCK + 62: silent, TEN_O_CLOCK + 179: silent, TEN_O_CLOCK + 181: []}
        self.firing([desk, Desk("cassa2")], moments)

    def test_a_desk_just_switched_on_or_closed_is_not_silent(self):
        early = Desk("cassa1", TEN_O_CLOCK).no_jobs_from(TEN_O_CLOCK)
        self.firing([early], {TEN_O_CLOCK + 59: [], TEN_O_CLOCK + 62: ["TellaxisCassaMuta cassa1"]})
        at_night = Desk("cassa1").no_jobs_from(0)
        self.firing([at_night], {7 * 60: [], 8 * 60 + 59: [], 9 * 60 + 2: ["TellaxisCassaMuta cassa1"], 19 * 60 + 1: []})


if __name__ == "__main__":
    unittest.main()
