// SPDX-License-Identifier: MIT
#include "job/job_setup.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "app/list_mark.h"
#include "job/job_board.h"
#include "platform/folders.h"
#include "support/fake_surroundings.h"
#include "support/temp_folder.h"

namespace quillon {
namespace {

using test::FakeSurroundings;
using test::TempFolder;

class JobSetupTest : public ::testing::Test {
protected:
    JobSetupTest() {
        installation.settings.localPath.assign(pageFromPath(temp / "local"));
        installation.refreshPathVariables();
        temp.write("local/Settings/SkipList.dat", "*.tmp*\r\n");
        temp.write("local/Settings/CommonHeaders.dat", "1,MZ,T,exe\r\n");
        std::filesystem::create_directories(temp / "source");
    }

    std::string local(const std::string& name) const { return (temp / ("local/" + name)).string(); }
    std::vector<std::string> logTexts() const {
        std::vector<std::string> texts;
        for (const LogRow& row : state.log.rows()) texts.push_back(row.text);
        return texts;
    }

    TempFolder temp;
    FakeSurroundings fake;
    Installation installation{temp / "app"};
    JobState state;
    JobSetup setup{installation, fake.surroundings, state};
};

TEST_F(JobSetupTest, AFolderOfTheSettingsThatMayHaveLostCharactersIsToldAtTheStart) {
    setup.loadSettings();
    EXPECT_TRUE(logTexts().empty());
    installation.settings.sharedPath.assign(pageFromPath("/mnt/\u6570\u636e"));
    installation.refreshPathVariables();
    setup.loadSettings();
    EXPECT_EQ(logTexts(), std::vector<std::string>{
                              "The Shared DB Path of the settings may have lost characters of its name : /mnt/??"});
    EXPECT_EQ(state.log.rows().front().colour, kLightOrange);
}

TEST_F(JobSetupTest, AForbiddenCharacterLeavesTheJobIdAtOnce) {
    for (const char* forbidden : {":", "\\", "/", "@", "*", "?", "<", ">", "|", "\""}) {
        setup.jobIdChanged(fmt::format("12{0}34{0}", forbidden));
        EXPECT_EQ(state.options.jobId, "1234") << forbidden;
    }
}

TEST_F(JobSetupTest, AJobIdEnablesTheSourcePickerAndView) {
    setup.jobIdChanged("1234");
    EXPECT_TRUE(setup.sourceEnabled);
    EXPECT_TRUE(boardOf(state).view);
    EXPECT_FALSE(boardOf(state).stop);
    EXPECT_FALSE(boardOf(state).run);
}

TEST_F(JobSetupTest, ABlankOnlyJobIdIsCutToNothingAndDisablesTheSourcePicker) {
    setup.jobIdChanged("1234");
    state.mayRun = true;
    setup.jobIdChanged("   ");
    EXPECT_EQ(state.options.jobId, "");
    EXPECT_FALSE(setup.sourceEnabled);
    EXPECT_FALSE(boardOf(state).run);
}

TEST_F(JobSetupTest, ABlankBaredByTheCleaningIsCutToo) {
    setup.jobIdChanged("| 12 34 |");
    EXPECT_EQ(state.options.jobId, "12 34");
}

TEST_F(JobSetupTest, PastingTwoCharactersIntoTheSeparatorKeepsTheFirst) {
    EXPECT_EQ(cleanSeparator("ab"), "a");
    EXPECT_EQ(cleanSeparator(":b"), "b");
    EXPECT_EQ(cleanSeparator("?"), "");
    EXPECT_EQ(cleanSeparator("\xC3\xA4z"), "\xC3\xA4");
    EXPECT_EQ(cleanSeparator(" "), " ");
}

TEST_F(JobSetupTest, AChosenSourceEnablesRunAndIsLogged) {
    setup.jobIdChanged("1234");
    fake.dialogs.expectFolder("Select source", temp / "source");
    EXPECT_EQ(setup.pickSource(), FocusAfter::Stays);
    EXPECT_EQ(state.options.source, temp / "source");
    EXPECT_TRUE(boardOf(state).run);
    EXPECT_FALSE(boardOf(state).view);
    EXPECT_EQ(state.texts.status, "Ready >");
    EXPECT_EQ(logTexts(), std::vector<std::string>{"Source : " + (temp / "source").string()});
}

TEST_F(JobSetupTest, ChoosingASourceTwiceLeavesOneRow) {
    for (int i = 0; i < 2; ++i) {
        fake.dialogs.expectFolder("Select source", temp / "source");
        setup.pickSource();
    }
    EXPECT_EQ(logTexts(), std::vector<std::string>{"Source : " + (temp / "source").string()});
}

TEST_F(JobSetupTest, CancellingTheSourceShowsNoneAndDisablesRun) {
    fake.dialogs.expectFolder("Select source", temp / "source");
    setup.pickSource();
    fake.dialogs.expectFolder("Select source", std::nullopt);
    setup.pickSource();
    EXPECT_FALSE(state.options.source.has_value());
    EXPECT_FALSE(boardOf(state).run);
    EXPECT_TRUE(logTexts().empty());
}

TEST_F(JobSetupTest, AnExistingListIsAskedFor) {
    temp.write("local/1234.csv", "");
    setup.jobIdChanged("1234");
    const std::string text = "The file (" + local("1234.csv") + ") already exists. Do you want to overwrite it?";
    for (const BoxAnswer answer : {BoxAnswer::Yes, BoxAnswer::No}) {
        state.texts.status.clear();
        fake.dialogs.expectFolder("Select source", temp / "source");
        fake.dialogs.expectBox("Overwrite File List?", text, answer, BoxStyle::Question, BoxButtons::YesNo);
        const FocusAfter focus = setup.pickSource();
        EXPECT_EQ(state.options.overwriteConfirmed, answer == BoxAnswer::Yes);
        EXPECT_EQ(focus, answer == BoxAnswer::Yes ? FocusAfter::Stays : FocusAfter::JobId);
        EXPECT_EQ(state.texts.status, answer == BoxAnswer::Yes ? "Ready >" : "");
    }
}

TEST_F(JobSetupTest, ANewChoiceForgetsTheConfirmation) {
    state.options.overwriteConfirmed = true;
    fake.dialogs.expectFolder("Select source", std::nullopt);
    setup.pickSource();
    EXPECT_FALSE(state.options.overwriteConfirmed);
}

TEST_F(JobSetupTest, ADroppedFolderCountsAsChosen) {
    setup.jobIdChanged("1234");
    EXPECT_EQ(setup.dropSource(temp / "source"), FocusAfter::Stays);
    EXPECT_EQ(state.options.source, temp / "source");
    EXPECT_EQ(logTexts().size(), 1u);
}

TEST_F(JobSetupTest, SystemFoldersAndHiddenEntriesAreNoContent) {
    for (const char* name : {".Trash", "RECYCLER", "recycler", "System Volume Information", ".."})
        EXPECT_FALSE(countsAsContent(name)) << name;
    for (const char* name : {"a.txt", "recycler2", "lost+found"}) EXPECT_TRUE(countsAsContent(name)) << name;
}

TEST_F(JobSetupTest, ATargetWithSystemFoldersOnlyGivesNoWarning) {
    std::filesystem::create_directories(temp / "target/RECYCLER");
    std::filesystem::create_directories(temp / "target/System Volume Information");
    fake.dialogs.expectFolder("Select Target", temp / "target");
    setup.pickTarget();
    EXPECT_EQ(state.options.target, temp / "target");
    EXPECT_EQ(logTexts(), std::vector<std::string>{"Copy to : " + (temp / "target").string()});
    EXPECT_FALSE(state.log.rows().back().colour.has_value());
}

TEST_F(JobSetupTest, AFilledTargetWarnsAndIsMarked) {
    temp.write("target/a.txt", "x");
    const std::string text =
        "There are aleady files stored on this drive or folder. Any existing files or folders may be overwritten, do "
        "you still want to copy?";
    fake.dialogs.expectFolder("Select Target", temp / "target");
    fake.dialogs.expectBox("Warning !", text, BoxAnswer::No, BoxStyle::Question, BoxButtons::YesNo);
    setup.pickTarget();
    EXPECT_FALSE(state.options.target.has_value());
    EXPECT_TRUE(logTexts().empty());

    fake.dialogs.expectFolder("Select Target", temp / "target");
    fake.dialogs.expectBox("Warning !", text, BoxAnswer::Yes);
    setup.pickTarget();
    EXPECT_EQ(state.options.target, temp / "target");
    EXPECT_EQ(logTexts(),
              std::vector<std::string>{"Copy to : " + (temp / "target").string() + " (Overwrite existing files )"});
    EXPECT_EQ(state.log.rows().back().colour, 0xC0E0FFu);
}

TEST_F(JobSetupTest, CancellingTheTargetChangesNothing) {
    state.options.target = temp / "old";
    fake.dialogs.expectFolder("Select Target", std::nullopt);
    setup.pickTarget();
    EXPECT_EQ(state.options.target, temp / "old");
}

TEST_F(JobSetupTest, TheRecipientBoxAlwaysHoldsQuery) {
    setup.loadSettings();
    setup.loadSettings();
    EXPECT_EQ(setup.recipients.items, std::vector<std::string>{"Query"});
    EXPECT_EQ(setup.recipients.text(), "Query");
}

TEST_F(JobSetupTest, AStoredRecipientIsAddedAndSelected) {
    installation.settings.alertRecipient.assign(toPage(std::string_view("LAB9")));
    setup.loadSettings();
    EXPECT_EQ(setup.recipients.items, (std::vector<std::string>{"Query", "LAB9"}));
    EXPECT_EQ(setup.recipients.index, 1);
}

TEST_F(JobSetupTest, AKnownRecipientSelectsTheSecondItem) {
    setup.recipients.items = {"Query", "LAB1", "LAB9"};
    installation.settings.alertRecipient.assign(toPage(std::string_view("LAB9")));
    setup.applySettingDefaults();
    EXPECT_EQ(setup.recipients.index, 1);
    EXPECT_EQ(setup.recipients.text(), "LAB1");
}

TEST_F(JobSetupTest, ThisComputerIsNotOfferedAsRecipient) {
    installation.settings.alertRecipient.assign(toPage(std::string_view("lab7")));
    setup.loadSettings();
    EXPECT_EQ(setup.recipients.items, std::vector<std::string>{"Query"});
    EXPECT_EQ(setup.recipients.index, 0);
}

TEST_F(JobSetupTest, DefaultsComeFromTheSettings) {
    installation.settings.runHeaderTest = 1;
    installation.settings.useSkipList = 1;
    installation.settings.useCommonHeaders = 1;
    setup.loadSettings();
    EXPECT_TRUE(state.options.checkFileQuality);
    EXPECT_TRUE(state.options.useSkipList);
    EXPECT_TRUE(state.options.useSkipListEnabled);
    EXPECT_TRUE(state.options.useCommonHeaders);
    EXPECT_TRUE(state.options.useCommonHeadersEnabled);
    EXPECT_EQ(state.texts.status, "");
}

TEST_F(JobSetupTest, WithoutTheListsTheirBoxesAreSwitchedOff) {
    ASSERT_TRUE(removeFile(temp / "local/Settings/SkipList.dat"));
    ASSERT_TRUE(removeFile(temp / "local/Settings/CommonHeaders.dat"));
    installation.settings.useSkipList = 1;
    installation.settings.useCommonHeaders = 1;
    setup.loadSettings();
    EXPECT_FALSE(state.options.useSkipList);
    EXPECT_FALSE(state.options.useSkipListEnabled);
    EXPECT_FALSE(state.options.useCommonHeaders);
    EXPECT_FALSE(state.options.useCommonHeadersEnabled);
    EXPECT_EQ(state.texts.status, "Skip list disabled - can not load list");
}

TEST_F(JobSetupTest, WithoutALocalPathThereIsNoHeaderTest) {
    Installation empty(temp / "app");
    empty.settings.runHeaderTest = 1;
    empty.settings.useSharedDb = 1;
    empty.refreshPathVariables();
    JobSetup other(empty, fake.surroundings, state);
    other.loadSettings();
    EXPECT_FALSE(state.options.checkFileQuality);
    EXPECT_EQ(state.texts.status, "System path not set!!");
}

TEST_F(JobSetupTest, ATickedSkipListGoesBackToTheSettings) {
    installation.settings.useSkipList = 0;
    setup.skipListTicked(true);
    EXPECT_FALSE(state.options.useSkipList);
    installation.settings.useSkipList = 1;
    setup.skipListTicked(true);
    EXPECT_TRUE(state.options.useSkipList);
}

TEST_F(JobSetupTest, CopyGatesTheTargetPicker) {
    setup.copyTicked(true);
    EXPECT_TRUE(setup.targetEnabled);
    setup.copyTicked(false);
    EXPECT_FALSE(setup.targetEnabled);
}

TEST_F(JobSetupTest, TickingDefaultsAppliesThemAgain) {
    installation.settings.runHeaderTest = 1;
    setup.defaultsTicked(false);
    EXPECT_FALSE(state.options.checkFileQuality);
    setup.defaultsTicked(true);
    EXPECT_TRUE(state.options.checkFileQuality);
}

TEST_F(JobSetupTest, TheSeparatorOfTheSettingsOrAHyphen) {
    setup.loadSeparator();
    EXPECT_EQ(setup.separator, "-");
    installation.settings.fileListSeparator.assign(PageText{"+"});
    setup.loadSeparator();
    EXPECT_EQ(setup.separator, "+");
}

TEST_F(JobSetupTest, AnEmptyAnswerLeavesTheSeparator) {
    for (const std::optional<std::string>& answer : {std::optional<std::string>{}, std::optional<std::string>{""}}) {
        fake.dialogs.expectInput("File list separator", "Enter a file list separator : ", answer, "-");
        fake.dialogs.expectBox("Unchanged", "File list separator remains unchanged");
        setup.askSeparator();
        EXPECT_EQ(setup.separator, "-");
    }
}

TEST_F(JobSetupTest, AForbiddenSeparatorIsRefusedAndTheOldOneComesBack) {
    setup.separator = "+";
    fake.dialogs.expectInput("File list separator", "Enter a file list separator : ", "?", "+");
    fake.dialogs.expectBox("File Separator Error",
                           "You may not use the character ? as a separator as this character is reserved by the system "
                           "and can not be used in a filename");
    setup.askSeparator();
    EXPECT_EQ(setup.separator, "+");
    EXPECT_FALSE(pathExists(installation.paths().settingsFile));
}

TEST_F(JobSetupTest, ANewSeparatorIsSaved) {
    std::filesystem::create_directories(temp / "app");
    fake.dialogs.expectInput("File list separator", "Enter a file list separator : ", "_x", "-");
    setup.askSeparator();
    EXPECT_EQ(setup.separator, "_");
    EXPECT_EQ(installation.paths().fileListSeparator, "_");
    Installation other(temp / "app");
    ASSERT_TRUE(other.loadSettingsRecord());
    EXPECT_EQ(other.paths().fileListSeparator, "_");
}

TEST_F(JobSetupTest, OpenExistingCopiesAForeignListAndTakesItsName) {
    const NativePath list = temp.write("elsewhere/4711.old.csv", "rows");
    fake.dialogs.expectFiles("Open existing file list", {list});
    EXPECT_EQ(setup.openExisting(), "4711");
    EXPECT_EQ(state.options.jobId, "4711");
    EXPECT_EQ(temp.read("local/4711.csv"), "rows");
    EXPECT_EQ(state.texts.status, "");
    EXPECT_FALSE(boardOf(state).busyPointer);
    EXPECT_EQ(fake.dialogs.lastPick().filter, "File Lists (*.csv)|*.csv|All Files(*.*)");
    EXPECT_EQ(fake.dialogs.lastPick().defaultSuffix, ".csv");
    EXPECT_EQ(fake.dialogs.lastPick().startFolder, temp / "local");
}

TEST_F(JobSetupTest, OpenExistingKnowsACutListByItsMark) {
    const NativePath list = temp.write("elsewhere/4711.csv", "rows");
    ASSERT_TRUE(markUnfinished(list));
    fake.dialogs.expectFiles("Open existing file list", {list});
    EXPECT_EQ(setup.openExisting(), "4711");
    EXPECT_TRUE(isUnfinished(temp / "local/4711.csv"));
}

TEST_F(JobSetupTest, OpenExistingLeavesAListThatIsThere) {
    temp.write("local/4711.csv", "own");
    fake.dialogs.expectFiles("Open existing file list", {temp.write("elsewhere/4711.csv", "foreign")});
    EXPECT_EQ(setup.openExisting(), "4711");
    EXPECT_EQ(temp.read("local/4711.csv"), "own");
}

TEST_F(JobSetupTest, CancellingOpenExistingChangesNothing) {
    setup.jobIdChanged("1234");
    fake.dialogs.expectFiles("Open existing file list", {});
    EXPECT_FALSE(setup.openExisting().has_value());
    EXPECT_EQ(state.options.jobId, "1234");
}

TEST_F(JobSetupTest, ClearLogAsksOnlyWithRows) {
    EXPECT_TRUE(setup.askClearLog());
    state.log.add({fake.clock.now(), "row", {}});
    fake.dialogs.expectBox("Clear log?", "Clear the log?", BoxAnswer::No, BoxStyle::Question, BoxButtons::YesNo);
    EXPECT_FALSE(setup.askClearLog());
    fake.dialogs.expectBox("Clear log?", "Clear the log?", BoxAnswer::Yes);
    EXPECT_TRUE(setup.askClearLog());
    EXPECT_TRUE(state.log.rows().empty());
}

}  // namespace
}  // namespace quillon
