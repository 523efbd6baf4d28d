// The bytes of indexed PCX files. Other programs and an independent parser read them in the tests of the
// command line.
#include "core/codecs/write_pcx.h"

#include <gtest/gtest.h>

#include "core/base/bytes.h"
#include "support/expect_failure.h"

namespace varnoth {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t header_size = 128;
constexpr std::size_t palette_size = 769;

// The bytes between the header and the palette.
Bytes rows_of(std::int32_t width, std::int32_t height, const Bytes& indices) {
    const Bytes file = write_pcx({width, height, indices, {}});
    return {file.begin() + header_size, file.end() - palette_size};
}

TEST(WritePcx, HeaderDescribesThePicture) {
    const Bytes indices(7 * 5);
    const Bytes file = write_pcx({7, 5, indices, {}});
    EXPECT_EQ(Bytes(file.begin(), file.begin() + 4), (Bytes{10, 5, 1, 8}));
    EXPECT_EQ(get_u16(file, 8), 6);
    EXPECT_EQ(get_u16(file, 10), 4);
    EXPECT_EQ(file[65], 1);
    EXPECT_EQ(get_u16(file, 66), 8);
}

TEST(WritePcx, PaletteIsAtTheEnd) {
    IndexedPicture picture{1, 1, {}, {}};
    const Bytes indices{0};
    picture.indices = indices;
    picture.colours[255] = 0xFF102030;
    const Bytes file = write_pcx(picture);
    EXPECT_EQ(file[file.size() - palette_size], 12);
    EXPECT_EQ(Bytes(file.end() - 3, file.end()), (Bytes{0x10, 0x20, 0x30}));
}

TEST(WritePcx, SingleIndicesAreWrittenAsTheyAre) {
    EXPECT_EQ(rows_of(4, 1, {0, 1, 191, 2}), (Bytes{0, 1, 191, 2}));
}

TEST(WritePcx, HighSingleIndexIsARunOfOne) {
    EXPECT_EQ(rows_of(2, 1, {192, 255}), (Bytes{0xC1, 192, 0xC1, 255}));
}

TEST(WritePcx, RunsHaveUpTo63Pixels) {
    EXPECT_EQ(rows_of(64, 1, Bytes(64, 9)), (Bytes{0xFF, 9, 9}));
    EXPECT_EQ(rows_of(128, 1, Bytes(128, 9)), (Bytes{0xFF, 9, 0xFF, 9, 0xC2, 9}));
}

TEST(WritePcx, RunsEndWithTheRow) {
    EXPECT_EQ(rows_of(2, 2, {9, 9, 9, 9}), (Bytes{0xC2, 9, 0xC2, 9}));
}

TEST(WritePcx, OddWidthIsPaddedWithZero) {
    EXPECT_EQ(rows_of(1, 2, {9, 8}), (Bytes{9, 0, 8, 0}));
}

TEST(WritePcx, LargestWidth) {
    EXPECT_EQ(rows_of(32766, 1, Bytes(32766, 0)).size(), 2U * 521);
    const Bytes indices(32767);
    EXPECT_FAILURE((write_pcx({32767, 1, indices, {}})), Overflow);
}

} // namespace
} // namespace varnoth
