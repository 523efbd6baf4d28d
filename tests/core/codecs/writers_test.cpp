// What the PCX and the TGA writer share.
#include <filesystem>
#include <map>

#include <gtest/gtest.h>

#include "core/base/bytes.h"
#include "core/codecs/SavePCX.h"
#include "core/codecs/SaveTGA.h"
#include "support/TemporaryFolder.h"
#include "support/expect_failure.h"
#include "support/pictures.h"
#include "support/readers.h"

namespace varnoth::test {
namespace {

using Fields = std::map<std::size_t, std::uint8_t>;

// Where a header has the picture's size, the fields other than 0 of a picture of 299 by 2, and what follows
// the header for a row of a red, then a blue pixel, and for two compressed pixels of three bytes of 5. Byte 2
// is the encoding.
struct Pcx {
    static constexpr const char* name = "Pcx";
    static constexpr std::size_t header_bytes = 128;
    static constexpr std::size_t width_at = 8;
    static constexpr std::size_t height_at = 10;
    static inline const Fields fields{{0, 10}, {1, 5},   {3, 8},   {4, 1},  {6, 1},   {8, 43}, {9, 1},
                                      {10, 2}, {12, 96}, {14, 96}, {65, 3}, {66, 44}, {67, 1}};
    static constexpr std::uint8_t plain = 0;
    static constexpr std::uint8_t compressed = 1;
    static inline const Bytes red_and_blue{255, 0, 0, 0, 0, 255};
    static inline const Bytes compressed_fives{198, 5};
    SavePCX writer;

    void write(const std::string& path, PictureSurface& picture, Truth compress) {
        writer.SavePCXinFile(path, picture, compress);
    }
};

struct Tga {
    static constexpr const char* name = "Tga";
    static constexpr std::size_t header_bytes = 18;
    static constexpr std::size_t width_at = 12;
    static constexpr std::size_t height_at = 14;
    static inline const Fields fields{{12, 43}, {13, 1}, {14, 2}, {16, 24}};
    static constexpr std::uint8_t plain = 2;
    static constexpr std::uint8_t compressed = 10;
    static inline const Bytes red_and_blue{0, 0, 255, 255, 0, 0};
    static inline const Bytes compressed_fives{129, 5, 5, 5};
    SaveTGA writer;

    void write(const std::string& path, PictureSurface& picture, Truth compress) {
        writer.SaveTGAinFile(path, picture, compress);
    }
};

template <typename Format>
class Writers : public testing::Test {
  protected:
    void write(PictureSurface& surface, Truth compress = False) { format.write(path, surface, compress); }

    Bytes data() const {
        const Bytes file = read_file(path);
        return {file.begin() + Format::header_bytes, file.end()};
    }

    void expect_size(std::int32_t width, std::int32_t height) const {
        const Bytes file = read_file(path);
        EXPECT_EQ(get_i16(file, Format::width_at), width);
        EXPECT_EQ(get_i16(file, Format::height_at), height);
    }

    TemporaryFolder folder;
    const Bytes old_bytes = Bytes(5000, 1);
    const std::string path = folder.write("picture", old_bytes);
    Format format;
    TestSurface picture{2, 2};
};

using Formats = testing::Types<Pcx, Tga>;
TYPED_TEST_SUITE(Writers, Formats, FormatName);

TYPED_TEST(Writers, ExistingFileIsReplacedWithoutAsking) {
    this->write(this->picture);
    EXPECT_EQ(this->data(), Bytes(12));
}

TYPED_TEST(Writers, HeaderHasItsFieldsAndZerosElsewhere) {
    TestSurface surface(299, 2);
    for (const Truth compress : {False, True}) {
        Bytes expected(TypeParam::header_bytes);
        for (const auto& [at, value] : TypeParam::fields) {
            expected[at] = value;
        }
        expected[2] = compress == True ? TypeParam::compressed : TypeParam::plain;
        this->write(surface, compress);
        Bytes header = read_file(this->path);
        header.resize(TypeParam::header_bytes);
        EXPECT_EQ(header, expected);
    }
}

TYPED_TEST(Writers, ReadOnlyFileIsKeptAndIsAFailure) {
    std::filesystem::permissions(this->path, std::filesystem::perms::owner_read);
    EXPECT_FAILURE(this->write(this->picture), PermissionDenied);
    EXPECT_FAILURE(this->write(this->picture, True), PermissionDenied);
    EXPECT_EQ(read_file(this->path), this->old_bytes);
}

TYPED_TEST(Writers, FolderAsTargetOrMissingFolderIsAFailure) {
    EXPECT_FAILURE(this->format.write(this->folder.path(), this->picture, False), PermissionDenied);
    EXPECT_FAILURE(this->format.write(this->folder.file("none/a"), this->picture, False), PathNotFound);
}

TYPED_TEST(Writers, PictureWithoutPixelsFailsAndKeepsTheOldFile) {
    TestSurface no_width(0, 2);
    TestSurface no_height(2, 0);
    for (const Truth compress : {True, False}) {
        EXPECT_FAILURE(this->write(no_width, compress), SubscriptOutOfRange);
        EXPECT_FAILURE(this->write(no_height, compress), SubscriptOutOfRange);
    }
    EXPECT_EQ(read_file(this->path), this->old_bytes);
}

TYPED_TEST(Writers, SideOf32768OverflowsAndKeepsTheOldFile) {
    TestSurface wide(32768, 1);
    TestSurface high(1, 32768);
    EXPECT_FAILURE(this->write(wide), Overflow);
    EXPECT_FAILURE(this->write(high), Overflow);
    EXPECT_EQ(read_file(this->path), this->old_bytes);
    TestSurface highest(1, 32767);
    this->write(highest, True);
    this->expect_size(1, 32767);
}

TYPED_TEST(Writers, SizesAreInPixelsAndScaleModesAreRestored) {
    TestSurface surface(4, 3);
    surface.ScaleMode = ScaleTwips;
    surface.Parent()->ScaleMode = ScaleTwips;
    this->write(surface);
    this->expect_size(4, 3);
    EXPECT_EQ(surface.ScaleMode, ScaleTwips);
    EXPECT_EQ(surface.Parent()->ScaleMode, ScaleTwips);
}

TYPED_TEST(Writers, InnerAreaIsWrittenAt24BitsFromEveryDepth) {
    for (const std::int32_t bits : {16, 24, 32}) {
        TestSurface surface(2, 1, bits, 3, 0);
        surface.PSet(0, 0, 0x0000FF);
        surface.PSet(1, 0, 0xFF0000);
        this->write(surface);
        EXPECT_EQ(this->data(), TypeParam::red_and_blue) << bits;
    }
}

TYPED_TEST(Writers, TopLevelFormCanBeWritten) {
    PictureSurface form({nullptr, 2, 1, 32, 0, 0x050505});
    this->write(form);
    EXPECT_EQ(this->data(), Bytes(6, 5));
}

TYPED_TEST(Writers, OneObjectWritesSeveralFiles) {
    TestSurface large(9, 9);
    TestSurface small(2, 1, 32, 0, 0x050505);
    this->write(large, True);
    this->write(small);
    EXPECT_EQ(this->data(), Bytes(6, 5));
    this->write(small, True);
    EXPECT_EQ(this->data(), TypeParam::compressed_fives);
}

} // namespace
} // namespace varnoth::test
