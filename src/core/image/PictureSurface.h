// An off-screen or on-screen picture area: the form in which dialogs, readers, writers and frame routines
// hold and exchange pixels. Member names are those of the picture areas of the forms.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

#include "core/image/Bitmap.h"
#include "core/image/DrawingContext.h"
#include "core/image/Picture.h"

namespace varnoth {

/// Units of a surface's sizes.
inline constexpr std::int16_t ScaleTwips = 1;
inline constexpr std::int16_t ScalePixels = 3;

/// What the program asks of the screen.
struct Screen {
    double TwipsPerPixelX = 15;
    double TwipsPerPixelY = 15;
};

/// The screen's figures; the window layer may set them at start.
Screen& screen();

/// What holds a surface: its unit is the one of the surface's outer size.
struct SurfaceContainer {
    std::int16_t ScaleMode = ScalePixels;
};

class PictureSurface {
  public:
    /// How a surface is made. Sizes are inner sizes in pixels, the border is a thickness in pixels on every
    /// side; without a parent the surface is a top-level form, whose outer size is in twips.
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

    /// Unit of ScaleWidth and ScaleHeight: ScaleTwips or ScalePixels.
    std::int16_t ScaleMode = ScalePixels;

    /// Whether a picture that is set gives the surface its size.
    bool AutoSize = false;

    /// Inner size in the surface's own unit.
    double ScaleWidth() const;
    double ScaleHeight() const;

    /// Outer size, border included, in the container's unit. A surface that gets a new size keeps its content
    /// at the top left; what is new is background. InvalidPropertyValue for a negative size, Overflow and
    /// OutOfMemory as for bitmaps.
    double Width() const;
    double Height() const;
    void SetWidth(double width);
    void SetHeight(double height);

    Colour BackColor() const { return back_colour_; }

    /// Also clears the surface to the colour.
    void SetBackColor(Colour colour);

    /// Erases to the background colour.
    void Cls();

    /// Tells whoever shows the surface that its content changed.
    void Refresh();

    /// A filled rectangle, both corners included.
    void Line(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, Colour colour);

    /// The colour at x, y in pixels, no_colour outside.
    Colour Point(std::int32_t x, std::int32_t y) const { return bitmap_.pixel(x, y); }

    /// Plots one pixel; outside, it is lost.
    void PSet(std::int32_t x, std::int32_t y, Colour colour) { bitmap_.set_pixel(x, y, colour); }

    DrawingContext& hDC() { return context_; }

    /// The bitmap behind the surface.
    const Bitmap& bitmap() const { return bitmap_; }

    Bitmap& bitmap() { return bitmap_; }

    /// The bitmap's description, as GetObjectA tells it.
    BITMAP description() const { return bitmap_.description(); }

    /// The raw pixels, top row first: copies as many bytes as both sides have and returns how many.
    std::size_t GetBitmapBits(std::span<std::uint8_t> target) const;
    std::size_t SetBitmapBits(std::span<const std::uint8_t> source);

    /// A copy of what is drawn.
    Picture Image() const;

    /// The picture last set.
    const Picture& picture() const { return picture_; }

    /// Shows a picture at the top left, in its own size, over the background; with AutoSize the surface
    /// takes that size first. An empty picture only clears.
    void SetPicture(const Picture& picture);

    /// Called by Refresh and after every change of size; set by whoever shows the surface.
    std::function<void()> on_change;

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
