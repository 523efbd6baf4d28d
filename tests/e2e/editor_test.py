#!/usr/bin/env python3
"""Operates the built editor on a virtual display with a window manager, with a real pointer and real keys. Usage:
editor_test.py VARNOTH WALKTHROUGH SAMPLES [TEST...]"""
import os
import shutil
import subprocess
import sys
import unittest

from display import Display, corner_while_dragged, wait_for
from ui_driver import (ADD, ADD_OK, ADD_PICK, ADD_RESIZE, BELOW_RENDER, CLOSE_MAIN, CLOSE_PREVIEW, EXPORT_BUTTON,
                       EXTRACT, EXTRACT_COMPRESSED, EXTRACT_FOLDER, EXTRACT_OK, EXTRACT_OVERWRITE, EXTRACT_TGA, FASTER,
                       FATAL_ERROR_LINE, FATAL_ERROR_STATUS, FILES, FOLDERS, FRAME, FRAME_LIST, IMPORT_BUTTON,
                       is_closed_folder, is_text, MAIN, NEW, NEW_BUTTON, NEW_HEIGHT, NEW_NAME, NEW_OK, NEW_RENDER,
                       NEW_WIDTH, PICTURE, PLAY, PLAYED, PREVIEW, SAVE_BUTTON, SAVE_CHOOSER, SIZE_QUESTION, SLOWER,
                       SPEED, TITLE, TRANSPARENT_COLOUR, UiDriver, UP_ARROW)

VARNOTH, WALKTHROUGH, SAMPLES = map(os.path.abspath, sys.argv[1:4])


def read(path):
    with open(path, "rb") as file:
        return file.read()


def contents(folder):
    return {name: read(os.path.join(folder, name)) for name in os.listdir(folder)}


class EditorTest(UiDriver, unittest.TestCase):
    def setUp(self):
        self.display = Display()
        self.addCleanup(self.display.close)
        self.desktop = self.display.capture()

    def wait_for_exit(self, status):
        wait_for("the end of the editor", lambda: self.editor.poll() is not None)
        errors = FATAL_ERROR_LINE if status == FATAL_ERROR_STATUS else ""
        self.assertRegex(read(self.errors).decode(), rf"\A{errors}\Z")
        self.assertEqual(self.editor.returncode, status)

    def run_walkthrough(self, *arguments):
        """Runs the scripted user, whose results are the expected ones."""
        subprocess.run([WALKTHROUGH, *arguments], check=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                       env=self.display.environment, timeout=60)


