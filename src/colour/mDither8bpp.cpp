#include "colour/mDither8bpp.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

#include "base/RunTimeFailure.h"
#include "base/numbers.h"
#include "pictures/dib_rows.h"

namespace varnoth {

namespace {

constexpr std::int32_t sample_side = 150;
constexpr std::int32_t palette_colors = 256;
constexpr std::int32_t palette_levels = 8;

// Level of each whole number from `first` on, in steps of `step`, held within 0 to `highest`.
template <std::size_t count>
std::array<std::int32_t, count> levels_from(std::int32_t first, std::int32_t step, std::int32_t highest) {
    std::array<std::int32_t, count> levels{};
    for (std::size_t i = 0; i < count; ++i) {
        const double number = first + static_cast<double>(i);
        levels[i] = std::clamp(round_to_even<std::int32_t>(number / step), 0, highest);
    }
    return levels;
}

// How a matrix moves a channel value before its level is looked up.
struct LevelRule {
    std::span<const std::int32_t> levels;
    std::size_t zero;   // where the level of 0 stands in `levels`
    std::int32_t shift; // added below the threshold
    const mDither8bpp::Matrix& offsets;
};

std::uint8_t level_of(const LevelRule& rule, std::size_t place, std::size_t value) {
    const auto level_at = [&](std::int32_t number) {
        return rule.levels[static_cast<std::size_t>(static_cast<std::int32_t>(rule.zero) + number)];
    };
    const auto channel = static_cast<std::int32_t>(value);
    const std::int32_t offset = rule.offsets[place];
    // The shift is for levels below the threshold of their place. Thresholds are made for channel values, so
    // every level is below its own.
    static_assert(std::ranges::min(mDither8bpp::Threshold256) > 15);
    return narrow<std::uint8_t>(level_at(channel + rule.shift - offset));
}

// `levels` is the number of levels a channel, red the channel that counts fastest.
template <typename MatrixTables>
void fill_tables(MatrixTables& tables, const LevelRule& rule, std::uint16_t levels) {
    for (std::size_t place = 0; place < tables.size(); ++place) {
        for (std::size_t value = 0; value < 256; ++value) {
            const std::uint16_t level = level_of(rule, place, value);
            tables[place].blue[value] = static_cast<std::uint16_t>(level * levels * levels);
            tables[place].green[value] = static_cast<std::uint16_t>(level * levels);
            tables[place].red[value] = level;
        }
    }
}

// Walks both pictures in the order of the buffer, the lowest row first, through the places of the matrix.
template <typename MatrixTables, typename Lookup>
void dither(const cDIB& source, cDIB& target, const MatrixTables& tables, Lookup& lookup) {
    for (std::int32_t y = 0; y < source.Height(); ++y) {
        const std::span<const std::uint8_t> pixels = MapPixels(source, y);
        const std::span<std::uint8_t> indices = MapBytes(target, y);
        const auto row_tables =
            std::span(tables).subspan(static_cast<std::size_t>(y) % 4 * 4).template first<4>();
        const auto dither_pixel = [&](std::size_t x, std::size_t phase) {
            const auto& place = row_tables[phase];
            const std::uint8_t* pixel = &pixels[4 * x];
            indices[x] =
                lookup[std::size_t{place.blue[pixel[0]]} + place.green[pixel[1]] + place.red[pixel[2]]];
        };
        std::size_t x = 0;
        for (; x + 4 <= indices.size(); x += 4) {
            dither_pixel(x, 0);
            dither_pixel(x + 1, 1);
            dither_pixel(x + 2, 2);
            dither_pixel(x + 3, 3);
        }
        for (; x < indices.size(); ++x) {
            dither_pixel(x, x % 4);
        }
    }
}

// The small copy whose colours make the palette: no side above 150. A side that would round to nothing counts
// as 1. A picture that fits already is its own sample.
const cDIB& sample_of(const cDIB& picture, cDIB& copy) {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    picture.GetBestFitInfo(sample_side, sample_side, left, top, width, height, false);
    if (width == picture.Width() && height == picture.Height()) {
        return picture;
    }
    if (copy.Create(std::max(width, 1), std::max(height, 1), 32)) {
        picture.Stretch(*copy.hDIBDC(), 0, 0, copy.Width(), copy.Height());
    }
    return copy;
}

std::int32_t whole_pixels(double size) {
    return round_to_even<std::int32_t>(size);
}

} // namespace

mDither8bpp::mDither8bpp() {
    BuildTables();
    DitherMode = OptimalMode;
}

void mDither8bpp::BuildTables() {
    level16_ = levels_from<271>(-8, 17, 15);
    level6_ = levels_from<332>(-51, 51, 5);
    for (std::size_t i = 0; i < cube_index_.size(); ++i) {
        cube_index_[i] = static_cast<std::uint8_t>(i);
    }
    fill_tables(lookup_tables_, {level16_, 8, 8, Offset16}, 16);
    fill_tables(cube_tables_, {level6_, 51, 26, Offset51}, 6);
}

bool mDither8bpp::transform_to_8bit(PictureSurface& source, PictureSurface& target) {
    cDIB copy;
    if (!copy.CreateFromHdc(source.hDC(), whole_pixels(source.Width()), whole_pixels(source.Height()))) {
        return false;
    }
    const std::int32_t shown_width = whole_pixels(source.ScaleWidth());
    const std::int32_t shown_height = whole_pixels(source.ScaleHeight());
    // Drawing the copy back would change nothing where it has the surface's size; elsewhere it scales the
    // picture.
    if (shown_width != copy.Width() || shown_height != copy.Height()) {
        copy.Stretch(source.hDC(), 0, 0, shown_width, shown_height);
    }
    cDIB reduced;
    ReduceToDIB(copy, reduced);
    reduced.Stretch(target.hDC(), 0, 0, shown_width, shown_height);
    target.Refresh();
    return true;
}

void mDither8bpp::ReduceToDIB(const cDIB& source, cDIB& target) {
    cPal8bpp palette;
    if (DitherMode == HalftoneMode) {
        palette.CreateHalftone(4);
    } else {
        cDIB copy;
        palette.CreateOptimal(sample_of(source, copy), palette_colors, palette_levels, 1.0F, 1.0F, 1.0F);
        BuildColorLookup(palette);
    }
    if (!target.Create(source.Width(), source.Height(), 8)) {
        fail(Failure::OutOfMemory);
    }
    std::array<std::uint8_t, 1024> colors{};
    std::memcpy(colors.data(), palette.lpPalette().data(), colors.size());
    target.SetPalette(colors);
    if (DitherMode == HalftoneMode) {
        DitherToCube(source, target);
    } else {
        DitherToLookup(source, target);
    }
}

void mDither8bpp::BuildColorLookup(const cPal8bpp& palette) {
    const LogicalPalette* handle = palette.hPal();
    if (handle == nullptr) {
        fail(Failure::Overflow);
    }
    color_lookup_.emplace(*handle);
}

std::array<std::uint8_t, LevelLookup::places> mDither8bpp::ColorLookup() {
    std::array<std::uint8_t, LevelLookup::places> lookup{};
    for (std::size_t place = 0; color_lookup_ && place < lookup.size(); ++place) {
        lookup[place] = (*color_lookup_)[place];
    }
    return lookup;
}

void mDither8bpp::DitherToLookup(const cDIB& source, cDIB& target) {
    dither(source, target, lookup_tables_, *color_lookup_);
}

void mDither8bpp::DitherToCube(const cDIB& source, cDIB& target) const {
    dither(source, target, cube_tables_, cube_index_);
}

bool mDither8bpp::save_bmp(const std::string& file_name, PictureSurface& surface) {
    cDIB copy;
    if (!copy.CreateFromHdc(surface.hDC(), whole_pixels(surface.Width()), whole_pixels(surface.Height()))) {
        return false;
    }
    copy.Save(file_name);
    return true;
}

} // namespace varnoth
