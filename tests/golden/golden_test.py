#!/usr/bin/env python3
"""Draws the layout reference and compares it with pictures of the real windows, pixel by pixel without tolerance, at
several scales of the desktop. Only texts and symbols may differ from the drawing; their colours must be between those
of the background and of the ink. Usage: golden_test.py WALKTHROUGH INSPECT SAMPLES DESKTOP_TESTS [TEST...]"""
import functools
import math
import os
import struct
import subprocess
import sys
import tempfile
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path[:0] = [HERE, os.path.join(HERE, "..", "tools"), os.path.join(HERE, "..", "e2e")]
import layout_reference  # noqa: E402
from display import Display  # noqa: E402
from layout_reference import BLACK, DARK, FIELD, GLYPH, GROUND, HIGHLIGHT, LIGHT, TEXT, WHITE  # noqa: E402
from tool_test import WALKTHROUGH, bmp, decode, sprite_file, write  # noqa: E402

DESKTOP_TESTS = sys.argv[4]

SPRITE_COLOUR = (30, 180, 220)
PICTURE_COLOUR = (250, 10, 20)
PICTURE_SIZE = (200, 120)
ALPHATEST = 3

# Qt draws a text cursor in the inverse of the colour below it.
CURSOR = tuple(255 - channel for channel in FIELD)

# Settings of a desktop for colours, font and style.
DARK_DESKTOP = """[General]
font=DejaVu Serif,20,-1,5,50,0,0,0,0,0
[Colors:Window]
BackgroundNormal=20,0,0
ForegroundNormal=255,0,0
[Colors:View]
BackgroundNormal=30,0,0
BackgroundAlternate=0,0,90
ForegroundNormal=255,0,0
[Colors:Button]
BackgroundNormal=0,0,60
ForegroundNormal=255,255,0
[Colors:Selection]
BackgroundNormal=255,0,255
ForegroundNormal=0,255,0
[KDE]
widgetStyle=Windows
"""


def distance(colour, other):
    return max(abs(a - b) for a, b in zip(colour, other))


