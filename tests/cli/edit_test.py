#!/usr/bin/env python3
"""Edits sprites that are made from scratch, and checks every byte of the results.
Usage: edit_test.py VARNOTH_CLI WALKTHROUGH SAMPLES [TEST...]"""
import os
import random
import resource
import shutil
import signal
import struct
import subprocess

from cli_test_case import CliTest, PROGRAM, SAMPLES, WALKTHROUGH, main, parse_sprite, sprite_bytes

HEADER = 810
FIELDS = {"type": 8, "mode": 12, "sync": 36, "count": 28}
WIDTH, HEIGHT = 4, 3
PIXELS = WIDTH * HEIGHT
PALETTE = bytes((i * 37 + channel * 85) % 256 for i in range(256) for channel in range(3))


def colour(index):
    return tuple(PALETTE[3 * index:3 * index + 3])


def frames_of(count):
    """Frames that differ in every pixel."""
    return [bytes((20 * frame + pixel) % 256 for pixel in range(PIXELS)) for frame in range(count)]


class EditTest(CliTest):
    def sprite(self, count=6, mode=0, tail=b"", name="a.spr"):
        """Writes a sprite whose header fields and origins are unusual; returns its bytes."""
        data = bytearray(sprite_bytes(WIDTH, HEIGHT, frames_of(count), PALETTE, sprite_type=3, mode=mode, sync=0))
        struct.pack_into("<f", data, 16, 99.5)
        struct.pack_into("<f", data, 32, 7.25)
        for frame in range(count):
            struct.pack_into("<ii", data, HEADER + frame * (20 + PIXELS) + 4, -frame, 2 * frame)
        data = bytes(data) + tail
        self.write(name, data)
        return data

    def edit(self, *arguments):
        """Edits a.spr to out.spr and returns the bytes."""
        self.run_cli("edit", "a.spr", "-o", "out.spr", "--force", *arguments)
        return self.read("out.spr")

    def parts(self, data, count):
        """The frames of a sprite as bytes, with their headers."""
        size = 20 + PIXELS
        return [data[HEADER + i * size:HEADER + (i + 1) * size] for i in range(count)]

    def check_order(self, order, *arguments, tail=b""):
        """The edit gives these frames, and changes nothing else but their number."""
        before = self.sprite(tail=tail)
        frames = self.parts(before, 6)
        header = bytearray(before[:HEADER])
        struct.pack_into("<i", header, FIELDS["count"], len(order))
        self.assertEqual(self.edit(*arguments), bytes(header) + b"".join(frames[i] for i in order) + tail, arguments)

    def picture(self, name, pixels, width=WIDTH):
        raw = b"".join(map(bytes, pixels))
        self.write("raw", raw)
        kind = "rgba" if len(pixels[0]) == 4 else "rgb"
        self.tool("convert", "-size", f"{width}x{len(pixels) // width}", "-depth", "8", kind + ":raw", name)
        return name

    def check_field(self, field, value, *arguments):
        """Nothing but a header field changes."""
        expected = bytearray(self.sprite(tail=b"tail"))
        struct.pack_into("<i", expected, FIELDS[field], value)
        self.assertEqual(self.edit(*arguments), expected)

    def refused(self, *arguments):
        before = self.sprite()
        done = self.run_cli("edit", *arguments, status=2)
        self.assertEqual(self.read("a.spr"), before)
        return done.stderr.decode()


