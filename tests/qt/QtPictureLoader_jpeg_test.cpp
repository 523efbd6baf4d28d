// JPEG files through the loader, and files that are neither JPEG nor BMP or cannot be read.
#include <malloc.h>

#include <filesystem>

#include <gtest/gtest.h>

#include "qt/QtPictureLoader.h"
#include "qt/made_jpeg.h"
#include "qt/made_pictures.h"
#include "support/TemporaryFolder.h"
#include "support/expect_failure.h"
#include "support/foreign_tools.h"
#include "support/pictures.h"
#include "support/thoroughness.h"

namespace varnoth::test {
namespace {

class QtPictureLoaderJpeg : public testing::Test {
  protected:
    void make_ppm(std::int32_t width, std::int32_t height, std::uint32_t seed,
                  Character character = Character::Smooth) const {
        write_ppm(folder_.file("in.ppm"), width,
                  random_colours(static_cast<std::size_t>(width * height), static_cast<std::size_t>(width),
                                 character, seed));
    }

    /// Makes out.jpg from in.ppm with a command and returns its bytes.
    Bytes make_jpeg(const std::string& command) const {
        run_tool("cd " + folder_.path() + "; " + command);
        return read_file(folder_.file("out.jpg"));
    }

    std::string write(const Bytes& bytes) const { return folder_.write("made.jpg", bytes); }

    /// Writes the first `length` bytes of a file and returns the path.
    std::string write_truncated(const Bytes& whole, std::size_t length) const {
        return write(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)));
    }

    /// jpegtopnm uses the same public library and defaults as Qt, so the pixels must be identical.
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

