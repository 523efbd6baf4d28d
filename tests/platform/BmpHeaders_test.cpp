#include "platform/BmpHeaders.h"

#include <bit>

#include <gtest/gtest.h>

namespace varnoth {
namespace {

TEST(BmpHeaders, NewRecordsAreAllZero) {
    const BITMAPFILEHEADER file;
    EXPECT_EQ(file.bfType, (std::array<std::uint8_t, 2>{}));
    EXPECT_EQ(file.bfSize, 0);
    EXPECT_EQ(file.bfReserved1, 0);
    EXPECT_EQ(file.bfReserved2, 0);
    EXPECT_EQ(file.bfOffBits, 0);
    using InfoBytes = std::array<std::uint8_t, 40>;
    EXPECT_EQ(std::bit_cast<InfoBytes>(BITMAPINFOHEADER{}), InfoBytes{});
}

} // namespace
} // namespace varnoth
