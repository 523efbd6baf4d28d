// The logic of the animation preview: which frame a timer tick draws, and the timer's interval.
#pragma once

#include <cstdint>

#include "core/image/PictureSurface.h"

namespace varnoth {

struct PreviewPlayback {
    std::int16_t CurrentFrame = 0;     ///< display position that the next tick draws
    std::int16_t FramesPerSecond = 15; ///< speed

    /// Milliseconds per tick, rounded down. DivisionByZero at a speed of 0.
    std::int32_t interval() const;

    /// One frame per second more, up to 60. False when nothing changed.
    bool faster();

    /// One frame per second less, down to 0 (not 1), at which interval() fails. False when nothing changed.
    bool slower();

    /// Draws the current frame and continues after the number of the stored frame, or at 0 after the last of
    /// `line_count` lines. With a changed frame order it may therefore omit frames.
    void tick(PictureSurface& picture, std::int32_t line_count);
};

} // namespace varnoth
