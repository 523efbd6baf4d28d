#include "core/image/LogicalPalette.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "core/base/RunTimeFailure.h"

namespace varnoth {

LogicalPalette::LogicalPalette(const LOGPALETTE& record) : count_(record.palNumEntries) {
    if (record.palVersion != 0x300 || count_ < 1 || count_ > 256) {
        fail(Failure::InvalidPropertyValue);
    }
    // Entries beyond the last one repeat the first, which wins as the lowest index.
    for (std::size_t i = 0; i < red_.size(); ++i) {
        const PALETTEENTRY& entry = record.palPalEntry[i < static_cast<std::size_t>(count_) ? i : 0];
        red_[i] = entry.peRed;
        green_[i] = entry.peGreen;
        blue_[i] = entry.peBlue;
    }
}

std::int32_t LogicalPalette::GetNearestPaletteIndex(Colour colour) const {
    const std::int16_t red = red_of(colour);
    const std::int16_t green = green_of(colour);
    const std::int16_t blue = blue_of(colour);
    // A squared difference fits 16 bits without a sign.
    const auto squared = [](std::int16_t a, std::int16_t b) {
        const std::int32_t difference = a - b;
        return static_cast<std::uint16_t>(difference * difference);
    };
    // Distances are below 2^18, so distance and index fit one number, whose minimum is the nearest entry with
    // the lowest index.
    std::int32_t best = std::numeric_limits<std::int32_t>::max();
    for (std::size_t i = 0; i < red_.size(); ++i) {
        const std::int32_t distance =
            std::int32_t{squared(red_[i], red)} + squared(green_[i], green) + squared(blue_[i], blue);
        best = std::min(best, distance * 256 + static_cast<std::int32_t>(i));
    }
    return best & 255;
}

} // namespace varnoth
