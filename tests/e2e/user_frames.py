"""What a random user does with the frames of a sprite: looks at them, reorders them, plays them, takes them apart."""
import os
import time

from answers import OVERWRITE
from display import wait_for
from hand import (CLOSE_PREVIEW, DOWN_ARROW, EXPORT_BUTTON, EXTRACT, EXTRACT_ASK, EXTRACT_BMP, EXTRACT_BROWSE,
                  EXTRACT_CANCEL, EXTRACT_COMPRESSED, EXTRACT_FOLDER, EXTRACT_OK, EXTRACT_OVERWRITE, EXTRACT_PCX,
                  EXTRACT_SKIP, EXTRACT_TGA, FASTER, FOLDER, FOLDER_CANCEL, FOLDER_OK, FRAME, FRAME_LIST, PLAY,
                  PREVIEW, SLOWER, STOP, UP_ARROW, VISIBLE_LINES)
from watched_user import WatchedUser

FIRST_SPEED, HIGHEST_SPEED = 15, 60


class FrameUser(WatchedUser):
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
