#!/usr/bin/env python3
"""Tests tools/shared/figures.py, which replaces one section of docs/figures.md, and that each section names the script
that writes it."""
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

SHARED = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "tools", "shared")
sys.path.insert(0, SHARED)
from figures import DOCUMENT, ROOT, replace_section, table  # noqa: E402

TEXT = "# Figures\n\nIntroduction.\n\n## One more\n\nkept\n\n## One\n\nold\n\n### Part\n\nold\n\n## Last\n\nold\n"


class Sections(unittest.TestCase):
    def test_section_with_its_parts_is_replaced(self):
        self.assertEqual(replace_section(TEXT, "One", ["new", "", "### Part", "", "new"]),
                         TEXT.replace("old\n\n### Part\n\nold", "new\n\n### Part\n\nnew"))

    def test_last_section_is_replaced(self):
        self.assertEqual(replace_section(TEXT, "Last", ["new"]), TEXT[:-len("old\n")] + "new\n")

    def test_new_section_comes_last(self):
        self.assertEqual(replace_section(TEXT, "New", ["new"]), TEXT + "\n## New\n\nnew\n")

    def test_backslash_is_not_an_escape(self):
        self.assertIn("a\\1b\\n", replace_section(TEXT, "One", ["a\\1b\\n"]))

    def test_heading_of_a_section_inside_is_an_error(self):
        with self.assertRaises(ValueError):
            replace_section(TEXT, "One", ["new\n## Last"])

    def test_all_columns_but_the_first_are_aligned_right(self):
        self.assertEqual(table(["", "A"], [["x", "1"]]), ["|  | A |", "| --- | ---: |", "| x | 1 |"])

    def test_command_records_its_input(self):
        with tempfile.TemporaryDirectory() as root:
            shutil.copytree(SHARED, os.path.join(root, "tools", "shared"))
            document = os.path.join(root, "docs", "figures.md")
            os.mkdir(os.path.dirname(document))
            with open(document, "w", encoding="utf-8") as file:
                file.write(TEXT)
            subprocess.run([os.path.join(root, "tools", "shared", "figures.py"), "Last", "scripts/last"],
                           input="new\n", text=True, check=True)
            with open(document, encoding="utf-8") as file:
                self.assertRegex(file.read(), r"old\n\n## Last\n\nMeasured by `scripts/last` on \d{4}-\d\d-\d\d\.\n"
                                              r"\nnew\n\Z")


class Document(unittest.TestCase):
    def test_each_section_names_the_script_that_writes_it(self):
        with open(DOCUMENT, encoding="utf-8") as file:
            sections = re.split(r"^## ", file.read(), flags=re.MULTILINE)[1:]
        self.assertGreater(len(sections), 3)
        for section in sections:
            title, commands = section.split("\n")[0], re.findall(r"`((?:scripts/|bench/|\./)[\w-]+)", section)
            with self.subTest(section=title):
                with open(os.path.join(ROOT, commands[0]), encoding="utf-8") as script:
                    self.assertIn(f'"{title}"', script.read())


if __name__ == "__main__":
    unittest.main()
