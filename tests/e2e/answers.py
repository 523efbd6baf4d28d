"""The messages that the editor may show, and a model of the selection in the Add Frame/s dialog that predicts them. Any
other behaviour is a Finding."""
import re

from material import UNKNOWN_LOADING

# Every message, by its name in the summary, and the pattern of its full text; None where the two are equal.
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
# The keys that answer a question.
YES, NO = "Return", "Escape"


class Finding(AssertionError):
    pass


def message_of(text):
    """The name of the message with this text; None if there is no such message."""
    for name, pattern in MESSAGES.items():
        if text == name or (pattern and re.fullmatch(pattern, text)):
            return name
    return None


class Selection:
    """A model of the Add Frame/s dialog: which pictures are selected and which message a click causes."""

    def __init__(self, pictures, sprite_size):
        self.pictures, self.sprite_size = pictures, sprite_size
        self.selected = set()
        self.asks_for_size, self.size_choice, self.sets_sprite = False, None, True
        self.shown = None

    def list_again(self, pictures):
        self.pictures, self.selected = pictures, set()

    def click(self, line, keys=None, anchor=None):
        """Selects as the list does and validates the selection. Returns the message, or None."""
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
        """Returns the message of the first invalid picture, which is deselected, or None."""
        first = None
        for line in sorted(self.selected):
            picture = self.pictures[line]
            if picture.header_size is None:
                return self.reject(line, f"File: {picture.name} Bad Format/Corrupt.")
            if max(picture.header_size) > LARGEST_SIDE:
                return self.reject(line, f"File: {picture.name} With Size Greater Than 256 x 256.")
            if first is None:
                first = picture.header_size
                if first != self.sprite_size:
                    self.asks_for_size, self.size_choice = True, first
            elif picture.header_size != first:
                return self.reject(line, "All Selected Pictures Must Have Same Size.")
        return None

    def reject(self, line, message):
        self.selected.discard(line)
        self.asks_for_size = False
        return message

    def sizes(self):
        """The sizes of the sprite and of its frames after Ok."""
        if self.asks_for_size and not self.sets_sprite:
            return self.sprite_size, self.sprite_size
        return (self.size_choice if self.asks_for_size else self.sprite_size), self.shown

    def makes_drawable_frames(self):
        """Whether the frames can be drawn: one with fewer pixels than its sprite causes a fatal error."""
        sprite, frame = self.sizes()
        return frame is not None and frame[0] * frame[1] >= sprite[0] * sprite[1] and min(sprite) >= 1
