// The lists of files, folders and drives, with real mouse and keyboard events.
#include <filesystem>
#include <string>
#include <vector>

#include <QTest>

#include <gtest/gtest.h>

#include "desktop/mouse_events.h"
#include "desktop/services/exception_barrier.h"
#include "desktop/theme/theme.h"
#include "desktop/widgets/DriveList.h"
#include "desktop/widgets/FileListBox.h"
#include "desktop/widgets/FolderListBox.h"
#include "qt/path_text.h"
#include "support/TemporaryFolder.h"
#include "support/expect_failure.h"
#include "ui_driver/UiDriver.h"

namespace varnoth::test {
namespace {

std::vector<std::string> lines_of(const QListWidget& list) {
    std::vector<std::string> lines;
    for (int i = 0; i < list.count(); ++i) {
        lines.push_back(list.item(i)->text().toStdString());
    }
    return lines;
}

TEST(FileListBox, ListsTheFilesThatMatchThePattern) {
    const TemporaryFolder folder;
    for (const char* name : {"b10.bmp", "b2.BMP", "a.jpg", "bmp", "ü.bmp"}) {
        folder.write(name, {});
    }
    std::filesystem::create_directory(folder.file("folder.bmp"));
    FileListBox list("File1", nullptr);
    int clicks = 0;
    on_event(&list, &ListBox::Click, &list, [&] { ++clicks; });
    list.SetPath(folder.path());
    EXPECT_EQ(lines_of(list), (std::vector<std::string>{"b2.BMP", "b10.bmp", "ü.bmp"}));
    list.SetPattern("*.jpg");
    EXPECT_EQ(lines_of(list), std::vector<std::string>{"a.jpg"});
    EXPECT_EQ(list.Path(), folder.path());
    EXPECT_EQ(list.ListIndex(), -1);
    EXPECT_EQ(clicks, 0);
}

TEST(FileListBox, UnreadableFolderHasNoEntries) {
    const TemporaryFolder folder;
    folder.write("a.bmp", {});
    FileListBox list("File1", nullptr);
    list.SetPath(folder.path());
    EXPECT_EQ(list.ListCount(), 1);
    list.SetPath(folder.file("none"));
    EXPECT_EQ(list.ListCount(), 0);
}

TEST(FileListBox, NonUtf8NameIsRecoveredFromItsLine) {
    const TemporaryFolder folder;
    folder.write("a\xFF.bmp", {});
    FileListBox list("File1", nullptr);
    list.SetPath(folder.path());
    ASSERT_EQ(list.ListCount(), 1);
    EXPECT_EQ(path_of_text(list.List(0)), "a\xFF.bmp");
}

TEST(FileListBox, StartsInTheCurrentFolder) {
    EXPECT_EQ(FileListBox("File1", nullptr).Path(), std::filesystem::current_path().string());
}

/// A tree of folders, and a folder list whose Change events are recorded.
class FolderListBoxTest : public testing::Test {
  protected:
    FolderListBoxTest() {
        for (const char* name : {"f10", "f2/inner", ".hidden", "ä b"}) {
            std::filesystem::create_directories(tree_.file(name));
        }
        tree_.write("file", {});
        std::filesystem::create_directory_symlink(tree_.file("f2"), tree_.file("link"));
        list_.resize(200, 400);
        list_.show();
        list_.SetPath(tree_.path());
        on_event(&list_, &FolderListBox::Change, &list_, [this] { changes_.push_back(list_.Path()); });
    }

    /// The line that is `below` lines below the open folder.
    int line(int below) const { return open_line() + below; }

    int open_line() const {
        const std::filesystem::path path(list_.Path());
        return static_cast<int>(std::distance(path.begin(), path.end())) - 1;
    }

    void double_click(int line) {
        list_.scrollToItem(list_.item(line));
        fast_pair(list_.viewport(), Qt::LeftButton, {}, middle_of(list_, line));
    }

