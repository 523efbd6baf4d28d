"""A user at the built editor who awaits every box that must come, and none besides."""
import collections
import os
import random
import re
import time

from answers import Finding, NO, YES, message_of
from display import PATIENCE, wait_for
from hand import CLOSE_MAIN, EXTRACT, Hand, MAIN, PROGRESS_CANCEL

# The export of reordered frames goes on from the number that it has written, which may be one that it comes from. It
# then writes, or asks, until Cancel or No.
ENDLESS_WALK_TIME, MANY_QUESTIONS = 10, 30


class WatchedUser(Hand):
    """A user who knows in which state the editor is, and notices what nothing called for."""

    def __init__(self, display, program, witness, pictures, seed):
        self.display, self.program, self.witness = display, program, witness
        self.pictures, self.dice = pictures, random.Random(seed)
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
        # Lines of the list, and how many of the first ones have a frame that can be drawn. None: nobody knows.
        self.lines = self.frames = 0
        self.size = (0, 0)
        self.dirty = self.unnamed = self.can_save = self.can_import = self.is_opened = False
        # A document that a refused file has been read into is saved as far as it goes.
        self.is_foreign = self.has_browsed = self.is_reordered = False

    # What happens.

    def say(self, words):
        self.last.append(words)

    def look_out(self):
        """Nothing has happened that nobody awaits."""
        if self.editor.poll() is not None:
            raise Finding(f"the editor has ended with {self.editor.returncode}")
        text = self.next_text()
        if text is not None:
            raise Finding(f"a box that nothing called for: {text}")

    def next_text(self):
        """The text of the next box that was opened, if any."""
        with open(self.texts_path, "rb") as file:
            file.seek(self.texts_read)
            line = file.readline()
        if not line.endswith(b"\n"):
            return None
        self.texts_read += len(line)
        return line.decode().rstrip("\n")

    def wait(self, what, condition):
        """The first true answer of the condition, without patience for an editor that is no longer there."""
        def answer():
            found = condition()
            if not found and self.editor.poll() is not None:
                raise Finding(f"the editor has ended with {self.editor.returncode}, awaited: {what}")
            return found

        return wait_for(what, answer)

    def click(self, window, point, **options):
        self.look_out()
        super().click(window, point, **options)

    def expect(self, *texts, answer=YES):
        """Awaits a box with one of the texts and answers it. The text."""
        text = self.wait("a box: " + " or ".join(texts), self.next_text)
        self.take(text, texts, answer)
        return text

    def take(self, text, texts, answer=YES):
        """Answers a box that has opened, if it is one of the expected."""
        self.say(f"    box: {text}")
        name = message_of(text)
        if name is None:
            raise Finding(f"a message that is none of the editor's: {text}")
        self.messages[name] += 1
        if not any(text == one or re.fullmatch(one, text) for one in texts):
            raise Finding(f"a message out of place: {text}")
        box = self.display.wait_for_window(MAIN, but=[self.main])
        self.display.press(answer)
        self.display.wait_until_gone(box)

    def settle(self):
        self.display.point(0, 0)
        self.display.wait_until_still()
        self.look_out()

    def chance(self, share):
        return self.dice.random() < share

    def choose_line(self, dialog, field, below, line):
        closed = self.look(dialog, below)
        self.click(dialog, field)
        self.wait_for_change(dialog, below, closed)
        self.display.press("Home", *["Down"] * line, "Return")
        self.wait("the drop-down list to close", lambda: self.display.is_active(dialog))
        self.display.wait_until_still()

    def double_click(self, window, point, is_done):
        """Once more when nothing comes of it: on a busy machine the second click may come too late."""
        for patience in (3, 3, PATIENCE):
            self.click(window, point, times=2)
            try:
                return wait_for("what a double click does", is_done, patience)
            except AssertionError:
                if patience == PATIENCE:
                    raise

    # Jobs.

    def follow(self, dialog, title, texts, cancels):
        """Stays with a job until its dialog goes, answers what it asks, and presses Cancel if wanted. The texts."""
        heard = []
        end_of_patience = time.monotonic() + ENDLESS_WALK_TIME

        def goes_on():
            text = self.next_text()
            if text is not None:
                self.take(text, texts, NO if len(heard) > MANY_QUESTIONS else self.dice.choice([YES, NO]))
                heard.append(text)
                return True
            windows = self.display.windows(title)
            walks_for_ever = title == EXTRACT and self.is_reordered and time.monotonic() > end_of_patience
            for progress in windows - {dialog} if cancels or walks_for_ever else ():
                self.press_cancel(progress)
                return True
            return dialog not in windows and "gone"

        while self.wait("an end of " + title, goes_on) != "gone":
            pass
        text = self.next_text()
        if text is not None:
            raise Finding(f"a message out of place: {text}")
        return heard

    def press_cancel(self, progress):
        """It may have gone meanwhile; the click then meets the main window, which is disabled, or its picture."""
        place = self.display.xdotool("getwindowgeometry", "--shell", progress, fails=True)
        found = dict(line.split("=") for line in place.split())
        if "X" in found:
            self.say("    press cancel")
            self.display.click(int(found["X"]) + PROGRESS_CANCEL[0], int(found["Y"]) + PROGRESS_CANCEL[1])

    # What the editor holds and how it ends.

    def allocated(self):
        """Bytes, as the allocator counts them."""
        with open(self.memory_path, "rb") as file:
            return int(file.read())

    def output(self):
        """What the editor has written on its terminal, less what the decoder of JPEG says of cut files."""
        with open(self.errors, "rb") as file:
            lines = file.read().decode().splitlines()
        return "\n".join(line for line in lines if not line.startswith("qt.gui.imageio.jpeg: Corrupt JPEG data: "))

    def end(self):
        """By the close box, which asks for nothing."""
        self.click(self.main, CLOSE_MAIN)
        self.handle_fatal_error(0)

    def handle_fatal_error(self, status):
        wait_for("the end of the editor", lambda: self.editor.poll() is not None)
        if self.editor.returncode != status:
            raise Finding(f"the editor has ended with {self.editor.returncode} and not with {status}")
        if self.output():
            raise Finding(f"output of the editor: {self.output()}")
