#include "core/base/numbers.h"

#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

#include "support/expect_failure.h"

namespace varnoth::test {
namespace {

TEST(Numbers, RealsRoundToNearestWithTiesToEven) {
    EXPECT_EQ(round_to_even<std::int32_t>(0.5), 0);
    EXPECT_EQ(round_to_even<std::int32_t>(1.5), 2);
    EXPECT_EQ(round_to_even<std::int32_t>(2.5), 2);
    EXPECT_EQ(round_to_even<std::int32_t>(-0.5), 0);
    EXPECT_EQ(round_to_even<std::int32_t>(-1.5), -2);
    EXPECT_EQ(round_to_even<std::int32_t>(2.4999), 2);
    EXPECT_EQ(round_to_even<std::int32_t>(-2.6), -3);
}

TEST(Numbers, RoundingOverflowsIfTheResultDoesNotFit) {
    EXPECT_EQ(round_to_even<std::int16_t>(32767.4), 32767);
    EXPECT_FAILURE(round_to_even<std::int16_t>(32767.5), Overflow);
    EXPECT_EQ(round_to_even<std::int16_t>(-32768.5), -32768);
    EXPECT_FAILURE(round_to_even<std::int16_t>(-32769.0), Overflow);
    EXPECT_EQ(round_to_even<std::uint8_t>(255.4), 255);
    EXPECT_FAILURE(round_to_even<std::uint8_t>(255.5), Overflow);
    EXPECT_FAILURE(round_to_even<std::uint8_t>(-1.0), Overflow);
    EXPECT_EQ(round_to_even<std::int32_t>(2147483647.0), 2147483647);
    EXPECT_FAILURE(round_to_even<std::int32_t>(2147483648.0), Overflow);
    EXPECT_FAILURE(round_to_even<std::int32_t>(std::numeric_limits<double>::quiet_NaN()), Overflow);
    EXPECT_FAILURE(round_to_even<std::int32_t>(std::numeric_limits<double>::infinity()), Overflow);
}

TEST(Numbers, ArithmeticOverflowsInsteadOfWrapping) {
    EXPECT_EQ(checked_add<std::int16_t>(32000, 767), 32767);
    EXPECT_FAILURE(checked_add<std::int16_t>(32000, 768), Overflow);
    EXPECT_FAILURE(checked_subtract<std::int16_t>(-32768, 1), Overflow);
    EXPECT_FAILURE(checked_multiply<std::int32_t>(65536, 32768), Overflow);
    EXPECT_EQ(checked_multiply<std::int32_t>(-65536, 32768), std::numeric_limits<std::int32_t>::min());
}

TEST(Numbers, NarrowingOverflowsIfTheValueDoesNotFit) {
    EXPECT_EQ(narrow<std::uint8_t>(255), 255);
    EXPECT_FAILURE(narrow<std::uint8_t>(256), Overflow);
    EXPECT_FAILURE(narrow<std::uint8_t>(-1), Overflow);
    EXPECT_FAILURE(narrow<std::int16_t>(32768), Overflow);
    EXPECT_FAILURE(narrow<std::int32_t>(std::size_t{1} << 31), Overflow);
    EXPECT_FAILURE(narrow<std::uint32_t>(std::int32_t{-1}), Overflow);
}

TEST(Numbers, DivisionByZeroIsAFailure) {
    EXPECT_EQ(divide(1, 4), 0.25);
    EXPECT_FAILURE(divide(1, 0), DivisionByZero);
}

unsigned line_of_failure(void (*action)()) {
    try {
        action();
    } catch (const RunTimeFailure& failure) {
        return failure.location().line();
    }
    return 0;
}

TEST(Numbers, FailuresAreLocatedAtTheCaller) {
    constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();
    const unsigned line = __LINE__;
    EXPECT_EQ(line_of_failure([] { narrow<std::uint8_t>(largest); }), line + 1);
    EXPECT_EQ(line_of_failure([] { checked_add(largest, 1); }), line + 2);
    EXPECT_EQ(line_of_failure([] { checked_subtract(-largest, largest); }), line + 3);
    EXPECT_EQ(line_of_failure([] { checked_multiply(largest, 2); }), line + 4);
    EXPECT_EQ(line_of_failure([] { round_to_even<std::int32_t>(1e10); }), line + 5);
    EXPECT_EQ(line_of_failure([] { divide(1, 0); }), line + 6);
}

} // namespace
} // namespace varnoth::test
