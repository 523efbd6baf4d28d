#!/usr/bin/env python3
"""Verifies statements of docs/guide.md and docs/formats.md that no other test covers, with the built tools and files
written by other programs or by this test. Usage: statements_test.py WALKTHROUGH INSPECT SAMPLES [TEST...]"""
import json
import os
import re
import struct
import subprocess
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "tools"))
from tool_test import (EXPLOSION, INSPECT, SAMPLES, SIDE, Sprite, ToolTest, decode, parse_ppm, read, tga,
                       write)  # noqa: E402

BLACK = (0, 0, 0)
DOCUMENTS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "docs")
EVERY_FRAME = [argument for number in range(EXPLOSION) for argument in ("--select", f"explosion_{number}.bmp")]


def shell(command, folder):
    """Runs a command from the documents; ImageMagick uses one thread, as in the other tests."""
    subprocess.run(command, shell=True, check=True, cwd=folder, stderr=subprocess.DEVNULL,
                   env={**os.environ, "OMP_NUM_THREADS": "1"})


def colours(count):
    """Distinct colours, none of them black."""
    return [((i * 7 + 3) % 256, (i * 13 + 5) % 256, i) for i in range(1, count + 1)]


def bmp_of_8_bits(width, height, indices, palette):
    """An 8-bit BMP file; indices are in rows from the top."""
    table = b"".join(bytes((*colour[::-1], 0)) for colour in palette).ljust(1024, b"\0")
    padding = bytes(-width % 4)
    rows = [bytes(indices[y * width:(y + 1) * width]) + padding for y in reversed(range(height))]
    body = b"".join(rows)
    return (struct.pack("<2sIHHI", b"BM", 1078 + len(body), 0, 0, 1078)
            + struct.pack("<IiiHHIIiiII", 40, width, height, 1, 8, 0, 0, 0, 0, 0, 0) + table + body)


class Statements(ToolTest):
    def sprite_of(self, folder, *arguments, size=16):
        """Imports all pictures of a folder into a new sprite and saves it."""
        target = self.path("out.spr")
        self.run_walkthrough("--size", f"{size}x{size}", "--pictures", folder, *arguments, "--save", target)
        return Sprite(read(target))

    def folder_of(self, name, palette):
        """A folder with one 16 by 16 picture that repeats the colours of the palette."""
        indices = [i % len(palette) for i in range(256)]
        return self.make_folder(name, {"a.bmp": bmp_of_8_bits(16, 16, indices, palette)})

    def inspect(self, *arguments):
        """Runs inspect on one file."""
        return json.loads(subprocess.run([INSPECT, *arguments], check=True, stdout=subprocess.PIPE).stdout)

    def assert_exact(self, sprite, palette):
        self.assertEqual(sprite.colours_of(0), b"".join(bytes(palette[i % len(palette)]) for i in range(256)))


class SharedPalette(Statements):
    def test_255_colours_and_black_are_preserved(self):
        for palette in (colours(255) + [BLACK], [BLACK] + colours(255), colours(255), colours(100)):
            with self.subTest(colours=len(palette), first=palette[0]):
                folder = self.folder_of(f"pictures{len(os.listdir(self.folder))}", palette)
                self.assert_exact(self.sprite_of(folder, "--render", "0"), palette)

    def test_commands_in_the_guide_preserve_every_pixel(self):
        guide = read(os.path.join(DOCUMENTS, "guide.md")).decode()
        commands = re.search(r"```\n(convert frame.*?)```", guide, re.DOTALL).group(1)
        folder = self.make_folder("pictures")
        for number in range(EXPLOSION):
            shell(f"convert {SAMPLES}/explosion_{number}.bmp frame{number}.png", folder)
        shell(commands, folder)
        out = self.make_folder("out")
        sprite = self.path("made.spr")
        self.run_walkthrough("--size", f"{SIDE}x{SIDE}", "--render", "3", "--pictures", folder, "--save", sprite,
                             "--export", out)
        made = [decode(os.path.join(folder, f"frame{number}.bmp"))[0] for number in range(EXPLOSION)]
        exported = [decode(os.path.join(out, f"made_{number}.bmp"))[0] for number in range(EXPLOSION)]
        self.assertEqual(exported, made)
        held = len(set(Sprite(read(sprite)).palette))
        self.assertLess(held, 256)
        self.assertIn(f"this gives a palette of {held} colours", guide)

    def test_table_of_remaining_colours_in_the_guide_is_correct(self):
        rows = re.findall(r"^\| (\d+) \| (\d+) \|$", read(os.path.join(DOCUMENTS, "guide.md")).decode(), re.MULTILINE)
        self.assertGreater(len(rows), 3)
        for pictures, left in rows:
            with self.subTest(pictures=pictures):
                sprite = self.sprite_of(SAMPLES, "--render", "0", *EVERY_FRAME[:2 * int(pictures)], size=SIDE)
                self.assertEqual(len(set(sprite.palette)), int(left))

    def test_second_import_can_lose_a_colour(self):
        first, second = colours(50), colours(50)
        second[0], second[2] = (255, 1, 1), (1, 255, 1)
        pictures, others = self.folder_of("first", first), self.folder_of("second", second)
        self.assert_exact(self.sprite_of(others), second)
        with self.assertRaises(AssertionError):
            self.assert_exact(self.sprite_of(pictures, "--again", others), second)

    def test_black_follows_the_other_colours(self):
        for others in (255, 100):
            with self.subTest(others=others):
                palette = [BLACK] + colours(others)
                sprite = self.sprite_of(self.folder_of(f"pictures{others}", palette), "--render", "3")
                self.assert_exact(sprite, palette)
                self.assertEqual(sprite.frames[0][0], others)
                self.assertEqual(sprite.palette[others:], [BLACK] * (256 - others))


