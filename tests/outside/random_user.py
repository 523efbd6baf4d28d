"""A user who does one thing after the other as the dice fall, and knows what the editor has to say to each. Whatever
else happens is a Finding: another message, an end, no answer."""
import collections
import os
import random
import re
import struct
import time

from display import PATIENCE, wait_for
from hand import (ADD, ADD_CANCEL, ADD_OK, ADD_PICK, ADD_RESIZE, ADD_SET, BELOW_FILTER, BELOW_RENDER, BELOW_TYPE,
                  CLEAR_BUTTON, CLOSE_MAIN, CLOSE_PREVIEW, DOWN_ARROW, EXPORT_BUTTON, EXTRACT, EXTRACT_ASK, EXTRACT_BMP,
                  EXTRACT_BROWSE, EXTRACT_CANCEL, EXTRACT_COMPRESSED, EXTRACT_FOLDER, EXTRACT_OK, EXTRACT_OVERWRITE,
                  EXTRACT_PCX, EXTRACT_SKIP, EXTRACT_TGA, FASTER, FILES, FILTER, FOLDER, FOLDER_CANCEL, FOLDER_OK,
                  FOLDERS, FRAME, FRAME_LIST, Hand, IMPORT_BUTTON, MAIN, NEW, NEW_BUTTON, NEW_CANCEL, NEW_HEIGHT,
                  NEW_NAME, NEW_OK, NEW_RENDER, NEW_TYPE, NEW_WIDTH, OPEN_BUTTON, OPEN_CHOOSER, PATH_FIELD, PICTURE,
                  PLAY, PREVIEW, PROGRESS_CANCEL, REMOVE_BUTTON, SAVE_BUTTON, SAVE_CHOOSER, SLOWER, STOP, TITLE,
                  UP_ARROW, is_closed_folder, is_highlight)
from material import FATAL, FORMATS, MANY, MEDIUM, RENDER_MODES, UNKNOWN_LOADING, Sprite, sprite_bytes

# What the editor says to its user, by what stands in the summary, and in full.
MESSAGES = {
    "¿ Do you want to save changes in ... ?": "¿ Do you want to save changes in .* \\?",
    "Sprite Cant Be Empty. Put Some Pictures In It.": None,
    "Sprite Saved Successfully !": None,
    "Select Only 1": None,
    "Not A Half-Life Sprite ...": "Not A Half-Life Sprite /.*",
    "No Sprites In File": None,
    "Not 8bpp sprite": None,
    UNKNOWN_LOADING: None,
    "Unknown Error Saving Sprite.": None,
    "Select Output Folder First.": None,
    "Output Folder Doesnt Exist.": None,
    "File ... Already Exists. Overwrite?": "File .*_\\d+\\.(bmp|tga|pcx) Already Exists\\. Overwrite\\?",
    "Select Picture/s To Add.": None,
    "File: ... Bad Format/Corrupt.": "File: .* Bad Format/Corrupt\\.",
    "File: ... With Size Greater Than 256 x 256.": "File: .* With Size Greater Than 256 x 256\\.",
    "All Selected Pictures Must Have Same Size.": None,
    "Process Aborted By User. Some Pictures Where Not Imported.": None,
    "Frames Generated Successfully !": None,
}
OVERWRITE = MESSAGES["File ... Already Exists. Overwrite?"]
GENERATED = "Frames Generated Successfully !"
ABORTED = "Process Aborted By User. Some Pictures Where Not Imported."
FATAL_BOX = "Run-time error: "

LARGEST_SIDE = 256
VISIBLE_LINES = 20
DOUBLE_CLICK_TIME = 0.45
# The export of reordered frames goes on from the number that it has written, which may be one that it comes from. It
# then writes, or asks, until Cancel or No.
ENDLESS_WALK_TIME, MANY_QUESTIONS = 10, 30
FIRST_SPEED, HIGHEST_SPEED = 15, 60
# Of a question: the keys that answer it.
YES, NO = "Return", "Escape"

