#!/usr/bin/env python3
"""Starts the installed editor in a chroot as a menu does, by its desktop entry, and checks what a task bar reads from
its window. Must run as root. Usage: installed_test.py ROOT"""
import os
import struct
import subprocess
import sys
import unittest

import controls
from display import Display, wait_for
from ui_driver import MAIN

ROOT = os.path.abspath(sys.argv[1])

ENTRY = "/usr/share/applications/varnoth.desktop"
ICON_SIZES = (16, 24, 32, 48, 64)


def png_size(path):
    with open(path, "rb") as file:
        return struct.unpack(">II", file.read(24)[16:])


class Installed(unittest.TestCase):
    def setUp(self):
        self.display = Display()
        self.addCleanup(self.display.close)
        launch = self.display.start(["chroot", ROOT, "gio", "launch", ENTRY], more={"QT_QPA_PLATFORM": "xcb"})
        self.assertEqual(launch.wait(timeout=60), 0)
        self.main = self.display.wait_for_window(MAIN)

    def property(self, name):
        return subprocess.run(["xprop", "-id", self.main, "-notype", *name], env=self.display.environment, check=True,
                              capture_output=True, text=True, timeout=60).stdout

    def test_menu_entry_starts_the_editor_and_close_box_ends_it(self):
        process = int(self.property(["_NET_WM_PID"]).split("=")[1])
        self.assertEqual(os.readlink(f"/proc/{process}/exe"), os.path.join(ROOT, "usr/bin/varnoth"))
        left, top, _, _ = self.display.place_of(self.main)
        self.display.click(left + controls.CLOSE_MAIN[0], top + controls.CLOSE_MAIN[1])
        self.display.wait_until_gone(self.main)
        wait_for("the editor to exit", lambda: not os.path.exists(f"/proc/{process}"))

    def test_window_names_its_desktop_entry_and_has_all_icons(self):
        self.assertIn('"varnoth"', self.property(["WM_CLASS"]))
        # Width, height and pixels of each icon, one icon after the other.
        words = [int(word) for word in self.property(["32c", "_NET_WM_ICON"]).split("=")[1].split(",")]
        sizes = []
        while words:
            width, height = words[:2]
            pixels = words[2:2 + width * height]
            self.assertEqual(len(pixels), width * height)
            self.assertGreater(len(set(pixels)), 16)
            icon = f"usr/share/icons/hicolor/{width}x{height}/apps/varnoth.png"
            self.assertEqual(png_size(os.path.join(ROOT, icon)), (width, height))
            sizes.append(width)
            words = words[2 + width * height:]
        self.assertEqual(sorted(sizes), list(ICON_SIZES))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
