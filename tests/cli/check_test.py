#!/usr/bin/env python3
"""Runs `check` on files that the test damages, and compares its exit status with what the editor opens.
Usage: check_test.py VARNOTH_CLI WALKTHROUGH SAMPLES [TEST...]"""
import json
import os
import random
import struct
import subprocess

from cli_test_case import PROGRAM, SAMPLES, WALKTHROUGH, CliTest, main, sprite_bytes

GOOD = sprite_bytes(16, 16, [bytes(256)] * 2)


def changed(offset, *values):
    """GOOD with 32-bit numbers at an offset."""
    return GOOD[:offset] + struct.pack(f"<{len(values)}i", *values) + GOOD[offset + 4 * len(values):]


class Check(CliTest):
    def lines(self, data, status, *options):
        """What is printed about a file, without the file's name."""
        path = self.write("a.spr", data)
        output = self.run_cli("check", path, *options, status=status).stdout.decode()
        self.assertTrue(all(line.startswith(path + ": ") for line in output.splitlines()), output)
        return [line[len(path) + 2:] for line in output.splitlines()]

    def test_faultless_file_prints_nothing(self):
        self.assertEqual(self.lines(GOOD, 0), [])

    def test_damage_exits_with_1(self):
        size = len(GOOD)
        cases = (
            (b"IDST" + GOOD[4:], '0: error: the file does not begin with "IDSP": it is no Half-Life sprite'),
            (GOOD[:30], "30: error: the file ends in its header"),
            (GOOD[:500], "500: error: the file ends in its palette"),
            (GOOD[:1100], "1100: error: the file ends before frame 1 of 2"),
            (GOOD[:-1], f"{size - 1}: error: the file ends in frame 1: 1 of 256 pixels are missing"),
            (changed(28, 3), f"{size}: error: the file ends before frame 2 of 3"),
            (GOOD[:40] + b"\x10\0" + GOOD[42:], "40: error: the palette has 16 colours instead of 256"),
            (changed(822, 0), "822: error: frame 0 has 0 x 16 pixels"),
        )
        for data, expected in cases:
            with self.subTest(expected):
                self.assertEqual(self.lines(data, 1), [expected])

    def test_what_is_only_unusual_exits_with_0(self):
        cases = (
            (changed(4, 1), "4: warning: Version is 1 instead of 2"),
            (changed(8, 5), "8: warning: SpriteType is 5, not 0 to 4"),
            (changed(12, 4), "12: warning: RenderMode is 4, not 0 to 3"),
            (changed(12, 3),
             "12: warning: RenderMode is ALPHATEST, but no pixel has index 255: nothing is transparent"),
            (changed(16, 0), "16: note: BoundingRadius is 0; half the diagonal is 11.313708"),
            (changed(810, 1), "810: warning: frame 0 has type 1: a frame group, read as a single frame"),
            (GOOD + b"1", f"{len(GOOD)}: note: 1 bytes after the last frame"),
        )
        for data, expected in cases:
            with self.subTest(expected):
                self.assertEqual(self.lines(data, 0), [expected])

    def test_findings_are_sorted_by_offset(self):
        lines = self.lines(changed(4, 1, 9, 9)[:1100], 1)
        offsets = [int(line.split(":")[0]) for line in lines]
        self.assertEqual(offsets, [4, 8, 12, 1100])

    def test_quiet_prints_only_errors(self):
        self.assertEqual(self.lines(changed(4, 1)[:500], 1, "--quiet"),
                         ["500: error: the file ends in its palette"])
        self.assertEqual(self.lines(changed(4, 1), 0, "-q"), [])

    def test_json(self):
        path = self.write("a.spr", changed(4, 1)[:500])
        self.assertEqual(json.loads(self.run_cli("check", "--json", path, status=1).stdout), {
            "file": path, "opens_in_editor": False,
            "findings": [{"severity": "warning", "offset": 4, "text": "Version is 1 instead of 2"},
                         {"severity": "error", "offset": 500, "text": "the file ends in its palette"}]})

    def test_json_of_several_files_is_one_line_each(self):
        good, bad = self.write("good.spr", GOOD), self.write("bad.spr", b"")
        lines = self.run_cli("check", "--json", good, bad, status=1).stdout.splitlines()
        facts = [json.loads(line) for line in lines]
        self.assertEqual([fact["opens_in_editor"] for fact in facts], [True, False])

    def test_json_and_quiet_leave_out_the_rest(self):
        path = self.write("a.spr", changed(4, 1))
        self.assertEqual(self.json("check", "--json", "--quiet", path)["findings"], [])

    def test_bad_file_does_not_stop_the_others(self):
        bad, good = self.write("bad.spr", b"x"), self.write("good.spr", changed(4, 1))
        done = self.run_cli("check", "missing.spr", bad, good, status=1)
        self.assertEqual(done.stderr, b"varnoth-cli: missing.spr: No such file or directory\n")
        self.assertEqual([line.split(b": ")[0].decode() for line in done.stdout.splitlines()], [bad, good])

    def test_standard_input(self):
        output = self.run_cli("check", "-", stdin=GOOD[:30], status=1).stdout
        self.assertEqual(output, b"standard input: 30: error: the file ends in its header\n")

    def test_samples_pass(self):
        for name in ("explosion.spr", "palette.spr"):
            self.run_cli("check", os.path.join(SAMPLES, name))

    def test_wrong_usage(self):
        self.run_cli("check", status=2)

    def test_colour_only_on_a_terminal(self):
        path = self.write("a.spr", changed(4, 1))
        self.assertNotIn(b"\x1b", self.run_cli("check", path).stdout)
        self.assertIn(b": 4: \x1b[35mwarning\x1b[0m: Version", self.on_terminal("check", path, TERM="xterm"))
        self.assertNotIn(b"\x1b", self.on_terminal("check", path, TERM="xterm", NO_COLOR="1"))

    def test_agrees_with_the_editor(self):
        """The editor opens each damaged file if and only if `check` says so."""
        source = random.Random(1)
        names = []
        for number in range(60):
            data = bytearray(sprite_bytes(4, 3, [bytes(12)] * source.randint(0, 3)))
            for _ in range(source.randrange(3)):
                at = source.choice((0, 28, 40, 810, 822, 826)) + source.randrange(4)
                if at < len(data):
                    data[at] = source.choice((0, 1, 2, 255))
            del data[source.choice((len(data), source.randrange(len(data)))):]
            names.append(self.write(f"{number}.spr", data))
        done = subprocess.run([PROGRAM, "check", "--json", *names], capture_output=True, check=False)
        ours = [json.loads(line)["opens_in_editor"] for line in done.stdout.splitlines()]
        inspect = os.path.join(os.path.dirname(WALKTHROUGH), "inspect")
        lines = subprocess.run([inspect, *names], capture_output=True, check=False).stdout.splitlines()
        theirs = [json.loads(line)["result"] == -1 for line in lines]
        self.assertEqual(ours, theirs)
        self.assertIn(True, ours)
        self.assertIn(False, ours)


if __name__ == "__main__":
    main()