class Frames(EditTest):
    def test_remove(self):
        self.check_order([4, 5], "--remove", "0-3")
        self.check_order([1, 5], "--remove", "0,2-4,3")

    def test_move(self):
        self.check_order([1, 2, 3, 0, 4, 5], "--move", "0=3")
        self.check_order([0, 5, 1, 2, 3, 4], "--move", "5=1")
        self.check_order([0, 1, 2, 3, 4, 5], "--move", "2=2")

    def test_several_moves_apply_in_the_order_given(self):
        self.check_order([2, 1, 0, 3, 4, 5], "--move", "0=2", "--move", "0=1")

    def test_order(self):
        self.check_order([3, 1, 2, 0, 5, 4], "--order", "3,1-2,0,5,4")

    def test_reverse(self):
        self.check_order([5, 4, 3, 2, 1, 0], "--reverse")

    def test_options_apply_in_the_documented_order(self):
        # 1 is removed: 0 2 3 4 5; 4 moves to 0: 5 0 2 3 4; order: 0 5 2 3 4; reversed.
        self.check_order([4, 3, 2, 5, 0], "--reverse", "--order", "1,0,2-4", "--move", "4=0", "--remove", "1")

    def test_bytes_after_the_last_frame_are_kept(self):
        self.check_order([5, 4, 3, 2, 1, 0], "--reverse", tail=b"more")

    def test_frames_keep_their_own_sizes(self):
        header, first = struct.pack("<5i", 0, -1, 1, 2, 2), b"abcd"
        before = self.sprite(1)
        data = bytearray(before + header + first)
        struct.pack_into("<i", data, FIELDS["count"], 2)
        self.write("a.spr", bytes(data))
        self.assertEqual(self.edit("--reverse"), bytes(data[:HEADER]) + header + first + before[HEADER:])

    def test_order_equals_the_arrows_of_the_editor(self):
        self.sprite(mode=1)
        self.run_cli("edit", "a.spr", "--origin", "-2,2")  # the editor writes one frame header for all
        environment = {**os.environ, "QT_QPA_PLATFORM": "offscreen"}
        generator = random.Random(3)
        for _ in range(3):
            order, moves = list(range(6)), []
            for _ in range(8):
                at = generator.randrange(1, 6)
                order[at - 1], order[at] = order[at], order[at - 1]
                up = generator.random() < 0.5
                moves += ["--move", f"{at}:up" if up else f"{at - 1}:down"]
            subprocess.run([WALKTHROUGH, "--open", "a.spr", *moves, "--save", "editor.spr"], cwd=self.folder,
                           env=environment, check=True, capture_output=True, timeout=120)
            self.assertEqual(self.edit("--order", ",".join(map(str, order))), self.read("editor.spr"))


class Header(EditTest):
    def test_type(self):
        self.check_field("type", 4, "--type", "vp-parallel-oriented")

    def test_mode(self):
        self.check_field("mode", 3, "--mode", "alphatest")

    def test_sync(self):
        self.check_field("sync", 1, "--sync", "random")

    def check_origin(self, text, x, y):
        expected = bytearray(self.sprite())
        for frame in range(6):
            struct.pack_into("<ii", expected, HEADER + frame * (20 + PIXELS) + 4, x, y)
        self.assertEqual(self.edit("--origin", text), expected)

    def test_origin(self):
        self.check_origin("-9,5", -9, 5)

    def test_origin_center(self):
        self.check_origin("center", -2, 2)

    def test_type_of_a_sprite_with_an_unknown_one_is_repaired(self):
        expected = self.sprite()
        self.write("a.spr", expected[:8] + struct.pack("<i", 77) + expected[12:])
        self.assertEqual(self.edit("--type", "3"), expected)


