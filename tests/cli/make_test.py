#!/usr/bin/env python3
"""Makes sprites from pictures of other tools, and checks them with a parser of its own, or against the scripted user of
the editor. Usage: make_test.py VARNOTH_CLI WALKTHROUGH SAMPLES [TEST...]"""
import math
import os
import random
import resource
import shutil
import signal
import struct
import subprocess
import threading
import time

from cli_test_case import CliTest, PROGRAM, WALKTHROUGH, main, parse_sprite, sprite_bytes

BLACK, BLUE, RED, GREEN, WHITE = (0, 0, 0), (0, 0, 255), (255, 0, 0), (0, 255, 0), (255, 255, 255)
FRAME_HEADER = 20


def distinct_colours(count, start=0):
    """Colours whose channels differ, in no order that a palette would have by chance."""
    return [((start + i) * 37 % 256, (start + i) // 16 * 13 % 256, (start + i) * 101 % 256) for i in range(count)]


def gif_bytes(width, height, palette, frames, transparent=None):
    """An animated GIF of uncompressed codes with a global colour table; its indices are known without a decoder."""
    depth = max(1, math.ceil(math.log2(len(palette))))
    table = b"".join(map(bytes, palette)) + bytes(3 * (2 ** depth - len(palette)))
    data = b"GIF89a" + struct.pack("<HHBBB", width, height, 0x80 | (depth - 1), 0, 0) + table
    size = max(2, depth)
    for indices in frames:
        flags, key = (1, transparent) if transparent is not None else (0, 0)
        data += b"!\xf9\4" + struct.pack("<BHBB", flags | 8, 5, key, 0)
        data += b"," + struct.pack("<HHHHB", 0, 0, width, height, 0) + bytes([size])
        bits, count = 0, 0
        codes = []
        for at, index in enumerate(indices):
            if at % (2 ** size - 2) == 0:
                codes.append(2 ** size)  # clear before the codes grow
            codes.append(index)
        for code in codes + [2 ** size + 1]:
            bits |= code << count
            count += size + 1
        packed = bits.to_bytes((count + 7) // 8, "little")
        for at in range(0, len(packed), 255):
            data += bytes([len(packed[at:at + 255])]) + packed[at:at + 255]
        data += b"\0"
    return data + b";"


def damaged_gif():
    """A GIF that is complete, but has codes that stand for nothing."""
    good = gif_bytes(4, 4, distinct_colours(16), [bytes(16)])
    return good[:-12] + b"\xff" * 10 + good[-2:]


def catmull_rom(distance):
    distance = abs(distance)
    if distance < 1:
        return 1.5 * distance ** 3 - 2.5 * distance ** 2 + 1
    return -0.5 * distance ** 3 + 2.5 * distance ** 2 - 4 * distance + 2 if distance < 2 else 0


def scaled_line(values, size):
    """A line of a picture at another length, in real numbers."""
    step = len(values) / size
    unit = max(1, step)
    line = []
    for at in range(size):
        weights = [catmull_rom((i + 0.5 - (at + 0.5) * step) / unit) for i in range(len(values))]
        total = sum(value * weight for value, weight in zip(values, weights)) / sum(weights)
        line.append(min(max(total, 0), 255))
    return line


class MakeTest(CliTest):
    def picture(self, name, pixels, width):
        """A picture file of RGB or RGBA pixels, written by ImageMagick."""
        raw = b"".join(map(bytes, pixels))
        kind = "rgba" if len(pixels[0]) == 4 else "rgb"
        self.write("raw", raw)
        self.tool("convert", "-size", f"{width}x{len(pixels) // width}", "-depth", "8", kind + ":raw", name)
        return name

    def photograph(self, name, seed, size="32x24"):
        self.tool("convert", "-size", size, "-seed", seed, "plasma:tomato-steelblue", name)
        return name

    def make(self, *arguments):
        """Runs make; returns header, palette and frames."""
        self.run_cli("make", "--force", "out.spr", *arguments)
        return parse_sprite(self.read("out.spr"))

    def colours(self, *arguments):
        """The colours of each frame's pixels."""
        _, palette, frames = self.make(*arguments)
        return [[tuple(palette[3 * i:3 * i + 3]) for i in indices] for _, _, _, indices in frames]

    def indices(self, *arguments):
        return [indices for _, _, _, indices in self.make(*arguments)[2]]

    def refused(self, *arguments):
        """Wrong usage: nothing is written. Returns the message."""
        done = self.run_cli("make", "refused.spr", *arguments, status=2)
        self.assertFalse(os.path.exists(self.path("refused.spr")))
        self.assertEqual(done.stdout, b"")
        return done.stderr.decode()


class Sprite(MakeTest):
    def test_defaults_are_those_of_the_new_dialog(self):
        header, _, frames = self.make(self.picture("a.png", [RED] * 15, 5))
        self.assertEqual((header["ident"], header["version"], header["type"], header["mode"]), (b"IDSP", 2, 2, 1))
        self.assertEqual((header["width"], header["height"], header["count"]), (5, 3, 1))
        self.assertEqual((header["beam"], header["sync"]), (0, 1))
        self.assertAlmostEqual(header["radius"], math.hypot(2.5, 1.5), places=6)
        self.assertEqual(frames[0][:3], ((-2, 2), 5, 3))

    def test_files_become_frames_in_the_order_given(self):
        for name, colour in (("a.png", RED), ("b.bmp", GREEN), ("c.tga", WHITE)):
            self.picture(name, [colour], 1)
        self.assertEqual(self.colours("c.tga", "a.png", "b.bmp", "a.png"), [[WHITE], [RED], [GREEN], [RED]])

    def test_folder_is_sorted_naturally(self):
        os.mkdir(self.path("folder"))
        for name, colour in (("f10.png", WHITE), ("f9.png", RED), ("F1.png", GREEN)):
            self.picture(os.path.join("folder", name), [colour], 1)
        self.assertEqual(self.colours("folder"), [[GREEN], [RED], [WHITE]])

    def test_animation_brings_all_frames(self):
        self.tool("convert", "-size", "2x2", "xc:red", "xc:lime", "xc:white", "a.gif")
        self.assertEqual(self.colours("a.gif"), [[RED] * 4, [GREEN] * 4, [WHITE] * 4])

    def test_picture_and_sprite_can_be_standard_streams(self):
        self.picture("a.png", [RED, GREEN], 2)
        done = self.run_cli("make", "-", "-", stdin=self.read("a.png"))
        self.run_cli("make", "a.spr", "a.png")
        self.assertEqual(done.stdout, self.read("a.spr"))

    def test_type_is_a_name_in_any_spelling_or_a_number(self):
        self.picture("a.png", [RED], 1)
        names = ("VP_PARALLEL_UPRIGHT", "FACING_UPRIGHT", "VP_PARALLEL", "ORIENTED", "VP_PARALLEL_ORIENTED")
        for number, name in enumerate(names):
            for text in (name, name.lower().replace("_", "-"), str(number)):
                self.assertEqual(self.make("a.png", "--type", text)[0]["type"], number)

    def test_mode_is_a_name_in_any_case_or_a_number(self):
        self.picture("a.png", [RED], 1)
        for number, name in enumerate(("NORMAL", "ADDITIVE", "INDEXALPHA", "ALPHATEST")):
            for text in (name, name.lower(), str(number)):
                self.assertEqual(self.make("a.png", "--mode", text)[0]["mode"], number)

    def test_sync(self):
        self.picture("a.png", [RED], 1)
        self.assertEqual(self.make("a.png", "--sync", "synchronized")[0]["sync"], 0)
        self.assertEqual(self.make("a.png", "--sync", "random")[0]["sync"], 1)

    def test_origin_is_set_for_all_frames(self):
        self.picture("a.png", [RED] * 8, 4)
        frames = self.make("a.png", "a.png", "--origin", "-3,7")[2]
        self.assertEqual([frame[0] for frame in frames], [(-3, 7), (-3, 7)])
        self.assertEqual(self.make("a.png", "--origin", "center")[2][0][0], (-2, 1))


class Size(MakeTest):
    def test_first_picture_sets_the_size(self):
        self.picture("a.png", [RED] * 6, 3)
        self.picture("b.png", [GREEN] * 8, 2)
        header, _, frames = self.make("a.png", "b.png")
        self.assertEqual((header["width"], header["height"]), (3, 2))
        self.assertEqual([frame[1:3] for frame in frames], [(3, 2), (3, 2)])

    def test_contain_adds_a_border(self):
        self.picture("a.png", [RED] * 8, 4)
        self.assertEqual(self.colours("a.png", "--size", "4x4", "--fit", "contain"),
                         [[BLACK] * 4 + [RED] * 8 + [BLACK] * 4])
        indices, = self.indices("a.png", "--size", "2x4", "--fit", "contain", "--mode", "alphatest")
        self.assertEqual([index == 255 for index in indices], [True] * 2 + [False] * 2 + [True] * 4)

    def test_crop_keeps_the_centre(self):
        self.picture("wide.png", [GREEN, RED, RED, GREEN] * 2, 4)
        self.assertEqual(self.colours("wide.png", "--size", "2x2", "--fit", "crop"), [[RED] * 4])
        self.picture("high.png", [GREEN, RED, RED, GREEN], 1)
        self.assertEqual(self.colours("high.png", "--size", "1x2", "--fit", "crop"), [[RED] * 2])

    def test_stretch_is_the_default_and_fills_the_frame(self):
        self.picture("a.png", [RED] * 8, 4)
        for options in ((), ("--fit", "stretch")):
            self.assertEqual(self.colours("a.png", "--size", "3x5", *options), [[RED] * 15])

    def test_scaling_is_catmull_rom(self):
        values = [random.Random(1).randrange(256) for _ in range(40)]
        self.picture("a.png", [(v, v, v) for v in values], 40)
        self.picture("b.png", [(v, v, v) for v in values], 1)
        for size in (7, 39, 41, 100):
            expected = scaled_line(values, size)
            for line in (self.colours("a.png", "--size", f"{size}x1"), self.colours("b.png", "--size", f"1x{size}")):
                for (red, green, blue), value in zip(line[0], expected, strict=True):
                    self.assertEqual((red, green), (green, blue))
                    self.assertLess(abs(red - value), 0.6)  # rounded to an integer, from rounded weights

    def test_colours_of_transparent_pixels_do_not_bleed(self):
        self.picture("a.png", [(*RED, 255), (*GREEN, 0)] * 8, 4)
        _, palette, frames = self.make("a.png", "--size", "2x2", "--mode", "alphatest")
        used = {tuple(palette[3 * i:3 * i + 3]) for i in frames[0][3] if i != 255}
        self.assertEqual(used, {RED})


class Palette(MakeTest):
    def test_up_to_256_colours_are_exact(self):
        colours = distinct_colours(256)
        self.picture("a.png", colours[:128], 16)
        self.picture("b.png", colours[128:], 16)
        for dither in ("none", "ordered", "floyd-steinberg", "blue-noise"):
            self.assertEqual(self.colours("a.png", "b.png", "--dither", dither), [colours[:128], colours[128:]])

    def test_up_to_255_colours_are_exact_in_alphatest(self):
        colours = distinct_colours(255) + [distinct_colours(1)[0]]
        self.picture("a.png", colours, 16)
        _, palette, frames = self.make("a.png", "--mode", "alphatest")
        self.assertEqual([tuple(palette[3 * i:3 * i + 3]) for i in frames[0][3]], colours)
        self.assertNotIn(255, frames[0][3])

    def test_colors_limits_the_entries_in_use(self):
        self.photograph("a.png", 1)
        for count in (2, 17, 256):
            self.assertLessEqual(len(set(self.indices("a.png", "--colors", count)[0])), count)
            _, palette, _ = self.make("a.png", "--colors", count)
            self.assertEqual(palette[3 * count:], bytes(768 - 3 * count))

    def test_colors_includes_the_transparent_entry_in_alphatest(self):
        self.picture("a.png", [RED, GREEN, WHITE, (0, 0, 9)], 2)
        self.assertEqual(len(set(self.indices("a.png", "--colors", 4, "--mode", "alphatest")[0])), 3)

    def test_each_dither_differs_from_none_within_the_palette(self):
        self.photograph("a.png", 1, "64x64")
        plain = self.indices("a.png", "--colors", 8)
        for dither in ("ordered", "floyd-steinberg", "blue-noise"):
            dithered = self.indices("a.png", "--colors", 8, "--dither", dither)
            self.assertNotEqual(dithered, plain)
            self.assertLess(max(dithered[0]), 8)
            self.assertEqual(self.indices("a.png", "--colors", 8, "--dither", dither, "--dither-strength", 0), plain)
            self.assertNotIn(self.indices("a.png", "--colors", 8, "--dither", dither, "--dither-strength", 50),
                             (plain, dithered))

    def check_palette(self, file, colours):
        """Makes a sprite with a file's palette, from a picture of colours near to those."""
        self.picture("near.png", [(r ^ 1, g ^ 1, b ^ 1) for r, g, b in colours], 1)
        _, palette, frames = self.make("near.png", "--palette", file)
        self.assertEqual(palette[:3 * len(colours)], b"".join(map(bytes, colours)), file)
        self.assertEqual(list(frames[0][3]), list(range(len(colours))), file)

    def test_palette_of_a_file(self):
        colours = distinct_colours(256)
        data = b"".join(map(bytes, colours))
        self.write("a.spr", sprite_bytes(1, 1, [b"\0"], palette=data))
        self.write("a.act", data)
        self.write("a.pal", b"JASC-PAL\r\n0100\r\n256\r\n" + b"".join(b"%d %d %d\r\n" % c for c in colours))
        self.write("a.gpl", b"GIMP Palette\nName: a\n#\n" + b"".join(b"%d %d %d\tx\n" % c for c in colours))
        self.picture("a.png", colours, 16)
        for file in ("a.spr", "a.act", "a.pal", "a.gpl", "a.png"):
            self.check_palette(file, colours)

    def test_palette_of_few_entries(self):
        colours = [(10, 20, 30), (200, 100, 50)]
        self.write("a.gpl", b"GIMP Palette\n10 20 30\n200 100 50\n")
        self.check_palette("a.gpl", colours)
        self.assertEqual(self.make("near.png", "--palette", "a.gpl")[1][6:], bytes(762))

    def test_entry_255_of_a_file_is_left_to_transparency(self):
        self.write("a.act", bytes(765) + bytes(RED))
        self.picture("a.png", [(*RED, 255), (*RED, 0)], 2)
        _, palette, frames = self.make("a.png", "--palette", "a.act", "--mode", "alphatest")
        self.assertEqual((palette[765:], list(frames[0][3])), (bytes(RED), [0, 255]))
        self.assertEqual(list(self.make("a.png", "--palette", "a.act")[2][0][3]), [255, 0])

    def test_file_without_a_palette(self):
        self.picture("a.png", [RED], 1)
        self.write("text", b"no palette")
        self.assertIn("text", self.fails("make", "out.spr", "a.png", "--palette", "text"))
        self.assertIn("nothing", self.fails("make", "out.spr", "a.png", "--palette", "nothing"))

    def test_alpha_is_blended_over_black_without_transparency(self):
        self.picture("a.png", [(200, 100, 50, 128), (9, 9, 9, 0), (7, 8, 9, 255)], 3)
        for mode in ("normal", "additive"):
            self.assertEqual(self.colours("a.png", "--mode", mode), [[(100, 50, 25), BLACK, (7, 8, 9)]])


class StillScene(MakeTest):
    """A dot moves over a photograph; then another photograph follows."""

    SIDE = 48
    DITHERS = ("blue-noise", "floyd-steinberg")

    def setUp(self):
        super().setUp()
        self.tool("convert", "-size", f"{self.SIDE}x{self.SIDE}", "-seed", "1", "plasma:", "still.png")
        for i in range(5):
            self.tool("convert", "still.png", "-fill", "#80a010", "-draw",
                      f"circle {8 * i + 4},{6 * i + 4} {8 * i + 8},{6 * i + 4}", f"{i}.png")
        self.tool("convert", "-size", f"{self.SIDE}x{self.SIDE}", "-seed", "2", "plasma:", "5.png")
        self.names = [f"{i}.png" for i in range(6)]

    def changed(self, first, second):
        """Whether each pixel differs."""
        pixels = [self.tool("convert", name, "-depth", "8", "rgb:-") for name in (first, second)]
        return [pixels[0][3 * i:3 * i + 3] != pixels[1][3 * i:3 * i + 3] for i in range(self.SIDE ** 2)]

    def test_what_stands_still_does_not_flicker(self):
        for dither in self.DITHERS:
            frames = self.indices(*self.names[:5], "--colors", 16, "--dither", dither)
            for i in range(4):
                moved = self.changed(self.names[i], self.names[i + 1])
                self.assertLess(sum(moved), 200)
                for j, change in enumerate(moved):
                    self.assertTrue(change or frames[i][j] == frames[i + 1][j], (dither, i, j))

    def test_new_scene_is_dithered_on_its_own(self):
        self.make(*self.names, "--colors", 16)
        self.write("palette.spr", self.read("out.spr"))
        for dither in self.DITHERS:
            options = ("--palette", "palette.spr", "--dither", dither)
            alone, = self.indices("5.png", *options)
            self.assertEqual(self.indices(*self.names, *options)[5], alone)

    def test_threads_do_not_change_the_bytes(self):
        for dither in self.DITHERS:
            results = set()
            for jobs in (1, 2, 6):
                self.make(*self.names, "--colors", 16, "--dither", dither, "--jobs", jobs)
                results.add(self.read("out.spr"))
            self.assertEqual(len(results), 1)

    def test_damaged_picture_does_not_hold_up_the_next_one(self):
        self.make("0.png", "--colors", 16)
        self.tool("convert", "-size", "3000x3000", "-seed", "3", "plasma:", "-depth", "8", "large.png")
        self.write("large.png", self.read("large.png")[:-60000])  # fails after the others have begun
        line = self.fails("make", "new.spr", "--palette", "out.spr", "--dither", "blue-noise", "--jobs", 6, "0.png",
                          "large.png", "1.png", "2.png")
        self.assertIn("large.png", line)


class Transparency(MakeTest):
    def test_alphatest_gives_255_to_transparent_pixels_only(self):
        generator = random.Random(2)
        for name in ("a.png", "b.png"):
            self.picture(name, [tuple(generator.randrange(256) for _ in range(4)) for _ in range(4096)], 64)
        _, palette, frames = self.make("a.png", "b.png", "--mode", "alphatest")
        self.assertEqual(tuple(palette[765:]), BLUE)
        for name, (_, _, _, indices) in zip(("a.png", "b.png"), frames):
            alpha = self.tool("convert", name, "-depth", "8", "rgba:-")[3::4]
            self.assertEqual(bytes(index == 255 for index in indices), bytes(value < 128 for value in alpha))

    def test_blue_pixels_are_not_transparent(self):
        self.picture("a.png", [(*BLUE, 255), (*BLUE, 0)], 2)
        _, palette, frames = self.make("a.png", "--mode", "alphatest")
        self.assertNotEqual(frames[0][3][0], 255)
        self.assertEqual(frames[0][3][1], 255)
        self.assertEqual(tuple(palette[3 * frames[0][3][0]:][:3]), BLUE)

    def transparent(self, *arguments):
        indices, = self.indices(*arguments, "--mode", "alphatest")
        return [index == 255 for index in indices]

    def test_key_colour(self):
        self.picture("a.png", [RED, GREEN, (255, 0, 1), RED], 4)
        self.assertEqual(self.transparent("a.png", "--transparent", "#ff0000"), [True, False, False, True])

    def test_corner_is_the_colour_of_each_pictures_first_pixel(self):
        self.picture("a.png", [RED, GREEN, RED], 3)
        self.picture("b.png", [GREEN, GREEN, RED], 3)
        frames = self.indices("a.png", "b.png", "--transparent", "corner", "--mode", "alphatest")
        self.assertEqual([[index == 255 for index in frame] for frame in frames],
                         [[True, False, True], [True, True, False]])

    def test_none_ignores_alpha(self):
        self.picture("a.png", [(*RED, 1), (*GREEN, 255)], 2)
        self.assertEqual(self.transparent("a.png", "--transparent", "none"), [False, False])
        self.assertEqual(self.colours("a.png", "--transparent", "none"), [[RED, GREEN]])

    def test_picture_without_an_opaque_pixel(self):
        self.picture("a.png", [(1, 2, 3, 0)] * 4, 2)
        self.assertEqual(self.indices("a.png", "--mode", "alphatest"), [bytes([255] * 4)])


class IndexAlpha(MakeTest):
    def index_alpha(self, *arguments):
        _, palette, frames = self.make(*arguments, "--mode", "indexalpha")
        return palette, [list(indices) for _, _, _, indices in frames]

    def test_grey_becomes_the_index_and_the_colour_white(self):
        values = list(range(256))
        self.picture("a.png", [(v, v, v) for v in values], 16)
        palette, frames = self.index_alpha("a.png")
        self.assertEqual(frames, [values])
        self.assertEqual(palette, bytes(v for v in values for _ in range(3)))

    def test_alpha_becomes_the_index_and_the_colour_stays(self):
        self.picture("a.png", [(200, 100, 0, alpha) for alpha in (0, 1, 127, 255)], 2)
        self.picture("b.png", [(200, 100, 0, 255)] * 4, 2)
        palette, frames = self.index_alpha("a.png", "b.png")
        self.assertEqual(frames, [[0, 1, 127, 255], [255] * 4])
        self.assertEqual(tuple(palette[765:]), (200, 100, 0))
        self.assertEqual(tuple(palette[3 * 51:][:3]), (40, 20, 0))

    def test_colour_is_the_mean_of_what_is_visible(self):
        self.picture("a.png", [(255, 0, 0, 100), (0, 0, 255, 100), (0, 255, 0, 0)], 3)
        self.assertEqual(tuple(self.index_alpha("a.png")[0][765:]), (128, 0, 128))

    def test_color_option(self):
        self.picture("a.png", [(v, v, v) for v in (0, 9, 255)], 3)
        palette, frames = self.index_alpha("a.png", "--color", "#102030")
        self.assertEqual((tuple(palette[765:]), frames), ((16, 32, 48), [[0, 9, 255]]))

    def test_border_of_grey_pictures_is_transparent(self):
        self.picture("a.png", [(90, 90, 90)] * 2, 2)
        self.assertEqual(self.index_alpha("a.png", "--size", "2x3", "--fit", "contain")[1], [[0, 0, 90, 90, 0, 0]])


class Gif(MakeTest):
    PALETTE = distinct_colours(16, 40)
    FRAMES = [bytes((x * 7 + f) % 15 for x in range(24)) for f in range(3)]

    def test_common_colour_table_and_indices_are_kept(self):
        self.write("a.gif", gif_bytes(6, 4, self.PALETTE, self.FRAMES))
        for options in ((), ("--mode", "alphatest"), ("--size", "6x4")):
            _, palette, frames = self.make("a.gif", *options)
            self.assertEqual(palette[:48], b"".join(map(bytes, self.PALETTE)))
            self.assertEqual([frame[3] for frame in frames], self.FRAMES)

    def test_options_that_ask_for_other_colours_are_obeyed(self):
        self.write("a.gif", gif_bytes(6, 4, self.PALETTE, self.FRAMES))
        self.assertLessEqual(max(max(frame) for frame in self.indices("a.gif", "--colors", "4")), 3)
        self.assertEqual(self.make("a.gif", "--size", "3x2")[2][0][1:3], (3, 2))
        frame = self.colours("a.gif", "--transparent", "#%02x%02x%02x" % self.PALETTE[3])[0]
        self.assertNotIn(self.PALETTE[3], frame)

    def test_transparent_index_moves_to_255_in_alphatest(self):
        self.write("a.gif", gif_bytes(6, 4, self.PALETTE, self.FRAMES, transparent=2))
        for indices, original in zip(self.indices("a.gif", "--mode", "alphatest"), self.FRAMES, strict=True):
            self.assertEqual([index == 255 for index in indices], [index == 2 for index in original])

    def test_transparent_index_becomes_black_in_additive(self):
        self.write("a.gif", gif_bytes(6, 4, self.PALETTE, self.FRAMES, transparent=2))
        for colours, original in zip(self.colours("a.gif"), self.FRAMES, strict=True):
            self.assertEqual(colours, [BLACK if i == 2 else self.PALETTE[i] for i in original])

    def test_index_255_is_free_for_transparency_in_alphatest(self):
        palette = distinct_colours(256)
        frame = bytes(range(240, 256))
        self.write("a.gif", gif_bytes(4, 4, palette, [frame]))
        self.assertEqual(self.indices("a.gif"), [frame])
        self.assertNotIn(255, self.indices("a.gif", "--mode", "alphatest")[0])
        self.write("b.gif", gif_bytes(4, 4, palette, [frame], transparent=255))
        self.assertEqual(self.indices("b.gif", "--mode", "alphatest"), [frame])


class Editor(MakeTest):
    def walkthrough(self, folder, kind, *options):
        """What the editor saves for all pictures of that kind in a folder."""
        environment = {**os.environ, "QT_QPA_PLATFORM": "offscreen"}
        subprocess.run([WALKTHROUGH, "--pictures", folder, "--filter", kind, "--save", "editor.spr", *options],
                       cwd=self.folder, env=environment, check=True, capture_output=True, timeout=120)
        return self.read("editor.spr")

    def folder_of(self, kind, seed):
        """A folder of random pictures of one size, some photographs and some drawings."""
        generator = random.Random(seed)
        folder = f"{kind}{seed}"
        os.mkdir(self.path(folder))
        size = f"{generator.randrange(1, 70)}x{generator.randrange(1, 70)}"
        for i in range(generator.randrange(1, 6)):
            what = generator.choice((["plasma:red-lime"], ["plasma:black-white", "-colors", "12"],
                                     ["gradient:navy-gold"], ["xc:purple"]))
            depth = {"bmp": ["-type", "TrueColor"], "tga": [], "pcx": []}[kind]
            target = {"bmp": "BMP3:"}.get(kind, "") + os.path.join(folder, f"p{i + 8}.{kind}")
            self.tool("convert", "-size", size, "-seed", seed * 10 + i, *what, *depth, target)
        return folder

    def check(self, folder, kind, walkthrough=(), cli=()):
        expected = self.walkthrough(folder, kind, *walkthrough)
        self.run_cli("make", "--force", "out.spr", "--palette", "editor", folder, *cli)
        self.assertEqual(self.read("out.spr"), expected, (folder, cli))

    def test_random_folders_give_the_editors_bytes(self):
        for kind in ("bmp", "tga", "pcx"):
            for seed in range(3):
                self.check(self.folder_of(kind, seed), kind)

    def test_jpeg_files_give_the_editors_bytes(self):
        os.mkdir(self.path("jpg"))
        for i in range(2):
            self.photograph(f"jpg/{i}.jpg", i)
        self.check("jpg", "jpg")

    def test_size_type_and_mode_are_those_of_the_new_dialog(self):
        self.check(self.folder_of("bmp", 5), "bmp",
                   ("--size", "20x30", "--choice", "resize", "--type", "4", "--render", "0"),
                   ("--size", "20x30", "--type", "4", "--mode", "normal"))

    def drawings(self):
        """A folder of pictures whose colours stay exact, so that the transparent one is found in the palette."""
        os.mkdir(self.path("drawings"))
        self.picture("BMP3:drawings/1.bmp", [RED, GREEN, WHITE, BLUE], 2)
        self.picture("BMP3:drawings/2.bmp", [GREEN, RED, BLUE, BLUE], 2)
        return "drawings"

    def entries(self):
        palette = parse_sprite(self.read("out.spr"))[1]
        return [tuple(palette[i:i + 3]) for i in range(0, 768, 3)]

    def test_transparent_colour_is_the_last_corner_by_default(self):
        folder = self.drawings()
        for mode in ("0", "1", "2", "3"):
            self.check(folder, "bmp", ("--render", mode), ("--mode", mode))
            self.assertEqual(GREEN in self.entries(), mode in "01")  # the editor loses it from the palette

    def test_transparent_colour_can_be_picked(self):
        self.check(self.drawings(), "bmp", ("--render", "3", "--pick", "1,0"),
                   ("--mode", "3", "--transparent", "#ff0000"))
        self.assertEqual((RED in self.entries(), GREEN in self.entries()), (False, True))

    def test_order_of_the_files_is_kept(self):
        self.picture("BMP3:b.bmp", [RED] * 4, 2)
        self.picture("BMP3:a.bmp", [GREEN] * 4, 2)
        self.assertEqual(self.colours("--palette", "editor", "b.bmp", "a.bmp"), [[RED] * 4, [GREEN] * 4])

    def test_pictures_that_the_editor_refuses_are_failures(self):
        self.tool("convert", "-size", "257x2", "xc:red", "BMP3:large.bmp")
        self.tool("convert", "-size", "2x2", "xc:red", "BMP3:small.bmp")
        self.tool("convert", "-size", "3x2", "xc:red", "BMP3:other.bmp")
        self.tool("convert", "small.bmp", "small.png")
        self.tool("convert", "small.bmp", "small.tga")
        self.write("broken.bmp", b"BM")
        make = ("make", "out.spr", "--palette", "editor")
        self.assertIn("large.bmp: the editor refuses it", self.fails(*make, "large.bmp"))
        self.assertIn("other.bmp: the editor refuses it", self.fails(*make, "small.bmp", "other.bmp"))
        self.assertIn("broken.bmp: the editor refuses it", self.fails(*make, "broken.bmp"))
        self.assertIn("small.png: the editor reads only", self.fails(*make, "small.png"))
        self.assertIn("small.tga: the editor does not import", self.fails(*make, "small.bmp", "small.tga"))
        self.assertIn("no.bmp: no such file", self.fails(*make, "no.bmp"))
        os.mkdir(self.path("empty"))
        self.assertIn("empty: no pictures", self.fails(*make, "empty"))
        self.assertFalse(os.path.exists(self.path("out.spr")))

    def test_options_that_the_editor_lacks_are_wrong_usage(self):
        self.tool("convert", "-size", "2x2", "xc:red", "BMP3:a.bmp")
        for options in (("--fit", "crop"), ("--sync", "random"), ("--origin", "center"), ("--colors", "9"),
                        ("--dither", "none"), ("--dither-strength", "9"), ("--color", "#112233"),
                        ("--transparent", "#112233"), ("--transparent", "corner", "--mode", "alphatest")):
            self.assertIn(options[0], self.refused("--palette", "editor", "a.bmp", *options))


class Usage(MakeTest):
    def test_values_that_are_not_accepted(self):
        self.picture("a.png", [RED], 1)
        for option, *values in (("--size", "3", "0x3", "3x-1", "70000x1", "60000x60000", "3x3x3", "axb"),
                                ("--fit", "fill", ""), ("--type", "5", "-1", "VP"), ("--mode", "4", "ALPHA"),
                                ("--sync", "2", "never"), ("--origin", "1", "1,2,3", "left", "9999999999,0"),
                                ("--colors", "1", "257", "many"), ("--dither", "noise"),
                                ("--dither-strength", "-1", "101"), ("--jobs", "0", "257", "x"),
                                ("--transparent", "red", "#12345", "#1234567", "#12345g", "#-12345")):
            for value in values:
                self.assertIn(option + ": ", self.refused("a.png", option, value))

    def test_options_that_contradict_each_other(self):
        self.picture("a.png", [RED], 1)
        self.assertIn("--color", self.refused("a.png", "--color", "#112233"))
        self.assertIn("--color", self.refused("a.png", "--mode", "indexalpha", "--color", "red"))
        self.assertIn("--colors", self.refused("a.png", "--colors", "9", "--palette", "a.png"))
        for options in (("--colors", "9"), ("--palette", "a.png"), ("--dither", "none"), ("--dither-strength", "9")):
            self.assertIn(options[0], self.refused("a.png", "--mode", "indexalpha", *options))

    def test_target_and_picture_are_required(self):
        self.run_cli("make", status=2)
        self.run_cli("make", "out.spr", status=2)


class Failures(MakeTest):
    def test_pictures_that_cannot_be_read(self):
        self.photograph("good.png", 1)
        self.write("text.png", b"no picture")
        self.write("bad.gif", damaged_gif())
        os.mkdir(self.path("empty"))
        self.assertIn("no.png", self.fails("make", "out.spr", "good.png", "no.png"))
        self.assertIn("text.png", self.fails("make", "out.spr", "text.png"))
        self.assertIn("bad.gif", self.fails("make", "out.spr", "good.png", "bad.gif"))
        self.assertIn("empty", self.fails("make", "out.spr", "empty"))
        self.assertEqual(sorted(os.listdir(self.folder)), ["bad.gif", "empty", "good.png", "text.png"])

    def test_first_damaged_picture_is_named_whatever_the_threads(self):
        self.photograph("good.png", 1, "200x200")
        for i in range(5):
            self.write(f"bad{i}.gif", damaged_gif())
        for jobs in (1, 2, 7):
            line = self.fails("make", "out.spr", "--size", "9x9", "--jobs", jobs, "good.png",
                              *(f"bad{i}.gif" for i in range(5)))
            self.assertIn("bad0.gif", line)

    def test_existing_file_is_replaced_only_with_force(self):
        self.picture("a.png", [RED], 1)
        self.write("out.spr", b"mine")
        self.assertIn("out.spr", self.fails("make", "out.spr", "a.png"))
        self.assertEqual(self.read("out.spr"), b"mine")
        self.run_cli("make", "--force", "out.spr", "a.png")
        self.assertEqual(self.read("out.spr")[:4], b"IDSP")

    def test_target_is_refused_before_pictures_are_read(self):
        self.write("out.spr", b"mine")
        self.assertIn("out.spr", self.fails("make", "out.spr", "no.png"))

    def test_full_device(self):
        self.picture("a.png", [RED], 1)
        self.assertIn("/dev/full", self.fails("make", "/dev/full", "a.png"))

    def test_full_disk_leaves_the_target_as_it_was(self):
        self.picture("a.png", [RED] * 10000, 100)
        self.write("out.spr", b"mine")
        before = sorted(os.listdir(self.folder))

        def limit():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)  # writing then fails instead
            resource.setrlimit(resource.RLIMIT_FSIZE, (5000, 5000))

        self.assertIn("out.spr", self.fails("make", "--force", "out.spr", "a.png", preexec_fn=limit))
        self.assertEqual(self.read("out.spr"), b"mine")
        self.assertEqual(sorted(os.listdir(self.folder)), before)

    def test_kill_during_the_write_leaves_the_target_as_it_was(self):
        self.picture("a.png", [RED] * 10000, 100)
        self.write("out.spr", b"mine")
        self.run_cli("make", "--force", "out.spr", "a.png", status=-signal.SIGXFSZ,
                     preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (5000, 5000)))
        self.assertEqual(self.read("out.spr"), b"mine")

    def test_two_at_once_leave_the_sprite_of_one(self):
        expected = []
        for name, seed in (("a.png", 1), ("b.png", 2)):
            self.photograph(name, seed, "64x64")
            self.run_cli("make", name + ".spr", name)
            expected.append(self.read(name + ".spr"))
        for _ in range(10):
            both = [subprocess.Popen([PROGRAM, "make", "--force", "out.spr", name], cwd=self.folder)
                    for name in ("a.png", "b.png")]
            self.assertEqual([process.wait(timeout=60) for process in both], [0, 0])
            self.assertIn(self.read("out.spr"), expected)

    def test_one_of_two_at_once_without_force_fails(self):
        self.photograph("a.png", 1)
        for _ in range(10):
            both = [subprocess.Popen([PROGRAM, "make", "out.spr", "a.png"], cwd=self.folder, stderr=subprocess.PIPE)
                    for _ in range(2)]
            for process in both:
                process.communicate(timeout=60)
            self.assertEqual(sorted(process.returncode for process in both), [0, 1])
            os.remove(self.path("out.spr"))


class Resources(MakeTest):
    def test_threads_do_not_change_the_bytes(self):
        for i in range(5):
            self.photograph(f"{i}.png", i, f"{40 + i}x30")
        self.tool("convert", "0.png", "1.png", "2.png", "a.gif")
        for i in (1, 3):
            self.tool("convert", f"{i}.png", "-alpha", "set", "-channel", "A", "-evaluate", "multiply", i / 5,
                      f"{i}.png")
        for options in ((), ("--mode", "alphatest", "--fit", "contain"), ("--mode", "indexalpha"),
                        ("--colors", "9", "--dither", "floyd-steinberg")):
            results = set()
            for jobs in (1, 2, 5):
                self.make("4.png", "a.gif", *(f"{i}.png" for i in range(5)), "--jobs", jobs, *options)
                results.add(self.read("out.spr"))
            self.assertEqual(len(results), 1)

    def peak(self, count):
        """Most memory that making `count` frames of 16 by 16 from large pictures takes, in KiB."""
        names = []
        for i in range(count):
            names.append(f"{i}.png")
            if not os.path.exists(self.path(names[-1])):
                shutil.copy(self.path("large.png"), self.path(names[-1]))
        with subprocess.Popen([PROGRAM, "make", "--force", "--jobs", "2", "--size", "16x16", "out.spr", *names],
                              cwd=self.folder) as process:
            _, status, usage = os.wait4(process.pid, 0)
            process.returncode = os.waitstatus_to_exitcode(status)
        self.assertEqual(process.returncode, 0)
        return usage.ru_maxrss

    def test_memory_does_not_grow_with_the_pictures(self):
        self.photograph("large.png", 1, "512x512")
        # 112 pictures more would take 112 MiB, their frames take 28 KiB.
        self.assertLess(self.peak(128) - self.peak(16), 16 * 1024)

    def make_slowly(self, *options):
        """Makes a sprite on a terminal of a picture that takes longer to read than a bar stays hidden, and another."""
        self.photograph("a.png", 1)
        os.mkfifo(self.path("slow.png"))

        def write_each_time():
            for _ in ("listing", "size", "counting colours", "making frames"):
                with open(self.path("slow.png"), "wb") as pipe:  # waits for the program to open it
                    os.mkfifo(self.path("next"))
                    os.replace(self.path("next"), self.path("slow.png"))  # for the next time
                    time.sleep(0.6)
                    pipe.write(self.read("a.png"))

        writer = threading.Thread(target=write_each_time)
        writer.start()
        output = self.on_terminal("make", "out.spr", "slow.png", "a.png", "--jobs", "1", *options)
        writer.join()
        os.remove(self.path("slow.png"))
        return output

    def test_bar_on_a_terminal_is_removed_at_the_end(self):
        half, whole = b"#" * 15 + b"." * 15, b"#" * 30
        bars = b"".join(b"\r%s [%s]  50 %%\r%s [%s] 100 %%\r\x1b[K" % (task, half, task, whole)
                        for task in (b"Counting colours", b"Making frames"))
        self.assertEqual(self.make_slowly(), bars)
        os.remove(self.path("out.spr"))
        self.assertEqual(self.make_slowly("-q"), b"")

    def test_nothing_is_printed(self):
        self.photograph("a.png", 1)
        for options in ((), ("--quiet",)):
            done = self.run_cli("make", "--force", "out.spr", "a.png", *options)
            self.assertEqual((done.stdout, done.stderr), (b"", b""))


if __name__ == "__main__":
    main()
