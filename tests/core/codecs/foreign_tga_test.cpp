// TGA files that other programs wrote.
#include "core/codecs/ForeignPictures.h"
#include "support/expect_failure.h"

namespace varnoth::test {
namespace {

// ImageMagick writes rows in its internal order and only records the orientation.
const std::string bottom_up = "-flip -orient BottomLeft ";

const std::string with_alpha = "-alpha set -channel A -evaluate set 40% +channel ";

struct TgaCase {
    const char* name;
    Palette palette;
    std::string convert; ///< options of ImageMagick, or ""
    std::string netpbm;  ///< a program of Netpbm, or ""
    int type, depth, descriptor_bit_5;
};

const TgaCase tga_cases[] = {
    {"Plain24Bit", Palette::Any, bottom_up + "-type TrueColor -compress none", "", 2, 24, 0},
    {"Compressed24Bit", Palette::Any, bottom_up + "-type TrueColor -compress RLE", "", 10, 24, 0},
    {"NetpbmPlain24Bit", Palette::Any, "", "pamtotga -rgb -norle", 2, 24, 0},
    {"NetpbmCompressed24Bit", Palette::Any, "", "pamtotga -rgb", 10, 24, 0},
    {"TopRowFirstPlain", Palette::Any, "-type TrueColor -orient TopLeft -compress none", "", 2, 24, 32},
    {"TopRowFirstCompressed", Palette::Any, "-type TrueColor -orient TopLeft -compress RLE", "", 10, 24, 32},
    {"Plain32BitDropsAlpha", Palette::Any, bottom_up + with_alpha + "-compress none", "", 2, 32, 0},
    {"Compressed32BitDropsAlpha", Palette::Any, bottom_up + with_alpha + "-compress RLE", "", 10, 32, 0},
    {"Plain8BitWith24BitMap", Palette::Of200, bottom_up + "-compress none", "", 1, 8, 0},
    {"Compressed8BitWith24BitMap", Palette::Of200, bottom_up + "-compress RLE", "", 9, 8, 0},
    {"NetpbmPlain8BitWith24BitMap", Palette::Of200, "", "pamtotga -cmap -norle", 1, 8, 0},
    {"NetpbmCompressed8BitWith24BitMap", Palette::Of200, "", "pamtotga -cmap", 9, 8, 0},
};

class ForeignTga : public ForeignPictures, public testing::WithParamInterface<TgaCase> {};

TEST_P(ForeignTga, PixelsMatchOtherDecoders) {
    const TgaCase& each = GetParam();
    write_sources(each.palette);
    if (!each.netpbm.empty()) {
        netpbm(each.netpbm, "tga");
    } else if (each.palette == Palette::Any) {
        convert(each.convert, "tga");
    } else { // only a file with a palette makes ImageMagick write one
        netpbm("ppmtogif", "gif");
        convert(each.convert, "tga", "gif");
    }
    expect_kind(each.type, each.depth, each.descriptor_bit_5);
    expect_equal_tga();
}

INSTANTIATE_TEST_SUITE_P(Files, ForeignTga, testing::ValuesIn(tga_cases),
                         [](const auto& instance) { return instance.param.name; });

TEST_F(ForeignPictures, Tga32BitOfNetpbmDropsAlpha) {
    write_sources(Palette::Any);
    netpbm("ppmtopgm", "pgm");
    netpbm("pamstack -tupletype=RGB_ALPHA - $i.pgm", "pam");
    netpbm("pamtotga -norle", "tga", "pam");
    expect_kind(2, 32, 0);
    expect_equal<LoadTGA>("tga", {decoded_by_convert("tga")});
}

TEST_F(ForeignPictures, Tga8BitGreyFailsFirstAndIsBlackAfterAMap) {
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
} // namespace varnoth::test
