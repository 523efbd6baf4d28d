#!/usr/bin/env python3
"""Checks that tools/mutation/changes.py finds exactly the expected changes in small texts."""
import os
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "tools", "mutation"))
from changes import changes_in  # noqa: E402


def changed(text):
    """The text after each possible change, sorted."""
    return sorted(text[:change.start] + change.replacement + text[change.end:] for change in changes_in(text))


class Changes(unittest.TestCase):
    def expect_changes(self, text, *expected):
        self.assertEqual(changed(text), sorted(expected))

    def test_binary_operator_is_replaced(self):
        self.expect_changes("auto a = b + c;", "auto a = b - c;")
        self.expect_changes("auto a = b % c;", "auto a = b * c;")
        self.expect_changes("auto a = b && c;", "auto a = b || c;")
        self.expect_changes("auto a = b << c;", "auto a = b >> c;")

    def test_comparison_is_moved_by_one_and_inverted(self):
        self.expect_changes("auto a = b < c;", "auto a = b <= c;", "auto a = b >= c;")
        self.expect_changes("auto a = b >= c;", "auto a = b > c;", "auto a = b < c;")

    def test_references_pointers_templates_are_not_operators(self):
        self.expect_changes("const std::vector<int>& a = *b;")
        self.expect_changes("void f(int&& a, char* b);")

    def test_sign_or_negation_is_removed(self):
        self.expect_changes("auto a = -b;", "auto a = b;")
        self.expect_changes("bool a = !b;", "bool a = b;")

    def test_constant_is_increased_and_decreased(self):
        self.expect_changes("constexpr int a = 7;", "constexpr int a = 8;", "constexpr int a = 6;")
        self.expect_changes("constexpr unsigned a = 0xFFU;", "constexpr unsigned a = 0x100U;",
                            "constexpr unsigned a = 0xFEU;")
        self.expect_changes("constexpr double a = 2.5;", "constexpr double a = 3.5;", "constexpr double a = (1.5);")
        self.expect_changes("bool a = true;", "bool a = false;")

    def test_statement_or_return_value_is_removed(self):
        self.expect_changes("void f() { g(h); }", "void f() { ; }")
        self.expect_changes("int f() { return a; }", "int f() { return {}; }")
        self.expect_changes("void f() { if (a) { return; } }", "void f() { if (a) { ; } }")
        self.expect_changes("void f() { emit g(h); }", "void f() { ; }")
        self.expect_changes("void f() { a(b, [c] { d(c); }); }", "void f() { ; }", "void f() { a(b, [c] { ; }); }")

    def test_declarations_are_not_changed(self):
        self.expect_changes("struct A { A() = default; A(const A&) = delete; };")
        self.expect_changes("void f() { const B b(c); std::vector<int> d{e}; }")

    def test_text_that_is_not_code_is_not_changed(self):
        self.expect_changes('// a + b\n#if A + 1\nauto a = "b + 1";\n[[nodiscard]] int c();\n'
                            'static_assert(1 + 1 == 2);')

    def test_properties_of_qt_are_not_changed(self):
        self.expect_changes("class A { Q_PROPERTY(bool b READ b STORED false)\n int c = 7; };",
                            "class A { Q_PROPERTY(bool b READ b STORED false)\n int c = 8; };",
                            "class A { Q_PROPERTY(bool b READ b STORED false)\n int c = 6; };")

    def test_return_false_is_only_inverted(self):
        self.expect_changes("bool f() { return false; }", "bool f() { return true; }")


unittest.main()
