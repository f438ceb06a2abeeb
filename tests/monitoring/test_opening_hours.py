"""Opening hours: the rules' Italian time beside that of the system's time zones, around each change and through a week."""

import datetime
import re
import tempfile
import unittest
import zoneinfo
from pathlib import Path

from monitoring_tools import why_no_tools
from prometheus import Prometheus

RULES = Path(__file__).resolve().parents[2] / "packaging" / "monitoring" / "tellaxis.rules.yml"
HOUR = 3600


def italy():
    try:
        return zoneinfo.ZoneInfo("Europe/Rome")
    except zoneinfo.ZoneInfoNotFoundError:
        return None


def rule(name):
    """The expression of a recording rule, those that it names put in their place."""
    text = re.search(rf"- record: {name}\n +expr: (?:\|\n)?(.*?)(?=\n\n|\n +- |\n +#)", RULES.read_text("utf-8"), re.S)[1]
    return re.sub(r"tellaxis:\w+", lambda found: f"({rule(found[0])})", text)


WHY_NOT = why_no_tools(("prometheus",)) or ("" if italy() else "the system has no time zones: tzdata")


@unittest.skipIf(WHY_NOT, WHY_NOT)
class ItalianTime(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.server = Prometheus(Path(cls.folder.name), {})

    @classmethod
    def tearDownClass(cls):
        cls.server.close()
        cls.folder.cleanup()

    def series(self, name, begin, end, step):
        (found,) = self.server.ask("query_range", query=rule(name), start=begin, end=end, step=step)["result"]
        return [(int(time), float(value)) for time, value in found["values"]]

    def test_summer_time_is_italys_for_fifteen_years(self):
        wrong = []
        for year in range(2026, 2041):
            begin = int(datetime.datetime(year, 1, 1, tzinfo=datetime.timezone.utc).timestamp())
            for time, value in self.series("tellaxis:local_time_seconds", begin, begin + 365 * 24 * HOUR, HOUR):
                there = datetime.datetime.fromtimestamp(time, italy())
                if value != time + there.utcoffset().total_seconds():
                    wrong.append(there.isoformat())
        self.assertEqual(wrong, [])

    def test_the_shops_are_open_from_monday_to_saturday_from_nine_to_twenty(self):
        for month in (1, 7):
            begin = int(datetime.datetime(2026, month, 1, tzinfo=datetime.timezone.utc).timestamp())
            for time, value in self.series("tellaxis:open", begin, begin + 7 * 24 * HOUR, 300):
                there = datetime.datetime.fromtimestamp(time, italy())
                self.assertEqual(bool(value), there.weekday() < 6 and 9 <= there.hour < 20, there.isoformat())


if __name__ == "__main__":
    unittest.main()
