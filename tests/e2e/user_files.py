"""Random actions with sprite files and new sprites."""
import os
import re
import struct
import time

import controls
from answers import Finding, NO, YES
from material import QUIET_SPRITE, RENDER_MODES
from ui_driver import NEW, OPEN_CHOOSER, SAVE_CHOOSER
from watched_user import WatchedUser


class FileUser(WatchedUser):
    def press_open(self):
        """Clicks Open and answers the question about unsaved changes, if any. Returns the chooser."""
        self.click(self.main, controls.OPEN_BUTTON)
        text = self.wait("a question or the chooser", lambda: self.next_text() or self.display.windows(OPEN_CHOOSER))
        if isinstance(text, str):
            if self.dirty is False:
                raise Finding(f"an unexpected message: {text}")
            wants_saving = self.lines is not None and not self.is_foreign and self.chance(0.4)
            question = f"¿ Do you want to save changes in {self.path.strip(' ')} ?"
            self.note_time_of_save()
            self.answer_message(text, [re.escape(question)], YES if wants_saving else NO)
            if wants_saving:
                self.finish_save()
        elif self.dirty:
            raise Finding("no question about unsaved changes")
        return self.display.wait_for_window(OPEN_CHOOSER)

    def open_sprite(self, sprite):
        path = os.path.join(self.sprites, sprite.name)
        self.log(f"open {sprite.name}")
        self.press_open()
        # Not earlier, because press_open may save the open sprite to this path.
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
        self.open_sprite(self.random.choice(sprites))

    def cancel_open(self):
        self.log("open, and cancel")
        chooser = self.press_open()
        self.display.press("Escape")
        self.display.wait_until_gone(chooser)
        self.settle()

    def open_missing(self):
        """The chooser reports the missing file and stays open."""
        self.log("open a missing file")
        chooser = self.press_open()
        self.display.type(os.path.join(self.sprites, "nowhere.spr"))
        self.display.press("Return")
        self.answer_chooser(chooser, OPEN_CHOOSER, "Return")
        self.display.press("Escape")
        self.display.wait_until_gone(chooser)
        self.settle()

    def answer_chooser(self, chooser, title, key):
        """Answers a box of the file chooser itself; its texts are Qt's and are skipped."""
        box = self.display.wait_for_window(title, but=[chooser])
        while self.next_text() is not None:
            pass
        self.display.press(key)
        self.display.wait_until_gone(box)

    def save(self):
        self.log("save")
        self.press_save()

    def press_save(self):
        self.note_time_of_save()
        self.click(self.main, controls.SAVE_BUTTON)
        self.finish_save()

    def note_time_of_save(self):
        # Time stamps of the file system have a resolution of some milliseconds.
        self.pressed_save_at = time.time_ns() - 20_000_000

    def finish_save(self):
        """Handles what follows a click on Save."""
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
        kind = self.random.choice(["new", "new", "old", "read-only", "cancel"])
        self.log(f"    save as: {kind}")
        if kind == "cancel":
            self.display.press("Escape")
            self.display.wait_until_gone(chooser)
            self.settle()
            return
        path = os.path.join(self.sprites, f"saved{self.random.randrange(1000)}.spr" if kind == "new" else f"{kind}.spr")
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
            raise Finding(f"incomplete sprite in {path}")
        os.remove(path)
        self.unnamed = self.dirty = False

    @staticmethod
    def may_write(path):
        folder = os.path.dirname(path)
        return (os.path.isdir(folder) and os.access(folder, os.W_OK) and not os.path.isdir(path)
                and not (os.path.exists(path) and not os.stat(path).st_mode & 0o200))

    def is_saved(self, path):
        """Whether a file with a header and all its frames has been written since Save was clicked."""
        if not os.path.isfile(path) or os.stat(path).st_mtime_ns < self.pressed_save_at:
            return False
        with open(path, "rb") as file:
            data = file.read()
        return len(data) >= 810 and len(data) >= 810 + 21 * struct.unpack_from("<i", data, 28)[0]

    def save_read_only(self):
        self.log("save over a read-only file")
        path = os.path.join(self.sprites, "kept.spr")
        self.write_file(path, QUIET_SPRITE.data)
        os.chmod(path, 0o444)
        self.type_path(path)
        self.press_save()

    def save_nowhere(self):
        self.log("save into a missing folder")
        self.type_path(os.path.join(self.sprites, "nowhere", "lost.spr"))
        self.press_save()

    def type_path(self, path):
        self.fill_in(self.main, controls.PATH_FIELD, path)
        self.path = path

    def press_clear(self):
        self.log("clear")
        self.click(self.main, controls.CLEAR_BUTTON)
        self.dirty = self.can_save = True

    def press_remove(self):
        self.log("remove")
        self.click(self.main, controls.REMOVE_BUTTON)

    # A new sprite.

    def new_sprite(self):
        dialog = self.open_dialog(controls.NEW_BUTTON, NEW)
        if self.chance(0.25):
            self.log("new, and cancel")
            self.close_dialog(dialog, controls.NEW_CANCEL)
            return
        name = self.random.choice(["fire", "a new one", "x.y", "Untitled"])
        width, height = (self.random.choice(["16", "32", "64", "100", "128", "33", "256", "0", "-8", "12.5", "abc"])
                         for _ in range(2))
        kind, render = self.random.randrange(5), self.random.randrange(len(RENDER_MODES))
        self.log(f"new {name} {width} {height} {kind} {render}")
        self.display.wait_until_still()
        for field, text in ((controls.NEW_NAME, name), (controls.NEW_WIDTH, width), (controls.NEW_HEIGHT, height)):
            self.fill_in(dialog, field, text)
        self.choose_line(dialog, controls.NEW_TYPE, controls.BELOW_TYPE, kind)
        self.choose_line(dialog, controls.NEW_RENDER, controls.BELOW_RENDER, render)
        self.close_dialog(dialog, controls.NEW_OK)
        self.path, self.render = name, RENDER_MODES[render]
        self.size = tuple(round(float(text)) if text != "abc" else 0 for text in (width, height))
        self.lines = self.frames = 0
        self.unnamed = self.can_import = True
        self.dirty = self.can_save = self.is_opened = self.is_foreign = False
        self.settle()
