#include "core/codecs/read_rgba_bmp.h"

#include <vector>

#include <gtest/gtest.h>

#include "core/base/bytes.h"
#include "support/TemporaryFolder.h"
#include "support/expect_failure.h"
#include "support/made_bmp.h"

namespace varnoth::test {
namespace {

using Pixels = std::vector<std::uint32_t>;

constexpr std::int64_t most_pixels = 100;
constexpr std::uint32_t bit_fields = 3;
constexpr std::uint32_t alpha_bit_fields = 6;

Pixels pixels_of(const Bytes& file) {
    return read_rgba_bmp(file, most_pixels).pixels;
}

/// One pixel, 0x44332211, with masks of 8 bits from blue in the low byte to red, and this one for alpha.
Bytes file_with_header(std::size_t header_size, std::uint32_t alpha_mask) {
    MadeBmp bmp;
    bmp.width = 1;
    bmp.height = 1;
    bmp.bits = 32;
    bmp.compression = bit_fields;
    bmp.header_size = header_size;
    bmp.header_masks = {0xFF0000, 0xFF00, 0xFF};
    bmp.data = {0x11, 0x22, 0x33, 0x44};
    Bytes file = bmp.file();
    if (header_size < 108) { // not in MadeBmp
        put_u32(file, 54, 0xFF0000);
        put_u32(file, 58, 0xFF00);
        put_u32(file, 62, 0xFF);
    }
    if (header_size >= 56) {
        put_u32(file, 66, alpha_mask);
    }
    return file;
}

/// Masks after a header of 40 bytes.
Bytes file_with_masks(std::uint32_t compression, const std::vector<std::uint32_t>& masks) {
    MadeBmp bmp;
    bmp.width = 1;
    bmp.height = 1;
    bmp.bits = 32;
    bmp.compression = compression;
    bmp.between = dwords(masks);
    bmp.data = {0x11, 0x22, 0x33, 0x44};
    return bmp.file();
}

TEST(ReadRgbaBmp, AlphaHasTheMaskOfLongHeaders) {
    EXPECT_EQ(pixels_of(file_with_header(108, 0xFF000000)), Pixels{0x44332211});
    EXPECT_EQ(pixels_of(file_with_header(124, 0xFF000000)), Pixels{0x44332211});
}

TEST(ReadRgbaBmp, HeadersOf52And56Bytes) {
    EXPECT_EQ(pixels_of(file_with_header(56, 0xFF000000)), Pixels{0x44332211});
    EXPECT_EQ(pixels_of(file_with_header(52, 0)), Pixels{0xFF332211});
}

TEST(ReadRgbaBmp, AlphaMaskAfterTheHeader) {
    const Bytes file = file_with_masks(alpha_bit_fields, {0xFF0000, 0xFF00, 0xFF, 0xFF000000});
    EXPECT_EQ(pixels_of(file), Pixels{0x44332211});
}

TEST(ReadRgbaBmp, OpaqueWithoutAnAlphaMask) {
    EXPECT_EQ(pixels_of(file_with_header(108, 0)), Pixels{0xFF332211});
    EXPECT_EQ(pixels_of(file_with_masks(bit_fields, {0xFF0000, 0xFF00, 0xFF})), Pixels{0xFF332211});
    EXPECT_EQ(pixels_of(file_with_masks(0, {})), Pixels{0xFF332211});
}

TEST(ReadRgbaBmp, PixelsOfARowAreInOrder) {
    MadeBmp bmp;
    bmp.width = 2;
    bmp.height = 1;
    bmp.bits = 32;
    bmp.data = {0x11, 0x22, 0x33, 0, 0x55, 0x66, 0x77, 0};
    EXPECT_EQ(pixels_of(bmp.file()), (Pixels{0xFF332211, 0xFF776655}));
}

TEST(ReadRgbaBmp, NarrowAlphaIsWidened) {
    EXPECT_EQ(pixels_of(file_with_header(108, 0x40000000)), Pixels{0xFF332211});
    EXPECT_EQ(pixels_of(file_with_header(108, 0x80000000)), Pixels{0x00332211});
    EXPECT_EQ(pixels_of(file_with_header(108, 0xF0000000)), Pixels{0x44332211});
}

TEST(ReadRgbaBmp, MissingPixelsAreTransparentWithAlpha) {
    Bytes file = file_with_header(108, 0xFF000000);
    put_i32(file, 22, 2);
    EXPECT_EQ(pixels_of(file), (Pixels{0, 0x44332211}));
    put_u32(file, 66, 0);
    EXPECT_EQ(pixels_of(file), (Pixels{0xFF000000, 0xFF332211}));
}

TEST(ReadRgbaBmp, TruncatedHeadersAreInvalid) {
    for (const std::size_t header_size : {52U, 56U, 108U}) {
        Bytes file = file_with_header(header_size, 0);
        for (file.resize(14 + header_size - 1); !file.empty(); file.pop_back()) {
            EXPECT_FAILURE(pixels_of(file), InvalidPicture) << header_size << ", " << file.size();
        }
    }
}

TEST(ReadRgbaBmp, TooManyPixelsAreOutOfMemory) {
    Bytes file = file_with_header(108, 0xFF000000);
    put_i32(file, 18, 101);
    EXPECT_FAILURE(pixels_of(file), OutOfMemory);
}

TEST(ReadRgbaBmp, AlphaWrittenByImageMagick) {
    const TemporaryFolder folder;
    const std::string name = folder.file("out.bmp");
    run_tool("convert -size 1x2 xc:'rgba(10,20,30,0.4)' " + name);
    EXPECT_EQ(pixels_of(read_file(name)), (Pixels{0x660A141E, 0x660A141E}));
}

} // namespace
} // namespace varnoth::test
