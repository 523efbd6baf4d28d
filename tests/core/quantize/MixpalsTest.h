// For tests of the palette mixing: colours, and the module as at program start before and after each test.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "core/quantize/mixpals.h"
#include "support/RecordedServices.h"
#include "support/pictures.h"
#include "support/sprites.h"

namespace varnoth::test {

inline constexpr Colour red = 0x0000FF;
inline constexpr Colour green = 0x00FF00;
inline constexpr Colour blue = 0xFF0000;
inline constexpr Colour white = 0xFFFFFF;

/// A surface one pixel high.
inline std::unique_ptr<TestSurface> row_of(const Colours& colours) {
    return surface_of(static_cast<std::int32_t>(colours.size()), 1, colours);
}

/// The colour at a position of the table, and at an entry of the palette.
inline Colour table(std::size_t position) {
    return colour_of(mixpals::ColorTable.at(position));
}

inline Colour palette(std::size_t entry) {
    return colour_of(mixpals::ImportPalette[entry]);
}

inline Colours palette_from(std::size_t first, std::size_t count) {
    Colours colours;
    for (std::size_t i = first; i < first + count; ++i) {
        colours.push_back(palette(i));
    }
    return colours;
}

inline std::int16_t nearest(Colour colour) {
    return mixpals::nearest_index(red_of(colour), green_of(colour), blue_of(colour));
}

inline void swap(Colour colour) {
    mixpals::SwapTransparent(red_of(colour), green_of(colour), blue_of(colour));
}

class MixpalsTest : public testing::Test {
  protected:
    MixpalsTest() { reset_mixpals(); }

    ~MixpalsTest() override { reset_mixpals(); }

    /// Starts a table with these colours.
    static void put(const Colours& colours) {
        mixpals::InitColorTable();
        mixpals::AddPictureColors(*row_of(colours));
    }

    /// The whole way of an import whose sheet needs no reduction; gives the sheet.
    std::unique_ptr<TestSurface> import(const Colours& colours) {
        put(colours);
        auto sheet = std::make_unique<TestSurface>(10, 10);
        mixpals::DrawColorTable(*sheet);
        mixpals::FinalizePalette(*sheet);
        return sheet;
    }

    RecordedServices services;
};

} // namespace varnoth::test
