// SPDX-License-Identifier: MIT
#include "setup/network_setup.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/database_history.h"
#include "archive/zip_bytes.h"
#include "platform/folders.h"
#include "setup/database_folder.h"
#include "setup/setup_folders.h"
#include "setup/share_trial.h"
#include "support/failing_files.h"
#include "support/recording_screen.h"

namespace quillon::test {
namespace {

using testing::ElementsAre;

class NetworkSetupTest : public testing::Test, public SetupFolders {
protected:
    NetworkSetupTest() { folder.write("app/settings.dat", "the settings"); }

    void copyOnly(NetworkBoxIndex index) {
        setup.state.boxes[index].ticked = true;
        setup.copy();
    }
    [[nodiscard]] bool ticked(NetworkBoxIndex index) const { return setup.state.boxes[index].ticked; }
    [[nodiscard]] bool exists(const std::string& name) const { return pathExists(folder / name); }
    void expectOverwrite(const std::string& name, BoxAnswer answer) {
        fake.dialogs.expectBox("Overwrite file", "Do you want to overwrite the existing " + name + " file ?", answer,
                               BoxStyle::Question, BoxButtons::YesNo);
    }
    void expectError(const std::string& text) {
        fake.dialogs.expectBox("Error", text, BoxAnswer::Ok, BoxStyle::Warning);
    }
    void expectOverwriteDatabase(BoxAnswer answer) {
        fake.dialogs.expectBox("Overwrite shared DB?",
                               "A database aready exists in the target folder. Do you want to overwrite the existing "
                               "database?",
                               answer, BoxStyle::Question, BoxButtons::YesNo);
    }

