#!/usr/bin/env python3
"""Runs `info` and compares what it prints with files that the test builds byte by byte.
Usage: info_test.py VARNOTH_CLI WALKTHROUGH SAMPLES [TEST...]"""
import json
import os
import struct
import subprocess

from cli_test_case import PROGRAM, SAMPLES, CliTest, main, parse_sprite, sprite_bytes

GREYS = bytes(value for value in range(256) for _ in range(3))


class Info(CliTest):
    def text(self, *arguments, **options):
        return self.run_cli("info", *arguments, **options).stdout.decode()

    def facts(self, data, *options):
        return self.json("info", "--json", self.write("a.spr", data), *options)

    def fields(self, data):
        """The lines "  NAME   VALUE" as a dictionary."""
        lines = self.text(self.write("a.spr", data)).splitlines()[1:]
        return {line[2:22].strip(): line[22:] for line in lines if line[2] != " "}

    def test_header_in_words(self):
        fields = self.fields(sprite_bytes(64, 32, [bytes(2048)], sprite_type=3, mode=2, sync=0))
        self.assertEqual(fields["File"], "2878 bytes, version 2")
        self.assertEqual(fields["Type"], "ORIENTED (3)")
        self.assertEqual(fields["Render mode"], "INDEXALPHA (2)")
        self.assertEqual(fields["Size"], "64 x 32")
        self.assertEqual(fields["Bounding radius"], "35.77709")
        self.assertEqual(fields["Beam length"], "0")
        self.assertEqual(fields["Synchronisation"], "synchronized (0)")

    def test_unknown_numbers(self):
        fields = self.fields(sprite_bytes(16, 16, [bytes(256)], sprite_type=9, mode=-4, sync=7))
        self.assertEqual(fields["Type"], "unknown (9)")
        self.assertEqual(fields["Render mode"], "unknown (-4)")
        self.assertEqual(fields["Synchronisation"], "unknown (7)")
        self.assertEqual(fields["In the game"], "unknown mode")

    def test_each_mode_has_a_meaning(self):
        meanings = [self.facts(sprite_bytes(16, 16, [bytes(256)], mode=mode))["game"] for mode in range(4)]
        self.assertEqual([game["transparent_index"] for game in meanings], [None, None, None, 255])
        self.assertEqual(len({game["meaning"] for game in meanings}), 4)

    def test_equal_frames_share_a_line(self):
        data = sprite_bytes(16, 16, [bytes(256)] * 3)
        data += struct.pack("<5i", 1, -8, 7, 16, 17) + bytes(16 * 17)
        data = data[:28] + struct.pack("<i", 4) + data[32:]
        text = self.text(self.write("a.spr", data))
        self.assertIn("    0-2: 16 x 16, origin -8, 8\n    3: 16 x 17, origin -8, 7, type 1\n", text)

    def test_palette_use(self):
        palette = bytearray(GREYS)
        palette[3 * 9:3 * 9 + 3] = bytes([5, 5, 5])
        frames = [bytes([0, 1, 2, 250]), bytes([3, 4, 5, 255])]
        text = self.text(self.write("a.spr", sprite_bytes(2, 2, frames, palette=bytes(palette))))
        self.assertIn("8 of 256 entries used", text)
        self.assertIn("Unused entries      6-249, 251-254\n", text)
        self.assertIn("    #050505: 5, 9\n", text)

    def test_palette_without_double_or_unused_entries(self):
        fields = self.fields(sprite_bytes(16, 16, [bytes(range(256))], palette=GREYS))
        self.assertEqual(fields["Unused entries"], "none")
        self.assertEqual(fields["Double entries"], "none")

    def test_sides_that_are_no_multiple_of_16(self):
        text = self.text(self.write("a.spr", sprite_bytes(48, 17, [bytes(48 * 17)])))
        self.assertIn("Height 17 is no multiple of 16", text)
        self.assertNotIn("Width 48", text)

    def test_memory(self):
        fields = self.fields(sprite_bytes(16, 8, [bytes(128)] * 3))
        self.assertEqual(fields["Memory"], "384 bytes at 8 bits per pixel, 1536 at 32 bits")

    def test_trailing_bytes(self):
        fields = self.fields(sprite_bytes(16, 16, [bytes(256)]) + b"12345")
        self.assertEqual(fields["Trailing bytes"], "5")

    def test_truncated_file_is_described_as_far_as_it_goes(self):
        data = sprite_bytes(16, 16, [bytes(256)] * 3)[:810 + 276 + 100]
        fields = self.fields(data)
        self.assertEqual(fields["Frames"], "2 of 3")
        self.assertIn("Error", fields)

    def test_warnings_are_included(self):
        fields = self.fields(sprite_bytes(16, 16, [bytes(256)], mode=3))
        self.assertIn("nothing is transparent", fields["Warning"])

    def test_json_has_every_field(self):
        data = sprite_bytes(16, 8, [bytes(range(128)), bytes(128)], palette=GREYS, mode=1) + b"xyz"
        facts = self.facts(data)
        header, palette, _ = parse_sprite(data)
        self.assertEqual(facts["file"], self.path("a.spr"))
        self.assertEqual(facts["bytes"], len(data))
        names = {"version": "version", "type": "type", "mode": "mode", "bounding_radius": "radius", "width": "width",
                 "height": "height", "frame_count": "count", "beam_length": "beam", "sync": "sync"}
        self.assertEqual({name: facts["header"][name] for name in names},
                         {name: header[field] for name, field in names.items()})
        self.assertEqual(facts["header"]["type_name"], "VP_PARALLEL")
        self.assertEqual(facts["header"]["mode_name"], "ADDITIVE")
        self.assertEqual(bytes(sum(facts["palette"]["colours"], [])), palette)
        self.assertEqual(facts["palette"]["unused"], list(range(128, 256)))
        self.assertEqual(facts["palette"]["double"], [])
        frame = {"type": 0, "width": 16, "height": 8, "origin": [-8, 4]}
        self.assertEqual(facts["frames"], [{"offset": 810, **frame}, {"offset": 958, **frame}])
        self.assertEqual(facts["game"]["no_multiple_of_16"], ["height"])
        self.assertEqual(facts["game"]["bytes_at_8_bits"], 256)
        self.assertEqual(facts["game"]["bytes_at_32_bits"], 1024)
        self.assertEqual(facts["trailing_bytes"], 3)
        self.assertIs(facts["opens_in_editor"], True)
        self.assertEqual(facts["findings"][-1],
                         {"severity": "note", "offset": 1106, "text": "3 bytes after the last frame"})

    def test_json_double_entries(self):
        facts = self.facts(sprite_bytes(1, 1, [b"\0"], palette=bytes(765) + b"\1\1\1"))
        self.assertEqual(facts["palette"]["double"], [list(range(255))])

    def test_several_files_are_one_block_or_line_each(self):
        sample = os.path.join(SAMPLES, "explosion.spr")
        other = self.write("a.spr", sprite_bytes(1, 1, [b"\0"]))
        headings = [line for line in self.text(sample, other).splitlines() if not line.startswith(" ")]
        self.assertEqual(headings, [sample, other])
        lines = self.run_cli("info", sample, other, "--json").stdout.splitlines()
        self.assertEqual([json.loads(line)["file"] for line in lines], [sample, other])

    def test_standard_input(self):
        output = self.text("-", stdin=sprite_bytes(1, 1, [b"\0"]))
        self.assertTrue(output.startswith("standard input\n"))

    def test_unreadable_file_does_not_stop_the_others(self):
        good = self.write("a.spr", sprite_bytes(1, 1, [b"\0"]))
        done = self.run_cli("info", "missing.spr", good, status=1)
        self.assertEqual(done.stderr, b"varnoth-cli: missing.spr: No such file or directory\n")
        self.assertTrue(done.stdout.startswith(good.encode()))

    def test_file_that_is_no_sprite(self):
        line = self.fails("info", self.write("a.spr", b"GIF89a"))
        self.assertIn("a.spr: the file does not begin with \"IDSP\"", line)

    def test_sprite_without_frames(self):
        line = self.fails("info", self.write("a.spr", sprite_bytes(1, 1, [])))
        self.assertIn("FrameCount is 0 (at byte 28)", line)

    def test_file_is_required(self):
        self.run_cli("info", status=2)

    def test_full_disk(self):
        path = self.write("a.spr", sprite_bytes(1, 1, [b"\0"]))
        with open("/dev/full", "wb") as full:
            done = subprocess.run([PROGRAM, "info", path], stdout=full, stderr=subprocess.PIPE, check=False)
        self.assertEqual((done.returncode, done.stderr),
                         (1, b"varnoth-cli: standard output: No space left on device\n"))

    def test_colour_only_on_a_terminal(self):
        path = self.write("a.spr", sprite_bytes(1, 1, [b"\0"]))
        self.assertNotIn("\x1b", self.text(path))
        self.assertIn(b"\x1b[1m", self.on_terminal("info", path, TERM="xterm"))
        self.assertNotIn(b"\x1b", self.on_terminal("info", path, TERM="dumb"))
        self.assertNotIn(b"\x1b", self.on_terminal("info", path, TERM="xterm", NO_COLOR="1"))


if __name__ == "__main__":
    main()
