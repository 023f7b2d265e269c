// SPDX-License-Identifier: MIT
// Load, the first tab, hints, browsing, defaults, done and exit.
#include "setup/wizard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "setup/wizard_screen.h"

namespace quillon::test {
namespace {

using testing::ElementsAre;

constexpr const char* kFirstText =
    "You should use this option if you are setting up the system for the first time. If you have installed this "
    "software "
    "on another machine, it is recommended that you set the first machine to use network sharing, export the settings "
    "and databases from that machine and import them into this one..";

class WizardTest : public testing::Test, public WizardScreen {};

TEST_F(WizardTest, AFirstRunOpensOnTheFirstTabWithEverythingEmptyButTheTests) {
    wizard.load();
    EXPECT_EQ(state().currentTab, kSetupDbTab);
    EXPECT_THAT(state().tabEnabled, ElementsAre(true, false, false, false, false, false, false));
    EXPECT_EQ(state().method, SetupMethod::None);
    EXPECT_FALSE(state().methodNextEnabled);
    EXPECT_EQ(state().methodText, "");
    EXPECT_TRUE(state().localPath.empty() && state().archivePath.empty() && state().sharedPath.empty());
    EXPECT_TRUE(state().runHeaderTest && state().useSkipList && state().useCommonHeaders);
    EXPECT_FALSE(state().useSharedDb);
    EXPECT_FALSE(state().browseArchiveEnabled);
    EXPECT_FALSE(state().localPathsNextEnabled);
    EXPECT_TRUE(state().sharedPathNextEnabled);
    EXPECT_EQ(state().guide,
              "First we need to set up a location on this computer where the local copy of the database and related "
              "files will be stored.");
    EXPECT_EQ(state().copyStatus, "");
    EXPECT_EQ(state().networkStatus, "");
    EXPECT_THAT(state().alertRecipients.items, ElementsAre("Query"));
    EXPECT_EQ(state().alertRecipients.button().caption, "Query");
    EXPECT_TRUE(state().alertRecipients.button().enabled);
}

TEST_F(WizardTest, AnEditFillsEveryBoxAndOpensOnTheSecondTab) {
    installation.settings.runHeaderTest = 1;
    installation.settings.useSkipList = 1;
    installation.settings.useCommonHeaders = 1;
    installation.settings.useSharedDb = 1;
    installation.settings.alertRecipient.assign(PageText{"DESK2"});
    saveSettings("share");
    wizard.load();
    EXPECT_EQ(state().currentTab, kLocalPathsTab);
    EXPECT_TRUE(state().tabEnabled[kLocalPathsTab]);
    EXPECT_FALSE(state().tabEnabled[kSharedPathTab]);
    EXPECT_EQ(state().method, SetupMethod::Manual);
    EXPECT_EQ(state().localPath, folder / "local");
    EXPECT_EQ(state().archivePath, folder / "zips");
    EXPECT_EQ(state().sharedPath, folder / "share");
    EXPECT_TRUE(state().runHeaderTest && state().useSkipList && state().useCommonHeaders && state().useSharedDb);
    EXPECT_THAT(state().alertRecipients.items, ElementsAre("DESK2", "Query"));
    EXPECT_EQ(state().alertRecipients.index, 0);
    EXPECT_EQ(state().alertRecipients.button().caption, "Test");
    EXPECT_THAT(state().zipRecipients.items, ElementsAre("", "Query"));
    EXPECT_EQ(state().zipRecipients.text(), "");
    EXPECT_TRUE(state().browseArchiveEnabled);
    EXPECT_TRUE(state().localPathsNextEnabled);
    EXPECT_TRUE(state().sharedPathNextEnabled);
}

TEST_F(WizardTest, AnEditOpensWithTheTextOfAFirstSetUp) {
    saveSettings();
    wizard.load();
    EXPECT_EQ(state().methodText, kFirstText);
    wizard.chooseMethod(SetupMethod::Manual);
    EXPECT_EQ(state().methodText, "You are about to edit existing settings on this computer.");
}

TEST_F(WizardTest, LocalPathsNextAsksForTheSharedPathAtLoad) {
    saveSettings();
    wizard.load();
    EXPECT_FALSE(state().localPathsNextEnabled);
    EXPECT_TRUE(state().browseArchiveEnabled);
    browseArchive("zips");
    EXPECT_TRUE(state().localPathsNextEnabled);
}

TEST_F(WizardTest, ATextFollowsTheMethod) {
    wizard.load();
    wizard.chooseMethod(SetupMethod::Import);
    EXPECT_EQ(state().methodText,
              "You use this setting if there is already an installation on the network and you have exported the "
              "settings to a shared location on that computer or a network share.");
    EXPECT_TRUE(state().methodNextEnabled);
    wizard.chooseMethod(SetupMethod::Manual);
    EXPECT_EQ(state().methodText, kFirstText);
}

TEST_F(WizardTest, ManualSetUpGoesToTheLocalPaths) {
    wizard.load();
    wizard.chooseMethod(SetupMethod::Manual);
    wizard.nextMethod();
    EXPECT_EQ(state().currentTab, kLocalPathsTab);
    EXPECT_TRUE(state().tabEnabled[kLocalPathsTab]);
    EXPECT_EQ(screen.focused.back(), "Command2");
}

TEST_F(WizardTest, AnImportFillsTheBoxesAndGoesToTheLocalPaths) {
    wizard.load();
    wizard.chooseMethod(SetupMethod::Import);
    AppSettings other;
    other.localPath.assign(pageFromPath(folder / "elsewhere"));
    other.alertRecipient.assign(PageText{"DESK2"});
    other.runHeaderTest = 1;
    fake.dialogs.expectFiles("Open", {folder.write("ZOV-Settings.dat", encodeSettings(other))});
    wizard.nextMethod();
    EXPECT_EQ(state().currentTab, kLocalPathsTab);
    EXPECT_TRUE(state().tabEnabled[kLocalPathsTab]);
    EXPECT_EQ(state().localPath, folder / "elsewhere");
    EXPECT_TRUE(state().runHeaderTest);
    EXPECT_THAT(state().alertRecipients.items, ElementsAre("DESK2", "Query"));
    EXPECT_TRUE(exists("app/settings.dat"));
}

TEST_F(WizardTest, AnImportProposesFoldersThatCanBeUsedHere) {
    wizard.load();
    wizard.chooseMethod(SetupMethod::Import);
    AppSettings other;
    const NativePath gone = folder.write("a file", "where the home of another person would be") / "Quillon";
    other.localPath.assign(pageFromPath(gone));
    other.zipPath.assign(pageFromPath(gone / "Archives"));
    fake.dialogs.expectFiles("Open", {folder.write("ZOV-Settings.dat", encodeSettings(other))});
    const auto expectProposal = [this](const std::string& name, const NativePath& from, const char* to,
                                       BoxAnswer answer) {
        fake.dialogs.expectBox("Import Settings",
                               "The imported " + name + " " + from.native() +
                                   " cannot be used on this computer. Do you want to use " + path(to) + " instead?",
                               answer, BoxStyle::Question, BoxButtons::YesNo);
    };
    expectProposal("Local Path", gone, "app/Data", BoxAnswer::Yes);
    expectProposal("Archive Path", gone / "Archives", "app/Data/Archives", BoxAnswer::No);
    wizard.nextMethod();
    EXPECT_EQ(state().localPath, folder / "app/Data");
    EXPECT_EQ(state().archivePath, gone / "Archives");
    EXPECT_EQ(saved().localPath, other.localPath) << "what was imported is stored as it came";
    saveSettings();
    wizard.load();
    fake.dialogs.expectFiles("Open", {folder / "ZOV-Settings.dat"});
    expectProposal("Local Path", gone, "local", BoxAnswer::Yes);
    expectProposal("Archive Path", gone / "Archives", "zips", BoxAnswer::Yes);
    wizard.chooseMethod(SetupMethod::Import);
    wizard.nextMethod();
    EXPECT_EQ(state().localPath, folder / "local") << "what this installation had before";
    EXPECT_EQ(state().archivePath, folder / "zips");
}

TEST_F(WizardTest, AFailedImportStaysOnTheTab) {
    wizard.load();
    wizard.chooseMethod(SetupMethod::Import);
    fake.dialogs.expectFiles("Open", {folder.write("short", "1")});
    fake.dialogs.expectBox("Error", "Not a settings database.");
    wizard.nextMethod();
    EXPECT_EQ(state().currentTab, kSetupDbTab);
    EXPECT_FALSE(state().tabEnabled[kLocalPathsTab]);
}

TEST_F(WizardTest, ExitAfterAnImportPutsTheEarlierRecordBackInMemoryOnly) {
    saveSettings();
    const AppSettings before = installation.settings;
    wizard.load();
    wizard.chooseMethod(SetupMethod::Import);
    AppSettings other;
    other.localPath.assign(pageFromPath(folder / "elsewhere"));
    fake.dialogs.expectFiles("Open", {folder.write("ZOV-Settings.dat", encodeSettings(other))});
    wizard.nextMethod();
    fake.dialogs.expectBox("Exit Setup", "Do you want to exit without saving settings ?", BoxAnswer::Yes);
    const WizardEnd end = wizard.exit();
    EXPECT_EQ(installation.settings, before);
    EXPECT_EQ(installation.paths().localPath, folder / "local");
    EXPECT_EQ(saved().localPath, other.localPath);
    EXPECT_EQ(end, WizardEnd::LeavesAndReloads);
}

TEST_F(WizardTest, NoToExitStays) {
    wizard.load();
    fake.dialogs.expectBox("Exit Setup", "Do you want to exit without saving settings ?", BoxAnswer::No,
                           BoxStyle::Question, BoxButtons::YesNo);
    EXPECT_EQ(wizard.exit(), WizardEnd::Stays);
}

TEST_F(WizardTest, AKeyInAPathShowsTheHintForAWhile) {
    wizard.load();
    wizard.keyInPath(WizardPath::Local);
    EXPECT_TRUE(state().localHintVisible);
    EXPECT_FALSE(state().sharedHintVisible);
    EXPECT_EQ(screen.focused.back(), "Command2");
    wizard.keyInPath(WizardPath::Archive);
    EXPECT_EQ(screen.focused.back(), "Command3");
    wizard.keyInPath(WizardPath::Shared);
    EXPECT_TRUE(state().sharedHintVisible);
    EXPECT_EQ(screen.focused.back(), "Command4");
    EXPECT_EQ(screen.beeps, 3);
    EXPECT_EQ(kHintMilliseconds, 6000);
    wizard.hideHints();
    EXPECT_FALSE(state().localHintVisible || state().sharedHintVisible);
}

TEST_F(WizardTest, BrowsingLeadsFromLocalToArchiveToNext) {
    wizard.load();
    browseLocal("local");
    EXPECT_EQ(state().localPath, folder / "local");
    EXPECT_EQ(state().guide,
              "Now select an archive folder, this is where files are copied to once they are archived. If other people "
              "need access to these files, then make sure you select a shared folder or network share. Once you are "
              "ready, click on the [Next>] button to copy the default settings to the local folders.");
    EXPECT_TRUE(state().browseArchiveEnabled);
    EXPECT_FALSE(state().localPathsNextEnabled);
    browseArchive("zips");
    EXPECT_EQ(state().archivePath, folder / "zips");
    EXPECT_EQ(state().guide,
              "Click Next to continue. If there is no database in the folder, the default database will be extracted.");
    EXPECT_TRUE(state().localPathsNextEnabled);
}

TEST_F(WizardTest, ACancelledBrowseChangesNothing) {
    wizard.load();
    for (const char* title : {"Select folder for local database..", "Select folder to store Archives ..",
                              "Select folder for Shared database.."})
        fake.dialogs.expectFolder(title, std::nullopt);
    wizard.browseLocalPath();
    wizard.browseArchivePath();
    wizard.browseSharedPath();
    EXPECT_TRUE(state().localPath.empty() && state().archivePath.empty() && state().sharedPath.empty());
    EXPECT_FALSE(state().browseArchiveEnabled);
}

TEST_F(WizardTest, EnabledTabsStayClickable) {
    wizard.load();
    wizard.chooseMethod(SetupMethod::Manual);
    wizard.nextMethod();
    wizard.selectTab(kSetupDbTab);
    EXPECT_EQ(state().currentTab, kSetupDbTab);
    wizard.selectTab(kExportTab);
    EXPECT_EQ(state().currentTab, kSetupDbTab);
    wizard.selectTab(99);
    EXPECT_EQ(state().currentTab, kSetupDbTab);
}

TEST_F(WizardTest, DefaultsAreStoredAndTheSeparatorIsLeftAlone) {
    installation.settings.fileListSeparator.assign(PageText{"_"});
    saveSettings();
    wizard.load();
    EXPECT_EQ(state().separator, "");
    state().runHeaderTest = true;
    state().useSkipList = true;
    state().useCommonHeaders = true;
    state().separator = "#";
    wizard.nextDefaults();
    EXPECT_EQ(saved().runHeaderTest, 1);
    EXPECT_EQ(saved().useSkipList, 1);
    EXPECT_EQ(saved().useCommonHeaders, 1);
    EXPECT_EQ(installation.paths().fileListSeparator, "_");
    EXPECT_EQ(state().currentTab, kAlertsTab);
    EXPECT_TRUE(state().tabEnabled[kAlertsTab]);
    state().useSkipList = false;
    wizard.nextDefaults();
    EXPECT_EQ(saved().useSkipList, 0);
}

TEST_F(WizardTest, DoneSavesAndLeavesWithoutAReload) {
    saveSettings();
    wizard.load();
    installation.settings.useSkipList = 1;
    EXPECT_EQ(wizard.done(), WizardEnd::Leaves);
    EXPECT_EQ(saved().useSkipList, 1);
}

TEST_F(WizardTest, ExportWritesTheRecordInMemory) {
    saveSettings();
    wizard.load();
    fake.dialogs.expectFolder("Export settings to ...", folder.path());
    fake.dialogs.expectBox("Export OK", "Settings successfully exported.");
    wizard.exportRecord();
    EXPECT_EQ(folder.read("ZOV-Settings.dat"), encodeSettings(installation.settings));
}

}  // namespace
}  // namespace quillon::test
