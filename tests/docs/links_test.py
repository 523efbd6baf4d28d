#!/usr/bin/env python3
"""Checks that links in the documents resolve, and that paths of the tree that they mention exist. Usage:
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
# Code that begins like this is a path in the tree; build/ is missing here because builds create it.
TREE = ("bench/", "cmake/", "docs/", "fuzz/", "packaging/", "samples/", "scripts/", "src/", "tests/", "tools/")


def documents():
    """The Markdown files of the tree, relative to its root."""
    for place, folders, names in os.walk(ROOT):
        folders[:] = [name for name in folders if name != "build" and not name.startswith(".")]
        for name in sorted(names):
            if name.endswith(".md"):
                yield os.path.relpath(os.path.join(place, name), ROOT)


def read(path):
    with open(os.path.join(ROOT, path), encoding="utf-8") as file:
        return file.read()


def anchors(text):
    """The anchors of the headings: lower case, no punctuation, hyphens for spaces."""
    headings = re.findall(r"^#+ (.*)$", FENCE.sub("", text), re.MULTILINE)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


def path_exists(path):
    """Whether such a file or folder exists, or such a file with an extension."""
    whole = os.path.join(ROOT, path)
    return os.path.exists(whole) or bool(glob.glob(glob.escape(whole) + ".*"))


def named_paths(text):
    """Paths of the tree in code, without their arguments; patterns and placeholders are skipped."""
    for code in CODE.findall(FENCE.sub("", text)):
        path = code.split()[0].removeprefix("./").rstrip(".:,")
        if (path.startswith(TREE) or FILE.fullmatch(path)) and not re.search(r"[*<>{}]|\.\.\.|[A-Z]{4,}", path):
            yield path


class Documents(unittest.TestCase):
    def test_documents_are_found(self):
        self.assertIn("README.md", documents())

    def test_links_resolve(self):
        for document in documents():
            text = read(document)
            for link in LINK.findall(text):
                if re.match(r"[a-z]+:", link):
                    continue
                with self.subTest(document=document, link=link):
                    path, _, anchor = link.partition("#")
                    target = os.path.normpath(os.path.join(os.path.dirname(document), path)) if path else document
                    self.assertTrue(path_exists(target))
                    if anchor:
                        self.assertIn(anchor, anchors(read(target)))

    def test_mentioned_paths_exist(self):
        for document in documents():
            for path in named_paths(read(document)):
                with self.subTest(document=document, path=path):
                    self.assertTrue(path_exists(path) or path_exists(os.path.join("src", path)))

    def test_each_picture_is_used(self):
        shown = {os.path.normpath(os.path.join(os.path.dirname(document), link))
                 for document in documents() for link in LINK.findall(read(document))}
        for name in os.listdir(os.path.join(ROOT, "docs", "pictures")):
            self.assertIn(os.path.join("docs", "pictures", name), shown)


unittest.main()
