#!/usr/bin/env python3
"""Drags the built editor's window by its title on a Wayland compositor, with a real pointer. The compositor runs in a
window on a virtual display. Usage: wayland_test.py VARNOTH LATE_READER [TEST...]"""
import os
import re
import subprocess
import sys
import unittest

import controls
from display import Display, wait_for

VARNOTH, LATE_READER = map(os.path.abspath, sys.argv[1:3])

# The compositor's window is at the left edge of the display.
SCREEN = 1024, 768
DISPLAY = 1056, 768
BESIDE_THE_SCREEN = 1040, 384

WIDTH, HEIGHT = controls.MAIN_WINDOW.size
TITLE_GRAB = (200, 18)

# The compositor draws only a background of one colour and the pointer.
BACKGROUND = (32, 64, 128)
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

# More pixels than the pointer covers.
LEAST_PIXELS = 100

# Newer versions of the client library write # before the number of an object, older ones @.
MOVE_REQUEST = r"-> xdg_toplevel[@#]\d+\.move\("
LEAVE = r"wl_pointer[@#]\d+\.leave\("
MOTION = r"wl_pointer[@#]\d+\.motion\("


class Wayland(unittest.TestCase):
    def setUp(self):
        self.display = Display(*DISPLAY, window_manager=False)
        self.addCleanup(self.display.close)
        # If the pointer is in the compositor's window from the start, the compositor sometimes assumes a wrong position
        # and adds all later motions to it. A pointer that enters the window later reports its position.
        self.display.point(*BESIDE_THE_SCREEN)
        settings = os.path.join(self.display.folder, "weston.ini")
        with open(settings, "w", encoding="ascii") as file:
            file.write(SETTINGS)
        self.display.start(["weston", "--backend=x11-backend.so", "--use-pixman", f"--width={SCREEN[0]}",
                            f"--height={SCREEN[1]}", "--socket=wayland-varnoth", "--config=" + settings],
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.background = wait_for("the compositor's background", self.find_background)

    def start(self, **more):
        self.protocol = os.path.join(self.display.folder, "protocol")
        with open(self.protocol, "wb") as protocol:
            self.editor = self.display.start(
                [VARNOTH], stdout=protocol, stderr=protocol,
                more={"QT_QPA_PLATFORM": "wayland", "WAYLAND_DISPLAY": "wayland-varnoth", "WAYLAND_DEBUG": "1",
                      **more})
        self.corner = wait_for("the window", self.find_window)

    def screen(self):
        return self.display.capture(0, 0, *SCREEN)

    def find_background(self):
        """A pixel of the background, as soon as it has been painted."""
        pixel = self.screen().data[-4:]
        return pixel if (pixel[2], pixel[1], pixel[0]) == BACKGROUND else None

    def find_window(self):
        """Left and top of the window, as soon as all of it is visible."""
        screen = self.screen()
        corner = []
        in_columns, in_rows = screen.count(self.background)
        for counts, across, length in ((in_columns, screen.height, WIDTH), (in_rows, screen.width, HEIGHT)):
            covered = [at for at, count in enumerate(counts) if across - count >= LEAST_PIXELS]
            if not covered or covered != list(range(covered[0], covered[0] + length)):
                return None
            corner.append(covered[0])
        return tuple(corner)

    def count_in_protocol(self, pattern):
        """The number of matching lines in the protocol between the editor and the compositor."""
        with open(self.protocol, encoding="utf-8", errors="replace") as file:
            return sum(bool(re.search(pattern, line)) for line in file)

    def point(self, x, y):
        self.display.point(self.corner[0] + x, self.corner[1] + y)

    def move_pointer_away(self):
        """Moves the pointer next to the window, to the wider side."""
        self.display.point(2 if self.is_at_right() else SCREEN[0] - 24, 2)

    def is_at_right(self):
        return 2 * self.corner[0] + WIDTH > SCREEN[0]

    def painted(self):
        return self.display.capture(*self.corner, WIDTH, HEIGHT)

    def wait_for_end(self):
        wait_for("the editor to exit", lambda: self.editor.poll() is not None)
        self.assertEqual(self.editor.returncode, 0)

    def wait_for_corner(self, corner):
        wait_for(f"the window at {corner}", lambda: self.find_window() == corner)
        self.corner = corner

    def test_title_drag_lets_the_compositor_move_the_window(self):
        self.start()
        self.move_pointer_away()
        before = self.display.wait_until_still(0, 0, *SCREEN)
        painted = self.painted()
        start = self.corner
        # The compositor chooses the initial position, so move towards the larger part of the screen.
        inward = (-1 if self.is_at_right() else 1, -1 if 2 * start[1] + HEIGHT > SCREEN[1] else 1)

        self.point(*TITLE_GRAB)
        self.display.xdotool("mousedown", 1)
        wait_for("the press", lambda: self.count_in_protocol(r"wl_pointer[@#]\d+\.button\(") == 1)
        self.assertEqual(self.count_in_protocol(MOVE_REQUEST), 0)
        leaves = self.count_in_protocol(LEAVE)
        self.point(TITLE_GRAB[0] + 9 * inward[0], TITLE_GRAB[1] + 4 * inward[1])
        # The pointer leaves the window when the compositor begins the move. The request alone is not enough: the editor
        # logs it when it sends it, and still receives motions until the compositor has handled it.
        wait_for("the start of the move", lambda: self.count_in_protocol(LEAVE) > leaves)
        self.assertEqual(self.count_in_protocol(MOVE_REQUEST), 1)
        # From the next motion on, the compositor moves the window by the whole distance since the press.
        for step in ((60, 30), (41, 75)):
            step = (step[0] * inward[0], step[1] * inward[1])
            self.display.point(start[0] + TITLE_GRAB[0] + step[0], start[1] + TITLE_GRAB[1] + step[1])
            self.wait_for_corner((start[0] + step[0], start[1] + step[1]))
        self.display.xdotool("mouseup", 1)
        self.assertEqual(self.count_in_protocol(MOVE_REQUEST), 1)

        # The window receives the pointer again.
        motions = self.count_in_protocol(MOTION)
        self.point(300, 200)
        self.point(330, 240)
        wait_for("pointer motions in the window", lambda: self.count_in_protocol(MOTION) > motions)
        self.move_pointer_away()
        wait_for("the same pixels at the new position", lambda: self.painted() == painted)
        self.assertEqual(self.find_window(), self.corner)
        self.assertNotEqual(self.screen(), before)

        self.point(*controls.CLOSE_MAIN)
        self.display.xdotool("click", 1)
        self.wait_for_end()

    def test_editor_exits_while_the_wayland_reader_is_late(self):
        self.start(LD_PRELOAD=LATE_READER)
        self.point(*controls.CLOSE_MAIN)
        # Keep the pointer moving, so that there is something to read while the editor exits.
        self.display.xdotool("click", 1, *["mousemove_relative", "--", -1, 1, "sleep", 0.01] * 50)
        self.wait_for_end()


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
