// PCX files that other programs wrote, read with read_pcx().
#include "core/codecs/ForeignPictures.h"
#include "core/codecs/foreign_rgba.h"
#include "core/codecs/read_pcx.h"

namespace varnoth {
namespace {

using test::Colours;
using test::Palette;
using test::same;

class ForeignReadPcx : public test::ForeignPictures {
  protected:
    void expect_sources() const {
        for (std::size_t i = 0; i < sources.size(); ++i) {
            test::expect_opaque(path(i, "pcx"), read_pcx, sizes[i], sources[i]);
        }
    }
};

TEST_F(ForeignReadPcx, TrueColour) {
    write_sources(Palette::Any);
    for (const char* compression : {"none", "RLE"}) {
        convert(std::string("-type TrueColor -compress ") + compression, "pcx");
        expect_layout(8, 3, compression == std::string("RLE") ? 1 : 0);
        expect_sources();
    }
    netpbm("ppmtopcx -24bit", "pcx");
    expect_sources();
}

TEST_F(ForeignReadPcx, EightBits) {
    write_sources(Palette::Of200);
    netpbm("ppmtogif", "gif");
    for (const char* compression : {"none", "RLE"}) {
        convert(std::string("-compress ") + compression, "pcx", "gif");
        expect_layout(8, 1, compression == std::string("RLE") ? 1 : 0);
        expect_sources();
    }
    netpbm("ppmtopcx -8bit", "pcx");
    expect_sources();
}

TEST_F(ForeignReadPcx, FourBits) {
    write_sources(Palette::Of16);
    netpbm("ppmtopcx -packed -palette=map.ppm", "pcx");
    expect_layout(4, 1, 1);
    expect_sources();
}

TEST_F(ForeignReadPcx, OneToFourPlanes) {
    write_sources(Palette::Of16);
    netpbm("ppmtopcx -planes=4", "pcx");
    expect_layout(1, 4, 1);
    expect_sources();
    write_sources(Palette::RedAndBlue);
    for (int planes = 1; planes <= 4; ++planes) {
        netpbm("ppmtopcx -planes=" + std::to_string(planes) + " -palette=map.ppm", "pcx");
        expect_layout(1, planes, 1);
        expect_sources();
    }
}

TEST_F(ForeignReadPcx, CornerNotAtZero) {
    write_sources(Palette::Of16);
    netpbm("ppmtopcx -planes=4 -xpos=20 -ypos=30", "pcx");
    EXPECT_EQ(pcx_header(0).XMin, 20);
    expect_sources();
}

// Not ImageMagick's: it sets the bits of black pixels, which contradicts the palette that it writes.
TEST_F(ForeignReadPcx, BlackAndWhite) {
    write_sources(Palette::BlackAndWhite);
    netpbm("ppmtopcx -planes=1 -palette=map.ppm", "pcx");
    expect_layout(1, 1, 1);
    expect_sources();
}

TEST_F(ForeignReadPcx, AlphaInTheFourthPlane) {
    write_sources(Palette::Any);
    netpbm("convert - -alpha set -channel A -fx r +channel -type TrueColorAlpha pcx:-", "pcx");
    expect_layout(8, 4, 1);
    for (std::size_t i = 0; i < sources.size(); ++i) {
        const RgbaPicture picture = read_pcx(test::read_file(path(i, "pcx")), 1 << 16);
        EXPECT_TRUE(same(test::colours_of(picture), sources[i], sizes[i].width)) << i;
        EXPECT_TRUE(same(test::alphas_of(picture), test::reds_of(sources[i]), sizes[i].width)) << i;
    }
}

} // namespace
} // namespace varnoth
