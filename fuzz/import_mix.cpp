// Imports pictures made from the input: mixes their colours into one palette and makes each picture a frame.
// If the pictures have few colours in total, all must be preserved exactly.
#include <algorithm>
#include <set>

#include "core/image/ProcessPicture1.h"
#include "core/quantize/mDither8bpp.h"
#include "core/quantize/mixpals.h"
#include "core/sprite/hlspr.h"
#include "fuzzing.h"
#include "support/sprites.h"

namespace {

using namespace varnoth;

constexpr std::int32_t largest_side = 24;
constexpr std::int32_t most_pictures = 4;
constexpr std::size_t colours_beside_black = 255;

using Pictures = std::vector<std::unique_ptr<test::TestSurface>>;

struct Transparent {
    bool picked = false;
    Colour colour = 0;
};

void reset_state() {
    test::reset_sprite();
    test::reset_mixpals();
}

void reduce(ProcessPicture1& toolbox, PictureSurface& picture) {
    if (toolbox.is_more_than_256(picture)) {
        mDither8bpp().transform_to_8bit(picture, picture);
    }
}

void import_pictures(const Pictures& pictures, const Transparent& transparent) {
    ProcessPicture1 toolbox;
    hlspr::clear_frames();
    mixpals::InitColorTable();
    for (const auto& picture : pictures) {
        reduce(toolbox, *picture);
        mixpals::AddPictureColors(*picture);
    }
    test::TestSurface sheet(1, 1);
    mixpals::DrawColorTable(sheet);
    reduce(toolbox, sheet);
    mixpals::FinalizePalette(sheet);
    if (transparent.picked) {
        mixpals::SwapTransparent(red_of(transparent.colour), green_of(transparent.colour),
                                 blue_of(transparent.colour));
    }
    for (const auto& picture : pictures) {
        hlspr::add_frame(*picture);
    }
}

bool few_colours(const Pictures& pictures) {
    std::set<Colour> all;
    for (const auto& picture : pictures) {
        const auto colours = test::colours_of(*picture);
        all.insert(colours.begin(), colours.end());
    }
    all.erase(0);
    return all.size() <= colours_beside_black;
}

void require_frames(const Pictures& pictures, bool unchanged) {
    fuzzing::require(hlspr::document().SpriteHeader.FrameCount == std::ssize(pictures),
                     "each picture becomes a frame");
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        test::TestSurface drawn(1, 1);
        auto position = static_cast<std::int16_t>(i);
        hlspr::draw_frame(position, drawn);
        fuzzing::require(!unchanged || test::colours_of(drawn) == test::colours_of(*pictures[i]),
                         "few colours are preserved");
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    reset_state();
    const fuzzing::AtEnd cleanup(reset_state);
    fuzzing::Recipe recipe(data, size);
    const Transparent transparent{recipe.byte() % 2 == 1, recipe.colour()};
    // Mostly of the size of the first one, which is the sprite's, because an import stretches all pictures.
    const bool of_one_size = recipe.byte() % 4 != 0;
    const std::int32_t depth = recipe.byte() % 8 == 0 ? 24 : 32;
    const std::array<std::int32_t, 1> depths{depth};
    Pictures pictures;
    for (std::int32_t count = recipe.between(1, most_pictures); count > 0; --count) {
        pictures.push_back(fuzzing::surface_of(recipe, largest_side, largest_side, depths));
        if (of_one_size) {
            pictures.back()->SetWidth(pictures.front()->Width());
            pictures.back()->SetHeight(pictures.front()->Height());
        }
    }
    hlspr::new_sprite(pictures.front()->bitmap().width(), pictures.front()->bitmap().height(), 2, 1);
    const bool unchanged = few_colours(pictures) && !transparent.picked && depth == 32;
    if (fuzzing::succeeds([&] { import_pictures(pictures, transparent); }) && of_one_size) {
        require_frames(pictures, unchanged);
    }
    return 0;
}
