#!/usr/bin/env python3
"""Runs the session of editor_test.py with the editor of the Linux tarball. Its Qt, which has no Xlib, sets _NET_WM_NAME
but not WM_NAME, by which xdotool finds windows. Usage: tarball_test.py VARNOTH WALKTHROUGH SAMPLES [TEST...]"""
import re
import subprocess
import sys
import unittest

from display import Display, TIMEOUT, wait_for
import editor_test

# Qt, which has no ICU here, prints it when it sorts the files in its file chooser.
NO_ICU = b"Numeric mode unsupported in the posix collation implementation\n"


def run_xprop(display, *words):
    """The output of xprop; empty when a window has just closed."""
    return subprocess.run(["xprop", "-notype", *words], env=display.environment, check=False, capture_output=True,
                          text=True, timeout=TIMEOUT).stdout


def windows(self, title=".+"):
    """The windows with a title that the window manager lists."""
    listed = run_xprop(self, "-root", "_NET_CLIENT_LIST").partition("#")[2]
    found = set()
    for window in filter(None, listed.replace(",", " ").split()):
        name = re.search(r'^_NET_WM_NAME = "(.*)"$', run_xprop(self, "-id", window, "_NET_WM_NAME"), re.MULTILINE)
        # Qt appends the name of the program to the title.
        if name and re.fullmatch(title, name[1].removesuffix(" — Varnoth 1.0")):
            found.add(str(int(window, 16)))
    return found


class Session(editor_test.Session):
    def setUp(self):
        super().setUp()
        self.display.windows = windows.__get__(self.display)

    def wait_for_exit(self, status=0):
        wait_for("the editor to exit", lambda: self.editor.poll() is not None)
        printed = editor_test.read(self.errors)
        with open(self.errors, "wb") as file:
            file.write(printed.replace(NO_ICU, b""))
        super().wait_for_exit(status)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]])
