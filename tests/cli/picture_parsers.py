"""Independent parsers of the pictures that the command line writes: indices, palettes and frames as the file has them.
They accept only what these files should be and raise an error for anything else."""
import struct
import zlib


def png_chunks(data):
    assert data[:8] == b"\x89PNG\r\n\x1a\n"
    at = 8
    while at < len(data):
        length, = struct.unpack_from(">I", data, at)
        name, body = data[at + 4:at + 8], data[at + 8:at + 8 + length]
        assert zlib.crc32(name + body) == struct.unpack_from(">I", data, at + 8 + length)[0]
        yield name, body
        at += 12 + length


def parse_png(data):
    """(width, height, palette or None, rows): rows of indices, or of red, green, blue and alpha if the file has them.
    """
    chunks = list(png_chunks(data))
    width, height, depth, kind, _, _, interlaced = struct.unpack(">IIBBBBB", chunks[0][1])
    assert depth == 8 and interlaced == 0
    size = {2: 3, 3: 1, 6: 4}[kind]
    raw = zlib.decompress(b"".join(body for name, body in chunks if name == b"IDAT"))
    rows, above = [], bytes(width * size)
    for y in range(height):
        start = y * (width * size + 1)
        above = unfilter(raw[start], raw[start + 1:start + 1 + width * size], above, size)
        rows.append(above)
    palette = [body for name, body in chunks if name == b"PLTE"]
    assert (kind == 3) == bool(palette) and b"tRNS" not in dict(chunks)
    return width, height, palette[0] if palette else None, rows if kind != 2 else with_alpha(rows)


def with_alpha(rows):
    return [b"".join(row[x:x + 3] + b"\xff" for x in range(0, len(row), 3)) for row in rows]


