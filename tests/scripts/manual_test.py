#!/usr/bin/env python3
"""Tests which Doxygen warnings scripts/manual ignores, and how scripts/manual-filter transforms a header."""
import importlib.machinery
import importlib.util
import os
import subprocess
import tempfile
import unittest

SCRIPTS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts")


def load(path):
    loader = importlib.machinery.SourceFileLoader("manual", path)
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader("manual", loader))
    loader.exec_module(module)
    return module


MANUAL = load(os.path.join(SCRIPTS, "manual"))

HEADER = """// Holds a thing.
#pragma once

namespace varnoth {

/// What it is.
class Thing {
  public:
    void first(int with);

    /// Two of a kind.
    void second(int with);
    void third(int with);

    void fourth(int with);
};

} // namespace varnoth
"""


class HeaderTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def write(self, name, text):
        path = os.path.join(self.folder, name)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        return path


class Complaints(HeaderTest):
    def warnings(self, declaration, kind="function", line=9, owner="class varnoth::Thing"):
        path = self.write("Thing.h", HEADER)
        warning = f"{path}:{line}: warning: Member {declaration} ({kind}) of {owner} is not documented."
        return list(MANUAL.complaints(warning + "\n"))

    def test_self_explanatory_declarations_need_no_comment(self):
        for declaration in ("size() const", "data()", "folder() const =0", "SetSize(int size)", "Thing(int with)",
                            "operator=(const Thing &other)", "paintEvent(QPaintEvent *event) override"):
            with self.subTest(declaration=declaration):
                self.assertEqual(self.warnings(declaration), [])
        self.assertEqual(self.warnings("width", kind="variable"), [])

    def test_other_functions_and_enumerations_need_a_comment(self):
        self.assertEqual(len(self.warnings("first(int with)")), 1)
        self.assertEqual(len(self.warnings("fourth(int with)", line=15)), 1)
        self.assertEqual(len(self.warnings("load(int with)", owner="namespace varnoth")), 1)
        self.assertEqual(len(self.warnings("Kind", kind="enumeration")), 1)

    def test_comment_covers_following_lines_up_to_a_blank_one(self):
        self.assertEqual(self.warnings("third(int with)", line=13), [])

    def test_other_warnings_are_reported_once(self):
        text = "a.h:1: warning: Compound varnoth::Thing is not documented.\nb.h:2: warning: argument 'x' is not found\n"
        self.assertEqual(list(MANUAL.complaints(text + text)), text.splitlines())


class Filter(HeaderTest):
    def shown(self, name, text):
        path = self.write(name, text)
        return subprocess.run([os.path.join(SCRIPTS, "manual-filter"), path], check=True, stdout=subprocess.PIPE,
                              encoding="utf-8").stdout

    def test_opening_comment_documents_the_class_and_keeps_lines(self):
        lines = self.shown("Thing.h", HEADER).split("\n")
        self.assertEqual(lines[:2], ["/// @class varnoth::Thing", "/// Holds a thing."])
        self.assertEqual(lines[2:], HEADER.split("\n")[2:])

    def test_opening_comment_documents_namespace_or_file(self):
        module = "// Does it.\n#pragma once\n\nnamespace varnoth::things {\n} // namespace varnoth::things\n"
        self.assertTrue(self.shown("things.h", module).startswith("/// @namespace varnoth::things\n/// Does it.\n"))
        self.assertTrue(self.shown("other.h", module).startswith("/// @file\n/// Does it.\n"))

    def test_forward_declared_class_is_not_documented(self):
        text = "// Does it.\n#pragma once\n\nnamespace varnoth {\nclass Thing;\n} // namespace varnoth\n"
        self.assertTrue(self.shown("Thing.h", text).startswith("/// @file\n"))


if __name__ == "__main__":
    unittest.main()
