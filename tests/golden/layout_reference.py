"""The layout reference: position, size and colours of every control of every window. It is written by hand,
independently of the code; golden_test.py draws it and compares it with pictures of the real windows.

A place is left, top, width and height in pixels, relative to the parent. Places inside chosen() are our own choice and
may be changed, together with the code. All others are fixed and must not change."""
from collections import namedtuple

# Some sizes are defined in units; a pixel has 15.
UNITS = 15
BUTTON_HEIGHT = PROGRESS_HEIGHT = 360 // UNITS
FIELD_HEIGHT = COMBO_HEIGHT = LABEL_HEIGHT = 300 // UNITS
RADIO_HEIGHT = 285 // UNITS
CHECK_HEIGHT = 270 // UNITS
BUTTON_WIDTH = 56

# Red, green, blue.
GROUND = (76, 88, 68)  # windows and buttons
FIELD = (62, 70, 55)  # sunken areas
TEXT = (216, 222, 211)
WHITE = (255, 255, 255)
BLACK = (0, 0, 0)
GREY = (128, 128, 128)  # disabled text
LIGHT = (160, 170, 149)  # lit edge
DARK = (40, 46, 34)  # shaded edge
HIGHLIGHT = (196, 181, 80)  # checked, armed, active
GLYPH = (136, 145, 128)  # cross of the close box, two edges of a check box

Control = namedtuple("Control", "kind name place style parts chosen")
Window = namedtuple("Window", "size title close_box controls")


def control(kind, name, place, parts=(), **style):
    return Control(kind, name, place, style, list(parts), False)


def chosen(one):
    return one._replace(chosen=True)


def button(name, left, top, text=WHITE):
    return control("button", name, (left, top, BUTTON_WIDTH, BUTTON_HEIGHT), text=text)


def label(name, left, top, width, text=TEXT, ground=FIELD, words=True):
    """Without words, only the background is drawn."""
    return control("label", name, (left, top, width, LABEL_HEIGHT), text=text, ground=ground, words=words)


def field(name, left, top, width, words=True):
    return control("field", name, (left, top, width, FIELD_HEIGHT), words=words)


def combo(name, left, top, width, thin=False):
    """A thin text may have no pixel in its full colour."""
    return control("combo", name, (left, top, width, COMBO_HEIGHT), thin=thin)


def check(name, left, top, width, on, ground):
    return control("check", name, (left, top, width, CHECK_HEIGHT), on=on, ground=ground)


def radio(name, left, top, width, on, ground, text=None):
    return control("radio", name, (left, top, width, RADIO_HEIGHT), on=on, ground=ground,
                   text=text or (HIGHLIGHT if on else TEXT))


def progress(name, left, top, width):
    return control("progress", name, (left, top, width, PROGRESS_HEIGHT))


def frame(name, left, top, width, height, parts):
    return control("frame", name, (left, top, width, height), parts)


def lines(name, left, top, width, height):
    """A list, with sunken edges like a field."""
    return control("lines", name, (left, top, width, height))


def symbol(name, left, top, side, colour, ground):
    return control("symbol", name, (left, top, side, side), colour=colour, ground=ground)


def speed(name, left, top, width, height):
    return control("speed", name, (left, top, width, height), text=TEXT, ground=GROUND)


def picture(name, left, top, width, height, colour):
    """A picture of one colour, or of any colours if None."""
    return control("picture", name, (left, top, width, height), colour=colour)


def main_window(sprite=None):
    """As at the start, or with a sprite of one colour."""
    opened = sprite is not None
    able = WHITE if opened else GREY
    caption = TEXT if opened else GREY
    rows = [10, 31, 52, 73, 94]
    captions = [label(f"ellabel{n}", 10, top, 45, caption) for n, top in zip((1, 2, 3, 4, 5), rows)]
    values = [label(f"ellabel{n}", 55, top, 211, words=opened) for n, top in zip((8, 7, 6, 9, 10), rows)]
    return Window((575, 477), "Varnoth 1.0", True, [
        frame("elframe1", 7, 35, 561, 36, [
            field("eltexto1", 8, 8, 363, words=opened),
            button("elboton1", 378, 6),
            button("elboton2", 438, 6),
            button("elboton3", 498, 6, GREY)]),
        frame("elframe2", 7, 75, 282, 396, [
            lines("List1", 6, 6, 247, 355),
            chosen(symbol("Label1", 258, 163, 18, TEXT, FIELD)),  # except the corner, which is fixed
            chosen(symbol("Label2", 258, 187, 18, TEXT, FIELD)),
            button("elboton7", 6, 366, able),
            button("elboton6", 76, 366, able),
            button("elboton5", 137, 366, able),
            button("elboton4", 198, 366, able)]),
        frame("elframe3", 294, 75, 273, 269, [
            chosen(frame("elframe5", 7, 5, 258, 258, [  # except its size, which is fixed
                picture("Picture1", 1, 1, 256, 256, sprite or FIELD)]))]),
        frame("elframe4", 294, 349, 273, 122, captions + values)])


