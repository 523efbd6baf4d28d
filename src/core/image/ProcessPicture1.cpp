#include "core/image/ProcessPicture1.h"

#include "core/image/picture_pixels.h"

namespace varnoth {

ProcessPicture1::ProcessPicture1() {
    // No picture has this size, so buffers are always allocated for the first one.
    src_info_.bmWidth = -1;
    src_info_.bmHeight = -1;
}

bool ProcessPicture1::Copy_Picture(const PictureSurface& Picture1, PictureSurface& Picture2) {
    if (Picture1.ScaleWidth() != Picture2.ScaleWidth() || Picture1.ScaleHeight() != Picture2.ScaleHeight() ||
        !PrepareBits(Picture1)) {
        return false;
    }
    ReadBits(Picture1);
    for (std::int32_t y = 0; y < src_info_.bmHeight; ++y) {
        const PixelRow source(SrcBits(), y, src_info_.bmWidth);
        PixelRow result(dst_bits_, y, src_info_.bmWidth);
        for (std::int32_t x = 0; x < src_info_.bmWidth; ++x) {
            result.set(x, source[x]);
        }
    }
    // Copies raw bytes: assumes that both surfaces have the same depth.
    WriteBits(Picture2);
    return true;
}

void ProcessPicture1::Destroy_TheBits() {
    src_bits_.shrink();
    dst_bits_.shrink();
}

bool ProcessPicture1::PrepareBits(const PictureSurface& picture) {
    // Only the size is compared, not the depth.
    if (picture.ScaleWidth() == src_info_.bmWidth && picture.ScaleHeight() == src_info_.bmHeight) {
        return true;
    }
    src_info_ = picture.description();
    dst_info_ = picture.description();
    if (src_info_.bmBitsPixel < 24) {
        src_bits_.shrink();
        dst_bits_.shrink();
        return false;
    }
    src_bits_.size_for(src_info_);
    dst_bits_.size_for(dst_info_);
    return true;
}

void ProcessPicture1::ReadBits(const PictureSurface& picture) {
    src_bits_.read(picture);
}

void ProcessPicture1::WriteBits(PictureSurface& picture) const {
    dst_bits_.write(picture);
    picture.Refresh();
}

} // namespace varnoth
