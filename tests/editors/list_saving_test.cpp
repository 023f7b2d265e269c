// SPDX-License-Identifier: MIT
#include "editors/list_saving.h"

#include <gtest/gtest.h>

#include "editors/editor_folders.h"

using namespace quillon;
using quillon::test::EditorFolders;

namespace {

constexpr const char* kFile = "local/Settings/SkipList.dat";

TEST(ListSaving, AFolderThatIsNotSetHoldsNoFile) {
    EXPECT_EQ(fileIn({}, "SkipList.dat"), NativePath{});
    EXPECT_EQ(fileIn("/x", "SkipList.dat"), NativePath("/x/SkipList.dat"));
}

TEST(ListSaving, AnEmptyPathIsAFailure) {
    EditorFolders folders;
    const auto saved = ListSaver(folders.kept).save({}, "new");
    ASSERT_FALSE(saved);
    EXPECT_EQ(saved.error().kind, ErrorKind::NotFound);
}

TEST(ListSaving, WhatWasLoadedOrWrittenIsOverwrittenWithoutKeepingIt) {
    EditorFolders folders;
    folders.folder.write(kFile, "old\r\n");
    ListSaver saver(folders.kept);
    saver.loaded("old\r\n");
    ASSERT_TRUE(saver.save(folders.folder / kFile, "new\r\n"));
    ASSERT_TRUE(saver.save(folders.folder / kFile, "newer\r\n"));
    EXPECT_EQ(folders.bytesOf(kFile), "newer\r\n");
    EXPECT_FALSE(folders.has("local/Kept"));
}

TEST(ListSaving, WhatNobodySawGoesUnderKeptFirst) {
    EditorFolders folders;
    folders.folder.write(kFile, "of another workstation\r\n");
    ListSaver saver(folders.kept);
    saver.loaded("old\r\n");
    ASSERT_TRUE(saver.save(folders.folder / kFile, "new\r\n"));
    EXPECT_EQ(folders.bytesOf(kFile), "new\r\n");
    EXPECT_EQ(folders.bytesOf(folders.keptName("Settings/SkipList.dat")), "of another workstation\r\n");
}

TEST(ListSaving, AForgottenContentIsKept) {
    EditorFolders folders;
    folders.folder.write(kFile, "old\r\n");
    ListSaver saver(folders.kept);
    saver.loaded("old\r\n");
    saver.forget();
    ASSERT_TRUE(saver.save(folders.folder / kFile, ""));
    EXPECT_EQ(folders.bytesOf(kFile), "");
    EXPECT_EQ(folders.bytesOf(folders.keptName("Settings/SkipList.dat")), "old\r\n");
}

TEST(ListSaving, NothingIsWrittenWhenTheOldBytesCannotBeKept) {
    EditorFolders folders;
    folders.folder.write(kFile, "unseen\r\n");
    folders.folder.write("local/Kept", "a file where the folder should be");
    EXPECT_FALSE(ListSaver(folders.kept).save(folders.folder / kFile, "new\r\n"));
    EXPECT_EQ(folders.bytesOf(kFile), "unseen\r\n");
}

}  // namespace
