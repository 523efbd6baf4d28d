#!/usr/bin/env python3
"""Makes sprites from pictures of every kind, written by other tools or byte by byte.
Usage: pictures_test.py VARNOTH_CLI WALKTHROUGH SAMPLES [TEST...]"""
import os
import struct

from cli_test_case import CliTest, main, parse_sprite, sprite_bytes

WIDTH, HEIGHT = 7, 5


class Pictures(CliTest):
    def setUp(self):
        super().setUp()
        self.tool("convert", "-size", f"{WIDTH}x{HEIGHT}", "plasma:red-blue", "-colors", "30", "-depth", "8", "in.ppm")
        self.expected = self.read("in.ppm")[-3 * WIDTH * HEIGHT:]

    def frames_of(self, *pictures, **options):
        """The frames of the sprite that `make` makes, as bytes of red, green and blue."""
        self.run_cli("make", "--quiet", "--force", "out.spr", *pictures, **options)
        _, palette, frames = parse_sprite(self.read("out.spr"))
        return [b"".join(palette[3 * index:3 * index + 3] for index in indices) for _, _, _, indices in frames]

    def test_each_format(self):
        for name in ("a.png", "a.bmp", "a.pcx", "a.gif", "a.xpm", "a.ppm", "a.ico"):
            self.tool("convert", "in.ppm", name)
            self.assertEqual(self.frames_of(name), [self.expected], name)

    def test_tga_of_each_kind_and_origin(self):
        for options in ("-type TrueColor", "-type Palette", "-type TrueColorAlpha -alpha set"):
            for compression in ("None", "RLE"):
                for orientation in ("-orient TopLeft", "-flip -orient BottomLeft", "-flop -orient TopRight"):
                    self.tool("convert", "in.ppm", *options.split(), *orientation.split(), "-compress", compression,
                              "a.tga")
                    self.assertEqual(self.frames_of("a.tga"), [self.expected], (options, compression, orientation))

    def test_tga_of_16_bits(self):
        header = struct.pack("<BBBHHBHHHHBB", 0, 0, 2, 0, 0, 0, 0, 0, 2, 1, 16, 0x20)
        self.write("a.tga", header + struct.pack("<HH", 0x7C00, 0x001F))
        self.assertEqual(self.frames_of("a.tga"), [b"\xff\0\0\0\0\xff"])

    def test_pcx_of_each_depth(self):
        for colours in (2, 4, 8, 16, 30):
            self.write("few.ppm", self.tool("pnmquant", colours, "in.ppm"))
            expected = self.read("few.ppm")[-3 * WIDTH * HEIGHT:]
            planes = max(1, (colours - 1).bit_length())
            layouts = [["-24bit"]] + ([["-8bit"]] if colours > 16 else [[f"-planes={planes}"], ["-packed"]])
            for options in layouts:
                self.write("a.pcx", self.tool("ppmtopcx", *options, "few.ppm"))
                self.assertEqual(self.frames_of("a.pcx"), [expected], (colours, options))

    def test_standard_input(self):
        self.tool("convert", "in.ppm", "a.png")
        self.assertEqual(self.frames_of("-", stdin=self.read("a.png")), [self.expected])

    def test_every_frame_of_an_animation_from_standard_input(self):
        self.tool("convert", "in.ppm", "(", "in.ppm", "-flop", ")", "+map", "a.gif")
        rows = [self.expected[at:at + 3 * WIDTH] for at in range(0, len(self.expected), 3 * WIDTH)]
        mirrored = b"".join(row[at:at + 3] for row in rows for at in range(3 * WIDTH - 3, -1, -3))
        self.assertEqual(self.frames_of("-", stdin=self.read("a.gif")), [self.expected, mirrored])

    def test_folder_in_natural_order(self):
        os.mkdir(self.path("folder"))
        colours = {"frame2.png": b"\xff\0\0", "Frame10.bmp": b"\0\xff\0", "frame11.tga": b"\0\0\xff"}
        for name, colour in colours.items():
            self.tool("convert", "-size", "1x1", f"xc:#{colour.hex()}", f"folder/{name}")
        self.write("folder/notes.txt", b"no picture")
        self.assertEqual(self.frames_of("folder"), list(colours.values()))

    def test_palette_from_each_kind_of_file(self):
        colours = bytes([200, 0, 0, 0, 200, 0])
        self.write("a.spr", sprite_bytes(1, 1, [b"\0"], palette=colours + bytes(762)))
        self.write("a.pal", b"JASC-PAL\r\n0100\r\n2\r\n200 0 0\r\n0 200 0\r\n")
        self.write("a.gpl", b"GIMP Palette\nName: Two\nColumns: 2\n#\n200 0 0\tRed\n0 200 0\tGreen\n")
        self.write("a.act", colours + bytes(762) + b"\0\2\xff\xff")
        self.write("raw.pal", colours + bytes(762))
        self.write("a.ppm", b"P6 2 1 255\n" + colours)
        riff = struct.pack("<4sIHH", b"data", 12, 0x300, 2) + b"\xc8\0\0\0\0\xc8\0\0"
        self.write("riff.pal", struct.pack("<4sI4s", b"RIFF", 4 + len(riff), b"PAL ") + riff)
        self.write("in.ppm", b"P6 2 1 255\n" + bytes([10, 250, 20, 250, 10, 20]))
        for name in ("a.spr", "a.pal", "a.gpl", "a.act", "raw.pal", "a.ppm", "riff.pal"):
            self.assertEqual(self.frames_of("--palette", name, "in.ppm"), [colours[3:] + colours[:3]], name)
            self.assertEqual(parse_sprite(self.read("out.spr"))[1][:6], colours, name)

    def test_bad_pictures_are_one_line_that_names_them(self):
        self.tool("convert", "in.ppm", "a.png")
        self.tool("convert", "in.ppm", "a.gif")
        self.write("cut.png", self.read("a.png")[:-30])
        self.write("cut.gif", self.read("a.gif")[:-30])
        self.write("cut.bmp", b"BM")
        self.write("empty.png", b"")
        self.write("text.txt", b"no picture")
        os.mkdir(self.path("nothing"))
        for name in ("cut.png", "cut.gif", "cut.bmp", "empty.png", "text.txt", "nothing", "none.png"):
            self.assertIn(name + ": ", self.fails("make", "--quiet", "out.spr", name))
            self.assertFalse(os.path.exists(self.path("out.spr")), name)
        self.assertIn("standard input: ", self.fails("make", "--quiet", "out.spr", "-", stdin=b"no picture"))

    def test_bad_palettes_are_one_line_that_names_them(self):
        self.write("cut.pal", b"JASC-PAL\r\n0100\r\n2\r\n200 0 0\r\n")
        self.write("text.txt", b"no palette")
        self.write("many.gpl", b"GIMP Palette\n" + b"1 2 3\n" * 257)
        for name in ("cut.pal", "text.txt", "many.gpl", "none.pal"):
            self.assertIn(name + ": ", self.fails("make", "--quiet", "--palette", name, "out.spr", "in.ppm"))


if __name__ == "__main__":
    main()
