// JPEG files through the loader, and files that are neither JPEG nor BMP or cannot be read at all.
#include <malloc.h>

#include <filesystem>

#include <gtest/gtest.h>

#include "platform/qt/QtPictureLoader.h"
#include "platform/qt/cut_jpeg.h"
#include "platform/qt/made_jpeg.h"
#include "platform/qt/made_pictures.h"
#include "support/TemporaryFolder.h"
#include "support/expect_failure.h"
#include "support/foreign_tools.h"
#include "support/pictures.h"
#include "support/thoroughness.h"

namespace varnoth {
namespace {

using test::Bytes;
using test::Character;
using test::ForeignPicture;
using test::load;
using test::picture_from_tool;

constexpr Colour black = 0;

class QtPictureLoaderJpeg : public testing::Test {
  protected:
    void make_ppm(std::int32_t width, std::int32_t height, std::uint32_t seed,
                  Character character = Character::Smooth) const {
        test::write_ppm(folder_.file("in.ppm"), width,
                        test::random_colours(static_cast<std::size_t>(width * height),
                                             static_cast<std::size_t>(width), character, seed));
    }

    /// Makes out.jpg from in.ppm by a command and returns its bytes.
    Bytes make_jpeg(const std::string& command) const {
        test::run_tool("cd " + folder_.path() + "; " + command);
        return test::read_file(folder_.file("out.jpg"));
    }

    std::string write(const Bytes& bytes) const { return folder_.write("made.jpg", bytes); }

    /// The first `length` bytes of a file as a file.
    std::string write_cut(const Bytes& whole, std::size_t length) const {
        return write(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)));
    }

    /// jpegtopnm decodes with the same public library as Qt, and with its default settings, as Qt does: so
    /// the pixels must be the same to the last bit.
    void expect_read_as_by_netpbm(const std::string& command) const {
        std::uint32_t seed = 0;
        for (const auto& [width, height] :
             {std::pair{1, 1}, {2, 3}, {3, 2}, {5, 4}, {8, 8}, {17, 33}, {64, 64}, {256, 256}}) {
            SCOPED_TRACE(command + " at " + std::to_string(width) + "x" + std::to_string(height));
            make_ppm(width, height, ++seed);
            make_jpeg(command);
            const ForeignPicture theirs = picture_from_tool("jpegtopnm " + folder_.file("out.jpg"));
            const ForeignPicture ours = load(folder_.file("out.jpg"));
            ASSERT_EQ(ours.width, width);
            ASSERT_EQ(ours.height, height);
            EXPECT_EQ(ours.colours, theirs.colours);
        }
    }

    test::TemporaryFolder folder_;
};

bool has_marker(const Bytes& bytes, std::uint8_t marker) {
    for (std::size_t at = 0; at + 1 < bytes.size(); ++at) {
        if (bytes[at] == 0xFF && bytes[at + 1] == marker) {
            return true;
        }
    }
    return false;
}

/// Position of the first byte of the first scan's data.
std::size_t scan_data(const Bytes& bytes) {
    for (std::size_t at = 0; at + 3 < bytes.size(); ++at) {
        if (bytes[at] == 0xFF && bytes[at + 1] == 0xDA) {
            return at + 2 + bytes[at + 2] * std::size_t{256} + bytes[at + 3];
        }
    }
    return bytes.size();
}

TEST_F(QtPictureLoaderJpeg, ReadsBaselineAsOthersDo) {
    expect_read_as_by_netpbm("pnmtojpeg -quality=90 in.ppm > out.jpg");
    EXPECT_TRUE(has_marker(test::read_file(folder_.file("out.jpg")), 0xC0));
    expect_read_as_by_netpbm("convert in.ppm -sampling-factor 1x1 -quality 98 out.jpg");
    expect_read_as_by_netpbm("convert in.ppm -sampling-factor 2x2 -quality 40 out.jpg");
    expect_read_as_by_netpbm("convert in.ppm -sampling-factor 2x1 -quality 80 out.jpg");
}