class Pictures(EditTest):
    def frames(self, *arguments):
        """The frames after an edit; header, palette and the frames before are unchanged."""
        before = self.read("a.spr")
        after = self.edit(*arguments)
        self.assertEqual(after[:FIELDS["count"]] + after[FIELDS["count"] + 4:HEADER],
                         before[:FIELDS["count"]] + before[FIELDS["count"] + 4:HEADER])
        return parse_sprite(after)[2]

    def test_append_maps_onto_the_palette(self):
        before = self.sprite(2)
        indices = [0, 255, 7, 100, 9, 33, 44, 55, 66, 77, 88, 99]
        self.picture("p.png", [colour(i) for i in indices])
        self.picture("q.png", [tuple(c ^ 1 for c in colour(8))] * PIXELS)
        frames = self.frames("--append", "p.png", "q.png")
        self.assertEqual([list(frame[3]) for frame in frames[2:]], [indices, [8] * PIXELS])
        self.assertEqual(self.read("out.spr")[HEADER:len(before)], before[HEADER:])

    def test_appended_frames_have_the_origin_of_the_first(self):
        self.sprite(2)
        self.run_cli("edit", "a.spr", "--origin", "-7,5")
        self.picture("p.png", [colour(1)] * PIXELS)
        self.assertEqual([frame[0] for frame in self.frames("--append", "p.png")], [(-7, 5)] * 3)

    def test_appended_pictures_are_fitted(self):
        self.sprite(1, mode=3)
        self.picture("p.png", [colour(9)] * 8, 2)
        frames = self.frames("--append", "p.png")
        self.assertEqual(frames[1][1:], (WIDTH, HEIGHT, bytes([9] * PIXELS)))
        self.picture("p.png", [colour(9)] * 2, 2)
        frames = self.frames("--append", "p.png", "--fit", "contain")
        self.assertEqual(frames[1][3], bytes([9] * 8 + [255] * 4))

    def test_append_respects_the_transparent_index_of_alphatest(self):
        self.sprite(1, mode=3)
        self.picture("p.png", [(*colour(255), 255), (*colour(9), 0)] * 6)
        indices = self.frames("--append", "p.png")[1][3]
        self.assertEqual([index == 255 for index in indices], [False, True] * 6)
        indices = self.frames("--append", "p.png", "--transparent", "none")[1][3]
        self.assertEqual(list(indices[1::2]), [9] * 6)

    def test_append_to_indexalpha_takes_alpha_or_grey_as_index(self):
        self.sprite(1, mode=2)
        self.picture("p.png", [(1, 2, 3, i * 20) for i in range(PIXELS)])
        self.assertEqual(list(self.frames("--append", "p.png")[1][3]), [i * 20 for i in range(PIXELS)])
        self.picture("p.png", [(i, i, i) for i in range(PIXELS)])
        self.assertEqual(list(self.frames("--append", "p.png")[1][3]), list(range(PIXELS)))

    def test_append_brings_all_frames_of_an_animation(self):
        self.sprite(1)
        self.tool("convert", "-size", "4x3", *("xc:rgb(%d,%d,%d)" % colour(i) for i in (5, 6, 7)), "p.gif")
        self.assertEqual([set(frame[3]) for frame in self.frames("--append", "p.gif")[1:]], [{5}, {6}, {7}])

    def test_append_dithers_on_request(self):
        self.write("a.spr", sprite_bytes(16, 16, [bytes(256)], bytes(channel for level in (0, 85, 170, 255)
                                                                    for channel in [level] * 3 * 64)))
        self.tool("convert", "-size", "16x16", "gradient:black-white", "p.png")
        plain = self.frames("--append", "p.png")
        for dither in ("ordered", "floyd-steinberg", "blue-noise"):
            self.assertNotEqual(self.frames("--append", "p.png", "--dither", dither), plain)
            self.assertEqual(self.frames("--append", "p.png", "--dither", dither, "--dither-strength", "0"), plain)

    def test_replace_keeps_size_and_origin_of_the_frame(self):
        before = self.sprite(3)
        self.picture("p.png", [colour(9)] * 4, 2)
        expected = bytearray(before)
        at = HEADER + (20 + PIXELS) + 20
        expected[at:at + PIXELS] = bytes([9] * PIXELS)
        self.assertEqual(self.edit("--replace", "1=p.png"), expected)

    def test_replace_uses_the_numbers_before_removing(self):
        self.sprite(4)
        self.picture("p.png", [colour(9)] * PIXELS)
        self.picture("q.png", [colour(8)] * PIXELS)
        frames = self.frames("--remove", "0,2", "--replace", "1=p.png", "--replace", "2=q.png", "--append", "q.png")
        self.assertEqual([frame[3] for frame in frames],
                         [bytes([9] * PIXELS), frames_of(4)[3], bytes([8] * PIXELS)])

    def test_new_frames_can_be_moved(self):
        self.sprite(2)
        self.picture("p.png", [colour(9)] * PIXELS)
        frames = self.frames("--append", "p.png", "--move", "2=0", "--reverse")
        self.assertEqual([frame[3] for frame in frames], [*frames_of(2)[::-1], bytes([9] * PIXELS)])

    def colours(self, *arguments):
        _, palette, frames = parse_sprite(self.edit(*arguments))
        return [[tuple(palette[3 * i:3 * i + 3]) for i in indices] for _, _, _, indices in frames]

    def test_repalette_keeps_old_and_new_colours(self):
        self.sprite(2)
        new = [(i, 255, i) for i in range(PIXELS)]
        self.picture("p.png", new)
        old = [[colour(i) for i in frame] for frame in frames_of(2)]
        self.assertEqual(self.colours("--append", "p.png", "--repalette"), [*old, new])
        self.assertEqual(self.colours("--repalette"), old)
        self.assertEqual(self.colours("--repalette", "--replace", "0=p.png"), [new, old[1]])

    def test_repalette_with_a_dither_leaves_still_scenes_still(self):
        generator = random.Random(5)
        still = bytes(generator.randrange(255) for _ in range(32 * 32))
        moved = bytes(255 if 200 < i < 260 else index for i, index in enumerate(still))
        palette = bytes(generator.randrange(256) for _ in range(768))
        self.write("a.spr", sprite_bytes(32, 32, [still, moved], palette))
        self.tool("convert", "-size", "32x32", "-seed", "1", "plasma:", "photograph.png")
        for dither in ("blue-noise", "floyd-steinberg"):
            _, _, frames = parse_sprite(self.edit("--append", "photograph.png", "--repalette", "--dither", dither))
            first, second = (indices for _, _, _, indices in frames[:2])
            self.assertEqual(first[:201] + first[260:], second[:201] + second[260:])
            self.assertNotEqual(first, second)

    def test_repalette_keeps_transparent_pixels_of_alphatest(self):
        data = sprite_bytes(2, 1, [bytes([255, 3]), bytes([4, 255])], PALETTE, mode=3)
        self.write("a.spr", data)
        _, palette, frames = parse_sprite(self.edit("--repalette"))
        self.assertEqual([[i == 255 for i in frame[3]] for frame in frames], [[True, False], [False, True]])
        self.assertEqual(palette[765:], PALETTE[765:])
        self.assertEqual(self.colours("--repalette", "--mode", "normal"),
                         [[(0, 0, 0), colour(3)], [colour(4), (0, 0, 0)]])

    def test_repalette_for_alphatest_frees_index_255(self):
        self.write("a.spr", sprite_bytes(2, 1, [bytes([255, 3])], PALETTE))
        self.assertEqual(self.colours("--repalette", "--mode", "alphatest"), [[colour(255), colour(3)]])
        self.assertNotIn(255, parse_sprite(self.read("out.spr"))[2][0][3])

    def test_threads_do_not_change_the_bytes(self):
        self.sprite()
        for i in range(5):
            self.tool("convert", "-size", "40x30", "-seed", i, "plasma:", f"{i}.png")
        pictures = [f"{i}.png" for i in range(5)]
        results = {self.edit("--jobs", jobs, "--repalette", "--append", *pictures) for jobs in (1, 2, 7)}
        self.assertEqual(len(results), 1)


