// The program's one current bitmap. The picture readers create it from an array in the layout of a
// device-independent bitmap; DrawBitmap draws it on a picture surface.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "core/image/Bitmap.h"
#include "core/image/PictureSurface.h"

namespace varnoth::CBitmap {

/// The picture decoded last, by any reader: 32 bits per pixel, top row first. Null at program start and after
/// a picture that could not be created.
extern std::shared_ptr<const Bitmap> CurrentBitmap;

// The colour tables of CreateBitmap1, 4 and 8. Fill the table before the call; it keeps its contents until it
// is filled again.

/// Sets the table of CreateBitmap1: entry 0 black, entry 1 white.
void SetMonoColors();

/// Set the tables of CreateBitmap4 and CreateBitmap8 from 16 and 256 triples of red, green, blue.
/// SubscriptOutOfRange for fewer triples.
void SetColors16(std::span<const std::uint8_t> colours);
void SetColors256(std::span<const std::uint8_t> colours);

/// Whether the functions below can create a picture of that size: at least one pixel, less than 2 GiB at 32
/// bits.
bool is_possible_size(std::int32_t width, std::int64_t height);

/// Create CurrentBitmap from an array of |height| rows, each padded to a multiple of 4 bytes. Layout of a
/// row:
/// - 1 bit: an index, most significant bit leftmost;
/// - 4 bits: an index, high nibble leftmost;
/// - 8 bits: an index;
/// - 16 bits: a little-endian word of 5 bits red, green, blue;
/// - 32 bits: blue, green, red and an unused byte.
/// The first row is the bottom row; it is the top row when either `topDown` is not 0 or `height` is negative,
/// but not both. Bytes missing from the array are 0. CurrentBitmap becomes null, without a failure, for a
/// picture of no pixels or of 2 GiB and more. SubscriptOutOfRange for an empty array; CurrentBitmap is then
/// unchanged.
void CreateBitmap1(std::span<const std::uint8_t> pixels, std::int32_t width, std::int32_t height,
                   std::int16_t topDown);
void CreateBitmap4(std::span<const std::uint8_t> pixels, std::int32_t width, std::int32_t height,
                   std::int16_t topDown);
void CreateBitmap8(std::span<const std::uint8_t> pixels, std::int32_t width, std::int32_t height,
                   std::int16_t topDown);
void CreateBitmap16(std::span<const std::uint8_t> pixels, std::int32_t width, std::int32_t height,
                    std::int16_t topDown);
void CreateBitmap32(std::span<const std::uint8_t> pixels, std::int32_t width, std::int32_t height,
                    std::int16_t topDown);

/// A width and a height in twips or in pixels.
struct Extent {
    std::int32_t width = 0;
    std::int32_t height = 0;

    friend bool operator==(const Extent&, const Extent&) = default;
};

/// Convert sizes by the screen's twips per pixel, rounded to integers. Overflow beyond 32 bits,
/// DivisionByZero for a screen of less than half a twip per pixel.
Extent PixelsToTwips(std::int32_t width, std::int32_t height);
Extent TwipsToPixels(std::int32_t width, std::int32_t height);

/// Stretches the top left `width` by `height` pixels of CurrentBitmap over the target. With `autoscale` -1,
/// and no other value, the target is first resized to that size. A target with a border grows by the border
/// at every call. The scale modes of the target and its container are restored.
void DrawBitmap(std::int32_t width, std::int32_t height, PictureSurface& target, std::int16_t autoscale);

} // namespace varnoth::CBitmap
