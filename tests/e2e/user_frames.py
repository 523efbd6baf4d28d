"""Random actions with the frames of a sprite: show, reorder, play, export."""
import os
import time

from answers import OVERWRITE
from display import wait_for
from ui_driver import (CLOSE_PREVIEW, DOWN_ARROW, EXPORT_BUTTON, EXTRACT, EXTRACT_ASK, EXTRACT_BMP, EXTRACT_BROWSE,
                       EXTRACT_CANCEL, EXTRACT_COMPRESSED, EXTRACT_FOLDER, EXTRACT_OK, EXTRACT_OVERWRITE, EXTRACT_PCX,
                       EXTRACT_SKIP, EXTRACT_TGA, FASTER, FOLDER, FOLDER_CANCEL, FOLDER_OK, FRAME, FRAME_LIST, PLAY,
                       PREVIEW, SLOWER, STOP, UP_ARROW, VISIBLE_LINES)
from watched_user import WatchedUser

FIRST_SPEED, HIGHEST_SPEED = 15, 60


class FrameUser(WatchedUser):
    def visible_lines(self):
        return min(self.frames, VISIBLE_LINES)

    def click_line(self, line, key=None):
        """Clicks one of the visible lines; the list must be scrolled to its top."""
        self.click(self.main, (FRAME_LIST[0] + 100, FRAME_LIST[1] + 8 + line * self.line_height), key=key)

    def go_to_top(self):
        """Scrolls the list to its top. Lists that scroll have a frame for every line."""
        self.click_line(0)
        self.display.press("Home")

    def click_frames(self):
        self.log("click frames")
        self.go_to_top()
        for _ in range(self.random.randrange(1, 6)):
            line = self.random.randrange(self.visible_lines())
            self.click_line(line, self.random.choice([None, None, "ctrl", "shift"]))
        if self.lines == self.frames:
            self.display.press(*self.random.choices(["Down", "Up", "Page_Down", "Page_Up", "End", "Home"], k=4))
        self.settle()

    def reorder(self):
        self.go_to_top()
        line = self.random.randrange(self.visible_lines())
        self.click_line(line)
        if self.frames > 1 and self.chance(0.2):
            other = self.random.choice([one for one in range(self.visible_lines()) if one != line])
            self.log(f"an arrow with {line} and {other} selected")
            self.click_line(other, "ctrl")
            self.click(self.main, UP_ARROW if other else DOWN_ARROW)
            self.expect("Select Only 1")
            return
        for _ in range(self.random.randrange(1, 8)):
            step = self.random.choice([-1, 1])
            if line + step >= self.frames and self.lines > self.frames:
                continue
            self.log(f"move {line} by {step}")
            self.click(self.main, UP_ARROW if step < 0 else DOWN_ARROW)
            if 0 <= line + step < self.frames:
                line += step
                self.dirty = self.can_save = self.is_reordered = True
        self.settle()

    def preview(self):
        self.log("preview")
        dialog = self.open_preview()
        speed, plays = FIRST_SPEED, self.lines == self.frames
        for _ in range(self.random.randrange(1, 7)):
            step = self.random.choice(["play", "stop", "faster", "slower", "look"])
            if step == "play" and plays:
                self.click(dialog, PLAY)
            elif step == "stop":
                self.click(dialog, STOP)
            elif step == "faster":
                times = self.random.randrange(1, 50)
                self.click(dialog, FASTER, times=times)
                speed = min(HIGHEST_SPEED, speed + times)
            elif step == "slower" and speed > 1:
                times = self.random.randrange(1, speed)
                self.click(dialog, SLOWER, times=times)
                speed -= times
            elif step == "look":
                time.sleep(self.random.random())
        self.log(f"    at {speed} fps")
        self.click(dialog, CLOSE_PREVIEW)
        self.display.wait_until_gone(dialog)

    def open_preview(self):
        """Double-clicks the corner of the picture, because the frame may be smaller than the sprite. Returns the
        dialog."""
        self.double_click(self.main, FRAME[:2], lambda: self.display.windows(PREVIEW))
        return self.display.wait_for_window(PREVIEW)

    def preview_nothing(self):
        self.log("a double click without a frame")
        self.click(self.main, FRAME[:2], times=2)
        self.settle()

    # Export.

    def export(self):
        self.log("export")
        self.go_to_top()
        if self.lines == self.frames and self.chance(0.5):
            self.display.press("ctrl+a")
        elif self.chance(0.8):
            self.click_line(self.random.randrange(self.visible_lines()), self.random.choice(["shift", "ctrl"]))
        self.click(self.main, EXPORT_BUTTON)
        dialog = self.display.wait_for_window(EXTRACT)
        self.display.wait_until_still()
        for point in self.random.choices([EXTRACT_BMP, EXTRACT_TGA, EXTRACT_PCX, EXTRACT_COMPRESSED, EXTRACT_SKIP,
                                        EXTRACT_ASK, EXTRACT_OVERWRITE], k=6):
            self.click(dialog, point)
        if self.chance(0.2):
            self.refuse_folder(dialog)
        if self.chance(0.2):
            self.log("    browse")
            self.click(dialog, EXTRACT_BROWSE)
            self.leave_folders(dialog)
        if self.chance(0.15):
            self.log("    cancel")
            self.click(dialog, EXTRACT_CANCEL)
            self.display.wait_until_gone(dialog)
            return
        self.fill_in(dialog, EXTRACT_FOLDER, self.exported)
        self.click(dialog, EXTRACT_OK)
        self.follow(dialog, EXTRACT, [OVERWRITE], self.chance(0.1))

    def refuse_folder(self, dialog):
        """Enters no folder or a missing one; the folder dialog then opens automatically."""
        empty = self.chance(0.5)
        self.fill_in(dialog, EXTRACT_FOLDER, "" if empty else os.path.join(self.exported, "nowhere"))
        if empty:
            self.display.press("BackSpace")
        self.log(f"    to {'no' if empty else 'a missing'} folder")
        self.click(dialog, EXTRACT_OK)
        self.expect("Select Output Folder First." if empty else "Output Folder Doesnt Exist.")
        self.leave_folders(dialog)

    def leave_folders(self, dialog):
        folders = self.display.wait_for_window(FOLDER)
        self.click(folders, self.random.choice([FOLDER_OK, FOLDER_CANCEL]))
        self.display.wait_until_gone(folders)
        wait_for("the dialog behind", lambda: self.display.is_active(dialog))

    def cancel_export(self):
        self.log("export, and cancel")
        self.click(self.main, EXPORT_BUTTON)
        dialog = self.display.wait_for_window(EXTRACT)
        self.click(dialog, EXTRACT_CANCEL)
        self.display.wait_until_gone(dialog)
