// Reads BMP files written by other programs, and random files that ImageMagick reads too.
#include <array>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/codecs/read_bmp.h"
#include "support/made_bmp.h"
#include "support/readers.h"
#include "support/thoroughness.h"

namespace varnoth::test {
namespace {

constexpr std::array<Size, 3> sizes{{{1, 1}, {3, 2}, {17, 9}}};

ForeignPicture read(const Bytes& file) {
    return picture_of(read_bmp(file, 256 * 256));
}

class ForeignBmpFiles : public testing::Test {
  protected:
    /// Runs a command that converts in.ppm to out.bmp, for every size, and compares the reader's results with
    /// ImageMagick's.
    void expect_read_as_by_imagemagick(Character character, const std::string& command) const {
        SCOPED_TRACE(command);
        std::string names;
        for (std::uint32_t i = 0; i < sizes.size(); ++i) {
            const auto [width, height] = sizes[i];
            write_ppm(folder_.file("in.ppm"), width,
                      random_colours(static_cast<std::size_t>(width * height),
                                     static_cast<std::size_t>(width), character, i + 1));
            run_tool("cd " + folder_.path() + "; " + command);
            names += folder_.write(std::to_string(i) + ".bmp", read_file(folder_.file("out.bmp"))) + " ";
        }
        const std::vector<ForeignPicture> theirs =
            pictures_from_tool("convert " + names + "-alpha off -depth 8 ppm:-");
        ASSERT_EQ(theirs.size(), sizes.size());
        for (std::size_t i = 0; i < sizes.size(); ++i) {
            const ForeignPicture ours = read(read_file(folder_.file(std::to_string(i) + ".bmp")));
            EXPECT_EQ(ours.width, sizes[i].width) << i;
            EXPECT_EQ(ours.height, sizes[i].height) << i;
            EXPECT_EQ(ours.colours, theirs[i].colours) << i;
        }
    }

    TemporaryFolder folder_;
};

struct Written {
    Character character;
    const char* command;
    std::size_t at; ///< of a byte of the file that shows that the tool wrote the intended kind
    std::uint8_t value;
};

TEST_F(ForeignBmpFiles, PixelsMatchOtherDecoders) {
    constexpr std::size_t header_size = 14;
    constexpr std::size_t bits = 28;
    constexpr std::size_t compression = 30;
    const Written files[] = {
        {Character::Noise, "convert in.ppm -type TrueColor BMP3:out.bmp", bits, 24},
        {Character::Noise, "convert in.ppm -type TrueColor BMP2:out.bmp", header_size, 12},
        {Character::FewColours, "ppmtobmp -os2 -bpp=8 in.ppm > out.bmp", header_size, 12},
        {Character::Smooth, "convert in.ppm -colors 200 -type Palette -compress None BMP3:out.bmp", bits, 8},
        {Character::FewColours, "ppmtobmp -windows -bpp=8 in.ppm > out.bmp", bits, 8},
        {Character::Smooth, "pnmquant 16 in.ppm | ppmtobmp -windows -bpp=4 > out.bmp", bits, 4},
        {Character::Smooth, "convert in.ppm -monochrome BMP3:out.bmp", bits, 1},
        {Character::Noise, "pnmquant 2 in.ppm | ppmtobmp -windows -bpp=1 > out.bmp", bits, 1},
        {Character::Noise, "convert in.ppm -type TrueColor -define bmp:subtype=RGB565 BMP:out.bmp", bits, 16},
        {Character::Noise, "convert in.ppm -type TrueColor -define bmp:subtype=RGB555 BMP:out.bmp", bits, 16},
        // The alpha channel is dropped without blending.
        {Character::Noise, "convert in.ppm -alpha set -channel A -evaluate set 40% BMP:out.bmp", bits, 32},
        {Character::Runs, "convert in.ppm -colors 200 -type Palette -compress RLE BMP3:out.bmp", compression,
         1},
    };
    for (const Written& file : files) {
        expect_read_as_by_imagemagick(file.character, file.command);
        EXPECT_EQ(read_file(folder_.file("out.bmp"))[file.at], file.value) << file.command;
    }
}

/// ImageMagick rejects indices beyond the colour table, reads 3-byte entries with the 64-byte header, widens
/// bit fields by another rule and does not support 16 and 32 bits with the 12-byte header.
bool is_read_by_imagemagick(const MadeBmp& bmp) {
    const bool has_full_table = bmp.colours_used == 0 || bmp.colours_used == 1U << bmp.bits;
    if (bmp.bits <= 8) {
        return has_full_table && bmp.header_size != 64;
    }
    return bmp.compression != 3 && (bmp.header_size != 12 || bmp.bits == 24);
}

TEST_F(ForeignBmpFiles, RandomFilesMatchImageMagick) {
    RandomBmps random(2);
    std::vector<ForeignPicture> ours;
    std::string names;
    while (ours.size() < cases(400U)) {
        const MadeBmp bmp = random.next();
        if (is_read_by_imagemagick(bmp)) {
            names += folder_.write(std::to_string(ours.size()) + ".bmp", bmp.file()) + " ";
            ours.push_back(read(bmp.file()));
        }
    }
    const std::vector<ForeignPicture> theirs =
        pictures_from_tool("convert " + names + "-alpha off -depth 8 ppm:-");
    ASSERT_EQ(theirs.size(), ours.size());
    for (std::size_t i = 0; i < ours.size(); ++i) {
        EXPECT_EQ(ours[i].width, theirs[i].width) << i;
        EXPECT_EQ(ours[i].colours, theirs[i].colours) << i;
    }
}

} // namespace
} // namespace varnoth::test
