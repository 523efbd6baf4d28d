// Only for Windows.
#include "core/services/folders.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "core/base/files.h"
#include "support/TemporaryFolder.h"

namespace varnoth::test {
namespace {

TEST(WindowsFolders, PlainFolderHasBackslashesAndACapitalDrive) {
    EXPECT_EQ(plain_folder("C:\\a\\.\\b\\..\\c\\"), "C:\\a\\c");
    EXPECT_EQ(plain_folder("c:/a/b/"), "C:\\a\\b");
    EXPECT_EQ(plain_folder("C:\\"), "C:\\");
    EXPECT_EQ(plain_folder("C:\\.."), "C:\\");
    EXPECT_EQ(plain_folder("C:\\\xC3\xBC\\"), "C:\\\xC3\xBC");
    EXPECT_EQ(plain_folder("\\\\host\\share\\a\\"), "\\\\host\\share\\a");
}

TEST(WindowsFolders, FoldersDownToStartAtTheDriveOrShare) {
    EXPECT_EQ(folders_down_to("C:\\a\\b c"), (Texts{"C:\\", "C:\\a", "C:\\a\\b c"}));
    EXPECT_EQ(folders_down_to("C:\\"), Texts{"C:\\"});
    EXPECT_EQ(folders_down_to("\\\\host\\share\\a"), (Texts{"\\\\host\\share\\", "\\\\host\\share\\a"}));
    EXPECT_EQ(folders_down_to("\\\\host\\share"), Texts{"\\\\host\\share"});
}

TEST(WindowsFolders, FolderNameIsTheLastComponentOrTheDrive) {
    EXPECT_EQ(folder_name("C:\\a\\b c"), "b c");
    EXPECT_EQ(folder_name("C:\\"), "C:\\");
    EXPECT_EQ(folder_name("\\\\host\\share\\"), "\\\\host\\share\\");
}

TEST(WindowsFolders, FolderIsWithinItsDriveOnly) {
    EXPECT_TRUE(is_within("C:\\a", "C:\\"));
    EXPECT_TRUE(is_within("c:\\a\\b", "C:/a"));
    EXPECT_FALSE(is_within("D:\\a", "C:\\"));
    EXPECT_FALSE(is_within("C:\\ab", "C:\\a"));
}

TEST(WindowsFolders, SubfoldersAreInNaturalOrder) {
    const TemporaryFolder folder;
    folder.write("file", {});
    for (const char* name : {"b10", "b2", "C"}) {
        std::filesystem::create_directory(folder.file(name));
    }
    const std::string path = plain_folder(folder.path());
    EXPECT_EQ(folders_in(path), (Texts{path + "\\b2", path + "\\b10", path + "\\C"}));
    EXPECT_TRUE(folders_in(path + "\\none").empty());
}

} // namespace
} // namespace varnoth::test
