"""Monitoring tools: Prometheus, node_exporter and Ansible as scripts/monitoring-tools keeps them, without being installed."""

import os
from pathlib import Path

CACHE = Path(os.environ.get("TELLAXIS_CACHE") or Path(os.environ.get("XDG_CACHE_HOME") or Path.home() / ".cache") / "tellaxis")
UNPACKED = CACHE / "monitoring"
ALL = ("promtool", "prometheus", "prometheus-node-exporter", "ansible-playbook")


def monitoring_tool(name):
    """The program's path."""
    return UNPACKED / "usr" / "bin" / name


def why_no_tools(names=ALL):
    """Why these cannot be run here; empty where they can."""
    missing = [name for name in names if not os.access(monitoring_tool(name), os.X_OK)]
    return f"{', '.join(missing)} missing: scripts/monitoring-tools fetches them" if missing else ""
