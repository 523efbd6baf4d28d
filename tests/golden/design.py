"""The design sheet: where every control of every window stands, how large it is and which colours it has. It is
written by hand and not taken from the code; look_test.py draws it and holds it against pictures of the real windows.

Places are left, top, width and height in pixels within what holds the control. What stands inside chosen() is free to
be placed anew: it is the program's own choice, and a change of it is made here as well. All the rest is given: it is
how these windows are, and no change of the code may move it."""
from collections import namedtuple

# Sizes of a control as a whole are given in units of which a pixel has 15.
UNITS = 15
BUTTON_HEIGHT = PROGRESS_HEIGHT = 360 // UNITS
FIELD_HEIGHT = COMBO_HEIGHT = LABEL_HEIGHT = 300 // UNITS
RADIO_HEIGHT = 285 // UNITS
CHECK_HEIGHT = 270 // UNITS
BUTTON_LEAST = RADIO_LEAST = CHECK_LEAST = 500 / UNITS
COMBO_LEAST = 1425 / UNITS
PROGRESS_LEAST = 360 / UNITS
BUTTON_WIDTH = 56

# Red, green, blue.
GROUND = (76, 88, 68)  # windows and buttons
FIELD = (62, 70, 55)  # what is sunken
TEXT = (216, 222, 211)
WHITE = (255, 255, 255)
BLACK = (0, 0, 0)
GREY = (128, 128, 128)  # text of what is disabled
LIGHT = (160, 170, 149)  # an edge in the light
DARK = (40, 46, 34)  # an edge in the shadow
MARKED = (196, 181, 80)  # checked, armed, in force
GLYPH = (136, 145, 128)  # the cross of the close button, two edges of a check box

Control = namedtuple("Control", "kind name place look parts chosen")
Window = namedtuple("Window", "size title close_box controls")


def control(kind, name, place, parts=(), **look):
    return Control(kind, name, place, look, list(parts), False)


def chosen(one):
    return one._replace(chosen=True)


def button(name, left, top, text=WHITE):
    return control("button", name, (left, top, BUTTON_WIDTH, BUTTON_HEIGHT), text=text)


def label(name, left, top, width, text=TEXT, ground=FIELD, words=True):
    """Without words there is nothing to see of it but its ground."""
    return control("label", name, (left, top, width, LABEL_HEIGHT), text=text, ground=ground, words=words)


def field(name, left, top, width, words=True):
    return control("field", name, (left, top, width, FIELD_HEIGHT), words=words)


def combo(name, left, top, width, thin=False):
    """A thin text has no letter that is fully in the colour of the text."""
    return control("combo", name, (left, top, width, COMBO_HEIGHT), thin=thin)


def check(name, left, top, width, on, ground):
    return control("check", name, (left, top, width, CHECK_HEIGHT), on=on, ground=ground)


def radio(name, left, top, width, on, ground, text=None):
    return control("radio", name, (left, top, width, RADIO_HEIGHT), on=on, ground=ground,
                   text=text or (MARKED if on else TEXT))


def progress(name, left, top, width):
    return control("progress", name, (left, top, width, PROGRESS_HEIGHT))


def frame(name, left, top, width, height, parts):
    return control("frame", name, (left, top, width, height), parts)


def lines(name, left, top, width, height):
    """A list: of the window layer, with sunken edges like a field."""
    return control("lines", name, (left, top, width, height))


def symbol(name, left, top, side, colour, ground):
    return control("symbol", name, (left, top, side, side), colour=colour, ground=ground)


def speed(name, left, top, width, height):
    return control("speed", name, (left, top, width, height), text=TEXT, ground=GROUND)


def picture(name, left, top, width, height, colour):
    """A picture of one colour; of any colours for None."""
    return control("picture", name, (left, top, width, height), colour=colour)


def main_window(sprite=None):
    """Without a sprite as at the start; with one its picture has that colour."""
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
            chosen(symbol("Label1", 258, 163, 18, TEXT, FIELD)),  # but for the corner, which is given
            chosen(symbol("Label2", 258, 187, 18, TEXT, FIELD)),
            button("elboton7", 6, 366, able),
            button("elboton6", 76, 366, able),
            button("elboton5", 137, 366, able),
            button("elboton4", 198, 366, able)]),
        frame("elframe3", 294, 75, 273, 269, [
            chosen(frame("elframe5", 7, 5, 258, 258, [  # but for its size, which is given
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
    """With the choice of compression, or as at the start with that of the depth."""
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
    """With a preview there is the question about the sizes; its first entry is the colour, then width and height."""
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
            chosen(button("elboton1", 201, 121, MARKED if armed else TEXT))])),
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
        chosen(symbol("Label1", 13, 300, 20, BLACK if playing else MARKED, GROUND)),
        chosen(symbol("Label2", 37, 300, 20, MARKED if playing else BLACK, GROUND)),
        chosen(symbol("Label4", 161, 300, 20, TEXT, GROUND)),
        chosen(symbol("Label3", 185, 300, 20, TEXT, GROUND)),
        chosen(speed("Label5", 213, 300, 56, 20))])


def exit_picture():
    return Window((597, 255), None, False, [picture("Picture1", 0, 0, 597, 255, None)])
