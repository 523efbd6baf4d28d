// Large blocks that are kept for who asks next. While the C library gives nothing, only a kept one can be
// had.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

#include <gtest/gtest.h>

#include "core/base/large_blocks.h"
#include "fault_injection/Faults.h"

namespace varnoth {
namespace {

using namespace test;

constexpr std::size_t least = 128 * 1024;
constexpr std::size_t most = 1024 * 1024;

// Keeping is for the whole process and for good, so each test is a process of its own.
template <typename Body>
void in_a_keeping_process(Body&& body) {
    EXPECT_EXIT(
        {
            keep_large_blocks_apart();
            body();
            std::exit(testing::Test::HasFailure() ? 1 : 0);
        },
        testing::ExitedWithCode(0), "");
}

void give_back_new_ones(std::size_t size, std::size_t count) {
    std::vector<void*> blocks(count);
    std::ranges::generate(blocks, [&] { return take_block(size); });
    for (void* const block : blocks) {
        give_back_block(block, size);
    }
}

// How many of this size are kept. They are then kept no longer.
std::size_t kept_of(std::size_t size) {
    std::size_t count = 0;
    const FaultInjection nothing_left({Call::Array, 1, Repeat::Always});
    while (void* const block = take_block(size)) {
        std::free(block);
        ++count;
    }
    return count;
}

TEST(LargeBlocks, AtTheEndOfAnImportNoneIsKept) {
    in_a_keeping_process([] {
        give_back_new_ones(least, 3);
        give_back_spare_memory();
        EXPECT_EQ(kept_of(least), 0U);
        give_back_new_ones(least, 5);
        EXPECT_EQ(kept_of(least), 4U);
        give_back_spare_memory();
    });
}

TEST(LargeBlocks, TheLastFourGivenBackAreKept) {
    in_a_keeping_process([] {
        give_back_new_ones(least, 5);
        EXPECT_EQ(kept_of(least), 4U);
        give_back_new_ones(least, 3);
        give_back_new_ones(most, 3);
        EXPECT_EQ(kept_of(least), 1U);
        EXPECT_EQ(kept_of(most), 3U);
    });
}

TEST(LargeBlocks, SmallerAndLargerOnesAreNot) {
    in_a_keeping_process([] {
        for (const std::size_t size : {std::size_t{1}, least - 1, most + 1}) {
            give_back_new_ones(size, 1);
            EXPECT_EQ(kept_of(size), 0U) << size;
        }
    });
}

TEST(LargeBlocks, OnlyTheSameSizeIsGivenOut) {
    in_a_keeping_process([] {
        give_back_new_ones(least + 1, 1);
        EXPECT_EQ(kept_of(least), 0U);
        EXPECT_EQ(kept_of(least + 1), 1U);
    });
}

TEST(LargeBlocks, AZeroedOneIsZeroAlsoWhenItWasWritten) {
    in_a_keeping_process([] {
        auto* const written = static_cast<std::uint8_t*>(take_block(least));
        std::fill_n(written, least, std::uint8_t{7});
        give_back_block(written, least);
        auto* const again = static_cast<std::uint8_t*>(take_zeroed_block(least));
        EXPECT_EQ(again, written);
        EXPECT_TRUE(
            std::ranges::all_of(std::span(again, least), [](std::uint8_t byte) { return byte == 0; }));
        give_back_block(again, least);
    });
}

TEST(LargeBlocks, NothingIsKeptUnlessTheProgramAsks) {
    give_back_new_ones(least, 1);
    EXPECT_EQ(kept_of(least), 0U);
}

TEST(LargeBlocks, OfNoBytesThereIsNone) {
    EXPECT_EQ(take_block(0), nullptr);
    EXPECT_EQ(take_zeroed_block(0), nullptr);
    give_back_block(nullptr, 0);
}

} // namespace
} // namespace varnoth
