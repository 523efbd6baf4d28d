#include "core/quantize/LevelLookup.h"

namespace varnoth {

std::int16_t LevelLookup::sought(std::size_t place) const {
    const auto value_of = [](std::size_t level) { return static_cast<std::uint8_t>(level * 17); };
    const Colour crossed =
        make_colour(value_of(place / 256), value_of(place / 16 % 16), value_of(place % 16));
    return static_cast<std::int16_t>(palette_.GetNearestPaletteIndex(crossed));
}

} // namespace varnoth
