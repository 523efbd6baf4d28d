"""A virtual display for tests that operate a program as a user does: screenshots, windows, a real pointer and real
keys. Tests wait for conditions, not for fixed times; a condition that does not come true fails with its description."""
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

TIMEOUT = 60

# From <sys/prctl.h>.
PR_SET_PDEATHSIG = 1

# Leaks in libraries of the desktop, which the program cannot prevent.
LEAKS = "leak:libdbus-1.so\n"
POLL_INTERVAL = 0.02


def wait_for(what, condition, timeout=TIMEOUT):
    """Polls the condition; returns its first true value."""
    end = time.monotonic() + timeout
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > end:
            raise AssertionError("timed out: " + what)
        time.sleep(POLL_INTERVAL)


def end_with_the_test():
    """Runs in a child process before exec: the child exits with the test, even if the test is killed."""
    ctypes.CDLL(None).prctl(PR_SET_PDEATHSIG, signal.SIGTERM)


class Picture:
    """Pixels of a screen: blue, green, red and an unused byte each, top row first."""

    def __init__(self, width, height, data):
        self.width, self.height, self.data = width, height, data

    def __eq__(self, other):
        return (self.width, self.height, self.data) == (other.width, other.height, other.data)

    def row(self, y):
        return self.data[4 * self.width * y:4 * self.width * (y + 1)]

    def cut(self, left, top, width, height):
        """A part of the picture; it must be within the picture."""
        if left < 0 or top < 0 or left + width > self.width or top + height > self.height:
            raise AssertionError(f"{width}x{height} at {left},{top} is not within {self.width}x{self.height}")
        return Picture(width, height, b"".join(self.row(y)[4 * left:4 * (left + width)]
                                               for y in range(top, top + height)))

    def count_in_rows(self, accepts):
        """For each row, the number of pixels, as (red, green, blue), that the function accepts."""
        known = {}

        def is_accepted(pixel):
            if pixel not in known:
                known[pixel] = bool(accepts((pixel[2], pixel[1], pixel[0])))
            return known[pixel]

        return [sum(is_accepted(row[i:i + 4]) for i in range(0, len(row), 4))
                for row in map(self.row, range(self.height))]

    def bands(self, accepts):
        """The runs of rows with accepted pixels, each as (first row, row after the last)."""
        found, begin = [], None
        for y, count in enumerate(self.count_in_rows(accepts) + [0]):
            if count and begin is None:
                begin = y
            elif not count and begin is not None:
                found.append((begin, y))
                begin = None
        return found

    def count(self, pixel):
        """The number of pixels that equal the given one, for each column and for each row."""
        pixels = memoryview(self.data).cast("I")
        value = int.from_bytes(pixel, sys.byteorder)
        return ([pixels[x::self.width].tolist().count(value) for x in range(self.width)],
                [pixels[y * self.width:(y + 1) * self.width].tolist().count(value) for y in range(self.height)])