def unfilter(kind, line, above, size):
    row = bytearray(line)
    for x, value in enumerate(line):
        left = row[x - size] if x >= size else 0
        up = above[x]
        corner = above[x - size] if x >= size else 0
        if kind == 4:
            estimate = left + up - corner
            predicted = min((left, up, corner), key=lambda other: abs(estimate - other))
        else:
            predicted = (0, left, up, (left + up) // 2)[kind]
        row[x] = (value + predicted) % 256
    return bytes(row)


def parse_bmp(data):
    """(width, height, palette, rows) of 8 bits per pixel."""
    start, size, width, height, _, bits, compression = struct.unpack_from("<IIiiHHI", data, 10)
    assert data[:2] == b"BM" and size == 40 and bits == 8 and compression == 0 and start == 54 + 1024
    palette = b"".join(data[at:at + 3][::-1] for at in range(54, start, 4))
    stride = (width + 3) // 4 * 4
    rows = [data[start + y * stride:start + (y + 1) * stride] for y in range(height)]
    assert all(row[width:] == bytes(stride - width) for row in rows)
    return width, height, palette, [row[:width] for row in rows[::-1]]


def parse_tga(data):
    """(width, height, palette or None, rows): indices, or red, green, blue and alpha; top row first."""
    (identity, has_map, kind, first, entries, entry_bits, left, top, width, height, bits,
     descriptor) = struct.unpack_from("<BBBHHBHHHHBB", data)
    assert (identity, first, left, top) == (0, 0, 0, 0) and descriptor & 0x30 == 0x20
    if kind == 1:
        assert (has_map, entries, entry_bits, bits, descriptor & 15) == (1, 256, 24, 8, 0)
        palette = b"".join(data[at:at + 3][::-1] for at in range(18, 18 + 768, 3))
        pixels = data[18 + 768:]
        assert len(pixels) == width * height
        return width, height, palette, [pixels[y * width:(y + 1) * width] for y in range(height)]
    assert (kind, has_map, bits, descriptor & 15) == (2, 0, 32, 8)
    pixels = b"".join(data[at:at + 3][::-1] + data[at + 3:at + 4] for at in range(18, len(data), 4))
    assert len(pixels) == 4 * width * height
    return width, height, None, [pixels[y * width * 4:(y + 1) * width * 4] for y in range(height)]


def parse_pcx(data):
    """(width, height, palette, rows) of 8 bits per pixel on one plane."""
    maker, version, encoding, bits, left, top, right, bottom = struct.unpack_from("<BBBBHHHH", data)
    planes, stride = struct.unpack_from("<BH", data, 65)
    assert (maker, version, encoding, bits, planes, left, top) == (10, 5, 1, 8, 1, 0, 0)
    width, height = right + 1, bottom + 1
    assert stride == width + width % 2 and data[-769] == 12
    at, rows = 128, []
    for _ in range(height):
        row = b""
        while len(row) < stride:
            count, at = (data[at] & 63, at + 1) if data[at] >= 192 else (1, at)
            row += data[at:at + 1] * count
            at += 1
        assert len(row) == stride  # no run crosses the end of a row
        rows.append(row[:width])
    assert at == len(data) - 769
    return width, height, data[-768:], rows


def unpack_lzw(bits, data):
    """The indices in the blocks of a GIF picture."""
    clear, end = 1 << bits, (1 << bits) + 1
    table, size, previous, result = {}, bits + 1, None, bytearray()
    stream, filled, at = 0, 0, 0
    while True:
        while filled < size:
            stream |= data[at] << filled
            filled, at = filled + 8, at + 1
        code = stream & ((1 << size) - 1)
        stream, filled = stream >> size, filled - size
        if code == end:
            return bytes(result)
        if code == clear:
            table = {index: bytes([index]) for index in range(clear)}
            size, previous = bits + 1, None
            continue
        entry = table[code] if code in table else previous + previous[:1]
        result += entry
        if previous is not None and len(table) + 2 < 4096:
            table[len(table) + 2] = previous + entry[:1]
            if len(table) + 2 == 1 << size and size < 12:
                size += 1
        previous = entry


class Gif:
    """width, height, palette, loops (None without the extension), and frames: dictionaries with left, top, width,
    height, rows, delay, disposal and transparent."""

    def __init__(self, data):
        assert data[:6] == b"GIF89a"
        self.width, self.height, flags = struct.unpack_from("<HHB", data, 6)
        assert flags & 0x87 == 0x87  # a table of 256 colours
        self.palette = data[13:13 + 768]
        self.loops, self.frames = None, []
        at, control = 13 + 768, {}
        while data[at] != 0x3B:
            if data[at] == 0x21:
                blocks, kind = [], data[at + 1]
                at = self.blocks(data, at + 2, blocks)
                if kind == 0xF9:
                    packed, delay, index = struct.unpack("<BHB", blocks[0])
                    control = {"delay": delay, "disposal": packed >> 2 & 7,
                               "transparent": index if packed & 1 else None}
                elif blocks[0] == b"NETSCAPE2.0":
                    self.loops, = struct.unpack("<H", blocks[1][1:])
                continue
            assert data[at] == 0x2C
            left, top, width, height, flags = struct.unpack_from("<HHHHB", data, at + 1)
            assert flags == 0  # neither a table of its own nor interlaced
            blocks = []
            bits = data[at + 10]
            at = self.blocks(data, at + 11, blocks)
            pixels = unpack_lzw(bits, b"".join(blocks))
            assert len(pixels) == width * height
            self.frames.append({"left": left, "top": top, "width": width, "height": height,
                                "rows": [pixels[y * width:(y + 1) * width] for y in range(height)], **control})
            control = {}
        assert at == len(data) - 1

    @staticmethod
    def blocks(data, at, result):
        """Appends the blocks at an offset; returns the offset after them."""
        while data[at]:
            result.append(data[at + 1:at + 1 + data[at]])
            at += 1 + data[at]
        return at + 1


def parse_gif(data):
    """(width, height, palette, rows) of a GIF with one frame."""
    gif = Gif(data)
    frame, = gif.frames
    assert (frame["left"], frame["top"], frame["width"], frame["height"]) == (0, 0, gif.width, gif.height)
    assert gif.loops is None
    return gif.width, gif.height, gif.palette, frame["rows"]


PARSERS = {"png": parse_png, "bmp": parse_bmp, "tga": parse_tga, "pcx": parse_pcx, "gif": parse_gif}
