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

// number / step, rounded and clamped to 0 to `highest`, for each number from `first` on.
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

// The dither subtracts the matrix offset from a channel value, adds half a step if the level is below the
// threshold of the matrix entry, divides by the step and rounds to nearest. The level is always below the
// threshold, because the thresholds are meant for channel values. Steps are odd, so there are no ties, and
// adding another half step, rounded down, makes rounding down sufficient. `half_steps` is the sum of the two.
consteval MatrixRows rows_of(const mDither8bpp::Matrix& offsets, std::int32_t half_steps) {
    MatrixRows rows{};
    for (std::size_t entry = 0; entry < offsets.size(); ++entry) {
        for (std::size_t channel = 0; channel < 3; ++channel) {
            rows[entry / 4][entry % 4 * 4 + channel] = static_cast<std::uint8_t>(half_steps - offsets[entry]);
        }
    }
    return rows;
}

static_assert(std::ranges::min(mDither8bpp::Threshold256) > 15);
constexpr MatrixRows rows16 = rows_of(mDither8bpp::Offset16, 8 + 8);
constexpr MatrixRows rows6 = rows_of(mDither8bpp::Offset51, 26 + 25);

using DitherFunction = void (*)(DitheredPixels pixels, const MatrixRow& added, DitheredIndices& indices);

// Dithers the source into the indices of the target, bottom row first, as row 0 of the matrix is for the
// bottom row.
template <typename Lookup>
void dither(const Bitmap& source, cDIB& target, const MatrixRows& matrix, DitherFunction dither_block,
            Lookup& lookup) {
    DitheredIndices dithered;
    for (std::int32_t y = 0; y < source.height(); ++y) {
        const MatrixRow& added = matrix[static_cast<std::size_t>(y) % matrix.size()];
        std::span<const std::uint8_t> pixels = MapPixels(source, y);
        std::span<std::uint8_t> indices = MapBytes(target, y);
        while (!indices.empty()) {
            const std::size_t count = std::min(indices.size(), dither_block_size);
            if (count == dither_block_size) {
                dither_block(pixels.first<4 * dither_block_size>(), added, dithered);
            } else {
                std::array<std::uint8_t, 4 * dither_block_size> last{};
                std::ranges::copy(pixels, last.begin());
                dither_block(last, added, dithered);
            }
            for (std::size_t i = 0; i < count; ++i) {
                indices[i] = lookup[dithered[i]];
            }
            pixels = pixels.subspan(4 * count);
            indices = indices.subspan(count);
        }
    }
}

// The small copy from which the palette is made: no side is longer than 150, none shorter than 1. Stays empty
// when there is no memory for it.
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

// Whether a 32-bit copy of this size has the same pixels as the surface's own bitmap, so that the bitmap can
// be used instead. False for sizes that a cDIB rejects.
bool is_like_its_copy(const PictureSurface& surface, std::int32_t width, std::int32_t height) {
    constexpr std::int32_t max_bits = std::numeric_limits<std::int32_t>::max() - 31;
    const Bitmap& bitmap = surface.bitmap();
    return bitmap.bits_per_pixel() == 32 && whole_of(bitmap) == Rectangle{0, 0, width, height} &&
           surface.ScaleWidth() == width && surface.ScaleHeight() == height && width > 0 && height > 0 &&
           width <= max_bits / 32;
}

} // namespace

std::int16_t LevelLookup::find_nearest(std::size_t colour) const {
    const auto value_of = [](std::size_t level) { return static_cast<std::uint8_t>(level * 17); };
    // The palette's entries have red and blue exchanged.
    const Colour exchanged =
        make_colour(value_of(colour / 256), value_of(colour / 16 % 16), value_of(colour % 16));
    return static_cast<std::int16_t>(palette_.GetNearestPaletteIndex(exchanged));
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
    // Drawing the copy back changes nothing when its size is the inner size.
    if (shown_width != width || shown_height != height) {
        copy.Stretch(source.hDC(), 0, 0, shown_width, shown_height);
    }
    cDIB reduced;
    ReduceToDIB(*picture, reduced); // may read the bitmap of the source, which may also be the target
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

std::array<std::uint8_t, LevelLookup::size> mDither8bpp::ColorLookup() {
    std::array<std::uint8_t, LevelLookup::size> lookup{};
    for (std::size_t colour = 0; color_lookup_ && colour < lookup.size(); ++colour) {
        lookup[colour] = (*color_lookup_)[colour];
    }
    return lookup;
}

void mDither8bpp::DitherToLookup(const Bitmap& source, cDIB& target) {
    dither(source, target, rows16, dither_to_16_levels, *color_lookup_);
}

void mDither8bpp::DitherToCube(const Bitmap& source, cDIB& target) const {
    dither(source, target, rows6, dither_to_6_levels, cube_index_);
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