class Files(EditTest):
    def test_file_is_replaced_without_force(self):
        before = self.sprite()
        self.run_cli("edit", "a.spr", "--reverse")
        once = self.read("a.spr")
        self.assertNotEqual(once, before)
        self.run_cli("edit", "a.spr", "--reverse")
        self.assertEqual(self.read("a.spr"), before)
        self.assertEqual(os.listdir(self.folder), ["a.spr"])

    def test_link_stays_and_its_file_is_replaced(self):
        self.sprite(3)
        os.mkdir(self.path("links"))
        os.symlink("../a.spr", self.path("links/a.spr"))
        self.run_cli("edit", "links/a.spr", "--remove", "0")
        self.assertEqual(os.readlink(self.path("links/a.spr")), "../a.spr")
        self.assertEqual(len(parse_sprite(self.read("a.spr"))[2]), 2)
        self.assertEqual(os.listdir(self.path("links")), ["a.spr"])

    def test_output_leaves_the_file_as_it_was(self):
        before = self.sprite()
        self.edit("--reverse")
        self.assertEqual(self.read("a.spr"), before)

    def test_existing_output_is_replaced_only_with_force(self):
        before = self.sprite()
        self.write("out.spr", b"mine")
        for target in ("out.spr", "a.spr"):
            self.assertIn(target, self.fails("edit", "a.spr", "--reverse", "-o", target))
        self.assertEqual((self.read("out.spr"), self.read("a.spr")), (b"mine", before))

    def test_standard_streams(self):
        before = self.sprite()
        expected = self.edit("--reverse")
        self.assertEqual(self.run_cli("edit", "-", "--reverse", stdin=before).stdout, expected)
        self.assertEqual(self.run_cli("edit", "a.spr", "--reverse", "-o", "-").stdout, expected)
        self.run_cli("edit", "-", "--reverse", "-o", "b.spr", stdin=before)
        self.assertEqual(self.read("b.spr"), expected)

    def test_sample_survives_two_reversals(self):
        sample = os.path.join(SAMPLES, "explosion.spr")
        shutil.copy(sample, self.path("a.spr"))
        self.run_cli("edit", "a.spr", "--reverse")
        self.run_cli("edit", "a.spr", "--reverse")
        with open(sample, "rb") as file:
            self.assertEqual(self.read("a.spr"), file.read())

    def test_full_disk_leaves_the_file_as_it_was(self):
        before = self.sprite(40)

        def limit():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)  # writing then fails instead
            resource.setrlimit(resource.RLIMIT_FSIZE, (900, 900))

        self.assertIn("a.spr", self.fails("edit", "a.spr", "--reverse", preexec_fn=limit))
        self.assertEqual(self.read("a.spr"), before)
        self.assertEqual(os.listdir(self.folder), ["a.spr"])
        self.assertIn("/dev/full", self.fails("edit", "a.spr", "--reverse", "-o", "/dev/full"))

    def test_kill_during_the_write_leaves_the_file_as_it_was(self):
        before = self.sprite(40)
        self.run_cli("edit", "a.spr", "--reverse", status=-signal.SIGXFSZ,
                     preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (900, 900)))
        self.assertEqual(self.read("a.spr"), before)

    def test_two_at_once_leave_the_result_of_complete_edits(self):
        before = self.sprite(40)
        struct_type = {kind: before[:8] + struct.pack("<i", kind) + before[12:] for kind in (1, 2)}
        for _ in range(10):
            both = [subprocess.Popen([PROGRAM, "edit", "a.spr", "--type", str(kind)], cwd=self.folder)
                    for kind in struct_type]
            self.assertEqual([process.wait(timeout=60) for process in both], [0, 0])
            self.assertIn(self.read("a.spr"), struct_type.values())


