"""A display of its own for a test that uses a program as its user does: screenshots, windows, a real pointer and real
keys. Nothing waits for a fixed time; what is awaited and does not come fails with what was awaited."""
import ctypes
import mmap
import os
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import time

PATIENCE = 60

# Of <sys/prctl.h>.
PR_SET_PDEATHSIG = 1

# What libraries of the desktop do not give back at the end is not the program's.
LEAKS = "leak:libdbus-1.so\n"
GLANCE = 0.02


def wait_for(what, condition, patience=PATIENCE):
    """The first true answer of the condition."""
    end = time.monotonic() + patience
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > end:
            raise AssertionError("in vain: " + what)
        time.sleep(GLANCE)


def end_with_the_test():
    """In a process that is about to start: it does not outlive the test, even one that is killed."""
    ctypes.CDLL(None).prctl(PR_SET_PDEATHSIG, signal.SIGTERM)


class Picture:
    """Pixels of a screen: bytes of blue, green, red and one unused, rows from the top."""

    def __init__(self, width, height, data):
        self.width, self.height, self.data = width, height, data

    def __eq__(self, other):
        return (self.width, self.height, self.data) == (other.width, other.height, other.data)

    def row(self, y):
        return self.data[4 * self.width * y:4 * self.width * (y + 1)]

    def cut(self, left, top, width, height):
        """A part of the picture. It must lie in it."""
        if left < 0 or top < 0 or left + width > self.width or top + height > self.height:
            raise AssertionError(f"{width}x{height} at {left},{top} is not wholly in {self.width}x{self.height}")
        return Picture(width, height, b"".join(self.row(y)[4 * left:4 * (left + width)]
                                               for y in range(top, top + height)))

    def count_in_rows(self, wanted):
        """For each row, how many of its pixels, as (red, green, blue), the function wants."""
        known = {}

        def is_wanted(pixel):
            if pixel not in known:
                known[pixel] = bool(wanted((pixel[2], pixel[1], pixel[0])))
            return known[pixel]

        return [sum(is_wanted(row[i:i + 4]) for i in range(0, len(row), 4))
                for row in map(self.row, range(self.height))]

    def bands(self, wanted):
        """The runs of rows that hold such pixels, each as its first row and the one behind its last."""
        found, begin = [], None
        for y, count in enumerate(self.count_in_rows(wanted) + [0]):
            if count and begin is None:
                begin = y
            elif not count and begin is not None:
                found.append((begin, y))
                begin = None
        return found

    def count(self, pixel):
        """How many of the pixels are like the given one: for each column, and for each row."""
        pixels = memoryview(self.data).cast("I")
        value = int.from_bytes(pixel, sys.byteorder)
        return ([pixels[x::self.width].tolist().count(value) for x in range(self.width)],
                [pixels[y * self.width:(y + 1) * self.width].tolist().count(value) for y in range(self.height)])


