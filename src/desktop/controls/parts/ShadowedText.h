// A caption and its drop shadow: a second copy of the text, in black, behind it and one pixel right of and
// below it.
#pragma once

#include "desktop/controls/parts/Part.h"

namespace varnoth {

struct ShadowedText {
    TextPart text;
    TextPart shadow;

    ShadowedText(double left, double top);

    // The shadow knows its text by its place.
    ShadowedText(const ShadowedText&) = delete;
    ShadowedText& operator=(const ShadowedText&) = delete;

    /// Both take the size of the caption from now on.
    void set_auto_size();

    void SetCaption(const QString& caption);
    void SetFont(const QFont& font);

    /// Whether the shadow is to be seen.
    void set_shadow(bool shown);

    /// Moves the text to that x position in pixels; the shadow keeps its offset from it.
    void set_left(double left);

    /// Puts a caption that is lower than that into the middle of it, taken down to a whole pixel. A higher
    /// one stays where it is.
    void centre_in(double height);
};

} // namespace varnoth