class Drawing:
    """The expected picture of a window at a scale. Coordinates are rounded to the nearest screen pixel, halves up. A
    line is drawn along the inside of a control's outline, as thick as the whole screen pixels in one pixel of the
    layout."""

    def __init__(self, window, scale, found):
        self.scale, self.found = scale, found
        self.width, self.height = (self.at(side) for side in window.size)
        self.thick = math.floor(scale)
        self.pixels = [bytearray(bytes(GROUND) * self.width) for _ in range(self.height)]
        self.faults = []
        if window.title is not None:
            self.draw_panel(window)
        for one in window.controls:
            self.draw(one, 0, 0)

    def at(self, place):
        return math.floor(place * self.scale + 0.5)

    def fill_pixels(self, left, top, right, bottom, colour):
        for row in self.pixels[top:bottom]:
            row[3 * left:3 * right] = bytes(colour) * (right - left)

    def fill(self, place, colour):
        left, top, width, height = place
        self.fill_pixels(self.at(left), self.at(top), self.at(left + width), self.at(top + height), colour)

    def edges(self, place, top_left, bottom_right, top_left_in_front=False):
        left, top, right, bottom = (self.at(place[0]), self.at(place[1]), self.at(place[0] + place[2]),
                                    self.at(place[1] + place[3]))
        thick = self.thick

        def light():
            self.fill_pixels(left, top, right, top + thick, top_left)
            self.fill_pixels(left, top, left + thick, bottom, top_left)

        def shadow():
            self.fill_pixels(right - thick, top, right, bottom, bottom_right)
            self.fill_pixels(left + thick, bottom - thick, right, bottom, bottom_right)

        for draw in (shadow, light) if top_left_in_front else (light, shadow):
            draw()

    def check_ink(self, name, place, ground, *inks, others=(), left_end=False):
        """Copies the area of a text or symbol from the picture, after checking that it contains all of these inks and
        no colours beyond them, the ground and the others; with left_end, also that it begins at the left."""
        left, top, right, bottom = (self.at(place[0]), self.at(place[1]), self.at(place[0] + place[2]),
                                    self.at(place[1] + place[3]))
        rows = [self.found.row(y)[3 * left:3 * right] for y in range(top, bottom)]
        for row, drawn in zip(rows, self.pixels[top:bottom]):
            drawn[3 * left:3 * right] = row
        columns = [{row[i:i + 3] for row in rows} for i in range(0, 3 * (right - left), 3)]
        colours = set().union(*columns)
        ranges = [(min(channel), max(channel)) for channel in zip(ground, *inks, *others)]
        for colour in colours:
            if any(not low <= value <= high for value, (low, high) in zip(colour, ranges)) and colour != bytes(CURSOR):
                self.faults.append(f"{name} has {tuple(colour)}, which is not between {ground} and {(*inks, *others)}")
                break
        for ink in inks:
            # Thin strokes are antialiased; the middle of a stroke is close to the ink.
            if min(distance(colour, ink) for colour in colours) > distance(ground, ink) / 4:
                self.faults.append(f"{name} has nothing in {ink}")
        inked = [x for x, column in enumerate(columns) if column != {bytes(ground)}]
        if left_end and inked and inked[0] > 2 * self.scale:
            self.faults.append(f"{name} begins {inked[0]} pixels from its left edge")
        return inked, right - left

    # Controls.

    def draw_panel(self, window):
        width, height = window.size
        self.fill((0, 0, width, height), GROUND)
        if window.close_box:
            self.edges((width - 26, 8, 18, 18), LIGHT, DARK, top_left_in_front=True)
            self.check_ink("close box", (width - 26 + 2, 8 + 2, 14, 14), GROUND, GLYPH)
        self.edges((0, 0, width, height), LIGHT, DARK)
        self.check_ink("icon", (9, 10, 16, 16), GROUND, DARK, WHITE)
        self.check_ink("title", (30, 9, width - 55, 18), GROUND, WHITE, BLACK, left_end=True)

    def draw(self, one, left, top):
        place = (left + one.place[0], top + one.place[1], one.place[2], one.place[3])
        getattr(self, "draw_" + one.kind)(one.name, place, **one.style)
        for part in one.parts:
            self.draw(part, place[0], place[1])

    def draw_frame(self, _name, place):
        self.fill(place, FIELD)
        self.edges(place, DARK, LIGHT)

    def draw_button(self, name, place, text):
        left, top, width, height = place
        self.fill(place, GROUND)
        self.edges(place, LIGHT, DARK)
        inked, room = self.check_ink(name, (left + 2, top + 2, width - 4, height - 4), GROUND, text)
        if inked and abs(inked[0] - (room - 1 - inked[-1])) > 3 * self.scale:
            self.faults.append(f"{name} is not centred: {inked[0]} and {room - 1 - inked[-1]} pixels on the sides")

    def draw_label(self, name, place, text, ground, words):
        self.fill(place, ground)
        if words:
            self.check_ink(name, place, ground, text, left_end=True)

    draw_speed = functools.partialmethod(draw_label, words=True)

    def draw_field(self, name, place, words):
        left, top, width, height = place
        self.fill(place, FIELD)
        self.edges(place, DARK, LIGHT)
        self.check_ink(name, (left + 4, top + 2, width - 8, height - 4), FIELD, *[TEXT] * words, left_end=True)

    def draw_combo(self, name, place, thin):
        left, top, width, height = place
        self.fill(place, FIELD)
        self.edges(place, DARK, LIGHT)
        words = (left + 3, top + 1, width - 3 - 20, height - 2)
        self.check_ink(name, words, FIELD, *[TEXT] * (not thin), others=(TEXT,), left_end=True)
        self.check_ink(name + "'s arrow", (left + width - 20, top + 2, 18, height - 4), FIELD, LIGHT)

    def draw_lines(self, name, place):
        left, top, width, height = place
        self.fill(place, FIELD)
        self.edges(place, DARK, LIGHT)
        self.check_ink(name, (left + 1, top + 1, width - 2, height - 2), FIELD, others=(TEXT, HIGHLIGHT, BLACK))

    def draw_check(self, name, place, on, ground):
        left, top, width, height = place
        box = (left, top + 3, 12, 12)
        self.fill(place, ground)
        self.fill(box, FIELD)
        self.edges(box, DARK, GLYPH)
        if on:
            self.check_ink(name + "'s mark", (left + 1, top + 4, 10, 10), FIELD, HIGHLIGHT)
        self.check_ink(name, (left + 19, top, width - 19, height), ground, HIGHLIGHT if on else TEXT, left_end=True)

    def draw_radio(self, name, place, on, ground, text):
        left, top, width, height = place
        self.fill(place, ground)
        self.draw_circle(left + 3, top + 3, on)
        # A letter may extend beyond its place by less than a pixel.
        self.check_ink(name, (left + 27, top, width - 27, height), ground, text, left_end=True)

    def draw_circle(self, left, top, on):
        """A circle of 13 pixels in diameter with, if chosen, a dot inset by 3 pixels. The centre of a screen pixel
        decides what it belongs to. The line is dark from 0.5 to 4 radians, counter-clockwise from three o'clock."""
        left, top, size, inset = self.at(left), self.at(top), self.at(13), self.at(3)
        for y in range(size):
            for x in range(size):
                right, up = x + 0.5 - size / 2, size / 2 - y - 0.5
                beyond = math.hypot(right, up) - size / 2
                if beyond > 0:
                    continue
                if beyond > -self.thick:
                    colour = DARK if 0.5 <= math.atan2(up, right) % (2 * math.pi) <= 4 else LIGHT
                else:
                    colour = HIGHLIGHT if on and beyond <= -inset else FIELD
                self.fill_pixels(left + x, top + y, left + x + 1, top + y + 1, colour)

    def draw_progress(self, name, place):
        left, top, width, height = place
        self.fill(place, FIELD)
        self.edges(place, DARK, LIGHT)
        cells = width // 12
        blocks = [(left + cell * 12 + 4, top + 4, 8, 16) for cell in range(cells)]
        filled = [self.found.colour(self.at(block[0]), self.at(block[1])) == HIGHLIGHT for block in blocks]
        if not 0 < sum(filled) < cells or filled != sorted(filled, reverse=True):
            self.faults.append(f"{name} has blocks {filled}")
        for block in blocks[:sum(filled)]:
            self.fill(block, HIGHLIGHT)

    def draw_symbol(self, name, place, colour, ground):
        left, top, side, _ = place
        self.fill(place, ground)
        self.check_ink(name, (left + 1, top + 1, side - 2, side - 2), ground, colour)

    def draw_picture(self, name, place, colour):
        if colour is None:
            self.check_ink(name, place, BLACK, others=(WHITE,))
        else:
            self.fill(place, colour)


