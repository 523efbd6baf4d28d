// Drawing contexts: a bitmap to draw on or copy from, and the rectangle copies between two of them.
#pragma once

#include <cstdint>

#include "core/image/Bitmap.h"

namespace varnoth {

/// Raster operation of the copies: the source replaces the destination. It is the only one there is.
inline constexpr std::uint32_t SRCCOPY = 0xCC0020;

/// Stretch mode in which rows and columns are dropped or repeated, never blended.
inline constexpr std::int32_t COLORONCOLOR = 3;

/// A context does not own its bitmap; the bitmap must outlive its selection.
class DrawingContext {
  public:
    DrawingContext() = default;

    explicit DrawingContext(Bitmap* bitmap) : bitmap_(bitmap) {}

    /// The bitmap drawn on, null when none is selected.
    Bitmap* bitmap() { return bitmap_; }

    const Bitmap* bitmap() const { return bitmap_; }

    /// Selects another bitmap and returns the one before.
    Bitmap* select(Bitmap* bitmap);

    /// The mode is kept for whoever asks; every mode copies by nearest neighbour.
    std::int32_t stretch_mode() const { return stretch_mode_; }

    /// Sets the mode and returns the one before.
    std::int32_t set_stretch_mode(std::int32_t mode);

  private:
    Bitmap* bitmap_ = nullptr;
    std::int32_t stretch_mode_ = COLORONCOLOR;
};

/// A rectangle of pixels, counted from the top left as seen.
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

/// Copies a rectangle of the source's pixels to (x, y) of the destination. What lies outside either bitmap is
/// left as it is. Bitmaps of equal depth and colour table exchange their indices, others their colours, to
/// the nearest entry where the destination has a colour table. Returns 1, or 0 when a context has no bitmap
/// or the operation is not SRCCOPY.
std::int32_t bit_blt(DrawingContext& destination, std::int32_t x, std::int32_t y, std::int32_t width,
                     std::int32_t height, const DrawingContext& source, std::int32_t source_x,
                     std::int32_t source_y, std::uint32_t operation);

/// The same with a change of size by nearest neighbour at pixel centres:
/// source index = ((2 * destination index + 1) * source size - 1) / (2 * destination size), in integers.
/// A negative width or height in exactly one of the rectangles mirrors that axis; the rectangle then extends
/// from its x or y towards lower coordinates. A destination side of 0 draws nothing.
std::int32_t stretch_blt(DrawingContext& destination, const Rectangle& to, const DrawingContext& source,
                         const Rectangle& from, std::uint32_t operation);

/// The copy of stretch_blt between two bitmaps without contexts. They may be the same one.
void stretch_pixels(Bitmap& target, const Rectangle& to, const Bitmap& picture, const Rectangle& from);

/// Copies colour-table entries from `first` on into `entries` and returns how many there were. A bitmap of
/// more than 8 bits has none.
std::int32_t get_colour_table(const DrawingContext& context, std::int32_t first, std::span<RGBQUAD> entries);

/// The reverse; entries beyond the table are dropped.
std::int32_t set_colour_table(DrawingContext& context, std::int32_t first, std::span<const RGBQUAD> entries);

} // namespace varnoth
