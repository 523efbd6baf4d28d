"""Where the editor's controls are. All places come from the layout reference, which the golden images compare with the
real windows. A point is the centre of a control, a place is left, top, width and height, both in pixels of the
window."""
import os
import sys

sys.path.append(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "golden"))
import layout_reference  # noqa: E402

MAIN_WINDOW, NEW_SPRITE = layout_reference.main_window(layout_reference.BLACK), layout_reference.new_sprite()
ADD_FRAMES = layout_reference.add_frames((layout_reference.BLACK, 256, 256))
EXTRACT_FRAMES, FOLDER_DIALOG = layout_reference.extract_frames(compression=True), layout_reference.folder()
ANIMATION_PREVIEW = layout_reference.preview(layout_reference.BLACK, playing=False)


def place_of(window, name):
    """The place of a control."""
    def find(controls, left, top):
        for one in controls:
            x, y, width, height = one.place
            if one.name == name:
                return left + x, top + y, width, height
            found = find(one.parts, left + x, top + y)
            if found:
                return found
        return None

    return find(window.controls, 0, 0)


def inside(window, name, edge=1):
    """The place of a control without its edge."""
    left, top, width, height = place_of(window, name)
    return left + edge, top + edge, width - 2 * edge, height - 2 * edge


def centres(window, *names):
    return [(left + width // 2, top + height // 2) for left, top, width, height in
            (place_of(window, name) for name in names)]


def corner_of(window, name, side):
    """A square in the top left corner of a control."""
    return (*place_of(window, name)[:2], side, side)


def below(window, name):
    """A part of the list that a drop-down list opens."""
    left, top, _, height = place_of(window, name)
    return left + 7, top + height + 3, 50, 30


def close_box(window):
    return window.size[0] - 17, 17


# The top left corner of the title in its window.
TITLE = (30, 9)

CLOSE_MAIN, CLOSE_PREVIEW = close_box(MAIN_WINDOW), close_box(ANIMATION_PREVIEW)
PATH_FIELD, OPEN_BUTTON, NEW_BUTTON, SAVE_BUTTON = centres(MAIN_WINDOW, "eltexto1", "elboton1", "elboton2", "elboton3")
IMPORT_BUTTON, REMOVE_BUTTON, EXPORT_BUTTON, CLEAR_BUTTON = centres(MAIN_WINDOW, "elboton4", "elboton5", "elboton6",
                                                                    "elboton7")
UP_ARROW, DOWN_ARROW = centres(MAIN_WINDOW, "Label1", "Label2")
ALL_OF_MAIN, PATH = (0, 0, *MAIN_WINDOW.size), inside(MAIN_WINDOW, "eltexto1")
FRAME_LIST, FRAME = inside(MAIN_WINDOW, "List1", 3), corner_of(MAIN_WINDOW, "Picture1", 32)

NEW_NAME, NEW_WIDTH, NEW_HEIGHT = centres(NEW_SPRITE, "eltexto1", "eltexto2", "eltexto3")
NEW_TYPE, NEW_RENDER, NEW_OK, NEW_CANCEL = centres(NEW_SPRITE, "elcombo1", "elcombo2", "elboton2", "elboton1")
NEW_TEXTS = [inside(NEW_SPRITE, name) for name in ("eltexto1", "eltexto2", "eltexto3")]
BELOW_TYPE, BELOW_RENDER = below(NEW_SPRITE, "elcombo1"), below(NEW_SPRITE, "elcombo2")

FILTER, ADD_SET, ADD_RESIZE = centres(ADD_FRAMES, "Combo1", "elradio1(0)", "elradio1(1)")
ADD_PICK, ADD_OK, ADD_CANCEL = centres(ADD_FRAMES, "elboton1", "elboton2", "elboton3")
FOLDERS, FILES = inside(ADD_FRAMES, "Dir1", 3), inside(ADD_FRAMES, "File1", 3)
BELOW_FILTER, PICK = below(ADD_FRAMES, "Combo1"), inside(ADD_FRAMES, "elboton1")
PICTURE, TRANSPARENT_COLOUR = corner_of(ADD_FRAMES, "Picture1", 64), inside(ADD_FRAMES, "Picture2", 2)
SIZE_QUESTION = (*place_of(ADD_FRAMES, "ellabel6")[:2], 247, 61)

EXTRACT_FOLDER, EXTRACT_BROWSE, EXTRACT_COMPRESSED = centres(EXTRACT_FRAMES, "eltexto1", "elboton1", "elcheck1")
EXTRACT_BMP, EXTRACT_TGA, EXTRACT_PCX = centres(EXTRACT_FRAMES, "elradio1(0)", "elradio1(1)", "elradio1(2)")
EXTRACT_SKIP, EXTRACT_ASK, EXTRACT_OVERWRITE = centres(EXTRACT_FRAMES, "elradio3(0)", "elradio3(1)", "elradio3(2)")
EXTRACT_CHOICES = (EXTRACT_BMP, EXTRACT_TGA, EXTRACT_PCX, EXTRACT_COMPRESSED, EXTRACT_SKIP, EXTRACT_ASK,
                   EXTRACT_OVERWRITE)
EXTRACT_OK, EXTRACT_CANCEL = centres(EXTRACT_FRAMES, "elboton2", "elboton3")
OUTPUT_FOLDER, DEPTH = inside(EXTRACT_FRAMES, "eltexto1"), place_of(EXTRACT_FRAMES, "elframe2")
EXISTING_FILES = (*place_of(EXTRACT_FRAMES, "elradio3(0)")[:2], 273, 19)

FOLDER_LIST = inside(FOLDER_DIALOG, "Dir1", 2)
FOLDER_OK, FOLDER_CANCEL = centres(FOLDER_DIALOG, "elboton1", "elboton2")

STOP, PLAY, FASTER, SLOWER = centres(ANIMATION_PREVIEW, "Label1", "Label2", "Label3", "Label4")
PLAYED, SPEED = corner_of(ANIMATION_PREVIEW, "Picture1", 32), place_of(ANIMATION_PREVIEW, "Label5")

PROGRESS_CANCEL, = centres(layout_reference.job(), "elboton1")
