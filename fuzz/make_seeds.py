#!/usr/bin/env python3
"""Generates seed inputs in fuzz/corpus/<target>: files written by other programs in all depths and encodings (needs
ImageMagick and Netpbm), inconsistent headers, and recipes for the targets that make their own pictures. The seeds are
committed; run this only to add some. It leaves earlier findings, named "found-...", unchanged."""

import pathlib
import random
import struct
import subprocess

corpus = pathlib.Path(__file__).resolve().parent / "corpus"
samples = corpus.parent.parent / "samples"


def put(target, name, data):
    folder = corpus / target
    folder.mkdir(parents=True, exist_ok=True)
    (folder / name).write_bytes(data)


def run(command, picture=b""):
    return subprocess.run(command, input=picture, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                          shell=True, check=True).stdout


def ppm(width, height, colours):
    """A small picture of about that many colours, as PPM."""
    source = random.Random(width * 1000 + height * 10 + colours)
    palette = [bytes(source.randrange(256) for _ in range(3)) for _ in range(colours)]
    pixels, colour = [], palette[0]
    for _ in range(width * height):
        if source.randrange(3) == 0:
            colour = source.choice(palette)
        pixels.append(colour)
    return b"P6\n%d %d\n255\n" % (width, height) + b"".join(pixels)


def noise(count, seed=1):
    return bytes(random.Random(seed).randrange(256) for _ in range(count))


def sample(ending):
    return (samples / ("explosion_0" + ending)).read_bytes()


# PCX ----------------------------------------------------------------------------------------------------------------

def pcx_header(bits=8, planes=1, width=8, height=4, line=None, encoding=1, version=5, manufacturer=10, x=0, y=0):
    line = (width * bits + 15) // 16 * 2 if line is None else line
    head = struct.pack("<BBBBhhhhhh", manufacturer, version, encoding, bits, x, y, x + width - 1, y + height - 1,
                       72, 72)
    return head + noise(48, 3) + struct.pack("<BBh", 0, planes, line) + bytes(60)