class FrameSize(Statements):
    def test_unselected_preview_determines_frame_size(self):
        folder = self.folder_of("pictures", colours(50))
        write(os.path.join(folder, "z.bmp"), bmp_of_8_bits(20, 20, [0] * 400, colours(50)))
        target = self.path("out.spr")
        events = self.run_walkthrough("--size", "16x16", "--pictures", folder, "--save", target)
        self.assertIn("message: All Selected Pictures Must Have Same Size.", events)
        data = read(target)
        self.assertEqual(struct.unpack_from("<ii", data, 20), (16, 16))
        self.assertEqual(struct.unpack_from("<ii", data, 810 + 12), (16, 16))
        self.assertEqual(len(data), 810 + 20 + 20 * 20)

    def test_smaller_preview_is_fatal_and_saves_nothing(self):
        folder = self.folder_of("pictures", colours(50))
        write(os.path.join(folder, "z.bmp"), bmp_of_8_bits(12, 12, [0] * 144, colours(50)))
        target = self.path("out.spr")
        self.run_walkthrough("--size", "16x16", "--pictures", folder, "--save", target, status=70)
        self.assertFalse(os.path.exists(target))


class Lists(Statements):
    def test_reopening_corrects_the_list(self):
        events = self.run_walkthrough("--pictures", SAMPLES, *EVERY_FRAME[:4], "--again", SAMPLES, "--save",
                                      self.path("a.spr"))
        saved = max(at for at, event in enumerate(events) if event.startswith("message: Sprite Saved"))
        self.assertEqual(events[saved + 1:], ["list: Frame 0", "list: Frame 1"])


class TgaOf16Bits(Statements):
    def largest_difference_to_imagemagick(self, width, height):
        words = [(i * 977 + 31) & 0x7FFF for i in range(width * height)]
        path = write(self.path("a.tga"), tga(2, width, height, 16, struct.pack(f"<{width * height}H", *words)))
        self.inspect("--decode", self.path("a.ppm"), path)
        drawn, decoded = parse_ppm(read(self.path("a.ppm")))[0], decode(path)[0]
        self.assertEqual(drawn[:2], decoded[:2])
        return max(abs(a - b) for a, b in zip(drawn[2], decoded[2]))

    def test_only_uncompressed_files_of_even_width_match_imagemagick(self):
        self.assertLessEqual(self.largest_difference_to_imagemagick(6, 5), 1)
        self.assertGreater(self.largest_difference_to_imagemagick(5, 5), 1)


class SpriteFile(Statements):
    FIELDS = {"4 characters": "4s", "32-bit": "<i", "32-bit float": "<f", "16-bit": "<h"}

    def test_fields_are_at_the_documented_offsets(self):
        document = read(os.path.join(DOCUMENTS, "formats.md")).decode()
        chapter = document[document.index("## Sprites (.spr)"):document.index("## Reading BMP")]
        rows = re.findall(r"^\| (\d+) \| ([^|]+) \| `(\w+)` \|", chapter, re.MULTILINE)
        self.assertEqual(len(rows), 10 + 1 + 5)
        picture = bmp_of_8_bits(16, 8, [i % 40 for i in range(128)], colours(40))
        folder = self.make_folder("pictures", {f"{number}.bmp": picture for number in range(5)})
        target = self.path("out.spr")
        # Every integer field of the header has a different value, so that no two offsets can be confused.
        self.run_walkthrough("--size", "16x8", "--type", "4", "--render", "3", "--pictures", folder, "--save", target)
        data = read(target)
        output = self.inspect(target)
        self.assertEqual(len(data), 810 + 5 * (20 + 16 * 8))
        for place, kind, field in rows:
            in_frame = field in output["FrameHeader"]
            value, = struct.unpack_from(self.FIELDS[kind], data, int(place) + (810 if in_frame else 0))
            expected = output["FrameHeader"][field] if in_frame else output[field]
            with self.subTest(field=field):
                self.assertEqual(value.decode() if isinstance(value, bytes) else value, expected)
        self.assertEqual((output["SpriteType"], output["RenderMode"], output["FrameCount"]), (4, 3, 5))
        self.assertEqual(data[42:45], bytes(Sprite(data).palette[0]))


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]])
