#!/usr/bin/env python3
"""Runs the programs for Windows under Wine and those for Linux with the same arguments, in folders with the same files,
and compares exit status, output and all files, byte by byte. Standard output of walkthrough is text, so its line ends
and separators are those of the system; varnoth-cli prints the same bytes everywhere but for separators.
Usage: same_results_test.py LINUX_BIN WINDOWS_BIN SAMPLES [TEST...]"""
import os
import shutil
import sys
import tempfile
import unittest

from under_wine import contents, run

LINUX, WINDOWS, SAMPLES = map(os.path.abspath, sys.argv[1:4])


def with_slashes(text):
    return text.replace(b"\\", b"/")


class SameResults(unittest.TestCase):
    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folders = {system: os.path.join(holder.name, system) for system in ("linux", "windows")}
        for folder in self.folders.values():
            os.mkdir(folder)
            for name in ("bmp", "jpg", "tga", "pcx"):
                os.mkdir(os.path.join(folder, name))
                for number in (1, 2, 10):
                    shutil.copy(os.path.join(SAMPLES, f"explosion_{number}.{name}"), os.path.join(folder, name))
            for name in ("explosion.spr", "palette.spr", "palette.bmp"):
                shutil.copy(os.path.join(SAMPLES, name), folder)

    def write(self, name, data):
        for folder in self.folders.values():
            with open(os.path.join(folder, name), "wb") as file:
                file.write(data)

    def run_both(self, program, *arguments, stdin=b""):
        linux = run(os.path.join(LINUX, program), *arguments, folder=self.folders["linux"], stdin=stdin)
        windows = run(os.path.join(WINDOWS, program + ".exe"), *arguments, folder=self.folders["windows"], stdin=stdin)
        return linux, windows

    def check_files(self):
        linux, windows = map(contents, self.folders.values())
        self.assertEqual(sorted(linux), sorted(windows))
        self.assertEqual([name for name in linux if linux[name] != windows[name]], [])


class Walkthrough(SameResults):
    def check(self, *arguments, status=0):
        linux, windows = self.run_both("walkthrough", *arguments)
        self.assertEqual((windows[0], linux[0]), (status, status), windows[2])
        lines = linux[1].decode().splitlines()
        self.assertEqual(with_slashes(windows[1]).decode().splitlines(), lines)
        self.check_files()
        return lines

    def test_import_of_each_format_gives_the_same_sprite(self):
        for kind in ("bmp", "jpg", "tga", "pcx"):
            lines = self.check("--pictures", kind, "--filter", kind, "--size", "32x24", "--render", "3", "--pick", "20,30",
                               "--choice", "resize", "--save", kind + ".spr")
            self.assertIn(f"wrote: {kind}.spr", lines)

    def test_export_in_each_format_gives_the_same_pictures(self):
        for kind in (("bmp",), ("tga", "--compressed"), ("tga",), ("pcx",)):
            out = "as-" + "-".join(kind)
            for folder in self.folders.values():
                os.mkdir(os.path.join(folder, out))
            lines = self.check("--open", "explosion.spr", "--move", "2:up", "--export", out, "--format", *kind,
                               "--draw", f"1:{out}.ppm")
            self.assertTrue(any(line.startswith("wrote: " + out + "/") for line in lines), lines)

    def test_names_of_other_scripts_give_the_same_lines(self):
        for folder in self.folders.values():
            os.rename(os.path.join(folder, "bmp"), os.path.join(folder, "ä 炎"))
            os.rename(os.path.join(folder, "ä 炎", "explosion_2.bmp"), os.path.join(folder, "ä 炎", "ほのお.bmp"))
        lines = self.check("--pictures", "ä 炎", "--save", "ß炎.spr")
        self.assertIn("wrote: ß炎.spr", lines)

    def test_failures_give_the_same_lines_and_status(self):
        self.write("broken.spr", b"IDSP")
        self.check("--open", "broken.spr")
        self.check("--open", "missing.spr")
        self.check("--open", "explosion.spr", "--export", "missing")
        self.check("--unknown", status=64)
        self.write("refused.bmp", b"BM")
        for folder in self.folders.values():
            os.mkdir(os.path.join(folder, "refused"))
            os.rename(os.path.join(folder, "refused.bmp"), os.path.join(folder, "refused", "a.bmp"))
        self.check("--pictures", "refused", status=70)


