#include "core/quantize/WrittenColours.h"

#include <random>
#include <set>

#include <gtest/gtest.h>

namespace varnoth {
namespace {

TEST(WrittenColours, NewSetIsEmptyEvenOfBlack) {
    const WrittenColours set;
    EXPECT_FALSE(set.contains(0));
    EXPECT_FALSE(set.contains(0xFFFFFF));
}

TEST(WrittenColours, ContainsInsertedColoursUntilCleared) {
    WrittenColours set;
    set.insert(0);
    set.insert(0xFFFFFF);
    set.insert(0xFFFFFF);
    EXPECT_TRUE(set.contains(0));
    EXPECT_TRUE(set.contains(0xFFFFFF));
    EXPECT_FALSE(set.contains(1));
    set.clear();
    EXPECT_FALSE(set.contains(0));
    set.insert(1);
    EXPECT_TRUE(set.contains(1));
    EXPECT_FALSE(set.contains(0xFFFFFF));
}

TEST(WrittenColours, KeepsEveryInsertedColour) {
    std::mt19937 random(1);
    WrittenColours set;
    std::set<Colour> plain;
    for (int i = 0; i < 50000; ++i) {
        // Few bits, so that colours repeat and are close to each other.
        const auto colour = static_cast<Colour>(random() & 0x0F0F3F);
        EXPECT_EQ(set.contains(colour), plain.contains(colour));
        set.insert(colour);
        plain.insert(colour);
        EXPECT_TRUE(set.contains(colour));
    }
    for (const Colour colour : plain) {
        EXPECT_TRUE(set.contains(colour));
    }
}

} // namespace
} // namespace varnoth
