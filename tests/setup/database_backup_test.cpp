// SPDX-License-Identifier: MIT
#include "setup/database_backup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "archive/zip_reader.h"
#include "platform/folders.h"
#include "setup/setup_folders.h"

namespace quillon::test {
namespace {

using testing::ElementsAre;

class DatabaseBackupTest : public testing::Test, public SetupFolders {
protected:
    Result<void> backUp() {
        ZipOptions options;
        options.kept = &kept;
        return backUpSharedDatabase(installation.paths(), fake.surroundings, options);
    }
};

TEST_F(DatabaseBackupTest, TheNameHoldsTheDigitsOfTheDate) {
    EXPECT_EQ(backupName(fake.surroundings), "DBBackup_15112026.zip");
}

TEST_F(DatabaseBackupTest, AShortDateRunsIntoTheTime) {
    // Four digits of the year, a two-digit month and day without signs between would be eight characters.
    const DateTexts plain("C");
    fake.clock.time.year = 6;
    const Surroundings shortDates{fake.clock, plain, fake.dialogs, fake.loop, "LAB7"};
    const std::string general = plain.general(fake.clock.time);
    ASSERT_EQ(general.substr(0, 6), "15/11/");
    std::string digits;
    for (const char c : general.substr(0, 10)) {
        if (std::string("\\/-:><,;").find(c) == std::string::npos)
            digits.push_back(c);
    }
    EXPECT_EQ(backupName(shortDates), "DBBackup_" + digits + ".zip");
}

TEST_F(DatabaseBackupTest, TheWholeSharedPathIsInItButNoEarlierBackup) {
    folder.write("share/Database/jpg.dat", "1");
    folder.write("share/Settings/SkipList.dat", "2");
    folder.write("share/Settings/Messaging logs/logs.dat", "3");
    folder.write("share/notes.txt", "4");
    folder.write("share/DBBackup_14112026.zip", "earlier");
    folder.write("share/Database/.quillon-save-x", "a save in progress");
    ASSERT_TRUE(backUp().has_value());
    const auto names = listArchive(folder / "share/DBBackup_15112026.zip");
    ASSERT_TRUE(names.has_value());
    EXPECT_THAT(*names, ElementsAre("notes.txt", "Database/jpg.dat", "Settings/SkipList.dat",
                                    "Settings/Messaging logs/logs.dat"));
    EXPECT_EQ(folder.read("share/DBBackup_14112026.zip"), "earlier");
}

TEST_F(DatabaseBackupTest, TheBackupUnpacksToTheSameBytes) {
    folder.write("share/Database/jpg.dat", "terms");
    ASSERT_TRUE(backUp().has_value());
    ASSERT_TRUE(extractArchive(folder / "share/DBBackup_15112026.zip", folder / "out").has_value());
    EXPECT_EQ(folder.read("out/Database/jpg.dat"), "terms");
}

TEST_F(DatabaseBackupTest, ASecondBackupOfADayReplacesTheFirstWhichIsKept) {
    folder.write("share/Database/jpg.dat", "1");
    ASSERT_TRUE(backUp().has_value());
    const std::string first = folder.read("share/DBBackup_15112026.zip");
    folder.write("share/Database/png.dat", "2");
    ASSERT_TRUE(backUp().has_value());
    EXPECT_EQ(listArchive(folder / "share/DBBackup_15112026.zip")->size(), 2U);
    EXPECT_EQ(folder.read(keptName("DBBackup_15112026.zip")), first);
}

TEST_F(DatabaseBackupTest, AnEmptyShareGivesNoBackup) {
    EXPECT_TRUE(backUp().has_value());
    EXPECT_FALSE(pathExists(folder / "share/DBBackup_15112026.zip"));
}

TEST_F(DatabaseBackupTest, AShareOutOfReachIsAFailure) {
    std::filesystem::remove_all(folder / "share");
    EXPECT_FALSE(backUp().has_value());
}

}  // namespace
}  // namespace quillon::test
