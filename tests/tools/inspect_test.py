#!/usr/bin/env python3
"""Runs the inspector as a program on valid and invalid sprites and pictures, and compares its output with independent
parsers or ImageMagick. Usage: inspect_test.py WALKTHROUGH INSPECT SAMPLES [TEST...]"""
import hashlib
import json
import os
import subprocess
import sys
import unittest

from tool_test import BLUE, INSPECT, RED, SAMPLES, SIDE, ToolTest, decode, parse_ppm, read, sprite_file, tga, write


def sha256(data):
    return hashlib.sha256(data).hexdigest()


class Inspect(ToolTest):
    def inspect(self, *arguments, status=0):
        done = subprocess.run([INSPECT, *arguments], cwd=self.folder, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                              timeout=60, check=False)
        self.errors = done.stderr.decode()
        self.assertEqual(done.returncode, status, self.errors)
        return [json.loads(line) for line in done.stdout.decode().splitlines()]

    def inspect_one(self, *arguments):
        lines = self.inspect(*arguments)
        self.assertEqual(len(lines), 1)
        self.assertEqual(lines[0].pop("file"), arguments[-1])
        return lines[0]

    def test_sprite_is_reported_completely(self):
        frames = [bytes([7] * 6), bytes(range(6))]
        data = sprite_file(2, 3, frames, origins=[(1, 2), (3, 4)])
        output = self.inspect_one(write(self.path("a.spr"), data))
        self.assertEqual(output, {
            "result": -1, "message": None, "Ident": "IDSP", "Version": 2, "SpriteType": 1, "RenderMode": 0,
            "BoundingRadius": 7.5, "Width": 2, "Height": 3, "FrameCount": 2, "BeamLength": 2.5, "SyncType": 0,
            "ColourCount": 256,
            "FrameHeader": {"FrameType": 0, "OriginX": 3, "OriginY": 4, "FrameWidth": 2, "FrameHeight": 3},
            "PaletteSha256": sha256(bytes(range(256)) * 3),
            "Frames": [{"length": 6, "sha256": sha256(frame)} for frame in frames], "FrameOrder": [0, 1]})

    def test_refused_sprite_has_its_message_and_the_fields_read(self):
        output = self.inspect_one(write(self.path("a.spr"), sprite_file(5, 3, [bytes(15)], colour_count=255)))
        self.assertEqual((output["result"], output["message"]), (0, "Not 8bpp sprite"))
        self.assertEqual((output["Width"], output["ColourCount"], output["Frames"]), (5, 255, []))
        output = self.inspect_one(self.path("missing.spr"))
        self.assertEqual((output["result"], output["message"]), (0, "Unknown Error Loading Sprite."))

    def test_each_file_has_its_own_line_and_document(self):
        write(self.path("a.spr"), sprite_file(1, 1, [b"\1"]))
        write(self.path("b.spr"), b"")
        first, second = self.inspect("a.spr", "b.spr")
        self.assertEqual((first["file"], first["FrameCount"], first["result"]), ("a.spr", 1, -1))
        self.assertEqual((second["file"], second["FrameCount"], second["result"]), ("b.spr", 0, 0))
        self.assertEqual(second["PaletteSha256"], sha256(bytes(768)))

    def test_bmp_and_jpeg_files_are_probed(self):
        self.assertEqual(self.inspect_one(os.path.join(SAMPLES, "palette.bmp")),
                         {"probe": {"result": -1, "width": 64, "height": 64, "bitCount": 8, "compression": 0}})
        self.assertEqual(self.inspect_one(os.path.join(SAMPLES, "explosion_1.jpg")),
                         {"probe": {"result": -1, "width": 64, "height": 64}})
        output = self.inspect_one(write(self.path("bad.BMP"), b"MB"))
        self.assertEqual(output["probe"]["result"], 0)
        self.assertEqual(self.inspect_one(self.path("missing.bmp")), {"probe": {"failure": "FileNotFound"}})

    def check_reader(self, extension, recognised, bpp):
        path = os.path.join(SAMPLES, f"explosion_5.{extension}")
        output = self.inspect_one("--decode", self.path("out.ppm"), path)
        width, height, pixels = decode(path)[0]
        self.assertEqual(output, {
            "probe": {"result": -1, "width": SIDE, "height": SIDE, "bpp": bpp},
            "load": {"Width": SIDE, "Height": SIDE, "TwipWidth": SIDE * 15, "TwipHeight": SIDE * 15, "Bpp": bpp,
                     "Compressed": 0, recognised: -1},
            "drawn": {"width": width, "height": height, "sha256": sha256(pixels)}})
        self.assertEqual(parse_ppm(read(self.path("out.ppm"))), [(width, height, pixels)])

    def test_tga_files_are_probed_loaded_and_drawn(self):
        self.check_reader("tga", "IsTGA", 24)

    def test_pcx_files_are_probed_loaded_and_drawn(self):
        self.check_reader("pcx", "IsPCX", 8)

    def test_undecoded_picture_is_reported_as_nothing(self):
        good = write(self.path("good.tga"), tga(2, 1, 1, 24, bytes(RED)))
        for name, data in (("bad.tga", tga(2, 2, 2, 5, bytes(16))), ("bad.pcx", bytes(200))):
            path = write(self.path(name), data)
            self.assertIs(self.inspect_one(path)["load"]["nothing"], True)
            output = self.inspect(good, path)
            self.assertNotIn("nothing", output[0]["load"])
            self.assertIs(output[1]["load"]["nothing"], True)

    def test_picture_without_pixels_is_nothing_even_after_another(self):
        good = write(self.path("good.tga"), tga(2, 1, 1, 24, bytes(RED)))
        empty = write(self.path("empty.tga"), tga(2, 0, 1, 16, bytes(4)))
        self.assertIs(self.inspect_one(empty)["load"]["nothing"], True)
        self.assertIs(self.inspect(good, empty)[1]["load"]["nothing"], True)

    def test_failure_is_reported_for_its_step(self):
        grey = write(self.path("grey.tga"), tga(3, 4, 4, 8, bytes(16)))
        output = self.inspect_one(grey)
        self.assertEqual(output["load"], {"failure": "SubscriptOutOfRange"})
        self.assertEqual(output["probe"], {"result": -1, "width": 4, "height": 4, "bpp": 8})
        self.assertNotIn("drawn", output)

    def test_failure_has_its_place_in_the_source_on_standard_error(self):
        self.inspect(write(self.path("grey.tga"), tga(3, 4, 4, 8, bytes(16))))
        self.assertRegex(self.errors, r"\Ainspect: SubscriptOutOfRange, at src/core/codecs/[^/]+:\d+ in .+\n\Z")
        self.inspect(self.path("missing.spr"))
        self.assertRegex(self.errors, r"\Ainspect: FileNotFound, at src/core/base/files\.cpp:\d+ in .+\n\Z")
        self.inspect(os.path.join(SAMPLES, "palette.bmp"))
        self.assertEqual(self.errors, "")

    def test_same_object_keeps_its_colour_map_for_the_next_file(self):
        mapped = write(self.path("mapped.tga"), tga(1, 4, 1, 8, bytes([1, 0, 1, 1]), bytes(RED[::-1] + BLUE[::-1])))
        # Longer by the size of the old map, which the reader subtracts from the length.
        grey = write(self.path("grey.tga"), tga(3, 4, 1, 8, bytes(4 + 3 * 256)))
        apart = self.inspect(mapped, grey)
        self.assertEqual(apart[0]["drawn"]["sha256"], sha256(bytes(BLUE + RED + BLUE + BLUE)))
        self.assertEqual(apart[1]["load"], {"failure": "SubscriptOutOfRange"})
        together = self.inspect("--same-object", mapped, grey)
        self.assertEqual(together[0], apart[0])
        self.assertEqual(together[1]["drawn"], {"width": 4, "height": 1, "sha256": sha256(bytes(12))})

    def test_missing_file_or_unknown_option_exits_with_64(self):
        self.inspect(status=64)
        self.inspect("--decode", status=64)
        self.inspect("--unknown", "a.spr", status=64)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]])
