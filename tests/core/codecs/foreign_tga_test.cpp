// TGA files that other programs wrote.
#include "core/codecs/ForeignPictures.h"
#include "support/expect_failure.h"

namespace varnoth {
namespace {

using namespace test;

// ImageMagick writes rows in its internal order and only records the orientation.
const std::string bottom_up = "-flip -orient BottomLeft ";

TEST_F(ForeignPictures, Tga24BitPlainAndCompressed) {
    write_sources(Palette::Any);
    convert(bottom_up + "-type TrueColor -compress none", "tga");
    expect_kind(2, 24, 0);
    expect_equal_tga();
    convert(bottom_up + "-type TrueColor -compress RLE", "tga");
    expect_kind(10, 24, 0);
    expect_equal_tga();
    netpbm("pamtotga -rgb -norle", "tga");
    expect_kind(2, 24, 0);
    expect_equal_tga();
    netpbm("pamtotga -rgb", "tga");
    expect_kind(10, 24, 0);
    expect_equal_tga();
}

TEST_F(ForeignPictures, TgaTopRowFirst) {
    write_sources(Palette::Any);
    convert("-type TrueColor -orient TopLeft -compress none", "tga");
    expect_kind(2, 24, 32);
    expect_equal_tga();
    convert("-type TrueColor -orient TopLeft -compress RLE", "tga");
    expect_kind(10, 24, 32);
    expect_equal_tga();
}

TEST_F(ForeignPictures, Tga32BitDropsAlpha) {
    write_sources(Palette::Any);
    const std::string with_alpha = "-alpha set -channel A -evaluate set 40% +channel ";
    convert(bottom_up + with_alpha + "-compress none", "tga");
    expect_kind(2, 32, 0);
    expect_equal_tga();
    convert(bottom_up + with_alpha + "-compress RLE", "tga");
    expect_kind(10, 32, 0);
    expect_equal_tga();
    netpbm("ppmtopgm", "pgm");
    netpbm("pamstack -tupletype=RGB_ALPHA - $i.pgm", "pam");
    netpbm("pamtotga -norle", "tga", "pam");
    expect_kind(2, 32, 0);
    expect_equal<LoadTGA>("tga", {decoded_by_convert("tga")});
}

TEST_F(ForeignPictures, Tga8BitWith24BitMap) {
    write_sources(Palette::Of200);
    netpbm("ppmtogif", "gif");
    convert(bottom_up + "-compress none", "tga", "gif");
    expect_kind(1, 8, 0);
    expect_equal_tga();
    convert(bottom_up + "-compress RLE", "tga", "gif");
    expect_kind(9, 8, 0);
    expect_equal_tga();
    netpbm("pamtotga -cmap -norle", "tga");
    expect_kind(1, 8, 0);
    expect_equal_tga();
    netpbm("pamtotga -cmap", "tga");
    expect_kind(9, 8, 0);
    expect_equal_tga();
}

TEST_F(ForeignPictures, Tga8BitGreyFailsOnNewObjectAndIsBlackAfterAMap) {
    write_sources(Palette::Of200);
    netpbm("pamtotga -cmap -norle", "tga");
    // The one-pixel picture has a map of one entry, which does not shorten later pixel arrays.
    LoadTGA used;
    used.Load(path(0, "tga"));
    write_sources(Palette::Greys);
    for (const char* compression : {"none", "RLE"}) {
        convert(std::string("-type Grayscale -compress ") + compression, "tga");
        for (std::size_t i = 0; i < sources.size(); ++i) {
            LoadTGA reader;
            EXPECT_FAILURE(reader.Load(path(i, "tga")), SubscriptOutOfRange) << i;
        }
    }
    expect_kind(11, 8, 0);
    convert("-type Grayscale -compress none", "tga");
    expect_kind(3, 8, 0);
    for (std::size_t i = 0; i < sources.size(); ++i) {
        used.Load(path(i, "tga"));
        EXPECT_TRUE(same(drawn_by(used), Colours(sources[i].size(), 0), sizes[i].width)) << i;
    }
}

TEST_F(ForeignPictures, Tga15BitMapIsIgnored) {
    write_sources(Palette::Of200);
    netpbm("pamtotga -cmap -norle", "tga");
    LoadTGA used;
    used.Load(path(0, "tga"));
    netpbm("pamtotga -cmap16 -norle", "tga");
    for (std::size_t i = 0; i < sources.size(); ++i) {
        EXPECT_EQ(tga_header(i).ColorMapDepth, 15);
        LoadTGA reader;
        EXPECT_FAILURE(reader.Load(path(i, "tga")), SubscriptOutOfRange);
        used.Load(path(i, "tga"));
        EXPECT_TRUE(same(drawn_by(used), Colours(sources[i].size(), 0), sizes[i].width)) << i;
    }
}

TEST_F(ForeignPictures, TgaIdFieldIsDecodedAsPixels) {
    write_sources(Palette::Any);
    netpbm("pamtotga -rgb -norle -name=four", "tga");
    for (std::size_t i = 0; i < sources.size(); ++i) {
        ASSERT_EQ(tga_header(i).IDLength, 4);
        ASSERT_EQ(tga_header(i).ImageDescriptor & 32, 0);
        const Bytes bytes = read_file(path(i, "tga"));
        LoadTGA reader;
        reader.Load(path(i, "tga"));
        Colours expected;
        for (std::int32_t y = sizes[i].height - 1; y >= 0; --y) {
            for (std::int32_t x = 0; x < sizes[i].width; ++x) {
                const std::size_t at =
                    TgaHeader::size + static_cast<std::size_t>(3 * (y * sizes[i].width + x));
                expected.push_back(make_colour(bytes.at(at + 2), bytes.at(at + 1), bytes.at(at)));
            }
        }
        EXPECT_TRUE(same(drawn_by(reader), expected, sizes[i].width)) << i;
        EXPECT_EQ(expected.at(expected.size() - static_cast<std::size_t>(sizes[i].width)),
                  make_colour('u', 'o', 'f'));
    }
}

} // namespace
} // namespace varnoth
