#include "core/services/folders.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "support/TemporaryFolder.h"

namespace varnoth::test {
namespace {

TEST(Folders, PlainFolderIsAbsoluteAndNormalised) {
    EXPECT_EQ(plain_folder("/a/./b/../c/"), "/a/c");
    EXPECT_EQ(plain_folder("/a"), "/a");
    EXPECT_EQ(plain_folder("/"), "/");
    EXPECT_EQ(plain_folder("/.."), "/");
    EXPECT_EQ(plain_folder("/\xC3\xBC/"), "/\xC3\xBC");
}

TEST(Folders, RelativePathStartsAtTheWorkingFolder) {
    EXPECT_EQ(current_folder(), std::filesystem::current_path().string());
    EXPECT_EQ(plain_folder(""), current_folder());
    EXPECT_EQ(plain_folder("."), current_folder());
    EXPECT_EQ(plain_folder("below"), std::filesystem::current_path() / "below");
}

TEST(Folders, FoldersDownToStartAtTheRootAndEndAtTheFolder) {
    EXPECT_EQ(folders_down_to("/a/b c/d"), (Texts{"/", "/a", "/a/b c", "/a/b c/d"}));
    EXPECT_EQ(folders_down_to("/"), (Texts{"/"}));
}

TEST(Folders, SubfoldersAreInNaturalOrderWithHiddenOnesAndLinks) {
    const TemporaryFolder folder;
    folder.write("file", {});
    for (const char* name : {"b10", "b2", "C", ".hidden", "a"}) {
        std::filesystem::create_directory(folder.file(name));
    }
    std::filesystem::create_directory_symlink(folder.file("a"), folder.file("link"));
    EXPECT_EQ(folders_in(folder.path()), (Texts{folder.file(".hidden"), folder.file("a"), folder.file("b2"),
                                                folder.file("b10"), folder.file("C"), folder.file("link")}));
    EXPECT_EQ(folders_in(folder.file("a")), Texts{});
    EXPECT_EQ(folders_in(folder.file("none")), Texts{});
}

TEST(Folders, FolderNameIsTheLastComponentOrTheRoot) {
    EXPECT_EQ(folder_name("/a/b c"), "b c");
    EXPECT_EQ(folder_name("/"), "/");
}

TEST(Folders, FolderIsWithinItselfAndItsAncestors) {
    EXPECT_TRUE(is_within("/a/b", "/a"));
    EXPECT_TRUE(is_within("/a", "/a/"));
    EXPECT_TRUE(is_within("/a", "/"));
    EXPECT_FALSE(is_within("/a", "/a/b"));
    EXPECT_FALSE(is_within("/ab", "/a"));
    EXPECT_FALSE(is_within("/a/../c", "/a"));
}

} // namespace
} // namespace varnoth::test
