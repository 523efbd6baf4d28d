"""Operates the windows of the built editor on a virtual display: the positions of the controls, and the actions of a
user. Subclasses of UiDriver set `display`; `start` sets `editor` and `main`."""
import os
import time

from display import POLL_INTERVAL, wait_for

MAIN, NEW, ADD, EXTRACT, PREVIEW = "Varnoth 1.0", "New Sprite", "Add Frame/s", "Extract Frame/s", "Animation Preview"
FOLDER = "Select Extracting Folder:"
OPEN_CHOOSER, SAVE_CHOOSER = "Open", "Save As"
FATAL_ERROR_STATUS = 70
FATAL_ERROR_LINE = r"varnoth: run-time error: \w+, at src/[^ :]+:\d+ in .+\n?"  # the place, on standard error

# Centres of the controls that are clicked, in pixels of their window.
CLOSE_MAIN, CLOSE_PREVIEW = (558, 17), (264, 17)
PATH_FIELD, OPEN_BUTTON, NEW_BUTTON, SAVE_BUTTON = (196, 53), (413, 53), (473, 53), (533, 53)
CLEAR_BUTTON, EXPORT_BUTTON, REMOVE_BUTTON, IMPORT_BUTTON = (41, 453), (111, 453), (172, 453), (233, 453)
UP_ARROW, DOWN_ARROW = (274, 247), (274, 271)
NEW_NAME, NEW_WIDTH, NEW_HEIGHT, NEW_TYPE, NEW_RENDER = (142, 45), (95, 73), (189, 73), (142, 101), (142, 129)
NEW_OK, NEW_CANCEL = (140, 167), (200, 167)
FILTER, ADD_SET, ADD_RESIZE, ADD_PICK, ADD_OK, ADD_CANCEL = ((353, 51), (540, 388), (540, 409), (707, 442), (657, 484),
                                                             (717, 484))
EXTRACT_FOLDER, EXTRACT_BROWSE, EXTRACT_COMPRESSED = (113, 67), (252, 67), (203, 136)
EXTRACT_BMP, EXTRACT_TGA, EXTRACT_PCX = (37, 115), (37, 136), (37, 157)
EXTRACT_SKIP, EXTRACT_ASK, EXTRACT_OVERWRITE = (37, 206), (123, 206), (227, 206)
EXTRACT_OK, EXTRACT_CANCEL = (192, 241), (252, 241)
FOLDER_OK, FOLDER_CANCEL = (129, 306), (189, 306)
STOP, PLAY, FASTER, SLOWER = (23, 310), (47, 310), (195, 310), (171, 310)
PROGRESS_CANCEL = (316, 91)

# Areas that are captured: left, top, width, height in pixels of their window.
BELOW_TYPE, BELOW_RENDER, BELOW_FILTER = (62, 114, 50, 30), (62, 142, 50, 30), (250, 64, 50, 30)
FRAME_LIST = (16, 84, 241, 349)
FRAME = (302, 81, 32, 32)
FOLDERS, FILES = (16, 68, 216, 391), (242, 68, 223, 391)
PICTURE = (483, 41, 64, 64)
SIZE_QUESTION = (488, 358, 247, 61)
TRANSPARENT_COLOUR = (624, 434, 34, 18)
PLAYED, SPEED = (13, 37, 32, 32), (213, 300, 56, 20)

# Top left corner of the title in its window.
TITLE = (30, 9)

# No line of a list is lower.
MIN_LINE_HEIGHT = 12

# The frame list shows at least this many lines without scrolling.
VISIBLE_LINES = 20


def is_text(colour):
    return min(colour) > 100


def is_closed_folder(colour):
    return colour == (136, 145, 128)


def is_highlight(colour):
    return colour == (196, 181, 80)


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

    def open(self, path, frames):
        self.click(self.main, OPEN_BUTTON)
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
        bands = self.capture(self.main, FRAME_LIST).bands(is_text)
        return len(bands) == frames - 1 and bands[0][0] > MIN_LINE_HEIGHT

    def wait_for_lines(self, window, place, count, kind=is_text):
        """The vertical centres of the lines of a list, in pixels of its window."""
        bands = wait_for(f"{count} lines in a list", lambda: self.bands_if(window, place, count, kind))
        return [place[1] + (begin + end) // 2 for begin, end in bands]

    def bands_if(self, window, place, count, kind):
        bands = self.capture(window, place).bands(kind)
        return bands if len(bands) == count else None
