#include "reference/ProcessPicture1.h"

#include <cstddef>

#include "core/services/Services.h"

namespace varnoth::reference {

ProcessPicture1::ProcessPicture1() {
    SrcInfo.bmWidth = -1;
    SrcInfo.bmHeight = -1;
}

bool ProcessPicture1::existe_en_pal(Colour thecolor, std::int32_t upto) const {
    for (std::int32_t i = 0; i <= upto && i <= 255; ++i) {
        if (ColorList[static_cast<std::size_t>(i)] == thecolor) {
            return true;
        }
    }
    return false;
}

bool ProcessPicture1::Make_Pal_From_Pic(const PictureSurface& picture) {
    if (!PrepareBits(picture)) {
        return false;
    }
    SrcBits.read(picture);
    std::int32_t count = 0;
    for (std::int32_t y = 0; y < SrcInfo.bmHeight; ++y) {
        for (std::int32_t x = 0; x < SrcInfo.bmWidth; ++x) {
            if (count > 255) {
                return true;
            }
            const Colour colour = colour_at(x, y);
            if (!existe_en_pal(colour, count)) {
                ColorList[static_cast<std::size_t>(count)] = colour;
                ++count;
            }
        }
    }
    return true;
}

bool ProcessPicture1::is_more_than_256(const PictureSurface& picture) {
    if (!PrepareBits(picture)) {
        return false;
    }
    SrcBits.read(picture);
    std::int32_t count = 0;
    std::int32_t misses = 0;
    for (std::int32_t y = 0; y < SrcInfo.bmHeight && misses < 260; ++y) {
        yield_to_events();
        for (std::int32_t x = 0; x < SrcInfo.bmWidth && misses < 260; ++x) {
            yield_to_events();
            const Colour colour = colour_at(x, y);
            if (existe_en_pal(colour, count)) {
                continue;
            }
            if (count < 256) {
                ColorList[static_cast<std::size_t>(count)] = colour;
                ++count;
            }
            ++misses;
        }
    }
    return misses >= 257;
}

bool ProcessPicture1::PrepareBits(const PictureSurface& picture) {
    if (picture.ScaleWidth() == SrcInfo.bmWidth && picture.ScaleHeight() == SrcInfo.bmHeight) {
        return true;
    }
    SrcInfo = picture.description();
    if (SrcInfo.bmBitsPixel < 24) {
        SrcBits.shrink();
        return false;
    }
    SrcBits.size_for(SrcInfo);
    return true;
}

Colour ProcessPicture1::colour_at(std::int32_t x, std::int32_t y) const {
    return SrcBits.at(2, x, y) + 256 * SrcBits.at(1, x, y) + 65536 * SrcBits.at(0, x, y);
}

} // namespace varnoth::reference
