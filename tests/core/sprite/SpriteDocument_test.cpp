#include "core/sprite/SpriteDocument.h"

#include <algorithm>
#include <numeric>

#include <gtest/gtest.h>

namespace varnoth {
namespace {

template <typename Record>
bool is_all_zero(const Record& record) {
    return std::ranges::all_of(to_bytes(record), [](std::uint8_t byte) { return byte == 0; });
}

TEST(SpriteDocument, NewDocumentIsAllZeroWithoutFrames) {
    const SpriteDocument document;
    EXPECT_TRUE(is_all_zero(document.SpriteHeader));
    EXPECT_TRUE(is_all_zero(document.Palette));
    EXPECT_TRUE(is_all_zero(document.FrameHeader));
    EXPECT_TRUE(document.FrameStore.empty());
    EXPECT_TRUE(document.FrameOrder.empty());
}

template <std::size_t size>
std::array<std::uint8_t, size> counting() {
    std::array<std::uint8_t, size> bytes{};
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{1});
    return bytes;
}

TEST(SpriteDocument, RecordsRoundTrip) {
    const auto header = counting<SpriteHeaderRecord::file_size>();
    EXPECT_EQ(to_bytes(sprite_header_from_bytes(header)), header);
    const auto palette = counting<PaletteRecord::file_size>();
    EXPECT_EQ(to_bytes(palette_from_bytes(palette)), palette);
    const auto frame = counting<FrameHeaderRecord::file_size>();
    EXPECT_EQ(to_bytes(frame_header_from_bytes(frame)), frame);
}

} // namespace
} // namespace varnoth
