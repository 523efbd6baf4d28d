#include "core/services/FileList.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "support/TemporaryFolder.h"

namespace varnoth::test {
namespace {

TEST(FileList, SortsNumbersByValueAndLettersCaseInsensitively) {
    EXPECT_TRUE(comes_before("frame2.bmp", "frame10.bmp"));
    EXPECT_FALSE(comes_before("frame10.bmp", "frame2.bmp"));
    EXPECT_TRUE(comes_before("a.bmp", "B.bmp"));
    EXPECT_TRUE(comes_before("B.bmp", "c.bmp"));
    EXPECT_TRUE(comes_before("frame", "frame1"));
    EXPECT_TRUE(comes_before("frame02", "frame10"));
    EXPECT_TRUE(comes_before("frame007", "frame8"));
    EXPECT_FALSE(comes_before("c.bmp", "B.bmp"));
    EXPECT_FALSE(comes_before("frame1", "frame"));
    EXPECT_FALSE(comes_before("1", ""));
    EXPECT_TRUE(comes_before("frame02b", "frame2c"));
    EXPECT_FALSE(comes_before("frame02c", "frame2b"));
    EXPECT_TRUE(comes_before("a0", "a9"));
    EXPECT_TRUE(comes_before("frame9", "frame10"));
    EXPECT_FALSE(comes_before("frame09", "frame1"));
}

TEST(FileList, OnlyDigitsAreNumbersAndOnlyLettersHaveCase) {
    EXPECT_TRUE(comes_before("a1", "ab"));
    EXPECT_FALSE(comes_before("ab", "a1"));
    // The characters adjacent to the digits and the letters in ASCII.
    EXPECT_TRUE(comes_before("/", "10"));
    EXPECT_TRUE(comes_before("10", ":"));
    EXPECT_TRUE(comes_before("/2", "/10"));
    EXPECT_TRUE(comes_before(":2", ":10"));
    EXPECT_TRUE(comes_before("@b", "`a"));
    EXPECT_TRUE(comes_before("[b", "{a"));
    EXPECT_FALSE(comes_before("Ab", "aa"));
    EXPECT_FALSE(comes_before("Zb", "za"));
    EXPECT_TRUE(comes_before("_", "Z"));
    EXPECT_TRUE(comes_before("_", "A"));
}

TEST(FileList, EqualNamesAreOrderedByTheirBytes) {
    EXPECT_NE(comes_before("frame02", "frame2"), comes_before("frame2", "frame02"));
    EXPECT_NE(comes_before("A", "a"), comes_before("a", "A"));
    EXPECT_FALSE(comes_before("a", "a"));
}

TEST(FileList, ListsRegularFilesWithTheExtensionInAnyCase) {
    const TemporaryFolder folder;
    for (const char* name : {"frame10.BMP", "frame2.bmp", "frame1.Bmp", "frame3.tga", "bmp", "x.bmp.txt"}) {
        folder.write(name, {});
    }
    std::filesystem::create_directory(folder.file("folder.bmp"));
    EXPECT_EQ(list_files(folder.path(), ".bmp"), (Texts{"frame1.Bmp", "frame2.bmp", "frame10.BMP"}));
}

TEST(FileList, UnreadableFolderHasNoFiles) {
    const TemporaryFolder folder;
    EXPECT_TRUE(list_files(folder.file("missing"), ".bmp").empty());
}

} // namespace
} // namespace varnoth::test
