// The animation preview without its window: which frame a tick draws, and how long a tick lasts.
#pragma once

#include <cstdint>

#include "core/image/PictureSurface.h"

namespace varnoth {

struct PreviewWalk {
    std::int16_t CurrentFrame = 0;     ///< handed to draw_frame at the next tick
    std::int16_t FramesPerSecond = 15; ///< speed

    /// Milliseconds of a tick, taken down to a whole number. DivisionByZero at a speed of 0.
    std::int32_t interval() const;

    /// One frame a second more, up to 60. False when nothing changed.
    bool faster();

    /// One frame a second less. The bound is 0 and not 1, so 1 goes to 0, which interval() does not survive.
    bool slower();

    /// Draws the current frame and goes on from the number of the stored frame, back to 0 behind the last of
    /// `line_count` lines. With a changed order it follows that chain and may leave frames out.
    void tick(PictureSurface& picture, std::int32_t line_count);
};

} // namespace varnoth
