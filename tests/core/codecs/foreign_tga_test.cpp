// TGA files that other programs wrote, for both readers.
#include "core/codecs/ForeignPictures.h"
#include "core/codecs/read_tga.h"
#include "support/expect_failure.h"

namespace varnoth::test {
namespace {

// ImageMagick writes rows in its internal order and only records the orientation.
const std::string bottom_up = "-flip -orient BottomLeft ";

// The alpha channel is equal to red.
std::string with_alpha(const std::string& compression) {
    return "convert - " + bottom_up + red_as_alpha + "-compress " + compression + " tga:-";
}

struct TgaCase {
    const char* name;
    Palette palette;
    std::string convert; ///< options of ImageMagick for all sources at once, or ""
    std::string program; ///< a program for one source, or ""
    int type, depth, descriptor_bit_5;
};

const TgaCase tga_cases[] = {
    {"Plain24Bit", Palette::Any, bottom_up + "-type TrueColor -compress none", "", 2, 24, 0},
    {"Compressed24Bit", Palette::Any, bottom_up + "-type TrueColor -compress RLE", "", 10, 24, 0},
    {"NetpbmPlain24Bit", Palette::Any, "", "pamtotga -rgb -norle", 2, 24, 0},
    {"NetpbmCompressed24Bit", Palette::Any, "", "pamtotga -rgb", 10, 24, 0},
    {"TopRowFirstPlain", Palette::Any, "-type TrueColor -orient TopLeft -compress none", "", 2, 24, 32},
    {"TopRowFirstCompressed", Palette::Any, "-type TrueColor -orient TopLeft -compress RLE", "", 10, 24, 32},
    {"Plain32Bit", Palette::Any, "", with_alpha("none"), 2, 32, 0},
    {"Compressed32Bit", Palette::Any, "", with_alpha("RLE"), 10, 32, 0},
    {"Plain8BitWith24BitMap", Palette::Of200, bottom_up + "-compress none", "", 1, 8, 0},
    {"Compressed8BitWith24BitMap", Palette::Of200, bottom_up + "-compress RLE", "", 9, 8, 0},
    {"NetpbmPlain8BitWith24BitMap", Palette::Of200, "", "pamtotga -cmap -norle", 1, 8, 0},
    {"NetpbmCompressed8BitWith24BitMap", Palette::Of200, "", "pamtotga -cmap", 9, 8, 0},
};

class ForeignTga : public ForeignPictures, public testing::WithParamInterface<TgaCase> {};

TEST_P(ForeignTga, PixelsMatchOtherDecoders) {
    const TgaCase& each = GetParam();
    write_sources(each.palette);
    if (each.convert.empty()) {
        netpbm(each.program, "tga");
    } else {
        convert_with_palette(each.palette, each.convert, "tga");
    }
    expect_kind(each.type, each.depth, each.descriptor_bit_5);
    expect_equal<LoadTGA>("tga", {decoded_by_convert("tga"), decoded_by("tgatoppm", "tga")});
    expect_rgba("tga", read_tga, each.depth == 32 ? Alpha::SameAsRed : Alpha::Opaque);
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

TEST_F(ForeignPictures, TgaColumnsFromTheRightAreReversedByReadTga) {
    write_sources(Palette::Any);
    for (const char* transform : {"-flop -orient TopRight", "-flip -flop -orient BottomRight"}) {
        SCOPED_TRACE(transform);
        convert(std::string(transform) + " -type TrueColor -compress RLE", "tga");
        expect_rgba("tga", read_tga);
    }
}

class ForeignTgaAfterAMap : public ForeignPictures {
  protected:
    // The one-pixel picture has a map of one entry, which does not shorten later pixel arrays.
    ForeignTgaAfterAMap() {
        write_sources(Palette::Of200);
        netpbm("pamtotga -cmap -norle", "tga");
        used_.Load(path(0, "tga"));
    }

    // A new LoadTGA fails, the used one draws black pictures.
    void expect_black_after_a_map() {
        for (std::size_t i = 0; i < sources.size(); ++i) {
            LoadTGA reader;
            EXPECT_FAILURE(reader.Load(path(i, "tga")), SubscriptOutOfRange) << i;
            used_.Load(path(i, "tga"));
            EXPECT_TRUE(same(drawn_by(used_), Colours(sources[i].size(), 0), sizes[i].width)) << i;
        }
    }

    LoadTGA used_;
};

TEST_F(ForeignTgaAfterAMap, Grey8BitIsBlackInLoadTga) {
    write_sources(Palette::Greys);
    convert(bottom_up + "-type Grayscale -compress none", "tga");
    expect_kind(3, 8, 0);
    expect_rgba("tga", read_tga);
    expect_black_after_a_map();
}

TEST_F(ForeignTgaAfterAMap, CompressedGrey8BitFailsInANewLoadTga) {
    write_sources(Palette::Greys);
    convert(bottom_up + "-type Grayscale -compress RLE", "tga");
    expect_kind(11, 8, 0);
    expect_rgba("tga", read_tga);
    for (std::size_t i = 0; i < sources.size(); ++i) {
        LoadTGA reader;
        EXPECT_FAILURE(reader.Load(path(i, "tga")), SubscriptOutOfRange) << i;
    }
    netpbm("ppmtopgm", "pgm");
    netpbm("pamtotga -mono", "tga", "pgm");
    expect_rgba("tga", read_tga);
}

TEST_F(ForeignTgaAfterAMap, MapOf15BitsIsIgnoredByLoadTga) {
    netpbm("pamtotga -cmap16 -norle", "tga");
    EXPECT_EQ(tga_header(0).ColorMapDepth, 15);
    expect_black_after_a_map();
    const std::vector<ForeignPicture> decoded = decoded_by("sh -c 'tgatoppm $0 | pamdepth 255'", "tga");
    for (std::size_t i = 0; i < sources.size(); ++i) {
        sources[i] = decoded.at(i).colours;
    }
    expect_rgba("tga", read_tga);
}

TEST_F(ForeignPictures, TgaIdFieldIsDecodedAsPixelsByLoadTga) {
    write_sources(Palette::Any);
    netpbm("pamtotga -rgb -norle -name=four", "tga");
    expect_rgba("tga", read_tga);
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
