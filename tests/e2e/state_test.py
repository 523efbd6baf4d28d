#!/usr/bin/env python3
"""Verifies that the built editor keeps no state: it writes nothing below HOME, Qt's settings do not affect it, and
command-line arguments, including those of Qt, have no effect. Usage: state_test.py VARNOTH [TEST...]"""
import os
import sys
import unittest

import controls
from display import wait_for
from material import sprite_bytes
from session import EditorTest
from ui_driver import ADD, EXTRACT, FOLDER, is_text, NEW, OPEN_CHOOSER, PREVIEW

VARNOTH = os.path.abspath(sys.argv[1])

# Settings that Qt's file dialog would read: its initial folder, its view and its side bar.
SETTINGS = """[FileDialog]
history=file:///usr/share
lastVisited=file:///usr/share
shortcuts=file:///usr/include, file:///usr/share
sidebarWidth=333
viewMode=List
"""

# Height of the fields at the bottom of the file chooser, where a cursor blinks.
CHOOSER_FIELDS = 90


class State(EditorTest):
    def setUp(self):
        super().setUp()
        self.empty_home = self.display.make_folder("empty_home")

    def start_at_home(self, *arguments, **more):
        """Starts the editor with the empty HOME and without variables that locate settings."""
        self.start("env", "-u", "XDG_CONFIG_HOME", "-u", "XDG_CACHE_HOME", "-u", "XDG_DATA_HOME", VARNOTH, *arguments,
                   HOME=self.empty_home, **more)

    def end(self):
        self.click(self.main, controls.CLOSE_MAIN)
        self.wait_for_exit()

    def write_sprite(self):
        path = os.path.join(self.display.folder, "two.spr")
        with open(path, "wb") as file:
            file.write(sprite_bytes((16, 16), 2))
        return path

    def below_home(self):
        return sorted(os.path.relpath(os.path.join(folder, name), self.empty_home)
                      for folder, folders, files in os.walk(self.empty_home) for name in folders + files)

    def test_home_stays_empty_after_every_dialog(self):
        sprite = self.write_sprite()
        self.start_at_home()
        self.close_dialog(self.open_dialog(controls.NEW_BUTTON, NEW), controls.NEW_OK)
        self.click(self.main, controls.OPEN_BUTTON)
        self.choose_file(OPEN_CHOOSER, sprite)
        self.display.wait_until_still()
        self.close_dialog(self.open_dialog(controls.IMPORT_BUTTON, ADD), controls.ADD_CANCEL)
        extract = self.open_dialog(controls.EXPORT_BUTTON, EXTRACT)
        self.click(extract, controls.EXTRACT_BROWSE)
        self.close_dialog(self.display.wait_for_window(FOLDER), controls.FOLDER_CANCEL)
        self.close_dialog(extract, controls.EXTRACT_CANCEL)
        self.click(self.main, controls.FRAME[:2], times=2)
        self.close_dialog(self.display.wait_for_window(PREVIEW), controls.CLOSE_PREVIEW)
        self.end()
        self.assertEqual(self.below_home(), [])

    def capture_chooser(self, **more):
        """The place and the pixels of the file chooser in a new process of the editor."""
        self.start_at_home(**more)
        chooser = self.open_dialog(controls.OPEN_BUTTON, OPEN_CHOOSER)
        place = self.display.place_of(chooser)
        part = (0, 0, place[2], place[3] - CHOOSER_FIELDS)
        self.display.point(0, 0)
        wait_for("a painted chooser", lambda: self.capture(chooser, part).bands(is_text))
        self.display.wait_until_still(*place[:2], *part[2:])
        picture = self.capture(chooser, part)
        self.display.press("Escape")
        self.display.wait_until_gone(chooser)
        wait_for("the main window to become active", lambda: self.display.is_active(self.main))
        self.display.wait_until_still()
        self.end()
        return place, picture

    def test_qt_settings_do_not_affect_the_file_chooser_or_change(self):
        plain = self.capture_chooser()
        self.assertEqual(self.below_home(), [])
        for folder in (self.display.make_folder("empty_home", ".config"), self.display.make_folder("system")):
            with open(os.path.join(folder, "QtProject.conf"), "w", encoding="ascii") as file:
                file.write(SETTINGS)
        before = self.below_home()
        self.assertEqual(self.capture_chooser(), plain)
        self.assertEqual(self.capture_chooser(XDG_CONFIG_DIRS=os.path.join(self.display.folder, "system")), plain)
        self.assertEqual(self.below_home(), before)
        with open(os.path.join(self.empty_home, ".config", "QtProject.conf"), encoding="ascii") as file:
            self.assertEqual(file.read(), SETTINGS)

    def test_arguments_have_no_effect(self):
        sprite = self.write_sprite()
        style_sheet = os.path.join(self.display.folder, "red.qss")
        with open(style_sheet, "w", encoding="ascii") as file:
            file.write("* { color: red; background: blue; font-size: 20pt }\n")
        self.start_at_home()
        self.display.point(0, 0)
        wait_for("a painted window", lambda: self.capture(self.main, controls.ALL_OF_MAIN).bands(is_text))
        self.display.wait_until_still()
        plain = self.capture(self.main, controls.ALL_OF_MAIN)
        self.end()
        for arguments in (("-stylesheet", style_sheet), ("-style", "windows"), ("-reverse",),
                          (sprite,), ("--help",)):
            with self.subTest(arguments=arguments):
                self.start_at_home(*arguments)
                self.display.point(0, 0)
                wait_for("the same pixels as without arguments",
                         lambda: self.capture(self.main, controls.ALL_OF_MAIN) == plain)
                self.end()


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