class Failures(EditTest):
    def check(self, message, *arguments):
        before = self.sprite(3)
        self.assertIn(message, self.fails("edit", "a.spr", *arguments))
        self.assertEqual(self.read("a.spr"), before)

    def test_frames_that_do_not_exist(self):
        self.check("a.spr: --remove: there is no frame 3 of 3", "--remove", "3")
        self.check("a.spr: --move: there is no frame 9 of 3", "--move", "9=0")
        self.check("a.spr: --move: there is no frame 3 of 3", "--move", "0=3")
        self.check("a.spr: --order: there is no frame 3 of 3", "--order", "0-3")
        self.picture("p.png", [colour(1)] * PIXELS)
        self.check("a.spr: --replace: there is no frame 3 of 3", "--replace", "3=p.png")
        self.check("a.spr: --move: there is no frame 2 of 2", "--move", "2=0", "--remove", "0")

    def test_order_names_each_frame_once(self):
        self.check("frame 1 occurs twice", "--order", "0,1,1")
        self.check("frame 2 is missing", "--order", "0,1")

    def test_last_frame_cannot_be_removed(self):
        self.check("no frame would be left", "--remove", "0-2")

    def test_pictures_that_cannot_become_frames(self):
        self.write("text.png", b"no picture")
        self.tool("convert", "-size", "2x2", "xc:red", "xc:lime", "two.gif")
        self.check("no.png", "--append", "no.png")
        self.check("text.png", "--append", "text.png")
        self.check("text.png", "--replace", "0=text.png")
        self.check("two.gif: --replace takes one picture", "--replace", "0=two.gif")
        self.picture("p.png", [colour(1)] * PIXELS)
        self.check("INDEXALPHA", "--mode", "indexalpha", "--append", "p.png", "--repalette")

    def test_damaged_sprites_are_refused(self):
        before = self.sprite(3)
        for data in (b"", b"text", before[:39], before[:500], before[:HEADER], before[:-1], before[:-PIXELS - 3],
                     before[:FIELDS["count"]] + bytes(4) + before[FIELDS["count"] + 4:]):
            self.write("a.spr", data)
            self.assertIn("a.spr: ", self.fails("edit", "a.spr", "--reverse"))
            self.assertEqual(self.read("a.spr"), data)
        self.assertIn("no.spr", self.fails("edit", "no.spr", "--reverse"))
        self.assertIn("standard input: ", self.fails("edit", "-", "--reverse", stdin=b"text"))

    def test_values_that_are_not_accepted(self):
        for option, *values in (("--remove", "x", "3-1", "1,,2", "-1", ""), ("--move", "1", "1=x", "=1", "1-2=3"),
                                ("--order", "a", "1 2"), ("--replace", "p.png", "x=p.png"), ("--type", "5"),
                                ("--mode", "4"), ("--sync", "2"), ("--origin", "1")):
            for value in values:
                self.assertIn(option, self.refused("a.spr", option, value))

    def test_nothing_to_change_is_wrong_usage(self):
        self.assertIn("nothing to change", self.refused("a.spr"))
        self.assertIn("nothing to change", self.refused("a.spr", "-o", "b.spr", "--force"))
        self.refused("--reverse")

    def test_picture_options_without_pictures_are_wrong_usage(self):
        for options in (("--fit", "crop"), ("--transparent", "none"), ("--dither", "none"),
                        ("--dither-strength", "9")):
            self.assertIn(options[0].split("-strength")[0], self.refused("a.spr", "--reverse", *options))


if __name__ == "__main__":
    main()
