"""A user who performs random actions and knows which messages the editor must show. Any other behaviour is a
Finding."""
import time

import controls
from answers import Finding, Selection
from material import FORMATS, MEDIUM, QUIET_SPRITE
from ui_driver import ADD
from user_files import FileUser
from user_frames import FrameUser
from user_imports import ImportUser


class RandomUser(FileUser, FrameUser, ImportUser):
    # Windows.

    def drag(self):
        """Drags the main window around and back. Its corner follows the pointer, less a fifteenth of the grab."""
        self.log("drag")
        corner = left, top, _, _ = self.display.place_of(self.main)
        grab = (105, 15)
        path = [(left + self.random.randrange(-150, 150), top + self.random.randrange(-150, 150)) for _ in range(4)]
        path.append((left + grab[0] // 15, top + grab[1] // 15))
        self.display.point(left + controls.TITLE[0] + grab[0], top + controls.TITLE[1] + grab[1])
        self.display.xdotool("mousedown", 1)
        for point in path:
            self.display.point(*point)
        self.display.xdotool("mouseup", 1)
        self.wait("the window at its first position", lambda: self.display.place_of(self.main) == corner)

    def wander(self):
        """Moves the pointer across the window, sometimes rests until a tool tip opens, and turns the wheel."""
        self.log("wander")
        left, top, width, height = self.display.place_of(self.main)
        for _ in range(10):
            self.display.point(left + self.random.randrange(width), top + self.random.randrange(height))
        if self.chance(0.3):
            self.display.point(left + controls.FRAME[0] + 3, top + controls.FRAME[1] + 3)
            time.sleep(1)
        self.display.point(left + controls.FRAME_LIST[0] + 50, top + controls.FRAME_LIST[1] + 50)
        self.display.xdotool("click", "--repeat", 5, "--delay", 10, self.random.choice([4, 5]))
        self.settle()

    # Choice of actions.

    def choices(self, good, bad):
        """The actions that are possible now, with their weights, except fatal ones."""
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
        self.open_sprite(self.random.choice(sprites))

    def act(self, good, bad):
        found = self.choices(good, bad)
        _, action, *arguments = self.random.choices(found, [weight for weight, *_ in found])[0]
        begin = time.monotonic()
        action(*arguments)
        self.expect_nothing()
        windows = self.display.windows()
        if windows != {self.main}:
            raise Finding(f"{len(windows) - 1} windows besides the main one")
        self.actions[action.__name__] += 1
        self.slowest = max(self.slowest, (time.monotonic() - begin, action.__name__))

    def measure_lines(self):
        """Measures the height of a line in the frame list."""
        self.open_sprite(QUIET_SPRITE)
        middles = self.wait_for_lines(self.main, controls.FRAME_LIST, QUIET_SPRITE.frames - 1)
        self.line_height = middles[1] - middles[0]

    def return_to_idle(self):
        """Always reaches the same state: the same sprite, no dialog, no control under the pointer, and the same
        pictures imported and decoded last, because the editor keeps their data."""
        self.log("idle")
        self.open_sprite(QUIET_SPRITE)
        dialog = self.open_dialog(controls.IMPORT_BUTTON, ADD)
        selection = Selection(self.pictures.files(MEDIUM, "tga"), self.size)
        self.go_to_folder(dialog, MEDIUM)
        self.choose_line(dialog, controls.FILTER, controls.BELOW_FILTER, FORMATS.index("tga"))
        self.wait_for_lines(dialog, controls.FILES, len(selection.pictures))
        self.click_file(dialog, selection, 0)
        self.finish_import(dialog, selection, cancels=False)
        self.open_sprite(QUIET_SPRITE)
        # The witness library writes the memory once a second.
        time.sleep(2)
        self.settle()
