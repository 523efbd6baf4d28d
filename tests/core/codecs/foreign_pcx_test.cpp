// PCX files that other programs wrote.
#include "core/codecs/CBitmap.h"
#include "core/codecs/ForeignPictures.h"
#include "reference/LoadPCX.h"
#include "support/expect_failure.h"

namespace varnoth::test {
namespace {

TEST_F(ForeignPictures, Pcx24BitPlainAndCompressed) {
    write_sources(Palette::Any);
    convert("-type TrueColor -compress none", "pcx");
    expect_layout(8, 3, 0);
    expect_equal<LoadPCX>("pcx", {decoded_by_convert("pcx")}); // Netpbm knows no plain PCX

    convert("-type TrueColor -compress RLE", "pcx");
    expect_layout(8, 3, 1);
    expect_equal_pcx();
    netpbm("ppmtopcx -24bit", "pcx");
    expect_layout(8, 3, 1);
    expect_equal_pcx();
}

TEST_F(ForeignPictures, Pcx8BitPlainAndCompressed) {
    write_sources(Palette::Of200);
    netpbm("ppmtogif", "gif");
    convert("-compress none", "pcx", "gif");
    expect_layout(8, 1, 0);
    expect_equal<LoadPCX>("pcx", {decoded_by_convert("pcx")});
    convert("-compress RLE", "pcx", "gif");
    expect_layout(8, 1, 1);
    expect_equal_pcx();
    netpbm("ppmtopcx -8bit", "pcx");
    expect_layout(8, 1, 1);
    expect_equal_pcx();
}

TEST_F(ForeignPictures, PcxFourPlanes) {
    write_sources(Palette::Of16);
    netpbm("ppmtopcx -planes=4", "pcx");
    expect_layout(1, 4, 1);
    expect_equal_pcx();
}

TEST_F(ForeignPictures, PcxOriginNotZero) {
    write_sources(Palette::Of16);
    netpbm("ppmtopcx -planes=4 -xpos=20 -ypos=30", "pcx");
    EXPECT_EQ(pcx_header(0).XMin, 20);
    EXPECT_EQ(pcx_header(0).YMin, 30);
    expect_equal<LoadPCX>("pcx", {decoded_by("pcxtoppm", "pcx")});
}

TEST_F(ForeignPictures, Pcx4BitLinesHaveAnEvenNumberOfBytes) {
    write_sources(Palette::Of16);
    netpbm("ppmtopcx -packed -palette=map.ppm", "pcx");
    expect_layout(4, 1, 1);
    int skewed = 0;
    int refused = 0;
    for (std::size_t i = 0; i < sources.size(); ++i) {
        SCOPED_TRACE(path(i, "pcx"));
        const auto width = static_cast<std::size_t>(sizes[i].width);
        const auto height = static_cast<std::size_t>(sizes[i].height);
        const std::size_t file_line = (width + 1) / 2;
        const std::size_t line = file_line + file_line % 2;
        LoadPCX reader;
        // The plain bytes of the file: whole lines of BytesPerLine.
        Bytes bytes = read_file(path(i, "pcx"));
        bytes.erase(bytes.begin(), bytes.begin() + PcxHeader::size);
        bytes.push_back(0);
        bytes = reference::decode_pcx_rle(bytes);
        ASSERT_EQ(bytes.size(), file_line * height);
        if ((height - 1) * line >= bytes.size()) {
            EXPECT_FAILURE(reader.Load(path(i, "pcx")), SubscriptOutOfRange);
            ++refused;
            continue;
        }
        reader.Load(path(i, "pcx"));
        Colours expected;
        for (std::size_t y = 0; y < height; ++y) {
            for (std::size_t x = 0; x < width; ++x) {
                const std::size_t at = y * line + x / 2;
                const int byte = at < bytes.size() ? bytes[at] : 0;
                expected.push_back(map.at(static_cast<std::size_t>(x % 2 == 0 ? byte >> 4 : byte & 15)));
            }
        }
        EXPECT_TRUE(same(drawn_by(reader), expected, sizes[i].width));
        EXPECT_EQ(expected == sources[i], line == file_line || height == 1);
        skewed += expected == sources[i] ? 0 : 1;
    }
    EXPECT_GE(skewed, 1);
    EXPECT_GE(refused, 3);
}

TEST_F(ForeignPictures, Pcx4BitOfMatchingWidth) {
    sources_of({{3, 2}, {4, 3}, {7, 5}, {8, 2}, {11, 7}, {256, 256}}, Palette::Of16);
    netpbm("ppmtopcx -packed -palette=map.ppm", "pcx");
    expect_layout(4, 1, 1);
    expect_equal<LoadPCX>("pcx", {decoded_by("pcxtoppm", "pcx")});
}

TEST_F(ForeignPictures, Pcx1BitBlackAndWhite) {
    write_sources(Palette::BlackAndWhite);
    netpbm("ppmtopcx -planes=1 -palette=map.ppm", "pcx");
    expect_layout(1, 1, 1);
    expect_equal<LoadPCX>("pcx", {decoded_by("pcxtoppm", "pcx")});
}

TEST_F(ForeignPictures, Pcx1BitInOtherColoursIsBlackAndWhite) {
    write_sources(Palette::RedAndBlue);
    netpbm("ppmtopcx -planes=1 -palette=map.ppm", "pcx");
    expect_layout(1, 1, 1);
    expect_white_for_the_second_colour();
}

TEST_F(ForeignPictures, Pcx1BitWithSetBitsForBlackIsInverted) {
    // ImageMagick writes 1 bit for pictures with a palette and sets the bits of the black pixels, which
    // contradicts the map that it writes. Netpbm reads such a file as LoadPCX does.
    sources_of({{3, 2}, {4, 3}, {5, 5}, {33, 9}, {256, 256}}, Palette::BlackAndWhite);
    netpbm("ppmtogif -mapfile=map.ppm", "gif");
    for (Colours& colours : sources) {
        for (Colour& colour : colours) {
            colour ^= 0xFFFFFF;
        }
    }
    convert("-compress none", "pcx", "gif");
    expect_layout(1, 1, 0);
    expect_equal<LoadPCX>("pcx", {});
    convert("-compress RLE", "pcx", "gif");
    expect_layout(1, 1, 1);
    expect_equal<LoadPCX>("pcx", {decoded_by("pcxtoppm", "pcx")});
}

TEST_F(ForeignPictures, PcxOf2Or3PlanesIsNotDecoded) {
    write_sources(Palette::RedAndBlue);
    for (const char* options : {"-planes=2", "-planes=3"}) {
        netpbm(std::string("ppmtopcx ") + options, "pcx");
        for (std::size_t i = 0; i < sources.size(); ++i) {
            const auto old = put_old_picture();
            LoadPCX reader;
            reader.Load(path(i, "pcx"));
            EXPECT_EQ(CBitmap::CurrentBitmap, old);
            EXPECT_EQ(reader.IsPCX(), True);
            EXPECT_EQ(reader.Width(), sizes[i].width);
        }
    }
}

} // namespace
} // namespace varnoth::test
