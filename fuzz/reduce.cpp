// A picture made of the bytes is reduced to 256 colours, by a toolbox and a ditherer that have seen another
// picture before.
#include <set>

#include "colour/mDither8bpp.h"
#include "fuzzing.h"
#include "pictures/ProcessPicture1.h"

namespace {

using namespace varnoth;

constexpr std::int32_t largest_side = 40;
constexpr std::size_t most_colours = 256;

std::size_t count_colours(const PictureSurface& picture) {
    const auto colours = test::colours_of(picture);
    return std::set<Colour>(colours.begin(), colours.end()).size();
}

// A toolbox that has seen pictures of 32 bits only sees their true colours. After one of another depth it may
// take the next of that size for one of the same depth, and 24-bit rows of odd widths are shifted by their
// padding.
void reduce(PictureSurface& picture, ProcessPicture1& toolbox, bool sees_true_colours, mDither8bpp& dither) {
    const std::size_t colours = count_colours(picture);
    const std::vector<Colour> before = test::colours_of(picture);
    bool is_more = false;
    if (fuzzing::goes_through([&] { is_more = toolbox.is_more_than_256(picture); })) {
        fuzzing::require(!is_more || colours > most_colours || !sees_true_colours,
                         "a picture of 256 colours is not one of more");
        fuzzing::require(test::colours_of(picture) == before, "looking at a picture does not change it");
    }
    const std::int32_t width = picture.bitmap().width();
    const std::int32_t height = picture.bitmap().height();
    if (fuzzing::goes_through([&] { dither.transform_to_8bit(picture, picture); })) {
        fuzzing::require(count_colours(picture) <= most_colours, "at most 256 colours are left");
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
    bool sees_true_colours = true;
    for (std::int32_t pictures = recipe.between(1, 2); pictures > 0; --pictures) {
        const auto picture = fuzzing::surface_of(recipe, largest_side, largest_side, fuzzing::all_depths);
        sees_true_colours = sees_true_colours && picture->bitmap().bits_per_pixel() == 32;
        reduce(*picture, toolbox, sees_true_colours, dither);
    }
    return 0;
}
