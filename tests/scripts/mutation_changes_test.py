#!/usr/bin/env python3
"""Holds what tools/mutation/changes.py finds in small texts: which changes, and that no other."""
import os
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "tools", "mutation"))
from changes import changes_in  # noqa: E402


def changed(text):
    """The texts that come of all changes of a text, and nothing about their order."""
    return sorted(text[:change.start] + change.replacement + text[change.end:] for change in changes_in(text))


class Changes(unittest.TestCase):
    def holds(self, text, *expected):
        self.assertEqual(changed(text), sorted(expected))

    def test_an_operator_between_spaces_becomes_another(self):
        self.holds("auto a = b + c;", "auto a = b - c;")
        self.holds("auto a = b % c;", "auto a = b * c;")
        self.holds("auto a = b && c;", "auto a = b || c;")
        self.holds("auto a = b << c;", "auto a = b >> c;")

    def test_a_bound_moves_by_one_and_turns_round(self):
        self.holds("auto a = b < c;", "auto a = b <= c;", "auto a = b >= c;")
        self.holds("auto a = b >= c;", "auto a = b > c;", "auto a = b < c;")

    def test_references_pointers_and_templates_are_no_operators(self):
        self.holds("const std::vector<int>& a = *b;")
        self.holds("void f(int&& a, char* b);")

    def test_a_sign_or_a_negation_goes(self):
        self.holds("auto a = -b;", "auto a = b;")
        self.holds("bool a = !b;", "bool a = b;")

    def test_constants_are_one_more_and_one_less(self):
        self.holds("constexpr int a = 7;", "constexpr int a = 8;", "constexpr int a = 6;")
        self.holds("constexpr unsigned a = 0xFFU;", "constexpr unsigned a = 0x100U;", "constexpr unsigned a = 0xFEU;")
        self.holds("constexpr double a = 2.5;", "constexpr double a = 3.5;", "constexpr double a = (1.5);")
        self.holds("bool a = true;", "bool a = false;")

    def test_statements_and_returns_go(self):
        self.holds("void f() { g(h); }", "void f() { ; }")
        self.holds("int f() { return a; }", "int f() { return {}; }")
        self.holds("void f() { if (a) { return; } }", "void f() { if (a) { ; } }")
        self.holds("void f() { a(b, [c] { d(c); }); }", "void f() { ; }", "void f() { a(b, [c] { ; }); }")

    def test_declarations_stay(self):
        self.holds("struct A { A() = default; A(const A&) = delete; };")
        self.holds("void f() { const B b(c); std::vector<int> d{e}; }")

    def test_comments_texts_directives_attributes_and_assertions_stay(self):
        self.holds('// a + b\n#if A + 1\nauto a = "b + 1";\n[[nodiscard]] int c();\nstatic_assert(1 + 1 == 2);')

    def test_a_return_of_nothing_is_none_less(self):
        self.holds("bool f() { return false; }", "bool f() { return true; }")


unittest.main()
