// The filters of the toolbox. Each computes a pixel of the result from one pixel of the source; none yields.
#include <algorithm>
#include <cstdint>

#include "core/base/numbers.h"
#include "core/image/ProcessPicture1.h"
#include "core/image/picture_pixels.h"

namespace varnoth {

namespace {

Pixel same(const Pixel& pixel) {
    return pixel;
}

// Blue must be added last and no multiply-add may be fused, because the last bit of the sum decides exact
// halves; this file is compiled with -ffp-contract=off.
Pixel grey_of(const Pixel& pixel) {
    const double red = pixel.red * 0.222;
    const double green = pixel.green * 0.707;
    const double blue = pixel.blue * 0.071;
    const auto level = round_to_even<std::uint8_t>(red + green + blue);
    return {level, level, level};
}

std::uint8_t shifted(std::uint8_t value, std::int16_t shift) {
    const std::int16_t level = checked_add(shift, value);
    return static_cast<std::uint8_t>(std::clamp<std::int16_t>(level, 0, 255));
}

Pixel shifted(const Pixel& pixel, std::int16_t red, std::int16_t green, std::int16_t blue) {
    return {shifted(pixel.blue, blue), shifted(pixel.green, green), shifted(pixel.red, red)};
}

std::uint8_t brightened(std::uint8_t value) {
    return static_cast<std::uint8_t>(std::min(value + 50, 255));
}

} // namespace

template <typename Rule>
bool ProcessPicture1::filter(PictureSurface& picture, Mirror mirror, Rule rule) {
    if (!PrepareBits(picture)) {
        return false;
    }
    ReadBits(picture);
    const std::int32_t width = src_info_.bmWidth;
    const std::int32_t height = src_info_.bmHeight;
    for (std::int32_t y = 0; y < height; ++y) {
        const PixelRow source(SrcBits(), mirror == Mirror::Rows ? height - 1 - y : y, width);
        PixelRow result(dst_bits_, y, width);
        for (std::int32_t x = 0; x < width; ++x) {
            result.set(x, rule(source[mirror == Mirror::Columns ? width - 1 - x : x]));
        }
    }
    WriteBits(picture);
    return true;
}

bool ProcessPicture1::Flip_Picture_Vertical(PictureSurface& picture) {
    return filter(picture, Mirror::Rows, same);
}

bool ProcessPicture1::Make_Picture_GreyScale(PictureSurface& picture) {
    return filter(picture, Mirror::None, grey_of);
}

bool ProcessPicture1::Make_Picture_GreyScale_PureRGB(PictureSurface& picture, bool withRed, bool withGreen,
                                                     bool withBlue) {
    return filter(picture, Mirror::None, [=](const Pixel& pixel) {
        const bool kept = (withRed && pixel == pure_red) || (withGreen && pixel == pure_green) ||
                          (withBlue && pixel == pure_blue);
        return kept ? pixel : grey_of(pixel);
    });
}

bool ProcessPicture1::Make_Picture_Negative(PictureSurface& picture) {
    return filter(picture, Mirror::None, [](const Pixel& pixel) {
        const auto negative = [](std::uint8_t value) { return static_cast<std::uint8_t>(255 - value); };
        return Pixel{negative(pixel.blue), negative(pixel.green), negative(pixel.red)};
    });
}

bool ProcessPicture1::Flip_Picture_Horizontal(PictureSurface& picture) {
    return filter(picture, Mirror::Columns, same);
}

bool ProcessPicture1::Change_RGB_to_BGR(PictureSurface& picture) {
    return filter(picture, Mirror::None,
                  [](const Pixel& in) { return Pixel{.blue = in.red, .green = in.green, .red = in.blue}; });
}

bool ProcessPicture1::Change_RGB_to_BRG(PictureSurface& picture) {
    return filter(picture, Mirror::None,
                  [](const Pixel& in) { return Pixel{.blue = in.green, .green = in.red, .red = in.blue}; });
}

bool ProcessPicture1::Change_RGB_to_GBR(PictureSurface& picture) {
    return filter(picture, Mirror::None,
                  [](const Pixel& in) { return Pixel{.blue = in.red, .green = in.blue, .red = in.green}; });
}

bool ProcessPicture1::Change_RGB_to_GRB(PictureSurface& picture) {
    return filter(picture, Mirror::None,
                  [](const Pixel& in) { return Pixel{.blue = in.blue, .green = in.red, .red = in.green}; });
}

bool ProcessPicture1::Change_RGB_to_RBG(PictureSurface& picture) {
    return filter(picture, Mirror::None,
                  [](const Pixel& in) { return Pixel{.blue = in.green, .green = in.blue, .red = in.red}; });
}

bool ProcessPicture1::Make_ColorShift(PictureSurface& picture, std::int16_t Rval, std::int16_t Gval,
                                      std::int16_t Bval) {
    return filter(picture, Mirror::None,
                  [=](const Pixel& pixel) { return shifted(pixel, Rval, Gval, Bval); });
}

bool ProcessPicture1::Make_BlaBla(PictureSurface& picture) {
    return filter(picture, Mirror::None, [](const Pixel& pixel) {
        const std::uint8_t blue = is_grey(pixel) ? std::uint8_t{0} : brightened(pixel.blue);
        return Pixel{blue, brightened(pixel.green), brightened(pixel.red)};
    });
}

bool ProcessPicture1::Make_ColorShift_bypass(PictureSurface& picture, std::int16_t Rval, std::int16_t Gval,
                                             std::int16_t Bval, Colour change_from, Colour change_to) {
    return filter(picture, Mirror::None, [=](const Pixel& pixel) {
        return colour_of(pixel) == change_from ? SplitColor(change_to) : shifted(pixel, Rval, Gval, Bval);
    });
}

} // namespace varnoth
