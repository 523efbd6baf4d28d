#include "core/base/number_text.h"

#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "support/expect_failure.h"

namespace varnoth::test {
namespace {

TEST(LeadingNumber, EndsAtTheFirstOtherCharacter) {
    EXPECT_EQ(leading_number("32"), 32);
    EXPECT_EQ(leading_number("33.5"), 33.5);
    EXPECT_EQ(leading_number("32 x 64"), 32);
    EXPECT_EQ(leading_number("7e2"), 700);
    EXPECT_EQ(leading_number(".5"), 0.5);
    EXPECT_EQ(leading_number("12abc"), 12);
}

TEST(LeadingNumber, MayHaveASignAndLeadingBlanks) {
    EXPECT_EQ(leading_number("-7"), -7);
    EXPECT_EQ(leading_number("+7"), 7);
    EXPECT_EQ(leading_number(" \t9"), 9);
}

TEST(LeadingNumber, IsZeroWithoutANumber) {
    for (const char* text : {"", "   ", "abc", "-", "x7", ".", "inf", "nan", "--5"}) {
        EXPECT_EQ(leading_number(text), 0) << text;
    }
}

TEST(LeadingNumber, NegativeZeroIsZero) {
    EXPECT_FALSE(std::signbit(leading_number("-0")));
}

TEST(LeadingNumber, TooLargeOverflowsAndTooSmallIsZero) {
    EXPECT_FAILURE(leading_number("1e400"), Overflow);
    EXPECT_FAILURE(leading_number(std::string(400, '9')), Overflow);
    EXPECT_EQ(leading_number("1e-400"), 0);
    EXPECT_EQ(leading_number("0." + std::string(400, '0') + "1"), 0);
}

TEST(LeadingNumber, RangeDependsOnPointAndExponent) {
    const std::string zeros(400, '0');
    EXPECT_FAILURE(leading_number("1" + zeros + "e-50"), Overflow);
    EXPECT_FAILURE(leading_number("1" + zeros + ".5e-50"), Overflow);
    EXPECT_EQ(leading_number("1" + zeros + "e-400"), 1);
    EXPECT_EQ(leading_number("1" + zeros + "e-800"), 0);
    EXPECT_EQ(leading_number("0." + zeros + zeros + "1e+401"), 0);
    EXPECT_EQ(leading_number("." + zeros + "1e401"), 1);
    EXPECT_FAILURE(leading_number("." + zeros + "1E+801"), Overflow);
    EXPECT_EQ(leading_number("0" + zeros + "." + zeros + "7e-1"), 0) << "zeros in front do not count";
}

TEST(LeadingNumber, ExponentOfAnyLengthOverflowsOrIsZero) {
    const std::string nines(40, '9');
    EXPECT_FAILURE(leading_number("1e" + nines), Overflow);
    EXPECT_FAILURE(leading_number("0.001e+" + nines), Overflow);
    EXPECT_EQ(leading_number("1000e-" + nines), 0);
    EXPECT_EQ(leading_number("0e" + nines), 0);
    EXPECT_FAILURE(leading_number("9e9223372036854775807"), Overflow);
    EXPECT_EQ(leading_number("0.9e-9223372036854775808"), 0);
}

TEST(NumberText, WholeNumbersHaveNoPoint) {
    EXPECT_EQ(number_text(0), "0");
    EXPECT_EQ(number_text(16), "16");
    EXPECT_EQ(number_text(-128), "-128");
    EXPECT_EQ(number_text(2147483647), "2147483647");
}

TEST(NumberText, FractionsHaveTheShortestDigits) {
    EXPECT_EQ(number_text(16.5), "16.5");
    EXPECT_EQ(number_text(-0.25), "-0.25");
    EXPECT_EQ(number_text(0.1), "0.1");
}

TEST(NumberText, ExtremesHaveAllDigitsAndNoExponent) {
    const std::string largest = number_text(std::numeric_limits<double>::max());
    EXPECT_EQ(largest.size(), 309U);
    EXPECT_EQ(std::stod(largest), std::numeric_limits<double>::max());
    const std::string smallest = number_text(-std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(smallest, "-0." + std::string(323, '0') + "5");
    const std::string longest = number_text(-std::numeric_limits<double>::min());
    EXPECT_EQ(longest.size(), 327U);
    EXPECT_EQ(std::stod(longest), -std::numeric_limits<double>::min());
}

} // namespace
} // namespace varnoth::test
