#include "core/image/PixelBlock.h"

#include "core/base/numbers.h"

namespace varnoth {

void PixelBlock::size_for(const BITMAP& info) {
    const auto last_channel = round_to_even<std::int32_t>(divide(info.bmWidthBytes, info.bmWidth) - 1.0);
    if (last_channel < 0 || info.bmWidth <= 0 || info.bmHeight <= 0) {
        fail(Failure::SubscriptOutOfRange);
    }
    const std::int32_t channels = checked_add(last_channel, 1);
    bytes_ = ByteArray(static_cast<std::size_t>(channels) * static_cast<std::size_t>(info.bmWidth) *
                       static_cast<std::size_t>(info.bmHeight));
    channels_ = channels;
    width_ = info.bmWidth;
    height_ = info.bmHeight;
}

void PixelBlock::shrink() {
    bytes_ = ByteArray(1);
    channels_ = 1;
    width_ = 1;
    height_ = 1;
}

void PixelBlock::read(const PictureSurface& surface) {
    surface.GetBitmapBits(bytes());
}

void PixelBlock::write(PictureSurface& surface) const {
    surface.SetBitmapBits(bytes_.bytes());
}

} // namespace varnoth
