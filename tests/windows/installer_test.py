#!/usr/bin/env python3
"""Installs, uses and uninstalls Varnoth in a fresh Windows of Wine, for one user and for all, and checks that neither a
file nor an entry of the registry is left. Usage: installer_test.py SETUP_EXE SAMPLES VERSION [TEST...]"""
import getpass
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.append(os.path.join(HERE, "..", "e2e"))
import controls  # noqa: E402
from display import wait_for  # noqa: E402
from ui_driver import UiDriver  # noqa: E402
from under_wine import UNDER_WINE, WineDisplay, contents, wait_for_end, windows_path  # noqa: E402

SETUP, SAMPLES = map(os.path.abspath, sys.argv[1:3])
VERSION = sys.argv[3]

KEY = r"Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Varnoth"
# What Windows itself keeps about the programs that ran and the files that dialogs opened.
OF_WINDOWS = (r"Software\\Wine\\", r"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\", r"System\\")


class Windows:
    """A fresh installation of Wine, in a folder of its own."""

    def __init__(self, folder):
        self.folder = folder
        self.environment = {**os.environ, "WINEPREFIX": folder}
        self.run("wineboot", "--init")
        self.stop()

    def run(self, program, *arguments, status=0):
        done = subprocess.run([UNDER_WINE, program, *arguments], env=self.environment, cwd=os.path.dirname(self.folder),
                              stdin=subprocess.DEVNULL, capture_output=True, timeout=300, check=False)
        if done.returncode != status:
            raise AssertionError(f"{program} {arguments}: {done.returncode} {done.stderr.decode()}")
        return done.stdout

    def stop(self):
        """Waits for the programs that still run, and writes the registry to its files."""
        wait_for_end(self.folder)

    def restart(self):
        """Windows deletes what was in use when it starts the next time."""
        self.run("wineboot", "--restart")
        self.stop()

    def path(self, *parts):
        return os.path.join(self.folder, "drive_c", *parts)

    def files(self):
        return set(contents(self.path()))

    def registry(self):
        """All keys and values, as (key, value) without times."""
        found = set()
        for name in ("system.reg", "user.reg", "userdef.reg"):
            with open(os.path.join(self.folder, name), encoding="utf-8", errors="replace") as file:
                key = ""
                for line in file:
                    if line.startswith("["):
                        key = re.match(r"\[(.*)\]", line)[1]
                        found.add((name, key, ""))
                    elif not line.startswith(("#", "WINE", ";")) and line.strip():
                        found.add((name, key, line.strip()))
        return {entry for entry in found if not entry[1].startswith(OF_WINDOWS)}


class Installer(UiDriver, unittest.TestCase):
    def setUp(self):
        self.display = WineDisplay()
        self.addCleanup(self.display.close)
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.windows = Windows(os.path.join(holder.name, "wine"))
        self.addCleanup(self.windows.stop)
        self.files, self.registry = self.windows.files(), self.windows.registry()

    def new_files(self):
        return sorted(self.windows.files() - self.files)

    def check_nothing_left(self):
        self.windows.stop()
        self.windows.restart()
        self.assertEqual(self.new_files(), [])
        self.assertEqual(sorted(self.windows.registry() - self.registry), [])

    def use(self, folder):
        """Makes a sprite on the command line, and opens it in the editor."""
        program = self.windows.path(folder, "varnoth-cli.exe")
        self.assertEqual(self.windows.run(program, "--version").decode(), f"varnoth-cli {VERSION}\n")
        sprite = os.path.join(self.display.home, "made.spr")
        self.windows.run(program, "make", sprite, os.path.join(SAMPLES, "explosion_1.bmp"),
                         os.path.join(SAMPLES, "explosion_2.bmp"))
        self.windows.stop()
        self.start(UNDER_WINE, self.windows.path(folder, "varnoth.exe"), WITH_DISPLAY="1",
                   QT_QPA_PLATFORM="windows", WINEPREFIX=self.windows.folder)
        self.open(windows_path(sprite), frames=2)
        self.click(self.main, controls.CLOSE_MAIN)
        wait_for("the editor to exit", lambda: self.editor.poll() is not None)
        self.assertEqual(self.editor.returncode, 0)

    def check_installation(self, mode, folder, menu):
        self.windows.run(SETUP, "/S", mode)
        self.windows.stop()
        installed = self.new_files()
        for name in ("varnoth.exe", "varnoth-cli.exe", "uninstall.exe", "docs/guide.html", "samples/explosion.spr",
                     "licences/README.txt", "licences/qt/LGPL-3.0-only.txt"):
            self.assertIn(os.path.join(folder, name), installed)
        self.assertEqual([name for name in installed if "Start Menu" in name],
                         [os.path.join(menu, *name) for name in ((), ("Guide.lnk",), ("Uninstall Varnoth.lnk",),
                                                                 ("Varnoth.lnk",))])
        entries = {key for _, key, _ in self.windows.registry() - self.registry}
        self.assertEqual(entries, {KEY})
        self.use(folder)
        return folder

    def test_nothing_is_left_of_an_installation_for_one_user(self):
        user = os.path.join("users", getpass.getuser())
        folder = os.path.join(user, "AppData", "Local", "Programs", "Varnoth")
        menu = os.path.join(user, "AppData", "Roaming", "Microsoft", "Windows", "Start Menu", "Programs", "Varnoth")
        self.check_installation("/CurrentUser", folder, menu)
        self.windows.run(self.windows.path(folder, "uninstall.exe"), "/S", "/CurrentUser")
        self.check_nothing_left()

    def test_nothing_is_left_of_an_installation_for_all_users(self):
        folder = os.path.join("Program Files", "Varnoth")
        menu = os.path.join("ProgramData", "Microsoft", "Windows", "Start Menu", "Programs", "Varnoth")
        self.check_installation("/AllUsers", folder, menu)
        self.windows.run(self.windows.path(folder, "uninstall.exe"), "/S", "/AllUsers")
        self.check_nothing_left()

    def test_file_of_the_user_in_the_folder_is_kept(self):
        folder = self.windows.path("chosen")
        self.windows.run(SETUP, "/S", "/CurrentUser", r"/D=C:\chosen")
        self.windows.stop()
        self.assertIn("chosen/varnoth.exe", self.new_files())
        shutil.copy(os.path.join(SAMPLES, "palette.spr"), folder)
        self.windows.run(os.path.join(folder, "uninstall.exe"), "/S", "/CurrentUser")
        self.windows.stop()
        self.assertEqual(os.listdir(folder), ["palette.spr"])


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]])