TEST_F(QtPictureLoaderJpeg, ReadsProgressiveAsOthersDo) {
    expect_read_as_by_netpbm("convert in.ppm -interlace Plane -quality 90 out.jpg");
    EXPECT_TRUE(has_marker(test::read_file(folder_.file("out.jpg")), 0xC2));
}

TEST_F(QtPictureLoaderJpeg, ReadsGreyAsOthersDo) {
    expect_read_as_by_netpbm("ppmtopgm in.ppm | pnmtojpeg -quality=85 > out.jpg");
}

/// In blocks; 0 is none, and a row has 6.
constexpr std::uint8_t restart_intervals[] = {0, 1, 4, 6, 7, 12};

/// Greys of 6 by 10 blocks, none of them black and no two neighbours equal.
std::vector<std::uint8_t> block_greys() {
    std::vector<std::uint8_t> greys;
    for (unsigned i = 0; i < 60; ++i) {
        greys.push_back(static_cast<std::uint8_t>(20 + i * 89 % 220));
    }
    return greys;
}

std::vector<Colour> pixels_of_blocks(const std::vector<std::uint8_t>& greys) {
    std::vector<Colour> colours;
    for (std::size_t y = 0; y < 80; ++y) {
        for (std::size_t x = 0; x < 48; ++x) {
            const std::uint8_t grey = greys[y / 8 * 6 + x / 8];
            colours.push_back(make_colour(grey, grey, grey));
        }
    }
    return colours;
}

TEST_F(QtPictureLoaderJpeg, ReadsRestartMarkers) {
    const std::vector<Colour> wanted = pixels_of_blocks(block_greys());
    for (const std::uint8_t interval : restart_intervals) {
        SCOPED_TRACE(int{interval});
        const Bytes bytes = test::made_jpeg(6, block_greys(), interval);
        EXPECT_EQ(has_marker(bytes, 0xD0), interval != 0);
        const std::string path = write(bytes);
        EXPECT_EQ(picture_from_tool("jpegtopnm " + path).colours, wanted);
        EXPECT_EQ(load(path).colours, wanted);
    }
}

TEST_F(QtPictureLoaderJpeg, TheOrientationTagDoesNotRotate) {
    make_ppm(16, 8, 1);
    const Bytes plain = make_jpeg("pnmtojpeg in.ppm > out.jpg");
    const ForeignPicture upright = load(write(plain));
    // An APP1 segment right after the start: Exif, one entry, orientation 6 (a quarter turn).
    const Bytes exif{0xFF, 0xE1, 0,    34, 'E', 'x', 'i', 'f', 0, 0, 'I', 'I', 42, 0, 8, 0, 0, 0,
                     1,    0,    0x12, 1,  3,   0,   1,   0,   0, 0, 6,   0,   0,  0, 0, 0, 0, 0};
    Bytes tagged = plain;
    tagged.insert(tagged.begin() + 2, exif.begin(), exif.end());
    const std::string path = write(tagged);
    ASSERT_EQ(test::run_tool("convert " + path + " -format '%[EXIF:Orientation]' info:"), "6");
    const ForeignPicture loaded = load(path);
    EXPECT_EQ(loaded.width, 16);
    EXPECT_EQ(loaded.height, 8);
    EXPECT_EQ(loaded.colours, upright.colours);
}

TEST_F(QtPictureLoaderJpeg, TheEndingOfTheNameDoesNotMatter) {
    make_ppm(9, 9, 1);
    const Bytes bytes = make_jpeg("pnmtojpeg in.ppm > out.jpg");
    EXPECT_EQ(load(folder_.write("picture.bmp", bytes)).colours, load(folder_.file("out.jpg")).colours);
}

