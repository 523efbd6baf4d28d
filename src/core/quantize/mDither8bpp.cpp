#include "core/quantize/mDither8bpp.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>
#include <optional>
#include <vector>

#include "core/base/RunTimeFailure.h"
#include "core/base/numbers.h"
#include "core/image/dib_rows.h"
#include "core/quantize/ordered_dither.h"

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

using MatrixRows = std::array<MatrixRow, 4>;

// A channel value less its offset in the matrix, and half a step more where its level is below the threshold
// of its place, is divided by the step and rounded to nearest. Thresholds are made for channel values, so
// every level is below its own. Steps are odd, so there are no ties: with the whole part of another half step
// added, rounding down is enough. `most` is both halves together.
consteval MatrixRows rows_of(const mDither8bpp::Matrix& offsets, std::int32_t most) {
    MatrixRows rows{};
    for (std::size_t place = 0; place < offsets.size(); ++place) {
        for (std::size_t channel = 0; channel < 3; ++channel) {
            rows[place / 4][place % 4 * 4 + channel] = static_cast<std::uint8_t>(most - offsets[place]);
        }
    }
    return rows;
}

static_assert(std::ranges::min(mDither8bpp::Threshold256) > 15);
constexpr MatrixRows rows16 = rows_of(mDither8bpp::Offset16, 8 + 8);
constexpr MatrixRows rows6 = rows_of(mDither8bpp::Offset51, 26 + 25);

using PlacesOf = void (*)(DitheredPixels pixels, const MatrixRow& added, DitheredPlaces& places);

// Walks both pictures in the order of the buffer, the lowest row first, through the places of the matrix.
template <typename Lookup>
void dither(const Bitmap& source, cDIB& target, const MatrixRows& matrix, PlacesOf places_of,
            Lookup& lookup) {
    DitheredPlaces places;
    for (std::int32_t y = 0; y < source.height(); ++y) {
        const MatrixRow& added = matrix[static_cast<std::size_t>(y) % matrix.size()];
        std::span<const std::uint8_t> pixels = MapPixels(source, y);
        std::span<std::uint8_t> indices = MapBytes(target, y);
        while (!indices.empty()) {
            const std::size_t count = std::min(indices.size(), dithered_at_once);
            if (count == dithered_at_once) {
                places_of(pixels.first<4 * dithered_at_once>(), added, places);
            } else {
                std::array<std::uint8_t, 4 * dithered_at_once> last{};
                std::ranges::copy(pixels, last.begin());
                places_of(last, added, places);
            }
            for (std::size_t i = 0; i < count; ++i) {
                indices[i] = lookup[places[i]];
            }
            pixels = pixels.subspan(4 * count);
            indices = indices.subspan(count);
        }
    }
}

// The small copy whose colours make the palette: no side above 150. A side that would round to nothing counts
// as 1. Empty when it cannot be had.
void make_sample(const Bitmap& picture, cDIB& sample) {
    const Rectangle fit = cDIB::BestFit(picture.width(), picture.height(), sample_side, sample_side, false);
    if (sample.Create(std::max(fit.width, 1), std::max(fit.height, 1), 32)) {
        Bitmap& pixels = *sample.hDIBDC()->bitmap();
        stretch_pixels(pixels, whole_of(pixels), picture, whole_of(picture));
    }
}

std::int32_t whole_pixels(double size) {
    return round_to_even<std::int32_t>(size);
}

// Whether a 32-bit copy of that size, drawn back, would be what the surface shows already. Sizes that a cDIB
// cannot have are left to it.
bool is_like_its_copy(const PictureSurface& surface, std::int32_t width, std::int32_t height) {
    constexpr std::int32_t most_bits = std::numeric_limits<std::int32_t>::max() - 31;
    const Bitmap& bitmap = surface.bitmap();
    return bitmap.bits_per_pixel() == 32 && whole_of(bitmap) == Rectangle{0, 0, width, height} &&
           surface.ScaleWidth() == width && surface.ScaleHeight() == height && width > 0 && height > 0 &&
           width <= most_bits / 32;
}

} // namespace

std::int16_t LevelLookup::sought(std::size_t place) const {
    const auto value_of = [](std::size_t level) { return static_cast<std::uint8_t>(level * 17); };
    const Colour crossed =
        make_colour(value_of(place / 256), value_of(place / 16 % 16), value_of(place % 16));
    return static_cast<std::int16_t>(palette_.GetNearestPaletteIndex(crossed));
}

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
}

bool mDither8bpp::transform_to_8bit(PictureSurface& source, PictureSurface& target) {
    const std::int32_t width = whole_pixels(source.Width());
    const std::int32_t height = whole_pixels(source.Height());
    cDIB copy;
    const Bitmap* picture = &source.bitmap();
    if (!is_like_its_copy(source, width, height)) {
        if (!copy.CreateFromHdc(source.hDC(), width, height)) {
            return false;
        }
        picture = copy.hDIB();
    }
    const std::int32_t shown_width = whole_pixels(source.ScaleWidth());
    const std::int32_t shown_height = whole_pixels(source.ScaleHeight());
    // Where the copy has the size that the surface shows, drawing it back would change nothing.
    if (shown_width != width || shown_height != height) {
        copy.Stretch(source.hDC(), 0, 0, shown_width, shown_height);
    }
    cDIB reduced;
    ReduceToDIB(*picture, reduced); // the surface is only drawn on when this is done
    reduced.Stretch(target.hDC(), 0, 0, shown_width, shown_height);
    target.Refresh();
    return true;
}

void mDither8bpp::ReduceToDIB(const Bitmap& source, cDIB& target) {
    cPal8bpp palette;
    if (DitherMode == HalftoneMode) {
        palette.CreateHalftone(4);
    } else {
        cDIB sample;
        make_sample(source, sample);
        palette.CreateOptimal(sample, palette_colors, palette_levels, 1.0F, 1.0F, 1.0F);
        BuildColorLookup(palette);
    }
    if (!target.Create(source.width(), source.height(), 8)) {
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

void mDither8bpp::DitherToLookup(const Bitmap& source, cDIB& target) {
    dither(source, target, rows16, places_of_16_levels, *color_lookup_);
}

void mDither8bpp::DitherToCube(const Bitmap& source, cDIB& target) const {
    dither(source, target, rows6, places_of_6_levels, cube_index_);
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
