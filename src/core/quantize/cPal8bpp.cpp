#include "core/quantize/cPal8bpp.h"

#include <algorithm>
#include <cstddef>

#include "core/base/RunTimeFailure.h"
#include "core/base/numbers.h"
#include "core/image/dib_rows.h"
#include "core/quantize/Octree.h"

namespace varnoth {

namespace {

struct GreyScaleKind {
    std::int16_t entries;
    int step;
};

constexpr std::array<GreyScaleKind, 3> grey_scale_kinds{{{2, 255}, {16, 17}, {256, 1}}};

struct HalftoneKind {
    int step;
    std::int16_t entries;
};

constexpr std::array<HalftoneKind, 5> halftone_kinds{{{256, 8}, {128, 27}, {85, 64}, {64, 125}, {51, 216}}};

// In the order of RGBQUAD: blue, green, red.
constexpr std::array<RGBQUAD, 8> dark_colors{{{0, 0, 0, 0},
                                              {0, 0, 128, 0},
                                              {0, 128, 0, 0},
                                              {0, 128, 128, 0},
                                              {128, 0, 0, 0},
                                              {128, 0, 128, 0},
                                              {128, 128, 0, 0},
                                              {192, 192, 192, 0}}};

constexpr std::array<RGBQUAD, 8> bright_colors{{{128, 128, 128, 0},
                                                {0, 0, 255, 0},
                                                {0, 255, 0, 0},
                                                {0, 255, 255, 0},
                                                {255, 0, 0, 0},
                                                {255, 0, 255, 0},
                                                {255, 255, 0, 0},
                                                {255, 255, 255, 0}}};

RGBQUAD quad(int red, int green, int blue) {
    return {narrow<std::uint8_t>(blue), narrow<std::uint8_t>(green), narrow<std::uint8_t>(red), 0};
}

bool is_corner_of_cube(int red, int green, int blue) {
    const auto is_extreme = [](int value) { return value == 0 || value == 255; };
    return is_extreme(red) && is_extreme(green) && is_extreme(blue);
}

RGBQUAD mean_of(const Octree::Leaf& leaf) {
    const auto mean = [&](std::int32_t sum) {
        return round_to_even<std::uint8_t>(divide(sum, leaf.PixelCount));
    };
    return {mean(leaf.SumB), mean(leaf.SumG), mean(leaf.SumR), 0};
}

} // namespace

void cPal8bpp::Initialize(std::int16_t entries) {
    Destroy();
    entries_ = entries;
    colors_.emplace();
}

void cPal8bpp::BuildLogicalPalette() {
    MakePaletteHandle();
}

void cPal8bpp::Destroy() {
    entries_ = 0;
    colors_.reset();
    logical_palette_.reset();
}

void cPal8bpp::MakePaletteHandle() {
    logical_palette_.reset();
    const auto colors = lpPalette();
    if (entries_ < 1 || entries_ > 256) {
        return;
    }
    LOGPALETTE record;
    record.palNumEntries = narrow<std::uint16_t>(entries_);
    // Entries are copied with red and blue exchanged; ClosestIndex exchanges them again.
    for (std::size_t i = 0; i < colors.size(); ++i) {
        record.palPalEntry[i] = {colors[i].rgbBlue, colors[i].rgbGreen, colors[i].rgbRed,
                                 colors[i].rgbReserved};
    }
    logical_palette_.emplace(record);
}

void cPal8bpp::ClosestColor(std::uint8_t red, std::uint8_t green, std::uint8_t blue,
                            std::uint8_t& closest_red, std::uint8_t& closest_green,
                            std::uint8_t& closest_blue) const {
    std::uint8_t index = 0;
    ClosestIndex(red, green, blue, index);
    closest_red = rgbR(index);
    closest_green = rgbG(index);
    closest_blue = rgbB(index);
}

void cPal8bpp::ClosestIndex(std::uint8_t red, std::uint8_t green, std::uint8_t blue,
                            std::uint8_t& index) const {
    if (!logical_palette_) {
        fail(Failure::Overflow);
    }
    index = narrow<std::uint8_t>(logical_palette_->GetNearestPaletteIndex(make_colour(blue, green, red)));
}

bool cPal8bpp::IsGreyScale() const {
    if (entries_ < 1) {
        return false;
    }
    const auto colors = lpPalette();
    for (std::int16_t i = 0; i < entries_; ++i) {
        check_subscript(i, colors.size());
        const RGBQUAD& entry = colors[static_cast<std::size_t>(i)];
        if (entry.rgbRed != entry.rgbGreen || entry.rgbGreen != entry.rgbBlue) {
            return false;
        }
    }
    return true;
}

void cPal8bpp::CreateGreyScale(std::int32_t kind) {
    check_subscript(kind, grey_scale_kinds.size());
    const GreyScaleKind& chosen = grey_scale_kinds[static_cast<std::size_t>(kind)];
    Initialize(0);
    entries_ = chosen.entries;
    for (int i = 0; i < chosen.entries; ++i) {
        lpPalette()[static_cast<std::size_t>(i)] = quad(i * chosen.step, i * chosen.step, i * chosen.step);
    }
    MakePaletteHandle();
}

void cPal8bpp::CreateEGA() {
    Initialize(0);
    entries_ = 16;
    FillDarkColors(0);
    FillBrightColors(8);
    MakePaletteHandle();
}

void cPal8bpp::CreateHalftone(std::int32_t kind) {
    check_subscript(kind, halftone_kinds.size());
    const HalftoneKind& chosen = halftone_kinds[static_cast<std::size_t>(kind)];
    Initialize(0);
    entries_ = chosen.entries;
    const auto channel = [](int counter) { return counter == 256 ? 255 : counter; };
    std::size_t entry = 0;
    for (int blue = 0; blue <= 256; blue += chosen.step) {
        for (int green = 0; green <= 256; green += chosen.step) {
            for (int red = 0; red <= 256; red += chosen.step) {
                lpPalette()[entry++] = quad(channel(red), channel(green), channel(blue));
            }
        }
    }
    MakePaletteHandle();
}

void cPal8bpp::CreateWebsafe() {
    constexpr std::size_t first_of_cube = 8;
    constexpr std::size_t first_grey = 217;
    constexpr int greys = 31;
    Initialize(0);
    entries_ = 256;
    FillDarkColors(0);
    FillBrightColors(248);
    std::size_t entry = first_of_cube;
    for (int blue = 0; blue <= 255; blue += 51) {
        for (int green = 0; green <= 255; green += 51) {
            for (int red = 0; red <= 255; red += 51) {
                if (!is_corner_of_cube(red, green, blue)) {
                    lpPalette()[entry++] = quad(red, green, blue);
                }
            }
        }
    }
    // The cube ends at entry 215, so entry 216 stays black.
    for (int i = 0; i < greys; ++i) {
        lpPalette()[first_grey + static_cast<std::size_t>(i)] = quad(8 + 8 * i, 8 + 8 * i, 8 + 8 * i);
    }
    MakePaletteHandle();
}

void cPal8bpp::CreateOptimal(const cDIB& Image, std::int32_t maximum, std::int32_t levels, float RWeight,
                             float GWeight, float BWeight) {
    if (Image.Bpp() != 32) {
        return;
    }
    Octree tree(maximum, narrow<std::uint8_t>(levels), {RWeight, GWeight, BWeight});
    for (std::int32_t y = 0; y < Image.Height(); ++y) {
        tree.add(MapPixels(Image, y));
    }
    Initialize(0);
    std::int16_t entry = 0;
    for (const Octree::Leaf& leaf : tree.leaves()) {
        check_subscript(entry, lpPalette().size());
        lpPalette()[static_cast<std::size_t>(entry)] = mean_of(leaf);
        ++entry;
    }
    entries_ = entry;
    MakePaletteHandle();
}

std::span<RGBQUAD, 256> cPal8bpp::lpPalette() {
    if (!colors_) {
        fail(Failure::SubscriptOutOfRange);
    }
    return std::span<RGBQUAD, 256>(*colors_);
}

std::span<const RGBQUAD, 256> cPal8bpp::lpPalette() const {
    if (!colors_) {
        fail(Failure::SubscriptOutOfRange);
    }
    return std::span<const RGBQUAD, 256>(*colors_);
}

void cPal8bpp::FillDarkColors(std::size_t first) {
    std::ranges::copy(dark_colors, lpPalette().begin() + static_cast<std::ptrdiff_t>(first));
}

void cPal8bpp::FillBrightColors(std::size_t first) {
    std::ranges::copy(bright_colors, lpPalette().begin() + static_cast<std::ptrdiff_t>(first));
}

} // namespace varnoth