/// The loader's answer over memory that the allocator has filled with a pattern; empty for InvalidPicture.
std::vector<Colour> load_over_poison(const std::string& path, int pattern) {
    mallopt(M_PERTURB, pattern);
    std::vector<Colour> colours;
    const auto failure = test::failure_in([&] { colours = load(path).colours; });
    mallopt(M_PERTURB, 0);
    EXPECT_TRUE(!failure || *failure == Failure::InvalidPicture);
    return colours;
}

/// Rows at the top that are as in the whole picture.
std::size_t rows_as_in(const std::vector<Colour>& whole, const std::vector<Colour>& cut, std::size_t width) {
    const auto differing = std::mismatch(whole.begin(), whole.end(), cut.begin()).first;
    return static_cast<std::size_t>(differing - whole.begin()) / width;
}

bool all_black_from(const std::vector<Colour>& colours, std::size_t row, std::size_t width) {
    return std::all_of(colours.begin() + static_cast<std::ptrdiff_t>(row * width), colours.end(),
                       [](Colour colour) { return colour == black; });
}

constexpr const char* one_scan_commands[] = {
    "pnmtojpeg -quality=90 in.ppm > out.jpg",
    "convert in.ppm -sampling-factor 1x1 -quality 97 out.jpg",
    "ppmtopgm in.ppm | pnmtojpeg -quality=85 > out.jpg",
    "convert in.ppm -sampling-factor 2x1 -quality 75 out.jpg",
};

TEST_F(QtPictureLoaderJpeg, ACutBaselineFileGivesItsTopRowsAndBlack) {
    constexpr std::size_t width = 64;
    constexpr std::size_t height = 80;
    for (const char* command : one_scan_commands) {
        SCOPED_TRACE(command);
        make_ppm(width, height, 5, Character::FewColours);
        const Bytes whole = make_jpeg(command);
        const std::vector<Colour> all = load(folder_.file("out.jpg")).colours;
        const std::size_t data = scan_data(whole);
        std::size_t rows_before = 0;
        const auto step_at = [&](std::size_t length) -> std::size_t {
            const std::size_t tail = whole.size() - 40; // every cut from here on
            return length >= tail ? 1 : std::min<std::size_t>(29 * test::share, tail - length);
        };
        for (std::size_t length = data; length < whole.size(); length += step_at(length)) {
            const std::string path = write_cut(whole, length);
            const std::vector<Colour> colours = load_over_poison(path, 0x55);
            ASSERT_EQ(colours, load_over_poison(path, 0xAA)) << "cut at " << length;
            ASSERT_EQ(colours.size(), all.size());
            const std::size_t rows = rows_as_in(all, colours, width);
            // A row of blocks that has begun is not whole; its rows may be as in the whole picture by chance.
            ASSERT_TRUE(all_black_from(colours, rows, width))
                << "cut at " << length << ", " << rows << " rows";
            ASSERT_GE(rows, rows_before) << "cut at " << length;
            rows_before = rows;
        }
        EXPECT_EQ(rows_before, height);
    }
}

TEST_F(QtPictureLoaderJpeg, ACutFileWithRestartMarkersGivesItsWholeRowsOfBlocksAndBlack) {
    const std::vector<Colour> all = pixels_of_blocks(block_greys());
    for (const std::uint8_t interval : restart_intervals) {
        SCOPED_TRACE(int{interval});
        const Bytes whole = test::made_jpeg(6, block_greys(), interval);
        std::size_t rows_before = 0;
        for (std::size_t length = scan_data(whole); length < whole.size(); ++length) {
            const std::vector<Colour> colours = load(write_cut(whole, length)).colours;
            const std::size_t rows = rows_as_in(all, colours, 48);
            ASSERT_EQ(rows % 8, 0U) << "cut at " << length;
            ASSERT_TRUE(all_black_from(colours, rows, 48)) << "cut at " << length << ", " << rows << " rows";
            ASSERT_GE(rows, rows_before) << "cut at " << length;
            ASSERT_LE(rows, rows_before + 8) << "cut at " << length;
            rows_before = rows;
        }
        EXPECT_EQ(rows_before, 80U);
    }
}

