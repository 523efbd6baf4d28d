// The BMP and JPEG probes on files written by other programs.
#include "core/codecs/BmpMod.h"
#include "core/codecs/ForeignPictures.h"
#include "core/codecs/JpgMod.h"

namespace varnoth::test {
namespace {

struct Told {
    Truth answer = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int16_t bit_count = 0;
    std::int16_t compression = 0;
};

TEST_F(ForeignPictures, BmpProbeReturnsSizesOf40ByteHeaders) {
    write_sources(Palette::Of200);
    const auto expect_sizes = [&](int bit_count) {
        const Texts expected = identified("bmp");
        for (std::size_t i = 0; i < sources.size(); ++i) {
            Told told;
            told.answer =
                BmpMod::ProbeBmp(path(i, "bmp"), told.width, told.height, told.bit_count, told.compression);
            EXPECT_EQ(told.answer, True) << i;
            EXPECT_EQ(std::to_string(told.width) + " " + std::to_string(told.height), expected.at(i));
            EXPECT_EQ(told.bit_count, bit_count) << i;
            EXPECT_EQ(told.compression, 0) << i;
        }
    };
    run_tool(in_folder("convert " + names("ppm") + "-type TrueColor +adjoin BMP3:%d.bmp"));
    expect_sizes(24);
    netpbm("ppmtobmp -windows -bpp=24", "bmp");
    expect_sizes(24);
    netpbm("ppmtobmp -windows -bpp=8", "bmp");
    expect_sizes(8);
}

TEST_F(ForeignPictures, BmpProbeRejectsOtherHeaders) {
    write_sources(Palette::Of200);
    const auto expect_refused = [&] {
        for (std::size_t i = 0; i < sources.size(); ++i) {
            Told told;
            EXPECT_EQ(
                BmpMod::ProbeBmp(path(i, "bmp"), told.width, told.height, told.bit_count, told.compression),
                False);
            EXPECT_EQ(told.width, -1);
        }
    };
    netpbm("ppmtobmp -os2 -bpp=24", "bmp");
    expect_refused();
    run_tool(in_folder("convert " + names("ppm") + "-type TrueColor +adjoin BMP4:%d.bmp"));
    expect_refused();
}

TEST_F(ForeignPictures, JpegProbeReturnsSizesOfBaselineFiles) {
    write_sources(Palette::Any);
    const auto expect_sizes = [&] {
        const Texts expected = identified("jpg");
        for (std::size_t i = 0; i < sources.size(); ++i) {
            Told told;
            EXPECT_EQ(JpgMod::ProbeJpeg(path(i, "jpg"), told.width, told.height), True) << i;
            EXPECT_EQ(std::to_string(told.width) + " " + std::to_string(told.height), expected.at(i));
        }
    };
    convert("", "jpg");
    expect_sizes();
    netpbm("pnmtojpeg", "jpg");
    expect_sizes();
}

TEST_F(ForeignPictures, JpegProbeRejectsProgressiveFiles) {
    write_sources(Palette::Any);
    const auto expect_nothing = [&] {
        for (std::size_t i = 0; i < sources.size(); ++i) {
            Told told;
            EXPECT_EQ(JpgMod::ProbeJpeg(path(i, "jpg"), told.width, told.height), False) << i;
            EXPECT_EQ(told.width, 0);
        }
    };
    convert("-interlace JPEG", "jpg");
    expect_nothing();
    netpbm("pnmtojpeg -progressive", "jpg");
    expect_nothing();
}

} // namespace
} // namespace varnoth::test
