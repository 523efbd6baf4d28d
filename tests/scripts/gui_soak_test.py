#!/usr/bin/env python3
"""Tests how scripts/gui-soak evaluates memory growth, messages and the state of a selection."""
import contextlib
import importlib.machinery
import importlib.util
import io
import os
import types
import unittest

SCRIPT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts", "gui-soak")
loader = importlib.machinery.SourceFileLoader("gui_soak", SCRIPT)
gui_soak = importlib.util.module_from_spec(importlib.util.spec_from_loader("gui_soak", loader))
loader.exec_module(gui_soak)

from answers import Finding, Selection, message_of  # noqa: E402
from material import Picture  # noqa: E402


def samples(**late):
    """Half an hour of equal samples, except for some figures in the last fifth."""
    even = {"allocated": 1000, "anonymous": 2000, "resident": 10000, "open_files": 12}
    return [types.SimpleNamespace(minutes=half / 2, **{**even, **(late if half > 46 else {})}) for half in range(61)]


class Memory(unittest.TestCase):
    def judge(self, **late):
        with contextlib.redirect_stdout(io.StringIO()) as said:
            gui_soak.evaluate_memory(samples(**late))
        return said.getvalue()

    def test_growth_of_2_percent_passes(self):
        self.assertIn("+2.00 %", self.judge(allocated=1020, resident=10200))

    def test_growth_is_returned_in_words(self):
        with contextlib.redirect_stdout(io.StringIO()):
            rows = gui_soak.evaluate_memory(samples(resident=10150))
        self.assertEqual(rows[2], ["resident, KiB", "10,000", "10,150", "+1.50 %"])

    def test_more_growth_is_a_finding(self):
        for late in ({"allocated": 1021}, {"resident": 10210}, {"open_files": 13}):
            with self.assertRaises(Finding):
                self.judge(**late)

    def test_shrinking_and_growing_private_memory_pass(self):
        self.judge(allocated=900, resident=9000, open_files=11, anonymous=3000)


class Messages(unittest.TestCase):
    def test_known_messages_have_a_name(self):
        self.assertEqual(message_of("Select Only 1"), "Select Only 1")
        self.assertEqual(message_of("File: a.bmp Bad Format/Corrupt."), "File: ... Bad Format/Corrupt.")

    def test_unknown_messages_have_no_name(self):
        for text in ("Select Only 1.", "File: a.bmp Bad Format", "Run-time error: Overflow", ""):
            self.assertIsNone(message_of(text))


class Selections(unittest.TestCase):
    def setUp(self):
        self.selection = Selection([Picture("a.bmp", (8, 8), (8, 8)), Picture("b.bmp", None, (9, 9)),
                                    Picture("c.bmp", (300, 8), (300, 8)), Picture("d.bmp", (4, 4), (4, 4))], (8, 8))

    def test_first_invalid_picture_is_reported_and_deselected(self):
        self.assertIsNone(self.selection.click(0))
        self.assertEqual(self.selection.click(3, "shift", 0), "File: b.bmp Bad Format/Corrupt.")
        self.assertEqual(self.selection.selected, {0, 2, 3})
        self.assertEqual(self.selection.validate(), "File: c.bmp With Size Greater Than 256 x 256.")
        self.assertEqual(self.selection.validate(), "All Selected Pictures Must Have Same Size.")
        self.assertIsNone(self.selection.validate())

    def test_frames_with_fewer_pixels_than_the_sprite_not_drawable(self):
        self.selection.click(3)
        self.assertTrue(self.selection.makes_drawable_frames())  # the sprite takes their size
        self.selection.click(0)
        self.selection.click(3, "ctrl")
        self.assertFalse(self.selection.makes_drawable_frames())  # the last one shown is smaller


if __name__ == "__main__":
    unittest.main()
