// The BMP and JPEG probes on files written by other programs.
#include "core/codecs/BmpMod.h"
#include "core/codecs/ForeignPictures.h"
#include "core/codecs/JpgMod.h"

namespace varnoth::test {
namespace {

class ForeignProbes : public ForeignPictures {
  protected:
    // A rejected file has no size and no depth.
    void expect_bmp(Truth answer, int bit_count = -1) const {
        for (std::size_t i = 0; i < sources.size(); ++i) {
            std::int32_t width = 0;
            std::int32_t height = 0;
            std::int16_t bits = 0;
            std::int16_t compression = 0;
            EXPECT_EQ(BmpMod::ProbeBmp(path(i, "bmp"), width, height, bits, compression), answer) << i;
            EXPECT_EQ((Size{width, height}), answer == True ? sizes[i] : (Size{-1, -1}));
            EXPECT_EQ(bits, bit_count) << i;
            EXPECT_EQ(compression, answer == True ? 0 : -1) << i;
        }
    }

    void expect_jpeg(Truth answer) const {
        for (std::size_t i = 0; i < sources.size(); ++i) {
            Size size;
            EXPECT_EQ(JpgMod::ProbeJpeg(path(i, "jpg"), size.width, size.height), answer) << i;
            EXPECT_EQ(size, answer == True ? sizes[i] : Size()) << i;
        }
    }
};

TEST_F(ForeignProbes, BmpWith40ByteHeaderHasItsSize) {
    write_sources(Palette::Of200);
    run_tool(in_folder("convert " + names("ppm") + "-type TrueColor +adjoin BMP3:%d.bmp"));
    expect_bmp(True, 24);
    netpbm("ppmtobmp -windows -bpp=24", "bmp");
    expect_bmp(True, 24);
    netpbm("ppmtobmp -windows -bpp=8", "bmp");
    expect_bmp(True, 8);
}

TEST_F(ForeignProbes, BmpWithAnotherHeaderIsRejected) {
    write_sources(Palette::Of200);
    netpbm("ppmtobmp -os2 -bpp=24", "bmp");
    expect_bmp(False);
    run_tool(in_folder("convert " + names("ppm") + "-type TrueColor +adjoin BMP4:%d.bmp"));
    expect_bmp(False);
}

TEST_F(ForeignProbes, BaselineJpegHasItsSize) {
    write_sources(Palette::Any);
    convert("", "jpg");
    expect_jpeg(True);
    netpbm("pnmtojpeg", "jpg");
    expect_jpeg(True);
}

TEST_F(ForeignProbes, ProgressiveJpegIsRejected) {
    write_sources(Palette::Any);
    convert("-interlace JPEG", "jpg");
    expect_jpeg(False);
    // Not -progressive, which Netpbm 11 ignores.
    run_tool(
        in_folder("printf '0,1,2: 0-0, 0, 0;\\n0: 1-63, 0, 0;\\n1: 1-63, 0, 0;\\n2: 1-63, 0, 0;\\n' >scans"));
    netpbm("pnmtojpeg -scans=scans", "jpg");
    expect_jpeg(False);
}

} // namespace
} // namespace varnoth::test
