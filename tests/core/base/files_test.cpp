#include "core/base/files.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/TemporaryFolder.h"
#include "support/expect_failure.h"

namespace varnoth::test {
namespace {

void make_read_only(const std::string& path) {
    std::filesystem::permissions(path, std::filesystem::perms::owner_read);
}

class Files : public testing::Test {
  protected:
    TemporaryFolder folder;
};

TEST_F(Files, FolderAndNameAreJoinedWithOneSeparator) {
    const std::string separator(1, static_cast<char>(std::filesystem::path::preferred_separator));
    EXPECT_EQ(join_path("a", "b"), "a" + separator + "b");
    EXPECT_EQ(join_path("a" + separator, "b"), "a" + separator + "b");
    EXPECT_EQ(join_path("a/", "b"), "a/b");
    EXPECT_EQ(join_path("/", "b"), "/b");
    EXPECT_EQ(join_path("", "b"), "b");
}

TEST_F(Files, FileExistsIsFalseForAFolder) {
    EXPECT_TRUE(file_exists(folder.write("a", Bytes{})));
    EXPECT_FALSE(file_exists(folder.file("b")));
    EXPECT_FALSE(file_exists(folder.path()));
    EXPECT_FALSE(file_exists(""));
}

TEST_F(Files, NamesAreUtf8) {
    const std::string path = folder.write("\xC3\xBC\xE2\x82\xAC.spr", Bytes{1, 2});
    EXPECT_TRUE(file_exists(path));
    EXPECT_EQ(read_head(path, 9), (Bytes{1, 2}));
}

TEST_F(Files, NamesInAFolderExcludeDotAndDotDot) {
    folder.write("b", Bytes{});
    folder.write(".hidden", Bytes{});
    folder.write("..c", Bytes{});
    std::filesystem::create_directory(folder.file("a"));
    Texts names = names_in(folder.path());
    std::ranges::sort(names);
    EXPECT_EQ(names, (Texts{"..c", ".hidden", "a", "b"}));
    EXPECT_TRUE(names_in(folder.file("none")).empty());
}

TEST_F(Files, FileWithoutOwnersWritePermissionIsReadOnly) {
    const std::string path = folder.write("a", Bytes{});
    EXPECT_FALSE(is_read_only(path));
    EXPECT_FALSE(is_read_only(folder.file("none")));
    make_read_only(path);
    EXPECT_TRUE(is_read_only(path));
}

TEST_F(Files, DeletingAMissingFileFails) {
    const std::string path = folder.write("a", Bytes{1});
    delete_file(path);
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_FAILURE(delete_file(path), FileNotFound);
    EXPECT_FAILURE(delete_file(folder.file("missing/a")), PathNotFound);
}

TEST_F(Files, DeletingAReadOnlyFileOrAFolderFails) {
    const std::string path = folder.write("a", Bytes{1});
    make_read_only(path);
    EXPECT_FAILURE(delete_file(path), PermissionDenied);
    EXPECT_TRUE(file_exists(path));
    std::filesystem::create_directory(folder.file("empty"));
    EXPECT_FAILURE(delete_file(folder.file("empty")), PermissionDenied);
    EXPECT_TRUE(std::filesystem::is_directory(folder.file("empty")));
}

TEST_F(Files, OpenErrorsDistinguishFileAndFolder) {
    const std::string plain = folder.write("plain", Bytes{});
    EXPECT_FAILURE(InputFile(folder.file("none")), FileNotFound);
    EXPECT_FAILURE(InputFile(folder.file("missing/none")), PathNotFound);
    EXPECT_FAILURE(InputFile(plain + "/below"), PathNotFound);
    EXPECT_FAILURE(InputFile(folder.path()), PermissionDenied);
    EXPECT_FAILURE(InputFile(""), FileNotFound);
    EXPECT_FAILURE(OutputFile(folder.file("missing/none")), PathNotFound);
    EXPECT_FAILURE(OutputFile(folder.path()), PermissionDenied);
}

TEST_F(Files, OtherOpenErrorsAreDeviceIo) {
    const std::string link = folder.file("link");
    std::filesystem::create_symlink(link, link);
    EXPECT_FAILURE(InputFile{link}, DeviceIo);
    EXPECT_FAILURE(OutputFile{link}, DeviceIo);
    EXPECT_FAILURE(InputFile(folder.file(std::string(5000, 'a'))), DeviceIo);
}

TEST_F(Files, ReadingPastTheEndKeepsTheRestOfTheBuffer) {
    InputFile file(folder.write("a", Bytes{1, 2, 3}));
    EXPECT_EQ(file.length(), 3);
    std::array<std::uint8_t, 2> two{};
    EXPECT_EQ(file.read(two), 2U);
    EXPECT_EQ(file.remaining(), 1);
    std::array<std::uint8_t, 2> more{8, 9};
    EXPECT_EQ(file.read(more), 1U);
    EXPECT_EQ(more, (std::array<std::uint8_t, 2>{3, 9}));
    EXPECT_EQ(file.read(more), 0U);
    file.seek(1);
    EXPECT_EQ(file.read(more), 2U);
    EXPECT_EQ(more, (std::array<std::uint8_t, 2>{2, 3}));
    EXPECT_FAILURE(file.seek(-1), DeviceIo);
}

TEST_F(Files, OpeningForWritingTruncatesTheFile) {
    const std::string path = folder.write("a", Bytes{1, 2, 3});
    OutputFile file(path);
    file.write(Bytes{7});
    file.write(Bytes{});
    file.close();
    EXPECT_EQ(read_file(path), (Bytes{7}));
}

TEST_F(Files, WritingAReadOnlyFileFailsAndKeepsIt) {
    const std::string path = folder.write("a", Bytes{1, 2});
    make_read_only(path);
    EXPECT_FAILURE(OutputFile(path), PermissionDenied);
    EXPECT_EQ(read_file(path), (Bytes{1, 2}));
}

TEST_F(Files, FullDiskFailsAtTheLatestOnClose) {
    EXPECT_FAILURE(
        [] {
            OutputFile file("/dev/full");
            file.write(Bytes{1, 2, 3});
            file.close();
        }(),
        DiskFull);
    EXPECT_FAILURE(OutputFile("/dev/full").write(Bytes(1 << 20)), DiskFull);
}

TEST_F(Files, HeadOfAShortFileIsTheWholeFile) {
    const std::string path = folder.write("a", Bytes{1, 2, 3});
    EXPECT_EQ(read_head(path, 2), (Bytes{1, 2}));
    EXPECT_EQ(read_head(path, 50), (Bytes{1, 2, 3}));
    EXPECT_EQ(read_head(path, 0), Bytes{});
}

} // namespace
} // namespace varnoth::test
