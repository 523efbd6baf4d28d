#!/usr/bin/env python3
"""Makes, saves, opens, reorders, plays and exports a sprite in the built editor with the keyboard alone: the test
neither moves the pointer nor clicks. Usage: keyboard_test.py VARNOTH WALKTHROUGH SAMPLES [TEST...]"""
import os
import shutil
import subprocess
import sys
import unittest

from display import Display, wait_for
from ui_driver import (ADD, BELOW_RENDER, EXTRACT, FILES, FOLDERS, FRAME, FRAME_LIST, is_closed_folder, is_highlight,
                       is_text, NEW, OPEN_CHOOSER, PICTURE, PLAYED, PREVIEW, SAVE_CHOOSER, SIZE_QUESTION, SPEED,
                       TRANSPARENT_COLOUR, UiDriver)

# Left, top, width and height in pixels of their window.
PATH = (16, 44, 361, 18)
PICK = (680, 431, 54, 22)
NEW_TEXTS = {"name": (56, 36, 170, 18), "width": (56, 64, 77, 18), "height": (150, 64, 77, 18)}
OUTPUT_FOLDER = (8, 58, 211, 18)
DEPTH, EXISTING_FILES = (153, 106, 127, 61), (7, 197, 273, 19)

# A pixel of the picture, and the keys that move the picker there from the top left corner.
PICKED = (21, 30)
TO_PICKED = ["shift+Right"] * 2 + ["Right"] + ["shift+Down"] * 3

VARNOTH, WALKTHROUGH, SAMPLES = map(os.path.abspath, sys.argv[1:4])


def read(path):
    with open(path, "rb") as file:
        return file.read()


def contents(folder):
    return {name: read(os.path.join(folder, name)) for name in os.listdir(folder)}


