#!/usr/bin/env python3
"""Operates the built editor on a virtual display with a window manager, with a real pointer and real keys. Usage:
editor_test.py VARNOTH WALKTHROUGH SAMPLES [TEST...]"""
import os
import sys
import unittest

import controls
from display import corner_while_dragged, wait_for
from session import SessionTest, read
from ui_driver import (ADD, EXTRACT, FATAL_ERROR_STATUS, is_closed_folder, is_text, MAIN, NEW, PREVIEW)


class EditorTest(SessionTest):
    varnoth, walkthrough, samples = map(os.path.abspath, sys.argv[1:4])


class Session(EditorTest):
    def test_whole_session_matches_the_scripted_user(self):
        self.check_session(selected=(4, 5, 6, 8), picked=(20, 30))

    def press_save(self):
        self.click(self.main, controls.SAVE_BUTTON)

    def press_close(self):
        self.click(self.main, controls.CLOSE_MAIN)

    def make_new(self):
        dialog = self.open_dialog(controls.NEW_BUTTON, NEW)
        self.fill_in(dialog, controls.NEW_NAME, "fire")
        self.fill_in(dialog, controls.NEW_WIDTH, "32")
        self.fill_in(dialog, controls.NEW_HEIGHT, "24")
        closed = self.capture(dialog, controls.BELOW_RENDER)
        self.click(dialog, controls.NEW_RENDER)
        self.wait_for_change(dialog, controls.BELOW_RENDER, closed)
        self.display.press("Home", "Down", "Down", "Return")
        self.close_dialog(dialog, controls.NEW_OK)

    def add_frames(self):
        dialog = self.open_dialog(controls.IMPORT_BUTTON, ADD)
        middle, = self.wait_for_lines(dialog, controls.FOLDERS, 1, is_closed_folder)
        self.display.wait_until_still()
        self.click_list(dialog, controls.FOLDERS, middle, times=2)
        lines = self.wait_for_lines(dialog, controls.FILES, 8)
        unchanged = self.capture(dialog, controls.SIZE_QUESTION)
        for line, key in ((0, None), (2, "shift"), (4, "ctrl")):
            before = self.capture(dialog, controls.PICTURE)
            self.click_list(dialog, controls.FILES, lines[line], key=key)
            self.wait_for_change(dialog, controls.PICTURE, before)
        self.assertNotEqual(self.capture(dialog, controls.SIZE_QUESTION), unchanged)
        self.click(dialog, controls.ADD_RESIZE)
        before = self.capture(dialog, controls.TRANSPARENT_COLOUR)
        self.click(dialog, controls.ADD_PICK)
        self.click(dialog, (controls.PICTURE[0] + 20, controls.PICTURE[1] + 30))
        self.wait_for_change(dialog, controls.TRANSPARENT_COLOUR, before)
        self.click(dialog, controls.ADD_OK)
        self.answer_box()
        self.display.wait_until_gone(dialog)

    def move_third_line_up(self):
        lines = self.wait_for_lines(self.main, controls.FRAME_LIST, 3)
        before = self.capture(self.main, controls.FRAME)
        self.click_list(self.main, controls.FRAME_LIST, lines[1])
        self.wait_for_change(self.main, controls.FRAME, before)
        frame, unmoved = self.capture(self.main, controls.FRAME), self.capture(self.main, controls.FRAME_LIST)
        self.click(self.main, controls.UP_ARROW)
        self.wait_for_change(self.main, controls.FRAME_LIST, unmoved)
        self.assertEqual(self.capture(self.main, controls.FRAME), frame)

    def export(self, folder):
        self.click_list(self.main, controls.FRAME_LIST, controls.FRAME_LIST[1] + 8)
        self.display.press("ctrl+a")
        # Selected lines are dark.
        wait_for("all lines to be selected", lambda: not self.capture(self.main, controls.FRAME_LIST).bands(is_text))
        dialog = self.open_dialog(controls.EXPORT_BUTTON, EXTRACT)
        self.fill_in(dialog, controls.EXTRACT_FOLDER, folder)
        for point in (controls.EXTRACT_TGA, controls.EXTRACT_COMPRESSED, controls.EXTRACT_OVERWRITE):
            self.click(dialog, point)
        self.close_dialog(dialog, controls.EXTRACT_OK)

    def play(self):
        left, top, width, height = controls.FRAME
        self.click(self.main, (left + width // 2, top + height // 2), times=2)
        dialog = self.display.wait_for_window(PREVIEW)
        stopped = self.display.wait_until_still()
        self.click(dialog, controls.PLAY)
        for _ in range(3):
            self.wait_for_change(dialog, controls.PLAYED, self.capture(dialog, controls.PLAYED))
        place = self.display.place_of(dialog)
        before = stopped.cut(place[0] + controls.SPEED[0], place[1] + controls.SPEED[1], *controls.SPEED[2:])
        self.click(dialog, controls.FASTER)
        self.wait_for_change(dialog, controls.SPEED, before)
        self.close_dialog(dialog, controls.CLOSE_PREVIEW)


class Start(EditorTest):
    def test_start_loads_no_image_plugins_and_starts_no_pool_threads(self):
        """Neither is needed to show the first window, and both delay it."""
        self.start(self.varnoth)
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
        self.run_walkthrough("--pictures", self.samples, "--select", "explosion_1.bmp", "--select", "explosion_2.bmp",
                             "--save", sprite)
        self.start(self.varnoth)
        self.open(sprite, frames=2)
        self.click(self.main, (310, 90), times=2)
        dialog = self.display.wait_for_window(PREVIEW)
        self.click(dialog, controls.PLAY)
        self.click(dialog, controls.SLOWER, times=14)
        self.assertEqual(len(self.display.windows()), 2)
        self.click(dialog, controls.SLOWER)
        box = self.display.wait_for_window(MAIN, but=[self.main])
        # Neither a click nor a timer event opens another one.
        self.click(dialog, controls.SLOWER, times=3)
        self.display.wait_until_still()
        self.assertEqual(self.display.windows(), {self.main, dialog, box})
        self.assertIsNone(self.editor.poll())
        self.display.xdotool("windowactivate", "--sync", box)
        self.display.press("Return")
        self.wait_for_exit(FATAL_ERROR_STATUS)


class Drag(EditorTest):
    def test_title_drag_moves_the_corner_to_the_pointer(self):
        desktop = self.display.capture()
        self.start(self.varnoth)
        left, top, width, height = self.display.place_of(self.main)
        self.display.point(0, 0)
        self.display.wait_until_still()
        painted = self.display.capture(left, top, width, height)
        for grab, way in (((100, 3), ((700, 500), (640, 41))), ((8, 7), ((301, 204),)), ((7, 8), ((4, 2), (512, 300)))):
            left, top, _, _ = self.display.place_of(self.main)
            self.display.point(left + controls.TITLE[0] + grab[0], top + controls.TITLE[1] + grab[1])
            self.display.xdotool("mousedown", 1)
            for pointer in way:
                self.display.point(*pointer)
                self.wait_for_corner(corner_while_dragged(pointer, grab), grab, pointer)
            self.display.xdotool("mouseup", 1)
            corner = corner_while_dragged(way[-1], grab)
            self.check_painted(corner, painted, desktop)
        self.check_still_after_release(corner)

    def wait_for_corner(self, corner, grab, pointer):
        wait_for(f"the window at {corner}, grabbed at {grab}, the pointer at {pointer}",
                 lambda: self.display.place_of(self.main)[:2] == corner)

    def check_painted(self, corner, painted, desktop):
        """Verifies that the screen shows the window at the corner and the empty desktop elsewhere."""
        self.display.point(0, 0)
        expected = bytearray(desktop.data)
        for y in range(painted.height):
            start = 4 * (desktop.width * (corner[1] + y) + corner[0])
            expected[start:start + 4 * painted.width] = painted.row(y)
        wait_for("the window to be painted at its new position only",
                 lambda: self.display.capture().data == bytes(expected))

    def check_still_after_release(self, corner):
        for pointer in ((600, 350), (900, 700), (corner[0] + 200, corner[1] + 15)):
            self.display.point(*pointer)
        # The editor has handled these moves before it handles the click.
        self.click(self.main, controls.NEW_BUTTON)
        self.display.wait_for_window(NEW)
        self.assertEqual(self.display.place_of(self.main)[:2], corner)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]])
