"""Prometheus: the real server and the real node_exporter on ports of their own, as a chain runs them."""

import json
import re
import subprocess
import threading
import urllib.error
import urllib.parse
import urllib.request

from harness import wait_for
from monitoring_tools import monitoring_tool


class Server:
    """A program that says on which port of this computer it listens; what it logs is kept."""

    def __init__(self, program, *arguments):
        words = [monitoring_tool(program), "--web.listen-address=127.0.0.1:0", *arguments]
        self.process = subprocess.Popen(words, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
        self.log = []
        self.port = None
        self.reader = threading.Thread(target=self._read, daemon=True)
        self.reader.start()
        wait_for(lambda: self.port or self.process.poll() is not None, f"{program} listens", 60)
        if not self.port:
            raise AssertionError(f"{program} ended: {self.log}")

    def _read(self):
        for line in self.process.stderr:
            self.log.append(line)
            found = re.search(r'msg="Listening on" address=127\.0\.0\.1:(\d+)', line)
            if found:
                self.port = int(found[1])

    def get(self, path):
        with urllib.request.urlopen(f"http://127.0.0.1:{self.port}{path}", timeout=30) as answer:
            return answer.read().decode("utf-8")

    def close(self):
        self.process.terminate()
        try:
            self.process.wait(30)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
        self.reader.join(5)
        self.process.stderr.close()


class NodeExporter(Server):
    """Tells the text files of a folder, and nothing of the computer."""

    def __init__(self, folder):
        folder.mkdir(parents=True, exist_ok=True)
        super().__init__(
            "prometheus-node-exporter",
            "--collector.disable-defaults",
            "--collector.textfile",
            f"--collector.textfile.directory={folder}",
        )


class Prometheus(Server):
    """Has its data and its settings in a folder; `settings` are those of its file, `rules` are files."""

    def __init__(self, folder, settings, rules=()):
        folder.mkdir(parents=True, exist_ok=True)
        whole = {**settings, "rule_files": [str(rule) for rule in rules]}
        (folder / "prometheus.yml").write_text(json.dumps(whole))
        super().__init__("prometheus", f"--config.file={folder / 'prometheus.yml'}", f"--storage.tsdb.path={folder / 'data'}")
        wait_for(self._is_ready, "prometheus is ready", 60)

    def _is_ready(self):
        try:
            return "Ready" in self.get("/-/ready")
        except urllib.error.HTTPError:
            return False

    def ask(self, path, **words):
        try:
            return json.loads(self.get(f"/api/v1/{path}?{urllib.parse.urlencode(words)}"))["data"]
        except urllib.error.HTTPError as refusal:
            raise AssertionError(f"{words}: {refusal.read().decode()}") from refusal

    def query(self, expression, **words):
        """The labels and the value of each series now; `time`: at another moment."""
        found = self.ask("query", query=expression, **words)["result"]
        return [(series["metric"], float(series["value"][1])) for series in found]

    def alerts(self):
        """What fires: alert, desk, and the device where there is one."""
        found = [alert["labels"] for alert in self.ask("alerts")["alerts"] if alert["state"] == "firing"]
        return {(labels["alertname"], labels["instance"], labels.get("device", "")) for labels in found}


def scrape_settings(desks, seconds):
    """Settings of a server that watches desks: name and port of each."""
    targets = [{"targets": [f"127.0.0.1:{port}"], "labels": {"instance": name}} for name, port in desks.items()]
    return {
        "global": {"scrape_interval": f"{seconds}s", "evaluation_interval": f"{seconds}s"},
        "scrape_configs": [{"job_name": "casse", "static_configs": targets}],
    }
