#include "core/codecs/read_palette.h"

#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "core/base/bytes.h"
#include "support/codec_files.h"
#include "support/expect_failure.h"

namespace varnoth::test {
namespace {

using Colours = std::vector<RGBQUAD>;

const Colours two_colours{{3, 2, 1, 0}, {255, 5, 4, 0}};

Bytes bytes_of(std::string_view text) {
    return {text.begin(), text.end()};
}

Colours colours_of(const Bytes& file) {
    const auto palette = read_palette(file);
    EXPECT_TRUE(palette.has_value());
    EXPECT_FALSE(palette && palette->transparent);
    return palette ? palette->colours : Colours{};
}

Colours colours_in(std::string_view text) {
    return colours_of(bytes_of(text));
}

/// A RIFF palette: its chunks follow the form type.
Bytes riff(const Bytes& chunks) {
    Bytes file = bytes_of("RIFF    PAL ");
    put_u32(file, 4, static_cast<std::uint32_t>(chunks.size() + 4));
    file.insert(file.end(), chunks.begin(), chunks.end());
    return file;
}

/// 1, 2, 3 and 4, 5, 255 with flags.
Bytes riff_data() {
    return {'d', 'a', 't', 'a', 12, 0, 0, 0, 0, 3, 2, 0, 1, 2, 3, 9, 4, 5, 255, 9};
}

TEST(ReadPalette, Jasc) {
    EXPECT_EQ(colours_in("JASC-PAL\r\n0100\r\n2\r\n1 2 3\r\n4 5 255\r\n"), two_colours);
    EXPECT_EQ(colours_in("JASC-PAL\n0100\n2\n1 2 3\n4 5 255"), two_colours);
}

TEST(ReadPalette, JascWithAlphaAndBlanks) {
    EXPECT_EQ(colours_in("JASC-PAL\n0100\n 2 \n  1\t2   3 255\n4 5 255 0 \nmore"), two_colours);
}

TEST(ReadPalette, MalformedJascIsInvalid) {
    EXPECT_FAILURE(colours_in("JASC-PAL"), InvalidPicture);
    EXPECT_FAILURE(colours_in("JASC-PAL\n0100\nmany\n"), InvalidPicture);
    EXPECT_FAILURE(colours_in("JASC-PAL\n0100\n-1\n"), InvalidPicture);
    EXPECT_FAILURE(colours_in("JASC-PAL\n0100\n70000\n"), InvalidPicture);
    EXPECT_FAILURE(colours_in("JASC-PAL\n0100\n2\n1 2 3\n"), InvalidPicture);
    EXPECT_FAILURE(colours_in("JASC-PAL\n0100\n1\n1 2\n"), InvalidPicture);
    EXPECT_FAILURE(colours_in("JASC-PAL\n0100\n1\n1 2 256\n"), InvalidPicture);
}

TEST(ReadPalette, Gimp) {
    EXPECT_EQ(colours_in("GIMP Palette\nName: Test\nColumns: 16\n#\n  1   2   3\tName\n# 7 7 7\n\n4 5 255"),
              two_colours);
    EXPECT_EQ(colours_in("GIMP Palette\r\n1 2 3\r\n4 5 255\r\n"), two_colours);
}

TEST(ReadPalette, MalformedGimpIsInvalid) {
    EXPECT_FAILURE(colours_in("GIMP Palette\n1 2\n"), InvalidPicture);
    EXPECT_FAILURE(colours_in("GIMP Palette\nred\n"), InvalidPicture);
}

TEST(ReadPalette, Riff) {
    EXPECT_EQ(colours_of(riff(riff_data())), two_colours);
}

TEST(ReadPalette, RiffWithOtherChunksBefore) {
    const Bytes other{'o', 'f', 'f', 'l', 3, 0, 0, 0, 7, 7, 7, 0};
    EXPECT_EQ(colours_of(riff(joined({other, riff_data()}))), two_colours);
}

TEST(ReadPalette, TruncatedRiffIsInvalid) {
    Bytes file = riff(riff_data());
    file.pop_back();
    EXPECT_FAILURE(colours_of(file), InvalidPicture);
    EXPECT_FAILURE(colours_of(riff({})), InvalidPicture);
    EXPECT_FAILURE(colours_of(riff({'d', 'a', 't', 'a', 0, 0, 0, 0})), InvalidPicture);
    EXPECT_FAILURE(colours_of(riff({'o', 'f', 'f', 'l', 255, 255, 255, 255, 0})), InvalidPicture);
}

TEST(ReadPalette, OtherFilesAreNoPalette) {
    EXPECT_FALSE(read_palette({}));
    EXPECT_FALSE(read_palette(bytes_of("JASC")));
    EXPECT_FALSE(read_palette(bytes_of("RIFF    WAVE")));
    EXPECT_FALSE(read_palette(Bytes(768)));
}

TEST(ReadRawPalette, Of768Bytes) {
    Bytes file(768);
    file[3 * 255] = 1;
    file[3 * 255 + 1] = 2;
    file[3 * 255 + 2] = 3;
    const auto palette = read_raw_palette(file);
    ASSERT_TRUE(palette.has_value());
    EXPECT_EQ(palette->colours.size(), 256U);
    EXPECT_EQ(palette->colours[255], (RGBQUAD{3, 2, 1, 0}));
    EXPECT_FALSE(palette->transparent);
}

TEST(ReadRawPalette, With772BytesHasACountAndATransparentIndex) {
    Bytes file(772);
    file[769] = 20;
    file[771] = 19;
    const auto palette = read_raw_palette(file);
    ASSERT_TRUE(palette.has_value());
    EXPECT_EQ(palette->colours.size(), 20U);
    EXPECT_EQ(palette->transparent, 19);
}

TEST(ReadRawPalette, UnusableCountOrTransparentIndexIsIgnored) {
    Bytes file(772);
    file[768] = 255; // 65280 colours
    file[770] = file[771] = 255;
    EXPECT_EQ(read_raw_palette(file)->colours.size(), 256U);
    EXPECT_FALSE(read_raw_palette(file)->transparent);
    file[768] = 0; // no colours
    EXPECT_EQ(read_raw_palette(file)->colours.size(), 256U);
    file[769] = 20;
    file[770] = 0;
    file[771] = 20;
    EXPECT_FALSE(read_raw_palette(file)->transparent);
}

TEST(ReadRawPalette, OtherLengthsAreNoPalette) {
    for (const unsigned length : {0U, 767U, 769U, 771U, 773U}) {
        EXPECT_FALSE(read_raw_palette(Bytes(length))) << length;
    }
}

} // namespace
} // namespace varnoth::test
