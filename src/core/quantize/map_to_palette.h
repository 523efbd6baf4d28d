// Maps pictures to the indices of a palette, with a choice of dithers.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "core/quantize/NearestEntry.h"

namespace varnoth {

/// The pixels of one picture, rows from the top without padding.
struct PixelView {
    std::span<const std::uint8_t> pixels; ///< 4 bytes each: blue, green, red, unused
    std::span<const std::uint8_t> opaque; ///< a byte each, 0 for transparent; empty if all are opaque
    std::int32_t width = 0;
    std::int32_t height = 0;
    /// A byte each, not 0 for pixels that keep the index of the picture before; empty if none do.
    std::span<const std::uint8_t> kept{};
    /// The indices of the picture before, one for each pixel unless none is kept.
    std::span<const std::uint8_t> indices_before{};

    bool is_opaque(std::size_t pixel) const { return opaque.empty() || opaque[pixel] != 0; }

    bool is_kept(std::size_t pixel) const { return !kept.empty() && kept[pixel] != 0; }
};

enum class Dither {
    /// The nearest entry of each pixel.
    None,
    /// Pattern dithering with a Bayer matrix of 8 by 8. An index depends on nothing but the pixel's colour
    /// and place, so that what stands still never flickers.
    Ordered,
    /// Error diffusion in the order of a blue-noise matrix instead of row by row. Errors travel a few pixels
    /// only.
    BlueNoise,
    /// Error diffusion row by row. A change can affect everything to its right and below.
    FloydSteinberg,
};

struct Dithering {
    Dither method = Dither::None;
    int strength = 100; ///< in percent; 0 is the same as no dither

    bool dithers() const { return method != Dither::None && strength > 0; }

    /// Whether the index of a pixel depends on other pixels.
    bool diffuses_errors() const { return dithers() && method != Dither::Ordered; }
};

/// Hears of the bands in which error diffusion maps a picture. Pictures of one size have the same bands, and
/// a kept pixel is in the same band as in the picture before, so that a picture can follow the one before it
/// while that is still being mapped.
class BandListener {
  public:
    virtual ~BandListener() = default;

    /// The picture before must have this band when the call returns.
    virtual void before_band(std::size_t band) = 0;

    virtual void after_band(std::size_t band) = 0;
};

/// Writes the index of each opaque pixel; indices of transparent pixels stay as they are, and their colours
/// affect no other pixel. With error diffusion, kept pixels pass on the errors that their indices make; the
/// other methods ignore `kept` and have no bands. Otherwise the same pixels give the same indices, whatever
/// was mapped before. Threads can map pictures at the same time. InvalidProcedureCall when sizes do not match
/// or the strength is not 0 to 100.
void map_to_palette(const PixelView& picture, const NearestEntry& nearest, const Dithering& dithering,
                    std::span<std::uint8_t> indices, BandListener* listener = nullptr);

/// A byte for each pixel, 1 for opaque pixels that have the same colour in the picture before. An animation
/// whose unchanged pixels keep their indices does not flicker. Empty if the sizes differ, or if fewer than a
/// sixteenth of the opaque pixels are unchanged: such a picture begins a new scene.
std::vector<std::uint8_t> unchanged_pixels(const PixelView& before, const PixelView& picture);

} // namespace varnoth
