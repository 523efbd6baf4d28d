#include "core/image/BmpHeaders.h"

#include <bit>

#include <gtest/gtest.h>

namespace varnoth {
namespace {

TEST(BmpHeaders, NewHeadersAreAllZero) {
    const BITMAPFILEHEADER file;
    EXPECT_EQ(file.bfType, (std::array<std::uint8_t, 2>{}));
    EXPECT_EQ(file.bfSize, 0);
    EXPECT_EQ(file.bfReserved1, 0);
    EXPECT_EQ(file.bfReserved2, 0);
    EXPECT_EQ(file.bfOffBits, 0);
    using InfoBytes = std::array<std::uint8_t, 40>;
    EXPECT_EQ(std::bit_cast<InfoBytes>(BITMAPINFOHEADER{}), InfoBytes{});
}

TEST(BmpHeaders, FileHeaderFieldsHaveTheirOffsets) {
    const std::array<std::uint8_t, 14> bytes{'B', 'M', 1, 2, 3, 0x84, 5, 0x86, 7, 0x88, 9, 10, 11, 0x8C};
    const auto header = BITMAPFILEHEADER::from_bytes(bytes);
    EXPECT_EQ(header.bfType, (std::array<std::uint8_t, 2>{'B', 'M'}));
    EXPECT_EQ(header.bfSize, std::bit_cast<std::int32_t>(0x84030201));
    EXPECT_EQ(header.bfReserved1, std::bit_cast<std::int16_t>(std::uint16_t{0x8605}));
    EXPECT_EQ(header.bfReserved2, std::bit_cast<std::int16_t>(std::uint16_t{0x8807}));
    EXPECT_EQ(header.bfOffBits, std::bit_cast<std::int32_t>(0x8C0B0A09));
    EXPECT_EQ(header.to_bytes(), bytes);
}

TEST(BmpHeaders, InformationHeaderFieldsHaveTheirOffsets) {
    std::array<std::uint8_t, 40> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::uint8_t>(i + 1);
    }
    const auto header = BITMAPINFOHEADER::from_bytes(bytes);
    EXPECT_EQ(header.biSize, 0x04030201);
    EXPECT_EQ(header.biWidth, 0x08070605);
    EXPECT_EQ(header.biHeight, 0x0C0B0A09);
    EXPECT_EQ(header.biPlanes, 0x0E0D);
    EXPECT_EQ(header.biBitCount, 0x100F);
    EXPECT_EQ(header.biCompression, 0x14131211U);
    EXPECT_EQ(header.biSizeImage, 0x18171615);
    EXPECT_EQ(header.biXPelsPerMeter, 0x1C1B1A19);
    EXPECT_EQ(header.biYPelsPerMeter, 0x201F1E1D);
    EXPECT_EQ(header.biClrUsed, 0x24232221);
    EXPECT_EQ(header.biClrImportant, 0x28272625);
    EXPECT_EQ(header.to_bytes(), bytes);
}

} // namespace
} // namespace varnoth
