#!/usr/bin/env python3
"""Runs `extract` and reads its pictures with independent parsers, ImageMagick, Netpbm and giflib's tools.
Usage: extract_test.py VARNOTH_CLI WALKTHROUGH SAMPLES [TEST...]"""
import os
import random
import re
import struct

from cli_test_case import SAMPLES, CliTest, main, parse_sprite, sprite_bytes
from picture_parsers import PARSERS, parse_png, parse_tga

SOURCE = random.Random(1)
PALETTE = bytes(SOURCE.randrange(256) for _ in range(768))


def noise(size):
    return bytes(SOURCE.randrange(256) for _ in range(size))


def rows_of(pixels, width):
    return [pixels[at:at + width] for at in range(0, len(pixels), width)]


def rendered(mode, palette, index):
    """Red, green, blue and alpha of an index in a render mode."""
    red, green, blue = palette[3 * index:3 * index + 3]
    if mode == 1:
        alpha = max(red, green, blue)
        return bytes((channel * 255 + alpha // 2) // alpha if alpha else 0 for channel in (red, green, blue)) + \
            bytes([alpha])
    if mode == 2:
        return palette[765:] + bytes([index])
    return bytes((red, green, blue, 0 if mode == 3 and index == 255 else 255))


class Extract(CliTest):
    def extract(self, data, *options, name="a.spr", **arguments):
        return self.run_cli("extract", self.write(name, data), "out", *options, **arguments)

    def extracted(self, name):
        return self.read(os.path.join("out", name))

    def test_every_format_keeps_indices_and_palette(self):
        for width, height in ((1, 1), (7, 5), (64, 3), (130, 9)):
            frames = [noise(width * height), bytes(width * height), bytes([255]) * (width * height),
                      bytes(x // 70 * 7 for x in range(width * height))]
            data = sprite_bytes(width, height, frames, palette=PALETTE)
            for ending, parse in PARSERS.items():
                self.extract(data, "--format", ending, "--force")
                for number, frame in enumerate(frames):
                    with self.subTest(ending, size=(width, height), frame=number):
                        self.assertEqual(parse(self.extracted(f"a_00{number}.{ending}")),
                                         (width, height, PALETTE, rows_of(frame, width)))

    def test_other_programs_see_the_same_pixels(self):
        width, height = 37, 11
        frame = noise(width * height)
        expected = b"".join(PALETTE[3 * index:3 * index + 3] for index in frame)
        readers = {"png": "pngtopnm", "bmp": "bmptopnm", "tga": "tgatoppm", "pcx": "pcxtoppm", "gif": "giftopnm"}
        for ending, reader in readers.items():
            self.extract(sprite_bytes(width, height, [frame], palette=PALETTE), "--format", ending)
            name = f"out/a_000.{ending}"
            with self.subTest(ending):
                self.assertEqual(self.tool("convert", name, "-depth", "8", "rgb:-"), expected)
                self.assertEqual(self.tool(reader, name)[-len(expected):], expected)

    def test_giflib_reads_the_gif(self):
        self.extract(sprite_bytes(5, 4, [noise(20)], palette=PALETTE), "--format", "gif")
        text = self.tool("giftext", "-c", "out/a_000.gif").decode()
        self.assertIn("Screen Size - Width = 5, Height = 4", text)
        colours = re.findall(r"(\d+): ([0-9a-f]{2})h ([0-9a-f]{2})h ([0-9a-f]{2})h", text)
        self.assertEqual(b"".join(bytes.fromhex("".join(colour[1:])) for colour in colours), PALETTE)

    def test_png_is_the_default(self):
        self.extract(sprite_bytes(2, 1, [b"\1\2"], palette=PALETTE))
        self.assertEqual(os.listdir(self.path("out")), ["a_000.png"])

    def test_names_sort_in_the_order_of_the_frames(self):
        self.extract(sprite_bytes(1, 1, [bytes([i % 256]) for i in range(1001)]), "--frames", "7,1000")
        self.assertEqual(sorted(os.listdir(self.path("out"))), ["a_0007.png", "a_1000.png"])

    def test_names_follow_the_file(self):
        self.extract(sprite_bytes(1, 1, [b"\0"]), name="x.y.SPR")
        self.assertEqual(os.listdir(self.path("out")), ["x.y_000.png"])
        self.run_cli("extract", "-", "other", stdin=sprite_bytes(1, 1, [b"\0"]))
        self.assertEqual(os.listdir(self.path("other")), ["frame_000.png"])

    def test_chosen_frames(self):
        data = sprite_bytes(1, 1, [bytes([i]) for i in range(9)])
        self.extract(data, "--frames", "7,0-2,2,8-8")
        self.assertEqual(sorted(os.listdir(self.path("out"))), [f"a_00{i}.png" for i in (0, 1, 2, 7, 8)])
        self.assertEqual(parse_png(self.extracted("a_007.png"))[3], [b"\7"])

    def test_chosen_frame_that_does_not_exist(self):
        path = self.write("a.spr", sprite_bytes(1, 1, [b"\0"] * 4))
        line = self.fails("extract", path, "out", "--frames", "2-9")
        self.assertEqual(line, f"varnoth-cli: {path}: there is no frame 4; the last is 3")
        self.assertEqual(self.fails("extract", path, "out", "--frames", "4"), line)
        self.assertIn("there is no frame 7;", self.fails("extract", path, "out", "--frames", "7,9"))
        self.assertFalse(os.path.exists(self.path("out")))

    def test_lists_that_are_no_lists(self):
        for text in ("x", "1-", "-1", "3-1", "1,,2", "1,", "1 2", "99999999999"):
            with self.subTest(text):
                self.extract(sprite_bytes(1, 1, [b"\0"] * 4), "--frames=" + text, status=2)

    def test_alpha_of_each_mode(self):
        frame = bytes(range(256))
        palette = PALETTE[:30] + bytes(3) + PALETTE[33:]
        for mode in (0, 1, 2, 3, 9):
            expected = [b"".join(rendered(mode, palette, index) for index in row) for row in rows_of(frame, 16)]
            for ending, parse in (("png", parse_png), ("tga", parse_tga)):
                data = sprite_bytes(16, 16, [frame], palette=palette, mode=mode)
                self.extract(data, "--alpha", "--format", ending, "--force")
                with self.subTest(ending, mode=mode):
                    width, height, _, rows = parse(self.extracted(f"a_000.{ending}"))
                    self.assertEqual((width, height), (16, 16))
                    self.assertEqual(rows, expected)

    def test_other_programs_see_the_same_alpha(self):
        data = sprite_bytes(16, 16, [bytes(range(256))], palette=PALETTE, mode=2)
        for ending in ("png", "tga"):
            self.extract(data, "--alpha", "--format", ending)
            alpha = self.tool("convert", f"out/a_000.{ending}", "-alpha", "extract", "-depth", "8", "gray:-")
            self.assertEqual(alpha, bytes(range(256)), ending)

    def test_alpha_needs_a_format_with_alpha(self):
        for ending in ("bmp", "pcx", "gif"):
            self.extract(sprite_bytes(1, 1, [b"\0"]), "--alpha", "--format", ending, status=2)

    def test_format_in_capitals(self):
        self.extract(sprite_bytes(1, 1, [b"\0"]), "--format", "BMP")
        self.assertEqual(os.listdir(self.path("out")), ["a_000.bmp"])

    def test_unknown_format(self):
        self.extract(sprite_bytes(1, 1, [b"\0"]), "--format", "jpg", status=2)

    def test_frames_of_several_sizes(self):
        data = sprite_bytes(3, 3, [bytes(9)])
        data = data[:28] + struct.pack("<i", 2) + data[32:] + struct.pack("<5i", 0, 0, 0, 2, 1) + b"\5\6"
        self.extract(data)
        self.assertEqual(parse_png(self.extracted("a_001.png"))[3], [b"\5\6"])

    def test_existing_file_stays_and_nothing_is_written(self):
        os.mkdir(self.path("out"))
        self.write("out/a_001.png", b"mine")
        path = self.write("a.spr", sprite_bytes(1, 1, [b"\0"] * 3))
        line = self.fails("extract", path, "out")
        self.assertEqual(line, "varnoth-cli: out/a_001.png: the file exists; --force replaces it")
        self.assertEqual(os.listdir(self.path("out")), ["a_001.png"])
        self.assertEqual(self.extracted("a_001.png"), b"mine")

    def test_force_replaces_files(self):
        os.mkdir(self.path("out"))
        self.write("out/a_000.png", b"mine")
        self.extract(sprite_bytes(1, 1, [b"\7"]), "--force")
        self.assertEqual(parse_png(self.extracted("a_000.png"))[3], [b"\7"])

    def test_folder_is_created_with_its_parents(self):
        self.run_cli("extract", self.write("a.spr", sprite_bytes(1, 1, [b"\0"])), "x/y/z")
        self.assertEqual(os.listdir(self.path("x/y/z")), ["a_000.png"])

    def test_folder_that_is_a_file(self):
        self.write("out", b"")
        line = self.fails("extract", self.write("a.spr", sprite_bytes(1, 1, [b"\0"])), "out")
        self.assertTrue(line.startswith("varnoth-cli: out"), line)

    def test_frame_too_large_for_the_format(self):
        data = sprite_bytes(40000, 1, [bytes(40000)])
        for ending in ("tga", "pcx"):
            path = self.write("a.spr", data)
            line = self.fails("extract", path, "out", "--format", ending)
            self.assertEqual(line, f"varnoth-cli: out/a_000.{ending}: the frame is too large for the format")
        self.extract(sprite_bytes(70000, 1, [bytes(70000)]), "--format", "gif", status=1)

    def test_truncated_sprite_is_extracted_with_a_note(self):
        done = self.extract(sprite_bytes(4, 1, [b"\1\2\3\4"])[:-2])
        self.assertIn(b"the file is truncated", done.stderr)
        self.assertEqual(parse_png(self.extracted("a_000.png"))[3], [b"\1\2\0\0"])

    def test_sprite_that_the_editor_refuses(self):
        line = self.fails("extract", self.write("a.spr", sprite_bytes(4, 1, [bytes(4)])[:820]), "out")
        self.assertIn("the file ends before frame 0 of 1 (at byte 820)", line)
        self.assertFalse(os.path.exists(self.path("out")))

    def test_frame_of_negative_size(self):
        data = sprite_bytes(4, 1, [bytes(4)])
        data = data[:822] + struct.pack("<2i", -4, -1) + data[830:]
        self.assertIn("frame 0 has -4 x -1 pixels", self.fails("extract", self.write("a.spr", data), "out"))

    def test_missing_file(self):
        self.assertEqual(self.fails("extract", "a.spr", "out"), "varnoth-cli: a.spr: No such file or directory")

    def test_wrong_usage(self):
        self.run_cli("extract", status=2)
        self.run_cli("extract", "a.spr", status=2)

    def test_sample_is_extracted_frame_by_frame(self):
        sample = os.path.join(SAMPLES, "explosion.spr")
        self.run_cli("extract", sample, "out", "--quiet")
        with open(sample, "rb") as file:
            _, palette, frames = parse_sprite(file.read())
        for number, (_, width, height, indices) in enumerate(frames):
            self.assertEqual(parse_png(self.extracted(f"explosion_{number:03}.png")),
                             (width, height, palette, rows_of(indices, width)))


if __name__ == "__main__":
    main()
