// The four one-pixel lines at the edge of a control.
#pragma once

#include "desktop/controls/parts/Part.h"

namespace varnoth {

struct EdgeLines {
    LinePart top{LineSide::Top};
    LinePart left{LineSide::Left};
    LinePart right{LineSide::Right};
    LinePart bottom{LineSide::Bottom};

    /// Places the lines for a control of this height. The bottom line starts one pixel after the left one.
    explicit EdgeLines(double height) {
        left.set_ends(0, 0, 0, height - 1);
        right.set_ends(0, 0, 0, height - 1);
        bottom.set_ends(1, height - 1, 0, height - 1);
    }

    /// Stretches the lines to a width in pixels.
    void set_width(double width) {
        top.X2 = width;
        bottom.X2 = width;
        right.X1 = width - 1;
        right.X2 = width - 1;
    }

    /// Stretches them to a height in pixels.
    void set_height(double height) {
        left.Y2 = height - 1;
        right.Y2 = height - 1;
        bottom.Y1 = height - 1;
        bottom.Y2 = height - 1;
    }

    /// Colours the two edges that are lit on a raised control.
    void colour_top_left(Colour colour) { top.BorderColor = left.BorderColor = colour; }

    /// Colours the two edges that are in shadow on a raised control.
    void colour_bottom_right(Colour colour) { right.BorderColor = bottom.BorderColor = colour; }
};

} // namespace varnoth
