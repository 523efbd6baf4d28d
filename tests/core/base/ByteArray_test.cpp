#include "core/base/ByteArray.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <utility>

#include <gtest/gtest.h>

#include "support/expect_failure.h"

namespace varnoth::test {
namespace {

TEST(ByteArray, StartsAllZeroWithItsSize) {
    const ByteArray array(1000);
    EXPECT_EQ(array.size(), 1000U);
    EXPECT_TRUE(std::ranges::all_of(array.bytes(), [](std::uint8_t byte) { return byte == 0; }));
}

TEST(ByteArray, EmptyArrayHasNoBytesAndCanBeCopied) {
    const ByteArray none;
    const ByteArray sized(0);
    EXPECT_EQ(none.size(), 0U);
    EXPECT_TRUE(sized.bytes().empty());
    ByteArray copy(5);
    copy = none;
    EXPECT_EQ(copy.size(), 0U);
    EXPECT_EQ(copy, sized);
}

TEST(ByteArray, CopyDoesNotShareBytes) {
    ByteArray array(3);
    array[1] = 7;
    ByteArray copy = array;
    EXPECT_EQ(copy, array);
    copy[1] = 8;
    EXPECT_EQ(array[1], 7);
    EXPECT_FALSE(copy == array);
    EXPECT_FALSE(ByteArray(2) == ByteArray(3));
    ByteArray& self = copy;
    copy = self;
    EXPECT_EQ(copy[1], 8);
}

TEST(ByteArray, MoveLeavesAnEmptyArray) {
    ByteArray array(3);
    array[2] = 9;
    ByteArray moved = std::move(array);
    EXPECT_EQ(moved[2], 9);
    EXPECT_EQ(array.size(), 0U); // NOLINT: what is left behind is what is tested
    EXPECT_TRUE(array.bytes().empty());
    array = std::move(moved);
    EXPECT_EQ(array[2], 9);
    EXPECT_EQ(moved.size(), 0U); // NOLINT: the same
}

TEST(ByteArray, TooMuchMemoryIsOutOfMemory) {
    EXPECT_FAILURE(ByteArray(std::numeric_limits<std::size_t>::max() / 2 + 1), OutOfMemory);
    EXPECT_FAILURE(ByteArray::for_overwrite(std::numeric_limits<std::size_t>::max() / 2 + 1), OutOfMemory);
}

TEST(ByteArray, ForOverwriteHasItsSizeAndIsWritable) {
    ByteArray array = ByteArray::for_overwrite(1000);
    std::ranges::fill(array.bytes(), std::uint8_t{7});
    EXPECT_EQ(array.size(), 1000U);
    EXPECT_EQ(array[999], 7);
    EXPECT_TRUE(ByteArray::for_overwrite(0).bytes().empty());
}

} // namespace
} // namespace varnoth::test
