#!/usr/bin/env python3
"""Runs `thumbnail`, and compares its PNG with an exact average in fractions.
Usage: thumbnail_test.py VARNOTH_CLI WALKTHROUGH SAMPLES [TEST...]"""
import os
import random
import stat
import struct
from fractions import Fraction

from cli_test_case import SAMPLES, CliTest, main, sprite_bytes
from picture_parsers import parse_png

SOURCE = random.Random(1)
PALETTE = bytes(SOURCE.randrange(256) for _ in range(768))


def noise(size):
    return bytes(SOURCE.randrange(256) for _ in range(size))


def parts(source, target):
    """For each target pixel, the source pixels that it covers and how much of each."""
    size = Fraction(source, target)
    return [[(i, min((t + 1) * size, i + 1) - max(t * size, i)) for i in range(source)
             if min((t + 1) * size, i + 1) > max(t * size, i)] for t in range(target)]


def half_up(value):
    return int(value + Fraction(1, 2))


def averaged(pixels, size, target):
    """The picture of (red, green, blue, alpha) reduced to a target size, weighted by alpha."""
    width, height = size
    rows = []
    for lines in parts(height, target[1]):
        row = b""
        for columns in parts(width, target[0]):
            area = Fraction(width * height, target[0] * target[1])
            covered = [(pixels[y * width + x], a * b) for y, a in lines for x, b in columns]
            alpha = sum(pixel[3] * part for pixel, part in covered)
            colour = [half_up(sum(pixel[i] * pixel[3] * part for pixel, part in covered) / alpha) if alpha else 0
                      for i in range(3)]
            row += bytes([*colour, half_up(alpha / area)])
        rows.append(row)
    return rows


class Thumbnail(CliTest):
    def thumbnail(self, data, side, *options):
        self.run_cli("thumbnail", self.write("a.spr", data), "out.png", side, "--force", *options)
        return parse_png(self.read("out.png"))

    def pixels(self, frame, mode):
        result = []
        for index in frame:
            colour = tuple(PALETTE[765:] if mode == 2 else PALETTE[3 * index:3 * index + 3])
            result.append(colour + (index if mode == 2 else 0 if mode == 3 and index == 255 else 255,))
        return result

    def test_small_frame_keeps_its_size(self):
        frame = noise(35)
        expected = averaged(self.pixels(frame, 0), (7, 5), (7, 5))
        self.assertEqual(self.thumbnail(sprite_bytes(7, 5, [frame], palette=PALETTE), 7), (7, 5, None, expected))
        self.assertEqual(self.thumbnail(sprite_bytes(7, 5, [frame], palette=PALETTE), 4096)[:2], (7, 5))

    def test_large_frame_is_averaged(self):
        for (width, height), side, target in (((16, 16), 8, (8, 8)), ((20, 10), 7, (7, 4)), ((9, 30), 11, (3, 11)),
                                              ((64, 64), 1, (1, 1)), ((50, 1), 10, (10, 1))):
            for mode in (0, 2, 3):
                frame = noise(width * height)
                found = self.thumbnail(sprite_bytes(width, height, [frame], palette=PALETTE, mode=mode), side)
                with self.subTest(size=(width, height), mode=mode):
                    expected = averaged(self.pixels(frame, mode), (width, height), target)
                    self.assertEqual(found, (*target, None, expected))

    def test_transparent_pixels_do_not_colour_others(self):
        *_, rows = self.thumbnail(sprite_bytes(2, 1, [b"\1\xff"], palette=PALETTE, mode=3), 1)
        self.assertEqual(rows, [PALETTE[3:6] + b"\x80"])

    def test_additive_black_is_transparent(self):
        palette = bytes(3) + b"\x40\x80\x00" + PALETTE[6:]
        *_, rows = self.thumbnail(sprite_bytes(2, 1, [b"\0\1"], palette=palette, mode=1), 2)
        self.assertEqual(rows, [bytes((0, 0, 0, 0, 0x80, 0xFF, 0, 0x80))])

    def test_first_frame_is_shown(self):
        *_, rows = self.thumbnail(sprite_bytes(1, 1, [b"\5", b"\6"], palette=PALETTE), 16)
        self.assertEqual(rows, [PALETTE[15:18] + b"\xff"])

    def test_sample(self):
        self.run_cli("thumbnail", os.path.join(SAMPLES, "explosion.spr"), "out.png", "48")
        self.assertEqual(self.tool("identify", "-format", "%m %wx%h", "out.png"), b"PNG 48x48")

    def test_standard_output(self):
        data = self.run_cli("thumbnail", "-", "-", "4", stdin=sprite_bytes(1, 1, [b"\1"], palette=PALETTE)).stdout
        self.assertEqual(parse_png(data)[3], [PALETTE[3:6] + b"\xff"])

    def test_output_may_have_any_name(self):
        self.run_cli("thumbnail", self.write("a.spr", sprite_bytes(1, 1, [b"\0"])), "out.XY12Z", "128")
        self.assertEqual(parse_png(self.read("out.XY12Z"))[:2], (1, 1))

    def test_existing_file_is_replaced_only_with_force(self):
        path = self.write("a.spr", sprite_bytes(1, 1, [b"\0"]))
        os.chmod(self.write("out.png", b"mine"), 0o600)
        line = self.fails("thumbnail", path, "out.png", 16)
        self.assertEqual(line, "varnoth-cli: out.png: the file exists; --force replaces it")
        self.assertEqual(self.read("out.png"), b"mine")
        self.run_cli("thumbnail", "--force", path, "out.png", 16)
        self.assertEqual(parse_png(self.read("out.png"))[:2], (1, 1))
        self.assertEqual(stat.S_IMODE(os.stat(self.path("out.png")).st_mode), 0o600)

    def test_thumbnailer_entry_works(self):
        entry = os.path.join(os.path.dirname(SAMPLES), "packaging", "varnoth.thumbnailer")
        with open(entry, encoding="utf-8") as file:
            command, = [line[5:].split() for line in file if line.startswith("Exec=")]
        values = {"%i": self.write("a.spr", sprite_bytes(300, 200, [bytes(60000)])), "%o": self.write("t", b""),
                  "%s": "128"}
        self.assertEqual(command[0], "varnoth-cli")
        self.run_cli(*(values.get(word, word) for word in command[1:]))
        self.assertEqual(parse_png(self.read("t"))[:2], (128, 85))

    def test_sizes_out_of_range(self):
        path = self.write("a.spr", sprite_bytes(1, 1, [b"\0"]))
        for size in ("0", "-1", "4097", "x", "1.5", ""):
            self.run_cli("thumbnail", path, "out.png", size, status=2)

    def test_frame_that_claims_far_more_than_the_file(self):
        data = sprite_bytes(4, 1, [bytes(4)])
        data = data[:822] + struct.pack("<2i", 40000, 40000) + data[830:]
        done = self.run_cli("thumbnail", self.write("a.spr", data), "out.png", "128", status=1)
        self.assertIn(b"a.spr: frame 0 is too large for a thumbnail\n", done.stderr)

    def test_file_that_is_no_sprite(self):
        line = self.fails("thumbnail", self.write("a.spr", b"text"), "out.png", 16)
        self.assertIn("a.spr: the file does not begin with", line)
        self.assertFalse(os.path.exists(self.path("out.png")))

    def test_wrong_usage(self):
        self.run_cli("thumbnail", "a.spr", "out.png", status=2)


if __name__ == "__main__":
    main()