QUIET_SPRITE = Sprite("quiet.spr", sprite_bytes((64, 64), 6), size=(64, 64), frames=6)


class Finding(AssertionError):
    pass


def message_of(text):
    """The message that a text is one of."""
    for name, pattern in MESSAGES.items():
        if text == name or (pattern and re.fullmatch(pattern, text)):
            return name
    return None


class Selection:
    """The dialog that adds frames, as far as its messages go."""

    def __init__(self, pictures, sprite_size):
        self.pictures, self.sprite_size = pictures, sprite_size
        self.selected = set()
        self.asks_for_size, self.size_choice, self.sets_sprite = False, None, True
        self.shown = None

    def list_again(self, pictures):
        self.pictures, self.selected = pictures, set()

    def click(self, line, keys=None, anchor=None):
        """Selects as the list does, and looks through it. The message, if any."""
        if keys == "ctrl":
            self.selected ^= {line}
        elif keys == "shift":
            self.selected = set(range(min(anchor, line), max(anchor, line) + 1))
        elif keys == "all":
            self.selected = set(range(len(self.pictures)))
        else:
            self.selected = {line}
        message = self.validate()
        self.shown = self.pictures[line].shown or self.shown
        return message

    def validate(self):
        """The first fault ends the look through the list and costs its picture the mark."""
        first = None
        for line in sorted(self.selected):
            picture = self.pictures[line]
            if picture.told is None:
                return self.fault(line, f"File: {picture.name} Bad Format/Corrupt.")
            if max(picture.told) > LARGEST_SIDE:
                return self.fault(line, f"File: {picture.name} With Size Greater Than 256 x 256.")
            if first is None:
                first = picture.told
                if first != self.sprite_size:
                    self.asks_for_size, self.size_choice = True, first
            elif picture.told != first:
                return self.fault(line, "All Selected Pictures Must Have Same Size.")
        return None

    def fault(self, line, message):
        self.selected.discard(line)
        self.asks_for_size = False
        return message

    def sizes(self):
        """Of the sprite and of its frames after OK."""
        if self.asks_for_size and not self.sets_sprite:
            return self.sprite_size, self.sprite_size
        return (self.size_choice if self.asks_for_size else self.sprite_size), self.shown

    def makes_drawable_frames(self):
        """A frame with fewer pixels than its sprite has ends the program when it is drawn."""
        sprite, frame = self.sizes()
        return frame is not None and frame[0] * frame[1] >= sprite[0] * sprite[1] and min(sprite) >= 1


