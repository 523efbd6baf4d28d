#!/usr/bin/env python3
"""Drags the built editor's window by its title on a Wayland compositor, with a real pointer: the compositor has a
window on a virtual display. Usage: wayland_test.py VARNOTH LATE_READER [TEST...]"""
import os
import re
import subprocess
import sys
import unittest

from display import Display, wait_for
from hand import CLOSE_MAIN

VARNOTH, LATE_READER = map(os.path.abspath, sys.argv[1:3])

# The compositor's window is at the left of the display.
SCREEN = 1024, 768
DISPLAY = 1056, 768
BESIDE_THE_SCREEN = 1040, 384

WIDTH, HEIGHT = 575, 477
TITLE_GRAB = (200, 18)

# The compositor draws nothing of its own but a ground of one colour, and the pointer.
GROUND = (32, 64, 128)
SETTINGS = """[core]
idle-time=0
[shell]
panel-position=none
background-color=0xff204080
animation=none
startup-animation=none
close-animation=none
focus-animation=none
locking=false
"""

# More than the pointer covers.
LEAST_PIXELS = 100

MOVE_REQUEST = r"-> xdg_toplevel@\d+\.move\("
LEAVE = r"wl_pointer@\d+\.leave\("


class Wayland(unittest.TestCase):
    def setUp(self):
        self.display = Display(*DISPLAY, window_manager=False)
        self.addCleanup(self.display.close)
        # A pointer that enters the compositor's window later brings its place with it. Of one that is there from the
        # start, the compositor takes the place wrongly at times, and adds every later motion to that.
        self.display.point(*BESIDE_THE_SCREEN)
        settings = os.path.join(self.display.folder, "weston.ini")
        with open(settings, "w", encoding="ascii") as file:
            file.write(SETTINGS)
        self.display.start(["weston", "--backend=x11-backend.so", "--use-pixman", f"--width={SCREEN[0]}",
                            f"--height={SCREEN[1]}", "--socket=wayland-varnoth", "--config=" + settings],
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.ground = wait_for("the compositor's ground", self.find_ground)

    def start(self, **more):
        self.protocol = os.path.join(self.display.folder, "protocol")
        with open(self.protocol, "wb") as protocol:
            self.editor = self.display.start(
                [VARNOTH], stdout=protocol, stderr=protocol,
                more={"QT_QPA_PLATFORM": "wayland", "WAYLAND_DISPLAY": "wayland-varnoth", "WAYLAND_DEBUG": "1",
                      **more})
        self.corner = wait_for("the window", self.find_window)

    def screen(self):
        return self.display.look(0, 0, *SCREEN)

    def find_ground(self):
        """A pixel of the ground, as soon as the ground is there."""
        pixel = self.screen().data[-4:]
        return pixel if (pixel[2], pixel[1], pixel[0]) == GROUND else None

    def find_window(self):
        """Left and top of the one window, when all of it is there."""
        screen = self.screen()
        corner = []
        for counts, across, length in zip(screen.count(self.ground), (screen.height, screen.width), (WIDTH, HEIGHT)):
            covered = [at for at, count in enumerate(counts) if across - count >= LEAST_PIXELS]
            if not covered or covered != list(range(covered[0], covered[0] + length)):
                return None
            corner.append(covered[0])
        return tuple(corner)

    def told(self, pattern):
        """How many lines of the protocol between the editor and the compositor match."""
        with open(self.protocol, encoding="utf-8", errors="replace") as file:
            return sum(bool(re.search(pattern, line)) for line in file)

    def point(self, x, y):
        self.display.point(self.corner[0] + x, self.corner[1] + y)

    def move_pointer_away(self):
        """Beside the window, where there is more room."""
        self.display.point(2 if self.is_at_right() else SCREEN[0] - 24, 2)

    def is_at_right(self):
        return 2 * self.corner[0] + WIDTH > SCREEN[0]

    def painted(self):
        return self.display.look(*self.corner, WIDTH, HEIGHT)

    def wait_for_end(self):
        wait_for("the end of the editor", lambda: self.editor.poll() is not None)
        self.assertEqual(self.editor.returncode, 0)

    def wait_for_corner(self, corner):
        wait_for(f"the window at {corner}", lambda: self.find_window() == corner)
        self.corner = corner

    def test_the_title_drag_asks_the_compositor_which_moves_the_window_until_the_release(self):
        self.start()
        self.move_pointer_away()
        before = self.display.wait_until_still(0, 0, *SCREEN)
        painted = self.painted()
        start = self.corner
        # The compositor has put the window anywhere; it goes where there is room.
        inward = (-1 if self.is_at_right() else 1, -1 if 2 * start[1] + HEIGHT > SCREEN[1] else 1)

        self.point(*TITLE_GRAB)
        self.display.xdotool("mousedown", 1)
        wait_for("the press", lambda: self.told(r"wl_pointer@\d+\.button\(") == 1)
        self.assertEqual(self.told(MOVE_REQUEST), 0)
        leaves = self.told(LEAVE)
        self.point(TITLE_GRAB[0] + 9 * inward[0], TITLE_GRAB[1] + 4 * inward[1])
        # The pointer leaves when the compositor has begun the move. The request is not enough: it is in the protocol as
        # soon as the editor makes it, and what the pointer does before it arrives is still the editor's.
        wait_for("the start of the move", lambda: self.told(LEAVE) > leaves)
        self.assertEqual(self.told(MOVE_REQUEST), 1)
        # From the next motion on, the compositor takes the window along all the way from the press.
        for way in ((60, 30), (41, 75)):
            way = (way[0] * inward[0], way[1] * inward[1])
            self.display.point(start[0] + TITLE_GRAB[0] + way[0], start[1] + TITLE_GRAB[1] + way[1])
            self.wait_for_corner((start[0] + way[0], start[1] + way[1]))
        self.display.xdotool("mouseup", 1)
        self.assertEqual(self.told(MOVE_REQUEST), 1)

        # The pointer is the window's again.
        motions = self.told(r"wl_pointer@\d+\.motion\(")
        self.point(300, 200)
        self.point(330, 240)
        wait_for("the window to hear of the pointer", lambda: self.told(r"wl_pointer@\d+\.motion\(") > motions)
        self.move_pointer_away()
        wait_for("the same window at its new place", lambda: self.painted() == painted)
        self.assertEqual(self.find_window(), self.corner)
        self.assertNotEqual(self.screen(), before)

        self.point(*CLOSE_MAIN)
        self.display.xdotool("click", 1)
        self.wait_for_end()

    def test_the_editor_ends_though_the_thread_that_reads_from_the_compositor_is_late(self):
        self.start(LD_PRELOAD=LATE_READER)
        self.point(*CLOSE_MAIN)
        # The pointer goes on, so that there is something to read while the editor ends.
        self.display.xdotool("click", 1, *["mousemove_relative", "--", -1, 1, "sleep", 0.01] * 50)
        self.wait_for_end()


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
