"""Chain: what it costs one Prometheus to watch 1,000 desks: time of a scrape, of the rules, and memory.

    /usr/bin/python3 bench/chain.py [BUILD [DESKS]]

The desks are one small server on this computer. What it tells is the file of a real tellaxisd with all four devices, the
counters of which grow, and the file's date, as node_exporter adds it. Time on the wire and a desk's own processor are not in it.
"""

import http.server
import os
import re
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

HOUSE = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(HOUSE / "tests" / "desk"))
build = Path(sys.argv[1] if len(sys.argv) > 1 else "build/linux-release").resolve()
os.environ.setdefault("TELLAXISD", str(build / "src/app/tellaxisd"))
os.environ.setdefault("TELLAXIS_TOOLS", str(build / "tools"))
tempfile.tempdir = "/dev/shm"

import fiscal_driver  # noqa: E402  (the harness reads the environment)
from harness import Desk, wait_for  # noqa: E402
from prometheus import Prometheus  # noqa: E402
from serial_line import SerialLine  # noqa: E402

DESKS = int(sys.argv[2]) if len(sys.argv) > 2 else 1000
INTERVAL = 15  # seconds between two scrapes of a desk, as between two writes of its file
ROUNDS = 6  # scrapes of each desk before anything is read
# What grows from job to job on a desk without trouble.
COUNTERS = re.compile(r'^(tellaxis_(?:jobs_total.*outcome="(?:confirmed|done)"|job_seconds_).*\}) (\S+)$')


def real_file():
    """What a desk with all four devices writes after a job of each."""
    desk = Desk()
    try:
        line = SerialLine(desk, 3).plug_in()
        fiscal_driver.configure(desk, "ONDA DRIVER - 91", MF_Driver=fiscal_driver.command_line(desk))
        display = dict(Display_Active=-1, Display_File="C:\\MERIDIA\\Display.txt", Display_Type="ASEM", Display_COM=3)
        slip = dict(RF_Active=-1, RF_Stampante="EPSON TM-U295 Slip", RF_Seriale="LPT1:", RF_File="C:\\MERIDIA\\Ricevuta.txt")
        desk.settings(**display, Display_Parametri="9600,N,8,1", **slip)
        desk.settings(CORT_Active=-1, CORT_Printer="OLIVETTI PRT100 NonFiscale", CORT_COM=5)
        printers = "".join(
            f'[[printer]]\nname = "{name}"\nport = "{port}"\ntarget = "folder:{port[:4]}"\n'
            for name, port in (("EPSON TM-U295 Slip", "LPT1:"), ("PRT100", "COM5:"))
        )
        serial = f'[[serial]]\nport = 3\ndevice = "{line.link}"\n'
        bridge = '[bridge]\ndiary = "diario"\nrole = "CLIENT"\nmetrics = "tellaxis.prom"\n'
        (desk.main / "devices.toml").write_text(printers + serial + bridge)
        program = desk.start()
        desk.drop("scontrino.txt")
        desk.drop("preconto.txt", folder="CortOrbis")
        desk.write_whole(desk.c("MERIDIA\\Ricevuta.txt"), "RR uno\r\n")
        desk.write_whole(desk.c("MERIDIA\\Display.txt"), "Totale 3")
        wait_for(lambda: not desk.jobs() and not desk.jobs("IN") and not desk.jobs("CortOrbis"), "the jobs are done")
        wait_for(lambda: not desk.c("MERIDIA\\Display.txt").exists(), "the display's too")
        program.stop()
        return (desk.main / "tellaxis.prom").read_text("utf-8")
    finally:
        desk.close()


