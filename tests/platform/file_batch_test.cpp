// SPDX-License-Identifier: MIT
#include "platform/file_batch.h"

#include <cerrno>

#include <gtest/gtest.h>

#include "platform/folders.h"
#include "support/failing_files.h"
#include "support/temp_folder.h"

namespace quillon::test {
namespace {

TEST(FileBatchTest, FilesHaveTheirNamesOnlyAfterTheCommit) {
    TempFolder folder;
    FileBatch batch;
    ASSERT_TRUE(batch.add(folder / "a.dat", "one", folder.path()));
    ASSERT_TRUE(batch.add(folder / "b.dat", "two", folder.path()));
    EXPECT_FALSE(pathExists(folder / "a.dat"));
    ASSERT_TRUE(batch.commit());
    EXPECT_EQ(folder.read("a.dat"), "one");
    EXPECT_EQ(folder.read("b.dat"), "two");
    EXPECT_EQ(listEntries(folder.path())->size(), 2U);
}

TEST(FileBatchTest, WhatIsNotCommittedLeavesNothing) {
    TempFolder folder;
    {
        FileBatch batch;
        ASSERT_TRUE(batch.add(folder / "a.dat", "one", folder.path()));
        EXPECT_EQ(listEntries(folder.path())->size(), 1U);
    }
    EXPECT_TRUE(listEntries(folder.path())->empty());
}

TEST(FileBatchTest, AFolderThatIsNotThereFailsAndLeavesNoTemporaryFile) {
    TempFolder folder;
    {
        FileBatch batch;
        ASSERT_TRUE(batch.add(folder / "missing/a.dat", "one", folder.path()));
        EXPECT_FALSE(batch.commit());
    }
    EXPECT_TRUE(listEntries(folder.path())->empty());
}

TEST(FileBatchTest, AFailureNamesTheFileAndTheCause) {
    const TempFolder folder;
    FailingFiles files;
    files.refuse("write", ENOSPC);
    FileBatch batch;
    const auto added = batch.add(folder / "a.dat", "one", folder.path());
    ASSERT_FALSE(added);
    EXPECT_EQ(added.error().text, (folder / "a.dat").native() + " cannot be saved: No space left on device");
}

// As on a volume that a program serves, which hears of no sync of all of it.
TEST(FileBatchTest, AVolumeThatCannotSayThatAllIsWellIsAskedForEachFile) {
    const TempFolder folder;
    FailingFiles files;
    files.refuse("syncVolume", EIO);
    for (const bool bad : {false, true}) {
        FileBatch batch;
        const std::string name = bad ? "b.dat" : "a.dat";
        ASSERT_TRUE(batch.add(folder / name, "one", folder.path()));
        if (bad)
            files.refuse("sync", EIO);
        const auto named = batch.commit();
        EXPECT_EQ(named.has_value(), !bad);
        EXPECT_EQ(pathExists(folder / name), !bad);
        const std::string told = named ? "" : named.error().text;
        EXPECT_EQ(told, bad ? (folder / name).native() + " cannot be saved: Input/output error" : "");
    }
}

TEST(FileBatchTest, AnEmptyBatchIsASuccess) {
    EXPECT_TRUE(FileBatch().commit());
}

}  // namespace
}  // namespace quillon::test
