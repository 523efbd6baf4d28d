// Reader tests on files written by other programs: compares what a reader draws with what those programs
// decode or, where the readers differ on purpose, with the defined result.
#pragma once

#include <cstdint>
#include <random>
#include <span>

#include <gtest/gtest.h>

#include "core/image/RgbaPicture.h"
#include "support/foreign_tools.h"
#include "support/readers.h"

namespace varnoth::test {

inline constexpr Size usual_sizes[] = {{1, 1}, {1, 3}, {2, 3},  {3, 2},   {4, 1},
                                       {5, 4}, {7, 5}, {33, 9}, {255, 2}, {256, 256}};

enum class Palette { Any, Of200, Of16, RedAndBlue, BlackAndWhite, Greys };

/// The colours of a palette; empty for random colours.
inline Colours colours_in(Palette palette) {
    std::mt19937 random(7);
    Colours colours;
    switch (palette) {
    case Palette::Any:
        break;
    case Palette::Of200:
    case Palette::Of16:
        for (std::size_t i = 0; i < (palette == Palette::Of16 ? 16U : 200U); ++i) {
            colours.push_back(static_cast<Colour>(random() % 0x1000000));
        }
        break;
    case Palette::RedAndBlue:
        colours = {0x0000FF, 0xFF0000};
        break;
    case Palette::BlackAndWhite:
        colours = {0x000000, 0xFFFFFF};
        break;
    case Palette::Greys:
        for (Colour i = 0; i < 256; ++i) {
            colours.push_back(i * 0x010101);
        }
        break;
    }
    return colours;
}

/// Colours of these, or any, in runs of random length.
inline Colours random_runs(const Colours& choice, std::size_t count, std::uint32_t seed) {
    std::mt19937 random(seed);
    Colours colours;
    for (std::size_t i = 0; i < count; ++i) {
        if (i > 0 && random() % 3 == 0) {
            colours.push_back(colours.back());
        } else {
            colours.push_back(choice.empty() ? static_cast<Colour>(random() % 0x1000000)
                                             : choice[random() % choice.size()]);
        }
    }
    return colours;
}

/// Compares two pictures of that width; reports the first difference.
template <typename Pixel>
testing::AssertionResult same(const std::vector<Pixel>& drawn, const std::vector<Pixel>& expected,
                              std::int32_t width) {
    if (drawn.size() != expected.size()) {
        return testing::AssertionFailure() << drawn.size() << " pixels, expected " << expected.size();
    }
    for (std::size_t i = 0; i < drawn.size(); ++i) {
        if (drawn[i] != expected[i]) {
            const auto across = static_cast<std::size_t>(width);
            return testing::AssertionFailure()
                   << "pixel " << i % across << ", " << i / across << " is " << std::hex << drawn[i]
                   << ", expected " << expected[i] << " (width " << std::dec << width << ")";
        }
    }
    return testing::AssertionSuccess();
}

/// Makes ImageMagick copy the red channel to the alpha channel. Version 7 prints a line on standard output
/// for -fx.
inline const std::string red_as_alpha =
    "\\( +clone -channel R -separate +channel \\) -alpha off -compose CopyOpacity -composite ";

/// A reader of the command line.
using RgbaReader = RgbaPicture (*)(std::span<const std::uint8_t> file, std::int64_t max_pixels);

enum class Alpha { Opaque, SameAsRed };

class ForeignPictures : public testing::Test {
  protected:
    /// Writes one source picture of each of the usual sizes, 0.ppm and so on, and the palette as map.ppm.
    void write_sources(Palette palette) {
        sources_of({std::begin(usual_sizes), std::end(usual_sizes)}, palette);
    }

    void sources_of(const std::vector<Size>& wanted, Palette palette) {
        sizes = wanted;
        map = colours_in(palette);
        if (!map.empty()) {
            write_ppm(folder.file("map.ppm"), static_cast<std::int32_t>(map.size()), map);
        }
        sources.clear();
        for (const Size& size : sizes) {
            const auto count = static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
            const auto seed = static_cast<std::uint32_t>(sources.size());
            sources.push_back(random_runs(map, count, seed));
            write_ppm(folder.file(std::to_string(seed) + ".ppm"), size.width, sources.back());
        }
    }

    /// "0.ppm 1.ppm ..." with another extension.
    std::string names(const std::string& ending) const {
        std::string all;
        for (std::size_t i = 0; i < sources.size(); ++i) {
            all += std::to_string(i) + "." + ending + " ";
        }
        return all;
    }

    // One thread: on a busy machine ImageMagick's threads wait for each other longer than they work.
    std::string in_folder(const std::string& command) const {
        return "cd " + folder.path() + "; export OMP_NUM_THREADS=1; " + command;
    }

    std::string path(std::size_t i, const std::string& ending) const {
        return folder.file(std::to_string(i) + "." + ending);
    }

