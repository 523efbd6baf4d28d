// Where the picture readers hand over what they decoded: one picture for the whole program, made out of an
// array in the layout of a device-independent bitmap, and drawn from here into picture surfaces.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "core/image/Bitmap.h"
#include "core/image/PictureSurface.h"

namespace varnoth::CBitmap {

/// The picture last decoded, whichever reader did it: 32 bits a pixel, top row first. Null at program start
/// and after a picture that cannot be made.
extern std::shared_ptr<const Bitmap> CurrentBitmap;

/// The colour tables of the makers, one for each depth. A table keeps its contents until it is filled anew,
/// so it is filled before its maker is called.

/// Entry 0 black, entry 1 white, for CreateBitmap1.
void SetMonoColors();

/// Exactly 16, or 256, triples of red, green, blue, for CreateBitmap4 and CreateBitmap8. SubscriptOutOfRange
/// when there are fewer.
void SetColors16(std::span<const std::uint8_t> colours);
void SetColors256(std::span<const std::uint8_t> colours);

/// Whether the makers can hold a picture of that size: at least one pixel, fewer than 2 GiB at 32 bits.
bool is_possible_size(std::int32_t width, std::int64_t height);

/// The makers. `pixels` holds |height| rows, each a multiple of 4 bytes long, counted from `width` and the
/// depth: 1 bit, most significant bit leftmost; 4 bits, high nibble leftmost; 8 bits, an index; 16 bits, a
/// little-endian word of 5 bits red, green, blue; 32 bits, blue, green, red and a byte that is not used. The
/// first row is the bottom row, or the top row when either `topDown` is not 0 or `height` is negative, not
/// both. Bytes that the array lacks are 0. The result goes to CurrentBitmap: null, without a failure, for a
/// picture of no pixels or of 2 GiB and more. SubscriptOutOfRange for an array without bytes, which leaves
/// CurrentBitmap as it was.
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

/// Sizes converted by the screen's twips per pixel, taken as whole numbers. Overflow beyond 32 bits,
/// DivisionByZero for a screen of less than half a twip per pixel.
Extent PixelsToTwips(std::int32_t width, std::int32_t height);
Extent TwipsToPixels(std::int32_t width, std::int32_t height);

/// Stretches `width` by `height` pixels of CurrentBitmap over the target. With `autoscale` -1, and no other
/// value, the target first gets that size. A target with a border grows by it at every call. Both scale modes
/// stand afterwards as before.
void DrawBitmap(std::int32_t width, std::int32_t height, PictureSurface& target, std::int16_t autoscale);

} // namespace varnoth::CBitmap
