"""What the tests of the command line share: they run the built program in a folder of their own.
Usage of each test: NAME_test.py VARNOTH_CLI WALKTHROUGH SAMPLES [TEST...]"""
import fcntl
import json
import os
import select
import struct
import subprocess
import sys
import tempfile
import termios
import time
import unittest

PROGRAM, WALKTHROUGH, SAMPLES = map(os.path.abspath, sys.argv[1:4])


class CliTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def path(self, name):
        return os.path.join(self.folder, name)

    def run_cli(self, *arguments, status=0, stdin=b"", **options):
        """Runs the program and checks its exit status. Returns the finished process, with bytes as output."""
        done = subprocess.run([PROGRAM, *map(str, arguments)], cwd=self.folder, input=stdin, capture_output=True,
                              timeout=120, check=False, **options)
        self.assertEqual(done.returncode, status, done.stderr.decode())
        return done

    def fails(self, *arguments, **options):
        """Runs the program, which must exit with 1 and one line on standard error. Returns the line."""
        done = self.run_cli(*arguments, status=1, **options)
        lines = done.stderr.decode().splitlines()
        self.assertEqual(len(lines), 1, done.stderr.decode())
        return lines[0]

    def on_terminal(self, *arguments, size=(24, 80), reply=None, **environment):
        """Runs the program on a terminal of that many lines and columns, and returns what it prints. With a reply
        (TEXT, KEYS), presses the keys once the text has appeared. It must exit with 0 within a minute."""
        master, terminal = os.openpty()
        fcntl.ioctl(terminal, termios.TIOCSWINSZ, struct.pack("4H", *size, 0, 0))
        process = subprocess.Popen([PROGRAM, *map(str, arguments)], cwd=self.folder, stdin=terminal, stdout=terminal,
                                   stderr=terminal, env={**os.environ, **environment}, start_new_session=True,
                                   preexec_fn=lambda: fcntl.ioctl(0, termios.TIOCSCTTY))
        os.close(terminal)
        self.addCleanup(process.kill)
        start, output = time.monotonic(), b""
        while True:
            left = max(0, start + 60 - time.monotonic())
            self.assertTrue(left and select.select([master], [], [], left)[0], output[:10000])
            try:
                part = os.read(master, 65536)
            except OSError:  # the program has exited
                break
            if not part:
                break
            output += part
            if reply and reply[0] in output:
                os.write(master, reply[1])
                reply = None
        os.close(master)
        self.assertEqual(process.wait(timeout=60), 0, output)
        return output

    def json(self, *arguments, **options):
        return json.loads(self.run_cli(*arguments, **options).stdout)

    def tool(self, *command):
        """Runs another program, such as ImageMagick's convert, in the test's folder."""
        return subprocess.run(list(map(str, command)), cwd=self.folder, check=True, capture_output=True).stdout

    def read(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    def write(self, name, data):
        with open(self.path(name), "wb") as file:
            file.write(data)
        return self.path(name)


def sprite_bytes(width, height, frames, palette=bytes(range(256)) * 3, sprite_type=2, mode=0, sync=1):
    """A sprite file from scratch, independent of the program's own writer; each frame is width * height bytes."""
    radius = ((width / 2) ** 2 + (height / 2) ** 2) ** 0.5
    data = struct.pack("<4siiifiiifi", b"IDSP", 2, sprite_type, mode, radius, width, height, len(frames), 0.0, sync)
    data += struct.pack("<h", 256) + palette
    for frame in frames:
        data += struct.pack("<5i", 0, -(width // 2), height // 2, width, height) + frame
    return data


def parse_sprite(data):
    """The header fields, the palette as 768 bytes and the frames as (origin, width, height, indices)."""
    names = ("ident", "version", "type", "mode", "radius", "width", "height", "count", "beam", "sync")
    header = dict(zip(names, struct.unpack_from("<4siiifiiifi", data)))
    frames, at = [], 810
    for _ in range(header["count"]):
        _, x, y, width, height = struct.unpack_from("<5i", data, at)
        at += 20
        frames.append(((x, y), width, height, data[at:at + width * height]))
        at += width * height
    return header, data[42:810], frames


def main():
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]])
