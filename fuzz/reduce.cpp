// Reduces a picture made from the input to 256 colours, with a toolbox and a ditherer that may have processed
// another picture before.
#include <set>

#include "core/image/ProcessPicture1.h"
#include "core/quantize/mDither8bpp.h"
#include "fuzzing.h"

namespace {

using namespace varnoth;

constexpr std::int32_t largest_side = 40;
constexpr std::size_t most_colours = 256;

std::size_t count_colours(const PictureSurface& picture) {
    const auto colours = test::colours_of(picture);
    return std::set<Colour>(colours.begin(), colours.end()).size();
}

// A toolbox that has processed only 32-bit pictures counts exactly. After one of another depth, it may read
// the next picture of that size with the wrong depth, and the padding of 24-bit rows of odd width shifts the
// pixels.
void reduce(PictureSurface& picture, ProcessPicture1& toolbox, bool counts_exactly, mDither8bpp& dither) {
    const std::size_t colours = count_colours(picture);
    const std::vector<Colour> before = test::colours_of(picture);
    bool is_more = false;
    if (fuzzing::succeeds([&] { is_more = toolbox.is_more_than_256(picture); })) {
        fuzzing::require(!is_more || colours > most_colours || !counts_exactly,
                         "256 colours are not counted as more");
        fuzzing::require(test::colours_of(picture) == before, "counting colours does not change the picture");
    }
    const std::int32_t width = picture.bitmap().width();
    const std::int32_t height = picture.bitmap().height();
    if (fuzzing::succeeds([&] { dither.transform_to_8bit(picture, picture); })) {
        fuzzing::require(count_colours(picture) <= most_colours, "at most 256 colours remain");
        fuzzing::require(picture.bitmap().width() == width && picture.bitmap().height() == height,
                         "a reduced picture keeps its size");
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzzing::Recipe recipe(data, size);
    ProcessPicture1 toolbox;
    mDither8bpp dither;
    dither.DitherMode = recipe.between(mDither8bpp::HalftoneMode, mDither8bpp::OptimalMode);
    bool counts_exactly = true;
    for (std::int32_t pictures = recipe.between(1, 2); pictures > 0; --pictures) {
        const auto picture = fuzzing::surface_of(recipe, largest_side, largest_side, fuzzing::all_depths);
        counts_exactly = counts_exactly && picture->bitmap().bits_per_pixel() == 32;
        reduce(*picture, toolbox, counts_exactly, dither);
    }
    return 0;
}