    TemporaryFolder tree_;
    FolderListBox list_{"Dir1", nullptr};
    std::vector<std::string> changes_;
};

TEST_F(FolderListBoxTest, ListsAncestorsAndSubfoldersOfTheOpenFolder) {
    std::vector<std::string> expected;
    for (const std::filesystem::path& part : std::filesystem::path(tree_.path())) {
        expected.push_back(part.string());
    }
    EXPECT_EQ(expected.front(), "/");
    expected.insert(expected.end(), {".hidden", "f2", "f10", "link", "ä b"});
    EXPECT_EQ(lines_of(list_), expected);
    EXPECT_EQ(list_.currentRow(), open_line());
    EXPECT_EQ(list_.item(line(2))->toolTip().toStdString(), tree_.file("f2"));
}

TEST_F(FolderListBoxTest, FoldersAreIndentedUnderTheirParent) {
    const auto icon_left = [&](int row) {
        list_.scrollToItem(list_.item(row));
        const QImage image = list_.viewport()->grab(list_.visualItemRect(list_.item(row))).toImage();
        // The folder icon begins with a dark outline.
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, image.height() / 2) == theme::to_qcolor(theme::edge_dark)) {
                return x;
            }
        }
        return -1;
    };
    EXPECT_EQ(icon_left(1) - icon_left(0), 10);
    EXPECT_EQ(icon_left(line(1)) - icon_left(line(0)), 10);
    EXPECT_EQ(icon_left(line(2)) - icon_left(line(1)), 0);
}

TEST_F(FolderListBoxTest, IsPaintedWhileAFatalErrorIsReported) {
    const QImage before = list_.viewport()->grab().toImage();
    QImage during;
    const FatalErrorHandlerInstallation installation(
        [&](std::string_view, std::string_view) { during = list_.viewport()->grab().toImage(); });
    guard_event([] { fail(Failure::Overflow); });
    EXPECT_EQ(during, before);
}

TEST_F(FolderListBoxTest, DoubleClickOpensAFolderAndRaisesChange) {
    double_click(line(2));
    EXPECT_EQ(list_.Path(), tree_.file("f2"));
    EXPECT_EQ(lines_of(list_).back(), "inner");
    double_click(open_line() - 1);
    EXPECT_EQ(changes_, (std::vector<std::string>{tree_.file("f2"), tree_.path()}));
    double_click(0);
    EXPECT_EQ(list_.Path(), "/");
    EXPECT_EQ(lines_of(list_).front(), "/");
}

TEST_F(FolderListBoxTest, SingleClickOpensNothing) {
    click(list_, line(2));
    EXPECT_EQ(list_.Path(), tree_.path());
    EXPECT_TRUE(changes_.empty());
}

TEST_F(FolderListBoxTest, EnterOpensTheCurrentFolder) {
    for (int i = 0; i < 2; ++i) {
        QTest::keyClick(&list_, Qt::Key_Down);
    }
    QTest::keyClick(&list_, Qt::Key_Return);
    EXPECT_EQ(changes_, std::vector<std::string>{tree_.file("f2")});
}

TEST_F(FolderListBoxTest, LinkToAFolderOpensUnderItsOwnName) {
    double_click(line(4));
    EXPECT_EQ(list_.Path(), tree_.file("link"));
    EXPECT_EQ(lines_of(list_).back(), "inner");
}

TEST_F(FolderListBoxTest, FolderWithANonUtf8NameIsShownAndOpened) {
    std::filesystem::create_directories(tree_.file("f2/z\xFF/inner"));
    list_.SetPath(tree_.file("f2"));
    const int line = list_.count() - 1;
    EXPECT_EQ(path_of_text(list_.item(line)->text()), "z\xFF");
    EXPECT_EQ(path_of_text(list_.item(line)->toolTip()), tree_.file("f2/z\xFF"));
    double_click(line);
    EXPECT_EQ(list_.Path(), tree_.file("f2/z\xFF"));
    EXPECT_EQ(lines_of(list_).back(), "inner");
}

TEST_F(FolderListBoxTest, DeletedFolderIsRemovedFromTheList) {
    std::filesystem::remove_all(tree_.file("f2"));
    double_click(line(2));
    EXPECT_EQ(list_.Path(), tree_.path());
    EXPECT_EQ(list_.item(line(2))->text(), "f10");
    EXPECT_TRUE(changes_.empty());
}

TEST_F(FolderListBoxTest, SetPathRaisesChangeOnlyForAnotherFolder) {
    list_.SetPath(tree_.path() + "/");
    list_.SetPath(tree_.file("f2/../f10/.."));
    EXPECT_TRUE(changes_.empty());
    EXPECT_EQ(list_.Path(), tree_.path());
    list_.SetPath(tree_.file("f10"));
    EXPECT_EQ(changes_, std::vector<std::string>{tree_.file("f10")});
}

