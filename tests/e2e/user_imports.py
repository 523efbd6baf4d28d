"""Random actions in the Add Frame/s dialog."""
import os
import re
import time

import controls
from answers import ABORTED, GENERATED, LARGEST_SIDE, Selection
from material import FATAL, FORMATS, MANY
from ui_driver import ADD, is_closed_folder, is_highlight, is_text, VISIBLE_LINES
from watched_user import WatchedUser

DOUBLE_CLICK_TIME = 0.45


class ImportUser(WatchedUser):
    def import_pictures(self):
        dialog = self.open_dialog(controls.IMPORT_BUTTON, ADD)
        selection = Selection([], self.size)
        if self.chance(0.1):
            self.log("import, with nothing selected")
            self.click(dialog, controls.ADD_OK)
            self.expect("Select Picture/s To Add.")
            self.cancel_import(dialog)
            return
        folder = self.random.choice([name for name in self.pictures.names() if name != FATAL])
        kind = "jpg" if folder == MANY else self.random.choice(FORMATS)
        self.log(f"import {kind} of {folder} into {self.size}")
        self.go_to_folder(dialog, folder)
        selection.list_again(self.pictures.files(folder, kind))
        self.choose_line(dialog, controls.FILTER, controls.BELOW_FILTER, FORMATS.index(kind))
        self.select(dialog, selection, folder)
        if self.render in ("INDEXALPHA", "ALPHATEST") and self.chance(0.5):
            self.pick(dialog)
        may_resize = 1 <= min(self.size) and max(self.size) <= LARGEST_SIDE
        if selection.asks_for_size and may_resize and self.chance(0.5):
            self.log("    resize")
            self.click(dialog, controls.ADD_RESIZE)
            selection.sets_sprite = False
        elif selection.asks_for_size and self.chance(0.3):
            self.click(dialog, controls.ADD_SET)
        if self.chance(0.1):
            self.cancel_import(dialog)
            return
        self.finish_import(dialog, selection, cancels=self.chance(0.8 if folder == MANY else 0.1))

    def cancel_import(self, dialog):
        self.log("    cancel")
        self.close_dialog(dialog, controls.ADD_CANCEL)

    def go_to_folder(self, dialog, folder):
        """Goes up to the folder with all pictures and down again. The list opens at the sprite's folder the first
        time."""
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
        """Opens a parent of the current folder; the first line of the list is the root."""
        begin, end = self.capture(dialog, controls.FOLDERS).bands(is_highlight)[len(path.strip("/").split("/"))]
        self.open_folder(dialog, controls.FOLDERS[1] + (begin + end) // 2, names)

    def open_folder_below(self, dialog, names, name, names_below):
        middles = self.wait_for_lines(dialog, controls.FOLDERS, len(names), is_closed_folder)
        self.open_folder(dialog, middles[sorted(names, key=str.lower).index(name)], names_below)

    def open_folder(self, dialog, middle, names):
        """Opens the folder in the line at this height and waits until its subfolders, the given names, are listed."""
        self.double_click(dialog, (controls.FOLDERS[0] + 150, middle),
                          lambda: len(self.capture(dialog, controls.FOLDERS).bands(is_closed_folder)) == len(names))

    def select(self, dialog, selection, folder):
        count = len(selection.pictures)
        if folder == MANY:
            self.wait("a full list", lambda: len(self.capture(dialog, controls.FILES).bands(is_text)) > 15)
            self.click_file(dialog, selection, 0)
            self.display.press("ctrl+a")
            self.expect_message(selection.click(0, "all"))
            return
        self.wait_for_lines(dialog, controls.FILES, count)
        for _ in range(self.random.randrange(1, 3)):
            first = self.random.randrange(count)
            self.click_file(dialog, selection, first)
            if self.chance(0.6):
                self.click_file(dialog, selection, self.random.randrange(count), "shift", first)
            for _ in range(self.random.randrange(3)):
                self.click_file(dialog, selection, self.random.randrange(count), "ctrl")

    def click_file(self, dialog, selection, line, keys=None, anchor=None):
        self.log(f"    click {selection.pictures[line].name} {keys or ''}")
        # An earlier second click would be a double click.
        time.sleep(DOUBLE_CLICK_TIME)
        self.click_list(dialog, controls.FILES, controls.FILES[1] + 8 + line * self.line_height, key=keys)
        self.expect_message(selection.click(line, keys, anchor))

    def expect_message(self, message):
        if message is None:
            self.display.wait_until_still()
            self.expect_nothing()
        else:
            self.expect(re.escape(message))

    def pick(self, dialog):
        self.log("    pick")
        self.click(dialog, controls.ADD_PICK)
        self.click(dialog, controls.PICTURE[:2])

    def finish_import(self, dialog, selection, cancels):
        selected = bool(selection.selected)
        if selected and not selection.makes_drawable_frames():
            self.cancel_import(dialog)
            return
        self.click(dialog, controls.ADD_OK)
        if not selected:
            self.expect("Select Picture/s To Add.")
            self.cancel_import(dialog)
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
            # The Cancel may have come too late, so the number of frames is unknown.
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
