// SPDX-License-Identifier: MIT
// The folder tree: creation, check, repair with its asymmetries, and the first screen.
#include "app/folder_structure.h"

#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

#include "app/app_fixture.h"
#include "platform/directory.h"
#include "platform/folders.h"
#include "platform/whole_file.h"

namespace quillon {
namespace {

using FolderStructure = test::AppFixture;

TEST_F(FolderStructure, CreateFolderPathCreatesEveryMissingLevel) {
    EXPECT_TRUE(CreateFolderPath(temp / "a/b/c"));
    EXPECT_TRUE(isFolder(temp / "a/b/c"));
}

TEST_F(FolderStructure, CreateFolderPathTakesASeparatorAtTheEndAndDoubledOnes) {
    EXPECT_TRUE(CreateFolderPath((temp / "a/b/").native()));
    EXPECT_TRUE(isFolder(temp / "a/b"));
    EXPECT_TRUE(CreateFolderPath(temp.path().native() + "//c//d"));
    EXPECT_TRUE(isFolder(temp / "c/d"));
}

TEST_F(FolderStructure, CreateFolderPathIsTrueForWhatExists) {
    EXPECT_TRUE(CreateFolderPath(temp.path()));
    temp.write("file", "");
    EXPECT_TRUE(CreateFolderPath(temp / "file"));
}

TEST_F(FolderStructure, CreateFolderPathIsFalseWhereNothingCanBeCreated) {
    temp.write("file", "");
    EXPECT_FALSE(CreateFolderPath(temp / "file/below"));
    EXPECT_FALSE(CreateFolderPath(""));
    EXPECT_FALSE(CreateFolderPath("/proc/no such folder/below"));
}

TEST_F(FolderStructure, CreateFolderPathGoesOnBehindALevelThatCannotBeCreated) {
    makeFolder("real");
    std::filesystem::create_symlink(temp / "real", temp / "link");
    EXPECT_TRUE(CreateFolderPath(temp / "link/deep"));
    EXPECT_TRUE(isFolder(temp / "real/deep"));
}

TEST_F(FolderStructure, CreateFolderPathCreatesNothingForAPathThatIsNotAbsolute) {
    EXPECT_FALSE(CreateFolderPath("C:\\Data\\Settings"));
    EXPECT_FALSE(CreateFolderPath("no such folder here/below"));
    EXPECT_FALSE(pathExists("no such folder here"));
}

TEST_F(FolderStructure, CreateFolderPathRefusesAZeroByte) {
    EXPECT_FALSE(CreateFolderPath(temp.path().native() + std::string("/cut\0here", 9)));
    EXPECT_FALSE(exists("cut"));
}

TEST_F(FolderStructure, CreateFolderChainTakesTheLastElementForAFile) {
    createFolderChain(temp / "a/b/file.txt");
    EXPECT_TRUE(isFolder(temp / "a/b"));
    EXPECT_FALSE(exists("a/b/file.txt"));
}

TEST_F(FolderStructure, CreateFolderChainKeepsNamesOfAnyBytes) {
    const std::string name = "caf\xC3\xA9 \xFF\n\\, >";
    createFolderChain(temp.path() / name / "file");
    EXPECT_TRUE(isFolder(temp.path() / name));
}

TEST_F(FolderStructure, CreateFolderChainStopsAtAFileInItsWay) {
    temp.write("file", "kept");
    createFolderChain(temp / "file/below/x.txt");
    EXPECT_EQ(temp.read("file"), "kept");
}

TEST_F(FolderStructure, CreateFolderChainRefusesAZeroByte) {
    createFolderChain(temp.path().native() + std::string("/cut\0here/file", 14));
    EXPECT_FALSE(exists("cut"));
}

TEST_F(FolderStructure, CreateFolderChainMakesPathsLongerThanTheSystemTakes) {
    NativePath folder = temp.path();
    for (int i = 0; i < 30; ++i) folder /= std::string(200, static_cast<char>('a' + i % 26));
    ASSERT_GT(folder.native().size(), 4096U);
    createFolderChain(folder / "file.txt");
    createFolderChain(folder / "file.txt");  // all of it exists by now
    const auto opened = Directory::open(folder);
    ASSERT_TRUE(opened) << opened.error().text;
    EXPECT_TRUE(opened->canBeEntered());
}

TEST_F(FolderStructure, AFirstCheckCreatesWhatIsMissing) {
    savePaths();
    EXPECT_TRUE(checkFolderStructure(installation));
    EXPECT_TRUE(isFolder(temp / "local/Settings"));
    EXPECT_TRUE(isFolder(temp / "local/Database"));
    EXPECT_TRUE(isFolder(temp / "zip"));
    EXPECT_FALSE(exists("shared"));
}

TEST_F(FolderStructure, AMissingLocalRootIsCreatedThroughItsSettingsFolder) {
    savePaths();
    makeFolder("zip");
    EXPECT_TRUE(checkFolderStructure(installation));
    EXPECT_TRUE(isFolder(temp / "local"));
}

TEST_F(FolderStructure, WithSharingOnTheSharedRootAndItsDatabaseAreCreated) {
    savePaths(true);
    EXPECT_TRUE(checkFolderStructure(installation));
    EXPECT_TRUE(isFolder(temp / "shared/Database"));
}

TEST_F(FolderStructure, SharedSettingsAreCreatedOnlyByTheRepair) {
    savePaths(true);
    EXPECT_TRUE(checkFolderStructure(installation));
    EXPECT_FALSE(exists("shared/Settings"));

    std::filesystem::remove(temp / "app/settings.dat");
    EXPECT_FALSE(checkFolderStructure(installation));
    EXPECT_TRUE(isFolder(temp / "shared/Settings"));
}

TEST_F(FolderStructure, AFailedCheckAnswersFalseAlthoughTheRepairSucceeded) {
    usePaths(true);  // no settings file: one item is missing, which no repair of folders can bring
    EXPECT_FALSE(checkFolderStructure(installation));
    for (const char* folder : {"local/Settings", "local/Database", "zip", "shared/Settings", "shared/Database"})
        EXPECT_TRUE(exists(folder)) << folder;
    EXPECT_FALSE(checkFolderStructure(installation));
}

TEST_F(FolderStructure, AFolderThatCannotBeCreatedFailsTheCheck) {
    savePaths();
    temp.write("local", "a file stands where the folder belongs");
    EXPECT_FALSE(checkFolderStructure(installation));
    EXPECT_TRUE(isFolder(temp / "zip")) << "the others are created all the same";
}

TEST_F(FolderStructure, AFileCountsAsExistingWhereAFolderBelongs) {
    savePaths();
    temp.write("zip", "exists, and no more is asked");
    EXPECT_TRUE(checkFolderStructure(installation));
}

TEST_F(FolderStructure, AnUnreachableShareFailsTheCheckWhileSharingIsOn) {
    temp.write("gone", "");
    usePaths(true);
    installation.settings.sharedPath.assign(pageFromPath(temp / "gone/share"));
    installation.refreshPathVariables();
    ASSERT_TRUE(installation.saveSettingsRecord());
    EXPECT_FALSE(checkFolderStructure(installation));
    EXPECT_EQ(decideFirstScreen(installation), FirstScreen::SetupWizard);

    installation.settings.useSharedDb = 0;
    installation.refreshPathVariables();
    ASSERT_TRUE(installation.saveSettingsRecord());
    EXPECT_EQ(decideFirstScreen(installation), FirstScreen::MainWindow);
}

TEST_F(FolderStructure, SettingsWithoutPathsFailTheCheck) {
    ASSERT_TRUE(installation.saveSettingsRecord());
    EXPECT_FALSE(checkFolderStructure(installation));
}

TEST_F(FolderStructure, NoSettingsFileOpensTheWizard) {
    EXPECT_EQ(decideFirstScreen(installation), FirstScreen::SetupWizard);
}

TEST_F(FolderStructure, AnEmptySettingsFileOpensTheMainWindowWithoutSettings) {
    temp.write("app/settings.dat", "");
    EXPECT_EQ(decideFirstScreen(installation), FirstScreen::MainWindow);
    EXPECT_TRUE(installation.paths().localPath.empty());
    EXPECT_EQ(installation.settings, AppSettings{});
}

TEST_F(FolderStructure, AnIntactInstallationOpensTheMainWindow) {
    savePaths();
    Installation started(temp / "app");
    EXPECT_EQ(decideFirstScreen(started), FirstScreen::MainWindow);
    EXPECT_EQ(started.paths().localPath, temp / "local");
}

TEST_F(FolderStructure, ADamagedSettingsFileOpensTheWizard) {
    temp.write("app/settings.dat", "short and without a path");
    EXPECT_EQ(decideFirstScreen(installation), FirstScreen::SetupWizard);
}

TEST_F(FolderStructure, ASettingsFileThatCannotBeReadOpensTheWizard) {
    makeFolder("app/settings.dat");
    EXPECT_EQ(decideFirstScreen(installation), FirstScreen::SetupWizard);
}

TEST_F(FolderStructure, AStartWritesNothingToTheApplicationFolder) {
    savePaths();
    const auto stamp = fileStamp(temp / "app/settings.dat");
    const auto folderTime = modificationTime(temp / "app");
    EXPECT_EQ(decideFirstScreen(installation), FirstScreen::MainWindow);
    EXPECT_EQ(fileStamp(temp / "app/settings.dat").value(), stamp.value());
    EXPECT_EQ(modificationTime(temp / "app").value(), folderTime.value());
}

}  // namespace
}  // namespace quillon