    RecordingScreen screen;
    NetworkSetup setup{installation, fake.surroundings, screen};
};

TEST_F(NetworkSetupTest, TheBoxesHaveTheirCaptions) {
    std::vector<std::string> captions;
    for (const auto& box : setup.state.boxes) captions.emplace_back(box.caption);
    EXPECT_THAT(captions, ElementsAre("Main Database", "Skiplist", "Common Header database",
                                      "Use settings on this machine as default", "System messages"));
    EXPECT_EQ(setup.state.progress, "");
}

TEST_F(NetworkSetupTest, SelectAllLeavesSystemMessagesAlone) {
    setup.setAll(true);
    for (std::size_t i = 0; i < 4; ++i) EXPECT_TRUE(setup.state.boxes[i].ticked);
    EXPECT_FALSE(ticked(kSystemMessagesBox));
    setup.state.boxes[kSystemMessagesBox].ticked = true;
    setup.setAll(false);
    for (std::size_t i = 0; i < 4; ++i) EXPECT_FALSE(setup.state.boxes[i].ticked);
    EXPECT_TRUE(ticked(kSystemMessagesBox));
}

TEST_F(NetworkSetupTest, SelectAllOnAFreshShareAsksNothing) {
    folder.write("local/Database/jpg.dat", "1");
    folder.write("local/Settings/SkipList.dat", "2");
    folder.write("local/Settings/CommonHeaders.dat", "3");
    folder.write("app/Errors.dat", "4");
    setup.setAll(true);
    setup.copy();
    EXPECT_EQ(folder.read("share/Database/jpg.dat"), "1");
    EXPECT_EQ(folder.read("share/Settings/SkipList.dat"), "2");
    EXPECT_EQ(folder.read("share/Settings/CommonHeaders.dat"), "3");
    EXPECT_EQ(folder.read("share/Settings/Settings.dat"), "the settings");
    EXPECT_FALSE(exists("share/Settings/Errors.dat"));
    for (const auto& box : setup.state.boxes) EXPECT_FALSE(box.ticked) << box.caption;
}

TEST_F(NetworkSetupTest, AShareThatRefusesToBeWrittenIsToldFirst) {
    folder.write("local/Settings/CommonHeaders.dat", "3");
    FailingFiles files;
    files.refuse("unlink", EACCES);
    const std::string what = ": no file can be deleted there (Permission denied)";
    fake.dialogs.expectBox("Shared DB",
                           "What is taught on this computer cannot reach the others. " +
                               (folder / "share/Database").native() + what + "; " +
                               (folder / "share/Settings").native() + what +
                               ". All users of the share need the right to write, rename and delete in it.",
                           BoxAnswer::Ok, BoxStyle::Warning);
    copyOnly(kCommonHeadersBox);
    EXPECT_EQ(folder.read("share/Settings/CommonHeaders.dat"), "3") << "what can be done is done";
}

TEST_F(NetworkSetupTest, AStructureThatIsNotWholeIsRepairedFirst) {
    std::filesystem::remove_all(folder / "share");
    std::filesystem::remove(folder / "app/settings.dat");
    folder.write("local/Settings/CommonHeaders.dat", "3");
    fake.dialogs.expectBox(
        "Error",
        "Unable to repair folder structure. Please check that network drives are mapped correcty, and "
        "that the shared drives are accessible.");
    copyOnly(kCommonHeadersBox);
    EXPECT_EQ(folder.read("share/Settings/CommonHeaders.dat"), "3");
}

TEST_F(NetworkSetupTest, AMissingSharedSettingsFolderAloneIsNotRepaired) {
    std::filesystem::remove(folder / "share/Settings");
    folder.write("local/Settings/CommonHeaders.dat", "3");
    expectError("Error copying Common Headers file.");
    copyOnly(kCommonHeadersBox);
    EXPECT_FALSE(exists("share/Settings"));
}

struct SingleCase {
    NetworkBoxIndex index;
    const char* source;
    const char* target;
    const char* name;
    const char* missing;
    const char* failed;
};
const SingleCase kSingleCases[] = {
    {kCommonHeadersBox, "local/Settings/CommonHeaders.dat", "share/Settings/CommonHeaders.dat", "Common Headers",
     "Unable to find common headers file", "Error copying Common Headers file."},
    {kSettingsBox, "app/settings.dat", "share/Settings/Settings.dat", "Shared Settings Info",
     "Unable to find Settings file", "Error copying settings file."},
    {kSystemMessagesBox, "app/Errors.dat", "share/Settings/Errors.dat", "Report Messages",
     "Unable to find report messages file", "Error copying report messages file."},
};

TEST_F(NetworkSetupTest, WhyAFileCouldNotBeCopiedStandsBehindTheButton) {
    for (const auto& c : kSingleCases) {
        SCOPED_TRACE(c.name);
        folder.write(c.source, "new");
        FailingFiles disk;
        disk.refuse("write", ENOSPC);
        fake.dialogs.expectBox(kShareTrialTitle, shareTrialText(whatShareRefuses(installation.paths())));
        expectError(c.failed);
        copyOnly(c.index);
        EXPECT_EQ(fake.dialogs.lastDetails(),
                  (folder / c.target).native() + " cannot be saved: No space left on device");
        EXPECT_TRUE(ticked(c.index));
        setup.setAll(false);
        setup.state.boxes[c.index].ticked = false;
    }
}

TEST_F(NetworkSetupTest, AnExistingTargetIsOverwrittenAfterYesAndItsBytesKept) {
    for (const auto& c : kSingleCases) {
        SCOPED_TRACE(c.name);
        folder.write(c.source, "new");
        folder.write(c.target, "old");
        expectOverwrite(c.name, BoxAnswer::Yes);
        copyOnly(c.index);
        EXPECT_EQ(folder.read(c.target), "new");
        EXPECT_EQ(folder.read(keptName(std::filesystem::path(c.target).filename())), "old");
        EXPECT_FALSE(ticked(c.index));
    }
}

TEST_F(NetworkSetupTest, NoClearsTheBoxAndCopiesNothing) {
    for (const auto& c : kSingleCases) {
        SCOPED_TRACE(c.name);
        folder.write(c.source, "new");
        folder.write(c.target, "old");
        expectOverwrite(c.name, BoxAnswer::No);
        copyOnly(c.index);
        EXPECT_EQ(folder.read(c.target), "old");
        EXPECT_FALSE(ticked(c.index));
    }
}

TEST_F(NetworkSetupTest, AMissingSourceLeavesTheBoxTicked) {
    for (const auto& c : kSingleCases) {
        if (c.index == kSettingsBox)
            continue;  // without it the structure is not whole, and the test of the repair tells that
        SCOPED_TRACE(c.name);
        expectError(c.missing);
        copyOnly(c.index);
        EXPECT_TRUE(ticked(c.index));
        setup.state.boxes[c.index].ticked = false;
    }
}

TEST_F(NetworkSetupTest, MissingSettingsAreToldBehindTheFailedRepair) {
    std::filesystem::remove(folder / "app/settings.dat");
    fake.dialogs.expectBox(
        "Error",
        "Unable to repair folder structure. Please check that network drives are mapped correcty, and "
        "that the shared drives are accessible.");
    expectError("Unable to find Settings file");
    copyOnly(kSettingsBox);
    EXPECT_TRUE(ticked(kSettingsBox));
}

TEST_F(NetworkSetupTest, AFailedCopyIsToldAndTheRunGoesOn) {
    std::filesystem::remove(folder / "share/Settings");
    folder.write("share/Settings", "a file in the way");
    for (const auto& c : kSingleCases) {
        folder.write(c.source, "new");
        setup.state.boxes[c.index].ticked = true;
        expectError(c.failed);
    }
    setup.copy();
    for (const auto& c : kSingleCases) EXPECT_TRUE(ticked(c.index)) << c.name;
}

TEST_F(NetworkSetupTest, TheLocalSkipListIsCopiedAfterYes) {
    folder.write("local/Settings/SkipList.dat", "new");
    folder.write("share/Settings/SkipList.dat", "old");
    expectOverwrite("Skiplist", BoxAnswer::No);
    copyOnly(kSkipListBox);
    EXPECT_EQ(folder.read("share/Settings/SkipList.dat"), "old");
    expectOverwrite("Skiplist", BoxAnswer::Yes);
    copyOnly(kSkipListBox);
    EXPECT_EQ(folder.read("share/Settings/SkipList.dat"), "new");
    EXPECT_FALSE(ticked(kSkipListBox));
}

TEST_F(NetworkSetupTest, AFailedSkipListCopyHasTheWordsOfTheSettings) {
    folder.write("local/Settings/SkipList.dat", "new");
    std::filesystem::remove(folder / "share/Settings");
    folder.write("share/Settings", "a file in the way");
    expectError("Error copying settings file.");
    copyOnly(kSkipListBox);
    EXPECT_THAT(fake.dialogs.lastDetails(), testing::EndsWith("SkipList.dat cannot be saved: Not a directory"));
    EXPECT_TRUE(ticked(kSkipListBox));
}

TEST_F(NetworkSetupTest, WithoutSkipListAndArchiveTheBoxEndsClearedAndDisabled) {
    expectError("Unable to find the skip list.");
    copyOnly(kSkipListBox);
    EXPECT_FALSE(ticked(kSkipListBox));
    EXPECT_FALSE(setup.state.boxes[kSkipListBox].enabled);
}

TEST_F(NetworkSetupTest, AnArchiveWithoutSkipListEndsTheBoxClearedAndDisabled) {
    writeZip(folder / "app/db.zip", {{"Database/jpg.dat", "1"}});
    expectError("Unable to find skiplist in default database zip file");
    copyOnly(kSkipListBox);
    EXPECT_FALSE(ticked(kSkipListBox));
    EXPECT_FALSE(setup.state.boxes[kSkipListBox].enabled);
}

TEST_F(NetworkSetupTest, TheSkipListComesFromTheArchiveWhenThereIsNoLocalOne) {
    writeZip(folder / "app/db.zip", {{"Database/jpg.dat", "1"}, {"Settings/SKIPLIST.dat", "from the archive"}});
    copyOnly(kSkipListBox);
    EXPECT_EQ(folder.read("share/Settings/SkipList.dat"), "from the archive");
    EXPECT_FALSE(exists("share/Settings/Settings"));
    EXPECT_FALSE(exists("share/Database/jpg.dat"));
    EXPECT_FALSE(ticked(kSkipListBox));
    EXPECT_TRUE(setup.state.boxes[kSkipListBox].enabled);
    const auto notes = readHistory(folder / "share/Settings", 10);
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_EQ(notes.front().screen, "Set up Network");
    EXPECT_THAT(notes.front().files,
                ElementsAre(FileChange{"Settings/SkipList.dat", std::nullopt, "from the archive"}));
}

TEST_F(NetworkSetupTest, WhatCouldNotBeNotedIsToldOnceBehindTheCopies) {
    folder.write("share/Settings/History", "a file in the way");
    folder.write("local/Database/jpg.dat", "1");
    folder.write("local/Settings/CommonHeaders.dat", "3");
    setup.state.boxes[kMainDatabaseBox].ticked = true;
    fake.dialogs.expectBox("Database History",
                           "What was changed is saved, but not noted in the history of the database : " +
                               (folder / "share/Settings/History").native() + ": File exists",
                           BoxAnswer::Ok, BoxStyle::Warning);
    copyOnly(kCommonHeadersBox);
    EXPECT_EQ(folder.read("share/Database/jpg.dat"), "1");
    EXPECT_EQ(folder.read("share/Settings/CommonHeaders.dat"), "3");
}

TEST_F(NetworkSetupTest, AHostileArchiveIsAnErrorDecompressing) {
    writeZip(folder / "app/db.zip", {{"../skiplist.dat", "evil"}});
    expectError("Error decompressing default skiplist");
    copyOnly(kSkipListBox);
    EXPECT_NE(fake.dialogs.lastDetails(), "");
    EXPECT_TRUE(ticked(kSkipListBox));
    EXPECT_FALSE(exists("share/skiplist.dat"));
}

TEST_F(NetworkSetupTest, BadSectorMarkersGoWithTheOtherRulesWithoutAWord) {
    folder.write("app/Errors.dat", "1");
    folder.write("local/Settings/SkipList.dat", "2");
    folder.write("local/Settings/BadSectors.dat", "0,BAD,T,R,BAD\r\n");
    copyOnly(kSystemMessagesBox);
    EXPECT_FALSE(exists("share/Settings/BadSectors.dat"));
    copyOnly(kSkipListBox);
    EXPECT_EQ(folder.read("share/Settings/BadSectors.dat"), "0,BAD,T,R,BAD\r\n");
}

TEST_F(NetworkSetupTest, SharedBadSectorMarkersAreNeverOverwritten) {
    folder.write("local/Settings/CommonHeaders.dat", "3");
    folder.write("local/Settings/BadSectors.dat", "0,BAD,T,R,BAD\r\n");
    folder.write("share/Settings/BadSectors.dat", "0,THEIRS,T,R,theirs\r\n");
    copyOnly(kCommonHeadersBox);
    EXPECT_EQ(folder.read("share/Settings/BadSectors.dat"), "0,THEIRS,T,R,theirs\r\n");
}

TEST_F(NetworkSetupTest, TheDatabaseIsCopiedFileByFile) {
    folder.write("local/Database/jpg.dat", "1");
    folder.write("local/Database/png.dat", "2");
    std::vector<std::string> lines;
    // A step that takes its time turns the loop more than once.
    fake.loop.onTurn = [&](int) {
        const std::string& line = setup.state.progress;
        if (!line.empty() && (lines.empty() || lines.back() != line))
            lines.push_back(line);
    };
    copyOnly(kMainDatabaseBox);
    lines.erase(std::unique(lines.begin(), lines.end()), lines.end());  // a slow disk has more turns than files
    EXPECT_THAT(lines, ElementsAre("Copying file  1 of  2", "Copying file  2 of  2"));
    EXPECT_EQ(folder.read("share/Database/png.dat"), "2");
    EXPECT_EQ(modificationTime(folder / "share/Database/png.dat").value(),
              modificationTime(folder / "local/Database/png.dat").value());
    EXPECT_FALSE(ticked(kMainDatabaseBox));
}

TEST_F(NetworkSetupTest, AnEmptyLocalDatabaseLeavesTheSharedFolderAlone) {
    copyOnly(kMainDatabaseBox);
    EXPECT_TRUE(databaseFiles(folder / "share/Database").empty());
    EXPECT_FALSE(ticked(kMainDatabaseBox));
}

TEST_F(NetworkSetupTest, ASharedDatabaseIsOverwrittenOnlyAfterYes) {
    folder.write("local/Database/jpg.dat", "local");
    folder.write("share/Database/JPG.dat", "shared");
    expectOverwriteDatabase(BoxAnswer::No);
    copyOnly(kMainDatabaseBox);
    EXPECT_EQ(folder.read("share/Database/JPG.dat"), "shared");
    EXPECT_FALSE(ticked(kMainDatabaseBox));
    expectOverwriteDatabase(BoxAnswer::Yes);
    copyOnly(kMainDatabaseBox);
    EXPECT_THAT(databaseFiles(folder / "share/Database"), ElementsAre("JPG.dat"));
    EXPECT_EQ(folder.read("share/Database/JPG.dat"), "local");
    EXPECT_EQ(folder.read(keptName("JPG.dat")), "shared");
}

TEST_F(NetworkSetupTest, AFileThatCannotBeCopiedIsSkippedAndToldAtTheEnd) {
    folder.write("local/Database/a.dat", "1");
    folder.write("local/Database/b.dat", "2");
    std::filesystem::create_directory(folder / "share/Database/a.dat");
    std::vector<std::string> boxes;
    fake.dialogs.onProblem = [&boxes](const std::string& box) { boxes.push_back(box); };
    copyOnly(kMainDatabaseBox);
    EXPECT_EQ(folder.read("share/Database/b.dat"), "2");
    EXPECT_FALSE(ticked(kMainDatabaseBox));
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_THAT(boxes[0], testing::MatchesRegex("unexpected question: box \"Quillon\": [0-9]+ .*a.dat.*"));
}

}  // namespace
}  // namespace quillon::test
