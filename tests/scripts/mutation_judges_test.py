#!/usr/bin/env python3
"""Tests which files scripts/mutate mutates, the list of equivalent mutants, how a test program is judged, and how the
mutants are counted."""
import contextlib
import importlib.machinery
import importlib.util
import io
import os
import stat
import sys
import tempfile
import types
import unittest

SCRIPT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts", "mutate")
TOOLS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "tools")
sys.path[:0] = [os.path.join(TOOLS, "mutation"), os.path.join(TOOLS, "shared")]
from core import ROOT, is_core, is_desktop, read_argued, source_files  # noqa: E402
from mutants import without_comment  # noqa: E402
from programs import Programs, Stage, used_by_group  # noqa: E402


class Files(unittest.TestCase):
    def test_each_source_is_core_or_desktop_or_not_mutated(self):
        for path in source_files(lambda path: path.endswith((".cpp", ".h"))):
            is_mutated = path != "main.cpp" and not path.startswith("cli/")
            self.assertEqual(is_core(path) + is_desktop(path), 1 if is_mutated else 0, path)

    def test_only_sources_below_qt_and_desktop_are_desktop(self):
        for path in ("qt/QtPictureLoader.h", "desktop/theme/theme.h", "desktop/forms/FormCoordinator.h",
                     "desktop/forms/preview/Form7.cpp", "desktop/controls/parts/Part.cpp"):
            self.assertTrue(is_desktop(path), path)
        for path in ("core/jobs/Module1.cpp", "core/image/Bitmap.h", "main.cpp", "CMakeLists.txt"):
            self.assertFalse(is_desktop(path), path)

    def test_only_sources_below_core_are_core(self):
        self.assertTrue(is_core("core/quantize/mixpals.cpp"))
        for path in ("qt/QtPictureLoader.h", "main.cpp", "CMakeLists.txt"):
            self.assertFalse(is_core(path), path)


class EquivalentMutants(unittest.TestCase):
    def test_each_listed_line_is_in_its_file(self):
        for path, line, _ in read_argued("tests/equivalent_mutants.txt", ("path", "line", "mutated line", "why")):
            with open(os.path.join(ROOT, "src", path), encoding="utf-8") as file:
                self.assertIn(line, without_comment(file.read()), path)

    def test_quoted_line_has_no_comment_and_single_blanks(self):
        self.assertEqual(without_comment("  a = 1; // one\n  // two\n  b;"), "a = 1; b;")


class TestFolders(unittest.TestCase):
    def test_nearest_parent_with_tests_is_the_test_folder(self):
        programs = Programs.__new__(Programs)
        programs.files_of_suites = {"A": "core/base/files_test.cpp", "B": "desktop/forms/preview_test.cpp"}
        self.assertEqual(programs.test_folder_of("core/base/files.cpp"), "core/base")
        self.assertEqual(programs.test_folder_of("desktop/forms/preview/Form7.cpp"), "desktop/forms")
        self.assertEqual(programs.test_folder_of("desktop/theme/theme.cpp"), "")


class Judgements(unittest.TestCase):
    def judge(self, script, idle_seconds=600):
        with tempfile.TemporaryDirectory() as folder:
            program = os.path.join(folder, "program")
            with open(program, "w", encoding="ascii") as file:
                file.write("#!/bin/sh\n" + script)
            os.chmod(program, stat.S_IRWXU)
            stage = Stage("program", {"Suite.Test": 0.1})
            stage.idle_seconds = idle_seconds
            return stage.passes({"program": program}, folder)

    def test_exit_status_0_passes(self):
        self.assertEqual(self.judge("exit 0"), "passed")

    def test_other_exit_status_or_crash_fails(self):
        self.assertEqual(self.judge("exit 1"), "failed")
        self.assertEqual(self.judge("kill -SEGV $$"), "failed")

    def test_no_output_and_no_processor_time_is_a_limit(self):
        self.assertEqual(self.judge("echo started; sleep 600", idle_seconds=0.2), "limit")

    def test_processor_time_of_a_group_increases(self):
        before = used_by_group(os.getpgrp())
        while used_by_group(os.getpgrp()) == before:
            pass

    def test_program_gets_the_tests_of_its_stage(self):
        self.assertEqual(self.judge('grep -qx -- "--gtest_filter=Suite.Test" "${1#--gtest_flagfile=}"'), "passed")


class Counts(unittest.TestCase):
    def count(self, *outcomes):
        """Counts mutants with these outcomes; the first one is listed as equivalent."""
        loader = importlib.machinery.SourceFileLoader("mutate", SCRIPT)
        mutate = importlib.util.module_from_spec(importlib.util.spec_from_loader("mutate", loader))
        loader.exec_module(mutate)
        mutants = [types.SimpleNamespace(path="a.cpp", before=str(number), after="") for number in range(len(outcomes))]
        with contextlib.redirect_stdout(io.StringIO()):
            return mutate.report(list(zip(mutants, outcomes)), {("a.cpp", "0", ""): "the reason"})

    def test_equivalent_mutants_do_not_count_as_survivors(self):
        counts, percent = self.count("passed", "passed", "failed", "failed", "limit")
        self.assertEqual(counts, {"failed": 2, "limit": 1, "equivalent": 1, "passed": 1})
        self.assertEqual(percent, 75.0)

    def test_killed_mutant_in_the_list_counts_as_killed(self):
        self.assertEqual(self.count("failed")[0]["failed"], 1)


unittest.main()