TEST_F(QtPictureLoaderJpeg, ACutFileGivesAboutAsManyRowsAsItHasBytes) {
    constexpr std::size_t width = 64;
    make_ppm(width, 256, 9, Character::Noise);
    const Bytes whole = make_jpeg("pnmtojpeg in.ppm > out.jpg");
    const std::vector<Colour> all = load(folder_.file("out.jpg")).colours;
    const std::size_t data = scan_data(whole);
    for (std::size_t quarter = 0; quarter < 4; ++quarter) {
        const std::size_t length = data + (whole.size() - data) * quarter / 4;
        const std::vector<Colour> colours = load(write_cut(whole, length)).colours;
        const std::size_t rows = rows_as_in(all, colours, width);
        // Noise spreads its bytes evenly; a row of blocks is 16 rows, and one more may hang on what is
        // missing.
        EXPECT_LE(rows, quarter * 64 + 16);
        EXPECT_GE(rows + 17 + 16, quarter * 64);
        EXPECT_TRUE(all_black_from(colours, rows, width));
    }
}

TEST_F(QtPictureLoaderJpeg, AFileThatLacksOnlyItsEndMarkerIsWhole) {
    for (const char* command : one_scan_commands) {
        SCOPED_TRACE(command);
        make_ppm(37, 23, 3);
        const Bytes whole = make_jpeg(command);
        const std::vector<Colour> all = load(folder_.file("out.jpg")).colours;
        EXPECT_EQ(load(write_cut(whole, whole.size() - 1)).colours, all);
        EXPECT_EQ(load(write_cut(whole, whole.size() - 2)).colours, all);
    }
}

TEST_F(QtPictureLoaderJpeg, ACutProgressiveFileGivesTheSamePixelsWhateverTheMemoryHeld) {
    constexpr std::size_t width = 64;
    make_ppm(width, 48, 4, Character::FewColours);
    const Bytes whole = make_jpeg("convert in.ppm -interlace Plane -quality 90 out.jpg");
    for (std::size_t length = scan_data(whole); length < whole.size(); length += 23) {
        const std::string path = write_cut(whole, length);
        const std::vector<Colour> colours = load_over_poison(path, 0x55);
        ASSERT_EQ(colours, load_over_poison(path, 0xAA)) << "cut at " << length;
        ASSERT_FALSE(colours.empty());
    }
}

TEST_F(QtPictureLoaderJpeg, AProgressiveFileCutInItsFirstScanIsBlackBelow) {
    constexpr std::size_t width = 64;
    make_ppm(width, 128, 4, Character::Noise);
    const Bytes whole = make_jpeg("convert in.ppm -interlace Plane -quality 95 out.jpg");
    const std::size_t data = scan_data(whole);
    EXPECT_TRUE(all_black_from(load(write_cut(whole, data)).colours, 0, width));
    const std::vector<Colour> some = load(write_cut(whole, data + 100)).colours;
    EXPECT_TRUE(all_black_from(some, 96, width));
    EXPECT_FALSE(all_black_from(some, 0, width));
}

TEST_F(QtPictureLoaderJpeg, AFileCutInItsHeadersDoesNotDecode) {
    make_ppm(16, 16, 2);
    const Bytes whole = make_jpeg("pnmtojpeg in.ppm > out.jpg");
    const std::size_t data = scan_data(whole);
    for (std::size_t length = 0; length + 1 < data; length += 7) {
        EXPECT_FAILURE(load(write_cut(whole, length)), InvalidPicture);
    }
}