class RandomUser(Hand):
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

    # The sprite file.

    def press_open(self):
        """Comes to the chooser, whatever is to be saved before. The chooser."""
        self.click(self.main, OPEN_BUTTON)
        text = self.wait("a question or the chooser", lambda: self.next_text() or self.display.windows(OPEN_CHOOSER))
        if isinstance(text, str):
            if self.dirty is False:
                raise Finding(f"a message out of place: {text}")
            wants_saving = self.lines is not None and not self.is_foreign and self.chance(0.4)
            question = f"¿ Do you want to save changes in {self.path.strip(' ')} ?"
            self.note_time_of_save()
            self.take(text, [re.escape(question)], YES if wants_saving else NO)
            if wants_saving:
                self.save_pressed()
        elif self.dirty:
            raise Finding("no question about unsaved changes")
        return self.display.wait_for_window(OPEN_CHOOSER)

    def open_sprite(self, sprite):
        path = os.path.join(self.sprites, sprite.name)
        self.say(f"open {sprite.name}")
        self.press_open()
        # Not before: the open sprite may have been saved there.
        self.write_file(path, sprite.data)
        self.choose_file(OPEN_CHOOSER, path)
        if sprite.refusals:
            self.expect(*(re.escape(text.format(path=path)) for text in sprite.refusals))
            self.is_foreign, self.frames = True, 0
            self.size = struct.unpack_from("<ii", sprite.data, 20)
            return
        self.path, self.size, self.render = path, sprite.size, sprite.render
        self.lines = self.frames = sprite.frames
        self.dirty = self.unnamed = self.is_foreign = self.is_reordered = False
        self.can_import = self.is_opened = True
        self.settle()

    @staticmethod
    def write_file(path, data):
        if os.path.exists(path):
            os.chmod(path, 0o644)
        with open(path, "wb") as file:
            file.write(data)

    def open_good(self, sprites):
        self.open_sprite(self.dice.choice(sprites))

    def cancel_open(self):
        self.say("open, and cancel")
        chooser = self.press_open()
        self.display.press("Escape")
        self.display.wait_until_gone(chooser)
        self.settle()

    def open_missing(self):
        """The chooser itself tells that there is no such file, and stays."""
        self.say("open a missing file")
        chooser = self.press_open()
        self.display.type(os.path.join(self.sprites, "nowhere.spr"))
        self.display.press("Return")
        self.answer_chooser(chooser, OPEN_CHOOSER, "Return")
        self.display.press("Escape")
        self.display.wait_until_gone(chooser)
        self.settle()

    def answer_chooser(self, chooser, title, key):
        """What the chooser says in boxes of its own is the toolkit's."""
        box = self.display.wait_for_window(title, but=[chooser])
        while self.next_text() is not None:
            pass
        self.display.press(key)
        self.display.wait_until_gone(box)

    def save(self):
        self.say("save")
        self.press_save()

    def press_save(self):
        self.note_time_of_save()
        self.click(self.main, SAVE_BUTTON)
        self.save_pressed()

    def note_time_of_save(self):
        # The file system's clock goes in steps of some milliseconds.
        self.pressed_save_at = time.time_ns() - 20_000_000

    def save_pressed(self):
        """What comes after Save."""
        if self.lines == 0:
            self.expect("Sprite Cant Be Empty. Put Some Pictures In It.")
        elif self.unnamed:
            self.save_as()
        else:
            self.dirty = False
            path = os.path.join(self.display.home, self.path)
            if not self.may_write(path):
                self.expect("Unknown Error Saving Sprite.")
            else:
                self.wait("the sprite to be saved", lambda: self.is_saved(path))

    def save_as(self):
        chooser = self.display.wait_for_window(SAVE_CHOOSER)
        kind = self.dice.choice(["new", "new", "old", "read-only", "cancel"])
        self.say(f"    save as: {kind}")
        if kind == "cancel":
            self.display.press("Escape")
            self.display.wait_until_gone(chooser)
            self.settle()
            return
        path = os.path.join(self.sprites, f"saved{self.dice.randrange(1000)}.spr" if kind == "new" else f"{kind}.spr")
        if kind != "new":
            self.write_file(path, b"old")
        elif os.path.exists(path):
            os.remove(path)
        if kind == "read-only":
            os.chmod(path, 0o444)
        self.display.type(path)
        self.display.press("Return")
        if kind != "new":
            self.answer_chooser(chooser, SAVE_CHOOSER, "alt+y")
        self.display.wait_until_gone(chooser)
        if kind == "read-only":
            self.expect("Unknown Error Saving Sprite.")
            os.remove(path)
            return
        self.expect("Sprite Saved Successfully !")
        if not self.is_saved(path):
            raise Finding(f"no whole sprite in {path}")
        os.remove(path)
        self.unnamed = self.dirty = False

    @staticmethod
    def may_write(path):
        folder = os.path.dirname(path)
        return (os.path.isdir(folder) and os.access(folder, os.W_OK) and not os.path.isdir(path)
                and not (os.path.exists(path) and not os.stat(path).st_mode & 0o200))

    def is_saved(self, path):
        """Whether a file has been written since Save was pressed, with a header and its frames."""
        if not os.path.isfile(path) or os.stat(path).st_mtime_ns < self.pressed_save_at:
            return False
        with open(path, "rb") as file:
            data = file.read()
        return len(data) >= 810 and len(data) >= 810 + 21 * struct.unpack_from("<i", data, 28)[0]

    def save_read_only(self):
        self.say("save over a read-only file")
        path = os.path.join(self.sprites, "kept.spr")
        self.write_file(path, QUIET_SPRITE.data)
        os.chmod(path, 0o444)
        self.type_path(path)
        self.press_save()

    def save_nowhere(self):
        self.say("save into a missing folder")
        self.type_path(os.path.join(self.sprites, "nowhere", "lost.spr"))
        self.press_save()

    def type_path(self, path):
        self.fill_in(self.main, PATH_FIELD, path)
        self.path = path

    def press_clear(self):
        self.say("clear")
        self.click(self.main, CLEAR_BUTTON)
        self.dirty = self.can_save = True

    def press_remove(self):
        self.say("remove")
        self.click(self.main, REMOVE_BUTTON)

    # A new sprite.

    def new_sprite(self):
        self.click(self.main, NEW_BUTTON)
        dialog = self.display.wait_for_window(NEW)
        if self.chance(0.25):
            self.say("new, and cancel")
            self.click(dialog, NEW_CANCEL)
            self.display.wait_until_gone(dialog)
            return
        name = self.dice.choice(["fire", "a new one", "x.y", "Untitled"])
        width, height = (self.dice.choice(["16", "32", "64", "100", "128", "33", "256", "0", "-8", "12.5", "abc"])
                         for _ in range(2))
        kind, render = self.dice.randrange(5), self.dice.randrange(len(RENDER_MODES))
        self.say(f"new {name} {width} {height} {kind} {render}")
        self.display.wait_until_still()
        for field, text in ((NEW_NAME, name), (NEW_WIDTH, width), (NEW_HEIGHT, height)):
            self.fill_in(dialog, field, text)
        self.choose_line(dialog, NEW_TYPE, BELOW_TYPE, kind)
        self.choose_line(dialog, NEW_RENDER, BELOW_RENDER, render)
        self.click(dialog, NEW_OK)
        self.display.wait_until_gone(dialog)
        self.path, self.render = name, RENDER_MODES[render]
        self.size = tuple(round(float(text)) if text != "abc" else 0 for text in (width, height))
        self.lines = self.frames = 0
        self.unnamed = self.can_import = True
        self.dirty = self.can_save = self.is_opened = self.is_foreign = False
        self.settle()

    def choose_line(self, dialog, field, below, line):
        closed = self.look(dialog, below)
        self.click(dialog, field)
        self.wait_for_change(dialog, below, closed)
        self.display.press("Home", *["Down"] * line, "Return")
        self.wait("the drop-down list to close", lambda: self.display.is_active(dialog))
        self.display.wait_until_still()

    # Frames.

    def visible_lines(self):
        return min(self.frames, VISIBLE_LINES)

    def click_line(self, line, key=None):
        """Of the first ones, when the list stands at its top."""
        self.click(self.main, (FRAME_LIST[0] + 100, FRAME_LIST[1] + 8 + line * self.line_height), key=key)

    def go_to_top(self):
        """Longer lists scroll, and then have frames for all their lines."""
        self.click_line(0)
        self.display.press("Home")

    def click_frames(self):
        self.say("click frames")
        self.go_to_top()
        for _ in range(self.dice.randrange(1, 6)):
            self.click_line(self.dice.randrange(self.visible_lines()), self.dice.choice([None, None, "ctrl", "shift"]))
        if self.lines == self.frames:
            self.display.press(*self.dice.choices(["Down", "Up", "Page_Down", "Page_Up", "End", "Home"], k=4))
        self.settle()

    def reorder(self):
        self.go_to_top()
        line = self.dice.randrange(self.visible_lines())
        self.click_line(line)
        if self.frames > 1 and self.chance(0.2):
            other = self.dice.choice([one for one in range(self.visible_lines()) if one != line])
            self.say(f"an arrow with {line} and {other} selected")
            self.click_line(other, "ctrl")
            self.click(self.main, UP_ARROW if other else DOWN_ARROW)
            self.expect("Select Only 1")
            return
        for _ in range(self.dice.randrange(1, 8)):
            step = self.dice.choice([-1, 1])
            if line + step >= self.frames and self.lines > self.frames:
                continue
            self.say(f"move {line} by {step}")
            self.click(self.main, UP_ARROW if step < 0 else DOWN_ARROW)
            if 0 <= line + step < self.frames:
                line += step
                self.dirty = self.can_save = self.is_reordered = True
        self.settle()

    def preview(self):
        self.say("preview")
        dialog = self.open_preview()
        speed, plays = FIRST_SPEED, self.lines == self.frames
        for _ in range(self.dice.randrange(1, 7)):
            step = self.dice.choice(["play", "stop", "faster", "slower", "look"])
            if step == "play" and plays:
                self.click(dialog, PLAY)
            elif step == "stop":
                self.click(dialog, STOP)
            elif step == "faster":
                times = self.dice.randrange(1, 50)
                self.click(dialog, FASTER, times=times)
                speed = min(HIGHEST_SPEED, speed + times)
            elif step == "slower" and speed > 1:
                times = self.dice.randrange(1, speed)
                self.click(dialog, SLOWER, times=times)
                speed -= times
            elif step == "look":
                time.sleep(self.dice.random())
        self.say(f"    at {speed} fps")
        self.click(dialog, CLOSE_PREVIEW)
        self.display.wait_until_gone(dialog)

    def open_preview(self):
        """By the picture's corner: the window may still show a smaller frame than the sprite has. The dialog."""
        self.double_click(self.main, FRAME[:2], lambda: self.display.windows(PREVIEW))
        return self.display.wait_for_window(PREVIEW)

    def preview_nothing(self):
        self.say("a double click where no frame is")
        self.click(self.main, FRAME[:2], times=2)
        self.settle()

    # Taking apart.

    def export(self):
        self.say("export")
        self.go_to_top()
        if self.lines == self.frames and self.chance(0.5):
            self.display.press("ctrl+a")
        elif self.chance(0.8):
            self.click_line(self.dice.randrange(self.visible_lines()), self.dice.choice(["shift", "ctrl"]))
        self.click(self.main, EXPORT_BUTTON)
        dialog = self.display.wait_for_window(EXTRACT)
        self.display.wait_until_still()
        for point in self.dice.choices([EXTRACT_BMP, EXTRACT_TGA, EXTRACT_PCX, EXTRACT_COMPRESSED, EXTRACT_SKIP,
                                        EXTRACT_ASK, EXTRACT_OVERWRITE], k=6):
            self.click(dialog, point)
        if self.chance(0.2):
            self.refuse_folder(dialog)
        if self.chance(0.2):
            self.say("    browse")
            self.click(dialog, EXTRACT_BROWSE)
            self.leave_folders(dialog)
        if self.chance(0.15):
            self.say("    cancel")
            self.click(dialog, EXTRACT_CANCEL)
            self.display.wait_until_gone(dialog)
            return
        self.fill_in(dialog, EXTRACT_FOLDER, self.exported)
        self.click(dialog, EXTRACT_OK)
        self.follow(dialog, EXTRACT, [OVERWRITE], self.chance(0.1))

    def refuse_folder(self, dialog):
        """No folder, or a missing one: the browser opens by itself."""
        empty = self.chance(0.5)
        self.fill_in(dialog, EXTRACT_FOLDER, "" if empty else os.path.join(self.exported, "nowhere"))
        if empty:
            self.display.press("BackSpace")
        self.say(f"    to {'no' if empty else 'a missing'} folder")
        self.click(dialog, EXTRACT_OK)
        self.expect("Select Output Folder First." if empty else "Output Folder Doesnt Exist.")
        self.leave_folders(dialog)

    def leave_folders(self, dialog):
        folders = self.display.wait_for_window(FOLDER)
        self.click(folders, self.dice.choice([FOLDER_OK, FOLDER_CANCEL]))
        self.display.wait_until_gone(folders)
        wait_for("the dialog behind", lambda: self.display.is_active(dialog))

    def cancel_export(self):
        self.say("export, and cancel")
        self.click(self.main, EXPORT_BUTTON)
        dialog = self.display.wait_for_window(EXTRACT)
        self.click(dialog, EXTRACT_CANCEL)
        self.display.wait_until_gone(dialog)

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

    # Bringing in.

    def import_pictures(self):
        self.click(self.main, IMPORT_BUTTON)
        dialog = self.display.wait_for_window(ADD)
        self.display.wait_until_still()
        selection = Selection([], self.size)
        if self.chance(0.1):
            self.say("import, with nothing selected")
            self.click(dialog, ADD_OK)
            self.expect("Select Picture/s To Add.")
            self.leave_import(dialog)
            return
        folder = self.dice.choice([name for name in self.pictures.names() if name != FATAL])
        kind = "jpg" if folder == MANY else self.dice.choice(FORMATS)
        self.say(f"import {kind} of {folder} into {self.size}")
        self.go_to_folder(dialog, folder)
        selection.list_again(self.pictures.files(folder, kind))
        self.choose_line(dialog, FILTER, BELOW_FILTER, FORMATS.index(kind))
        self.select(dialog, selection, folder)
        if self.render in ("INDEXALPHA", "ALPHATEST") and self.chance(0.5):
            self.pick(dialog)
        may_resize = 1 <= min(self.size) and max(self.size) <= LARGEST_SIDE
        if selection.asks_for_size and may_resize and self.chance(0.5):
            self.say("    resize")
            self.click(dialog, ADD_RESIZE)
            selection.sets_sprite = False
        elif selection.asks_for_size and self.chance(0.3):
            self.click(dialog, ADD_SET)
        if self.chance(0.1):
            self.leave_import(dialog)
            return
        self.bring_in(dialog, selection, cancels=self.chance(0.8 if folder == MANY else 0.1))

    def leave_import(self, dialog):
        self.say("    cancel")
        self.click(dialog, ADD_CANCEL)
        self.display.wait_until_gone(dialog)

    def go_to_folder(self, dialog, folder):
        """By way of the folder above all of them; the first time the list stands at the sprite's folder."""
        names = self.pictures.names()
        if self.has_browsed:
            self.open_folder_above(dialog, self.pictures.root, names)
        else:
            home = self.display.home
            beside = [name for name in os.listdir(home) if os.path.isdir(os.path.join(home, name))]
            self.open_folder_above(dialog, home, beside)
            self.open_folder_below(dialog, beside, os.path.basename(self.pictures.root), names)
        self.open_folder_below(dialog, names, folder, [])
        self.display.wait_until_still()
        self.has_browsed = True

    def open_folder_above(self, dialog, path, names):
        """One of those that are open down to the present one; the first line is the root."""
        begin, end = self.look(dialog, FOLDERS).bands(is_highlight)[len(path.strip("/").split("/"))]
        self.open_folder(dialog, FOLDERS[1] + (begin + end) // 2, names)

    def open_folder_below(self, dialog, names, name, names_below):
        middles = self.wait_for_lines(dialog, FOLDERS, len(names), is_closed_folder)
        self.open_folder(dialog, middles[sorted(names, key=str.lower).index(name)], names_below)

    def open_folder(self, dialog, middle, names):
        """That of a line, which holds the named folders."""
        self.double_click(dialog, (FOLDERS[0] + 150, middle),
                          lambda: len(self.look(dialog, FOLDERS).bands(is_closed_folder)) == len(names))

    def double_click(self, window, point, is_done):
        """Once more when nothing comes of it: on a busy machine the second click may come too late."""
        for patience in (3, 3, PATIENCE):
            self.click(window, point, times=2)
            try:
                return wait_for("what a double click does", is_done, patience)
            except AssertionError:
                if patience == PATIENCE:
                    raise

    def select(self, dialog, selection, folder):
        count = len(selection.pictures)
        if folder == MANY:
            self.wait("a full list", lambda: len(self.look(dialog, FILES).bands(lambda colour: min(colour) > 100)) > 15)
            self.click_file(dialog, selection, 0)
            self.display.press("ctrl+a")
            self.hear(selection.click(0, "all"))
            return
        self.wait_for_lines(dialog, FILES, count)
        for _ in range(self.dice.randrange(1, 3)):
            first = self.dice.randrange(count)
            self.click_file(dialog, selection, first)
            if self.chance(0.6):
                self.click_file(dialog, selection, self.dice.randrange(count), "shift", first)
            for _ in range(self.dice.randrange(3)):
                self.click_file(dialog, selection, self.dice.randrange(count), "ctrl")

    def click_file(self, dialog, selection, line, keys=None, anchor=None):
        self.say(f"    click {selection.pictures[line].name} {keys or ''}")
        # A second click at once would be a double click.
        time.sleep(DOUBLE_CLICK_TIME)
        self.click(dialog, (FILES[0] + 100, FILES[1] + 8 + line * self.line_height), key=keys)
        self.hear(selection.click(line, keys, anchor))

    def hear(self, message):
        if message is None:
            self.display.wait_until_still()
            self.look_out()
        else:
            self.expect(re.escape(message))

    def pick(self, dialog):
        self.say("    pick")
        self.click(dialog, ADD_PICK)
        self.click(dialog, PICTURE[:2])

    def bring_in(self, dialog, selection, cancels):
        selected = bool(selection.selected)
        if selected and not selection.makes_drawable_frames():
            self.leave_import(dialog)
            return
        self.click(dialog, ADD_OK)
        if not selected:
            self.expect("Select Picture/s To Add.")
            self.leave_import(dialog)
            return
        message = selection.validate()
        if message is not None:
            self.expect(re.escape(message))
        text, = self.follow(dialog, ADD, [GENERATED] + [ABORTED] * cancels, cancels)
        drawable = selection.makes_drawable_frames()
        self.size, _ = selection.sizes()
        self.is_foreign = self.is_reordered = False
        if text == ABORTED:
            self.frames = 0
            return
        if cancels:
            # Maybe it came too late; nobody counts.
            self.lines, self.frames, self.dirty = None, 0, None
            return
        self.frames = len(selection.selected)
        self.lines += self.frames
        if not drawable or (self.lines > self.frames and self.lines > VISIBLE_LINES):
            # Frames that cannot be drawn, or lines without a frame in a list that scrolls.
            self.frames = 0
        if self.lines > 0:
            self.dirty = self.can_save = self.is_opened = True
        self.settle()

    # The windows.

    def drag(self):
        """Somewhere and back. The window's corner jumps to the pointer, less a fifteenth of the grab."""
        self.say("drag")
        corner = left, top, _, _ = self.display.place_of(self.main)
        grab = (105, 15)
        way = [(left + self.dice.randrange(-150, 150), top + self.dice.randrange(-150, 150)) for _ in range(4)]
        way.append((left + grab[0] // 15, top + grab[1] // 15))
        self.display.point(left + TITLE[0] + grab[0], top + TITLE[1] + grab[1])
        self.display.xdotool("mousedown", 1)
        for point in way:
            self.display.point(*point)
        self.display.xdotool("mouseup", 1)
        self.wait("the window where it was", lambda: self.display.place_of(self.main) == corner)

    def wander(self):
        """The pointer over everything, with a stay that brings a hint, and the wheel."""
        self.say("wander")
        left, top, width, height = self.display.place_of(self.main)
        for _ in range(10):
            self.display.point(left + self.dice.randrange(width), top + self.dice.randrange(height))
        if self.chance(0.3):
            self.display.point(left + FRAME[0] + 3, top + FRAME[1] + 3)
            time.sleep(1)
        self.display.point(left + FRAME_LIST[0] + 50, top + FRAME_LIST[1] + 50)
        self.display.xdotool("click", "--repeat", 5, "--delay", 10, self.dice.choice([4, 5]))
        self.settle()

    # The choice.

    def choices(self, good, bad):
        """What can be done now, by weight. What would end the program is left out."""
        found = [(10, self.open_good, good), (4, self.open_bad, bad), (1, self.cancel_open), (1, self.open_missing),
                 (6, self.new_sprite), (1, self.drag), (1, self.wander)]
        if self.lines is None:
            return found
        if self.can_import:
            found.append((30, self.import_pictures))
        if self.can_save and not self.is_foreign and (self.frames == self.lines or self.lines == 0):
            found += [(6, self.save), (1, self.save_nowhere), (1, self.save_read_only)]
        if self.is_opened:
            found += [(2, self.press_clear), (1, self.press_remove), (1, self.cancel_export)]
        if self.lines == 0:
            found.append((1, self.preview_nothing))
        if self.frames > 0:
            found += [(8, self.click_frames), (10, self.reorder), (10, self.preview)]
            if self.is_opened:
                found.append((12, self.export))
        return found

    def open_bad(self, sprites):
        self.open_sprite(self.dice.choice(sprites))

    def act(self, good, bad):
        found = self.choices(good, bad)
        _, action, *arguments = self.dice.choices(found, [weight for weight, *_ in found])[0]
        begin = time.monotonic()
        action(*arguments)
        self.look_out()
        windows = self.display.windows()
        if windows != {self.main}:
            raise Finding(f"{len(windows) - 1} windows more than the main one")
        self.actions[action.__name__] += 1
        self.slowest = max(self.slowest, (time.monotonic() - begin, action.__name__))

    def measure_lines(self):
        """The height of a line, by a sprite's list."""
        self.open_sprite(QUIET_SPRITE)
        middles = self.wait_for_lines(self.main, FRAME_LIST, QUIET_SPRITE.frames - 1)
        self.line_height = middles[1] - middles[0]

    def come_to_rest(self):
        """The same state every time: one sprite, no dialog, nothing under the pointer, and what the editor keeps of
        the last import and of the last picture that it decoded is of a certain folder."""
        self.say("rest")
        self.open_sprite(QUIET_SPRITE)
        self.click(self.main, IMPORT_BUTTON)
        dialog = self.display.wait_for_window(ADD)
        self.display.wait_until_still()
        selection = Selection(self.pictures.files(MEDIUM, "tga"), self.size)
        self.go_to_folder(dialog, MEDIUM)
        self.choose_line(dialog, FILTER, BELOW_FILTER, FORMATS.index("tga"))
        self.wait_for_lines(dialog, FILES, len(selection.pictures))
        self.click_file(dialog, selection, 0)
        self.bring_in(dialog, selection, cancels=False)
        self.open_sprite(QUIET_SPRITE)
        # The witness tells once a second.
        time.sleep(2)
        self.settle()

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
        self.end_with(0)

    def end_with(self, status):
        wait_for("the end of the editor", lambda: self.editor.poll() is not None)
        if self.editor.returncode != status:
            raise Finding(f"the editor has ended with {self.editor.returncode} and not with {status}")
        if self.output():
            raise Finding(f"output of the editor: {self.output()}")
