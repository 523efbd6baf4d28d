// Saves and loads a sprite made from the input; it must be the same, with its frames in display order.
#include <algorithm>

#include "core/sprite/hlspr.h"
#include "fuzzing.h"

namespace {

using namespace varnoth;

constexpr std::int32_t largest_side = 40;
constexpr std::int32_t most_frames = 24;

ByteArray frame_of(fuzzing::Recipe& recipe, std::size_t size) {
    ByteArray frame(size);
    std::ranges::copy(recipe.take(size), frame.data());
    return frame;
}

void make_sprite(fuzzing::Recipe& recipe) {
    const std::int32_t width = recipe.between(1, largest_side);
    const std::int32_t height = recipe.between(1, largest_side);
    const std::int32_t sprite_type = recipe.number();
    hlspr::new_sprite(width, height, sprite_type, recipe.number());
    SpriteDocument& sprite = hlspr::document();
    sprite.FrameHeader.FrameType = recipe.number();
    const std::int32_t frames = recipe.between(0, most_frames);
    sprite.SpriteHeader.FrameCount = frames;
    for (PaletteColour& colour : sprite.Palette.Colours) {
        colour = {recipe.byte(), recipe.byte(), recipe.byte()};
    }
    sprite.FrameStore.clear();
    sprite.FrameOrder.clear();
    for (std::int32_t i = 0; i < frames; ++i) {
        // Two positions may show the same frame, which is then saved twice.
        sprite.FrameOrder.push_back(static_cast<std::int16_t>(recipe.between(0, frames - 1)));
        sprite.FrameStore.push_back(frame_of(recipe, static_cast<std::size_t>(width * height)));
    }
}

void require_same(const SpriteDocument& before, const SpriteDocument& after) {
    fuzzing::require(to_bytes(after.SpriteHeader) == to_bytes(before.SpriteHeader), "the header is the same");
    fuzzing::require(to_bytes(after.Palette) == to_bytes(before.Palette), "the palette is the same");
    fuzzing::require(to_bytes(after.FrameHeader) == to_bytes(before.FrameHeader),
                     "the frame header is the same");
    for (std::size_t i = 0; i < before.FrameOrder.size(); ++i) {
        fuzzing::require(after.FrameOrder.at(i) == static_cast<std::int16_t>(i),
                         "frames are loaded in order");
        const auto number = static_cast<std::size_t>(before.FrameOrder[i]);
        fuzzing::require(after.FrameStore.at(i) == before.FrameStore.at(number), "each frame is the same");
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzzing::Recipe recipe(data, size);
    const fuzzing::AtEnd cleanup([] { hlspr::document() = SpriteDocument(); });
    make_sprite(recipe);
    const SpriteDocument before = hlspr::document();
    const std::string path = fuzzing::scratch_path("written.spr");
    fuzzing::require(hlspr::save_sprite(path) == True, "a sprite can be saved");
    hlspr::document() = SpriteDocument();
    const Truth loaded = hlspr::load_sprite(path);
    fuzzing::require(loaded == truth(before.SpriteHeader.FrameCount > 0),
                     "only a sprite without frames is refused");
    if (loaded == True) {
        require_same(before, hlspr::document());
    }
    return 0;
}
