#!/usr/bin/env python3
"""Tests what scripts/repeat-tests counts and records."""
import os
import shutil
import subprocess
import tempfile
import unittest

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")
SCRIPT = os.path.join(ROOT, "scripts", "repeat-tests")

# Fails at every run but the first.
TESTS = """add_test(steady true)
add_test(by_chance mkdir made)
"""


class RepeatTests(unittest.TestCase):
    def repeat(self, *arguments):
        with tempfile.TemporaryDirectory() as folder:
            with open(os.path.join(folder, "CTestTestfile.cmake"), "w", encoding="ascii") as file:
                file.write(TESTS)
            return subprocess.run([SCRIPT, "--build", folder, "--times", "3", *arguments], capture_output=True,
                                  text=True, check=False)

    def test_failures_are_counted_for_each_test(self):
        done = self.repeat("^steady$", "^by_chance$")
        self.assertEqual(done.stdout.splitlines()[-2:], ["     3       0  steady", "     3       2  by_chance"])
        self.assertEqual(done.returncode, 1)

    def test_only_the_named_tests_run(self):
        done = self.repeat("--busy", "^steady$")
        self.assertEqual(done.stdout.splitlines()[1:], ["     3       0  steady"])
        self.assertEqual(done.returncode, 0)

    def record(self, *arguments):
        """Runs a copy of the script with --record; returns the exit status and the lines of its docs/figures.md."""
        with tempfile.TemporaryDirectory() as root:
            shutil.copytree(os.path.join(ROOT, "tools", "shared"), os.path.join(root, "tools", "shared"))
            for folder in ("scripts", "docs", "build"):
                os.mkdir(os.path.join(root, folder))
            script = shutil.copy(SCRIPT, os.path.join(root, "scripts"))
            document = os.path.join(root, "docs", "figures.md")
            with open(document, "w", encoding="ascii") as file:
                file.write("# Figures\n")
            with open(os.path.join(root, "build", "CTestTestfile.cmake"), "w", encoding="ascii") as file:
                file.write("add_test(golden true)\nadd_test(samples mkdir made)\n")
            done = subprocess.run([script, "--build", os.path.join(root, "build"), "--times", "3", "--record",
                                   *arguments], capture_output=True, check=False)
            with open(document, encoding="ascii") as file:
                return done.returncode, file.read().splitlines()

    def test_totals_and_failing_tests_are_recorded(self):
        status, lines = self.record()
        self.assertEqual(lines[-2:], ["| 2 tests | 6 | 2 |", "| `samples` | 3 | 2 |"])
        self.assertEqual(status, 1)

    def test_named_tests_are_not_recorded(self):
        self.assertEqual(self.record("^golden$"), (2, ["# Figures"]))

    def test_a_name_that_no_test_has_is_an_error(self):
        done = self.repeat("nothing")
        self.assertEqual(done.stderr, "no test has such a name\n")
        self.assertEqual(done.returncode, 1)


if __name__ == "__main__":
    unittest.main()
