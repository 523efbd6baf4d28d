"""Random actions with the frames of a sprite: show, reorder, play, export."""
import os
import time

import controls
from answers import OVERWRITE
from display import wait_for
from ui_driver import EXTRACT, FOLDER, PREVIEW, VISIBLE_LINES
from watched_user import WatchedUser

FIRST_SPEED, HIGHEST_SPEED = 15, 60


class FrameUser(WatchedUser):
    def visible_lines(self):
        return min(self.frames, VISIBLE_LINES)

    def click_line(self, line, key=None):
        """Clicks one of the visible lines; the list must be scrolled to its top."""
        self.click_list(self.main, controls.FRAME_LIST, controls.FRAME_LIST[1] + 8 + line * self.line_height, key=key)

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
            self.click(self.main, controls.UP_ARROW if other else controls.DOWN_ARROW)
            self.expect("Select Only 1")
            return
        for _ in range(self.random.randrange(1, 8)):
            step = self.random.choice([-1, 1])
            if line + step >= self.frames and self.lines > self.frames:
                continue
            self.log(f"move {line} by {step}")
            self.click(self.main, controls.UP_ARROW if step < 0 else controls.DOWN_ARROW)
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
                self.click(dialog, controls.PLAY)
            elif step == "stop":
                self.click(dialog, controls.STOP)
            elif step == "faster":
                times = self.random.randrange(1, 50)
                self.click(dialog, controls.FASTER, times=times)
                speed = min(HIGHEST_SPEED, speed + times)
            elif step == "slower" and speed > 1:
                times = self.random.randrange(1, speed)
                self.click(dialog, controls.SLOWER, times=times)
                speed -= times
            elif step == "look":
                time.sleep(self.random.random())
        self.log(f"    at {speed} fps")
        self.close_dialog(dialog, controls.CLOSE_PREVIEW)

    def open_preview(self):
        """Double-clicks the corner of the picture, because the frame may be smaller than the sprite. Returns the
        dialog."""
        self.double_click(self.main, controls.FRAME[:2], lambda: self.display.windows(PREVIEW))
        return self.display.wait_for_window(PREVIEW)

    def preview_nothing(self):
        self.log("a double click without a frame")
        self.click(self.main, controls.FRAME[:2], times=2)
        self.settle()

    # Export.

    def export(self):
        self.log("export")
        self.go_to_top()
        if self.lines == self.frames and self.chance(0.5):
            self.display.press("ctrl+a")
        elif self.chance(0.8):
            self.click_line(self.random.randrange(self.visible_lines()), self.random.choice(["shift", "ctrl"]))
        dialog = self.open_dialog(controls.EXPORT_BUTTON, EXTRACT)
        for point in self.random.choices(controls.EXTRACT_CHOICES, k=6):
            self.click(dialog, point)
        if self.chance(0.2):
            self.refuse_folder(dialog)
        if self.chance(0.2):
            self.log("    browse")
            self.click(dialog, controls.EXTRACT_BROWSE)
            self.leave_folders(dialog)
        if self.chance(0.15):
            self.log("    cancel")
            self.close_dialog(dialog, controls.EXTRACT_CANCEL)
            return
        self.fill_in(dialog, controls.EXTRACT_FOLDER, self.exported)
        self.click(dialog, controls.EXTRACT_OK)
        self.follow(dialog, EXTRACT, [OVERWRITE], self.chance(0.1))

    def refuse_folder(self, dialog):
        """Enters no folder or a missing one; the folder dialog then opens automatically."""
        empty = self.chance(0.5)
        self.fill_in(dialog, controls.EXTRACT_FOLDER, "" if empty else os.path.join(self.exported, "nowhere"))
        if empty:
            self.display.press("BackSpace")
        self.log(f"    to {'no' if empty else 'a missing'} folder")
        self.click(dialog, controls.EXTRACT_OK)
        self.expect("Select Output Folder First." if empty else "Output Folder Doesnt Exist.")
        self.leave_folders(dialog)

    def leave_folders(self, dialog):
        folders = self.display.wait_for_window(FOLDER)
        self.close_dialog(folders, self.random.choice([controls.FOLDER_OK, controls.FOLDER_CANCEL]))
        wait_for("the dialog behind", lambda: self.display.is_active(dialog))

    def cancel_export(self):
        self.log("export, and cancel")
        dialog = self.open_dialog(controls.EXPORT_BUTTON, EXTRACT)
        self.close_dialog(dialog, controls.EXTRACT_CANCEL)
