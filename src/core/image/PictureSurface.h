// A picture area, on the screen or off it. The forms, readers, writers and frame functions pass pixels to
// each other as surfaces. Member names are those of the picture areas of the forms.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

#include "core/image/Bitmap.h"
#include "core/image/DrawingContext.h"
#include "core/image/Picture.h"

namespace varnoth {

/// Units of sizes.
inline constexpr std::int16_t ScaleTwips = 1;
inline constexpr std::int16_t ScalePixels = 3;

/// The resolution of the screen.
struct Screen {
    double TwipsPerPixelX = 15;
    double TwipsPerPixelY = 15;
};

/// The program's one screen, 96 dpi unless set otherwise.
Screen& screen();

/// The form or control that contains a surface. Its scale mode is the unit of the surface's outer size.
struct SurfaceContainer {
    std::int16_t ScaleMode = ScalePixels;
};

class PictureSurface {
  public:
    /// The initial properties. Sizes are inner sizes in pixels; the border has the same thickness, in pixels,
    /// on all sides. Without a parent the surface is a top-level form, whose outer size is in twips.
    struct Design {
        SurfaceContainer* parent = nullptr;
        std::int32_t width = 0;
        std::int32_t height = 0;
        std::int32_t bits_per_pixel = 32; ///< 32, 24 or 16
        std::int32_t border = 0;
        Colour back_colour = 0;
    };

    explicit PictureSurface(const Design& design);

    PictureSurface(const PictureSurface&) = delete;
    PictureSurface& operator=(const PictureSurface&) = delete;

    /// Null for a top-level form.
    SurfaceContainer* Parent() const { return parent_; }

    /// The unit of ScaleWidth and ScaleHeight: ScaleTwips or ScalePixels.
    std::int16_t ScaleMode = ScalePixels;

    /// Whether SetPicture resizes the surface to the picture.
    bool AutoSize = false;

    /// The inner size in the unit of ScaleMode.
    double ScaleWidth() const;
    double ScaleHeight() const;

    /// The outer size, including the border, in the container's unit. Resizing keeps the pixels at the top
    /// left and fills new areas with the background colour. InvalidPropertyValue for a negative size,
    /// Overflow and OutOfMemory as for bitmaps.
    double Width() const;
    double Height() const;
    void SetWidth(double width);
    void SetHeight(double height);

    Colour BackColor() const { return back_colour_; }

    /// Sets the background colour and fills the surface with it.
    void SetBackColor(Colour colour);

    /// Fills the surface with the background colour.
    void Cls();

    /// Notifies on_change that the pixels have changed.
    void Refresh();

    /// Fills a rectangle, both corners included.
    void Line(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, Colour colour);

    /// The colour of pixel (x, y), or no_colour outside the surface.
    Colour Point(std::int32_t x, std::int32_t y) const { return bitmap_.pixel(x, y); }

    /// Sets one pixel. Does nothing outside the surface.
    void PSet(std::int32_t x, std::int32_t y, Colour colour) { bitmap_.set_pixel(x, y, colour); }

    DrawingContext& hDC() { return context_; }

    /// The bitmap behind the surface.
    const Bitmap& bitmap() const { return bitmap_; }

    Bitmap& bitmap() { return bitmap_; }

    /// The size and depth of the bitmap, as GetObjectA reports them.
    BITMAP description() const { return bitmap_.description(); }

    /// Copy the raw bytes of the pixels, top row first, as many as both sides have. Return their number.
    std::size_t GetBitmapBits(std::span<std::uint8_t> target) const;
    std::size_t SetBitmapBits(std::span<const std::uint8_t> source);

    /// A copy of the pixels.
    Picture Image() const;

    /// Clears the surface and draws a picture at the top left in its own size. With AutoSize, first resizes
    /// the surface to the picture. An empty picture only clears.
    void SetPicture(const Picture& picture);

    /// Called by Refresh and after every resize. The widget that shows the surface sets it.
    std::function<void()> on_change;

    // Interface: not used by the editor itself.

    /// The picture of the last SetPicture.
    const Picture& picture() const { return picture_; }

  private:
    std::int16_t container_mode() const { return parent_ == nullptr ? ScaleTwips : parent_->ScaleMode; }

    void resize(std::int32_t width, std::int32_t height);

    SurfaceContainer* parent_;
    std::int32_t border_;
    Colour back_colour_;
    Bitmap bitmap_;
    DrawingContext context_;
    Picture picture_;
};

} // namespace varnoth
