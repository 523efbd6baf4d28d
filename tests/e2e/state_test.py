#!/usr/bin/env python3
"""The built editor keeps no state: it leaves nothing below an empty HOME, no settings of Qt's own reach it, and the
arguments that Qt knows have no effect. Usage: state_test.py VARNOTH [TEST...]"""
import os
import sys
import unittest

from display import Display, wait_for
from hand import (ADD, ADD_CANCEL, CLOSE_MAIN, CLOSE_PREVIEW, EXPORT_BUTTON, EXTRACT, EXTRACT_BROWSE, EXTRACT_CANCEL,
                  FOLDER, FOLDER_CANCEL, FRAME, Hand, IMPORT_BUTTON, is_text, NEW, NEW_BUTTON, NEW_OK, OPEN_BUTTON,
                  OPEN_CHOOSER, PREVIEW)
from material import sprite_bytes

VARNOTH = os.path.abspath(sys.argv[1])

# What Qt's file dialog would take from a file of settings: the folder it starts in, its view, its side bar.
SETTINGS = """[FileDialog]
history=file:///usr/share
lastVisited=file:///usr/share
shortcuts=file:///usr/include, file:///usr/share
sidebarWidth=333
viewMode=List
"""

ALL_OF_MAIN = (0, 0, 575, 477)

# The height of the rows at the foot of the file chooser. A cursor blinks there.
CHOOSER_FIELDS = 90


class State(Hand, unittest.TestCase):
    def setUp(self):
        self.display = Display()
        self.addCleanup(self.display.close)
        self.empty_home = self.display.make_folder("empty_home")

    def start_at_home(self, *arguments, **more):
        """Starts the editor with the empty HOME and nothing else that tells where settings are."""
        self.start("env", "-u", "XDG_CONFIG_HOME", "-u", "XDG_CACHE_HOME", "-u", "XDG_DATA_HOME", VARNOTH, *arguments,
                   HOME=self.empty_home, **more)

    def end(self):
        self.click(self.main, CLOSE_MAIN)
        wait_for("the end of the editor", lambda: self.editor.poll() is not None)
        with open(self.errors, encoding="utf-8") as errors:
            self.assertEqual(errors.read(), "")
        self.assertEqual(self.editor.returncode, 0)

    def write_sprite(self):
        path = os.path.join(self.display.folder, "two.spr")
        with open(path, "wb") as file:
            file.write(sprite_bytes((16, 16), 2))
        return path

    def below_home(self):
        return sorted(os.path.relpath(os.path.join(folder, name), self.empty_home)
                      for folder, folders, files in os.walk(self.empty_home) for name in folders + files)

    def dialog(self, title, open_it):
        open_it()
        window = self.display.wait_for_window(title)
        self.display.wait_until_still()
        return window

    def close_dialog(self, window, point):
        self.click(window, point)
        self.display.wait_until_gone(window)

    def test_an_empty_home_is_empty_after_every_dialog(self):
        sprite = self.write_sprite()
        self.start_at_home()
        self.close_dialog(self.dialog(NEW, lambda: self.click(self.main, NEW_BUTTON)), NEW_OK)
        self.click(self.main, OPEN_BUTTON)
        self.choose_file(OPEN_CHOOSER, sprite)
        self.display.wait_until_still()
        self.close_dialog(self.dialog(ADD, lambda: self.click(self.main, IMPORT_BUTTON)), ADD_CANCEL)
        extract = self.dialog(EXTRACT, lambda: self.click(self.main, EXPORT_BUTTON))
        self.close_dialog(self.dialog(FOLDER, lambda: self.click(extract, EXTRACT_BROWSE)), FOLDER_CANCEL)
        self.close_dialog(extract, EXTRACT_CANCEL)
        preview = self.dialog(PREVIEW, lambda: self.click(self.main, FRAME[:2], times=2))
        self.close_dialog(preview, CLOSE_PREVIEW)
        self.end()
        self.assertEqual(self.below_home(), [])

    def look_at_chooser(self, **more):
        """The place and the look of the file chooser of an editor of its own."""
        self.start_at_home(**more)
        chooser = self.dialog(OPEN_CHOOSER, lambda: self.click(self.main, OPEN_BUTTON))
        place = self.display.place_of(chooser)
        part = (0, 0, place[2], place[3] - CHOOSER_FIELDS)
        self.display.point(0, 0)
        wait_for("a painted chooser", lambda: self.look(chooser, part).bands(is_text))
        self.display.wait_until_still(*place[:2], *part[2:])
        picture = self.look(chooser, part)
        self.display.press("Escape")
        self.display.wait_until_gone(chooser)
        wait_for("the main window to become active", lambda: self.display.is_active(self.main))
        self.display.wait_until_still()
        self.end()
        return place, picture

    def test_qt_settings_neither_reach_the_file_chooser_nor_change(self):
        plain = self.look_at_chooser()
        self.assertEqual(self.below_home(), [])
        for folder in (self.display.make_folder("empty_home", ".config"), self.display.make_folder("system")):
            with open(os.path.join(folder, "QtProject.conf"), "w", encoding="ascii") as file:
                file.write(SETTINGS)
        before = self.below_home()
        self.assertEqual(self.look_at_chooser(), plain)
        self.assertEqual(self.look_at_chooser(XDG_CONFIG_DIRS=os.path.join(self.display.folder, "system")), plain)
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
        wait_for("a painted window", lambda: self.look(self.main, ALL_OF_MAIN).bands(is_text))
        self.display.wait_until_still()
        plain = self.look(self.main, ALL_OF_MAIN)
        self.end()
        for arguments in (("-stylesheet", style_sheet), ("-style", "windows"), ("-reverse",),
                          (sprite,), ("--help",)):
            with self.subTest(arguments=arguments):
                self.start_at_home(*arguments)
                self.display.point(0, 0)
                wait_for("the look without arguments", lambda: self.look(self.main, ALL_OF_MAIN) == plain)
                self.end()


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
