// Reference implementation of the toolbox's colour counting: a linear search of the list for every pixel.
#pragma once

#include <array>
#include <cstdint>

#include "core/image/PictureSurface.h"
#include "core/image/PixelBlock.h"

namespace varnoth::reference {

struct ProcessPicture1 {
    ProcessPicture1();

    bool existe_en_pal(Colour thecolor, std::int32_t upto) const;
    bool Make_Pal_From_Pic(const PictureSurface& picture);
    bool is_more_than_256(const PictureSurface& picture);

    std::array<Colour, 256> ColorList{};

  private:
    bool PrepareBits(const PictureSurface& picture);
    Colour colour_at(std::int32_t x, std::int32_t y) const;

    BITMAP SrcInfo;
    PixelBlock SrcBits;
};

} // namespace varnoth::reference
