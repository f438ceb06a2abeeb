"""What scripts/test-results says of a run of tests: nothing that did not run counts as passed over."""

import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

RESULTS = Path(__file__).resolve().parents[2] / "scripts" / "test-results"
TESTS = """
add_test(passes "true")
add_test(fails "sh" "-c" "echo 1 is not 2; exit 1")
add_test(skips_itself "sh" "-c" "exit 77")
set_tests_properties(skips_itself PROPERTIES SKIP_RETURN_CODE 77)
add_test(was_not_built "/nowhere/test")
set_tests_properties(fails PROPERTIES FIXTURES_SETUP something)
add_test(lacks_something "true")
set_tests_properties(lacks_something PROPERTIES FIXTURES_REQUIRED something)
add_test(hangs "sleep" "30")
set_tests_properties(hangs PROPERTIES TIMEOUT 1)
"""


class Results(unittest.TestCase):
    def setUp(self):
        self.folder = Path(tempfile.mkdtemp(prefix="tellaxis-"))
        self.addCleanup(shutil.rmtree, self.folder)
        (self.folder / "CTestTestfile.cmake").write_text(TESTS)

    def results(self, *options):
        """What is said of these tests: exit status and lines."""
        subprocess.run(
            ["ctest", "--output-junit", "report.xml", *options], cwd=self.folder, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL
        )
        said = subprocess.run([RESULTS, self.folder / "report.xml"], stdout=subprocess.PIPE, text=True, check=False)
        return said.returncode, said.stdout.splitlines()

    def test_what_passed_and_what_was_skipped(self):
        self.assertEqual(self.results("-R", "passes|skips"), (0, ["Skipped: 1", "1 passed, 0 failed"]))

    def test_what_failed_is_said_with_its_reason(self):
        status, lines = self.results("-R", "passes|fails")
        self.assertEqual((status, lines), (1, ["FAILED: fails after 0 s", "    1 is not 2", "1 passed, 1 failed"]))

    def test_what_could_not_run_or_did_not_end_failed(self):
        status, lines = self.results()
        self.assertEqual((status, lines[-1]), (1, "1 passed, 4 failed"))
        failed = [line.split()[1] for line in lines if line.startswith("FAILED")]
        self.assertEqual(failed, ["fails", "was_not_built", "lacks_something", "hangs"])

    def test_where_nothing_ran_nothing_was_shown(self):
        self.assertEqual(self.results("-R", "skips"), (1, ["Skipped: 1", "0 passed, 0 failed"]))


if __name__ == "__main__":
    unittest.main()
