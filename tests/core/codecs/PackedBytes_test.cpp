#include "core/codecs/PackedBytes.h"

#include <array>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "support/expect_failure.h"
#include "support/lists.h"

namespace varnoth::test {
namespace {

TEST(PackedBytes, EncoderRoomFollowsItsFormula) {
    EXPECT_EQ(encoder_room(1, 1), 1U);
    EXPECT_EQ(encoder_room(11, 3), 27U);
    EXPECT_EQ(encoder_room(10, 3), 25U);
    EXPECT_EQ(encoder_room(9, 3), 21U);
    EXPECT_EQ(encoder_room(0, 3), 0U);
}

TEST(PackedBytes, ZeroLineDividesByZeroAndRoomOf2GiBOverflows) {
    EXPECT_FAILURE(encoder_room(1, 0), DivisionByZero);
    constexpr std::int32_t longest = std::numeric_limits<std::int32_t>::max();
    EXPECT_EQ(encoder_room(1073741824, longest), 2147483647U);
    EXPECT_FAILURE(encoder_room(1073741825, longest), Overflow);
    EXPECT_FAILURE(encoder_room(1073741824, 1073741823), Overflow);
    EXPECT_FAILURE(encoder_room(0xFFFFFFFFU, longest), Overflow);
}

TEST(PackedBytes, TakeReturnsTheAppendedBytesInOrder) {
    PackedBytes packed(9);
    packed.append(1);
    packed.append(std::array<std::uint8_t, 3>{2, 3, 4});
    packed.append(5);
    const ByteArray taken = packed.take();
    EXPECT_EQ(std::vector(taken.bytes().begin(), taken.bytes().end()), (Bytes{1, 2, 3, 4, 5}));
    EXPECT_EQ(PackedBytes(9).take().size(), 0U);
}

} // namespace
} // namespace varnoth::test
