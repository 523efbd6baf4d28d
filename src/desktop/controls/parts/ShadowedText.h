// A caption and its drop shadow: a black copy of the text behind it, offset by one pixel to the right and
// down.
#pragma once

#include "desktop/controls/parts/Part.h"

namespace varnoth {

struct ShadowedText {
    TextPart text;
    TextPart shadow;

    ShadowedText(double left, double top);

    // The shadow holds the address of its text.
    ShadowedText(const ShadowedText&) = delete;
    ShadowedText& operator=(const ShadowedText&) = delete;

    /// Adapts the size of both to the caption from now on.
    void set_auto_size();

    void SetCaption(const QString& caption);
    void SetFont(const QFont& font);

    /// Shows or hides the shadow.
    void set_shadow(bool shown);

    /// Moves the text to that x position in pixels; the shadow keeps its offset from it.
    void set_left(double left);

    /// Centres the caption vertically in this height, rounded down to a whole pixel. A caption that is too
    /// high keeps its position.
    void centre_in(double height);
};

} // namespace varnoth
