// The input is a sprite file. If it loads, its frames are drawn, and it is saved and loaded again, after
// which the frames must be the same.
#include <algorithm>

#include "core/image/PictureSurface.h"
#include "core/sprite/hlspr.h"
#include "fuzzing.h"
#include "sprite_sizes.h"

namespace {

using namespace varnoth;

constexpr std::int32_t few_frames = 64;
constexpr std::int32_t largest_drawn_side = 64;
constexpr std::int64_t small_frame = 1 << 12;
constexpr std::int64_t largest_frame = 1 << 16;
constexpr std::size_t most_saved_bytes = 1 << 16;
constexpr std::uint32_t inputs_for_one_large = 512;
constexpr std::uint32_t inputs_for_one_used = 32;

// Tables for up to 32768 frames are allocated before a missing frame is noticed.
bool claims_many_frames(std::span<const std::uint8_t> bytes) {
    return bytes.size() >= SpriteHeaderRecord::file_size &&
           sprite_header_from_bytes(bytes.first<SpriteHeaderRecord::file_size>()).FrameCount > few_frames;
}

bool is_worth_loading(std::span<const std::uint8_t> bytes) {
    const bool is_small = !claims_many_frames(bytes) && fuzzing::has_no_larger_frame(bytes, small_frame);
    return is_small || (fuzzing::has_no_larger_frame(bytes, largest_frame) &&
                        fuzzing::is_one_in(inputs_for_one_large, bytes));
}

std::size_t stored_bytes() {
    std::size_t total = 0;
    for (const ByteArray& frame : hlspr::document().FrameStore) {
        total += frame.size();
    }
    return total;
}

bool is_small(const SpriteHeaderRecord& header) {
    return header.Width <= largest_drawn_side && header.Height <= largest_drawn_side;
}

void draw_all() {
    test::TestSurface picture(1, 1);
    for (std::size_t i = 0; i < hlspr::document().FrameOrder.size(); ++i) {
        auto number = static_cast<std::int16_t>(i);
        fuzzing::succeeds([&] { hlspr::draw_frame(number, picture); });
    }
}

// A saved file has the last frame's header before every frame, so frames of different sizes are not restored.
bool has_frames_of_one_size() {
    const SpriteDocument& sprite = hlspr::document();
    const auto size = static_cast<std::size_t>(sprite.FrameHeader.FrameWidth) *
                      static_cast<std::size_t>(sprite.FrameHeader.FrameHeight);
    return std::ranges::all_of(sprite.FrameStore,
                               [&](const ByteArray& frame) { return frame.size() == size; });
}

void save_and_load() {
    const SpriteDocument before = hlspr::document();
    const bool is_restored = has_frames_of_one_size();
    const std::string path = fuzzing::scratch_path("saved.spr");
    fuzzing::require(hlspr::save_sprite(path) == True, "a loaded sprite can be saved");
    const Truth loaded = hlspr::load_sprite(path);
    if (!is_restored) {
        return;
    }
    const SpriteDocument& after = hlspr::document();
    fuzzing::require(loaded == True, "a saved sprite can be loaded");
    fuzzing::require(to_bytes(after.SpriteHeader) == to_bytes(before.SpriteHeader), "the header is the same");
    fuzzing::require(to_bytes(after.Palette) == to_bytes(before.Palette), "the palette is the same");
    fuzzing::require(to_bytes(after.FrameHeader) == to_bytes(before.FrameHeader),
                     "the frame header is the same");
    fuzzing::require(after.FrameStore == before.FrameStore, "the frames are the same");
    fuzzing::require(after.FrameOrder == before.FrameOrder, "the order is the same");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzzing::AtEnd cleanup([] { hlspr::document() = SpriteDocument(); });
    const std::string path = fuzzing::scratch_file("input.spr", {data, size});
    // Loading throws nothing, not even RunTimeFailure.
    if (!is_worth_loading({data, size}) || hlspr::load_sprite(path) != True) {
        return 0;
    }
    if (!fuzzing::is_one_in(inputs_for_one_used, {data, size})) {
        return 0;
    }
    if (is_small(hlspr::document().SpriteHeader)) {
        draw_all();
    }
    if (stored_bytes() <= most_saved_bytes) {
        save_and_load();
    }
    return 0;
}