class Session(EditorTest):
    def test_whole_session_matches_the_scripted_user(self):
        pictures = self.display.make_folder("home", "Pictures", "fire")
        for number in range(8):
            shutil.copy(os.path.join(SAMPLES, f"explosion_{number + 4}.bmp"), pictures)
        made, walked = self.display.make_folder("made"), self.display.make_folder("walked")
        sprite, walked_sprite = os.path.join(made, "fire.spr"), os.path.join(walked, "fire.spr")
        exported, walked_export = self.display.make_folder("exported"), self.display.make_folder("walked_export")

        self.start(VARNOTH)
        self.make_new()
        self.add_frames()
        self.click(self.main, SAVE_BUTTON)
        self.choose_file(SAVE_CHOOSER, sprite)
        self.answer_box()
        self.run_walkthrough("--size", "32x24", "--render", "2", "--pictures", pictures,
                  *(word for number in (4, 5, 6, 8) for word in ("--select", f"explosion_{number}.bmp")),
                  "--pick", "20,30", "--choice", "resize", "--save", walked_sprite)
        self.assertEqual(read(sprite), read(walked_sprite))

        self.open(sprite, frames=4)
        self.move_third_line_up()
        first = read(sprite)
        self.click(self.main, SAVE_BUTTON)
        wait_for("the sprite to be saved", lambda: read(sprite) != first and len(read(sprite)) == len(first))
        self.run_walkthrough("--open", walked_sprite, "--move", "2:up", "--export", walked_export, "--format", "tga",
                  "--compressed", "--if-exists", "overwrite")
        self.run_walkthrough("--open", walked_sprite, "--move", "2:up", "--save", walked_sprite)
        self.assertEqual(read(sprite), read(walked_sprite))

        self.export(exported)
        self.assertGreater(len(contents(walked_export)), 1)
        self.assertEqual(contents(exported), contents(walked_export))

        self.play()
        self.click(self.main, CLOSE_MAIN)
        self.wait_for_exit(0)

    def make_new(self):
        self.click(self.main, NEW_BUTTON)
        dialog = self.display.wait_for_window(NEW)
        self.display.wait_until_still()
        self.fill_in(dialog, NEW_NAME, "fire")
        self.fill_in(dialog, NEW_WIDTH, "32")
        self.fill_in(dialog, NEW_HEIGHT, "24")
        closed = self.capture(dialog, BELOW_RENDER)
        self.click(dialog, NEW_RENDER)
        self.wait_for_change(dialog, BELOW_RENDER, closed)
        self.display.press("Home", "Down", "Down", "Return")
        self.click(dialog, NEW_OK)
        self.display.wait_until_gone(dialog)

    def add_frames(self):
        self.click(self.main, IMPORT_BUTTON)
        dialog = self.display.wait_for_window(ADD)
        middle, = self.wait_for_lines(dialog, FOLDERS, 1, is_closed_folder)
        self.display.wait_until_still()
        self.click(dialog, (FOLDERS[0] + 100, middle), times=2)
        lines = self.wait_for_lines(dialog, FILES, 8)
        unchanged = self.capture(dialog, SIZE_QUESTION)
        for line, key in ((0, None), (2, "shift"), (4, "ctrl")):
            before = self.capture(dialog, PICTURE)
            self.click(dialog, (FILES[0] + 100, lines[line]), key=key)
            self.wait_for_change(dialog, PICTURE, before)
        self.assertNotEqual(self.capture(dialog, SIZE_QUESTION), unchanged)
        self.click(dialog, ADD_RESIZE)
        before = self.capture(dialog, TRANSPARENT_COLOUR)
        self.click(dialog, ADD_PICK)
        self.click(dialog, (PICTURE[0] + 20, PICTURE[1] + 30))
        self.wait_for_change(dialog, TRANSPARENT_COLOUR, before)
        self.click(dialog, ADD_OK)
        self.answer_box()
        self.display.wait_until_gone(dialog)

    def move_third_line_up(self):
        lines = self.wait_for_lines(self.main, FRAME_LIST, 3)
        before = self.capture(self.main, FRAME)
        self.click(self.main, (FRAME_LIST[0] + 100, lines[1]))
        self.wait_for_change(self.main, FRAME, before)
        frame, unmoved = self.capture(self.main, FRAME), self.capture(self.main, FRAME_LIST)
        self.click(self.main, UP_ARROW)
        self.wait_for_change(self.main, FRAME_LIST, unmoved)
        self.assertEqual(self.capture(self.main, FRAME), frame)

    def export(self, folder):
        self.click(self.main, (FRAME_LIST[0] + 100, FRAME_LIST[1] + 8))
        self.display.press("ctrl+a")
        # Selected lines are dark.
        wait_for("all lines to be selected", lambda: not self.capture(self.main, FRAME_LIST).bands(is_text))
        self.click(self.main, EXPORT_BUTTON)
        dialog = self.display.wait_for_window(EXTRACT)
        self.fill_in(dialog, EXTRACT_FOLDER, folder)
        for point in (EXTRACT_TGA, EXTRACT_COMPRESSED, EXTRACT_OVERWRITE, EXTRACT_OK):
            self.click(dialog, point)
        self.display.wait_until_gone(dialog)

    def play(self):
        left, top, width, height = FRAME
        self.click(self.main, (left + width // 2, top + height // 2), times=2)
        dialog = self.display.wait_for_window(PREVIEW)
        stopped = self.display.wait_until_still()
        self.click(dialog, PLAY)
        for _ in range(3):
            self.wait_for_change(dialog, PLAYED, self.capture(dialog, PLAYED))
        place = self.display.place_of(dialog)
        before = stopped.cut(place[0] + SPEED[0], place[1] + SPEED[1], *SPEED[2:])
        self.click(dialog, FASTER)
        self.wait_for_change(dialog, SPEED, before)
        self.click(dialog, CLOSE_PREVIEW)
        self.display.wait_until_gone(dialog)


class Start(EditorTest):
    def test_start_loads_no_image_plugins_and_starts_no_pool_threads(self):
        """Neither is needed to show the first window, and both delay it."""
        self.start(VARNOTH)
        self.display.wait_until_still()
        process = f"/proc/{self.editor.pid}"
        loaded = read(f"{process}/maps").decode()
        self.assertIn("/platforms/", loaded)
        self.assertNotIn("/imageformats/", loaded)
        threads = [read(f"{process}/task/{thread}/comm").decode() for thread in os.listdir(f"{process}/task")]
        self.assertEqual([name for name in threads if name.startswith("Thread (pooled")], [])


class FatalError(EditorTest):
    def test_speed_0_shows_one_box_and_exits_with_70(self):
        sprite = os.path.join(self.display.folder, "two.spr")
        self.run_walkthrough("--pictures", SAMPLES, "--select", "explosion_1.bmp", "--select", "explosion_2.bmp",
                             "--save", sprite)
        self.start(VARNOTH)
        self.open(sprite, frames=2)
        self.click(self.main, (310, 90), times=2)
        dialog = self.display.wait_for_window(PREVIEW)
        self.click(dialog, PLAY)
        self.click(dialog, SLOWER, times=14)
        self.assertEqual(len(self.display.windows()), 2)
        self.click(dialog, SLOWER)
        box = self.display.wait_for_window(MAIN, but=[self.main])
        # Neither a click nor a timer event opens another one.
        self.click(dialog, SLOWER, times=3)
        self.display.wait_until_still()
        self.assertEqual(self.display.windows(), {self.main, dialog, box})
        self.assertIsNone(self.editor.poll())
        self.display.xdotool("windowactivate", "--sync", box)
        self.display.press("Return")
        self.wait_for_exit(FATAL_ERROR_STATUS)


class Drag(EditorTest):
    def test_title_drag_moves_the_corner_to_the_pointer(self):
        self.start(VARNOTH)
        left, top, width, height = self.display.place_of(self.main)
        self.display.point(0, 0)
        self.display.wait_until_still()
        painted = self.display.capture(left, top, width, height)
        for grab, way in (((100, 3), ((700, 500), (640, 41))), ((8, 7), ((301, 204),)), ((7, 8), ((4, 2), (512, 300)))):
            left, top, _, _ = self.display.place_of(self.main)
            self.display.point(left + TITLE[0] + grab[0], top + TITLE[1] + grab[1])
            self.display.xdotool("mousedown", 1)
            for pointer in way:
                self.display.point(*pointer)
                self.wait_for_corner(corner_while_dragged(pointer, grab), grab, pointer)
            self.display.xdotool("mouseup", 1)
            corner = corner_while_dragged(way[-1], grab)
            self.check_painted(corner, painted)
        self.check_still_after_release(corner)

    def wait_for_corner(self, corner, grab, pointer):
        wait_for(f"the window at {corner}, grabbed at {grab}, the pointer at {pointer}",
                 lambda: self.display.place_of(self.main)[:2] == corner)

    def check_painted(self, corner, painted):
        """Verifies that the screen shows the window at the corner and the empty desktop elsewhere."""
        self.display.point(0, 0)
        expected = bytearray(self.desktop.data)
        for y in range(painted.height):
            start = 4 * (self.desktop.width * (corner[1] + y) + corner[0])
            expected[start:start + 4 * painted.width] = painted.row(y)
        wait_for("the window to be painted at its new position only",
                 lambda: self.display.capture().data == bytes(expected))

    def check_still_after_release(self, corner):
        for pointer in ((600, 350), (900, 700), (corner[0] + 200, corner[1] + 15)):
            self.display.point(*pointer)
        # The editor has handled these moves before it handles the click.
        self.click(self.main, NEW_BUTTON)
        self.display.wait_for_window(NEW)
        self.assertEqual(self.display.place_of(self.main)[:2], corner)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]])
