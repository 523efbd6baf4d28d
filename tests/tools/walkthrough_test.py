#!/usr/bin/env python3
"""Runs the scripted user as a program, from pictures to a sprite and back, and checks every file with independent
parsers or ImageMagick. Usage: walkthrough_test.py WALKTHROUGH INSPECT SAMPLES [TEST...]"""
import math
import os
import struct
import sys
import unittest

from tool_test import (BLUE, EXPLOSION, RED, SAMPLES, SIDE, Sprite, ToolTest, WHITE, bmp, decode,
                       parse_ppm, read, solid, sprite_file, tga, write)


def of_kind(events, kind):
    return [event[len(kind) + 2:] for event in events if event.startswith(kind + ": ")]


class Import(ToolTest):
    def test_events_are_printed_one_per_line(self):
        events = self.run_walkthrough("--pictures", SAMPLES, "--filter", "bmp", "--select", "explosion_2.bmp",
                                      "--select", "explosion_0.bmp", "--save", self.path("two.spr"), "--export",
                                      self.folder, "--format", "tga")
        picture = ["step: Loading Picture...", "step: Dithering...", "step: Picture Color Lookup..."]
        self.assertEqual(events, [
            "step: Building Palette...", "step: Initializing...", *picture, *picture,
            "step: Dithering Palette...", "step: Finalizing Palette...", "step: Adding Frames...",
            "step: Frame 0", "list: Frame 0", "step: Frame 2", "list: Frame 1",
            "message: Frames Generated Successfully !",
            "wrote: " + self.path("two.spr"), "message: Sprite Saved Successfully !",
            "list: Frame 0", "list: Frame 1",
            "step: Extracting Frames...",
            "step: two_0.tga", "wrote: " + self.path("two_0.tga"),
            "step: two_1.tga", "wrote: " + self.path("two_1.tga")])
        self.assertEqual(sorted(os.listdir(self.folder)), ["two.spr", "two_0.tga", "two_1.tga"])

    def test_no_options_create_a_sprite_silently(self):
        self.assertEqual(self.run_walkthrough(), [])
        self.assertEqual(self.run_walkthrough("--save", "out.spr", "--export", self.folder), [])
        self.assertEqual(os.listdir(self.folder), [])

    def test_new_sprite_has_type_2_and_mode_1_by_default(self):
        pictures = self.three_pictures()
        _, sprite = self.make_sprite("--pictures", pictures)
        self.assertEqual((sprite.type, sprite.render, sprite.count), (2, 1, 3))
        _, sprite = self.make_sprite("--pictures", pictures, "--type", "4", "--render", "0", name="other.spr")
        self.assertEqual((sprite.type, sprite.render), (4, 0))

    def check_explosion(self, format_name, frames):
        out = self.make_folder("out")
        events = self.run_walkthrough("--pictures", SAMPLES, "--filter", format_name, "--save", self.path("boom.spr"),
                                      "--export", out, "--format", "bmp", "--draw", "3:" + self.path("3.ppm"))
        data = read(self.path("boom.spr"))
        sprite = Sprite(data)
        self.assertEqual((sprite.ident, sprite.version, sprite.type, sprite.render), (b"IDSP", 2, 2, 1))
        self.assertEqual((sprite.width, sprite.height, sprite.count), (SIDE, SIDE, frames))
        self.assertEqual(sprite.radius, struct.unpack("<f", struct.pack("<f", math.hypot(SIDE / 2, SIDE / 2)))[0])
        self.assertEqual((sprite.beam, sprite.sync, sprite.colours), (0.0, 1, 256))
        self.assertEqual(len(data), 810 + frames * (20 + SIDE * SIDE))
        self.assertEqual(sprite.length, len(data))
        self.assertEqual(set(sprite.frame_headers), {(0, -SIDE // 2, SIDE // 2, SIDE, SIDE)})
        self.assertEqual(of_kind(events, "list"), [f"Frame {i}" for i in range(frames)] * 2)

        exported = [os.path.join(out, f"boom_{i}.bmp") for i in range(frames)]
        self.assertEqual(of_kind(events, "wrote"), [self.path("3.ppm"), self.path("boom.spr"), *exported])
        expected = [(SIDE, SIDE, sprite.colours_of(i)) for i in range(frames)]
        self.assertEqual(decode(*exported), expected)
        self.assertEqual(parse_ppm(read(self.path("3.ppm"))), [expected[3]])

        # Each frame resembles its own picture more than any other; comparing a few hundred bytes is enough.
        sources = [decode(os.path.join(SAMPLES, f"explosion_{i}.{format_name}"))[0][2][::37] for i in range(EXPLOSION)]
        for number in range(EXPLOSION):
            frame = sprite.colours_of(number)[::37]
            distances = [sum((a - b) ** 2 for a, b in zip(frame, source)) for source in sources]
            self.assertEqual(distances.index(min(distances)), number)

    def test_bmp_samples_are_imported_and_exported(self):
        self.check_explosion("bmp", EXPLOSION + 1)

    def test_jpg_samples_are_imported_and_exported(self):
        self.check_explosion("jpg", EXPLOSION)

    def test_tga_samples_are_imported_and_exported(self):
        self.check_explosion("tga", EXPLOSION)

    def test_pcx_samples_give_the_same_sprite_as_tga_samples(self):
        self.check_explosion("pcx", EXPLOSION)
        self.make_sprite("--pictures", SAMPLES, "--filter", "tga")
        self.assertEqual(read(self.path("boom.spr")), read(self.path("out.spr")))

    def test_sprite_takes_the_picture_size_unless_resizing(self):
        pictures = self.make_folder("pictures", {"a.bmp": bmp(2, 1, [RED, BLUE])})
        _, sprite = self.make_sprite("--pictures", pictures, "--size", "6x3")
        self.assertEqual((sprite.width, sprite.height, sprite.frame_headers[0]), (2, 1, (0, -1, 0, 2, 1)))
        _, sprite = self.make_sprite("--pictures", pictures, "--size", "6x3", "--choice", "set", name="set.spr")
        self.assertEqual(sprite.width, 2)
        _, sprite = self.make_sprite("--pictures", pictures, "--size", "6x3", "--choice", "resize", name="resized.spr")
        # Half of 3 is 1.5, which rounds to even: 2.
        self.assertEqual((sprite.width, sprite.height, sprite.frame_headers[0]), (6, 3, (0, -3, 2, 6, 3)))
        self.assertEqual(sprite.colours_of(0), bytes((RED * 3 + BLUE * 3) * 3))
        _, sprite = self.make_sprite("--pictures", pictures, "--choice", "resize", name="default.spr")
        self.assertEqual((sprite.width, sprite.height), (32, 32))

    def test_no_matching_picture_gives_only_the_message(self):
        pictures = self.three_pictures()
        events = self.run_walkthrough("--pictures", pictures, "--filter", "tga", "--save", self.path("out.spr"))
        self.assertEqual(events, ["message: Select Picture/s To Add."])
        self.assertFalse(os.path.exists(self.path("out.spr")))


class Abort(ToolTest):
    def test_aborting_the_first_import_does_not_affect_the_second(self):
        pictures = self.three_pictures()
        events, sprite = self.make_sprite("--pictures", pictures, "--again", pictures, "--abort-after", "1")
        self.assertEqual(of_kind(events, "message")[:2], [
            "Process Aborted By User. Some Pictures Where Not Imported.", "Frames Generated Successfully !"])
        self.assertEqual(sprite.count, 3)

    def test_aborted_export_stops_before_the_next_frame(self):
        pictures = self.three_pictures()
        for number in range(4):
            out = self.make_folder(f"out{number}")
            events = self.run_walkthrough("--pictures", pictures, "--export", out, "--abort-export-after", str(number))
            self.assertEqual(sorted(os.listdir(out)), [f"Untitled_{i}.bmp" for i in range(number)])
            self.assertEqual(events.count("step: Aborting Process..."), 1)


class FrameList(ToolTest):
    def test_second_import_selects_by_name_too(self):
        second = self.make_folder("second", {"b.bmp": solid(WHITE), "d.bmp": solid(RED)})
        _, sprite = self.make_sprite("--pictures", self.three_pictures(), "--select", "a.bmp", "--select", "b.bmp",
                                     "--again", second)
        self.assertEqual([sprite.colours_of(i)[:3] for i in range(sprite.count)], [bytes(WHITE)])


class Export(ToolTest):
    def setUp(self):
        super().setUp()
        self.pixels = [bytes((7 * i + 31 * n) % 256 for i in range(7 * 5)) for n in range(3)]
        self.palette = bytes((i * 89 + i // 3 * 7) % 256 for i in range(768))
        self.sprite = write(self.path("odd.two.dots.spr"), sprite_file(7, 5, self.pixels, palette=self.palette))
        self.out = self.make_folder("out")

    def export(self, *arguments):
        return self.run_walkthrough("--open", self.sprite, "--export", self.out, *arguments)

    def expected(self, *numbers):
        colours = [self.palette[i:i + 3] for i in range(0, 768, 3)]
        return [(7, 5, b"".join(colours[index] for index in self.pixels[n])) for n in numbers]

    def exported(self, extension, *numbers):
        return [os.path.join(self.out, f"odd_{n}.{extension}") for n in numbers]

    def test_each_format_decodes_to_the_same_pixels(self):
        for extension, options in (("bmp", ()), ("tga", ()), ("pcx", ()), ("pcx", ("--compressed",))):
            self.export("--format", extension, "--if-exists", "overwrite", *options)
            self.assertEqual(decode(*self.exported(extension, 0, 1, 2)), self.expected(0, 1, 2), extension)

    def test_default_format_is_bmp_and_base_name_ends_at_first_dot(self):
        self.export()
        self.assertEqual(sorted(os.listdir(self.out)), ["odd_0.bmp", "odd_1.bmp", "odd_2.bmp"])

    def test_only_selected_frames_are_written(self):
        events = self.export("--frames", "2,0")
        self.assertEqual(of_kind(events, "wrote"), self.exported("bmp", 0, 2))
        self.assertEqual(decode(*self.exported("bmp", 0, 2)), self.expected(0, 2))

    def test_existing_files_are_skipped_asked_about_or_overwritten(self):
        old, = self.exported("bmp", 1)
        question = "File odd_1.bmp Already Exists. Overwrite?"
        for options, questions, overwritten in ((("--if-exists", "skip"), [], False),
                                                (("--answer", "no"), [question], False),
                                                (("--if-exists", "ask", "--answer", "no"), [question], False),
                                                (("--if-exists", "ask", "--answer", "yes"), [question], True),
                                                ((), [question], True),
                                                (("--if-exists", "overwrite", "--answer", "no"), [], True)):
            write(old, b"old")
            for path in self.exported("bmp", 0, 2):
                if os.path.exists(path):
                    os.remove(path)
            events = self.export(*options)
            self.assertEqual(of_kind(events, "question"), questions, options)
            self.assertEqual(read(old) != b"old", overwritten, options)
            self.assertEqual(of_kind(events, "wrote"), self.exported("bmp", *((0, 1, 2) if overwritten else (0, 2))))


class Screenshots(ToolTest):
    def test_each_window_has_a_screenshot(self):
        shots = self.make_folder("shots")
        out = self.make_folder("out")
        events = self.run_walkthrough("--pictures", SAMPLES, "--select", "explosion_3.bmp", "--select",
                                      "explosion_4.bmp", "--render", "3", "--pick", "1,2", "--move", "0:down",
                                      "--save", self.path("out.spr"), "--export", out, "--screenshots", shots)
        names = sorted(os.listdir(shots))
        self.assertEqual([path for path in of_kind(events, "wrote") if path.endswith(".png")],
                         [os.path.join(shots, name) for name in names])
        windows = {name[3:-4] for name in names}
        self.assertEqual(windows, {
            "start", "new", "behind_a_dialog", "new_sprite", "add_frames", "add_frames_selected", "pick", "progress",
            "message", "imported", "moved", "preview", "preview_playing", "opened", "extract", "folder",
            "extract_set", "exit_picture"})
        sizes = {"start": (575, 477), "new": (235, 186), "add_frames": (752, 503), "extract": (287, 260),
                 "folder": (224, 325), "progress": (351, 110), "preview": (281, 327), "exit_picture": (597, 255)}
        for name in names:
            width, height, pixels = decode(os.path.join(shots, name))[0]
            self.assertEqual(sizes.get(name[3:-4], (width, height)), (width, height))
            self.assertGreater(len({pixels[i:i + 3] for i in range(0, len(pixels), 3)}), 8, name)

    def test_screenshots_do_not_change_events_or_files(self):
        shots = self.make_folder("shots")
        arguments = ("--pictures", self.three_pictures(), "--move", "1:up", "--save", self.path("out.spr"))
        plain = self.run_walkthrough(*arguments)
        sprite = read(self.path("out.spr"))
        pictured = self.run_walkthrough(*arguments, "--screenshots", shots)
        self.assertEqual([event for event in pictured if not event.endswith(".png")], plain)
        self.assertEqual(read(self.path("out.spr")), sprite)


class OpenAndSave(ToolTest):
    def open(self, data, *arguments, **options):
        path = write(self.path("in.spr"), data)
        return self.run_walkthrough("--open", path, *arguments, **options)

    def test_open_and_save_keeps_header_and_uses_last_origin(self):
        frames = [bytes([i] * 6) for i in range(3)]
        events = self.open(sprite_file(2, 3, frames, origins=[(1, 2), (3, 4), (5, 6)]), "--save", self.path("out.spr"))
        self.assertEqual(events, [f"list: Frame {i}" for i in range(3)] + ["wrote: " + self.path("out.spr")]
                         + [f"list: Frame {i}" for i in range(3)])
        self.assertEqual(read(self.path("out.spr")), sprite_file(2, 3, frames, origins=[(5, 6)] * 3))

    def test_refused_file_gives_its_message_and_ends_the_run(self):
        good = sprite_file(2, 2, [bytes(4)] * 2)
        events = self.open(good[:810 + 20 + 4 + 19], "--pictures", SAMPLES, "--save", self.path("out.spr"), "--export",
                           self.folder)
        self.assertEqual(events, ["message: Unknown Error Loading Sprite."])
        self.assertEqual(os.listdir(self.folder), ["in.spr"])


class ExitStatus(ToolTest):
    def test_wrong_option_exits_with_64_before_doing_anything(self):
        pictures = self.three_pictures()
        job = ("--pictures", pictures, "--save", self.path("out.spr"))
        for wrong in (("--unknown",), ("out.spr",), ("--filter", "gif"), ("--filter", "BMP"), ("--size", "32"),
                      ("--size", "32x"), ("--size", "axb"), ("--type", "5"), ("--type", "-1"), ("--render", "4"),
                      ("--choice", "both"), ("--pick", "1"), ("--pick", "1,b"), ("--abort-after", "-1"),
                      ("--abort-after", "x"), ("--abort-export-after", "1.5"), ("--move", "1"), ("--move", "1:left"),
                      ("--move", "-1:up"), ("--move", "1:"), ("--draw", "1"), ("--format", "jpg"), ("--frames", ""),
                      ("--frames", "1,"), ("--frames", "1;2"), ("--if-exists", "never"), ("--answer", "maybe"),
                      ("--answer",), ("--select", "missing.bmp"), ("--again", self.path("missing")),
                      ("--pictures", self.path("missing")), ("--screenshots", self.path("missing"))):
            events = self.run_walkthrough(*job, *wrong, status=64)
            self.assertEqual(events, [], wrong)
            self.assertNotEqual(self.errors, "", wrong)
            self.assertEqual(os.listdir(self.folder), ["pictures"], wrong)

    def test_moving_a_missing_line_exits_with_64(self):
        self.run_walkthrough("--pictures", self.three_pictures(), "--move", "3:up", status=64)

    def test_fatal_error_exits_with_70_its_place_and_its_name(self):
        grey = self.make_folder("grey", {"grey.tga": tga(3, 4, 4, 8, bytes(16))})
        broken = self.make_folder("broken", {"a.bmp": struct.pack("<2sIHHIIiiHHIIiiII", b"BM", 1000, 0, 0, 54, 40, 4,
                                                                  4, 1, 24, 0, 3, 0, 0, 0, 0)[:30] + b"\x03" * 24})
        refused = self.make_folder("refused", {"a.bmp": b"BM"})
        self.three_pictures("three")
        self.make_folder("one", {"a.bmp": solid(RED)})
        shallow = write(self.path("shallow.spr"), sprite_file(4, 4, [bytes(4)], frame_size=(2, 2)))
        for name, arguments in (
                # Uses the highest index of a 24-bit colour map that was never read.
                ("SubscriptOutOfRange", ("--pictures", grey, "--filter", "tga")),
                ("InvalidPicture", ("--pictures", broken)),
                # The preview loads even a file that the probe has just refused.
                ("InvalidPicture", ("--pictures", refused)),
                # A list line without a frame.
                ("SubscriptOutOfRange", ("--pictures", self.path("three"), "--again", self.path("one"), "--move",
                                         "2:up")),
                # The frame is smaller than the sprite's header says.
                ("SubscriptOutOfRange", ("--open", shallow)),
                ("SubscriptOutOfRange", ("--pictures", self.path("three"), "--draw", "3:out.ppm"))):
            self.run_walkthrough(*arguments, status=70)
            self.assertRegex(self.errors, rf"\Avarnoth: run-time error: {name}, at (src|tools)/[^ ]+:\d+ in .+\n"
                                          rf"run-time error: {name}\n\Z")


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]])
