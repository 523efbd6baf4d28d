#!/usr/bin/env python3
"""Makes, saves, opens, reorders, plays and exports a sprite in the built editor with the keyboard alone: the test
neither moves the pointer nor clicks. Usage: keyboard_test.py VARNOTH WALKTHROUGH SAMPLES [TEST...]"""
import os
import subprocess
import sys
import unittest

import controls
from display import wait_for
from session import SessionTest
from ui_driver import ADD, EXTRACT, is_closed_folder, is_highlight, is_text, NEW, PREVIEW

# A pixel of the picture, and the keys that move the picker there from the top left corner.
PICKED = (21, 30)
TO_PICKED = ["shift+Right"] * 2 + ["Right"] + ["shift+Down"] * 3


class KeyboardTest(SessionTest):
    varnoth, walkthrough, samples = map(os.path.abspath, sys.argv[1:4])

    def press_and_see(self, window, place, *keys):
        """Presses keys and waits until the area changes."""
        before = self.capture(window, place)
        self.display.press(*keys)
        self.wait_for_change(window, place, before)

    def pointer(self):
        words = dict(line.split("=") for line in self.display.xdotool("getmouselocation", "--shell").split())
        return int(words["X"]), int(words["Y"])

    def is_selected(self, window, place):
        return bool(self.capture(window, place).bands(is_highlight))

    def replace_text(self, window, place, text):
        """Replaces the text of the focused field."""
        self.display.press("ctrl+a")
        wait_for("a selected text", lambda: self.is_selected(window, place))
        self.display.type(text)
        wait_for("a typed text", lambda: not self.is_selected(window, place))

    def focus_path(self):
        """Tab alternates between the path, which it selects, and the frame list."""
        wait_for("the main window to become active", lambda: self.display.is_active(self.main))
        self.display.wait_until_still()
        for _ in range(2):
            if not self.is_selected(self.main, controls.PATH):
                self.display.press("Tab")
                self.display.wait_until_still()
        self.assertTrue(self.is_selected(self.main, controls.PATH))

    def focus_frame_list(self):
        self.focus_path()
        self.display.press("Tab")
        wait_for("the path to lose the focus", lambda: not self.is_selected(self.main, controls.PATH))

    def test_whole_session_works_without_a_pointer(self):
        self.check_session(selected=(4, 5, 6), picked=PICKED)

    def test_letter_keys_work_on_a_russian_layout(self):
        subprocess.run(["setxkbmap", "-layout", "ru,us"], check=True, env=self.display.environment)
        key_n, key_r = 57, 27
        self.start(self.varnoth)
        self.display.press(f"ctrl+{key_n}")
        dialog = self.display.wait_for_window(NEW)
        self.display.wait_until_still()
        self.press_and_see(dialog, controls.BELOW_RENDER, f"alt+{key_r}")

    def press_save(self):
        self.display.press("ctrl+s")

    def press_open(self):
        self.display.press("ctrl+o")

    def press_close(self):
        self.display.press("ctrl+q")

    def make_new(self):
        self.display.press("ctrl+n")
        dialog = self.display.wait_for_window(NEW)
        self.display.wait_until_still()
        for place, text in zip(controls.NEW_TEXTS, ("fire", "32", "24")):
            self.replace_text(dialog, place, text)
            self.display.press("Tab")
        closed = self.capture(dialog, controls.BELOW_RENDER)
        self.press_and_see(dialog, controls.BELOW_RENDER, "alt+r")
        self.display.press("Home", "Down", "Down", "Return")
        wait_for("the list to close", lambda: self.capture(dialog, controls.BELOW_RENDER) == closed)
        self.display.press("Return")
        self.display.wait_until_gone(dialog)

    def add_frames(self):
        self.display.press("ctrl+i")
        dialog = self.display.wait_for_window(ADD)
        self.wait_for_lines(dialog, controls.FOLDERS, 1, is_closed_folder)
        self.display.wait_until_still()
        # Tab order: drives, folders, file types, files.
        self.display.press("Tab", "End", "Return")
        self.wait_for_lines(dialog, controls.FILES, 8)
        unchanged = self.capture(dialog, controls.SIZE_QUESTION)
        self.press_and_see(dialog, controls.PICTURE, "Tab", "Tab", "Home")
        for _ in range(2):
            self.press_and_see(dialog, controls.PICTURE, "shift+Down")
        self.assertNotEqual(self.capture(dialog, controls.SIZE_QUESTION), unchanged)
        self.press_and_see(dialog, controls.SIZE_QUESTION, "alt+r")
        self.press_and_see(dialog, controls.PICK, "alt+p")
        self.press_and_see(dialog, controls.TRANSPARENT_COLOUR, *TO_PICKED)
        left, top, _, _ = self.display.place_of(dialog)
        place = (left + controls.PICTURE[0] + PICKED[0], top + controls.PICTURE[1] + PICKED[1])
        wait_for("the pointer at the picked pixel", lambda: self.pointer() == place)
        self.press_and_see(dialog, controls.PICK, "Return")
        self.assertTrue(self.display.is_active(dialog))
        self.display.press("Return")
        self.answer_box()
        self.display.wait_until_gone(dialog)

    def move_third_line_up(self):
        self.focus_frame_list()
        self.press_and_see(self.main, controls.FRAME, "End")
        frame = self.capture(self.main, controls.FRAME)
        self.press_and_see(self.main, controls.FRAME_LIST, "alt+Up")
        self.assertEqual(self.capture(self.main, controls.FRAME), frame)

    def play(self):
        self.focus_frame_list()
        self.display.press("Return")
        dialog = self.display.wait_for_window(PREVIEW)
        self.display.wait_until_still()
        for key in ("Right", "Left"):
            self.press_and_see(dialog, controls.SPEED, key)
        self.display.press("space")
        for _ in range(3):
            self.wait_for_change(dialog, controls.PLAYED, self.capture(dialog, controls.PLAYED))
        self.display.press("space")
        self.display.wait_until_still()
        self.display.press("Escape")
        self.display.wait_until_gone(dialog)

    def export(self, folder):
        self.focus_frame_list()
        self.display.press("ctrl+a")
        # Selected lines are dark.
        wait_for("all lines to be selected", lambda: not self.capture(self.main, controls.FRAME_LIST).bands(is_text))
        # Ctrl+E must also work while the path box has the focus.
        self.focus_path()
        self.display.press("ctrl+e")
        dialog = self.display.wait_for_window(EXTRACT)
        self.display.wait_until_still()
        self.display.type("p")
        self.replace_text(dialog, controls.OUTPUT_FOLDER, folder)
        for place, key in ((controls.DEPTH, "alt+t"), (controls.DEPTH, "alt+c"), (controls.EXISTING_FILES, "alt+o")):
            self.press_and_see(dialog, place, key)
        self.display.press("Return")
        self.display.wait_until_gone(dialog)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]])
