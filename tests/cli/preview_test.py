#!/usr/bin/env python3
"""Runs `preview`: reads GIF files and contact sheets with independent parsers, ImageMagick and giflib's tools, and the
frames in a terminal with a parser of its escape sequences.
Usage: preview_test.py VARNOTH_CLI WALKTHROUGH SAMPLES [TEST...]"""
import os
import random
import re
import struct

from cli_test_case import SAMPLES, CliTest, main, parse_sprite, sprite_bytes
from picture_parsers import Gif, parse_png

SOURCE = random.Random(1)
PALETTE = bytes(SOURCE.randrange(256) for _ in range(768))

# Of a contact sheet.
MARGIN, DIGIT_HEIGHT, GROUND, INK = 4, 7, bytes((0x30, 0x30, 0x30, 255)), bytes((255, 255, 255, 255))
SEVEN = ("#####", "    #", "   # ", "  #  ", "  #  ", "  #  ", "  #  ")


def noise(size):
    return bytes(SOURCE.randrange(256) for _ in range(size))


def rows_of(pixels, width):
    return [pixels[at:at + width] for at in range(0, len(pixels), width)]


def magnified(rows, scale, size=1):
    return [b"".join(row[x:x + size] * scale for x in range(0, len(row), size)) for row in rows for _ in range(scale)]


def colour_of(palette, index):
    return palette[3 * index:3 * index + 3]


