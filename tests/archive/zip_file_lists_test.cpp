// SPDX-License-Identifier: MIT
// The screen's grid, boxes and buttons ahead of a run.
#include "archive/zip_file_lists.h"

#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "archive/zip_screen.h"
#include "support/hanging_share.h"
#include "support/scripted_network.h"
#include "support/scripted_socket.h"

namespace quillon::test {
namespace {

using testing::ElementsAre;

class ZipFileListsTest : public testing::Test, public ZipScreen {};

TEST_F(ZipFileListsTest, LoadFillsTheGridWithTheListsOfTheJob) {
    lists.state.showCompany = true;
    open();
    EXPECT_THAT(lists.state.rows,
                ElementsAre(folder / "local/1234-Partition 1.csv", folder / "local/1234-Partition 2.csv"));
    EXPECT_FALSE(lists.state.showCompany);
    EXPECT_FALSE(lists.state.retainLists);
    EXPECT_FALSE(lists.state.progressVisible);
}

TEST_F(ZipFileListsTest, AStoredRecipientIsAddedAndChosen) {
    installation.settings.zipRecipient.assign(PageText{"DESK2"});
    open();
    EXPECT_THAT(lists.state.recipients.items, ElementsAre("Query", "DESK2"));
    EXPECT_EQ(lists.state.recipients.index, 1);
    EXPECT_EQ(lists.state.recipients.text(), "DESK2");
    EXPECT_TRUE(lists.state.recipients.testEnabled);
}

TEST_F(ZipFileListsTest, QueryAsStoredRecipientStandsOnTheFirstItem) {
    open();
    EXPECT_THAT(lists.state.recipients.items, ElementsAre("Query"));
    EXPECT_EQ(lists.state.recipients.index, 0);
    EXPECT_FALSE(lists.state.recipients.testEnabled);
}

TEST_F(ZipFileListsTest, AnEmptyRecipientStandsOnASecondItem) {
    installation.settings.zipRecipient.assign(PageText{""});
    open();
    EXPECT_THAT(lists.state.recipients.items, ElementsAre("Query", ""));
    EXPECT_EQ(lists.state.recipients.index, 1);
    EXPECT_TRUE(lists.state.recipients.testEnabled);
    installation.settings.zipRecipient.assign(PageText{"LAB7"});
    lists.reload();
    EXPECT_EQ(lists.state.recipients.text(), "LAB7");
}

TEST_F(ZipFileListsTest, ReloadBringsTheListsBack) {
    open();
    lists.state.rows.clear();
    lists.reload();
    EXPECT_EQ(lists.state.rows.size(), 2U);
}

TEST_F(ZipFileListsTest, IgnoreSeparatorLoadsAFilledGridAnew) {
    folder.write("local/12345.csv", "");
    open();
    lists.setIgnoreSeparator(true);
    EXPECT_EQ(lists.state.rows.size(), 3U);
    lists.state.rows.clear();
    lists.setIgnoreSeparator(false);
    EXPECT_TRUE(lists.state.rows.empty());
    EXPECT_FALSE(lists.state.ignoreSeparator);
}

TEST_F(ZipFileListsTest, APasswordTicksRetainAndNoTextLeavesIt) {
    open();
    lists.setPassword("x");
    EXPECT_TRUE(lists.state.retainLists);
    lists.setPassword("");
    EXPECT_TRUE(lists.state.retainLists);
}

TEST_F(ZipFileListsTest, FilesAreAddedOnceWithoutRegardToCase) {
    open();
    fake.dialogs.expectFiles("Add files to zip", {folder / "notes.txt", folder / "local/1234-PARTITION 2.CSV"});
    lists.addFiles();
    EXPECT_EQ(lists.state.rows.size(), 3U);
    EXPECT_EQ(lists.state.rows.back(), folder / "notes.txt");
    EXPECT_EQ(lists.state.selectedRow, 1U);
    EXPECT_EQ(screen.beeps, 1);
    EXPECT_EQ(fake.dialogs.lastPick().startFolder, folder / "local");
    EXPECT_TRUE(fake.dialogs.lastPick().multiple);
}

TEST_F(ZipFileListsTest, ACancelledPickChangesNothing) {
    open();
    fake.dialogs.expectFiles("Add files to zip", {});
    lists.addFiles();
    EXPECT_EQ(lists.state.rows.size(), 2U);
}

TEST_F(ZipFileListsTest, ADoubleClickRemovesARowAfterYes) {
    open();
    const std::string text = "Remove file " + path("local/1234-Partition 1.csv") + "? ";
    fake.dialogs.expectBox("Remove file", text, BoxAnswer::No, BoxStyle::Question, BoxButtons::YesNo);
    lists.removeRow(0);
    EXPECT_EQ(lists.state.rows.size(), 2U);
    fake.dialogs.expectBox("Remove file", text, BoxAnswer::Yes);
    lists.removeRow(0);
    EXPECT_THAT(lists.state.rows, ElementsAre(folder / "local/1234-Partition 2.csv"));
    lists.removeRow(7);
    EXPECT_TRUE(exists("local/1234-Partition 1.csv"));
}

TEST_F(ZipFileListsTest, AnotherDestinationLastsForThisRunOfTheProgram) {
    fake.dialogs.expectFolder("Change zip path", folder / "other/deep");
    fake.dialogs.expectBox("Change archive location", "Do you want to make these changes permanent ?", BoxAnswer::No,
                           BoxStyle::Question, BoxButtons::YesNo);
    lists.changeDestination();
    EXPECT_EQ(fake.dialogs.lastStart(), folder / "zips");
    EXPECT_EQ(installation.paths().zipPath, folder / "other/deep");
    EXPECT_TRUE(exists("other/deep"));
    EXPECT_EQ(installation.settings.zipPath.trimmed().bytes, path("zips"));
    EXPECT_FALSE(exists("app/settings.dat"));
}

TEST_F(ZipFileListsTest, APermanentDestinationIsSaved) {
    fake.dialogs.expectFolder("Change zip path", folder / "other");
    fake.dialogs.expectBox("Change archive location", "Do you want to make these changes permanent ?", BoxAnswer::Yes);
    lists.changeDestination();
    Installation loaded(folder / "app");
    ASSERT_TRUE(loaded.loadSettingsRecord().has_value());
    EXPECT_EQ(loaded.paths().zipPath, folder / "other");
}

TEST_F(ZipFileListsTest, AnEmptyChoiceGivesArchivesBelowTheLocalPath) {
    fake.dialogs.expectFolder("Change zip path", std::nullopt);
    fake.dialogs.expectBox("Change archive location", "Do you want to make these changes permanent ?", BoxAnswer::No);
    lists.changeDestination();
    EXPECT_EQ(installation.paths().zipPath, folder / "local/Archives");
    EXPECT_TRUE(exists("local/Archives"));
}

// A share whose server has gone: the screen tells it, and a run that waits for it can be cancelled.
TEST_F(ZipFileListsTest, AnArchiveFolderThatHangsHoldsNeitherTheScreenNorARun) {
    const auto share = HangingShare::mount(folder / "zips");
    if (share == nullptr)
        GTEST_SKIP() << "no file system can be mounted here";
    open();
    EXPECT_EQ(lists.noticeLine(), "The archive folder " + path("zips") + " does not answer");
    EXPECT_TRUE(lists.waitsForFolder());
    fake.loop.onTurn = [&](int) {
        EXPECT_EQ(lists.noticeLine(), "Waiting for the archive folder " + path("zips") + " ...");
        EXPECT_TRUE(lists.state.cancelEnabled);
        lists.cancel();
    };
    lists.zip();
    EXPECT_GT(fake.loop.turns, 0);
    EXPECT_EQ(lists.noticeLine(), "Cancelled: archive and lists are as they were");
    EXPECT_FALSE(lists.state.cancelEnabled);
    EXPECT_EQ(lists.state.rows.size(), 2U);
    fake.loop.onTurn = {};

    fake.dialogs.expectFolder("Change zip path", folder / "other");
    fake.dialogs.expectBox("Change archive location", "Do you want to make these changes permanent ?", BoxAnswer::No);
    lists.changeDestination();
    EXPECT_EQ(fake.dialogs.lastStart(), folder / "local") << "the box that chooses must not look into it";
    fake.dialogs.expectBox("Process complete", "Zip Processing complete", BoxAnswer::Ok, BoxStyle::Warning);
    lists.zip();
    EXPECT_TRUE(exists("other/1234.zip"));
}

TEST_F(ZipFileListsTest, AnArchiveFolderThatAnswersLateIsToldByItsAnswer) {
    const auto share = HangingShare::mount(folder / "zips");
    if (share == nullptr)
        GTEST_SKIP() << "no file system can be mounted here";
    open();
    EXPECT_EQ(lists.noticeLine(), "The archive folder " + path("zips") + " does not answer");
    share->goAway();
    while (lists.waitsForFolder()) std::this_thread::yield();
    EXPECT_EQ(lists.noticeLine(), "Archive: " + path("local/Archives/1234.zip")) << "it cannot be used";
}

TEST_F(ZipFileListsTest, AQueryFillsTheRecipients) {
    open();
    lists.queryNetwork(std::make_shared<ScriptedNetwork>(std::vector<std::string>{"DESK2", "DESK3"}));
    EXPECT_THAT(lists.state.recipients.items, ElementsAre("Please Select", "DESK2", "DESK3"));
    EXPECT_EQ(lists.state.recipients.index, 0);
    EXPECT_TRUE(lists.state.recipients.enabled);
    EXPECT_FALSE(lists.state.busyPointer);
}

TEST_F(ZipFileListsTest, AQueryWithoutAnAnswerDisablesTheBox) {
    open();
    lists.queryNetwork(std::make_shared<ScriptedNetwork>(std::vector<std::string>{}));
    EXPECT_THAT(lists.state.recipients.items, ElementsAre("No Computers Found"));
    EXPECT_FALSE(lists.state.recipients.enabled);
}

TEST_F(ZipFileListsTest, AChoiceAfterAQueryLeavesTestAsItWas) {
    open();
    lists.queryNetwork(std::make_shared<ScriptedNetwork>(std::vector<std::string>{"DESK2", "DESK3"}));
    lists.state.recipients.index = 1;
    EXPECT_FALSE(lists.state.recipients.testEnabled);
}

TEST_F(ZipFileListsTest, TestTellsAComputerOfTheSameNameAndTheCauseOfSilence) {
    std::vector<std::string> journal;
    ScriptedSocket server("wServer", journal);
    ScriptedSocket client("wClient", journal);
    AlertExchange exchange(AlertScreen::Zip, server, client, installation, fake.surroundings,
                           [this] { return lists.state.jobId; });
    open();
    lists.state.recipients.items = {"Query", "LAB7"};
    lists.state.recipients.index = 1;
    fake.dialogs.expectBox("UDP Conflict", "Unable to send messages to computer with same name.", BoxAnswer::Ok,
                           BoxStyle::Plain);
    lists.testRecipient(exchange);
    EXPECT_TRUE(server.sent.empty());
    EXPECT_TRUE(warnings.empty());
    lists.state.recipients.items = {"Query", "DESK2"};
    fake.loop.onTurn = [this](int) { fake.clock.tick += 5001; };
    server.sendFailure = FileError{ErrorKind::NotFound, "DESK2: Name or service not known"};
    fake.dialogs.expectBox(
        "Communication error",
        "Unable to connect to computer DESK2\r\nThe problem is one of the following\r\n\r\n1 The computer is turned "
        "off.\r\n2 The ZOV Messaging software is not installed on the remote computer.\r\n3 The Remote "
        "computer is listening on the wrong port.\r\n4 The Remote computer's firewall is blocking "
        "communication.\r\n5 This computer's firewall is not allowing messages to be sent.\r\n",
        BoxAnswer::Ok, BoxStyle::Warning);
    lists.testRecipient(exchange);
    EXPECT_THAT(warnings, ElementsAre("No answer from DESK2 : this computer does not know the name: DESK2: Name or "
                                      "service not known"));
}

}  // namespace
}  // namespace quillon::test
