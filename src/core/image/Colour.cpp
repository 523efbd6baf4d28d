#include "core/image/Colour.h"

#include <array>
#include <cstddef>

namespace varnoth {

namespace {

// The classic scheme, in the order of the system-colour numbers: scroll bar, desktop, active caption,
// inactive caption, menu, window, window frame, menu text, window text, caption text, active border,
// inactive border, application workspace, highlight, highlight text, button face, button shadow,
// grey text, button text, inactive caption text, button highlight, dark shadow, light, tool tip text,
// tool tip.
constexpr std::array<Colour, 25> system_colours{
    0xC8D0D4, 0x000000, 0x6A240A, 0x808080, 0xC8D0D4, 0xFFFFFF, 0x000000, 0x000000, 0x000000,
    0xFFFFFF, 0xC8D0D4, 0xC8D0D4, 0x808080, 0x6A240A, 0xFFFFFF, 0xC8D0D4, 0x808080, 0x808080,
    0x000000, 0xC8D0D4, 0xFFFFFF, 0x404040, 0xC8D0D4, 0x000000, 0xE1FFFF};

} // namespace

Colour translate_colour(Colour colour) {
    if (colour >= 0) {
        return colour & 0xFFFFFF;
    }
    const auto number = static_cast<std::size_t>(colour & 0xFF);
    return number < system_colours.size() ? system_colours[number] : 0;
}

} // namespace varnoth
