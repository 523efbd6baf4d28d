#include "desktop/controls/parts/panel_icon.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "desktop/theme/theme.h"

namespace varnoth {

namespace {

// One letter per pixel; blanks are transparent.
constexpr std::array<std::string_view, panel_icon_size> picture{
    " kkkkkkkkkkkkkk ", //
    "kghhghhgghhghhgk", //
    "kggggggggggggggk", //
    "kffffffffrfffffk", //
    "kfffffffrrfffffk", //
    "kffffffrorfffffk", //
    "kfffffrrorffrffk", //
    "kffffrroorrfrffk", //
    "kffffroooorrrffk", //
    "kfffrrooyoorrffk", //
    "kfffrooyyyoorffk", //
    "kfffrooywyoorffk", //
    "kffffrrywyrrfffk", //
    "kggggggggggggggk", //
    "kghhghhgghhghhgk", //
    " kkkkkkkkkkkkkk ", //
};

static_assert(std::ranges::all_of(picture,
                                  [](std::string_view row) { return row.size() == picture.size(); }));

struct Ink {
    char letter;
    Colour colour;
};

constexpr std::array inks{
    Ink{'k', theme::edge_dark},
    Ink{'g', theme::edge_light},
    Ink{'h', theme::edge_dark},
    Ink{'f', theme::field_background},
    Ink{'r', make_colour(0xB0, 0x6A, 0x2C)},
    Ink{'o', theme::highlight},
    Ink{'y', make_colour(0xF2, 0xE6, 0xA0)},
    Ink{'w', theme::white},
};

// Returns no_colour where the icon is transparent.
Colour icon_colour(std::int32_t x, std::int32_t y) {
    const char letter = picture.at(static_cast<std::size_t>(y)).at(static_cast<std::size_t>(x));
    const auto ink = std::ranges::find(inks, letter, &Ink::letter);
    return ink == inks.end() ? no_colour : ink->colour;
}

} // namespace

void draw_panel_icon(PictureSurface& surface) {
    for (std::int32_t y = 0; y < panel_icon_size; ++y) {
        for (std::int32_t x = 0; x < panel_icon_size; ++x) {
            if (const Colour colour = icon_colour(x, y); colour != no_colour) {
                surface.PSet(x, y, colour);
            }
        }
    }
}

} // namespace varnoth