def over(mode, palette, index, background):
    """The colour of an index over an opaque background."""
    colour = colour_of(palette, index)
    if mode == 1:
        return bytes(min(255, a + b) for a, b in zip(colour, background))
    if mode == 2:
        return bytes((a * index + b * (255 - index) + 127) // 255 for a, b in zip(palette[765:], background))
    return background if mode == 3 and index == 255 else colour


def with_frames(frames, mode=0):
    """A sprite from (origin, width, height, indices) of each frame."""
    data = sprite_bytes(frames[0][1], frames[0][2], [], palette=PALETTE, mode=mode)
    data = data[:28] + struct.pack("<i", len(frames)) + data[32:]
    return data + b"".join(struct.pack("<5i", 0, *origin, width, height) + indices
                           for origin, width, height, indices in frames)


class Preview(CliTest):
    def preview(self, data, target, *options, **arguments):
        return self.run_cli("preview", self.write("a.spr", data), target, *options, **arguments)

    def gif(self, data, *options):
        self.preview(data, "out.gif", "--force", *options)
        return Gif(self.read("out.gif"))

    def sheet(self, data, *options):
        self.preview(data, "out.png", "--force", *options)
        return parse_png(self.read("out.png"))

    def colours(self, gif, number):
        """The rows of a frame as red, green and blue."""
        return [b"".join(colour_of(gif.palette, index) for index in row) for row in gif.frames[number]["rows"]]


class GifFile(Preview):
    def test_indices_and_palette_are_the_sprites(self):
        frames = [noise(35) for _ in range(5)]
        gif = self.gif(sprite_bytes(7, 5, frames, palette=PALETTE))
        self.assertEqual((gif.width, gif.height, gif.palette, gif.loops), (7, 5, PALETTE, 0))
        for frame, indices in zip(gif.frames, frames, strict=True):
            self.assertEqual(frame, {"left": 0, "top": 0, "width": 7, "height": 5, "rows": rows_of(indices, 7),
                                     "delay": 10, "disposal": 2, "transparent": None})

    def test_sample_is_unchanged(self):
        self.run_cli("preview", os.path.join(SAMPLES, "explosion.spr"), "out.gif")
        gif = Gif(self.read("out.gif"))
        with open(os.path.join(SAMPLES, "explosion.spr"), "rb") as file:
            _, palette, frames = parse_sprite(file.read())
        self.assertEqual(gif.palette, palette)
        self.assertEqual([frame["rows"] for frame in gif.frames],
                         [rows_of(indices, width) for _, width, _, indices in frames])

    def test_other_programs_see_the_same_pixels(self):
        frames = [noise(20) for _ in range(3)]
        self.gif(sprite_bytes(5, 4, frames, palette=PALETTE), "--fps", "20")
        pixels = self.tool("convert", "out.gif", "-depth", "8", "rgb:-")
        self.assertEqual(pixels, b"".join(colour_of(PALETTE, index) for frame in frames for index in frame))
        self.assertEqual(self.tool("identify", "-format", "%T %D,", "out.gif"), b"5 Background," * 3)
        text = self.tool("giftext", "out.gif").decode()
        self.assertEqual(len(re.findall(r"^Image #\d", text, re.MULTILINE)), 3)
        self.assertIn("DelayTime: 5", text)

    def test_only_alphatest_has_a_transparent_index(self):
        for mode in range(4):
            gif = self.gif(sprite_bytes(1, 1, [b"\0"], palette=PALETTE, mode=mode))
            self.assertEqual(gif.frames[0]["transparent"], 255 if mode == 3 else None)

    def test_rate_is_rounded_to_hundredths_of_a_second(self):
        cases = {"100": (1, None), "50": (2, None), "30": (3, "33.33"), "24": (4, "25.00"), "2.5": (40, None),
                 "60": (2, "50.00"), "0.01": (10000, None), "7": (14, "7.14")}
        for rate, (delay, actual) in cases.items():
            done = self.preview(sprite_bytes(1, 1, [b"\0"]), "out.gif", "--force", "--fps", rate)
            with self.subTest(rate):
                self.assertEqual(Gif(self.read("out.gif")).frames[0]["delay"], delay)
                note = f"GIF counts in hundredths of a second: the rate is {actual} frames per second.\n"
                self.assertEqual(done.stderr.decode(), note if actual else "")

    def test_quiet_hides_the_note(self):
        done = self.preview(sprite_bytes(1, 1, [b"\0"]), "out.gif", "--fps", "30", "--quiet")
        self.assertEqual(done.stderr, b"")

    def test_rates_out_of_range(self):
        for rate in ("0", "-1", "101", "0.001", "nan", "inf", "x", "1,5", "10x"):
            self.preview(sprite_bytes(1, 1, [b"\0"]), "out.gif", "--fps=" + rate, status=2)

    def test_scale(self):
        frame = noise(12)
        gif = self.gif(sprite_bytes(4, 3, [frame], palette=PALETTE), "--scale", "3")
        self.assertEqual((gif.width, gif.height), (12, 9))
        self.assertEqual(gif.frames[0]["rows"], magnified(rows_of(frame, 4), 3))

    def test_scale_out_of_range(self):
        for scale in ("0", "65", "-1", "1.5"):
            self.preview(sprite_bytes(1, 1, [b"\0"]), "out.gif", "--scale=" + scale, status=2)

    def test_origins_place_frames(self):
        gif = self.gif(with_frames([((-2, 2), 4, 4, noise(16)), ((0, 5), 3, 2, noise(6))]), "--scale", "2")
        self.assertEqual((gif.width, gif.height), (10, 14))
        places = [(frame["left"], frame["top"], frame["width"], frame["height"]) for frame in gif.frames]
        self.assertEqual(places, [(0, 6, 8, 8), (4, 0, 6, 4)])

    def test_background_shows_what_the_mode_draws(self):
        frame = bytes(range(256))
        background = bytes((10, 200, 90))
        for mode in range(4):
            gif = self.gif(sprite_bytes(16, 16, [frame], palette=PALETTE, mode=mode), "--background", "#0aC85a")
            expected = b"".join(over(mode, PALETTE, index, background) for index in frame)
            self.assertEqual(self.colours(gif, 0), rows_of(expected, 48), mode)
            self.assertIsNone(gif.frames[0]["transparent"])

    def test_background_fills_what_a_frame_leaves(self):
        gif = self.gif(with_frames([((0, 0), 2, 1, b"\0\0"), ((0, 0), 1, 1, b"\0")]), "--background", "#010203")
        self.assertEqual(self.colours(gif, 1), [colour_of(PALETTE, 0) + bytes((1, 2, 3))])

    def test_checkers_are_squares_of_8_pixels(self):
        gif = self.gif(sprite_bytes(20, 10, [bytes([255]) * 200], mode=3), "--background", "checkers")
        light, dark = bytes([0x99] * 3), bytes([0x66] * 3)
        rows = [light * 8 + dark * 8 + light * 4] * 8 + [dark * 8 + light * 8 + dark * 4] * 2
        self.assertEqual(self.colours(gif, 0), rows)

    def test_more_than_256_colours_over_checkers(self):
        other_squares = bytes((index + 8) % 256 for index in range(256))
        data = sprite_bytes(16, 32, [bytes(range(256)) + other_squares], palette=PALETTE, mode=1)
        line = self.fails("preview", self.write("a.spr", data), "out.gif", "--background", "checkers")
        self.assertIn("a.spr: a GIF has too few colours for this background", line)
        self.assertFalse(os.path.exists(self.path("out.gif")))

    def test_exactly_256_colours_over_a_background(self):
        data = sprite_bytes(16, 16, [bytes(range(256))], palette=PALETTE)
        self.assertEqual(len(self.gif(data, "--background", "#000000").frames), 1)

    def test_backgrounds_that_are_no_colours(self):
        for text in ("red", "#12345", "#1234567", "#12345g", "checker", "112233"):
            self.preview(sprite_bytes(1, 1, [b"\0"]), "out.gif", "--background", text, status=2)


class ContactSheet(Preview):
    def test_layout(self):
        """Eight frames of 30 by 20 pixels: three columns fit into the smallest square."""
        frames = [noise(600) for _ in range(8)]
        width, height, _, rows = self.sheet(sprite_bytes(30, 20, frames, palette=PALETTE))
        step_x, step_y = 30 + MARGIN, 20 + MARGIN + DIGIT_HEIGHT + MARGIN
        self.assertEqual((width, height), (3 * step_x + MARGIN, 3 * step_y + MARGIN))
        for number, frame in enumerate(frames):
            left, top = MARGIN + number % 3 * step_x, MARGIN + number // 3 * step_y
            expected = b"".join(colour_of(PALETTE, index) + b"\xff" for index in frame)
            found = [row[4 * left:4 * (left + 30)] for row in rows[top:top + 20]]
            self.assertEqual(found, rows_of(expected, 120), number)
        self.assertEqual(rows[0], GROUND * width)

    def number(self, rows, left, top, digits):
        """The pixels of a number as text."""
        return ["".join("#" if row[4 * x:4 * x + 4] == INK else " " for x in range(left, left + 6 * digits - 1))
                for row in rows[top:top + DIGIT_HEIGHT]]

    def test_frames_are_numbered(self):
        *_, rows = self.sheet(sprite_bytes(30, 20, [bytes(600)] * 8, palette=PALETTE))
        self.assertEqual(tuple(self.number(rows, MARGIN + 34, MARGIN + 2 * 35 + 24, 1)), SEVEN)

    def test_numbers_are_told_apart(self):
        """Frames of one pixel: the cells are as wide as two digits."""
        *_, rows = self.sheet(sprite_bytes(1, 1, [bytes(1)] * 12))
        columns = (len(rows[0]) // 4 - MARGIN) // 15
        texts = {tuple(self.number(rows, MARGIN + i % columns * 15, MARGIN + i // columns * 16 + 1 + MARGIN, 2))
                 for i in range(12)}
        self.assertEqual(len(texts), 12)

    def test_scale(self):
        *_, rows = self.sheet(sprite_bytes(2, 2, [b"\0\1\2\3"], palette=PALETTE), "--scale", "5")
        expected = rows_of(b"".join(colour_of(PALETTE, index) + b"\xff" for index in range(4)), 8)
        self.assertEqual([row[16:56] for row in rows[4:14]], magnified(expected, 5, 4))

    def test_palette_colours_without_background_in_other_modes(self):
        for mode in (0, 1, 2):
            *_, rows = self.sheet(sprite_bytes(1, 1, [b"\1"], palette=PALETTE, mode=mode))
            self.assertEqual(rows[MARGIN][4 * MARGIN:4 * MARGIN + 4], colour_of(PALETTE, 1) + b"\xff")

    def test_transparent_pixels_only_without_background(self):
        data = sprite_bytes(1, 1, [b"\xff"], palette=PALETTE, mode=3)
        self.assertEqual(self.sheet(data)[3][MARGIN][4 * MARGIN + 3], 0)
        *_, rows = self.sheet(data, "--background", "#010203")
        self.assertEqual(rows[MARGIN][4 * MARGIN:4 * MARGIN + 4], b"\1\2\3\xff")

    def test_other_programs_see_the_same_pixels(self):
        width, height, _, rows = self.sheet(sprite_bytes(30, 20, [noise(600)] * 3, palette=PALETTE))
        self.assertEqual(self.tool("convert", "out.png", "-depth", "8", "rgba:-"), b"".join(rows))
        self.assertEqual(self.tool("identify", "-format", "%wx%h", "out.png").decode(), f"{width}x{height}")

    def test_rate_does_not_apply(self):
        self.preview(sprite_bytes(1, 1, [b"\0"]), "out.png", "--fps", "5", status=2)

    def test_too_many_pixels(self):
        path = self.write("a.spr", sprite_bytes(1000, 1000, [bytes(1000000)] * 10))
        line = self.fails("preview", path, "out.png", "--scale", "8")
        self.assertIn("a.spr: the contact sheet would have", line)


class Target(Preview):
    def test_existing_file_stays(self):
        for name in ("out.gif", "out.png"):
            self.write(name, b"mine")
            line = self.fails("preview", self.write("a.spr", sprite_bytes(1, 1, [b"\0"])), name)
            self.assertEqual(line, f"varnoth-cli: {name}: the file exists; --force replaces it")
            self.assertEqual(self.read(name), b"mine")

    def test_ending_chooses_the_format_in_any_case(self):
        data = sprite_bytes(1, 1, [b"\0"])
        self.preview(data, "a.GIF")
        self.preview(data, "a.Png")
        self.assertEqual(self.read("a.GIF")[:3], b"GIF")
        self.assertEqual(self.read("a.Png")[1:4], b"PNG")
        self.preview(data, "a.jpg", status=2)

    def test_standard_output_is_a_gif(self):
        output = self.preview(sprite_bytes(2, 1, [b"\1\2"]), "-").stdout
        self.assertEqual(Gif(output).frames[0]["rows"], [b"\1\2"])

    def test_without_target_and_terminal(self):
        done = self.run_cli("preview", self.write("a.spr", sprite_bytes(1, 1, [b"\0"])), status=2)
        self.assertEqual(done.stdout, b"")

    def test_frames_far_apart(self):
        data = with_frames([((0, 0), 1, 1, b"\0"), ((2147483647, -2147483648), 1, 1, b"\0")])
        line = self.fails("preview", self.write("a.spr", data), "out.gif")
        self.assertIn("the preview would have 2147483648 x 2147483649 pixels, which is too large", line)

    def test_sprite_that_the_editor_refuses(self):
        line = self.fails("preview", self.write("a.spr", b"IDSP"), "out.gif")
        self.assertIn("a.spr: the file ends in its header", line)

    def test_standard_input(self):
        self.run_cli("preview", "-", "out.gif", stdin=sprite_bytes(2, 1, [b"\1\2"]))
        self.assertEqual(Gif(self.read("out.gif")).frames[0]["rows"], [b"\1\2"])


def cells_of(output):
    """The lines of a terminal: for each character its upper and lower colour, None where it has none."""
    lines = []
    for line in output.decode().replace("\r", "").split("\n"):
        cells, fore, back = [], None, None
        for code, character in re.findall(r"\x1b\[([\d;]*)m|([^\x1b])", line):
            if code == "0":
                fore = back = None
            elif code.startswith("38;2;"):
                fore = bytes(map(int, code.split(";")[2:]))
            elif code.startswith("48;2;"):
                back = bytes(map(int, code.split(";")[2:]))
            else:
                cells.append({"▀": (fore, back), "▄": (back, fore)}.get(character, character))
        lines.append(cells)
    return lines


class Terminal(Preview):
    def shown(self, data, *options, **arguments):
        return self.on_terminal("preview", self.write("a.spr", data), *options, **arguments)

    def test_frames_are_listed_with_their_numbers(self):
        frames = [bytes((0, 1, 2, 3, 4, 5)), bytes((6, 7, 8, 9, 10, 11))]
        lines = cells_of(self.shown(sprite_bytes(2, 3, frames, palette=PALETTE)))
        colours = [[colour_of(PALETTE, index) for index in frame] for frame in frames]
        self.assertEqual(lines, [
            ["0"], [(colours[0][0], colours[0][2]), (colours[0][1], colours[0][3])],
            [(colours[0][4], None), (colours[0][5], None)],
            ["1"], [(colours[1][0], colours[1][2]), (colours[1][1], colours[1][3])],
            [(colours[1][4], None), (colours[1][5], None)], []])

    def test_transparent_pixels_have_no_colour(self):
        lines = cells_of(self.shown(sprite_bytes(2, 2, [b"\xff\1\1\xff"], palette=PALETTE, mode=3)))
        colour = colour_of(PALETTE, 1)
        self.assertEqual(lines[1], [(None, colour), (colour, None)])
        lines = cells_of(self.shown(sprite_bytes(1, 1, [b"\xff"], palette=PALETTE, mode=3)))
        self.assertEqual(lines[1], [" "])

    def test_background_and_scale(self):
        lines = cells_of(self.shown(sprite_bytes(1, 1, [b"\xff"], mode=3), "--background", "#102030", "--scale", "2"))
        self.assertEqual(lines[1], [(bytes((16, 32, 48)), bytes((16, 32, 48)))] * 2)

    def test_wide_frames_are_reduced_to_the_terminal(self):
        data = sprite_bytes(100, 30, [bytes(x for _ in range(30) for x in range(100))], palette=PALETTE)
        lines = cells_of(self.shown(data, size=(10, 40)))
        self.assertEqual(len(lines), 1 + 5 + 1)
        expected = [colour_of(PALETTE, x) for x in range(0, 100, 3)]
        self.assertEqual(lines[1], [(colour, colour) for colour in expected])

    def test_plays_until_interrupted_and_restores_the_cursor(self):
        frames = [b"\1", b"\2"]
        output = self.shown(sprite_bytes(1, 1, frames, palette=PALETTE), "--fps", "100",
                            reply=(b"\x1b[1A\r" + self.cell(1), b"\x03"))
        self.assertTrue(output.startswith(b"\x1b[?25l" + self.cell(1)), output)
        played = output.split(b"\x1b[1A\r")
        self.assertIn(self.cell(2), played[1])
        self.assertIn(self.cell(1), played[2])
        self.assertTrue(output.endswith(b"\x1b[?25h"), output)

    @staticmethod
    def cell(index):
        return b"\x1b[0m\x1b[38;2;%d;%d;%dm" % tuple(colour_of(PALETTE, index)) + "▀".encode() + b"\x1b[0m\r\n"

    def test_interrupt_does_not_wait_for_the_next_frame(self):
        """At this rate, the next frame would come after 100 seconds, beyond the test's time limit."""
        output = self.shown(sprite_bytes(1, 1, [b"\1"], palette=PALETTE), "--fps", "0.01",
                            reply=(self.cell(1), b"\x03"))
        self.assertTrue(output.endswith(b"\x1b[?25h"), output)

    def test_tall_frames_are_reduced_to_the_terminal(self):
        output = self.shown(sprite_bytes(2, 100, [bytes(200)], palette=PALETTE), "--fps", "10", size=(11, 80),
                            reply=(b"\x1b[10A", b"\x03"))
        self.assertEqual(output.split(b"\x1b[10A")[0].count(b"\n"), 10)

    def test_rate_out_of_range(self):
        self.run_cli("preview", self.write("a.spr", sprite_bytes(1, 1, [b"\0"])), "--fps", "0", status=2)


if __name__ == "__main__":
    main()
