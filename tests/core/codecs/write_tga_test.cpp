// The bytes of TGA files. Other programs and an independent parser read them in the tests of the command
// line.
#include "core/codecs/write_tga.h"

#include <gtest/gtest.h>

#include "support/expect_failure.h"

namespace varnoth {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(WriteTga, IndicesFollowTheColourMap) {
    const Bytes indices{7, 8};
    IndexedPicture picture{2, 1, indices, {}};
    picture.colours[1] = 0xFF102030;
    const Bytes file = write_tga(picture);
    EXPECT_EQ(Bytes(file.begin(), file.begin() + 18),
              (Bytes{0, 1, 1, 0, 0, 0, 1, 24, 0, 0, 0, 0, 2, 0, 1, 0, 8, 0x20}));
    EXPECT_EQ(Bytes(file.begin() + 18, file.begin() + 24), (Bytes{0, 0, 0, 0x30, 0x20, 0x10}));
    EXPECT_EQ(Bytes(file.begin() + 18 + 768, file.end()), indices);
}

TEST(WriteTga, TrueColourHasAlpha) {
    EXPECT_EQ(write_tga(RgbaPicture{1, 2, {0x01020304, 0xFFFEFDFC}}),
              (Bytes{0, 0, 2, 0,  0,    0, 0, 0, 0, 0,    0,    0,    1,
                     0, 2, 0, 32, 0x28, 4, 3, 2, 1, 0xFC, 0xFD, 0xFE, 0xFF}));
}

TEST(WriteTga, SideBeyond16BitsFails) {
    const Bytes indices(32768);
    EXPECT_FAILURE((write_tga(IndexedPicture{32768, 1, indices, {}})), Overflow);
    EXPECT_FAILURE((write_tga(IndexedPicture{1, 32768, indices, {}})), Overflow);
    EXPECT_EQ(write_tga(IndexedPicture{32767, 1, std::span(indices).first(32767), {}}).size(),
              18U + 768 + 32767);
}

} // namespace
} // namespace varnoth
