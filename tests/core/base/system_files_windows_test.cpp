// Only for Windows.
#include "core/base/system_files.h"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>
#include <windows.h>

#include "core/base/files.h"
#include "support/TemporaryFolder.h"
#include "support/expect_failure.h"

namespace varnoth::test {
namespace {

TEST(WindowsFiles, NamesOfAllScriptsAreWrittenListedAndRead) {
    const TemporaryFolder folder;
    for (const std::string name :
         {"\xC3\xA4\xC3\x9F.spr", "\xE7\x82\x8E\xE3\x81\xBB.spr", "\xF0\x9F\x94\xA5.spr"}) {
        OutputFile file(folder.file(name));
        file.write(Bytes{'\r', '\n', 26});
        file.close();
        EXPECT_EQ(names_in(folder.path()), Texts{name});
        EXPECT_EQ(read_head(folder.file(name), 9), (Bytes{'\r', '\n', 26}));
        delete_file(folder.file(name));
    }
}

TEST(WindowsFiles, LongPathsAreWrittenListedAndDeleted) {
    const TemporaryFolder folder;
    std::string below = folder.path();
    for (int i = 0; i < 4; ++i) {
        below = join_path(below, std::string(90, 'a'));
        ASSERT_NE(CreateDirectoryW(system_files::system_path(native_path(below)).c_str(), nullptr), 0);
    }
    const std::string path = join_path(below, "\xE7\x82\x8E.spr");
    OutputFile file(path);
    file.write(Bytes{7});
    file.close();
    EXPECT_TRUE(file_exists(path));
    EXPECT_TRUE(folder_exists(below));
    EXPECT_EQ(names_in(below), Texts{"\xE7\x82\x8E.spr"});
    EXPECT_EQ(read_head(path, 9), Bytes{7});
    delete_file(path);
    EXPECT_TRUE(names_in(below).empty());
    for (; below.size() > folder.path().size(); below = below.substr(0, below.find_last_of('\\'))) {
        ASSERT_NE(RemoveDirectoryW(system_files::system_path(native_path(below)).c_str()), 0);
    }
}

TEST(WindowsFiles, OnlyLongPathsGetAPrefix) {
    const auto prefixed = [](const std::string& path) {
        return system_files::path_bytes(system_files::system_path(native_path(path)));
    };
    const std::string tail(240, 'a');
    EXPECT_EQ(prefixed("C:\\short"), "C:\\short");
    EXPECT_EQ(prefixed("C:/b/../" + tail + "/c/d/e"), "\\\\?\\C:\\" + tail + "\\c\\d\\e");
    EXPECT_EQ(prefixed("\\\\host\\share\\" + tail), "\\\\?\\UNC\\host\\share\\" + tail);
    EXPECT_EQ(prefixed("\\\\?\\C:\\" + tail), "\\\\?\\C:\\" + tail);
}

TEST(WindowsFiles, BothSeparatorsAreAccepted) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a", Bytes{1});
    std::string other = path;
    for (char& character : other) {
        character = character == '/' ? '\\' : character == '\\' ? '/' : character;
    }
    EXPECT_EQ(read_head(other, 9), Bytes{1});
}

TEST(WindowsFiles, ReadOnlyAttributeMakesAFileReadOnly) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a", Bytes{1});
    ASSERT_NE(SetFileAttributesW(native_path(path).c_str(), FILE_ATTRIBUTE_READONLY), 0);
    EXPECT_TRUE(is_read_only(path));
    EXPECT_FAILURE(OutputFile{path}, PermissionDenied);
    EXPECT_FAILURE(delete_file(path), PermissionDenied);
    ASSERT_NE(SetFileAttributesW(native_path(path).c_str(), FILE_ATTRIBUTE_NORMAL), 0);
    EXPECT_FALSE(is_read_only(path));
}

TEST(WindowsFiles, FileInUseByAnotherProgramIsDenied) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a", Bytes{1});
    const HANDLE user =
        CreateFileW(native_path(path).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(user, INVALID_HANDLE_VALUE);
    EXPECT_TRUE(file_exists(path));
    EXPECT_FAILURE(InputFile{path}, PermissionDenied);
    EXPECT_FAILURE(OutputFile{path}, PermissionDenied);
    EXPECT_FAILURE(delete_file(path), PermissionDenied);
    CloseHandle(user);
}

TEST(WindowsFiles, ReservedNamesAreNoFiles) {
    const TemporaryFolder folder;
    for (const std::string& name : {std::string("NUL"), folder.file("NUL"), folder.file("nul.spr")}) {
        EXPECT_FALSE(file_exists(name)) << name;
        EXPECT_FAILURE(OutputFile{name}, DeviceIo);
        EXPECT_FAILURE(InputFile{name}, DeviceIo);
    }
}

TEST(WindowsFiles, ColonInANameFailsAndCreatesNoStream) {
    const TemporaryFolder folder;
    EXPECT_FAILURE(OutputFile(folder.file("a:b.spr")), DeviceIo);
    EXPECT_TRUE(names_in(folder.path()).empty());
}

TEST(WindowsFiles, MalformedUtf8IsNoFile) {
    EXPECT_FALSE(file_exists("C:\\\xFF"));
    EXPECT_FAILURE(InputFile("C:\\\xFF"), FileNotFound);
}

} // namespace
} // namespace varnoth::test
