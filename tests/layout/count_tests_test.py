#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Proves that the count of tests, which scripts/test.sh prints, hides no failure and no skipped test."""
import subprocess
import tempfile
import unittest
from pathlib import Path

SCRIPT = Path(__file__).parents[2] / "scripts" / "count_tests.awk"

PASSED = '\t<testcase name="{0}" classname="{0}" time="0.1" status="run">\n'
FAILED = '\t<testcase name="{0}" classname="{0}" time="0.1" status="fail">\n\t\t<failure message=""/>\n'
NOT_RUN = '\t<testcase name="{0}" classname="{0}" time="0" status="notrun">\n\t\t<skipped message="{1}"/>\n'


def entry(head, output=""):
    return head + f"\t\t<system-out>{output}</system-out>\n\t</testcase>\n"


class CountTests(unittest.TestCase):
    def assertCounts(self, entries, passed, failed, skipped):
        with tempfile.NamedTemporaryFile("w", suffix=".xml") as file:
            file.write('<?xml version="1.0"?>\n<testsuite name="(empty)"\n\t>\n' + "".join(entries) + "</testsuite>\n")
            file.flush()
            run = subprocess.run(["awk", "-f", SCRIPT, file.name], capture_output=True, text=True, check=True)
        self.assertEqual(run.stdout.splitlines()[-1], f"tests: {passed} passed, {failed} failed, {skipped} skipped")

    def test_program_without_totals_is_one_test(self):
        self.assertCounts([entry(PASSED.format("a")), entry(FAILED.format("b"))], 1, 1, 0)

    def test_google_test_totals(self):
        output = ("Running main()\n[  PASSED  ] 12 tests.\n[  SKIPPED ] 1 test, listed below:\n[  SKIPPED ] A.B\n"
                  "[  FAILED  ] 2 tests, listed below:\n[  FAILED  ] A.C\n[  FAILED  ] A.D\n")
        self.assertCounts([entry(FAILED.format("text"), output)], 12, 2, 1)

    def test_qt_test_totals(self):
        output = "PASS   : X::y()\nTotals: 5 passed, 1 failed, 2 skipped, 0 blacklisted, 12ms\n"
        self.assertCounts([entry(FAILED.format("screen"), output)], 5, 1, 2)

    def test_unittest_totals(self):
        output = "Ran 35 tests in 0.043s\n\nFAILED (failures=1, errors=2, skipped=3)\n"
        self.assertCounts([entry(FAILED.format("layout"), output)], 29, 3, 3)
        self.assertCounts([entry(PASSED.format("layout"), "Ran 1 test in 0.043s\n\nOK\n")], 1, 0, 0)

    def test_crash_after_passed_tests_is_a_failure(self):
        self.assertCounts([entry(FAILED.format("job"), "Running\n[  PASSED  ] 3 tests.\n")], 3, 1, 0)

    def test_program_that_was_never_built_is_a_failure(self):
        self.assertCounts([entry(NOT_RUN.format("job", "Unable to find executable"))], 0, 1, 0)

    def test_skipped_program(self):
        self.assertCounts([entry(NOT_RUN.format("alerts", "SKIP_RETURN_CODE=77"))], 0, 0, 1)

    def test_one_program_does_not_change_the_next(self):
        self.assertCounts([entry(FAILED.format("a"), "[  PASSED  ] 3 tests.\n"), entry(PASSED.format("b"))], 4, 1, 0)


if __name__ == "__main__":
    unittest.main(buffer=True)
