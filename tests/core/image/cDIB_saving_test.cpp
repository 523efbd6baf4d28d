// The BMP files that cDIB writes.
#include "core/image/cDIB.h"

#include <filesystem>
#include <limits>

#include <gtest/gtest.h>

#include "support/dibs.h"
#include "support/expect_failure.h"

namespace varnoth::test {
namespace {

constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();

TEST_F(CDib, File32BitHasOffset54AndNoColourTable) {
    fill_dib(dib, 1, 2, {0x010203, 0x040506});
    dib.Save(folder.file("a.bmp"));
    EXPECT_EQ(read_file(folder.file("a.bmp")),
              (Bytes{'B', 'M', 62, 0, 0, 0, 0, 0,  0, 0, 54, 0, 0, 0, 40, 0, 0, 0, 1, 0, 0,
                     0,   2,   0,  0, 0, 1, 0, 32, 0, 0, 0,  0, 0, 0, 0,  0, 0, 0, 0, 0, 0,
                     0,   0,   0,  0, 0, 0, 0, 0,  0, 0, 0,  0, 4, 5, 6,  0, 1, 2, 3, 0}));
}

TEST_F(CDib, File8BitHasOffset1078AfterTheColourTable) {
    ASSERT_TRUE(dib.Create(5, 1, 8));
    Bytes palette(1024);
    for (std::size_t i = 0; i < palette.size(); ++i) {
        palette[i] = static_cast<std::uint8_t>(i * 7 % 251);
    }
    dib.SetPalette(palette);
    std::ranges::copy(Bytes{9, 8, 7, 6, 5}, dib.lpBits());
    dib.Save(folder.file("a.bmp"));
    const Bytes file = read_file(folder.file("a.bmp"));
    Bytes expected{'B', 'M', 0x3E, 4, 0, 0, 0, 0, 0, 0, 0x36, 4, 0, 0, 40,
                   0,   0,   0,    5, 0, 0, 0, 1, 0, 0, 0,    1, 0, 8, 0};
    expected.resize(54);
    expected.insert(expected.end(), palette.begin(), palette.end());
    expected.insert(expected.end(), {9, 8, 7, 6, 5, 0, 0, 0});
    EXPECT_EQ(file, expected);
}

TEST_F(CDib, OffsetsOfOtherDepthsFollowTheirColourTables) {
    const struct { std::int32_t bits, offset; } cases[] = {{1, 62}, {4, 118}, {16, 54}, {24, 54}};

    for (const auto& each : cases) {
        ASSERT_TRUE(dib.Create(3, 2, each.bits));
        dib.Save(folder.file("a.bmp"));
        const Bytes file = read_file(folder.file("a.bmp"));
        EXPECT_EQ(file.at(10), each.offset);
        EXPECT_EQ(file.size(), static_cast<std::size_t>(each.offset + dib.Size()));
        EXPECT_EQ(file.at(2), file.size());
    }
}

TEST_F(CDib, SaveReplacesALongerFile) {
    const std::string path = folder.write("a.bmp", Bytes(500, 1));
    fill_dib(dib, 1, 1, {0});
    dib.Save(path);
    EXPECT_EQ(read_file(path).size(), 58U);
}

TEST_F(CDib, SaveDeletesTheOldFileSoOtherHardLinksKeepIt) {
    const std::string path = folder.write("a.bmp", Bytes{1, 2, 3});
    const std::string other = folder.file("other.bmp");
    std::filesystem::create_hard_link(path, other);
    fill_dib(dib, 1, 1, {0});
    dib.Save(path);
    EXPECT_EQ(read_file(path).size(), 58U);
    EXPECT_EQ(read_file(other), (Bytes{1, 2, 3}));
}

TEST_F(CDib, SaveToAReadOnlyFileFailsAndKeepsIt) {
    const std::string path = folder.write("a.bmp", Bytes{1, 2, 3});
    std::filesystem::permissions(path, std::filesystem::perms::owner_read);
    fill_dib(dib, 1, 1, {0});
    EXPECT_FAILURE(dib.Save(path), PermissionDenied);
    EXPECT_EQ(read_file(path), (Bytes{1, 2, 3}));
}

TEST_F(CDib, SaveToAFolderOrIntoAMissingOneFails) {
    std::filesystem::create_directory(folder.file("sub"));
    fill_dib(dib, 1, 1, {0});
    EXPECT_FAILURE(dib.Save(folder.file("sub")), PermissionDenied);
    EXPECT_TRUE(std::filesystem::is_directory(folder.file("sub")));
    EXPECT_FAILURE(dib.Save(folder.file("missing/a.bmp")), PathNotFound);
}

TEST_F(CDib, FileLengthBeyond32BitsOverflowsWithoutWriting) {
    ASSERT_TRUE(dib.Create(1, largest / 4, 32)); // untouched pages cost nothing
    EXPECT_FAILURE(dib.Save(folder.file("a.bmp")), Overflow);
    EXPECT_FALSE(std::filesystem::exists(folder.file("a.bmp")));
}

} // namespace
} // namespace varnoth::test
