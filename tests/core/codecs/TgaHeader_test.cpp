#include "core/codecs/TgaHeader.h"

#include <numeric>

#include <gtest/gtest.h>

#include "support/codec_files.h"

namespace varnoth::test {
namespace {

TEST(TgaHeader, FieldsHaveTheirOffsetsAndRoundTrip) {
    Bytes bytes(18);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{120});
    const auto header = TgaHeader::from_bytes(std::span<const std::uint8_t, 18>(bytes));
    EXPECT_EQ(header.IDLength, 120);
    EXPECT_EQ(header.ColorMapType, 121);
    EXPECT_EQ(header.ImageType, 122);
    EXPECT_EQ(header.ColorMapStart, 123 + 124 * 256);
    EXPECT_EQ(header.ColorMapLength, 125 + 126 * 256);
    EXPECT_EQ(header.ColorMapDepth, 127);
    EXPECT_EQ(header.XOrigin, 128 + 129 * 256 - 65536);
    EXPECT_EQ(header.YOrigin, 130 + 131 * 256 - 65536);
    EXPECT_EQ(header.ImageWidth, 132 + 133 * 256 - 65536);
    EXPECT_EQ(header.ImageHeight, 134 + 135 * 256 - 65536);
    EXPECT_EQ(header.PixelDepth, 136);
    EXPECT_EQ(header.ImageDescriptor, 137);
    EXPECT_EQ(bytes_of(header), bytes);
}

} // namespace
} // namespace varnoth::test
