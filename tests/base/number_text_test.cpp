#include "base/number_text.h"

#include <limits>

#include <gtest/gtest.h>

namespace varnoth {
namespace {

TEST(NumberText, WholeNumbersHaveNoPoint) {
    EXPECT_EQ(number_text(0), "0");
    EXPECT_EQ(number_text(16), "16");
    EXPECT_EQ(number_text(-128), "-128");
    EXPECT_EQ(number_text(2147483647), "2147483647");
    // As long as the buffer; what is longer gets a point and zeros behind it.
    EXPECT_EQ(number_text(0x1p210), "1645504557321206042154969182557350504982735865633579863348609024");
}

TEST(NumberText, OthersHaveTheDigitsTheyNeed) {
    EXPECT_EQ(number_text(16.5), "16.5");
    EXPECT_EQ(number_text(-0.25), "-0.25");
    EXPECT_EQ(number_text(0.1), "0.1");
}

TEST(NumberText, NumbersLongerThanTheBufferHaveATextToo) {
    const std::string text = number_text(std::numeric_limits<double>::max());
    EXPECT_EQ(text.substr(0, 6), "179769");
    EXPECT_EQ(text.find('e'), std::string::npos);
}

} // namespace
} // namespace varnoth
