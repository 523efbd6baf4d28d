"""Runs programs for Windows under Wine, and those for Linux beside them. Wine's files are in the folder WINEPREFIX."""
import os
import subprocess
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.append(os.path.join(HERE, "..", "e2e"))
from display import Display  # noqa: E402
from ui_driver import MAIN  # noqa: E402

UNDER_WINE = os.path.join(HERE, "..", "..", "cmake", "under-wine")
WINE_SERVER = "/usr/lib/wine/wineserver64"
TIMEOUT = 300


def windows_path(path):
    """The name under which programs for Windows find a file of Linux."""
    return "Z:" + os.path.abspath(path).replace("/", "\\")


def linux_path(path):
    """The inverse of windows_path."""
    return path.removeprefix("Z:").replace("\\", "/")


def run(program, *arguments, folder, stdin=b""):
    """Runs a program of either system in a folder. Returns its exit status, standard output and standard error."""
    command = [UNDER_WINE, program] if program.endswith(".exe") else [program]
    done = subprocess.run([*command, *arguments], cwd=folder, input=stdin, capture_output=True, timeout=TIMEOUT,
                          check=False)
    return done.returncode, done.stdout, done.stderr


def wait_for_end(prefix):
    """Waits until all programs of an installation of Wine have ended. The desktop of Wine, which outlives them by some
    seconds, stays on the display of the first one."""
    subprocess.run([WINE_SERVER, "--wait"], env={**os.environ, "WINEPREFIX": prefix}, timeout=TIMEOUT, check=True)


class WineDisplay(Display):
    """A display with windows of Wine. Qt adds the name of the program to their titles."""

    def windows(self, title=".+"):
        return super().windows(f"{title}( - {MAIN})?")


def contents(folder):
    """The bytes of all files below a folder, by their paths; None for a folder."""
    found = {}
    for parent, folders, files in os.walk(folder):
        for name in folders:
            found[os.path.relpath(os.path.join(parent, name), folder)] = None
        for name in files:
            with open(os.path.join(parent, name), "rb") as file:
                found[os.path.relpath(os.path.join(parent, name), folder)] = file.read()
    return found
