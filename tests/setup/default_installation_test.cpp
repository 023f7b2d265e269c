// SPDX-License-Identifier: MIT
#include "setup/default_installation.h"

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/folder_structure.h"
#include "archive/zip_bytes.h"
#include "platform/folders.h"
#include "support/temp_folder.h"

namespace quillon::test {
namespace {

class DefaultInstallationTest : public testing::Test {
protected:
    void writeDatabase() const {
        writeZip(folder_ / "db.zip", {{"Database/jpg.dat", "0,FFD8,H"},
                                      {"Settings/skiplist.dat", "*.tmp"},
                                      {"Settings/CommonHeaders.dat", "1"},
                                      {"Settings/Errors.dat", "2"}});
    }

    TempFolder folder_;
    Installation installation_{folder_.path()};
};

TEST_F(DefaultInstallationTest, AWholeInstallationStandsAfterwards) {
    writeDatabase();
    const auto done = setUpDefaultInstallation(installation_);
    ASSERT_TRUE(done.has_value()) << done.error().text;
    EXPECT_EQ(done->localPath, folder_ / "Data");
    EXPECT_EQ(done->zipPath, folder_ / "Data/Archives");
    EXPECT_EQ(done->filesUnpacked, 4U);
    EXPECT_EQ(folder_.read("Data/Database/jpg.dat"), "0,FFD8,H");
    EXPECT_EQ(folder_.read("Data/Settings/SkipList.dat"), "*.tmp");
    EXPECT_TRUE(isFolder(folder_ / "Data/Archives"));
    EXPECT_TRUE(checkFolderStructure(installation_));

    Installation loaded(folder_.path());
    EXPECT_EQ(decideFirstScreen(loaded), FirstScreen::MainWindow);
    EXPECT_EQ(loaded.paths(), installation_.paths());
    EXPECT_EQ(loaded.settings.runHeaderTest, 1);
    EXPECT_EQ(loaded.settings.useSkipList, 1);
    EXPECT_EQ(loaded.settings.useCommonHeaders, 1);
    EXPECT_EQ(loaded.settings.useSharedDb, 0);
    EXPECT_EQ(loaded.settings.alertRecipient.trimmed().bytes, "Query");
    EXPECT_EQ(loaded.settings.zipRecipient.trimmed().bytes, "Query");
    EXPECT_EQ(loaded.paths().fileListSeparator, "-");
}

TEST_F(DefaultInstallationTest, WithoutTheArchiveTheNextStartIsAFirstRunAgain) {
    const auto done = setUpDefaultInstallation(installation_);
    ASSERT_FALSE(done.has_value());
    EXPECT_EQ(done.error().kind, ErrorKind::NotFound);
    EXPECT_THAT(done.error().text, testing::HasSubstr("db.zip"));
    EXPECT_FALSE(pathExists(folder_ / "settings.dat"));
    EXPECT_TRUE(installation_.paths().localPath.empty());
    writeDatabase();
    EXPECT_TRUE(setUpDefaultInstallation(installation_).has_value());
}

TEST_F(DefaultInstallationTest, AHostileArchiveLeavesAFirstRun) {
    writeZip(folder_ / "db.zip", {{"../evil.dat", "1"}});
    EXPECT_FALSE(setUpDefaultInstallation(installation_).has_value());
    EXPECT_FALSE(pathExists(folder_ / "settings.dat"));
    EXPECT_FALSE(pathExists(folder_ / "evil.dat"));
}

TEST_F(DefaultInstallationTest, FilesOfAnEarlierSetUpStay) {
    writeDatabase();
    folder_.write("Data/Database/jpg.dat", "my terms");
    const auto done = setUpDefaultInstallation(installation_);
    ASSERT_TRUE(done.has_value());
    EXPECT_EQ(done->filesUnpacked, 3U);
    EXPECT_EQ(done->filesLeft, 1U);
    EXPECT_EQ(folder_.read("Data/Database/jpg.dat"), "my terms");
}

TEST_F(DefaultInstallationTest, AFolderThatCannotBeMadeIsAFailure) {
    writeDatabase();
    folder_.write("Data", "a file in the way");
    const auto done = setUpDefaultInstallation(installation_);
    ASSERT_FALSE(done.has_value());
    EXPECT_THAT(done.error().text, testing::HasSubstr("cannot be created"));
    EXPECT_FALSE(pathExists(folder_ / "settings.dat"));
}

TEST_F(DefaultInstallationTest, ANameOutsideThePageIsAFailureThatSaysSo) {
    const NativePath app = folder_ / "\xE6\x97\xA5";
    std::filesystem::create_directory(app);
    Installation installation(app);
    const auto done = setUpDefaultInstallation(installation);
    ASSERT_FALSE(done.has_value());
    EXPECT_EQ(done.error().kind, ErrorKind::BadName);
    EXPECT_TRUE(std::filesystem::is_empty(app));
}

}  // namespace
}  // namespace quillon::test
