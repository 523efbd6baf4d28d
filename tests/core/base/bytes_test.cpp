#include "core/base/bytes.h"

#include <array>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "support/lists.h"

namespace varnoth::test {
namespace {

TEST(Bytes, NumbersAreLittleEndianAtAnyOffset) {
    const Bytes bytes{0xEE, 0x01, 0x02, 0x03, 0x84};
    EXPECT_EQ(get_u16(bytes, 1), 0x0201);
    EXPECT_EQ(get_u32(bytes, 1), 0x84030201U);
    EXPECT_EQ(get_i16(bytes, 3), 0x8403 - 0x10000);
    EXPECT_EQ(get_i32(bytes, 1), static_cast<std::int64_t>(0x84030201) - 0x100000000);
}

TEST(Bytes, LowestNumbersRoundTrip) {
    std::array<std::uint8_t, 6> bytes{};
    put_i16(bytes, 0, std::numeric_limits<std::int16_t>::min());
    put_i32(bytes, 2, std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(bytes, (std::array<std::uint8_t, 6>{0, 0x80, 0, 0, 0, 0x80}));
    EXPECT_EQ(get_i16(bytes, 0), std::numeric_limits<std::int16_t>::min());
    EXPECT_EQ(get_i32(bytes, 2), std::numeric_limits<std::int32_t>::min());
}

TEST(Bytes, PutWritesOnlyItsOwnBytes) {
    std::array<std::uint8_t, 6> bytes{9, 9, 9, 9, 9, 9};
    put_u16(bytes, 2, 0x1234);
    EXPECT_EQ(bytes, (std::array<std::uint8_t, 6>{9, 9, 0x34, 0x12, 9, 9}));
    put_u32(bytes, 1, 0xA1B2C3D4);
    EXPECT_EQ(bytes, (std::array<std::uint8_t, 6>{9, 0xD4, 0xC3, 0xB2, 0xA1, 9}));
}

TEST(Bytes, RealsAreIeeeSingles) {
    std::array<std::uint8_t, 4> bytes{};
    put_f32(bytes, 0, -1.5F);
    EXPECT_EQ(bytes, (std::array<std::uint8_t, 4>{0, 0, 0xC0, 0xBF}));
    EXPECT_EQ(get_f32(bytes, 0), -1.5F);
}

} // namespace
} // namespace varnoth::test
