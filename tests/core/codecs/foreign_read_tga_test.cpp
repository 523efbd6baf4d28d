// TGA files that other programs wrote, read with read_tga().
#include "core/codecs/ForeignPictures.h"
#include "core/codecs/foreign_rgba.h"
#include "core/codecs/read_tga.h"

namespace varnoth {
namespace {

using test::Colours;
using test::Palette;
using test::same;

// ImageMagick writes rows in its internal order and only records the orientation.
const std::string bottom_up = "-flip -orient BottomLeft ";

class ForeignReadTga : public test::ForeignPictures {
  protected:
    void expect_sources() const { expect(sources); }

    void expect(const std::vector<Colours>& expected) const {
        ASSERT_EQ(expected.size(), sources.size());
        for (std::size_t i = 0; i < expected.size(); ++i) {
            test::expect_opaque(path(i, "tga"), read_tga, sizes[i], expected[i]);
        }
    }
};

TEST_F(ForeignReadTga, TrueColour) {
    write_sources(Palette::Any);
    for (const char* compression : {"none", "RLE"}) {
        convert(bottom_up + "-type TrueColor -compress " + compression, "tga");
        expect_sources();
    }
    netpbm("pamtotga -rgb -norle -name=four", "tga");
    expect_sources();
    netpbm("pamtotga -rgb", "tga");
    expect_sources();
}

TEST_F(ForeignReadTga, EachOrientation) {
    write_sources(Palette::Any);
    for (const char* transform : {"-orient TopLeft", "-flop -orient TopRight", "-flip -orient BottomLeft",
                                  "-flip -flop -orient BottomRight"}) {
        SCOPED_TRACE(transform);
        convert(std::string(transform) + " -type TrueColor -compress RLE", "tga");
        expect_sources();
    }
}

TEST_F(ForeignReadTga, ColourMapped) {
    write_sources(Palette::Of200);
    netpbm("ppmtogif", "gif");
    for (const char* compression : {"none", "RLE"}) {
        convert(bottom_up + "-compress " + compression, "tga", "gif");
        expect_kind(compression == std::string("RLE") ? 9 : 1, 8, 0);
        expect_sources();
    }
    netpbm("pamtotga -cmap -norle", "tga");
    expect_sources();
    netpbm("pamtotga -cmap", "tga");
    expect_sources();
}

TEST_F(ForeignReadTga, ColourMapOf15Bits) {
    write_sources(Palette::Of200);
    netpbm("pamtotga -cmap16", "tga");
    EXPECT_EQ(tga_header(0).ColorMapDepth, 15);
    expect(test::colours_of(decoded_by("sh -c 'tgatoppm $0 | pamdepth 255'", "tga")));
}

TEST_F(ForeignReadTga, Grey) {
    write_sources(Palette::Greys);
    for (const char* compression : {"none", "RLE"}) {
        convert(bottom_up + "-type Grayscale -compress " + compression, "tga");
        expect_kind(compression == std::string("RLE") ? 11 : 3, 8, 0);
        expect_sources();
    }
    netpbm("ppmtopgm", "pgm");
    netpbm("pamtotga -mono", "tga", "pgm");
    expect_sources();
}

TEST_F(ForeignReadTga, AlphaOf32Bits) {
    write_sources(Palette::Any);
    for (const char* compression : {"none", "RLE"}) {
        netpbm("convert - " + bottom_up + "-alpha set -channel A -fx r +channel -compress " + compression +
                   " tga:-",
               "tga");
        expect_kind(compression == std::string("RLE") ? 10 : 2, 32, 0);
        for (std::size_t i = 0; i < sources.size(); ++i) {
            const RgbaPicture picture = read_tga(test::read_file(path(i, "tga")), 1 << 16);
            EXPECT_TRUE(same(test::colours_of(picture), sources[i], sizes[i].width)) << i;
            EXPECT_TRUE(same(test::alphas_of(picture), test::reds_of(sources[i]), sizes[i].width)) << i;
        }
    }
}

} // namespace
} // namespace varnoth
