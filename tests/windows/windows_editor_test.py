#!/usr/bin/env python3
"""Operates the editor for Windows under Wine on a virtual display, with a real pointer and real keys, through the session
of the end-to-end tests, whose results must be those of the scripted user on Linux.
Usage: windows_editor_test.py VARNOTH_EXE WALKTHROUGH SAMPLES [TEST...]"""
import getpass
import os
import sys
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.append(os.path.join(HERE, "..", "e2e"))
import editor_test as linux  # noqa: E402
from display import wait_for  # noqa: E402
from under_wine import UNDER_WINE, WineDisplay, wait_for_end, windows_path  # noqa: E402


class OnWindows:
    """What is different under Wine: the programs are started by it, and paths begin with a drive."""

    def setUp(self):
        self.display = WineDisplay()
        self.addCleanup(self.display.close)

    def start(self, program, *arguments, **more):
        wait_for_end(os.environ["WINEPREFIX"])
        super().start(UNDER_WINE, program, *arguments, WITH_DISPLAY="1", QT_QPA_PLATFORM="windows", **more)

    def choose_file(self, title, path):
        super().choose_file(title, windows_path(path))

    def wait_for_exit(self, status=0):
        """A program without a console has no standard error."""
        wait_for("the editor to exit", lambda: self.editor.poll() is not None)
        self.assertEqual(self.editor.returncode, status)


class Session(OnWindows, linux.Session):
    def add_frames(self):
        """The dialog opens the user's pictures, which Windows has elsewhere."""
        pictures = os.path.join(os.environ["WINEPREFIX"], "drive_c", "users", getpass.getuser(), "Pictures")
        link = os.path.join(pictures, "fire")
        os.symlink(os.path.join(self.display.home, "Pictures", "fire"), link)
        self.addCleanup(os.remove, link)
        super().add_frames()

    def export(self, folder):
        super().export(windows_path(folder))


class FatalError(OnWindows, linux.FatalError):
    pass


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]])