class CommandLine(SameResults):
    def check(self, *arguments, status=0, stdin=b""):
        linux, windows = self.run_both("varnoth-cli", *arguments, stdin=stdin)
        self.assertEqual((windows[0], linux[0]), (status, status), windows[2])
        self.assertEqual(with_slashes(windows[2]), linux[2])
        if b"\n" in linux[1] and linux[1].isascii():
            self.assertEqual(with_slashes(windows[1]), with_slashes(linux[1]))
        else:
            self.assertEqual(windows[1], linux[1])
        self.check_files()
        return linux[1]

    def test_help_and_version_are_the_same(self):
        self.assertIn(b"make", self.check("--help"))
        for command in ("make", "info", "check", "extract", "edit", "preview", "thumbnail"):
            self.check(command, "--help")
        self.check("--version")
        self.check("make", "--unknown", status=2)

    def test_make_gives_the_same_sprite(self):
        self.check("make", "best.spr", "bmp", "--mode", "ALPHATEST", "--transparent", "#000000")
        self.check("make", "small.spr", "jpg", "tga/explosion_1.tga", "--size", "32x32", "--dither", "blue-noise")
        self.check("make", "editor.spr", "pcx", "--palette", "editor", "--jobs", "1")
        self.check("make", "given.spr", "bmp", "--palette", "palette.spr")
        self.check("make", "best.spr", "bmp", status=1)

    def test_info_and_check_print_the_same(self):
        self.write("cut.spr", b"IDSP\2\0\0\0")
        self.check("info", "explosion.spr", "palette.spr")
        self.check("info", "--json", "explosion.spr")
        self.check("check", "explosion.spr", "palette.spr", "cut.spr", status=1)
        self.check("check", "missing.spr", status=1)

    def test_extract_gives_the_same_pictures(self):
        for kind in ("png", "bmp", "tga", "pcx", "gif"):
            self.check("extract", "explosion.spr", "out/" + kind, "--format", kind, "--frames", "0-2,15")
        self.check("extract", "explosion.spr", "out/alpha", "--alpha", "--frames", "3")

    def test_edit_gives_the_same_sprite(self):
        self.check("edit", "explosion.spr", "--remove", "0,15", "--mode", "ADDITIVE", "-o", "short.spr")
        self.check("edit", "short.spr", "--append", "bmp/explosion_1.bmp", "--reverse", "--move", "0=3")
        self.check("edit", "short.spr", "--repalette", "--replace", "0=jpg/explosion_10.jpg")

    def test_preview_gives_the_same_animation(self):
        self.check("preview", "explosion.spr", "explosion.gif")
        self.check("preview", "explosion.spr", "sheet.png", "--background", "checkers")
        self.check("preview", "palette.spr", status=2)

    def test_thumbnail_gives_the_same_picture(self):
        self.check("thumbnail", "explosion.spr", "thumbnail.png", "48")

    def test_pipes_carry_bytes_unchanged(self):
        with open(os.path.join(SAMPLES, "explosion.spr"), "rb") as file:
            sprite = file.read()
        self.assertIn(b"\n", self.check("edit", "-", "--reverse", "-o", "-", stdin=sprite))

    def test_names_of_other_scripts_are_found_and_written(self):
        self.check("make", "ß炎.spr", "bmp")
        self.check("extract", "ß炎.spr", "ä 炎")
        self.assertIn("ß炎.spr".encode(), self.check("info", "ß炎.spr"))


class Inspect(SameResults):
    def test_files_of_each_format_are_read_the_same(self):
        files = [f"{kind}/explosion_10.{kind}" for kind in ("bmp", "jpg", "tga", "pcx")]
        linux, windows = self.run_both("inspect", *files, "explosion.spr")
        self.assertEqual(windows[0], 0, windows[2])
        self.assertEqual(windows[1].decode().splitlines(), linux[1].decode().splitlines())


def setUpModule():
    # The first program starts those of Wine, which write to its standard error.
    run(os.path.join(WINDOWS, "varnoth-cli.exe"), "--version", folder=SAMPLES)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]])
