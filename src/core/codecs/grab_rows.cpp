#include "core/codecs/grab_rows.h"

#include <cstddef>
#include <cstring>
#include <utility>

#include "core/base/numbers.h"
#include "core/image/DrawingContext.h"

namespace varnoth {

PixelSize size_in_pixels(PictureSurface& picture) {
    SurfaceContainer* parent = picture.Parent();
    const std::int16_t parent_mode =
        parent == nullptr ? ScalePixels : std::exchange(parent->ScaleMode, ScalePixels);
    const std::int16_t mode = std::exchange(picture.ScaleMode, ScalePixels);
    const PixelSize size{round_to_even<std::int32_t>(picture.ScaleWidth()),
                         round_to_even<std::int32_t>(picture.ScaleHeight())};
    picture.ScaleMode = mode;
    if (parent != nullptr) {
        parent->ScaleMode = parent_mode;
    }
    return size;
}

std::int32_t stride_of_24_bits(std::int32_t width) {
    const std::int32_t bytes = checked_multiply(width, 3);
    return bytes % 4 == 0 ? bytes : checked_multiply(bytes / 4 + 1, 4);
}

ByteArray grab_rows(PictureSurface& picture, const PixelSize& size, FirstRow first) {
    const std::int32_t stride = stride_of_24_bits(size.width);
    const std::int32_t count = checked_multiply(stride, size.height);
    if (count <= 0) {
        fail(Failure::SubscriptOutOfRange);
    }
    Bitmap copy(size.width, size.height, 24, Bitmap::Rows::Section);
    DrawingContext context(&copy);
    bit_blt(context, 0, 0, size.width, size.height, picture.hDC(), 0, 0, SRCCOPY);

    const auto row_bytes = static_cast<std::size_t>(stride);
    ByteArray rows(static_cast<std::size_t>(count));
    for (std::int32_t y = 0; y < size.height; ++y) {
        const std::int32_t from = first == FirstRow::Top ? y : size.height - 1 - y;
        std::memcpy(rows.data() + static_cast<std::size_t>(y) * row_bytes, copy.row(from), row_bytes);
    }
    return rows;
}

} // namespace varnoth
