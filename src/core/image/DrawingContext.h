// Drawing contexts: a selected bitmap, and rectangle copies between two contexts.
#pragma once

#include <cstdint>

#include "core/image/Bitmap.h"

namespace varnoth {

/// Raster operation: the source replaces the destination. The only one supported.
inline constexpr std::uint32_t SRCCOPY = 0xCC0020;

/// Stretch mode: rows and columns are dropped or repeated, never blended.
inline constexpr std::int32_t COLORONCOLOR = 3;

/// A context does not own its bitmap, which must outlive its selection.
class DrawingContext {
  public:
    DrawingContext() = default;

    explicit DrawingContext(Bitmap* bitmap) : bitmap_(bitmap) {}

    /// The selected bitmap, null when there is none.
    Bitmap* bitmap() { return bitmap_; }

    const Bitmap* bitmap() const { return bitmap_; }

    /// Selects another bitmap and returns the previous one.
    Bitmap* select(Bitmap* bitmap);

    /// Sets the mode and returns the previous one. Every mode copies by nearest neighbour.
    std::int32_t set_stretch_mode(std::int32_t mode);

  private:
    Bitmap* bitmap_ = nullptr;
    std::int32_t stretch_mode_ = COLORONCOLOR;
};

/// A rectangle of pixels, counted from the top left as displayed.
struct Rectangle {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;

    friend constexpr bool operator==(const Rectangle&, const Rectangle&) = default;
};

inline Rectangle whole_of(const Bitmap& bitmap) {
    return {0, 0, bitmap.width(), bitmap.height()};
}

/// Copies a rectangle of the source to (x, y) of the destination, clipped to both bitmaps. Between bitmaps of
/// equal depth and colour table, copies indices; otherwise copies colours, to the nearest entry if the
/// destination has a colour table. Returns 1, or 0 when a context has no bitmap or the operation is not
/// SRCCOPY.
std::int32_t bit_blt(DrawingContext& destination, std::int32_t x, std::int32_t y, std::int32_t width,
                     std::int32_t height, const DrawingContext& source, std::int32_t source_x,
                     std::int32_t source_y, std::uint32_t operation);

/// The same with scaling by nearest neighbour at pixel centres, in integer arithmetic:
/// source index = ((2 * destination index + 1) * source size - 1) / (2 * destination size).
/// A rectangle with a negative width or height extends from its x or y towards lower coordinates; if exactly
/// one of the two does, that axis is mirrored. A destination side of 0 draws nothing.
std::int32_t stretch_blt(DrawingContext& destination, const Rectangle& to, const DrawingContext& source,
                         const Rectangle& from, std::uint32_t operation);

/// stretch_blt() for two bitmaps without contexts. They may be the same one.
void stretch_pixels(Bitmap& target, const Rectangle& to, const Bitmap& picture, const Rectangle& from);

/// Copies colour-table entries from `first` on to `entries` and returns their number, 0 above 8 bits.
std::int32_t get_colour_table(const DrawingContext& context, std::int32_t first, std::span<RGBQUAD> entries);

/// Sets colour-table entries from `first` on and returns their number. Entries beyond the table are dropped.
std::int32_t set_colour_table(DrawingContext& context, std::int32_t first, std::span<const RGBQUAD> entries);

} // namespace varnoth
