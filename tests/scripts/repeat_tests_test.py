#!/usr/bin/env python3
"""Holds what scripts/repeat-tests counts."""
import os
import subprocess
import tempfile
import unittest

SCRIPT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts", "repeat-tests")

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

    def test_a_name_that_no_test_has_is_an_error(self):
        done = self.repeat("nothing")
        self.assertEqual(done.stderr, "no test has such a name\n")
        self.assertEqual(done.returncode, 1)


if __name__ == "__main__":
    unittest.main()
