#include "platform/PixelBlock.h"

#include "base/numbers.h"

namespace varnoth {

void PixelBlock::size_for(const BITMAP& info) {
    const auto last_channel = round_to_even<std::int32_t>(divide(info.bmWidthBytes, info.bmWidth) - 1.0);
    if (last_channel < 0 || info.bmWidth <= 0 || info.bmHeight <= 0) {
        fail(Failure::SubscriptOutOfRange);
    }
    const std::int32_t channels = checked_add(last_channel, 1);
    bytes_ =
        PixelBytes(ByteArray(static_cast<std::size_t>(channels) * static_cast<std::size_t>(info.bmWidth) *
                             static_cast<std::size_t>(info.bmHeight)));
    channels_ = channels;
    width_ = info.bmWidth;
    height_ = info.bmHeight;
}

void PixelBlock::shrink() {
    bytes_ = PixelBytes(ByteArray(1));
    channels_ = 1;
    width_ = 1;
    height_ = 1;
}

void PixelBlock::read(const PictureSurface& surface) {
    const PixelBytes& there = surface.bitmap().pixel_bytes();
    if (there.size() == bytes_.size()) {
        bytes_ = there;
    } else {
        surface.GetBitmapBits(bytes());
    }
}

std::shared_ptr<const Bitmap> PixelBlock::origin() const {
    std::shared_ptr<const Bitmap> origin = bytes_.origin();
    const bool fits = origin && channels_ == 4 && origin->width() == width_ && origin->height() == height_;
    return fits ? origin : nullptr;
}

void PixelBlock::write(PictureSurface& surface) const {
    surface.SetBitmapBits(bytes_.bytes());
}

} // namespace varnoth