TEST_F(FolderListBoxTest, EmptyPathIsIgnoredAndMissingFolderFails) {
    list_.SetPath("");
    EXPECT_EQ(list_.Path(), tree_.path());
    EXPECT_FAILURE(list_.SetPath(tree_.file("none")), PathNotFound);
    EXPECT_FAILURE(list_.SetPath(tree_.file("file")), PathNotFound);
    EXPECT_EQ(list_.Path(), tree_.path());
    EXPECT_TRUE(changes_.empty());
}

TEST_F(FolderListBoxTest, StartsInTheCurrentFolder) {
    EXPECT_EQ(FolderListBox("Dir1", nullptr).Path(), std::filesystem::current_path().string());
}

// Drives.

/// Adds a folder as if a drive were mounted there.
void add_drive(DriveList& drives) {
    drives.AddItem("/somewhere [STICK]");
    drives.setItemData(drives.ListCount() - 1, "/somewhere");
}

TEST(DriveList, RecognisesSystemVolumes) {
    EXPECT_FALSE(is_system_volume("/home", "ext4"));
    EXPECT_FALSE(is_system_volume("/run/media/me/STICK", "vfat"));
    EXPECT_FALSE(is_system_volume("/tmp", "tmpfs"));
    EXPECT_FALSE(is_system_volume("/development", "ext4"));
    EXPECT_TRUE(is_system_volume("/run/user/1000", "tmpfs"));
    EXPECT_TRUE(is_system_volume("/dev/shm", "tmpfs"));
    EXPECT_TRUE(is_system_volume("/proc/sys/fs/binfmt_misc", "other"));
    EXPECT_TRUE(is_system_volume("/snap/core/1", "squashfs"));
    EXPECT_TRUE(is_system_volume("/var/lib/docker/overlay2/x/merged", "overlay"));
}

TEST(DriveList, ListsTheRootOnceAndNoSystemVolumes) {
    const DriveList drives("Drive1", nullptr);
    int roots = 0;
    for (int i = 0; i < drives.ListCount(); ++i) {
        const std::string root = drives.itemData(i).toString().toStdString();
        roots += root == "/" ? 1 : 0;
        EXPECT_TRUE(drives.List(i).startsWith(QString::fromStdString(root)));
        EXPECT_TRUE(std::filesystem::is_directory(root)) << root;
        for (const std::string system : {"/proc", "/sys", "/dev"}) {
            EXPECT_NE(root.substr(0, system.size()), system);
        }
    }
    EXPECT_EQ(roots, 1);
    EXPECT_NE(drives.Drive(), "");
}

TEST(DriveList, ShowsTheDriveOfAFolderWithoutRaisingChange) {
    DriveList drives("Drive1", nullptr);
    const int root = drives.findData("/");
    add_drive(drives);
    int changes = 0;
    on_event(&drives, &DriveList::Change, &drives, [&] { ++changes; });
    drives.show_drive_of("/somewhere/else");
    EXPECT_EQ(drives.Drive(), "/somewhere");
    drives.show_drive_of("/somewhere");
    EXPECT_EQ(drives.Drive(), "/somewhere");
    drives.show_drive_of("/somewhere_else");
    EXPECT_EQ(drives.ListIndex(), root);
    EXPECT_EQ(changes, 0);
}

TEST(DriveList, UserChoiceRaisesChange) {
    DriveList drives("Drive1", nullptr);
    add_drive(drives);
    drives.SetListIndex(0);
    drives.show();
    std::vector<std::string> changes;
    on_event(&drives, &DriveList::Change, &drives, [&] { changes.push_back(drives.Drive()); });
    QTest::keyClick(&drives, Qt::Key_End);
    EXPECT_EQ(changes, std::vector<std::string>{"/somewhere"});
}

TEST(DriveList, ChoosingTheSelectedDriveRaisesNoChange) {
    DriveList drives("Drive1", nullptr);
    add_drive(drives);
    drives.show_drive_of("/somewhere");
    drives.show();
    int changes = 0;
    int choices = 0;
    on_event(&drives, &DriveList::Change, &drives, [&] { ++changes; });
    on_event(&drives, &DropDownList::Click, &drives, [&] { ++choices; });
    ui_driver::choose(drives, drives.ListCount() - 1);
    EXPECT_EQ(choices, 1);
    EXPECT_EQ(changes, 0);
    ui_driver::choose(drives, 0);
    EXPECT_EQ(choices, 2);
    EXPECT_EQ(changes, 1);
}

} // namespace
} // namespace varnoth::test
