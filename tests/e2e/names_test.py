#!/usr/bin/env python3
"""Verifies that the built editor imports and exports files and folders whose names are not valid UTF-8. Usage:
names_test.py VARNOTH [TEST...]"""
import os
import sys
import unittest

from display import Display, wait_for
from ui_driver import (ADD, ADD_OK, CLOSE_MAIN, EXPORT_BUTTON, EXTRACT, EXTRACT_BROWSE, EXTRACT_OK, FILES, FOLDER,
                       FOLDER_OK, FOLDERS, IMPORT_BUTTON, is_closed_folder, NEW, NEW_BUTTON, NEW_OK, PICTURE, UiDriver)

VARNOTH = os.path.abspath(sys.argv[1])

ODD_FOLDER, ODD_PICTURE = b"p\xfe", b"a\xff.bmp"

# 2 by 2 pixels of 24 bits.
BMP = bytes.fromhex("424d46000000000000003600000028000000020000000200000001001800000000001000000000000000000000000000"
                    "000000000000" "1020301020300000" "1020301020300000")

# The list in Select Extracting Folder: left, top, width, height.
FOLDER_LIST = (9, 33, 206, 252)


class Names(UiDriver, unittest.TestCase):
    def setUp(self):
        self.display = Display()
        self.addCleanup(self.display.close)
        self.folder = os.path.join(os.fsencode(self.display.make_folder("home", "Pictures")), ODD_FOLDER)
        os.mkdir(self.folder)
        with open(os.path.join(self.folder, ODD_PICTURE), "wb") as file:
            file.write(BMP)
        self.start(VARNOTH)

    def open_odd_folder(self, dialog, folders):
        """Opens the only closed folder with Return."""
        middle, = self.wait_for_lines(dialog, folders, 1, is_closed_folder)
        self.display.wait_until_still()
        self.click(dialog, (folders[0] + 100, middle))
        self.display.press("Return")
        wait_for("the opened folder", lambda: not self.capture(dialog, folders).bands(is_closed_folder))

    def test_import_and_export_in_a_folder_that_is_not_utf8(self):
        self.click(self.main, NEW_BUTTON)
        new = self.display.wait_for_window(NEW)
        self.display.wait_until_still()
        self.click(new, NEW_OK)
        self.display.wait_until_gone(new)

        self.click(self.main, IMPORT_BUTTON)
        add = self.display.wait_for_window(ADD)
        self.open_odd_folder(add, FOLDERS)
        line, = self.wait_for_lines(add, FILES, 1)
        before = self.capture(add, PICTURE)
        self.click(add, (FILES[0] + 100, line))
        self.wait_for_change(add, PICTURE, before)
        self.click(add, ADD_OK)
        self.answer_box()
        self.display.wait_until_gone(add)

        self.click(self.main, EXPORT_BUTTON)
        extract = self.display.wait_for_window(EXTRACT)
        self.display.wait_until_still()
        self.click(extract, EXTRACT_BROWSE)
        folder = self.display.wait_for_window(FOLDER)
        self.open_odd_folder(folder, FOLDER_LIST)
        self.click(folder, FOLDER_OK)
        self.display.wait_until_gone(folder)
        self.click(extract, EXTRACT_OK)
        self.display.wait_until_gone(extract)
        self.assertEqual(sorted(os.listdir(self.folder)), [b"Untitled_0.bmp", ODD_PICTURE])

        self.click(self.main, CLOSE_MAIN)
        wait_for("the editor to exit", lambda: self.editor.poll() is not None)
        with open(self.errors, encoding="utf-8") as errors:
            self.assertEqual(errors.read(), "")
        self.assertEqual(self.editor.returncode, 0)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
