// What the render modes make of pictures with an alpha channel: the pixels that the quantizer maps, and the
// indices of those that it does not.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "core/base/ByteArray.h"
#include "core/image/Colour.h"
#include "core/image/RgbaPicture.h"
#include "core/quantize/NearestEntry.h"
#include "core/quantize/map_to_palette.h"
#include "core/sprite/RenderMode.h"
#include "core/sprite/SpriteDocument.h"

namespace varnoth {

/// What makes a pixel of a picture transparent.
struct Transparency {
    enum class By {
        Alpha,  ///< the alpha channel
        Key,    ///< having a certain colour; the alpha channel is ignored
        Corner, ///< having the colour of the picture's top left pixel; likewise
        None,   ///< nothing; likewise
    };

    By by = By::Alpha;
    std::uint32_t colour = 0; ///< for By::Key: red, green, blue from bit 23 down
};

/// Changes the alpha channel accordingly.
void set_alpha(RgbaPicture& picture, const Transparency& transparency);

/// A picture as the quantizer takes it.
struct FramePixels {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::vector<std::uint8_t> pixels; ///< 4 bytes each: blue, green, red, unused
    std::vector<std::uint8_t> opaque; ///< one byte per pixel, 0 for transparent; empty when all are opaque

    PixelView view() const { return {pixels, opaque, width, height}; }
};

/// In AlphaTest, pixels from alpha 128 on are opaque and keep their colours. Other modes have no transparent
/// pixels, so that the picture is blended over black.
FramePixels frame_pixels(const RgbaPicture& picture, RenderMode mode);

/// The picture of a frame; in AlphaTest, transparent_index is transparent. `indices` has one byte per pixel.
RgbaPicture picture_of_frame(std::span<const std::uint8_t> indices, std::int32_t width, std::int32_t height,
                             const PaletteRecord& palette, RenderMode mode);

/// The number of palette entries that opaque pixels may have: all but transparent_index in AlphaTest.
std::size_t usable_entries(RenderMode mode);

/// The palette of a sprite with these entries first, of which there are at most 256. The others are black,
/// but in AlphaTest the last one is blue, which marks transparent pixels where the mode is ignored.
PaletteRecord palette_record(std::span<const RGBQUAD> entries, RenderMode mode);

/// Maps pictures to a palette. Threads can share a mapper. An entry is the position of a colour among those
/// that the mapper uses; entries are mapped to indices when no other frame needs them any more.
class FrameMapper {
  public:
    /// 1 to 256 entries; opaque pixels never get transparent_index in AlphaTest. Of equal entries, only the
    /// first is used: dithers judge by the distances between entries how far errors may travel. The number of
    /// threads is that of the construction.
    FrameMapper(std::span<const RGBQUAD> palette, RenderMode mode, std::size_t threads = 1);

    /// The index of each pixel; transparent_index for transparent ones.
    ByteArray indices(const FramePixels& picture, const Dithering& dithering) const;

    /// Sets the entry of each pixel; transparent_index for transparent ones. `kept` are the pixels that have
    /// the entry of the frame before; see map_to_palette().
    void map(const FramePixels& picture, const Dithering& dithering, std::span<const std::uint8_t> kept,
             std::span<const std::uint8_t> entries_before, std::span<std::uint8_t> entries,
             BandListener* listener = nullptr) const;

    /// Replaces the entries of a frame by its indices.
    void to_indices(std::span<std::uint8_t> entries) const;

  private:
    FrameMapper(std::span<const RGBQUAD> palette, const std::vector<std::uint8_t>& distinct,
                std::size_t threads);

    std::array<std::uint8_t, 256> index_of_{}; // by entry, and of transparent_index
    NearestEntry nearest_;
};

// IndexAlpha draws every pixel in the colour of entry 255, with its index as alpha.

/// What must be known of all pictures before one becomes a frame of an IndexAlpha sprite.
struct AlphaSummary {
    bool has_alpha = false; ///< whether any pixel is not opaque
    std::uint64_t weight = 0;
    std::uint64_t red = 0; ///< sums, weighted by alpha
    std::uint64_t green = 0;
    std::uint64_t blue = 0;

    void add(const RgbaPicture& picture);
    void add(const AlphaSummary& other);

    /// The mean of the visible colours; white for pictures without alpha, whose brightness becomes the index.
    PaletteColour colour() const;
};

/// The indices: the alpha channel if `from_alpha`, else the brightness, reduced by the alpha of borders.
ByteArray alpha_indices(const RgbaPicture& picture, bool from_alpha);

/// A ramp from black to the colour: drawn opaquely, it looks as IndexAlpha does over black.
PaletteRecord alpha_palette(const PaletteColour& colour);

} // namespace varnoth