def make_pcx():
    for side, colours in (((1, 1), 2), ((5, 3), 2), ((7, 5), 14), ((9, 4), 200), ((16, 16), 2)):
        picture = ppm(*side, colours)
        label = "%dx%d" % side
        put("load_pcx", "netpbm-24-bit-" + label, run("ppmtopcx -24bit", picture))
        put("load_pcx", "netpbm-palette-" + label, run("ppmtopcx", picture))
        put("load_pcx", "magick-true-colour-" + label, run("convert ppm:- -type TrueColor pcx:-", picture))
        put("load_pcx", "magick-plain-" + label, run("convert ppm:- -type TrueColor -compress None pcx:-", picture))
        put("load_pcx", "magick-palette-" + label, run("convert ppm:- -type Palette pcx:-", picture))
        put("load_pcx", "magick-mono-" + label, run("convert ppm:- -type Bilevel pcx:-", picture))
    for bits, planes in ((1, 1), (1, 4), (4, 1), (8, 1), (8, 3), (2, 1), (8, 4)):
        layout = "%d-bit-%d-planes" % (bits, planes)
        data = noise(4 * 8 * planes, bits + planes)
        tail = b"\x0c" + noise(768, 5) if bits == 8 and planes == 1 else b""
        plain = pcx_header(bits, planes, encoding=0)
        put("load_pcx", "plain-" + layout, plain + data + tail)
        put("load_pcx", "packed-" + layout, pcx_header(bits, planes) + bytes([0xC8, 1] * 12 * planes) + tail)
        put("load_pcx", "short-" + layout, plain + data[:5])
        put("load_pcx", "without-data-" + layout, plain)
        put("load_pcx", "huge-" + layout, pcx_header(bits, planes, 32767, 32767, 32767 // planes) + data)
        put("load_pcx", "line-of-0-" + layout, pcx_header(bits, planes, line=0) + data)
        put("load_pcx", "negative-line-" + layout, pcx_header(bits, planes, line=-2) + data)
        put("load_pcx", "line-of-1-" + layout, pcx_header(bits, planes, 40, 3, line=1, encoding=0) + data)
        put("load_pcx", "width-0-" + layout, pcx_header(bits, planes, width=0, line=2) + data)
        put("load_pcx", "negative-size-" + layout, pcx_header(bits, planes, -5, -5, 2) + data)
    for version in (0, 2, 3, 4, 255):
        put("load_pcx", "version-%d" % version, pcx_header(version=version) + noise(900))
    put("load_pcx", "encoding-2", pcx_header(encoding=2) + noise(900))
    put("load_pcx", "bits-3", pcx_header(3) + noise(60))
    put("load_pcx", "planes-0", pcx_header(8, 0) + noise(900))
    put("load_pcx", "planes-255", pcx_header(1, 255, line=2) + noise(60))
    put("load_pcx", "origin-beyond", pcx_header(x=100, y=50, width=-90) + noise(900))
    put("load_pcx", "sample", sample(".pcx"))
    put("load_pcx", "grey-ramp-of-900-bytes", pcx_header(encoding=0) + noise(900))
    put("load_pcx", "size-overflows", pcx_header(x=-32768, width=32768 + 9, line=2))
    put("load_pcx", "line-overflows", pcx_header(planes=255, line=32767))
    put("load_pcx", "runs-of-nothing", pcx_header(1, 1) + b"\xc0" * 40)
    put("load_pcx", "ends-in-a-run-byte", pcx_header(1, 1) + b"\x01\xff")
    put("load_pcx", "other-manufacturer", pcx_header(manufacturer=11) + noise(800))
    put("load_pcx", "cut-header", pcx_header()[:70])
    put("load_pcx", "empty", b"")


# TGA ----------------------------------------------------------------------------------------------------------------

def tga_header(depth=24, width=5, height=3, kind=2, map_kind=0, map_length=0, map_depth=0, x=0, y=0, descriptor=0,
               ident=0, map_start=0):
    return struct.pack("<BBBhhBhhhhBB", ident, map_kind, kind, map_start, map_length, map_depth, x, y, width, height,
                       depth, descriptor)


def make_tga():
    for side, colours in (((1, 1), 2), ((5, 3), 4), ((8, 6), 40), ((3, 16), 200)):
        picture = ppm(*side, colours)
        label = "%dx%d" % side
        for name, options in (("true-colour", "-type TrueColor"), ("alpha", "-alpha set -type TrueColorAlpha"),
                              ("palette", "-type Palette"), ("grey", "-colorspace Gray -type Grayscale")):
            for packing in ("None", "RLE"):
                put("load_tga", "magick-%s-%s-%s" % (name, packing.lower(), label),
                    run("convert ppm:- %s -compress %s tga:-" % (options, packing), picture))
        put("load_tga", "netpbm-rgb-" + label, run("ppmtotga -rgb -norle", picture))
        put("load_tga", "netpbm-rgb-packed-" + label, run("ppmtotga -rgb", picture))
        put("load_tga", "netpbm-palette-" + label, run("ppmtotga -cmap -norle", picture))
        put("load_tga", "netpbm-mono-" + label, run("ppmtopgm | ppmtotga -mono", picture))
    for depth in (8, 16, 24, 32, 15, 1):
        label = "%d-bit" % depth
        data = noise(15 * 4, depth)
        put("load_tga", "plain-" + label, tga_header(depth) + data)
        put("load_tga", "top-down-" + label, tga_header(depth, descriptor=32) + data)
        put("load_tga", "packed-" + label, tga_header(depth, kind=10) + b"\x8e" + data[:4] + b"\x03" + data[:16])
        put("load_tga", "packet-beyond-the-end-" + label, tga_header(depth, kind=10) + b"\xff" + data[:4] + b"\x7f")
        put("load_tga", "short-" + label, tga_header(depth) + data[:2])
        put("load_tga", "huge-" + label, tga_header(depth, 32767, 32767) + data)
        put("load_tga", "huge-packed-" + label, tga_header(depth, 1000, 32767, kind=10) + b"\xff" + data[:4])
        put("load_tga", "origin-" + label, tga_header(depth, x=2, y=1) + data)
        put("load_tga", "origin-beyond-" + label, tga_header(depth, x=7, y=9) + data)
        put("load_tga", "width-0-" + label, tga_header(depth, width=0) + data)
    maps = {}
    for map_depth in (16, 24, 32, 15):
        table = noise(map_depth // 8 * 16, map_depth)
        maps[map_depth] = tga_header(8, kind=1, map_kind=1, map_length=16, map_depth=map_depth) + table
        put("load_tga", "map-of-%d-bits" % map_depth, maps[map_depth] + noise(15))
        put("load_tga", "map-of-%d-bits-cut" % map_depth, maps[map_depth][:40])
        for length in (0, -1, 256, 257, 32767):
            put("load_tga", "map-of-%d-entries-%d-bits" % (length, map_depth),
                tga_header(8, kind=1, map_kind=1, map_length=length, map_depth=map_depth) + table + noise(15))
    for kind in (0, 1, 3, 4, 9, 11, 32, 255):
        put("load_tga", "kind-%d" % kind, tga_header(kind=kind) + noise(45))
        put("load_tga", "kind-%d-8-bit" % kind,
            tga_header(8, kind=kind, map_kind=1, map_length=16, map_depth=24) + noise(48 + 15))
    for descriptor in (16, 48, 15, 255):
        put("load_tga", "descriptor-%d" % descriptor, tga_header(descriptor=descriptor) + noise(45))
    put("load_tga", "ident-of-9", tga_header(ident=9) + noise(9 + 45))
    put("load_tga", "map-from-5", tga_header(8, kind=1, map_kind=1, map_start=5, map_length=16, map_depth=24)
        + noise(48 + 15))
    put("load_tga", "map-of-another-kind", tga_header(8, kind=1, map_kind=2, map_length=16, map_depth=24) + noise(63))
    put("load_tga", "negative-size", tga_header(width=-5, height=-3) + noise(45))
    put("load_tga", "negative-height-8-bit",
        tga_header(8, height=-3, map_length=16, map_depth=24) + noise(48 + 15))
    put("load_tga", "sample", sample(".tga"))
    grey = tga_header(8, kind=3) + noise(15)
    packed_grey = tga_header(8, kind=9) + b"\x87\x05\x06" + noise(7)
    put("load_tga", "grey-after-a-map", b"NEXT".join((maps[24] + noise(15), grey)))
    put("load_tga", "grey-after-a-long-map", b"NEXT".join(
        (tga_header(8, kind=1, map_length=256, map_depth=24) + noise(768 + 15), grey + noise(755))))
    put("load_tga", "several-after-a-map", b"NEXT".join((maps[24] + noise(15), maps[16] + noise(60), packed_grey,
                                                         tga_header(32) + noise(60))))
    put("load_tga", "unknown-after-a-picture", b"NEXT".join((tga_header() + noise(45), tga_header(15) + noise(9))))
    put("load_tga", "size-overflows", tga_header(x=-32768, width=1))
    put("load_tga", "row-overflows", tga_header(32, width=1024, height=1) + noise(60))
    put("load_tga", "cut-header", tga_header()[:11])
    put("load_tga", "empty", b"")


# BMP and JPEG -------------------------------------------------------------------------------------------------------

def bmp_header(file_size=70, offset=54, size=40, width=2, height=2, planes=1, depth=24, compression=0, image=16):
    return b"BM" + struct.pack("<IHHIIiiHHIIiiII", file_size, 0, 0, offset, size, width, height, planes, depth,
                               compression, image, 0, 0, 0, 0)


def make_bmp():
    picture = ppm(5, 3, 2)
    for name, options in (("true-colour", "-type TrueColor bmp3:-"), ("palette", "-type Palette bmp3:-"),
                          ("mono", "-type Bilevel bmp3:-"), ("packed", "-type Palette -compress RLE bmp3:-"),
                          ("version-4", "bmp:-"), ("version-2", "bmp2:-")):
        put("probe_bmp", "magick-" + name, run("convert ppm:- " + options, picture)[:200])
    put("probe_bmp", "netpbm", run("ppmtobmp", picture)[:200])
    for name, fields in (("top-down", {"height": -2}), ("width-0", {"width": 0}), ("file-size-0", {"file_size": 0}),
                         ("offset-53", {"offset": 53}), ("core-header", {"size": 12}), ("planes-2", {"planes": 2}),
                         ("compression-overflows", {"compression": 40000}),
                         ("compression-32767", {"compression": 32767}),
                         ("compression-negative", {"compression": 0xFFFFFFFF}), ("image-size-0", {"image": 0}),
                         ("image-size-too-large", {"image": 71}), ("image-size-negative", {"image": 0x80000000}),
                         ("depth-65535", {"depth": 65535})):
        put("probe_bmp", name, bmp_header(**fields) + bytes(16))
    for name, fields in (("depth-0", {"depth": 0}), ("planes-0", {"planes": 0}), ("height-0", {"height": 0}),
                         ("negative-width", {"width": -2}),
                         ("largest-sides", {"width": 2**31 - 1, "height": 2**31 - 1}),
                         ("header-of-108", {"size": 108}), ("file-size-negative", {"file_size": 0x80000000}),
                         ("offset-negative", {"offset": 0xFFFFFFFF})):
        put("probe_bmp", name, bmp_header(**fields) + bytes(16))
    put("probe_bmp", "sample", sample(".bmp")[:200])
    put("probe_bmp", "cut", bmp_header()[:53])
    put("probe_bmp", "empty", b"")


def segment(marker, payload):
    return struct.pack(">BBH", 255, marker, len(payload) + 2) + payload


def make_jpeg():
    picture = ppm(5, 3, 9)
    for name, command in (("baseline", "cjpeg"), ("progressive", "cjpeg -progressive"), ("grey", "cjpeg -grayscale")):
        put("probe_jpeg", "netpbm-" + name, run(f"command -v cjpeg >&- && {command} || convert ppm:- jpg:-", picture))
    put("probe_jpeg", "magick", run("convert ppm:- -quality 10 jpg:-", picture))
    put("probe_jpeg", "magick-progressive", run("convert ppm:- -interlace JPEG -quality 10 jpg:-", picture))
    start = b"\xff\xd8"
    jfif = segment(0xE0, b"JFIF\0\1\1\0\0\1\0\1\0\0")
    size = struct.pack(">BHHB", 8, 3, 5, 1) + b"\1\x11\0"
    put("probe_jpeg", "size-only", start + jfif + segment(0xC0, size))
    put("probe_jpeg", "without-jfif", start + segment(0xE1, b"Exif\0\0" + bytes(8)) + segment(0xC0, size))
    put("probe_jpeg", "other-app0", start + segment(0xE0, b"JFXX\0" + bytes(8)) + segment(0xC0, size))
    put("probe_jpeg", "scan-first", start + jfif + segment(0xDA, bytes(10)) + segment(0xC0, size))
    put("probe_jpeg", "stray-bytes", start + b"\0\1\2" + jfif + b"\0" * 5 + segment(0xC0, size))
    put("probe_jpeg", "fill-bytes", start + b"\xff" * 9 + segment(0xC0, size))
    put("probe_jpeg", "height-overflows", start + segment(0xC0, b"\x08\x80\0\0\5\1"))
    put("probe_jpeg", "width-overflows", start + segment(0xC0, b"\x08\0\5\x80\0\1"))
    put("probe_jpeg", "length-overflows", start + b"\xff\xe1\x80\0" + bytes(20))
    put("probe_jpeg", "length-beyond-the-end", start + b"\xff\xe1\x7f\xff" + bytes(20))
    put("probe_jpeg", "length-0", start + b"\xff\xe1\0\0" * 5)
    put("probe_jpeg", "cut-in-the-size", start + jfif + segment(0xC0, size)[:6])
    put("probe_jpeg", "sample", sample(".jpg")[:600])
    for marker in (0xC1, 0xC2, 0xC4, 0xD0, 0xDB, 0xFE):
        put("probe_jpeg", "marker-%x-first" % marker, start + segment(marker, bytes(6)) + jfif + segment(0xC0, size))
    put("probe_jpeg", "start-only", start)
    put("probe_jpeg", "empty", b"")


# BMP and JPEG files as a whole --------------------------------------------------------------------------------------

def make_pictures():
    bmp3 = "convert ppm:- %s bmp3:-"
    for side, colours in (((1, 1), 2), ((5, 3), 9), ((16, 12), 200)):
        picture = ppm(*side, colours)
        label = "%dx%d" % side
        for name, command in (("true-colour", bmp3 % "-type TrueColor"), ("palette", bmp3 % "-type Palette"),
                              ("mono", bmp3 % "-type Bilevel"), ("packed", bmp3 % "-type Palette -compress RLE"),
                              ("version-5", "convert ppm:- bmp:-"), ("version-2", "convert ppm:- bmp2:-"),
                              ("alpha", "convert ppm:- -alpha set bmp:-"), ("netpbm", "ppmtobmp"),
                              ("jpeg", "convert ppm:- -quality 30 jpg:-"),
                              ("jpeg-grey", "convert ppm:- -colorspace Gray -quality 30 jpg:-"),
                              ("jpeg-progressive", "convert ppm:- -interlace JPEG -quality 30 jpg:-"),
                              ("jpeg-of-four-inks", "convert ppm:- -colorspace CMYK -quality 30 jpg:-"),
                              ("jpeg-full-samples", "convert ppm:- -sampling-factor 1x1 -quality 30 jpg:-")):
            data = run(command, picture)
            target = "load_picture" if name.startswith("jpeg") else "read_bmp"
            put(target, name + "-" + label, data)
            put(target, name + "-cut-" + label, data[:len(data) * 4 // 5])
    for depth in (1, 4, 8, 16, 24, 32, 2, 0):
        table = noise(4 << depth, depth) if 0 < depth <= 8 else b""
        row = (6 * depth + 31) // 32 * 4
        fields = {"width": 6, "height": 5, "depth": depth, "offset": 54 + len(table), "image": 5 * row,
                  "file_size": 54 + len(table) + 5 * row}
        head = bmp_header(**fields) + table
        put("read_bmp", "plain-%d-bit" % depth, head + noise(5 * row, depth))
        put("read_bmp", "short-%d-bit" % depth, head + noise(3 * row, depth))
        put("read_bmp", "top-down-%d-bit" % depth, bmp_header(**{**fields, "height": -5}) + table + noise(5 * row))
        put("read_bmp", "huge-%d-bit" % depth, bmp_header(**{**fields, "width": 32767, "height": 32767}) + table)
    masks = struct.pack("<III", 0xF800, 0x7E0, 0x1F)
    put("read_bmp", "masks-16-bit", bmp_header(width=6, height=5, depth=16, compression=3, offset=66)
        + masks + noise(60))
    put("read_bmp", "masks-of-nothing", bmp_header(width=6, height=5, depth=32, compression=3, offset=66)
        + bytes(12) + noise(120))
    for bits, compression in ((8, 1), (4, 2)):
        table = noise(4 << bits, bits)
        head = bmp_header(width=6, height=5, depth=bits, compression=compression, offset=54 + len(table)) + table
        put("read_bmp", "packed-%d-bit" % bits, head + b"\x06\x11\0\0\0\4\1\2\3\4\0\2\1\1\3\5\0\1")
        put("read_bmp", "packed-short-%d-bit" % bits, head + b"\x06\x11\0\0\0\4\1\2")
        put("read_bmp", "packed-outside-%d-bit" % bits, head + b"\xff\x11\0\2\xff\xff\5\5\0\1")
    core = b"BM" + struct.pack("<IHHIIHHHH", 200, 0, 0, 26, 12, 6, 5, 1, 24)
    put("read_bmp", "core-header", core + noise(100))
    put("load_picture", "sample.jpg", sample(".jpg"))
    put("read_bmp", "sample.bmp", sample(".bmp"))
    put("load_picture", "empty", b"")
    put("read_bmp", "empty", b"")


# Sprites ------------------------------------------------------------------------------------------------------------

def sprite(width=4, height=3, frames=2, ident=b"IDSP", version=2, claimed=None, colours=256, sizes=None):
    sizes = sizes or [(width, height)] * frames
    data = ident + struct.pack("<iiifiiifi", version, 2, 1, 2.5, width, height,
                               len(sizes) if claimed is None else claimed, 0.0, 1)
    data += struct.pack("<h", colours) + noise(768, 7)
    for number, size in enumerate(sizes):
        data += struct.pack("<iiiii", 0, -(size[0] // 2), size[1] // 2, *size)
        data += noise(max(size[0] * size[1], 0) if abs(size[0] * size[1]) < 5000 else 12, number)
    return data


def put_sprite(name, data):
    put("load_sprite", name, data)
    put("parse_sprite", name, data)


def make_sprites():
    put_sprite("one-pixel", sprite(1, 1, 1))
    put_sprite("two-frames", sprite())
    put_sprite("nine-frames", sprite(5, 7, 9))
    put_sprite("frames-of-several-sizes", sprite(sizes=[(4, 3), (2, 2), (8, 8)]))
    put_sprite("frames-smaller-than-the-sprite", sprite(9, 9, sizes=[(4, 3), (4, 3)]))
    put_sprite("frames-larger-than-the-sprite", sprite(2, 2, sizes=[(4, 3), (4, 3)]))
    put_sprite("negative-sprite-size", sprite(-4, -3, sizes=[(4, 3)]))
    put_sprite("negative-frame-size", sprite(sizes=[(-4, -3)]))
    put_sprite("frame-of-width-0", sprite(sizes=[(0, 3)]))
    put_sprite("huge-frame-size", sprite(sizes=[(65536, 65536)]))
    put_sprite("huge-legal-frame-size", sprite(sizes=[(32767, 65535)]))
    put_sprite("huge-frame-then-another", sprite(sizes=[(32767, 65535), (4, 3)]))
    put_sprite("more-frames-than-it-holds", sprite(claimed=3))
    put_sprite("fewer-frames-than-it-holds", sprite(claimed=1))
    put_sprite("without-frames", sprite(frames=0, sizes=[], claimed=0))
    put_sprite("negative-frame-count", sprite(claimed=-1))
    put_sprite("claims-32768-frames", sprite(claimed=32768))
    put_sprite("claims-2147483647-frames", sprite(claimed=2147483647))
    put_sprite("other-ident", sprite(ident=b"IDST"))
    put_sprite("other-version", sprite(version=1))
    put_sprite("colour-count-16", sprite(colours=16))
    for place, label in ((8, "type"), (12, "render-mode"), (16, "radius"), (32, "beam"), (36, "sync")):
        data = bytearray(sprite())
        data[place:place + 4] = b"\xff\xff\xff\xff"
        put_sprite("all-ones-" + label, bytes(data))
    put_sprite("colour-count-negative", sprite(colours=-256))
    put_sprite("largest-sprite-size", sprite(2**31 - 1, 2**31 - 1, sizes=[(4, 3)]))
    put_sprite("cut-in-the-header", sprite()[:30])
    put_sprite("cut-in-the-palette", sprite()[:500])
    put_sprite("cut-in-a-frame-header", sprite()[:815])
    put_sprite("cut-in-a-frame", sprite()[:835])
    put_sprite("empty", b"")


# Recipes: the first bytes select size, depth and contents; see Recipe and surface_of in fuzzing.h -------------------

RANDOM_MANNERS = 6
SPELLED_OUT = 6


def surface(width, height, depth=0, manner=SPELLED_OUT, rest=b""):
    """The recipe of a surface of at most 256 by 256 pixels; sizes are stored minus 1."""
    return bytes([width - 1, height - 1, depth, manner]) + rest


def make_recipes():
    spelled = bytes([3]) + noise(9, 11)
    for target in ("write_read_pcx", "write_read_tga"):
        for width, height in ((1, 1), (2, 3), (5, 2), (1, 9), (130, 2), (200, 16)):
            for depth in range(3):
                label = "%dx%d-depth-%d" % (width, height, depth)
                put(target, "spelled-" + label,
                    surface(width, height, depth, rest=spelled + noise(min(width * height, 300), width)))
            for manner in range(RANDOM_MANNERS):
                put(target, "manner-%d-%dx%d" % (manner, width, height),
                    surface(width, height, manner=manner, rest=bytes([width])))
        put(target, "black", surface(4, 4))
    for mode in (0, 1):
        for manner in range(RANDOM_MANNERS):
            for side in ((1, 1), (3, 38), (40, 40)):
                put("reduce", "mode-%d-manner-%d-%dx%d" % (mode, manner, *side),
                    bytes([mode, 0]) + surface(*side, manner=manner, rest=b"\7"))
        put("reduce", "mode-%d-two-of-one-size" % mode,
            bytes([mode, 1]) + surface(30, 30, manner=0, rest=b"\1") + surface(30, 30, manner=5, rest=b"\2"))
        put("reduce", "mode-%d-depths-24-and-16" % mode,
            bytes([mode, 1]) + surface(33, 20, 1, 0, b"\1") + surface(33, 20, 2, 0, b"\2"))
        put("reduce", "mode-%d-spelled" % mode,
            bytes([mode, 0]) + surface(7, 5, rest=b"\0" + noise(3 * 35, 4)))
    for picked in (0, 1):
        head = bytes([picked, 10, 20, 30])
        label = "-picked" if picked else ""
        for manner in range(RANDOM_MANNERS):
            pictures = [surface(20, 20, manner=manner, rest=bytes([seed])) for seed in range(3)]
            put("import_mix", "manner-%d%s" % (manner, label), head + bytes([1, 1, 2]) + b"".join(pictures))
        put("import_mix", "several-sizes" + label,
            head + bytes([0, 1, 1]) + surface(4, 4, rest=spelled + noise(16)) + surface(9, 2, manner=1, rest=b"\5"))
        put("import_mix", "depth-24" + label, head + bytes([1, 0, 0]) + surface(5, 4, rest=spelled + noise(20)))
        put("import_mix", "one-pixel" + label, head + bytes([1, 1, 0]) + surface(1, 1, rest=b"\0\1\2\3"))
    for width, height, frames in ((1, 1, 0), (1, 1, 1), (3, 4, 2), (7, 2, 24), (40, 40, 3)):
        head = bytes([width - 1, height - 1]) + struct.pack("<iii", 2, 1, 0) + bytes([frames]) + noise(768, 9)
        order = b"".join(bytes([frames - 1 - i]) + noise(min(width * height, 100), i) for i in range(frames))
        put("write_read_sprite", "%d-frames-%dx%d" % (frames, width, height), head + order)
    put("write_read_sprite", "all-zero", b"")
    for depth in range(6):
        put("write_read_bmp", "depth-%d-one-pixel" % depth, bytes([0, 0, depth, 0]) + noise(4))
        put("write_read_bmp", "depth-%d" % depth, bytes([12, 4, depth, 16]) + noise(64 + 50, depth))
        put("write_read_bmp", "depth-%d-large" % depth, bytes([63, 63, depth, 255]) + noise(1200, depth))
    put("write_read_bmp", "all-zero", b"")
    for kind in range(4):
        for clicks, label in ((bytes([0, 0, 0]), "plain"), (bytes([1, 1, 0]), "picked-and-resized"),
                              (bytes([0, 1, 12]), "cancelled")):
            head = bytes([kind]) + clicks + bytes([3, 3]) + bytes([7, 9])
            for manner in range(RANDOM_MANNERS):
                common = bytes([15, 15]) if manner in (0, 5) else bytes([5, 6])
                files = b"".join(bytes([9, manner, seed]) for seed in range(3))
                put("whole_import", "kind-%d-%s-manner-%d" % (kind, label, manner), head + common + b"\2" + files)
            spelled_files = bytes([9, RANDOM_MANNERS]) + spelled + noise(42)
            put("whole_import", "kind-%d-%s-spelled" % (kind, label), head + bytes([5, 6]) + b"\0" + spelled_files)
        head = bytes([kind, 0, 1, 0, 0, 0, 7, 9, 5, 6, 3])
        put("whole_import", "kind-%d-shallow" % kind, head + b"".join(bytes([201, 0, seed]) for seed in range(4)))
        put("whole_import", "kind-%d-of-another-size" % kind, head + bytes([9, 1, 1, 17, 3, 4, 1, 2, 9, 1, 3, 9, 1, 4]))
        put("whole_import", "kind-%d-broken" % kind, head + bytes([9, 1, 1, 18, 1, 5, 2, 12, 255, 1, 77, 2, 9, 1, 3]))
        put("whole_import", "kind-%d-that-does-not-decode" % kind, head + bytes([9, 1, 1, 19, 1, 5, 9, 1, 3, 9, 1, 4]))
        put("whole_import", "kind-%d-unselected" % kind, head + bytes([8, 1, 1] * 4))


# The command line's readers ------------------------------------------------------------------------------------------

def make_rgba_pictures():
    picture = ppm(7, 5, 14)
    alpha = "-alpha set -channel A -evaluate set 40% +channel "
    for name, options in (("true-colour", "-type TrueColor"), ("alpha", alpha), ("palette", "-type Palette"),
                          ("grey", "-colorspace Gray")):
        for packing in ("None", "RLE"):
            label = "magick-%s-%s" % (name, packing.lower())
            put("read_tga", label, run("convert ppm:- %s -compress %s tga:-" % (options, packing), picture))
            put("read_pcx", label, run("convert ppm:- %s -compress %s pcx:-" % (options, packing), picture))
        put("read_rgba_bmp", "magick-" + name, run("convert ppm:- %s bmp:-" % options, picture))
    put("read_tga", "netpbm-map-of-15-bits", run("pamtotga -cmap16 -norle", picture))
    for kind, depth, map_depth in ((1, 16, 16), (1, 8, 32), (2, 15, 0), (2, 16, 0), (3, 16, 0), (10, 16, 0),
                                   (11, 16, 0)):
        head = tga_header(depth, kind=kind, map_kind=int(kind == 1), map_length=16 if kind == 1 else 0,
                          map_depth=map_depth, descriptor=0x31, ident=3)
        put("read_tga", "kind-%d-of-%d-bits" % (kind, depth), head + noise(3 + map_depth * 2 + 40))
    for descriptor in (0x40, 0x90, 0xB8):
        put("read_tga", "descriptor-%d" % descriptor, tga_header(descriptor=descriptor) + noise(45))
    for attributes in (0, 3, 4):
        file = tga_header(32, descriptor=8) + noise(60)
        put("read_tga", "attributes-type-%d" % attributes, file + bytes(494) + bytes([attributes])
            + struct.pack("<II", len(file), 0) + b"TRUEVISION-XFILE.\0")
    for bits, planes in ((1, 1), (2, 1), (4, 1), (8, 1), (1, 2), (1, 3), (1, 4), (8, 3), (8, 4)):
        for version in (2, 3, 5):
            put("read_pcx", "version-%d-of-%dx%d-bits" % (version, planes, bits),
                pcx_header(bits, planes, version=version) + b"\xc7\x55\xc1\xff" + noise(60)
                + (b"\x0c" + noise(768, 5)) * (bits == 8 and planes == 1 and version == 5))
    for size in (40, 52, 56, 108, 124):
        masks = struct.pack("<IIII", 0xFF0000, 0xFF00, 0xFF, 0xFF000000) + bytes(68)
        info = struct.pack("<IiiHHIIiiII", size, 5, 3, 1, 32, 6 if size == 40 else 3, 60, 0, 0, 0, 0)
        head = info + masks[:max(size, 56) - 40]
        put("read_rgba_bmp", "header-of-%d" % size,
            struct.pack("<2sIII", b"BM", 0, 0, 14 + len(head)) + head + noise(60))


def make_gifs():
    picture, other = ppm(7, 5, 14), ppm(4, 3, 3)
    put("read_gif", "still", run("ppmtogif", picture))
    put("read_gif", "interlaced", run("ppmtogif -interlace", picture))
    pair = "convert \\( ppm:- -write mpr:a +delete \\) %s gif:-"
    for disposal in ("none", "background", "previous"):
        frames = "-dispose %s mpr:a -page +2+1 \\( mpr:a -resize 3x2! \\) -page +5+3 mpr:a" % disposal
        put("read_gif", "dispose-" + disposal, run(pair % frames, picture))
    put("read_gif", "common-map", run(pair % "mpr:a \\( mpr:a -flop \\) +map", other))
    put("read_gif", "transparent", run("convert ppm:- -transparent '#%s' gif:-" % picture[11:14].hex(), picture))
    still = run("ppmtogif", picture)
    put("read_gif", "truncated", still[:-9])
    put("read_gif", "without-end", still[:-1])
    put("read_gif", "empty-canvas", still[:6] + bytes(4) + still[10:])


def make_palettes():
    colours = noise(3 * 5)
    rows = ["%d %d %d" % tuple(colours[i:i + 3]) for i in range(0, 15, 3)]
    put("read_palette", "jasc", "\r\n".join(["JASC-PAL", "0100", "5", *rows, ""]).encode())
    put("read_palette", "jasc-cut", "\n".join(["JASC-PAL", "0100", "9", *rows]).encode())
    put("read_palette", "gimp", "\n".join(["GIMP Palette", "Name: Test", "Columns: 4", "# Red", *rows]).encode())
    data = struct.pack("<HH", 0x300, 5) + b"".join(colours[i:i + 3] + b"\0" for i in range(0, 15, 3))
    chunk = b"data" + struct.pack("<I", len(data)) + data
    put("read_palette", "riff", b"RIFF" + struct.pack("<I", 4 + len(chunk)) + b"PAL " + chunk)
    put("read_palette", "riff-other-chunk", b"RIFF\x20\0\0\0PAL offl\1\0\0\0\7\0" + chunk)
    put("read_palette", "raw", noise(768))
    put("read_palette", "adobe", noise(768) + b"\0\x10\0\x0f")


if __name__ == "__main__":
    make_pcx()
    make_tga()
    make_bmp()
    make_jpeg()
    make_pictures()
    make_sprites()
    make_recipes()
    make_rgba_pictures()
    make_gifs()
    make_palettes()
