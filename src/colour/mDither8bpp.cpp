#include "colour/mDither8bpp.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

#include "base/RunTimeFailure.h"
#include "base/numbers.h"
#include "colour/nearest_levels.h"
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
    // A level is compared with a threshold made for channel values, so it is always below.
    if (level_at(channel) < mDither8bpp::Threshold256[place]) {
        return narrow<std::uint8_t>(level_at(channel + rule.shift - offset));
    }
    return narrow<std::uint8_t>(level_at(channel - offset));
}

template <typename Tables>
void fill_levels(Tables& tables, const LevelRule& rule) {
    for (std::size_t place = 0; place < tables.size(); ++place) {
        for (std::size_t value = 0; value < tables[place].size(); ++value) {
            tables[place][value] = level_of(rule, place, value);
        }
    }
}

// Walks both pictures in the order of the buffer, the lowest row first, through the places of the matrix.
template <typename Tables, typename IndexOfLevels>
void dither(const cDIB& source, cDIB& target, const Tables& tables, IndexOfLevels index_of_levels) {
    for (std::int32_t y = 0; y < source.Height(); ++y) {
        const std::span<const std::uint8_t> pixels = MapPixels(source, y);
        const std::span<std::uint8_t> indices = MapBytes(target, y);
        const std::size_t row_phase = static_cast<std::size_t>(y) % 4;
        for (std::size_t x = 0; x < indices.size(); ++x) {
            const auto& levels = tables[x % 4 + 4 * row_phase];
            indices[x] =
                index_of_levels(levels[pixels[4 * x]], levels[pixels[4 * x + 1]], levels[pixels[4 * x + 2]]);
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
    fill_levels(lookup_levels_, {level16_, 8, 8, Offset16});
    fill_levels(cube_levels_, {level6_, 51, 26, Offset51});
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
    // The platform palette holds red and blue crossed.
    std::vector<RGBQUAD> entries;
    for (std::int32_t i = 0; i < handle->size(); ++i) {
        const PALETTEENTRY entry = handle->entry(i);
        entries.push_back({entry.peRed, entry.peGreen, entry.peBlue, 0});
    }
    color_lookup_ = nearest_to_levels(entries);
}

void mDither8bpp::DitherToLookup(const cDIB& source, cDIB& target) const {
    dither(source, target, lookup_levels_, [this](std::size_t blue, std::size_t green, std::size_t red) {
        return color_lookup_[(blue * 16 + green) * 16 + red];
    });
}

void mDither8bpp::DitherToCube(const cDIB& source, cDIB& target) const {
    dither(source, target, cube_levels_, [this](std::size_t blue, std::size_t green, std::size_t red) {
        return cube_index_[(blue * 6 + green) * 6 + red];
    });
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
