#!/usr/bin/env python3
"""Verifies that the built editor imports and exports files and folders whose names are not valid UTF-8. Usage:
names_test.py VARNOTH [TEST...]"""
import os
import sys
import unittest

import controls
from display import wait_for
from session import EditorTest
from ui_driver import ADD, EXTRACT, FOLDER, is_closed_folder, NEW

VARNOTH = os.path.abspath(sys.argv[1])

ODD_FOLDER, ODD_PICTURE = b"p\xfe", b"a\xff.bmp"

# 2 by 2 pixels of 24 bits.
BMP = bytes.fromhex("424d46000000000000003600000028000000020000000200000001001800000000001000000000000000000000000000"
                    "000000000000" "1020301020300000" "1020301020300000")


class Names(EditorTest):
    def setUp(self):
        super().setUp()
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
        new = self.open_dialog(controls.NEW_BUTTON, NEW)
        self.close_dialog(new, controls.NEW_OK)

        add = self.open_dialog(controls.IMPORT_BUTTON, ADD)
        self.open_odd_folder(add, controls.FOLDERS)
        line, = self.wait_for_lines(add, controls.FILES, 1)
        before = self.capture(add, controls.PICTURE)
        self.click_list(add, controls.FILES, line)
        self.wait_for_change(add, controls.PICTURE, before)
        self.click(add, controls.ADD_OK)
        self.answer_box()
        self.display.wait_until_gone(add)

        extract = self.open_dialog(controls.EXPORT_BUTTON, EXTRACT)
        self.click(extract, controls.EXTRACT_BROWSE)
        folder = self.display.wait_for_window(FOLDER)
        self.open_odd_folder(folder, controls.FOLDER_LIST)
        self.close_dialog(folder, controls.FOLDER_OK)
        self.close_dialog(extract, controls.EXTRACT_OK)
        self.assertEqual(sorted(os.listdir(self.folder)), [b"Untitled_0.bmp", ODD_PICTURE])

        self.click(self.main, controls.CLOSE_MAIN)
        self.wait_for_exit()


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
