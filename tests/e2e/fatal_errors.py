"""The intended fatal errors: each shows one message box, and the editor exits with status 70. The list is complete for
the actions of the random user: any other exit of the editor is a Finding."""
import os
import re

import controls
from answers import FATAL_BOX, Selection
from display import wait_for
from material import FATAL, FORMATS, QUIET_SPRITE, SMALL, sprite_bytes
from ui_driver import ADD, EXTRACT, FATAL_ERROR_STATUS, MAIN, NEW, OPEN_CHOOSER
from user_frames import FIRST_SPEED


def speed_0(user):
    user.open_sprite(QUIET_SPRITE)
    dialog = user.open_preview()
    user.click(dialog, controls.PLAY)
    user.click(dialog, controls.SLOWER, times=FIRST_SPEED)


def line_without_frame(user):
    user.open_sprite(QUIET_SPRITE)
    import_one(user)
    user.click_line(QUIET_SPRITE.frames)


def line_without_frame_exported(user):
    """The import leaves its last line selected, which has no frame."""
    user.open_sprite(QUIET_SPRITE)
    import_one(user)
    export(user, controls.EXTRACT_TGA)


def line_without_frame_played(user):
    user.open_sprite(QUIET_SPRITE)
    import_one(user)
    user.click(user.open_preview(), controls.PLAY)


def small_frame(user):
    open_only(user, "small.spr", sprite_bytes((16, 16), 2, header_size=(32, 32)))


def short_name(user):
    path = os.path.join(user.sprites, "abc")
    user.write_file(path, QUIET_SPRITE.data)
    user.press_open()
    # A typed name is accepted even if the filter of the chooser hides the file.
    user.choose_file(OPEN_CHOOSER, path)


def large_number(user):
    dialog = user.open_dialog(controls.NEW_BUTTON, NEW)
    user.fill_in(dialog, controls.NEW_WIDTH, "99999999999")
    user.click(dialog, controls.NEW_OK)


def huge_header(user):
    open_only(user, "wide.spr", sprite_bytes((16, 16), 2, header_size=(2000000, 2000000)))


def export_over_read_only(user, kind, point):
    user.open_sprite(QUIET_SPRITE)
    path = os.path.join(user.exported, "quiet_0." + kind)
    user.write_file(path, b"kept")
    os.chmod(path, 0o444)
    export(user, point)


def read_only_tga(user):
    export_over_read_only(user, "tga", controls.EXTRACT_TGA)


def read_only_pcx(user):
    export_over_read_only(user, "pcx", controls.EXTRACT_PCX)


def picture_gone(user):
    dialog = browse(user, SMALL, "bmp")
    path = user.pictures.path(SMALL, user.pictures.files(SMALL, "bmp")[3].name)
    os.rename(path, path + ".away")
    click_file(user, dialog, 3)


def no_picture(user):
    click_file(user, browse(user, FATAL, "bmp"), 0)
    user.expect(re.escape("File: pd0text.bmp Bad Format/Corrupt."))


def high_jpeg(user):
    click_file(user, browse(user, FATAL, "jpg"), 0)


def grey_tga(user):
    click_file(user, browse(user, FATAL, "tga"), 0)


def short_pcx(user):
    click_file(user, browse(user, FATAL, "pcx"), 0)


def text_pcx(user):
    click_file(user, browse(user, FATAL, "pcx"), 1)
    user.expect(re.escape("File: pd1text.pcx Bad Format/Corrupt."))


def open_only(user, name, data):
    path = os.path.join(user.sprites, name)
    user.write_file(path, data)
    user.press_open()
    user.choose_file(OPEN_CHOOSER, path)


def export(user, point):
    dialog = user.open_dialog(controls.EXPORT_BUTTON, EXTRACT)
    user.fill_in(dialog, controls.EXTRACT_FOLDER, user.exported)
    for click in (point, controls.EXTRACT_OVERWRITE, controls.EXTRACT_OK):
        user.click(dialog, click)


def browse(user, folder, kind):
    """Opens Add Frame/s and lists the files of a format in a folder. Returns the dialog."""
    if not user.can_import:
        user.open_sprite(QUIET_SPRITE)
    dialog = user.open_dialog(controls.IMPORT_BUTTON, ADD)
    user.go_to_folder(dialog, folder)
    user.choose_line(dialog, controls.FILTER, controls.BELOW_FILTER, FORMATS.index(kind))
    user.wait_for_lines(dialog, controls.FILES, len(user.pictures.files(folder, kind)))
    return dialog


def click_file(user, dialog, line):
    user.click_list(dialog, controls.FILES, controls.FILES[1] + 8 + line * user.line_height)


def import_one(user):
    dialog = browse(user, SMALL, "bmp")
    selection = Selection(user.pictures.files(SMALL, "bmp"), user.size)
    user.click_file(dialog, selection, 0)
    user.finish_import(dialog, selection, cancels=False)


# The action, the text of the box, and the reason for the error.
FATAL_ERRORS = (
    (speed_0, "Division by zero", "one step below a speed of 1 the interval is 1000 divided by 0"),
    (line_without_frame, "Subscript out of range", "an import keeps the old lines, which no longer have frames"),
    (line_without_frame_exported, "Subscript out of range", "export of such a line"),
    (line_without_frame_played, "Subscript out of range", "the preview plays all lines"),
    (small_frame, "Subscript out of range", "frames are drawn at the sprite's size and may have fewer pixels"),
    (short_name, "Invalid procedure call", "the Name is the file's name without its last four characters"),
    (large_number, "Overflow", "a size has 32 bits"),
    (huge_header, "Overflow", "the bytes of a picture are counted in 32 bits"),
    (read_only_tga, "Permission denied", "the old file is deleted first, and a failure to do so is not handled"),
    (read_only_pcx, "Permission denied", "the same for the other writer"),
    (picture_gone, "File not found", "a picture that was deleted after it was listed"),
    (no_picture, "Invalid picture", "the preview loads even a file that was reported as corrupt"),
    (high_jpeg, "Overflow", "a size byte of 128 or more does not fit the signed 16 bits of the sizes"),
    (grey_tga, "Subscript out of range", "8-bit TGA pictures need a colour map"),
    (short_pcx, "Subscript out of range", "fewer lines than the header says"),
    (text_pcx, "Overflow", "sizes beyond 16 bits"),
)


def check_fatal_errors(user):
    """Provokes each error in a new process of the editor."""
    for act, words, _ in FATAL_ERRORS:
        user.log(f"fatal error: {act.__name__}")
        user.begin()
        act(user)
        text = user.wait("the box of " + act.__name__, user.next_text)
        if text != FATAL_BOX + words:
            raise AssertionError(f"{act.__name__}: {text}")
        user.display.wait_for_window(MAIN, but=[user.main])
        user.display.press("Return")
        wait_for("the editor to exit", lambda: user.editor.poll() is not None)
        user.wait_for_exit(FATAL_ERROR_STATUS)
        user.messages[text] += 1
        user.actions["fatal error"] += 1
