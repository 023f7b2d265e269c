// SPDX-License-Identifier: MIT
// "Next >" of local paths and shared path.
#include <cerrno>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "archive/zip_reader.h"
#include "setup/wizard.h"
#include "setup/wizard_screen.h"
#include "support/failing_files.h"

namespace quillon::test {
namespace {

using testing::HasSubstr;

class WizardFoldersTest : public testing::Test, public WizardScreen {
protected:
    void expectCritical(const std::string& title, const std::string& text) {
        fake.dialogs.expectBox(title, text, BoxAnswer::Ok, BoxStyle::Critical);
    }
};

class LocalPathsStepTest : public WizardFoldersTest {
protected:
    LocalPathsStepTest() {
        wizard.load();
        browseLocal("local");
        browseArchive("zips");
    }
    void expectOverwrite(BoxAnswer answer) {
        fake.dialogs.expectBox("Overwrite DB?",
                               "There are files in the local database folders, do you want to replace them?", answer,
                               BoxStyle::Question, BoxButtons::YesNo);
    }
};

TEST_F(LocalPathsStepTest, FoldersAreMadeAndTheDefaultDatabaseUnpacked) {
    wizard.nextLocalPaths();
    EXPECT_EQ(folder.read("local/Database/jpg.dat"), "jpg terms");
    EXPECT_EQ(folder.read("local/Settings/SkipList.dat"), "*.tmp");
    EXPECT_TRUE(exists("zips"));
    EXPECT_EQ(saved().localPath.trimmed().bytes, path("local"));
    EXPECT_EQ(saved().zipPath.trimmed().bytes, path("zips"));
    EXPECT_EQ(installation.paths().localDatabase, folder / "local/Database");
    EXPECT_EQ(state().currentTab, kSharedPathTab);
    EXPECT_TRUE(state().tabEnabled[kSharedPathTab]);
    EXPECT_FALSE(state().progressVisible);
    EXPECT_DOUBLE_EQ(state().progress, 100.0);
    EXPECT_GT(fake.loop.turns, 0);
}

TEST_F(LocalPathsStepTest, AFullDiskIsToldAsFull) {
    FailingFiles files;
    files.refuse("write", ENOSPC);
    expectCritical("Setup Error", "Unable to find default Databases, please re-install the application.\r\n" +
                                      path("local/Database/jpg.dat") + " cannot be saved: No space left on device");
    wizard.nextLocalPaths();
    EXPECT_EQ(state().currentTab, kSetupDbTab);
}

TEST_F(LocalPathsStepTest, FoldersThatTheRecordCannotHoldWorkToo) {
    const NativePath data = folder / "\u6570\u636e \xFF";
    const NativePath share = folder / "share ";
    state().localPath = data;
    wizard.nextLocalPaths();
    EXPECT_TRUE(pathExists(data / "Database/jpg.dat"));
    EXPECT_EQ(saved().localPath.trimmed().bytes, path("?? ?")) << "the record is what it always was";
    wizard.setUseSharedDb(true);
    fake.dialogs.expectFolder("Select folder for Shared database..", share);
    wizard.browseSharedPath();
    wizard.nextSharedPath();
    EXPECT_TRUE(pathExists(share / "Database/jpg.dat"));
    Installation again(folder / "app");
    ASSERT_TRUE(again.loadSettingsRecord());
    EXPECT_EQ(again.paths().localPath, data);
    EXPECT_EQ(again.paths().sharedPath, share);
    EXPECT_FALSE(exists("?? ?") || exists("share"));
    SetupWizard another(again, fake.surroundings, alerts, network, screen);
    another.load();
    EXPECT_EQ(another.state.localPath, data);
    EXPECT_EQ(another.state.sharedPath, share);
}

TEST_F(LocalPathsStepTest, ExitPutsSuchAFolderBackAsItWas) {
    const NativePath data = folder / "\u6570\u636e";
    state().localPath = data;
    wizard.nextLocalPaths();
    wizard.load();
    state().localPath = folder / "\u4e00\u4e8c";
    wizard.nextLocalPaths();
    fake.dialogs.expectBox("Exit Setup", "Do you want to exit without saving settings ?", BoxAnswer::Yes);
    EXPECT_EQ(wizard.exit(), WizardEnd::LeavesAndReloads);
    EXPECT_EQ(installation.paths().localPath, data);
}

TEST_F(LocalPathsStepTest, ExistingTermFilesAreReplacedOnlyAfterYes) {
    folder.write("local/Database/jpg.dat", "mine");
    expectOverwrite(BoxAnswer::No);
    wizard.nextLocalPaths();
    EXPECT_EQ(folder.read("local/Database/jpg.dat"), "mine");
    EXPECT_FALSE(exists("local/Settings/SkipList.dat"));
    EXPECT_EQ(state().currentTab, kSharedPathTab);
    expectOverwrite(BoxAnswer::Yes);
    wizard.nextLocalPaths();
    EXPECT_EQ(folder.read("local/Database/jpg.dat"), "jpg terms");
    EXPECT_EQ(folder.read("local/Kept/2026-11-15 10.20.30/Database/jpg.dat"), "mine");
}

TEST_F(LocalPathsStepTest, AFolderThatCannotBeMadeEndsTheStep) {
    struct Case {
        const char* inTheWay;
        const char* text;
    };
    const Case cases[] = {
        {"local/Database/x", "Unable to create directory for the Database Folder"},
        {"local/Settings/x", "Unable to create directory for the Settings Folder"},
        {"zips/x", "Unable to create directory for the Archived Lists"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        // A link to nowhere is neither there nor can a folder be made in its place.
        const NativePath place = (folder / c.inTheWay).parent_path();
        std::filesystem::create_directories(place.parent_path());
        std::filesystem::remove_all(place);
        std::filesystem::create_symlink(folder / "nowhere/deep", place);
        expectCritical("Create Folder Structure Error", c.text);
        wizard.nextLocalPaths();
        EXPECT_EQ(state().currentTab, kSetupDbTab);
        std::filesystem::remove(place);
        std::filesystem::create_directory(place);
    }
    EXPECT_EQ(saved().localPath.trimmed().bytes, path("local")) << "what has been saved stays";
}

TEST_F(LocalPathsStepTest, WhyAFolderCannotBeMadeStandsBehindTheButton) {
    std::filesystem::create_directories(folder / "local/Database");
    FailingFiles disk;
    disk.refuse("makeFolder", ENOSPC);
    expectCritical("Create Folder Structure Error", "Unable to create directory for the Settings Folder");
    wizard.nextLocalPaths();
    EXPECT_EQ(fake.dialogs.lastDetails(), path("local/Settings") + ": No space left on device");
}

TEST_F(LocalPathsStepTest, AMissingArchiveEndsTheStep) {
    std::filesystem::remove(folder / "app/db.zip");
    expectCritical("Setup Error", "Unable to find default Databases, please re-install the application.");
    wizard.nextLocalPaths();
    EXPECT_EQ(state().currentTab, kSetupDbTab);
    EXPECT_FALSE(state().tabEnabled[kSharedPathTab]);
}

TEST_F(LocalPathsStepTest, AHostileArchiveEndsTheStepWithTheReason) {
    writeZip(folder / "app/db.zip", {{"Database/jpg.dat", "good"}, {"../evil.dat", "evil"}});
    expectCritical("Setup Error",
                   "Unable to find default Databases, please re-install the application.\r\n"
                   "The archive holds a name that is not allowed: ../evil.dat");
    wizard.nextLocalPaths();
    EXPECT_FALSE(exists("evil.dat"));
    EXPECT_FALSE(exists("local/Database/jpg.dat"));
    EXPECT_EQ(state().currentTab, kSetupDbTab);
}

TEST_F(LocalPathsStepTest, ATrailingSeparatorDoesNoHarm) {
    state().localPath = folder / "local/";
    wizard.nextLocalPaths();
    EXPECT_EQ(folder.read("local/Database/jpg.dat"), "jpg terms");
}

TEST_F(LocalPathsStepTest, ASecondPressWithinTheStepIsNone) {
    fake.loop.onTurn = [this](int) { wizard.nextLocalPaths(); };
    wizard.nextLocalPaths();
    EXPECT_EQ(folder.read("local/Database/jpg.dat"), "jpg terms");
}

class SharedPathStepTest : public WizardFoldersTest {
protected:
    SharedPathStepTest() {
        saveSettings();
        std::filesystem::create_directories(folder / "local/Database");
        wizard.load();
        wizard.setUseSharedDb(true);
    }
    void expectOverwrite(BoxAnswer answer) {
        fake.dialogs.expectBox("Overwrite Existing Files?",
                               "There are already files in this folder. Do you want to overwrite any existing header "
                               "database and settings file ?",
                               answer, BoxStyle::Question, BoxButtons::YesNo);
    }
    void expectBackup(BoxAnswer answer) {
        fake.dialogs.expectBox("Backup Old DB?", "Would you like to make a backup of the current shared DB?", answer,
                               BoxStyle::Question, BoxButtons::YesNo);
    }
    void expectStored(const std::string& shared, int used) {
        EXPECT_EQ(saved().sharedPath.trimmed().bytes, path(shared));
        EXPECT_EQ(saved().useSharedDb, used);
        EXPECT_EQ(installation.paths().useSharedDb, used == 1);
        EXPECT_EQ(state().currentTab, kDefaultsTab);
        EXPECT_TRUE(state().tabEnabled[kDefaultsTab]);
    }
};

TEST_F(SharedPathStepTest, AShareThatRefusesToBeWrittenIsToldAndTheStepGoesOn) {
    browseShared("share");
    std::filesystem::create_directories(folder / "share/Database");
    std::filesystem::create_directories(folder / "share/Settings");
    FailingFiles files;
    files.refuse("rename", EACCES);
    const std::string what = ": no file can be replaced there (Permission denied)";
    fake.dialogs.expectBox("Shared DB",
                           "What is taught on this computer cannot reach the others. " + path("share/Database") + what +
                               "; " + path("share/Settings") + what +
                               ". All users of the share need the right to write, rename and delete in it.",
                           BoxAnswer::Ok, BoxStyle::Warning);
    std::string told;
    fake.dialogs.onProblem = [&](const std::string& problem) { told += problem; };
    wizard.nextSharedPath();
    EXPECT_EQ(state().currentTab, kDefaultsTab);
    EXPECT_EQ(told.find("Shared DB"), std::string::npos) << told;
}

TEST_F(SharedPathStepTest, TheShareIsFilledFromTheArchive) {
    folder.write("local/Database/png.dat", "local terms");
    browseShared("share");
    EXPECT_TRUE(state().sharedPathNextEnabled);
    wizard.nextSharedPath();
    EXPECT_EQ(folder.read("share/Database/jpg.dat"), "jpg terms");
    EXPECT_EQ(folder.read("share/Settings/SkipList.dat"), "*.tmp");
    EXPECT_FALSE(exists("share/Database/png.dat"));
    EXPECT_EQ(state().copyStatus, "Copying databases to shared folders..");
    expectStored("share", 1);
}

TEST_F(SharedPathStepTest, WithoutSharingThePathIsStoredAllTheSame) {
    state().sharedPath = folder / "share";
    wizard.setUseSharedDb(false);
    EXPECT_TRUE(state().sharedPathNextEnabled);
    wizard.nextSharedPath();
    EXPECT_FALSE(exists("share"));
    expectStored("share", 0);
}

TEST_F(SharedPathStepTest, WithoutAPathTheHintShows) {
    wizard.nextSharedPath();
    EXPECT_TRUE(state().sharedHintVisible);
    EXPECT_EQ(state().currentTab, kLocalPathsTab);
}

TEST_F(SharedPathStepTest, AStoredPathIsTakenWhenNoneWasBrowsed) {
    state().sharedPath = folder / "share";
    wizard.nextSharedPath();
    expectStored("share", 1);
}

TEST_F(SharedPathStepTest, TickingSharingAgainAsksForABrowsedPath) {
    state().sharedPath = folder / "share";
    wizard.setUseSharedDb(true);
    EXPECT_FALSE(state().sharedPathNextEnabled);
    browseShared("share");
    wizard.setUseSharedDb(false);
    wizard.setUseSharedDb(true);
    EXPECT_TRUE(state().sharedPathNextEnabled);
}

TEST_F(SharedPathStepTest, AShareThatCannotBeMadeEndsTheStep) {
    folder.write("file", "no folder");
    browseShared("file/share");
    expectCritical("Error", "Unable to create the shared databases");
    wizard.nextSharedPath();
    EXPECT_EQ(fake.dialogs.lastDetails(), path("file/share") + ": Not a directory");
    EXPECT_EQ(state().currentTab, kLocalPathsTab);
    EXPECT_EQ(saved().useSharedDb, 0);
}

TEST_F(SharedPathStepTest, AFailedCreationBelowTheSharedRootPassesWithoutAWord) {
    folder.write("share", "a file: it exists, and nothing can be made below it");
    browseShared("share");
    std::vector<std::string> boxes;
    fake.dialogs.onProblem = [&boxes](const std::string& box) { boxes.push_back(box); };
    wizard.nextSharedPath();
    ASSERT_EQ(boxes.size(), 1U) << "only the failed extraction, told after the last step";
    EXPECT_THAT(boxes[0], HasSubstr("box \"Error\": "));
    expectStored("share", 1);
}

TEST_F(SharedPathStepTest, NoToOverwriteLeavesTheShareAlone) {
    folder.write("share/Database/jpg.dat", "shared terms");
    browseShared("share");
    expectOverwrite(BoxAnswer::No);
    wizard.nextSharedPath();
    EXPECT_EQ(folder.read("share/Database/jpg.dat"), "shared terms");
    EXPECT_FALSE(exists("share/Settings/SkipList.dat"));
    expectStored("share", 1);
}

TEST_F(SharedPathStepTest, YesAsksForABackupAndOverwrites) {
    folder.write("share/Database/jpg.dat", "shared terms");
    browseShared("share");
    expectOverwrite(BoxAnswer::Yes);
    expectBackup(BoxAnswer::Yes);
    bool sawBackupText = false;
    fake.loop.onTurn = [&](int) {
        sawBackupText = sawBackupText || state().copyStatus == "Backing up old Database files";
    };
    wizard.nextSharedPath();
    EXPECT_TRUE(sawBackupText);
    EXPECT_EQ(folder.read("share/Database/jpg.dat"), "jpg terms");
    ASSERT_TRUE(extractArchive(folder / "share/DBBackup_15112026.zip", folder / "out").has_value());
    EXPECT_EQ(folder.read("out/Database/jpg.dat"), "shared terms");
    EXPECT_EQ(folder.read("local/Kept/2026-11-15 10.20.30/jpg.dat"), "shared terms");
    EXPECT_FALSE(state().busyPointer);
    expectStored("share", 1);
}

TEST_F(SharedPathStepTest, ARefusedBackupOverwritesAllTheSame) {
    folder.write("share/Database/jpg.dat", "shared terms");
    browseShared("share");
    expectOverwrite(BoxAnswer::Yes);
    expectBackup(BoxAnswer::No);
    wizard.nextSharedPath();
    EXPECT_EQ(folder.read("share/Database/jpg.dat"), "jpg terms");
    EXPECT_FALSE(exists("share/DBBackup_15112026.zip"));
}

TEST_F(SharedPathStepTest, AFailedBackupOverwritesNothingAndIsToldAfterTheLastStep) {
    folder.write("share/Database/jpg.dat", "shared terms");
    std::filesystem::create_directories(folder / "share/DBBackup_15112026.zip/in the way");
    browseShared("share");
    expectOverwrite(BoxAnswer::Yes);
    expectBackup(BoxAnswer::Yes);
    std::vector<std::string> boxes;
    fake.dialogs.onProblem = [&boxes](const std::string& box) { boxes.push_back(box); };
    wizard.nextSharedPath();
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_THAT(boxes[0], HasSubstr("box \"Error\": "));
    EXPECT_EQ(folder.read("share/Database/jpg.dat"), "shared terms");
    expectStored("share", 1);
}

TEST_F(SharedPathStepTest, AMissingArchiveEndsTheStep) {
    std::filesystem::remove(folder / "app/db.zip");
    browseShared("share");
    expectCritical("DB Error",
                   "The Default database does not exist. Please re-install the application to extract the database.");
    wizard.nextSharedPath();
    EXPECT_EQ(state().currentTab, kLocalPathsTab);
    EXPECT_EQ(saved().useSharedDb, 0);
}

TEST_F(SharedPathStepTest, AHostileArchiveIsToldAfterTheLastStep) {
    writeZip(folder / "app/db.zip", {{"/evil.dat", "evil"}});
    browseShared("share");
    fake.dialogs.expectBox("Error", "The archive holds a name that is not allowed: /evil.dat", BoxAnswer::Ok,
                           BoxStyle::Warning);
    wizard.nextSharedPath();
    expectStored("share", 1);
}

}  // namespace
}  // namespace quillon::test