class Picture:
    """A picture of a real window."""

    def __init__(self, path):
        self.width, self.height, self.data = decode(path)[0]

    def row(self, y):
        return self.data[3 * self.width * y:3 * self.width * (y + 1)]

    def colour(self, x, y):
        return tuple(self.row(y)[3 * x:3 * x + 3])


def difference(drawing, found):
    """A description of the first difference, or None."""
    if (drawing.width, drawing.height) != (found.width, found.height):
        return f"{found.width} by {found.height} pixels and not {drawing.width} by {drawing.height}"
    if drawing.faults:
        return "; ".join(drawing.faults)
    for y in range(found.height):
        if bytes(drawing.pixels[y]) != found.row(y):
            expected = [tuple(drawing.pixels[y][3 * x:3 * x + 3]) for x in range(found.width)]
            x = next(x for x in range(found.width) if expected[x] != found.colour(x, y))
            return (f"pixel {x}, {y} is {found.colour(x, y)} and not {expected[x]} "
                    f"({x / drawing.scale:g}, {y / drawing.scale:g} of the layout)")
    return None


def take_pictures(folder, environment):
    """Runs the scripted user through all windows. Returns the paths of the pictures by name, the first of each."""
    def path(*parts):
        return os.path.join(folder, *parts)

    for name in ("pictures", "out", "whole", "import", "new"):
        os.mkdir(path(name))
    for name in ("a.bmp", "b.bmp", "c.bmp"):
        write(path("pictures", name), bmp(*PICTURE_SIZE, [PICTURE_COLOUR] * (PICTURE_SIZE[0] * PICTURE_SIZE[1])))
    sprite = sprite_file(256, 256, [bytes(65536)] * 2, palette=bytes(SPRITE_COLOUR) * 256)
    write(path("made.spr"), sprite[:12] + struct.pack("<i", ALPHATEST) + sprite[16:])
    found = {}
    for walk, arguments in (("whole", ["--open", "made.spr", "--export", "out", "--format", "tga"]),
                            ("import", ["--open", "made.spr", "--pictures", "pictures", "--pick", "3,3"]),
                            ("new", [])):
        subprocess.run([WALKTHROUGH, *arguments, "--screenshots", path(walk)], cwd=folder, env=environment,
                       stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=120,
                       check=True)
        for file in sorted(os.listdir(path(walk))):
            found.setdefault(file[3:-4], path(walk, file))
    return found


