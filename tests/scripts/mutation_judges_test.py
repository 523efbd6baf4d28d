#!/usr/bin/env python3
"""Holds which files scripts/mutate changes, and how tools/mutation/programs.py judges what a test program does."""
import os
import stat
import sys
import tempfile
import unittest

TOOLS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "tools")
sys.path[:0] = [os.path.join(TOOLS, "mutation"), os.path.join(TOOLS, "shared")]
from core import is_core, is_desktop, source_files  # noqa: E402
from programs import Stage, used_by_group  # noqa: E402


class Files(unittest.TestCase):
    def test_every_source_file_but_main_is_core_or_desktop(self):
        for path in source_files(lambda path: True):
            self.assertEqual(is_core(path) + is_desktop(path), 0 if path == "main.cpp" else 1, path)

    def test_forms_controls_and_platform_qt_are_desktop(self):
        for path in ("workbench/Form1.cpp", "workbench/FormCoordinator.h", "import/Form4.cpp", "controls/parts/Part.cpp",
                     "platform/qt/look.h"):
            self.assertTrue(is_desktop(path), path)
        for path in ("workbench/Module1.cpp", "import/mixpals.cpp", "platform/Bitmap.h"):
            self.assertFalse(is_desktop(path), path)


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

    def test_a_program_that_ends_with_0_passes(self):
        self.assertEqual(self.judge("exit 0"), "passed")

    def test_one_that_ends_otherwise_or_crashes_fails(self):
        self.assertEqual(self.judge("exit 1"), "failed")
        self.assertEqual(self.judge("kill -SEGV $$"), "failed")

    def test_one_that_neither_says_nor_computes_anything_hits_the_limit(self):
        self.assertEqual(self.judge("echo started; sleep 600", idle_seconds=0.2), "limit")

    def test_what_a_group_computes_is_seen(self):
        before = used_by_group(os.getpgrp())
        while used_by_group(os.getpgrp()) == before:
            pass

    def test_it_is_given_the_tests_of_the_stage(self):
        self.assertEqual(self.judge('grep -qx -- "--gtest_filter=Suite.Test" "${1#--gtest_flagfile=}"'), "passed")


unittest.main()