class Desks(http.server.ThreadingHTTPServer):
    """Tells the metrics of desk n under /n."""

    daemon_threads = True
    request_queue_size = 256

    def __init__(self, file):
        parts, self.firsts = [], []
        for row in file.splitlines():
            counter = COUNTERS.match(row)
            parts.append(f"{counter[1]} %.6g" if counter else row.replace("%", "%%"))
            self.firsts += [float(counter[2])] if counter else []
        date = "# TYPE node_textfile_mtime_seconds gauge\nnode_textfile_mtime_seconds{file=\"/var/lib/prometheus/node-exporter/tellaxis.prom\"} %d"
        self.text = "\n".join([*parts, date, ""])
        self.begun = time.time()
        super().__init__(("127.0.0.1", 0), Told)

    def metrics(self, number):
        now = time.time()
        grown = int(now - self.begun + number) // INTERVAL
        return self.text % (*(first + grown for first in self.firsts), now - now % INTERVAL)


class Told(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    wbufsize = -1

    def do_GET(self):
        body = self.server.metrics(int(self.path[1:])).encode()
        self.send_response(200)
        self.send_header("Content-Type", "text/plain; version=0.0.4")
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass


def settings(port):
    """Those of a chain, but that every desk is a path on the same port."""
    names = [f"cassa{number:04}" for number in range(DESKS)]
    groups = [{"targets": [name], "labels": {"__metrics_path__": f"/{number}"}} for number, name in enumerate(names)]
    relabel = [
        {"source_labels": ["__address__"], "target_label": "instance"},
        {"target_label": "__address__", "replacement": f"127.0.0.1:{port}"},
    ]
    return {
        "global": {"scrape_interval": f"{INTERVAL}s", "evaluation_interval": f"{INTERVAL}s"},
        "scrape_configs": [{"job_name": "casse", "static_configs": groups, "relabel_configs": relabel}],
    }


def status(process, name):
    """A line of what the system says of a process, in KB."""
    text = Path(f"/proc/{process.pid}/status").read_text()
    return int(re.search(rf"^{name}:\s+(\d+)", text, re.M)[1])


def processor_seconds(process):
    fields = Path(f"/proc/{process.pid}/stat").read_text().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def one(server, expression):
    ((_, value),) = server.query(expression)
    return value


def measure(server):
    wait_for(lambda: server.query("count(up)") == [({}, DESKS)], "a scrape of every desk", 120)
    idle, before = processor_seconds(server.process), time.monotonic()
    time.sleep(INTERVAL * ROUNDS)
    used, passed = processor_seconds(server.process) - idle, time.monotonic() - before
    up, samples = one(server, "sum(up)"), one(server, "sum(scrape_samples_scraped)")
    if up != DESKS:
        sys.exit(f"{DESKS - up:.0f} of {DESKS} desks could not be scraped")
    alive = one(server, "sum(tellaxis:alive)")
    if alive != DESKS:
        sys.exit(f"the rules see {alive:.0f} bridges of {DESKS}")
    print(f"{DESKS} desks, {samples / DESKS:.0f} samples each, {samples:.0f} in all every {INTERVAL} s")
    for name, expression in (("median", "quantile(0.5, {})"), ("99 of 100 within", "quantile(0.99, {})"), ("slowest", "max({})")):
        print(f"scrape of a desk: {name} {1000 * one(server, expression.format('scrape_duration_seconds')):.2f} ms")
    (group,) = server.ask("rules")["groups"]
    print(f"all rules: {1000 * group['evaluationTime']:.0f} ms")
    print(f"processor: {100 * used / passed:.1f} % of one")
    print(f"memory: {status(server.process, 'VmRSS') / 1024:.0f} MB resident, at most {status(server.process, 'VmHWM') / 1024:.0f} MB")


def main():
    subprocess.run([HOUSE / "scripts" / "monitoring-tools"], check=True, stdout=subprocess.DEVNULL)
    desks = Desks(real_file())
    threading.Thread(target=desks.serve_forever, daemon=True).start()
    with tempfile.TemporaryDirectory() as folder:
        rules = HOUSE / "packaging" / "monitoring" / "tellaxis.rules.yml"
        server = Prometheus(Path(folder), settings(desks.server_port), [rules])
        try:
            measure(server)
        finally:
            server.close()
            desks.shutdown()


main()