class Display:
    """A virtual screen with a temporary folder. The caller must close it."""

    def __init__(self, width=1280, height=1024, window_manager=True):
        self.width, self.height = width, height
        self.processes = []
        self.folder = tempfile.mkdtemp(prefix="varnoth")
        try:
            self.make_folders()
            self.start_server()
            if window_manager:
                # The window manager misses windows that open while it starts, so wait until it has started.
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
        # Independent of the desktop, the settings and the language of the user who runs the test.
        self.environment = {name: value for name, value in os.environ.items()
                            if not name.startswith(("XDG_", "QT_", "DISPLAY", "WAYLAND_", "DBUS_", "DESKTOP", "KDE_",
                                                    "LC_", "LANG"))}
        self.environment.update(HOME=self.home, XDG_CONFIG_HOME=self.make_folder("home", "config"),
                                XDG_CACHE_HOME=self.make_folder("home", "cache"),
                                XDG_DATA_HOME=self.make_folder("home", "data"),
                                XDG_RUNTIME_DIR=self.make_folder("runtime"), LC_ALL="C.UTF-8",
                                DBUS_SESSION_BUS_ADDRESS="disabled:",
                                # Qt 6.8 asks for the portal without a bus too, and does not free the question.
                                QT_NO_XDG_DESKTOP_PORTAL="1",
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
        # The pointer is not drawn, because it would cover pixels.
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

    # Screenshots.

    def capture(self, left=0, top=0, width=None, height=None):
        """The pixels of a part of the screen, by default of all of it, from the server's memory in XWD format."""
        header_size, = struct.unpack_from(">I", self.screen)
        depth, pitch = struct.unpack_from(">II", self.screen, 44)
        colours, = struct.unpack_from(">I", self.screen, 76)
        if depth != 32:
            raise AssertionError(f"a screen of {depth} bits")
        data = self.screen[header_size + 12 * colours:]
        whole = Picture(pitch // 4, self.height, data[:pitch * self.height])
        return whole.cut(left, top, width or self.width, height or self.height)

    def wait_until_still(self, *place):
        """The pixels of a part of the screen as soon as two successive screenshots of it are equal."""
        last = self.capture(*place)
        end = time.monotonic() + TIMEOUT
        while time.monotonic() < end:
            time.sleep(5 * POLL_INTERVAL)
            now = self.capture(*place)
            if now == last:
                return now
            last = now
        raise AssertionError(f"timed out: no change at {place}")

    # Windows.

    def run_xdotool(self, *words):
        return subprocess.run(["xdotool", *map(str, words)], env=self.environment, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=TIMEOUT, check=False)

    def xdotool(self, *words, fails=False):
        done = self.run_xdotool(*words)
        if done.returncode and not fails:
            raise AssertionError(f"xdotool {words}: {done.stderr.decode()}")
        return done.stdout.decode()

    def windows(self, title=".+"):
        """The visible windows with a title."""
        while True:
            done = self.run_xdotool("search", "--onlyvisible", "--name", f"^{title}$")
            # xdotool prints an error when a window closes during the search; it prints nothing when there is none.
            if not done.stderr:
                return set(done.stdout.decode().split())

    def place_of(self, window):
        """Left, top, width and height of a window."""
        words = dict(line.split("=") for line in self.xdotool("getwindowgeometry", "--shell", window).split())
        return tuple(int(words[name]) for name in ("X", "Y", "WIDTH", "HEIGHT"))

    def is_active(self, window):
        return self.xdotool("getactivewindow", fails=True).strip() == window

    def wait_for_window(self, title, but=()):
        """The window with this title that is not in `but`, as soon as it is visible and active."""
        window, = wait_for("a window " + title, lambda: self.windows(title) - set(but))
        wait_for(f"{title} to become active", lambda: self.is_active(window))
        return window

    def wait_until_gone(self, window):
        wait_for("a window to close", lambda: window not in self.windows())

    # Pointer and keys.

    def point(self, x, y):
        self.xdotool("mousemove", x, y)

    def click(self, x, y, key=None, times=1):
        words = ["mousemove", x, y]
        if key:
            words += ["keydown", key]
        if times == 1:
            words += ["click", 1]
        self.xdotool(*words)
        if times > 1:
            self.click_at_once(times)
        if key:
            self.xdotool("keyup", key)

    def click_at_once(self, times):
        """Several clicks in one message to the server. xdotool sends them one by one, and a busy machine may separate
        them by more than the time of a double click."""
        x11, xtst = ctypes.CDLL("libX11.so.6"), ctypes.CDLL("libXtst.so.6")
        x11.XOpenDisplay.restype = ctypes.c_void_p
        connection = ctypes.c_void_p(x11.XOpenDisplay(self.environment["DISPLAY"].encode()))
        if not connection:
            raise AssertionError("no connection to the display")
        for _ in range(times):
            for pressed in (1, 0):
                xtst.XTestFakeButtonEvent(connection, 1, pressed, 0)
        x11.XCloseDisplay(connection)

    def press(self, *keys):
        self.xdotool("key", *keys)

    def type(self, text):
        self.xdotool("type", "--delay", 2, "--", text)


def corner_while_dragged(pointer, grab):
    """The expected corner of a window while its title is dragged: a pixel has 15 units, and the editor takes the offset
    of the grab as units."""
    return tuple(round((at * 15 - offset) / 15) for at, offset in zip(pointer, grab))
