#include "core/jobs/Module1.h"

#include <gtest/gtest.h>

namespace varnoth::Module1 {
namespace {

TEST(StripFolder, PathWithoutASeparatorIsUnchanged) {
    EXPECT_EQ(strip_folder("smoke.spr"), "smoke.spr");
    EXPECT_EQ(strip_folder(""), "");
}

TEST(StripFolder, BothSeparatorsAreRecognised) {
    EXPECT_EQ(strip_folder("C:\\sprites\\smoke.spr"), "smoke.spr");
    EXPECT_EQ(strip_folder("/home/sprites/smoke.spr"), "smoke.spr");
    EXPECT_EQ(strip_folder("a/b\\smoke.spr"), "smoke.spr");
    EXPECT_EQ(strip_folder("a\\b/smoke.spr"), "smoke.spr");
    EXPECT_EQ(strip_folder("\\smoke"), "smoke");
}

TEST(StripFolder, TrailingSeparatorIsKept) {
    EXPECT_EQ(strip_folder("a\\b\\"), "b\\");
    EXPECT_EQ(strip_folder("a/b/"), "b/");
    EXPECT_EQ(strip_folder("/b/"), "b/");
    EXPECT_EQ(strip_folder("a\\\\"), "\\") << "the one before the last has a separator behind it";
}

TEST(StripFolder, OnlySeparatorsGiveAnEmptyResult) {
    EXPECT_EQ(strip_folder("\\"), "");
    EXPECT_EQ(strip_folder("a\\"), "");
    EXPECT_EQ(strip_folder("/"), "");
    EXPECT_EQ(strip_folder("//"), "/");
}

TEST(FolderOf, IsThePartBeforeTheLastSeparator) {
    EXPECT_EQ(folder_of("/home/sprites/smoke.spr"), "/home/sprites");
    EXPECT_EQ(folder_of("C:\\sprites\\smoke.spr"), "C:\\sprites");
    EXPECT_EQ(folder_of("a/b\\smoke.spr"), "a/b");
    EXPECT_EQ(folder_of("a\\b/smoke.spr"), "a\\b");
}

TEST(FolderOf, FileInTheRootGivesTheRoot) {
    EXPECT_EQ(folder_of("/smoke.spr"), "/");
    EXPECT_EQ(folder_of("\\smoke.spr"), "\\");
}

TEST(FolderOf, NameWithoutASeparatorGivesAnEmptyFolder) {
    EXPECT_EQ(folder_of("smoke.spr"), "");
    EXPECT_EQ(folder_of(""), "");
}

TEST(StripExtension, NameWithoutADotIsUnchanged) {
    EXPECT_EQ(strip_extension("smoke"), "smoke");
    EXPECT_EQ(strip_extension(""), "");
}

TEST(StripExtension, OnlyThePartBeforeTheFirstDotIsKept) {
    EXPECT_EQ(strip_extension("smoke.spr"), "smoke");
    EXPECT_EQ(strip_extension("smoke.old.spr"), "smoke");
    EXPECT_EQ(strip_extension("smoke."), "smoke");
}

TEST(StripExtension, LeadingDotIsSkipped) {
    EXPECT_EQ(strip_extension(".smoke.spr"), ".smoke");
    EXPECT_EQ(strip_extension(".smoke"), "") << "no other dot ends a result";
    EXPECT_EQ(strip_extension("."), "");
    EXPECT_EQ(strip_extension("..a"), ".");
}

TEST(BaseName, TypedNameIsItsOwnBaseName) {
    EXPECT_EQ(strip_extension(strip_folder("newsprite")), "newsprite");
    EXPECT_EQ(strip_extension(strip_folder("/tmp/my.folder/smoke.spr")), "smoke");
}

} // namespace
} // namespace varnoth::Module1
