#!/usr/bin/env python3
"""Every link in the documents leads somewhere, and every path of the tree that they name is there. Usage:
links_test.py ROOT"""
import glob
import os
import re
import sys
import unittest

ROOT = os.path.abspath(sys.argv.pop(1))
LINK = re.compile(r"\]\(([^)\s]+)\)")
CODE = re.compile(r"`([^`\n]+)`")
FENCE = re.compile(r"^```.*?^```", re.MULTILINE | re.DOTALL)
FILE = re.compile(r"[\w/]+/\w+\.(cpp|h|py|md)")
# What stands in code and begins like this names something in the tree; what a build makes is not there yet.
TREE = ("bench/", "cmake/", "docs/", "fuzz/", "packaging/", "samples/", "scripts/", "src/", "tests/", "tools/")


def documents():
    """The Markdown files of the tree, by their paths from its root."""
    for place, folders, names in os.walk(ROOT):
        folders[:] = [name for name in folders if name != "build" and not name.startswith(".")]
        for name in sorted(names):
            if name.endswith(".md"):
                yield os.path.relpath(os.path.join(place, name), ROOT)


def read(path):
    with open(os.path.join(ROOT, path), encoding="utf-8") as file:
        return file.read()


def anchors(text):
    """The names under which the headings can be reached: lower case, no marks, hyphens for blanks."""
    headings = re.findall(r"^#+ (.*)$", FENCE.sub("", text), re.MULTILINE)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


def is_there(path):
    """Whether there is such a file or folder, or a file of that name with an ending."""
    whole = os.path.join(ROOT, path)
    return os.path.exists(whole) or bool(glob.glob(glob.escape(whole) + ".*"))


def named_paths(text):
    """Paths of the tree in code, without arguments behind them and without what stands for something else."""
    for code in CODE.findall(FENCE.sub("", text)):
        path = code.split()[0].removeprefix("./").rstrip(".:,")
        if (path.startswith(TREE) or FILE.fullmatch(path)) and not re.search(r"[*<>{}]|\.\.\.|[A-Z]{4,}", path):
            yield path


class Documents(unittest.TestCase):
    def test_there_are_documents(self):
        self.assertIn("README.md", documents())

    def test_links_lead_to_files_and_headings(self):
        for document in documents():
            text = read(document)
            for link in LINK.findall(text):
                if re.match(r"[a-z]+:", link):
                    continue
                with self.subTest(document=document, link=link):
                    path, _, anchor = link.partition("#")
                    target = os.path.normpath(os.path.join(os.path.dirname(document), path)) if path else document
                    self.assertTrue(is_there(target))
                    if anchor:
                        self.assertIn(anchor, anchors(read(target)))

    def test_paths_of_the_tree_that_are_named_are_there(self):
        for document in documents():
            for path in named_paths(read(document)):
                with self.subTest(document=document, path=path):
                    self.assertTrue(is_there(path) or is_there(os.path.join("src", path)))

    def test_every_picture_is_shown_somewhere(self):
        shown = {os.path.normpath(os.path.join(os.path.dirname(document), link))
                 for document in documents() for link in LINK.findall(read(document))}
        for name in os.listdir(os.path.join(ROOT, "docs", "pictures")):
            self.assertIn(os.path.join("docs", "pictures", name), shown)


unittest.main()
