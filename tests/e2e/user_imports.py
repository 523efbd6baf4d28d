"""What a random user does in the dialog that adds frames."""
import os
import re
import time

from answers import ABORTED, GENERATED, LARGEST_SIDE, Selection
from hand import (ADD, ADD_CANCEL, ADD_OK, ADD_PICK, ADD_RESIZE, ADD_SET, BELOW_FILTER, FILES, FILTER, FOLDERS,
                  IMPORT_BUTTON, is_closed_folder, is_highlight, PICTURE, VISIBLE_LINES)
from material import FATAL, FORMATS, MANY
from watched_user import WatchedUser

DOUBLE_CLICK_TIME = 0.45


class ImportUser(WatchedUser):
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
