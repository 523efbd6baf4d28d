#include "platform/LogicalPalette.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "base/RunTimeFailure.h"

namespace varnoth {

LogicalPalette::LogicalPalette(const LOGPALETTE& record) : count_(record.palNumEntries) {
    if (record.palVersion != 0x300 || count_ < 1 || count_ > 256) {
        fail(Failure::InvalidPropertyValue);
    }
    for (std::size_t i = 0; i < static_cast<std::size_t>(count_); ++i) {
        red_[i] = record.palPalEntry[i].peRed;
        green_[i] = record.palPalEntry[i].peGreen;
        blue_[i] = record.palPalEntry[i].peBlue;
    }
}

std::int32_t LogicalPalette::GetNearestPaletteIndex(Colour colour) const {
    const std::int32_t red = red_of(colour);
    const std::int32_t green = green_of(colour);
    const std::int32_t blue = blue_of(colour);
    // Distances stay below 2^18, so distance and index fit one number whose minimum is the nearest entry with
    // the lowest index.
    std::int32_t best = std::numeric_limits<std::int32_t>::max();
    for (std::int32_t i = 0; i < count_; ++i) {
        const auto at = static_cast<std::size_t>(i);
        const std::int32_t to_red = red_[at] - red;
        const std::int32_t to_green = green_[at] - green;
        const std::int32_t to_blue = blue_[at] - blue;
        const std::int32_t distance = to_red * to_red + to_green * to_green + to_blue * to_blue;
        best = std::min(best, distance * 256 + i);
    }
    return best & 255;
}

} // namespace varnoth