TEST_F(QtPictureLoaderJpeg, BrokenBytesEndInAPictureOrInInvalidPicture) {
    std::mt19937 random(11);
    make_ppm(40, 40, 2);
    for (const char* command : {one_scan_commands[0], "convert in.ppm -interlace Plane out.jpg"}) {
        const Bytes whole = make_jpeg(command);
        for (int round = 0; round < 100; ++round) {
            Bytes bytes = whole;
            for (int change = 0; change < 3; ++change) {
                bytes[random() % bytes.size()] = static_cast<std::uint8_t>(random());
            }
            const std::string path = write(bytes);
            const auto failure = test::failure_in([&] { load(path); });
            ASSERT_TRUE(!failure || *failure == Failure::InvalidPicture || *failure == Failure::OutOfMemory);
        }
    }
}

TEST_F(QtPictureLoaderJpeg, APictureOfMorePixelsThanTheLimitIsOutOfMemory) {
    make_ppm(16, 16, 2);
    Bytes bytes = make_jpeg("pnmtojpeg in.ppm > out.jpg");
    for (std::size_t at = 0; at + 9 < bytes.size(); ++at) {
        if (bytes[at] == 0xFF && bytes[at + 1] == 0xC0) {
            put_u16(bytes, at + 5, 0xFFFD); // heights and widths are big-endian, so 0xFDFF
            put_u16(bytes, at + 7, 0xFFFD);
            break;
        }
    }
    EXPECT_FAILURE(load(write(bytes)), OutOfMemory);
}

// ---- The walk that finds the cut

TEST(FindJpegCut, ACompleteScanIsNoCut) {
    const Bytes file{0xFF, 0xD8, 0xFF, 0xDA, 0, 3, 9, 1, 2, 0xFF, 0x00, 3, 0xFF, 0xD9};
    EXPECT_FALSE(find_jpeg_cut(file).has_value());
}

TEST(FindJpegCut, AStuffedFFAndARestartMarkerDoNotEndAScan) {
    const Bytes file{0xFF, 0xD8, 0xFF, 0xDD, 0,    4,    0, 2,    0xFF, 0xDA,
                     0,    3,    9,    1,    0xFF, 0x00, 3, 0xFF, 0xD7, 5};
    const auto cut = find_jpeg_cut(file);
    ASSERT_TRUE(cut.has_value());
    EXPECT_EQ(cut->end, file.size());
    EXPECT_TRUE(cut->restarts);
    EXPECT_EQ(cut->next_restart, 0U);
}

TEST(FindJpegCut, HalfAMarkerAtTheEndDoesNotCount) {
    const Bytes file{0xFF, 0xD8, 0xFF, 0xDA, 0, 3, 9, 1, 0xFF, 0xFF};
    const auto cut = find_jpeg_cut(file);
    ASSERT_TRUE(cut.has_value());
    EXPECT_EQ(cut->end, 8U);
    EXPECT_FALSE(cut->restarts);
}

TEST(FindJpegCut, AMarkerInsideASegmentIsNotSeen) {
    // The segment's content looks like the start of a scan and an end of image.
    const Bytes file{0xFF, 0xD8, 0xFF, 0xE1, 0, 8, 0xFF, 0xDA, 0xFF, 0xD9, 0, 0, 0xFF, 0xDA, 0, 3, 9, 1};
    EXPECT_TRUE(find_jpeg_cut(file).has_value());
}

TEST(FindJpegCut, AFileThatEndsBeforeItsFirstScanOrInTheDataOfALaterOneIsNoCut) {
    EXPECT_FALSE(find_jpeg_cut(Bytes{}).has_value());
    EXPECT_FALSE(find_jpeg_cut(Bytes{0xFF, 0xD8, 0xFF}).has_value());
    EXPECT_FALSE(find_jpeg_cut(Bytes{0xFF, 0xD8, 0xFF, 0xE0, 0x7F}).has_value());
    EXPECT_FALSE(find_jpeg_cut(Bytes{0xFF, 0xD8, 0xFF, 0xE0, 0x7F, 0xFF, 0xFF, 0xDA}).has_value());
    EXPECT_FALSE(find_jpeg_cut(Bytes{0xFF, 0xD8, 0xFF, 0xDA, 0, 3}).has_value());
    EXPECT_FALSE(
        find_jpeg_cut(Bytes{0xFF, 0xD8, 0xFF, 0xDA, 0, 3, 9, 1, 0xFF, 0xDA, 0, 3, 9, 1, 2, 3}).has_value());
}