class KeyboardTest(UiDriver, unittest.TestCase):
    def setUp(self):
        self.display = Display()
        self.addCleanup(self.display.close)

    def run_walkthrough(self, *arguments):
        """Runs the scripted user, whose results are the expected ones."""
        subprocess.run([WALKTHROUGH, *arguments], check=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                       env=self.display.environment, timeout=60)

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
            if not self.is_selected(self.main, PATH):
                self.display.press("Tab")
                self.display.wait_until_still()
        self.assertTrue(self.is_selected(self.main, PATH))

    def focus_frame_list(self):
        self.focus_path()
        self.display.press("Tab")
        wait_for("the path to lose the focus", lambda: not self.is_selected(self.main, PATH))

    def test_whole_session_works_without_a_pointer(self):
        pictures = self.display.make_folder("home", "Pictures", "fire")
        for number in range(8):
            shutil.copy(os.path.join(SAMPLES, f"explosion_{number + 4}.bmp"), pictures)
        made, walked = self.display.make_folder("made"), self.display.make_folder("walked")
        sprite, walked_sprite = os.path.join(made, "fire.spr"), os.path.join(walked, "fire.spr")
        exported, walked_export = self.display.make_folder("exported"), self.display.make_folder("walked_export")

        self.start(VARNOTH)
        self.make_new()
        self.add_frames()
        self.display.press("ctrl+s")
        self.choose_file(SAVE_CHOOSER, sprite)
        self.answer_box()
        self.run_walkthrough("--size", "32x24", "--render", "2", "--pictures", pictures,
                  *(word for number in (4, 5, 6) for word in ("--select", f"explosion_{number}.bmp")),
                  "--pick", "{},{}".format(*PICKED), "--choice", "resize", "--save", walked_sprite)
        self.assertEqual(read(sprite), read(walked_sprite))

        self.display.press("ctrl+o")
        self.choose_file(OPEN_CHOOSER, sprite)
        wait_for("the frames of the opened sprite", lambda: self.shows_first_of(3))
        self.move_last_line_up()
        first = read(sprite)
        self.display.press("ctrl+s")
        wait_for("the sprite to be saved", lambda: read(sprite) != first and len(read(sprite)) == len(first))
        self.run_walkthrough("--open", walked_sprite, "--move", "2:up", "--export", walked_export, "--format", "tga",
                  "--compressed", "--if-exists", "overwrite")
        self.run_walkthrough("--open", walked_sprite, "--move", "2:up", "--save", walked_sprite)
        self.assertEqual(read(sprite), read(walked_sprite))

        self.play()
        self.export(exported)
        self.assertGreater(len(contents(walked_export)), 1)
        self.assertEqual(contents(exported), contents(walked_export))

        self.display.press("ctrl+q")
        wait_for("the editor to exit", lambda: self.editor.poll() is not None)
        self.assertEqual(read(self.errors).decode(), "")
        self.assertEqual(self.editor.returncode, 0)

    def test_letter_keys_work_on_a_russian_layout(self):
        subprocess.run(["setxkbmap", "-layout", "ru,us"], check=True, env=self.display.environment)
        key_n, key_r = 57, 27
        self.start(VARNOTH)
        self.display.press(f"ctrl+{key_n}")
        dialog = self.display.wait_for_window(NEW)
        self.display.wait_until_still()
        self.press_and_see(dialog, BELOW_RENDER, f"alt+{key_r}")

    def make_new(self):
        self.display.press("ctrl+n")
        dialog = self.display.wait_for_window(NEW)
        self.display.wait_until_still()
        for field, text in (("name", "fire"), ("width", "32"), ("height", "24")):
            self.replace_text(dialog, NEW_TEXTS[field], text)
            self.display.press("Tab")
        closed = self.capture(dialog, BELOW_RENDER)
        self.press_and_see(dialog, BELOW_RENDER, "alt+r")
        self.display.press("Home", "Down", "Down", "Return")
        wait_for("the list to close", lambda: self.capture(dialog, BELOW_RENDER) == closed)
        self.display.press("Return")
        self.display.wait_until_gone(dialog)

    def add_frames(self):
        self.display.press("ctrl+i")
        dialog = self.display.wait_for_window(ADD)
        self.wait_for_lines(dialog, FOLDERS, 1, is_closed_folder)
        self.display.wait_until_still()
        # Tab order: drives, folders, file types, files.
        self.display.press("Tab", "End", "Return")
        self.wait_for_lines(dialog, FILES, 8)
        unchanged = self.capture(dialog, SIZE_QUESTION)
        self.press_and_see(dialog, PICTURE, "Tab", "Tab", "Home")
        for _ in range(2):
            self.press_and_see(dialog, PICTURE, "shift+Down")
        self.assertNotEqual(self.capture(dialog, SIZE_QUESTION), unchanged)
        self.press_and_see(dialog, SIZE_QUESTION, "alt+r")
        self.press_and_see(dialog, PICK, "alt+p")
        self.press_and_see(dialog, TRANSPARENT_COLOUR, *TO_PICKED)
        left, top, _, _ = self.display.place_of(dialog)
        place = (left + PICTURE[0] + PICKED[0], top + PICTURE[1] + PICKED[1])
        wait_for("the pointer at the picked pixel", lambda: self.pointer() == place)
        self.press_and_see(dialog, PICK, "Return")
        self.assertTrue(self.display.is_active(dialog))
        self.display.press("Return")
        self.answer_box()
        self.display.wait_until_gone(dialog)

    def move_last_line_up(self):
        self.focus_frame_list()
        self.press_and_see(self.main, FRAME, "End")
        frame = self.capture(self.main, FRAME)
        self.press_and_see(self.main, FRAME_LIST, "alt+Up")
        self.assertEqual(self.capture(self.main, FRAME), frame)

    def play(self):
        self.focus_frame_list()
        self.display.press("Return")
        dialog = self.display.wait_for_window(PREVIEW)
        self.display.wait_until_still()
        for key in ("Right", "Left"):
            self.press_and_see(dialog, SPEED, key)
        self.display.press("space")
        for _ in range(3):
            self.wait_for_change(dialog, PLAYED, self.capture(dialog, PLAYED))
        self.display.press("space")
        self.display.wait_until_still()
        self.display.press("Escape")
        self.display.wait_until_gone(dialog)

    def export(self, folder):
        self.focus_frame_list()
        self.display.press("ctrl+a")
        # Selected lines are dark.
        wait_for("all lines to be selected", lambda: not self.capture(self.main, FRAME_LIST).bands(is_text))
        # Ctrl+E must also work while the path box has the focus.
        self.focus_path()
        self.display.press("ctrl+e")
        dialog = self.display.wait_for_window(EXTRACT)
        self.display.wait_until_still()
        self.display.type("p")
        self.replace_text(dialog, OUTPUT_FOLDER, folder)
        for place, key in ((DEPTH, "alt+t"), (DEPTH, "alt+c"), (EXISTING_FILES, "alt+o")):
            self.press_and_see(dialog, place, key)
        self.display.press("Return")
        self.display.wait_until_gone(dialog)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]])