    TemporaryFolder folder_;
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

TEST_F(QtPictureLoaderJpeg, BaselineIsDecodedAsByNetpbm) {
    expect_read_as_by_netpbm("pnmtojpeg -quality=90 in.ppm > out.jpg");
    EXPECT_TRUE(has_marker(read_file(folder_.file("out.jpg")), 0xC0));
    expect_read_as_by_netpbm("convert in.ppm -sampling-factor 1x1 -quality 98 out.jpg");
    expect_read_as_by_netpbm("convert in.ppm -sampling-factor 2x2 -quality 40 out.jpg");
    expect_read_as_by_netpbm("convert in.ppm -sampling-factor 2x1 -quality 80 out.jpg");
}

TEST_F(QtPictureLoaderJpeg, ProgressiveIsDecodedAsByNetpbm) {
    expect_read_as_by_netpbm("convert in.ppm -interlace Plane -quality 90 out.jpg");
    EXPECT_TRUE(has_marker(read_file(folder_.file("out.jpg")), 0xC2));
}

TEST_F(QtPictureLoaderJpeg, GreyIsDecodedAsByNetpbm) {
    expect_read_as_by_netpbm("ppmtopgm in.ppm | pnmtojpeg -quality=85 > out.jpg");
}

/// In blocks, of which a row has 6. 0 means no restart markers.
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

TEST_F(QtPictureLoaderJpeg, RestartMarkersAreDecoded) {
    const std::vector<Colour> wanted = pixels_of_blocks(block_greys());
    for (const std::uint8_t interval : restart_intervals) {
        SCOPED_TRACE(int{interval});
        const Bytes bytes = made_jpeg(6, block_greys(), interval);
        EXPECT_EQ(has_marker(bytes, 0xD0), interval != 0);
        const std::string path = write(bytes);
        EXPECT_EQ(picture_from_tool("jpegtopnm " + path).colours, wanted);
        EXPECT_EQ(load(path).colours, wanted);
    }
}

TEST_F(QtPictureLoaderJpeg, OrientationTagIsIgnored) {
    make_ppm(16, 8, 1);
    const Bytes plain = make_jpeg("pnmtojpeg in.ppm > out.jpg");
    const ForeignPicture upright = load(write(plain));
    // An APP1 segment right after the start: Exif, one entry, orientation 6 (a quarter turn).
    const Bytes exif{0xFF, 0xE1, 0,    34, 'E', 'x', 'i', 'f', 0, 0, 'I', 'I', 42, 0, 8, 0, 0, 0,
                     1,    0,    0x12, 1,  3,   0,   1,   0,   0, 0, 6,   0,   0,  0, 0, 0, 0, 0};
    Bytes tagged = plain;
    tagged.insert(tagged.begin() + 2, exif.begin(), exif.end());
    const std::string path = write(tagged);
    ASSERT_EQ(run_tool("convert " + path + " -format '%[EXIF:Orientation]' info:"), "6");
    const ForeignPicture loaded = load(path);
    EXPECT_EQ(loaded.width, 16);
    EXPECT_EQ(loaded.height, 8);
    EXPECT_EQ(loaded.colours, upright.colours);
}

TEST_F(QtPictureLoaderJpeg, FileExtensionIsIgnored) {
    make_ppm(9, 9, 1);
    const Bytes bytes = make_jpeg("pnmtojpeg in.ppm > out.jpg");
    EXPECT_EQ(load(folder_.write("picture.bmp", bytes)).colours, load(folder_.file("out.jpg")).colours);
}

/// Loads a file while the allocator fills all new memory with a pattern. Empty for InvalidPicture.
std::vector<Colour> load_over_poison(const std::string& path, int pattern) {
    mallopt(M_PERTURB, pattern);
    std::vector<Colour> colours;
    const auto failure = failure_in([&] { colours = load(path).colours; });
    mallopt(M_PERTURB, 0);
    EXPECT_TRUE(!failure || *failure == Failure::InvalidPicture);
    return colours;
}

// ---- Truncated files. jpegtopnm writes what the JPEG library decodes and exits with an error. From a file
// that ends within a table between two scans the library decodes nothing.

constexpr const char* one_scan_commands[] = {
    "pnmtojpeg -quality=90 in.ppm > out.jpg",
    "convert in.ppm -sampling-factor 1x1 -quality 97 out.jpg",
    "ppmtopgm in.ppm | pnmtojpeg -quality=85 > out.jpg",
    "convert in.ppm -sampling-factor 2x1 -quality 75 out.jpg",
};

constexpr const char* progressive_command = "convert in.ppm -interlace Plane -quality 90 out.jpg";

void expect_filled_by_the_library(const std::string& path) {
    const std::vector<Colour> colours = load_over_poison(path, 0x55);
    ASSERT_EQ(colours, load_over_poison(path, 0xAA));
    const std::vector<ForeignPicture> theirs = pictures_from_tool("jpegtopnm " + path + " || true");
    ASSERT_EQ(colours, theirs.empty() ? std::vector<Colour>() : theirs[0].colours);
}

TEST_F(QtPictureLoaderJpeg, TruncatedFileIsFilledByTheLibrary) {
    for (const char* command : {one_scan_commands[0], one_scan_commands[1], one_scan_commands[2],
                                one_scan_commands[3], progressive_command}) {
        SCOPED_TRACE(command);
        make_ppm(64, 80, 5, Character::FewColours);
        const Bytes whole = make_jpeg(command);
        const std::size_t data = scan_data(whole);
        const std::size_t step = (whole.size() - data) / cases(24U) + 1;
        for (std::size_t length = data; length < whole.size(); length += step) {
            SCOPED_TRACE(length);
            expect_filled_by_the_library(write_truncated(whole, length));
        }
    }
}

TEST_F(QtPictureLoaderJpeg, TruncatedFileWithRestartsIsFilled) {
    for (const std::uint8_t interval : restart_intervals) {
        SCOPED_TRACE(int{interval});
        const Bytes whole = made_jpeg(6, block_greys(), interval);
        for (std::size_t length = scan_data(whole); length < whole.size(); length += 19) {
            SCOPED_TRACE(length);
            expect_filled_by_the_library(write_truncated(whole, length));
        }
    }
}

TEST_F(QtPictureLoaderJpeg, FileWithoutItsEndMarkerIsComplete) {
    for (const char* command : one_scan_commands) {
        SCOPED_TRACE(command);
        make_ppm(37, 23, 3);
        const Bytes whole = make_jpeg(command);
        const std::vector<Colour> all = load(folder_.file("out.jpg")).colours;
        EXPECT_EQ(load(write_truncated(whole, whole.size() - 1)).colours, all);
        EXPECT_EQ(load(write_truncated(whole, whole.size() - 2)).colours, all);
    }
}

TEST_F(QtPictureLoaderJpeg, FileTruncatedInItsHeadersIsInvalid) {
    make_ppm(16, 16, 2);
    const Bytes whole = make_jpeg("pnmtojpeg in.ppm > out.jpg");
    const std::size_t data = scan_data(whole);
    for (std::size_t length = 0; length + 1 < data; length += 7) {
        EXPECT_FAILURE(load(write_truncated(whole, length)), InvalidPicture);
    }
}

TEST_F(QtPictureLoaderJpeg, BrokenFileIsDecodedOrRejected) {
    std::mt19937 random(11);
    make_ppm(40, 40, 2);
    for (const char* command : {one_scan_commands[0], progressive_command}) {
        const Bytes whole = make_jpeg(command);
        for (int round = 0; round < 100; ++round) {
            Bytes bytes = whole;
            for (int change = 0; change < 3; ++change) {
                bytes[random() % bytes.size()] = static_cast<std::uint8_t>(random());
            }
            const std::string path = write(bytes);
            const auto failure = failure_in([&] { load(path); });
            ASSERT_TRUE(!failure || *failure == Failure::InvalidPicture || *failure == Failure::OutOfMemory);
        }
    }
}

TEST_F(QtPictureLoaderJpeg, TooManyPixelsAreOutOfMemory) {
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

// ---- Files that are not pictures or cannot be read

TEST(QtPictureLoader, UnreadableFileRaisesTheInputFileFailure) {
    const TemporaryFolder folder;
    EXPECT_FAILURE(load(folder.file("nothing.bmp")), FileNotFound);
    EXPECT_FAILURE(load(folder.path()), PermissionDenied);
    folder.write("plain", Bytes{1});
    EXPECT_FAILURE(load(folder.file("plain/below.bmp")), PathNotFound);
}

TEST(QtPictureLoader, OtherContentIsInvalidWhateverTheExtension) {
    const TemporaryFolder folder;
    EXPECT_FAILURE(load(folder.write("empty.bmp", Bytes{})), InvalidPicture);
    EXPECT_FAILURE(load(folder.write("text.bmp", Bytes{'h', 'e', 'l', 'l', 'o'})), InvalidPicture);
    for (const char* format : {"png", "gif", "ppm", "ico"}) {
        SCOPED_TRACE(format);
        const std::string path = folder.file("picture.bmp");
        run_tool("convert -size 8x8 gradient: " + std::string(format) + ":" + path);
        EXPECT_FAILURE(load(path), InvalidPicture);
    }
    EXPECT_FAILURE(load(folder.write("only-magic.bmp", Bytes{'B', 'M'})), InvalidPicture);
    EXPECT_FAILURE(load(folder.write("only-magic.jpg", Bytes{0xFF, 0xD8})), InvalidPicture);
}

TEST(QtPictureLoader, NonAsciiNamesAreFound) {
    const TemporaryFolder folder;
    const MadeBmp bmp{1, 1, 24, 0, {}, {3, 2, 1, 0}};
    EXPECT_EQ(load(folder.write("f\xC3\xBCr \xE2\x82\xAC.bmp", bmp.file())).colours,
              (std::vector<Colour>{0x030201}));
}

} // namespace
} // namespace varnoth::test
