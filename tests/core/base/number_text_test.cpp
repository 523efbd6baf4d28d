#include "core/base/number_text.h"

#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace varnoth {
namespace {

TEST(NumberText, WholeNumbersHaveNoPoint) {
    EXPECT_EQ(number_text(0), "0");
    EXPECT_EQ(number_text(16), "16");
    EXPECT_EQ(number_text(-128), "-128");
    EXPECT_EQ(number_text(2147483647), "2147483647");
}

TEST(NumberText, OthersHaveTheDigitsTheyNeed) {
    EXPECT_EQ(number_text(16.5), "16.5");
    EXPECT_EQ(number_text(-0.25), "-0.25");
    EXPECT_EQ(number_text(0.1), "0.1");
}

TEST(NumberText, TheLargestAndTheSmallestHaveAllTheirDigitsAndNoExponent) {
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
} // namespace varnoth
