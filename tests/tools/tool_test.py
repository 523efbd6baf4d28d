"""Shared by the tests of the built tools: independent writers and parsers of the file formats, and a test case that
runs the scripted user in a temporary folder. The first arguments of each test are WALKTHROUGH INSPECT SAMPLES."""
import os
import struct
import subprocess
import sys
import tempfile
import unittest

WALKTHROUGH, INSPECT, SAMPLES = sys.argv[1:4]
EXPLOSION = 16
SIDE = 64

BLACK, WHITE = (0, 0, 0), (255, 255, 255)
RED, GREEN, BLUE = (250, 10, 20), (30, 240, 40), (50, 60, 230)


def read(path):
    with open(path, "rb") as file:
        return file.read()


def write(path, data):
    with open(path, "wb") as file:
        file.write(data)
    return path


def bmp(width, height, pixels):
    """A 24-bit BMP file; pixels are triples of red, green, blue, rows from the top."""
    padding = bytes(-3 * width % 4)
    rows = [b"".join(bytes(pixel[::-1]) for pixel in pixels[y * width:(y + 1) * width]) + padding
            for y in reversed(range(height))]
    body = b"".join(rows)
    return (struct.pack("<2sIHHI", b"BM", 54 + len(body), 0, 0, 54)
            + struct.pack("<IiiHHIIiiII", 40, width, height, 1, 24, 0, len(body), 0, 0, 0, 0) + body)


def solid(colour, side=4):
    return bmp(side, side, [colour] * (side * side))


def tga(kind, width, height, depth, body, colour_map=b""):
    """A TGA file, bottom row first, with an optional colour map of 24-bit entries."""
    return struct.pack("<BBBHHBHHHHBB", 0, 1 if colour_map else 0, kind, 0, len(colour_map) // 3,
                       24 if colour_map else 0, 0, 0, width, height, depth, 0) + colour_map + body


def sprite_file(width, height, frames, ident=b"IDSP", frame_count=None, colour_count=256, palette=None,
                frame_size=None, origins=None):
    data = struct.pack("<4siiifiiifi", ident, 2, 1, 0, 7.5, width, height,
                       len(frames) if frame_count is None else frame_count, 2.5, 0)
    data += struct.pack("<h", colour_count) + (palette or bytes(range(256)) * 3)
    for number, frame in enumerate(frames):
        origin = origins[number] if origins else (-width // 2, height // 2)
        data += struct.pack("<iiiii", 0, *origin, *(frame_size or (width, height))) + frame
    return data


class Sprite:
    """A parsed sprite file."""

    def __init__(self, data):
        (self.ident, self.version, self.type, self.render, self.radius, self.width, self.height, self.count,
         self.beam, self.sync) = struct.unpack_from("<4siiifiiifi", data)
        self.colours, = struct.unpack_from("<h", data, 40)
        self.palette_bytes = data[42:810]
        self.palette = [tuple(self.palette_bytes[i:i + 3]) for i in range(0, 768, 3)]
        self.frame_headers, self.frames = [], []
        at = 810
        for _ in range(self.count):
            header = struct.unpack_from("<iiiii", data, at)
            size = header[3] * header[4]
            self.frame_headers.append(header)
            self.frames.append(data[at + 20:at + 20 + size])
            at += 20 + size
        self.length = at

    def colours_of(self, frame):
        """The pixels of a frame as red, green, blue bytes."""
        return b"".join(bytes(self.palette[index]) for index in self.frames[frame])


def parse_ppm(data):
    """Parses concatenated binary PPM files into (width, height, bytes)."""
    pictures, at = [], 0
    while at < len(data):
        fields = []
        while len(fields) < 4:
            end = at
            while not data[end:end + 1].isspace():
                end += 1
            fields.append(data[at:end])
            at = end + 1
        if fields[0] != b"P6" or fields[3] != b"255":
            raise ValueError(f"not an 8-bit PPM file: {fields}")
        width, height = int(fields[1]), int(fields[2])
        pictures.append((width, height, data[at:at + 3 * width * height]))
        at += 3 * width * height
    return pictures


def decode(*paths):
    """Decodes the files with ImageMagick."""
    return parse_ppm(subprocess.run(["convert", *paths, "-auto-orient", "-alpha", "off", "-depth", "8", "ppm:-"],
                                    check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout)


class ToolTest(unittest.TestCase):
    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = holder.name

    def path(self, *parts):
        return os.path.join(self.folder, *parts)

    def make_folder(self, name, files=()):
        folder = self.path(name)
        os.mkdir(folder)
        for file, data in dict(files).items():
            write(os.path.join(folder, file), data)
        return folder

    def three_pictures(self, name="pictures"):
        return self.make_folder(name, {"a.bmp": solid(RED), "b.bmp": solid(GREEN), "c.bmp": solid(BLUE)})

    def run_walkthrough(self, *arguments, status=0):
        done = subprocess.run([WALKTHROUGH, *arguments], cwd=self.folder, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=60, check=False)
        self.assertEqual(done.returncode, status, done.stderr.decode())
        self.errors = done.stderr.decode()
        if status == 0:
            self.assertEqual(self.errors, "")
        return done.stdout.decode().splitlines()

    def make_sprite(self, *arguments, name="out.spr"):
        """Runs the scripted user; returns its events and the saved sprite."""
        events = self.run_walkthrough(*arguments, "--save", self.path(name))
        return events, Sprite(read(self.path(name)))
