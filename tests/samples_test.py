#!/usr/bin/env python3
"""Regenerates the samples and compares them with those in the tree: byte for byte, except JPEG files, whose bytes
depend on the library and which are compared by their size in pixels. Usage: samples_test.py MAKE_SAMPLES WALKTHROUGH
SAMPLES"""
import os
import struct
import subprocess
import sys
import tempfile
import unittest

MAKE_SAMPLES, WALKTHROUGH, SAMPLES = map(os.path.abspath, sys.argv[1:4])
FRAMES = 16
SIDE = 64
# The sprites, each with its render mode and the pictures from which the editor makes it.
SPRITES = {"explosion.spr": ("3", [f"explosion_{frame}.bmp" for frame in range(FRAMES)]),
           "palette.spr": ("0", ["palette.bmp"])}


def read(folder, name):
    with open(os.path.join(folder, name), "rb") as file:
        return file.read()


def bmp_pixels(data):
    """Size, depth and pixels of a bottom-up 24-bit BMP file whose rows need no padding."""
    start, = struct.unpack_from("<I", data, 10)
    width, height, _, bits = struct.unpack_from("<iiHH", data, 18)
    body = data[start:start + width * height * 3]
    return (width, height, bits), [body[i:i + 3] for i in range(0, len(body), 3)]


def jpeg_size(data):
    """Width and height of a baseline JPEG file; None for any other kind."""
    at = 2
    while data[at] == 0xFF:
        marker, length = data[at + 1], struct.unpack_from(">H", data, at + 2)[0]
        if marker == 0xC0:
            height, width = struct.unpack_from(">HH", data, at + 5)
            return width, height
        at += 2 + length
    return None


class Samples(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        subprocess.run([MAKE_SAMPLES, cls.folder.name], check=True)

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def test_file_names_match(self):
        self.assertEqual(sorted([*os.listdir(self.folder.name), *SPRITES]), sorted(os.listdir(SAMPLES)))
        self.assertEqual(len(os.listdir(SAMPLES)), FRAMES * 4 + 1 + len(SPRITES))

    def test_bytes_match_except_jpeg(self):
        for name in sorted(os.listdir(SAMPLES)):
            if not name.endswith((".jpg", ".spr")):
                self.assertEqual(read(self.folder.name, name), read(SAMPLES, name), name)

    def test_sprites_match_what_the_editor_makes(self):
        for name, (render, pictures) in SPRITES.items():
            with self.subTest(sprite=name), tempfile.TemporaryDirectory() as folder:
                selection = [argument for picture in pictures for argument in ("--select", picture)]
                subprocess.run([WALKTHROUGH, "--pictures", SAMPLES, "--filter", "bmp", *selection, "--render", render,
                                "--save", os.path.join(folder, name)], check=True, stdout=subprocess.DEVNULL,
                               env={**os.environ, "QT_QPA_PLATFORM": "offscreen"}, timeout=120)
                self.assertEqual(read(folder, name), read(SAMPLES, name))

    def test_jpeg_files_are_baseline_and_sizes_match(self):
        for frame in range(FRAMES):
            for folder in (SAMPLES, self.folder.name):
                self.assertEqual(jpeg_size(read(folder, f"explosion_{frame}.jpg")), (SIDE, SIDE))

    def test_each_frame_has_more_than_256_colours(self):
        for frame in range(FRAMES):
            form, pixels = bmp_pixels(read(SAMPLES, f"explosion_{frame}.bmp"))
            self.assertEqual(form, (SIDE, SIDE, 24))
            self.assertGreater(len(set(pixels)), 256, f"frame {frame}")

    def test_chart_has_8_bits_per_pixel(self):
        form, _ = bmp_pixels(read(SAMPLES, "palette.bmp"))
        self.assertEqual(form, (SIDE, SIDE, 8))

    def test_pcx_and_tga_pixels_equal_bmp_pixels(self):
        for frame in range(FRAMES):
            _, pixels = bmp_pixels(read(SAMPLES, f"explosion_{frame}.bmp"))
            # TGA, like BMP, stores rows from the bottom, blue first, after a header of 18 bytes.
            self.assertEqual(read(SAMPLES, f"explosion_{frame}.tga")[18:], b"".join(pixels))
            # PCX stores rows from the top, each as a line of red, green and blue, after a header of 128 bytes.
            rows = [pixels[at:at + SIDE] for at in range(0, len(pixels), SIDE)][::-1]
            lines = [bytes(pixel[channel] for pixel in row) for row in rows for channel in (2, 1, 0)]
            self.assertEqual(read(SAMPLES, f"explosion_{frame}.pcx")[128:], b"".join(lines))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