class Display:
    """A virtual screen in a temporary folder. To be closed whatever happens."""

    def __init__(self, width=1280, height=1024, window_manager=True):
        self.width, self.height = width, height
        self.processes = []
        self.folder = tempfile.mkdtemp(prefix="varnoth")
        try:
            self.make_folders()
            self.start_server()
            if window_manager:
                # It does not see a window that comes while it starts, so it tells when that is over.
                started = os.path.join(self.folder, "started")
                self.start(["openbox", "--sm-disable", "--startup", "touch " + started], stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL)
                wait_for("the window manager", lambda: os.path.exists(started))
        except BaseException:
            self.close()
            raise

    def close(self):
        for process in reversed(self.processes):
            process.terminate()
            try:
                process.wait(timeout=10)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
        shutil.rmtree(self.folder)

    def make_folders(self):
        self.home = self.make_folder("home")
        leaks = os.path.join(self.folder, "leaks")
        with open(leaks, "w", encoding="ascii") as file:
            file.write(LEAKS)
        # Nothing of the user who runs the test, neither desktop nor settings nor language.
        self.environment = {name: value for name, value in os.environ.items()
                            if not name.startswith(("XDG_", "QT_", "DISPLAY", "WAYLAND_", "DBUS_", "DESKTOP", "KDE_",
                                                    "LC_", "LANG"))}
        self.environment.update(HOME=self.home, XDG_CONFIG_HOME=self.make_folder("home", "config"),
                                XDG_CACHE_HOME=self.make_folder("home", "cache"),
                                XDG_DATA_HOME=self.make_folder("home", "data"),
                                XDG_RUNTIME_DIR=self.make_folder("runtime"), LC_ALL="C.UTF-8",
                                DBUS_SESSION_BUS_ADDRESS="disabled:",
                                LSAN_OPTIONS="print_suppressions=0:suppressions=" + leaks)

    def make_folder(self, *parts):
        folder = os.path.join(self.folder, *parts)
        os.makedirs(folder, mode=0o700)
        return folder

    def start(self, command, **options):
        options.setdefault("stdin", subprocess.DEVNULL)
        process = subprocess.Popen(command, env={**self.environment, **options.pop("more", {})},
                                   preexec_fn=end_with_the_test, **options)
        self.processes.append(process)
        return process

    def start_server(self):
        reader, writer = os.pipe()
        # No pointer is drawn, so that it covers nothing.
        self.start(["Xvfb", "-displayfd", str(writer), "-screen", "0", f"{self.width}x{self.height}x24", "-nolisten",
                    "tcp", "-noreset", "-nocursor", "-fbdir", self.folder],
                   pass_fds=(writer,), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(writer)
        with os.fdopen(reader) as numbers:
            number = numbers.readline().strip()
        if not number:
            raise AssertionError("no display")
        self.environment["DISPLAY"] = ":" + number
        with open(os.path.join(self.folder, "Xvfb_screen0"), "rb") as file:
            self.screen = mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ)

    # What is seen.

    def look(self, left=0, top=0, width=None, height=None):
        """The pixels of a part of the screen, all of it by default. The server's own memory, in XWD format."""
        header_size, = struct.unpack_from(">I", self.screen)
        depth, pitch = struct.unpack_from(">II", self.screen, 44)
        colours, = struct.unpack_from(">I", self.screen, 76)
        if depth != 32:
            raise AssertionError(f"a screen of {depth} bits")
        data = self.screen[header_size + 12 * colours:]
        whole = Picture(pitch // 4, self.height, data[:pitch * self.height])
        return whole.cut(left, top, width or self.width, height or self.height)

    def wait_until_still(self, *place):
        """The pixels of a place that two glances one after the other find the same."""
        last = self.look(*place)
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end:
            time.sleep(5 * GLANCE)
            now = self.look(*place)
            if now == last:
                return now
            last = now
        raise AssertionError(f"in vain: stillness at {place}")

    # Windows.

    def run_xdotool(self, *words):
        return subprocess.run(["xdotool", *map(str, words)], env=self.environment, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=PATIENCE, check=False)

    def xdotool(self, *words, fails=False):
        done = self.run_xdotool(*words)
        if done.returncode and not fails:
            raise AssertionError(f"xdotool {words}: {done.stderr.decode()}")
        return done.stdout.decode()

    def windows(self, title=".+"):
        """The visible windows with a title."""
        while True:
            done = self.run_xdotool("search", "--onlyvisible", "--name", f"^{title}$")
            # Without words it has found none; with words a window has gone while it was looked at.
            if not done.stderr:
                return set(done.stdout.decode().split())

    def place_of(self, window):
        """Left, top, width and height of a window."""
        words = dict(line.split("=") for line in self.xdotool("getwindowgeometry", "--shell", window).split())
        return tuple(int(words[name]) for name in ("X", "Y", "WIDTH", "HEIGHT"))

    def is_active(self, window):
        return self.xdotool("getactivewindow", fails=True).strip() == window

    def wait_for_window(self, title, but=()):
        """The window with a title, other than those told, as soon as it is there and takes keys."""
        window, = wait_for("a window " + title, lambda: self.windows(title) - set(but))
        wait_for(f"{title} to become active", lambda: self.is_active(window))
        return window

    def wait_until_gone(self, window):
        wait_for("a window to go", lambda: window not in self.windows())

    # What is done.

    def point(self, x, y):
        self.xdotool("mousemove", x, y)

    def click(self, x, y, key=None, times=1):
        words = ["mousemove", x, y]
        if key:
            words += ["keydown", key]
        words += ["click", "--repeat", times, "--delay", 10, 1]
        if key:
            words += ["keyup", key]
        self.xdotool(*words)

    def press(self, *keys):
        self.xdotool("key", *keys)

    def type(self, text):
        self.xdotool("type", "--delay", 2, "--", text)


def corner_while_dragged(pointer, grab):
    """Where a window's corner belongs while its title is dragged: 15 units are a pixel, and the offset of the grab
    counts in units."""
    return tuple(round((at * 15 - offset) / 15) for at, offset in zip(pointer, grab))