TEST(FindJpegCut, HalfASegmentBetweenTwoScansDoesNotCount) {
    const Bytes file{0xFF, 0xD8, 0xFF, 0xDA, 0, 3, 9, 1, 0xFF, 0xC4, 0, 9, 1};
    for (std::size_t length = 10; length <= file.size(); ++length) {
        const auto cut = find_jpeg_cut(std::span(file).first(length));
        ASSERT_TRUE(cut.has_value()) << length;
        EXPECT_FALSE(cut->in_first_scan);
        EXPECT_EQ(cut->end, 8U);
    }
}

TEST(JpegFiller, HasNoMarkersButTheRestartsOfTheScan) {
    const Bytes plain = jpeg_filler({0, true, false, 0}, 1);
    EXPECT_EQ(std::count(plain.begin(), plain.end(), 0xFF), 0);
    const Bytes divided = jpeg_filler({0, true, true, 6}, 1);
    std::vector<int> markers;
    for (std::size_t at = 0; at + 1 < divided.size(); ++at) {
        if (divided[at] == 0xFF) {
            markers.push_back(divided[at + 1]);
        }
    }
    ASSERT_GE(markers.size(), 3U);
    EXPECT_EQ(markers[0], 0xD6);
    EXPECT_EQ(markers[1], 0xD7);
    EXPECT_EQ(markers[2], 0xD0);
}

TEST(JpegFiller, EachBeginsWithTwoBitsOfItsOwn) {
    for (unsigned number = 0; number < jpeg_fillers; ++number) {
        EXPECT_EQ(jpeg_filler({0, true, false, 0}, number).front() >> 6, number);
    }
}

// ---- Files that are no pictures, or no files

TEST(QtPictureLoader, WhatCannotBeReadFailsAsAnyFileDoes) {
    const test::TemporaryFolder folder;
    EXPECT_FAILURE(load(folder.file("nothing.bmp")), FileNotFound);
    EXPECT_FAILURE(load(folder.path()), PermissionDenied);
    folder.write("plain", Bytes{1});
    EXPECT_FAILURE(load(folder.file("plain/below.bmp")), PathNotFound);
}

TEST(QtPictureLoader, EveryOtherContentIsAnInvalidPictureWhateverTheEnding) {
    const test::TemporaryFolder folder;
    EXPECT_FAILURE(load(folder.write("empty.bmp", Bytes{})), InvalidPicture);
    EXPECT_FAILURE(load(folder.write("text.bmp", Bytes{'h', 'e', 'l', 'l', 'o'})), InvalidPicture);
    for (const char* format : {"png", "gif", "ppm", "ico"}) {
        SCOPED_TRACE(format);
        const std::string path = folder.file("picture.bmp");
        test::run_tool("convert -size 8x8 gradient: " + std::string(format) + ":" + path);
        EXPECT_FAILURE(load(path), InvalidPicture);
    }
    EXPECT_FAILURE(load(folder.write("only-magic.bmp", Bytes{'B', 'M'})), InvalidPicture);
    EXPECT_FAILURE(load(folder.write("only-magic.jpg", Bytes{0xFF, 0xD8})), InvalidPicture);
}

TEST(QtPictureLoader, NamesBeyondAsciiAreFound) {
    const test::TemporaryFolder folder;
    const test::MadeBmp bmp{1, 1, 24, 0, {}, {3, 2, 1, 0}};
    EXPECT_EQ(load(folder.write("f\xC3\xBCr \xE2\x82\xAC.bmp", bmp.file())).colours,
              (std::vector<Colour>{0x030201}));
}

} // namespace
} // namespace varnoth