def new_sprite():
    captions = [chosen(label(f"ellabel1({n})", 7, top, 48, ground=GROUND)) for n, top in
                enumerate((35, 63, 91, 119))]
    return Window((235, 186), "New Sprite", False, captions + [chosen(one) for one in (
        field("eltexto1", 55, 35, 173),
        field("eltexto2", 55, 63, 79),
        label("ellabel1(4)", 138, 63, 8, ground=GROUND),
        field("eltexto3", 149, 63, 79),
        combo("elcombo1", 55, 91, 173),
        combo("elcombo2", 55, 119, 173),
        button("elboton2", 112, 155),
        button("elboton1", 172, 155))])


def extract_frames(compression):
    """With the choice of the compression, or, as at the start, with that of the depth."""
    formats = [chosen(radio(f"elradio1({n})", 7, 106 + 21 * n, 100, n == (1 if compression else 0), GROUND))
               for n in range(3)]
    choices = [chosen(radio(f"elradio3({n})", left, 197, width, n == 1, GROUND))
               for n, (left, width) in enumerate(((7, 80), (93, 80), (179, 101)))]
    inside = ([chosen(check("elcheck1", 10, 21, 110, False, FIELD))] if compression else
              [chosen(radio("elradio2(0)", 8, 10, 110, False, FIELD, GREY)),
               chosen(radio("elradio2(1)", 8, 31, 110, True, FIELD))])
    return Window((287, 260), "Extract Frame/s", False, [
        chosen(label("ellabel1", 7, 35, 200, ground=GROUND)),
        chosen(field("eltexto1", 7, 57, 213, words=compression)),
        chosen(button("elboton1", 224, 55)),
        chosen(label("ellabel2", 7, 85, 100, ground=GROUND)),
        *formats,
        chosen(frame("elframe2" if compression else "elframe1", 153, 106, 127, 61, inside)),
        chosen(label("ellabel3", 7, 176, 260, ground=GROUND)),
        *choices,
        chosen(button("elboton2", 164, 229)),
        chosen(button("elboton3", 224, 229))])


def add_frames(preview=None, armed=False, transparent=BLACK):
    """A preview, given as colour, width and height, adds the question about the sizes."""
    opened = preview is not None
    question = [
        chosen(label("ellabel6", 10, 51, 247)),
        chosen(radio("elradio1(0)", 10, 72, 247, True, FIELD)),
        chosen(radio("elradio1(1)", 10, 93, 247, False, FIELD))] if opened else []
    colour, width, height = preview or (WHITE, 256, 256)
    return Window((752, 503), "Add Frame/s", False, [
        chosen(frame("elframe1", 7, 35, 467, 433, [
            chosen(combo("Drive1", 6, 6, 222, thin=True)),
            chosen(lines("Dir1", 6, 30, 222, 397)),
            chosen(combo("Combo1", 232, 6, 229)),
            chosen(lines("File1", 232, 30, 229, 397))])),
        chosen(frame("elframe2", 478, 35, 267, 268, [
            chosen(frame("elframe3", 4, 5, 258, 258, [
                picture("Picture3", 1, 1, 256, 256, WHITE),
                picture("Picture1", 1, 1, width, height, colour)]))])),
        chosen(frame("elframe4", 478, 307, 267, 161, [
            chosen(label("ellabel4", 10, 9, 90)),
            chosen(label("ellabel5", 104, 9, 153)),
            chosen(label("ellabel2", 10, 30, 90)),
            chosen(label("ellabel3", 104, 30, 153, words=opened)),
            *question,
            chosen(label("ellabel1", 10, 123, 122)),
            chosen(picture("the edge of Picture2", 144, 121, 40, 24, DARK)),
            chosen(picture("Picture2", 145, 122, 38, 22, transparent)),
            chosen(button("elboton1", 201, 121, HIGHLIGHT if armed else TEXT))])),
        chosen(button("elboton2", 629, 472)),
        chosen(button("elboton3", 689, 472))])


def folder():
    return Window((224, 325), None, False, [chosen(one) for one in (
        label("ellabel1", 7, 7, 210, ground=GROUND),
        lines("Dir1", 7, 31, 210, 256),
        button("elboton1", 101, 294),
        button("elboton2", 161, 294))])


def job():
    return Window((351, 110), None, False, [chosen(one) for one in (
        label("Label1", 7, 7, 337, ground=GROUND),
        label("Label2", 7, 28, 337, ground=GROUND),
        progress("Progressbar1", 7, 52, 337),
        button("elboton1", 288, 79))])


def preview(sprite, playing):
    return Window((281, 327), "Animation Preview", True, [
        picture("Picture1", 13, 37, 256, 256, sprite),
        chosen(symbol("Label1", 13, 300, 20, BLACK if playing else HIGHLIGHT, GROUND)),
        chosen(symbol("Label2", 37, 300, 20, HIGHLIGHT if playing else BLACK, GROUND)),
        chosen(symbol("Label4", 161, 300, 20, TEXT, GROUND)),
        chosen(symbol("Label3", 185, 300, 20, TEXT, GROUND)),
        chosen(speed("Label5", 213, 300, 56, 20))])


def exit_picture():
    return Window((597, 255), None, False, [picture("Picture1", 0, 0, 597, 255, None)])
