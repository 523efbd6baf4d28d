"""Valid and invalid pictures and sprites for the random user, and how the editor treats each."""
import dataclasses
import os
import struct
import subprocess

FORMATS = ("bmp", "jpg", "tga", "pcx")

# The file list shows all files of a format without scrolling, except in the last folder.
SMALL, MEDIUM, LARGE, MIXED, BAD, FATAL, MANY = "small", "medium", "large", "mixed", "bad", "fatal", "many"
MANY_FILES = 70


@dataclasses.dataclass
class Picture:
    """A picture file: the size in its header, None if Add Frame/s reports it as corrupt, and the size that the preview
    takes from it, None if it leaves the preview unchanged."""
    name: str
    header_size: tuple
    shown: tuple


@dataclasses.dataclass
class Sprite:
    """A sprite file: the messages of which the editor shows one when it refuses the file, none if it is valid, and the
    contents of its header."""
    name: str
    data: bytes
    refusals: tuple = ()
    size: tuple = (32, 32)
    frames: int = 0
    render: str = "NORMAL"


RENDER_MODES = ("NORMAL", "ADDITIVE", "INDEXALPHA", "ALPHATEST")
UNKNOWN_LOADING = "Unknown Error Loading Sprite."


def convert(*words):
    subprocess.run(["convert", *map(str, words)], check=True, stdin=subprocess.DEVNULL)


def make_picture(path, width, height, seed, *options):
    """Writes a picture of many irregular colours; the extension decides the format."""
    convert("-size", f"{width}x{height}", "-seed", seed, "plasma:red-blue", *options, path)


