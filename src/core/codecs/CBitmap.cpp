#include "core/codecs/CBitmap.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>
#include <utility>
#include <vector>

#include "core/base/RunTimeFailure.h"
#include "core/base/Truth.h"
#include "core/base/numbers.h"
#include "core/image/DrawingContext.h"
#include "core/image/PictureSurface.h"

namespace varnoth::CBitmap {

std::shared_ptr<const Bitmap> CurrentBitmap;

namespace {

std::array<RGBQUAD, 2> mono_colours;
std::array<RGBQUAD, 16> colours_16;
std::array<RGBQUAD, 256> colours_256;

void set_colours(std::span<RGBQUAD> table, std::span<const std::uint8_t> triples) {
    check_subscript(table.size() * 3 - 1, triples.size());
    for (std::size_t i = 0; i < table.size(); ++i) {
        table[i] = {triples[3 * i + 2], triples[3 * i + 1], triples[3 * i], 0};
    }
}

struct Layout {
    std::int32_t bits_per_pixel;
    std::span<const RGBQUAD> colours;
};

// Converts the rows in `pixels` to 32 bits. Leaves rows that start beyond the array unchanged.
void convert_rows(std::span<const std::uint8_t> pixels, const Layout& layout, bool top_down,
                  Bitmap& picture) {
    Bitmap line(picture.width(), 1, layout.bits_per_pixel, Bitmap::Rows::Section);
    std::ranges::copy(layout.colours, line.colour_table().begin());
    std::vector<RGBQUAD> quads(static_cast<std::size_t>(picture.width()));
    const auto stride = static_cast<std::size_t>(line.row_bytes());
    for (std::int32_t row = 0; row < picture.height() && !pixels.empty(); ++row) {
        const std::size_t count = std::min(stride, pixels.size());
        std::ranges::copy(pixels.first(count), line.bytes().begin());
        std::ranges::fill(line.bytes().subspan(count), std::uint8_t{0});
        pixels = pixels.subspan(count);
        read_pixels(line, 0, 0, quads);
        for (RGBQUAD& quad : quads) {
            quad.rgbReserved = 0;
        }
        write_pixels(picture, 0, top_down ? row : picture.height() - 1 - row, quads);
    }
}

bool covers(std::span<const std::uint8_t> pixels, const Bitmap& picture, std::int32_t bits_per_pixel) {
    const std::int64_t stride = (std::int64_t{picture.width()} * bits_per_pixel + 31) / 32 * 4;
    return static_cast<std::int64_t>(pixels.size()) >= stride * picture.height();
}

std::shared_ptr<const Bitmap> make_bitmap(std::span<const std::uint8_t> pixels, const Layout& layout,
                                          std::int32_t width, std::int32_t bi_height) {
    const std::int64_t height = std::abs(std::int64_t{bi_height});
    if (!is_possible_size(width, height)) {
        return nullptr;
    }
    try {
        Bitmap picture(width, narrow<std::int32_t>(height), 32, Bitmap::Rows::Surface);
        // Missing pixels have index 0, whose colour may not be black.
        if (!layout.colours.empty() && layout.colours[0] != RGBQUAD{} &&
            !covers(pixels, picture, layout.bits_per_pixel)) {
            picture.fill(colour_of(layout.colours[0]));
        }
        convert_rows(pixels, layout, bi_height < 0, picture);
        return std::make_shared<const Bitmap>(std::move(picture));
    } catch (const RunTimeFailure&) {
        return nullptr; // no memory
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void create(std::span<const std::uint8_t> pixels, const Layout& layout, std::int32_t width,
            std::int32_t height, std::int16_t topDown) {
    const std::int32_t bi_height = topDown != 0 ? checked_subtract(0, height) : height;
    check_subscript(0, pixels.size());
    CurrentBitmap = make_bitmap(pixels, layout, width, bi_height);
}

Extent twips_per_pixel() {
    return {round_to_even<std::int32_t>(screen().TwipsPerPixelX),
            round_to_even<std::int32_t>(screen().TwipsPerPixelY)};
}

// Enlarges the target by its border, so that its inner area gets the given outer size (in twips). Returns
// that size in pixels.
Extent grow_by_border(PictureSurface& target, double width, double height) {
    const Extent outer =
        TwipsToPixels(round_to_even<std::int32_t>(width), round_to_even<std::int32_t>(height));
    target.SetHeight(height + (target.Height() - target.ScaleHeight()));
    target.SetWidth(width + (target.Width() - target.ScaleWidth()));
    return outer;
}

Extent inner_pixels(PictureSurface& target) {
    target.ScaleMode = ScalePixels;
    return {round_to_even<std::int32_t>(target.ScaleWidth()),
            round_to_even<std::int32_t>(target.ScaleHeight())};
}

} // namespace

void SetMonoColors() {
    mono_colours = {RGBQUAD{0, 0, 0, 0}, RGBQUAD{255, 255, 255, 0}};
}

void SetColors16(std::span<const std::uint8_t> colours) {
    set_colours(colours_16, colours);
}

void SetColors256(std::span<const std::uint8_t> colours) {
    set_colours(colours_256, colours);
}

bool is_possible_size(std::int32_t width, std::int64_t height) {
    constexpr std::int64_t max_pixels = std::numeric_limits<std::int32_t>::max() / 4;
    return width > 0 && height > 0 && height <= max_pixels / width;
}

void CreateBitmap1(std::span<const std::uint8_t> pixels, std::int32_t width, std::int32_t height,
                   std::int16_t topDown) {
    create(pixels, {1, mono_colours}, width, height, topDown);
}

void CreateBitmap4(std::span<const std::uint8_t> pixels, std::int32_t width, std::int32_t height,
                   std::int16_t topDown) {
    create(pixels, {4, colours_16}, width, height, topDown);
}

void CreateBitmap8(std::span<const std::uint8_t> pixels, std::int32_t width, std::int32_t height,
                   std::int16_t topDown) {
    create(pixels, {8, colours_256}, width, height, topDown);
}

void CreateBitmap16(std::span<const std::uint8_t> pixels, std::int32_t width, std::int32_t height,
                    std::int16_t topDown) {
    create(pixels, {16, {}}, width, height, topDown);
}

void CreateBitmap32(std::span<const std::uint8_t> pixels, std::int32_t width, std::int32_t height,
                    std::int16_t topDown) {
    create(pixels, {32, {}}, width, height, topDown);
}

Extent PixelsToTwips(std::int32_t width, std::int32_t height) {
    const Extent factor = twips_per_pixel();
    return {checked_multiply(width, factor.width), checked_multiply(height, factor.height)};
}

Extent TwipsToPixels(std::int32_t width, std::int32_t height) {
    const Extent factor = twips_per_pixel();
    return {round_to_even<std::int32_t>(divide(width, factor.width)),
            round_to_even<std::int32_t>(divide(height, factor.height))};
}

void DrawBitmap(std::int32_t width, std::int32_t height, PictureSurface& target, std::int16_t autoscale) {
    target.Cls();
    SurfaceContainer* const parent = target.Parent();
    const std::int16_t parent_mode =
        parent != nullptr ? std::exchange(parent->ScaleMode, ScaleTwips) : ScaleTwips;
    const std::int16_t target_mode = std::exchange(target.ScaleMode, ScaleTwips);
    double outer_width = target.Width();
    double outer_height = target.Height();
    if (autoscale == True) {
        const Extent twips = PixelsToTwips(width, height);
        target.SetHeight(twips.height);
        target.SetWidth(twips.width);
        // The target itself reports no size smaller than its border.
        outer_width = twips.width;
        outer_height = twips.height;
    }
    const bool bordered = target.Height() != target.ScaleHeight();
    const Extent to = bordered ? grow_by_border(target, outer_width, outer_height) : inner_pixels(target);
    if (CurrentBitmap != nullptr) {
        stretch_pixels(target.bitmap(), {0, 0, to.width, to.height}, *CurrentBitmap, {0, 0, width, height});
    }
    if (parent != nullptr) {
        parent->ScaleMode = parent_mode;
    }
    target.ScaleMode = target_mode;
    target.SetPicture(target.Image());
}

} // namespace varnoth::CBitmap