SIZE_QUESTION = (PICTURE_COLOUR, *PICTURE_SIZE)
WINDOWS = {
    "start": layout_reference.main_window(),
    "opened": layout_reference.main_window(SPRITE_COLOUR),
    "new": layout_reference.new_sprite(),
    "extract": layout_reference.extract_frames(compression=False),
    "extract_set": layout_reference.extract_frames(compression=True),
    "folder": layout_reference.folder(),
    "preview": layout_reference.preview(SPRITE_COLOUR, playing=False),
    "preview_playing": layout_reference.preview(SPRITE_COLOUR, playing=True),
    "add_frames": layout_reference.add_frames(),
    "add_frames_selected": layout_reference.add_frames(SIZE_QUESTION, transparent=PICTURE_COLOUR),
    "pick": layout_reference.add_frames(SIZE_QUESTION, armed=True, transparent=PICTURE_COLOUR),
    "progress": layout_reference.job(),
    "exit_picture": layout_reference.exit_picture(),
}


class GoldenTest(unittest.TestCase):
    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = holder.name

    def make_folder(self, name):
        folder = os.path.join(self.folder, name)
        os.mkdir(folder)
        return folder

    def check_windows(self, scale, environment):
        pictures = take_pictures(self.make_folder("walks"), {**environment, "QT_SCALE_FACTOR": f"{scale:g}"})
        for name, window in WINDOWS.items():
            with self.subTest(window=name):
                found = Picture(pictures[name])
                self.assertIsNone(difference(Drawing(window, scale, found), found))


class Scales(GoldenTest):
    def test_windows_match_the_layout_reference(self):
        self.check_windows(1, os.environ)

    def test_windows_match_at_scale_1_5(self):
        self.check_windows(1.5, os.environ)

    def test_windows_match_at_scale_2(self):
        self.check_windows(2, os.environ)


