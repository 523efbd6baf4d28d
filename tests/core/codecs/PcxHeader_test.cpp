#include "core/codecs/PcxHeader.h"

#include <numeric>

#include <gtest/gtest.h>

#include "support/codec_files.h"

namespace varnoth::test {
namespace {

TEST(PcxHeader, FieldsHaveTheirOffsetsAndRoundTrip) {
    Bytes bytes(128);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{100});
    const auto header = PcxHeader::from_bytes(std::span<const std::uint8_t, 128>(bytes));
    EXPECT_EQ(header.Manufacturer, 100);
    EXPECT_EQ(header.Version, 101);
    EXPECT_EQ(header.Encoding, 102);
    EXPECT_EQ(header.BitsPerPixel, 103);
    EXPECT_EQ(header.XMin, 104 + 105 * 256);
    EXPECT_EQ(header.YMin, 106 + 107 * 256);
    EXPECT_EQ(header.XMax, 108 + 109 * 256);
    EXPECT_EQ(header.YMax, 110 + 111 * 256);
    EXPECT_EQ(header.HDpi, 112 + 113 * 256);
    EXPECT_EQ(header.VDpi, 114 + 115 * 256);
    EXPECT_EQ(header.ColorMap[0], 116);
    EXPECT_EQ(header.ColorMap[47], 163);
    EXPECT_EQ(header.Reserved, 164);
    EXPECT_EQ(header.NPlanes, 165);
    EXPECT_EQ(header.BytesPerLine, 166 + 167 * 256 - 65536);
    EXPECT_EQ(header.Filler[0], 168);
    EXPECT_EQ(bytes_of(header), bytes);
}

} // namespace
} // namespace varnoth::test