class Pictures:
    """Writes picture files of all formats to folders below a root, and lists them."""

    def __init__(self, root):
        self.root = root
        self.folders = {}
        sizes = {SMALL: (32, 32), MEDIUM: (128, 96), LARGE: (256, 256)}
        for name, count in ((SMALL, 12), (MEDIUM, 16), (LARGE, 6)):
            for number in range(count):
                self.add_good(name, number, *sizes[name])
        for number, size in enumerate(((16, 16), (33, 21), (64, 64), (100, 7), (256, 256), (300, 200), (1, 1),
                                       (31, 64))):
            self.add_good(MIXED, number, *size)
        self.add_bad_ones()
        for number in range(MANY_FILES):
            self.put(MANY, f"pd{number:02}.jpg", (256, 256), (256, 256), self.read(LARGE, f"pd{number % 6:02}.jpg"))

    def names(self):
        return sorted(self.folders)

    def path(self, folder, name):
        return os.path.join(self.root, folder, name)

    def files(self, folder, kind):
        """The files of a format in a folder, in the order of the list."""
        return sorted(self.folders[folder].get(kind, []), key=lambda picture: picture.name)

    def add(self, folder, kind, picture):
        os.makedirs(os.path.join(self.root, folder), exist_ok=True)
        self.folders.setdefault(folder, {}).setdefault(kind, []).append(picture)
        return self.path(folder, picture.name)

    def add_good(self, folder, number, width, height):
        for kind in FORMATS:
            path = self.add(folder, kind, Picture(f"pd{number:02}.{kind}", (width, height), (width, height)))
            # Some have few colours and a palette, but no TGA files: the editor does not read grey or 16-bit ones.
            few = kind in ("bmp", "pcx") and number % 3 == 2
            options = ["-colors", "60", "-type", "Palette"] if few else ["-type", "TrueColor"]
            if kind == "bmp":
                path = "BMP3:" + path
            if kind == "tga":
                options += ["-compress", "RLE" if number % 2 else "None"]
            make_picture(path, width, height, number + 1, *options)

    def read(self, folder, name):
        with open(self.path(folder, name), "rb") as file:
            return file.read()

    def write(self, folder, name, data):
        with open(self.path(folder, name), "wb") as file:
            file.write(data)

    def put(self, folder, name, header_size, shown, data):
        self.add(folder, name[-3:], Picture(name, header_size, shown))
        self.write(folder, name, data)

    def add_bad_ones(self):
        size = (128, 96)
        bmp, jpg, tga, pcx = (self.read(MEDIUM, f"pd00.{kind}") for kind in FORMATS)
        # The rows missing from a truncated file are black in BMP and grey in JPEG.
        self.put(BAD, "pd0cut.bmp", size, size, bmp[:len(bmp) // 2])
        self.put(BAD, "pd0cut.jpg", size, size, jpg[:len(jpg) // 2])
        self.put(BAD, "pd1down.bmp", None, size, bmp[:22] + struct.pack("<i", -size[1]) + bmp[26:])
        self.put(BAD, "pd2wide.bmp", (1000, 96), (1000, 96), bmp[:18] + struct.pack("<i", 1000) + bmp[22:])
        # The dialog goes by the extension, the preview by the content.
        self.put(BAD, "pd3jpeg.bmp", None, size, jpg)
        self.put(BAD, "pd1bmp.jpg", None, size, bmp)
        path = self.add(BAD, "jpg", Picture("pd2progressive.jpg", None, size))
        make_picture(path, *size, 7, "-type", "TrueColor", "-interlace", "JPEG")
        self.put(BAD, "pd0kind.tga", None, None, tga[:2] + b"\5" + tga[3:])
        self.put(BAD, "pd1depth.tga", None, None, tga[:16] + b"\x0f" + tga[17:])
        self.put(BAD, "pd2text.tga", None, None, b"This is no picture at all, but a line of text.\n")
        self.put(BAD, "pd3empty.tga", None, None, b"")
        self.put(BAD, "pd0version.pcx", None, None, pcx[:1] + b"\4" + pcx[2:])
        self.put(BAD, "pd1maker.pcx", None, None, b"\x0b" + pcx[1:])
        self.put(BAD, "pd3depth.pcx", size, size, pcx[:3] + b"\2" + pcx[4:])
        for kind in FORMATS:
            self.put(BAD, f"pd9good.{kind}", size, size, self.read(MEDIUM, f"pd00.{kind}"))

        # A click on one of these is fatal, so the random user leaves them alone.
        self.put(FATAL, "pd0text.bmp", None, None, b"This is no picture at all, but a line of text.\n" * 3)
        at = jpg.index(b"\xff\xc0")
        self.put(FATAL, "pd0high.jpg", None, None, jpg[:at + 5] + b"\x80" + jpg[at + 6:])
        self.put(FATAL, "pd0short.pcx", size, None, pcx[:200])
        self.put(FATAL, "pd1text.pcx", None, None, b"Nor is this.\n" * 20)
        grey = self.add(FATAL, "tga", Picture("pd0grey.tga", size, None))
        make_picture(grey, *size, 3, "-colorspace", "Gray", "-type", "Grayscale")


def sprite_bytes(size, frames, *, render=0, kind=2, colours=256, magic=b"IDSP", header_frames=None, header_size=None):
    """A sprite file whose frames all have the given size."""
    width, height = size
    header_width, header_height = header_size or size
    header = struct.pack("<4siiifiiifi", magic, 2, kind, render, 22.6, header_width, header_height,
                         frames if header_frames is None else header_frames, 0.0, 1)
    palette = struct.pack("<h", colours) + bytes(value * step % 256 for value in range(256) for step in (1, 3, 7))
    body = b"".join(struct.pack("<iiiii", 0, -(width // 2), height // 2, width, height)
                    + bytes((x // 2 + y * 3 + number * 16) % 256 for y in range(height) for x in range(width))
                    for number in range(frames))
    return header + palette + body


# Opened to reach a known state.
QUIET_SPRITE = Sprite("quiet.spr", sprite_bytes((64, 64), 6), size=(64, 64), frames=6)


def good_sprites():
    sprites = []
    for name, size, frames, render in (("one.spr", (16, 16), 1, 0), ("torch.spr", (32, 48), 7, 1),
                                       ("smoke.spr", (64, 64), 12, 2), ("flash.spr", (100, 30), 20, 3),
                                       ("long.spr", (24, 24), 60, 1), ("large.spr", (256, 256), 10, 0)):
        sprites.append(Sprite(name, sprite_bytes(size, frames, render=render), size=size, frames=frames,
                              render=RENDER_MODES[render]))
    whole = sprite_bytes((32, 32), 5)
    sprites.append(Sprite("cut.spr", whole[:-700], size=(32, 32), frames=5))
    sprites.append(Sprite("odd.spr", sprite_bytes((20, 10), 3, render=9, kind=8), size=(20, 10), frames=3, render="-1"))
    return sprites


def bad_sprites():
    whole = sprite_bytes((32, 32), 5)
    unknown = (UNKNOWN_LOADING,)
    return [
        Sprite("lower.spr", sprite_bytes((32, 32), 2, magic=b"idsp"), ("Not A Half-Life Sprite {path}",)),
        Sprite("picture.spr", b"\xff\xd8\xff\xe0" + whole[4:900], ("Not A Half-Life Sprite {path}",)),
        Sprite("none.spr", sprite_bytes((32, 32), 0), ("No Sprites In File",)),
        Sprite("minus.spr", sprite_bytes((32, 32), 2, header_frames=-3), ("No Sprites In File",)),
        Sprite("colours.spr", sprite_bytes((32, 32), 2, colours=255), ("Not 8bpp sprite",)),
        Sprite("short.spr", whole[:810 + 20 + 32 * 32 + 7], unknown),
        Sprite("missing.spr", sprite_bytes((32, 32), 2, header_frames=5), unknown),
        Sprite("huge.spr", whole[:810] + struct.pack("<iiiii", 0, 0, 0, 70000, 70000), unknown),
        Sprite("flat.spr", whole[:810] + struct.pack("<iiiii", 0, 0, 0, 0, 32), unknown),
        Sprite("beyond.spr", sprite_bytes((1, 1), 3, header_frames=40000, header_size=(32, 32)), unknown),
    ]