    /// Makes ImageMagick write every source with these options.
    void convert(const std::string& options, const std::string& ending, const std::string& from = "ppm") {
        run_tool(in_folder("convert " + names(from) + options + " +adjoin %d." + ending));
    }

    /// The same, with the palette in the files unless the sources have any colours: only files with a palette
    /// make ImageMagick write one.
    void convert_with_palette(Palette palette, const std::string& options, const std::string& ending) {
        if (palette == Palette::Any) {
            convert(options, ending);
        } else {
            netpbm("ppmtogif", "gif");
            convert(options, ending, "gif");
        }
    }

    /// Runs a program of Netpbm, or another one, with every source as its standard input.
    void netpbm(const std::string& program, const std::string& ending, const std::string& from = "ppm") {
        run_tool(in_folder("for i in " + numbers() + "; do " + program + " < $i." + from + " > $i." + ending +
                           "; done"));
    }

    /// Without -auto-orient, ImageMagick leaves the rows in the order of the file.
    std::vector<ForeignPicture> decoded_by_convert(const std::string& ending) {
        return pictures_from_tool(
            in_folder("convert " + names(ending) + "-auto-orient -alpha off -depth 8 ppm:-"));
    }

    std::vector<ForeignPicture> decoded_by(const std::string& program, const std::string& ending) {
        return pictures_from_tool(
            in_folder("for i in " + numbers() + "; do " + program + " $i." + ending + "; done"));
    }

    /// For every file with that extension: the probe returns its size, and a new reader draws the same pixels
    /// as the source and all foreign decoders.
    template <typename Reader>
    void expect_equal(const std::string& ending, const std::vector<std::vector<ForeignPicture>>& decoded) {
        for (std::size_t i = 0; i < sources.size(); ++i) {
            SCOPED_TRACE(path(i, ending));
            Reader reader;
            const Info info = probe(reader, path(i, ending));
            const std::int32_t width = sizes[i].width;
            reader.Load(path(i, ending));
            EXPECT_EQ(info, (Info{True, width, sizes[i].height, reader.Bpp()}));
            const Colours drawn = drawn_by(reader);
            EXPECT_TRUE(same(drawn, sources[i], width));
            for (const std::vector<ForeignPicture>& pictures : decoded) {
                ASSERT_EQ(pictures.size(), sources.size());
                EXPECT_TRUE(same(drawn, pictures[i].colours, width));
            }
        }
    }

    /// A reader of the command line gives the pixels of every source.
    void expect_rgba(const std::string& ending, RgbaReader read, Alpha alpha = Alpha::Opaque) const {
        for (std::size_t i = 0; i < sources.size(); ++i) {
            SCOPED_TRACE(path(i, ending));
            const RgbaPicture picture = read(read_file(path(i, ending)), 256 * 256);
            ASSERT_EQ(picture.width, sizes[i].width);
            ASSERT_EQ(picture.height, sizes[i].height);
            std::vector<std::uint32_t> expected;
            for (const Colour colour : sources[i]) {
                const unsigned red = red_of(colour);
                const unsigned alpha_byte = alpha == Alpha::Opaque ? 255 : red;
                expected.push_back(alpha_byte << 24 | red << 16 | unsigned{green_of(colour)} << 8 |
                                   blue_of(colour));
            }
            EXPECT_TRUE(same(picture.pixels, expected, picture.width));
        }
    }

    PcxHeader pcx_header(std::size_t i) const {
        const Bytes bytes = read_file(path(i, "pcx"));
        return PcxHeader::from_bytes(std::span<const std::uint8_t>(bytes).first<PcxHeader::size>());
    }

    TgaHeader tga_header(std::size_t i) const {
        const Bytes bytes = read_file(path(i, "tga"));
        return TgaHeader::from_bytes(std::span<const std::uint8_t>(bytes).first<TgaHeader::size>());
    }

    /// Every PCX file has this layout.
    void expect_layout(int bits, int planes, int encoding) const {
        for (std::size_t i = 0; i < sources.size(); ++i) {
            EXPECT_EQ(pcx_header(i).BitsPerPixel, bits) << i;
            EXPECT_EQ(pcx_header(i).NPlanes, planes) << i;
            EXPECT_EQ(pcx_header(i).Encoding, encoding) << i;
        }
    }

    /// Every TGA file is of this kind.
    void expect_kind(int type, int depth, int descriptor_bit_5) const {
        for (std::size_t i = 0; i < sources.size(); ++i) {
            EXPECT_EQ(tga_header(i).ImageType, type) << i;
            EXPECT_EQ(tga_header(i).PixelDepth, depth) << i;
            EXPECT_EQ(tga_header(i).ImageDescriptor & 32, descriptor_bit_5) << i;
        }
    }

    TemporaryFolder folder;
    std::vector<Size> sizes;
    Colours map;
    std::vector<Colours> sources;

  private:
    std::string numbers() const {
        std::string all;
        for (std::size_t i = 0; i < sources.size(); ++i) {
            all += std::to_string(i) + " ";
        }
        return all;
    }
};

} // namespace varnoth::test
