#include "base/leading_number.h"

#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "support/expect_failure.h"

namespace varnoth {
namespace {

TEST(LeadingNumber, IsTheNumberThatTheTextStartsWith) {
    EXPECT_EQ(leading_number("32"), 32);
    EXPECT_EQ(leading_number("33.5"), 33.5);
    EXPECT_EQ(leading_number("32 x 64"), 32);
    EXPECT_EQ(leading_number("7e2"), 700);
    EXPECT_EQ(leading_number(".5"), 0.5);
    EXPECT_EQ(leading_number("12abc"), 12);
}

TEST(LeadingNumber, MayHaveASignAndBlanksBeforeIt) {
    EXPECT_EQ(leading_number("-7"), -7);
    EXPECT_EQ(leading_number("+7"), 7);
    EXPECT_EQ(leading_number(" \t9"), 9);
}

TEST(LeadingNumber, IsZeroWhereThereIsNone) {
    for (const char* text : {"", "   ", "abc", "-", "x7", ".", "inf", "nan", "--5"}) {
        EXPECT_EQ(leading_number(text), 0) << text;
    }
}

TEST(LeadingNumber, OfANegativeZeroIsPlainZero) {
    EXPECT_FALSE(std::signbit(leading_number("-0")));
}

TEST(LeadingNumber, BeyondADoubleIsAnOverflowAndBelowItsSmallestIsZero) {
    EXPECT_FAILURE(leading_number("1e400"), Overflow);
    EXPECT_FAILURE(leading_number(std::string(400, '9')), Overflow);
    EXPECT_EQ(leading_number("1e-400"), 0);
    EXPECT_EQ(leading_number("0." + std::string(400, '0') + "1"), 0);
}

} // namespace
} // namespace varnoth