class Desktop(GoldenTest):
    def test_colours_font_and_style_of_the_desktop_have_no_effect(self):
        display = Display(window_manager=False)
        self.addCleanup(display.close)
        with open(os.path.join(display.environment["XDG_CONFIG_HOME"], "kdeglobals"), "w", encoding="ascii") as file:
            file.write(DARK_DESKTOP)
        self.check_windows(1, {**display.environment, "QT_QPA_PLATFORM": "xcb", "QT_QPA_PLATFORMTHEME": "kde",
                               "KDE_SESSION_VERSION": "5", "QT_STYLE_OVERRIDE": "windows"})

    def test_focus_is_not_visible(self):
        display = Display()
        self.addCleanup(display.close)
        focused = take_pictures(self.make_folder("focused"), {**display.environment, "QT_QPA_PLATFORM": "xcb"})
        unfocused = take_pictures(self.make_folder("unfocused"), os.environ)
        for name in ("new_sprite", "new", "opened"):
            self.assertTrue(Picture(focused[name]).data == Picture(unfocused[name]).data, name)


def with_family(font, family):
    """A copy of a font file with another family name, which must not be longer."""
    font = bytearray(font)
    tables = [struct.unpack_from(">4s4xI", font, 12 + 16 * i) for i in range(struct.unpack_from(">H", font, 4)[0])]
    names = dict(tables)[b"name"]
    count, texts = struct.unpack_from(">2xHH", font, names)
    for record in range(names + 6, names + 6 + 12 * count, 12):
        platform, kind, length, place = struct.unpack_from(">H4xHHH", font, record)
        if kind in (1, 16):  # the family name and the typographic family name
            text = family.encode("ascii" if platform == 1 else "utf-16-be")
            assert len(text) <= length, family
            font[names + texts + place:names + texts + place + len(text)] = text
            struct.pack_into(">H", font, record + 8, len(text))
    return font


class Fonts(GoldenTest):
    """The fallback font families, each installed alone."""

    def only(self, family, renamed):
        """An environment with only the upright fonts of regular weight of one family. If a family has more faces, Qt
        6.4 uses any of them for a condensed font, depending on the order in which it found them. The
        family can get the name of one that is not installed."""
        fonts = self.make_folder("fonts")
        asked = subprocess.run(["fc-list", f":family={family}:slant=0:weight=80", "file"], stdout=subprocess.PIPE,
                               check=True)
        files = [line.rstrip(": ") for line in asked.stdout.decode().splitlines()]
        self.assertTrue(files, f"{family} is missing; scripts/install-dependencies installs it")
        for file in files:
            if family == "DejaVu Sans" and os.path.basename(file).startswith("DejaVuSansCondensed"):
                continue
            target = os.path.join(fonts, os.path.basename(file))
            if renamed:
                with open(file, "rb") as font:
                    write(target, with_family(font.read(), renamed))
            else:
                os.symlink(file, target)
        path = os.path.join(self.folder, "fonts.conf")
        with open(path, "w", encoding="ascii") as file:
            file.write(f"<fontconfig><dir>{fonts}</dir><cachedir>{fonts}/cache</cachedir></fontconfig>")
        return {**os.environ, "FONTCONFIG_FILE": path}

    def check_family(self, family, renamed=None):
        environment = self.only(family, renamed)
        self.check_windows(1, environment)
        done = subprocess.run([DESKTOP_TESTS, "--gtest_filter=ThemeFont.*:WindowsTest.*Caption*"],
                              env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, timeout=120,
                              check=False)
        words = done.stdout.decode()
        self.assertEqual(done.returncode, 0, words)
        self.assertIn("[  PASSED  ] 8 tests.", words)

    def test_windows_match_with_dejavu_sans_condensed(self):
        self.check_family("DejaVu Sans Condensed")

    def test_windows_match_with_liberation_sans(self):
        self.check_family("Liberation Sans")

    def test_windows_match_with_arial(self):
        self.check_family("Liberation Sans", renamed="Arial")

    def test_windows_match_with_noto_sans(self):
        self.check_family("Liberation Sans", renamed="Noto Sans")

    def test_windows_match_with_nimbus_sans(self):
        self.check_family("Nimbus Sans")

    def test_windows_match_with_dejavu_sans(self):
        self.check_family("DejaVu Sans")


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[5:]])
