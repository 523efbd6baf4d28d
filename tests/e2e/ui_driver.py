"""Operates the windows of the built editor on a virtual display as a user does. Subclasses of UiDriver set `display`;
`start` sets `editor` and `main`."""
import os
import time

import controls
from controls import layout_reference
from display import POLL_INTERVAL, wait_for

MAIN, NEW, ADD, EXTRACT, PREVIEW = "Varnoth 1.0", "New Sprite", "Add Frame/s", "Extract Frame/s", "Animation Preview"
FOLDER = "Select Extracting Folder:"
OPEN_CHOOSER, SAVE_CHOOSER = "Open", "Save As"
FATAL_ERROR_STATUS = 70
FATAL_ERROR_LINE = r"varnoth: run-time error: \w+, at src/[^ :]+:\d+ in .+\n?"  # the place, on standard error

# No line of a list is lower.
MIN_LINE_HEIGHT = 12

# The frame list shows at least this many lines without scrolling.
VISIBLE_LINES = 20


def is_text(colour):
    return min(colour) > 100


def is_closed_folder(colour):
    return colour == layout_reference.GLYPH


def is_highlight(colour):
    return colour == layout_reference.HIGHLIGHT


class UiDriver:
    def start(self, program, *arguments, **more):
        """Starts the editor with arguments and additional environment variables."""
        self.errors = os.path.join(self.display.folder, "errors")
        with open(self.errors, "wb") as errors:
            self.editor = self.display.start([program, *arguments], more={"QT_QPA_PLATFORM": "xcb", **more},
                                             cwd=self.display.home, stdout=errors, stderr=errors)
        self.main = self.display.wait_for_window(MAIN)

    # Actions.

    def click(self, window, point, **options):
        left, top, _, _ = self.display.place_of(window)
        self.display.click(left + point[0], top + point[1], **options)

    def click_list(self, window, place, height, **options):
        """Clicks a line of a list, at a height in its window."""
        self.click(window, (place[0] + 100, height), **options)

    def open_dialog(self, button, title):
        """Clicks a button of the main window. Returns the dialog that it opens, as soon as it is painted."""
        self.click(self.main, button)
        dialog = self.display.wait_for_window(title)
        self.display.wait_until_still()
        return dialog

    def close_dialog(self, dialog, button):
        self.click(dialog, button)
        self.display.wait_until_gone(dialog)

    def fill_in(self, window, field, text):
        """Replaces the text of a field. The window manager may deliver keys before a click, so wait until the old text
        is selected."""
        self.click(window, field)
        self.display.type("p")
        place = (0, field[1] - 8, self.display.place_of(window)[2], 16)
        for _ in range(2):
            self.display.press("ctrl+a")
            wait_for("a selected text", lambda: self.capture(window, place).bands(is_highlight))
            time.sleep(5 * POLL_INTERVAL)
        self.display.type(text)

    def answer_box(self):
        box = self.display.wait_for_window(MAIN, but=[self.main])
        self.display.press("Return")
        self.display.wait_until_gone(box)

    def choose_file(self, title, path):
        chooser = self.display.wait_for_window(title)
        self.display.type(path)
        self.display.press("Return")
        self.display.wait_until_gone(chooser)

    def press_open(self):
        self.click(self.main, controls.OPEN_BUTTON)

    def open(self, path, frames):
        self.press_open()
        self.choose_file(OPEN_CHOOSER, path)
        # The chooser closes before the file is read; the window below it is repainted only afterwards.
        wait_for("the frames of the opened sprite", lambda: self.shows_first_of(frames))
        self.display.wait_until_still()

    # Observations.

    def capture(self, window, place):
        left, top, _, _ = self.display.place_of(window)
        return self.display.capture(left + place[0], top + place[1], *place[2:])

    def wait_for_change(self, window, place, before):
        wait_for(f"a change at {place}", lambda: self.capture(window, place) != before)

    def shows_first_of(self, frames):
        """Whether the frame list has this many lines and the first is selected, which is shown by its dark text."""
        bands = self.capture(self.main, controls.FRAME_LIST).bands(is_text)
        return len(bands) == frames - 1 and bands[0][0] > MIN_LINE_HEIGHT

    def wait_for_lines(self, window, place, count, kind=is_text):
        """The vertical centres of the lines of a list, in pixels of its window."""
        bands = wait_for(f"{count} lines in a list", lambda: self.bands_if(window, place, count, kind))
        return [place[1] + (begin + end) // 2 for begin, end in bands]

    def bands_if(self, window, place, count, kind):
        bands = self.capture(window, place).bands(kind)
        return bands if len(bands) == count else None
