#include "core/image/PictureSurface.h"

#include <algorithm>
#include <utility>

#include "core/base/numbers.h"

namespace varnoth {

namespace {

double in_unit(std::int32_t pixels, std::int16_t mode, double twips_per_pixel) {
    return mode == ScaleTwips ? pixels * twips_per_pixel : pixels;
}

std::int32_t in_pixels(double size, std::int16_t mode, double twips_per_pixel) {
    if (!(size >= 0)) {
        fail(Failure::InvalidPropertyValue);
    }
    return round_to_even<std::int32_t>(mode == ScaleTwips ? divide(size, twips_per_pixel) : size);
}

} // namespace

Screen& screen() {
    static Screen the_screen;
    return the_screen;
}

PictureSurface::PictureSurface(const Design& design)
    : parent_(design.parent),
      border_(design.border),
      back_colour_(design.back_colour),
      bitmap_(design.width, design.height, design.bits_per_pixel, Bitmap::Rows::Surface),
      context_(&bitmap_) {
    if (back_colour_ != 0) {
        Cls();
    }
}

double PictureSurface::ScaleWidth() const {
    return in_unit(bitmap_.width(), ScaleMode, screen().TwipsPerPixelX);
}

double PictureSurface::ScaleHeight() const {
    return in_unit(bitmap_.height(), ScaleMode, screen().TwipsPerPixelY);
}

double PictureSurface::Width() const {
    return in_unit(bitmap_.width() + 2 * border_, container_mode(), screen().TwipsPerPixelX);
}

double PictureSurface::Height() const {
    return in_unit(bitmap_.height() + 2 * border_, container_mode(), screen().TwipsPerPixelY);
}

void PictureSurface::SetWidth(double width) {
    const std::int32_t outer = in_pixels(width, container_mode(), screen().TwipsPerPixelX);
    resize(std::max(outer - 2 * border_, 0), bitmap_.height());
}

void PictureSurface::SetHeight(double height) {
    const std::int32_t outer = in_pixels(height, container_mode(), screen().TwipsPerPixelY);
    resize(bitmap_.width(), std::max(outer - 2 * border_, 0));
}

void PictureSurface::SetBackColor(Colour colour) {
    back_colour_ = colour;
    Cls();
}

void PictureSurface::Cls() {
    bitmap_.fill(translate_colour(back_colour_));
}

void PictureSurface::Refresh() {
    if (on_change) {
        on_change();
    }
}

void PictureSurface::Line(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, Colour colour) {
    bitmap_.fill_rectangle(x1, y1, x2, y2, translate_colour(colour));
}

std::size_t PictureSurface::GetBitmapBits(std::span<std::uint8_t> target) const {
    const std::size_t count = std::min(target.size(), bitmap_.bytes().size());
    std::copy_n(bitmap_.bytes().begin(), count, target.begin());
    return count;
}

std::size_t PictureSurface::SetBitmapBits(std::span<const std::uint8_t> source) {
    const std::size_t count = std::min(source.size(), bitmap_.bytes().size());
    std::copy_n(source.begin(), count, bitmap_.bytes().begin());
    return count;
}

Picture PictureSurface::Image() const {
    return make_picture(bitmap_);
}

void PictureSurface::SetPicture(const Picture& picture) {
    const Picture kept = picture; // `picture` may refer to the surface's own
    if (AutoSize && kept.bitmap) {
        resize(kept.bitmap->width(), kept.bitmap->height()); // the picture then covers every pixel
    } else {
        Cls();
    }
    if (kept.bitmap) {
        const Rectangle whole{0, 0, kept.bitmap->width(), kept.bitmap->height()};
        stretch_pixels(bitmap_, whole, *kept.bitmap, whole);
    }
    picture_ = kept;
    Refresh();
}

void PictureSurface::resize(std::int32_t width, std::int32_t height) {
    if (width == bitmap_.width() && height == bitmap_.height()) {
        return;
    }
    Bitmap resized(width, height, bitmap_.bits_per_pixel(), Bitmap::Rows::Surface);
    if (back_colour_ != 0) {
        resized.fill(translate_colour(back_colour_));
    }
    const std::size_t shared_row = static_cast<std::size_t>(std::min(width, bitmap_.width())) *
                                   static_cast<std::size_t>(bitmap_.bits_per_pixel()) / 8;
    for (std::int32_t y = 0; y < std::min(height, bitmap_.height()); ++y) {
        // Not memcpy: a row without bytes may be a null pointer.
        std::copy_n(std::as_const(bitmap_).row(y), shared_row, resized.row(y));
    }
    bitmap_ = std::move(resized);
    Refresh();
}

} // namespace varnoth
