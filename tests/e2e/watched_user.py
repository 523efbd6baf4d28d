"""A user of the built editor who waits for every expected message box and fails on any other."""
import collections
import os
import random
import re
import time

import controls
from answers import Finding, NO, YES, message_of
from display import TIMEOUT, wait_for
from ui_driver import EXTRACT, FATAL_ERROR_LINE, FATAL_ERROR_STATUS, UiDriver, MAIN

# The export of reordered frames continues from the stored number of the frame that it has written, so it may loop. It
# then writes or asks until Cancel or No.
ENDLESS_EXPORT_SECONDS, MANY_QUESTIONS = 10, 30


class WatchedUser(UiDriver):
    """Tracks the state of the editor and raises a Finding on anything unexpected."""

    def __init__(self, display, program, witness, pictures, seed):
        self.display, self.program, self.witness = display, program, witness
        self.pictures, self.random = pictures, random.Random(seed)
        self.sprites = display.make_folder("home", "sprites")
        self.exported = display.make_folder("home", "exported")
        self.actions, self.messages, self.last = (collections.Counter(), collections.Counter(),
                                                  collections.deque(maxlen=60))
        self.slowest = (0, "")
        self.begin()

    def begin(self):
        """Starts the editor."""
        self.texts_path, self.memory_path = (os.path.join(self.display.folder, name) for name in ("texts", "memory"))
        with open(self.texts_path, "wb"):
            pass
        self.texts_read = 0
        self.start(self.program, LD_PRELOAD=self.witness, WITNESS_TEXTS=self.texts_path,
                   WITNESS_MEMORY=self.memory_path)
        self.path, self.render = "", ""
        # The lines of the list, and how many of the first ones have a frame that can be drawn. None means unknown.
        self.lines = self.frames = 0
        self.size = (0, 0)
        self.dirty = self.unnamed = self.can_save = self.can_import = self.is_opened = False
        # is_foreign: a refused file has replaced parts of the document.
        self.is_foreign = self.has_browsed = self.is_reordered = False

    # Messages.

    def log(self, words):
        self.last.append(words)

    def expect_nothing(self):
        """Verifies that the editor is running and has shown no unexpected box."""
        if self.editor.poll() is not None:
            raise Finding(f"the editor has ended with {self.editor.returncode}")
        text = self.next_text()
        if text is not None:
            raise Finding(f"an unexpected box: {text}")

    def next_text(self):
        """The text of the next box that was opened, or None."""
        with open(self.texts_path, "rb") as file:
            file.seek(self.texts_read)
            line = file.readline()
        if not line.endswith(b"\n"):
            return None
        self.texts_read += len(line)
        return line.decode().rstrip("\n")

    def wait(self, what, condition):
        """Like wait_for, but fails at once if the editor has exited."""
        def answer():
            found = condition()
            if not found and self.editor.poll() is not None:
                raise Finding(f"the editor has ended with {self.editor.returncode} while waiting for {what}")
            return found

        return wait_for(what, answer)

    def click(self, window, point, **options):
        self.expect_nothing()
        super().click(window, point, **options)

    def expect(self, *texts, answer=YES):
        """Waits for a box with one of the texts and answers it. Returns the text."""
        text = self.wait("a box: " + " or ".join(texts), self.next_text)
        self.answer_message(text, texts, answer)
        return text

    def answer_message(self, text, texts, answer=YES):
        """Answers a box that has opened; fails unless its text is expected."""
        self.log(f"    box: {text}")
        name = message_of(text)
        if name is None:
            raise Finding(f"an unknown message: {text}")
        self.messages[name] += 1
        if not any(text == one or re.fullmatch(one, text) for one in texts):
            raise Finding(f"an unexpected message: {text}")
        box = self.display.wait_for_window(MAIN, but=[self.main])
        self.display.press(answer)
        self.display.wait_until_gone(box)

    def settle(self):
        self.display.point(0, 0)
        self.display.wait_until_still()
        self.expect_nothing()

    def chance(self, share):
        return self.random.random() < share

    def choose_line(self, dialog, field, below, line):
        closed = self.capture(dialog, below)
        self.click(dialog, field)
        self.wait_for_change(dialog, below, closed)
        self.display.press("Home", *["Down"] * line, "Return")
        self.wait("the drop-down list to close", lambda: self.display.is_active(dialog))
        self.display.wait_until_still()

    def double_click(self, window, point, is_done):
        """Repeats the double click if nothing happens: on a busy machine the second click may come too late."""
        for timeout in (3, 3, TIMEOUT):
            self.click(window, point, times=2)
            try:
                return wait_for("the effect of a double click", is_done, timeout)
            except AssertionError:
                if timeout == TIMEOUT:
                    raise

    # Jobs.

    def follow(self, dialog, title, texts, cancels):
        """Waits until a job's dialog closes, answers its questions, and clicks Cancel if requested. Returns the
        texts."""
        texts_shown = []
        deadline = time.monotonic() + ENDLESS_EXPORT_SECONDS

        def poll():
            text = self.next_text()
            if text is not None:
                is_last = len(texts_shown) > MANY_QUESTIONS
                self.answer_message(text, texts, NO if is_last else self.random.choice([YES, NO]))
                texts_shown.append(text)
                return True
            windows = self.display.windows(title)
            is_endless = title == EXTRACT and self.is_reordered and time.monotonic() > deadline
            for progress in windows - {dialog} if cancels or is_endless else ():
                self.press_cancel(progress)
                return True
            return dialog not in windows and "gone"

        while self.wait("the end of " + title, poll) != "gone":
            pass
        text = self.next_text()
        if text is not None:
            raise Finding(f"an unexpected message: {text}")
        return texts_shown

    def press_cancel(self, progress):
        """The dialog may have closed; the click then reaches the disabled main window or its picture, with no
        effect."""
        place = self.display.xdotool("getwindowgeometry", "--shell", progress, fails=True)
        found = dict(line.split("=") for line in place.split())
        if "X" in found:
            self.log("    press cancel")
            left, top = controls.PROGRESS_CANCEL
            self.display.click(int(found["X"]) + left, int(found["Y"]) + top)

    # Memory, output and exit.

    def allocated(self):
        """Allocated bytes, as counted by the allocator."""
        with open(self.memory_path, "rb") as file:
            return int(file.read())

    def output(self):
        """What the editor has printed, except the JPEG library's warnings about truncated files."""
        with open(self.errors, "rb") as file:
            lines = file.read().decode().splitlines()
        return "\n".join(line for line in lines if not line.startswith("qt.gui.imageio.jpeg: Corrupt JPEG data: "))

    def end(self):
        """Closes the editor by its close box, which asks no question."""
        self.click(self.main, controls.CLOSE_MAIN)
        self.wait_for_exit(0)

    def wait_for_exit(self, status):
        wait_for("the editor to exit", lambda: self.editor.poll() is not None)
        if self.editor.returncode != status:
            raise Finding(f"the editor has ended with {self.editor.returncode} and not with {status}")
        expected = FATAL_ERROR_LINE if status == FATAL_ERROR_STATUS else ""
        if not re.fullmatch(expected, self.output()):
            raise Finding(f"output of the editor: {self.output()}")
