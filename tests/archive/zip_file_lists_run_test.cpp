// SPDX-License-Identifier: MIT
// One press of "Zip".
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/list_mark.h"
#include "archive/zip_bytes.h"
#include "archive/zip_reader.h"
#include "archive/zip_screen.h"

namespace quillon::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

class ZipRunTest : public testing::Test, public ZipScreen {
protected:
    std::vector<std::string> archiveNames(const std::string& name = "zips/1234.zip") const {
        const auto names = listArchive(folder / name);
        EXPECT_TRUE(names.has_value());
        return names.value_or(std::vector<std::string>{});
    }
    void expectPasswordQuestion(BoxAnswer answer) {
        fake.dialogs.expectBox(
            "Quillon",
            "Are you sure you want to password protect the zip file. If you forget the password, you "
            "will not be able to open it.",
            answer, BoxStyle::Question, BoxButtons::YesNo);
    }
};

TEST_F(ZipRunTest, ListsOfAllPartitionsLandInOneArchiveAndAreGone) {
    open();
    expectComplete();
    lists.zip();
    EXPECT_THAT(archiveNames(), ElementsAre("1234-Partition 1.csv", "1234-Partition 2.csv"));
    EXPECT_FALSE(exists("local/1234-Partition 1.csv"));
    EXPECT_FALSE(exists("local/1234-Partition 2.csv"));
    EXPECT_FALSE(exists("local/Kept"));
    EXPECT_TRUE(lists.state.rows.empty());
    EXPECT_FALSE(lists.state.busyPointer);
    EXPECT_FALSE(lists.state.progressVisible);
    EXPECT_TRUE(alerts.sent.empty());
}

TEST_F(ZipRunTest, ACutListTakesItsMarkIntoTheArchive) {
    ASSERT_TRUE(markUnfinished(folder / "local/1234-Partition 1.csv"));
    open();
    expectComplete();
    lists.zip();
    EXPECT_THAT(archiveNames(),
                ElementsAre("1234-Partition 1.csv", "1234-Partition 1.csv.unfinished", "1234-Partition 2.csv"));
    EXPECT_FALSE(exists("local/1234-Partition 1.csv"));
    EXPECT_FALSE(exists("local/1234-Partition 1.csv.unfinished"));
}

TEST_F(ZipRunTest, EvidenceGoesUnderKeptWithItsListAndIntoNoArchive) {
    folder.write("local/1234-Partition 1.sqlite", "evidence");
    open();
    expectComplete();
    lists.zip();
    EXPECT_THAT(archiveNames(), ElementsAre("1234-Partition 1.csv", "1234-Partition 2.csv"));
    EXPECT_FALSE(exists("local/1234-Partition 1.sqlite"));
    EXPECT_EQ(folder.read("local/Kept/2026-11-15 10.20.30/1234-Partition 1.sqlite"), "evidence");
}

TEST_F(ZipRunTest, TheLogLineNamesTheFilesAndEndsWithoutAnOutcome) {
    open();
    expectComplete();
    lists.zip();
    EXPECT_EQ(logText(), "15/11/2026 10:20:30;Zip notification message Sent to :; Query; Files in zip : ;" +
                             path("local/1234-Partition 1.csv") + "," + path("local/1234-Partition 2.csv") +
                             ";Send message = ;\r\n");
}

TEST_F(ZipRunTest, AnEmptyGridIsToldAndNothingElseHappens) {
    job.jobId = "9999";
    open();
    fake.dialogs.expectBox("Error", "Nothing to zip, please select some files.", BoxAnswer::Ok, BoxStyle::Warning);
    lists.zip();
    EXPECT_FALSE(lists.state.busyPointer);
    EXPECT_FALSE(exists("local/Settings/Messaging logs"));
}

TEST_F(ZipRunTest, RetainedListsStay) {
    open();
    lists.state.retainLists = true;
    expectComplete();
    lists.zip();
    EXPECT_TRUE(exists("zips/1234.zip"));
    EXPECT_TRUE(exists("local/1234-Partition 1.csv"));
    lists.reload();
    EXPECT_EQ(lists.state.rows.size(), 2U);
}

TEST_F(ZipRunTest, AnEmptyJobIdGivesFileList) {
    job.jobId = "";
    open();
    EXPECT_EQ(lists.state.rows.size(), 2U);
    expectComplete();
    lists.zip();
    EXPECT_EQ(lists.state.jobId, "FileList");
    EXPECT_TRUE(exists("zips/FileList.zip"));
}

TEST_F(ZipRunTest, TheMaskCutsAtTheFirstSeparatorAndTheArchiveAtTheLast) {
    job.jobId = "1234-A-B";
    open();
    EXPECT_EQ(lists.state.rows.size(), 2U);
    expectComplete();
    lists.zip();
    EXPECT_TRUE(exists("zips/1234-A.zip"));
}

TEST_F(ZipRunTest, AMissingArchiveFolderGivesArchivesBelowTheLocalPath) {
    std::filesystem::remove(folder / "zips");
    open();
    expectComplete();
    lists.zip();
    EXPECT_TRUE(exists("local/Archives/1234.zip"));
}

TEST_F(ZipRunTest, AConfirmedPasswordEncrypts) {
    open();
    lists.setPassword("secret");
    expectPasswordQuestion(BoxAnswer::Yes);
    expectComplete();
    lists.zip();
    EXPECT_FALSE(extractArchive(folder / "zips/1234.zip", folder / "out").has_value());
    EXPECT_TRUE(exists("local/1234-Partition 1.csv"));
}

TEST_F(ZipRunTest, APasswordThatWasNotConfirmedIsNotUsedAndRetainStaysTicked) {
    open();
    lists.setPassword("secret");
    expectPasswordQuestion(BoxAnswer::No);
    expectComplete();
    lists.zip();
    EXPECT_TRUE(extractArchive(folder / "zips/1234.zip", folder / "out").has_value());
    EXPECT_EQ(lists.state.password, "secret");
    EXPECT_TRUE(lists.state.retainLists);
}

TEST_F(ZipRunTest, ListsBehindAPasswordGoWhenTheyAreNotRetained) {
    open();
    lists.setPassword("secret");
    lists.state.retainLists = false;
    expectPasswordQuestion(BoxAnswer::Yes);
    expectComplete();
    lists.zip();
    EXPECT_FALSE(exists("local/1234-Partition 1.csv"));
    EXPECT_FALSE(exists("local/Kept"));
}

TEST_F(ZipRunTest, NoToOverwriteChangesNothing) {
    folder.write("zips/1234.zip", "old archive");
    open();
    expectOverwriteQuestion(BoxAnswer::No);
    lists.zip();
    EXPECT_EQ(folder.read("zips/1234.zip"), "old archive");
    EXPECT_EQ(lists.state.rows.size(), 2U);
    EXPECT_FALSE(lists.state.busyPointer);
    EXPECT_FALSE(exists("local/Settings/Messaging logs"));
}

TEST_F(ZipRunTest, AnOverwrittenArchiveStandsUnderKept) {
    folder.write("zips/1234.zip", "old archive");
    open();
    expectOverwriteQuestion(BoxAnswer::Yes);
    expectComplete();
    lists.zip();
    EXPECT_EQ(archiveNames().size(), 2U);
    EXPECT_EQ(folder.read(kept("1234.zip")), "old archive");
}

TEST_F(ZipRunTest, AnArchiveInTheGridIsRemovedWithTheConflictBox) {
    writeZip(folder / "zips/1234.zip", {{"old.csv", "1"}});
    open();
    lists.state.rows.push_back(folder / "zips/1234.ZIP");
    expectOverwriteQuestion(BoxAnswer::Yes);
    fake.dialogs.expectBox("File Confict", "Potential file conflict removed (" + path("zips/1234.ZIP") + ")",
                           BoxAnswer::Ok, BoxStyle::Plain);
    expectComplete();
    lists.zip();
    EXPECT_THAT(archiveNames(), ElementsAre("1234-Partition 1.csv", "1234-Partition 2.csv"));
    EXPECT_THAT(logText(), HasSubstr("; Files in zip : ;" + path("local/1234-Partition 1.csv") + "," +
                                     path("local/1234-Partition 2.csv") + "," + path("zips/1234.ZIP") + ";Send"));
}

TEST_F(ZipRunTest, AConflictAheadOfTheLastRowEndsTheRun) {
    open();
    lists.state.rows.insert(lists.state.rows.begin(), folder / "zips/1234.zip");
    lists.zip();
    EXPECT_FALSE(exists("zips/1234.zip"));
    EXPECT_EQ(lists.state.rows.size(), 2U);
    EXPECT_FALSE(lists.state.busyPointer);
    expectComplete();
    lists.zip();
    EXPECT_TRUE(exists("zips/1234.zip"));
}

TEST_F(ZipRunTest, FilesFromElsewhereSurvive) {
    folder.write("notes.txt", "by hand");
    open();
    lists.state.rows.push_back(folder / "notes.txt");
    expectComplete();
    lists.zip();
    EXPECT_EQ(archiveNames().size(), 3U);
    EXPECT_TRUE(exists("notes.txt"));
    EXPECT_FALSE(exists("local/1234-Partition 1.csv"));
}

TEST_F(ZipRunTest, AMissingFileIsAnInvalidNameAndTheRunGoesOn) {
    open();
    std::filesystem::remove(folder / "local/1234-Partition 2.csv");
    folder.write("local/1234-Partition 3.csv", "rows of partition 3");
    lists.state.rows.push_back(folder / "local/1234-Partition 3.csv");
    fake.dialogs.expectBox("Error", "An error occured : Invalid file name", BoxAnswer::Ok, BoxStyle::Information);
    expectComplete();
    lists.zip();
    EXPECT_THAT(archiveNames(), ElementsAre("1234-Partition 1.csv"));
    EXPECT_FALSE(exists("local/1234-Partition 1.csv"));
    EXPECT_FALSE(exists("local/1234-Partition 3.csv"));
    EXPECT_EQ(folder.read(kept("1234-Partition 3.csv")), "rows of partition 3");
    EXPECT_FALSE(exists(kept("1234-Partition 1.csv")));
}

TEST_F(ZipRunTest, AfterAnErrorASecondZipStopsAfterItsFirstFile) {
    open();
    lists.state.retainLists = true;
    lists.state.rows.insert(lists.state.rows.begin(), folder / "local/missing.csv");
    fake.dialogs.expectBox("Error", "An error occured : Invalid file name");
    expectComplete();
    lists.zip();
    EXPECT_FALSE(exists("zips/1234.zip"));
    lists.reload();
    expectComplete();
    lists.zip();
    EXPECT_THAT(archiveNames(), ElementsAre("1234-Partition 1.csv"));
}

TEST_F(ZipRunTest, AJobIdThatLeadsOutOfTheFolderIsAnInvalidName) {
    open();
    lists.state.jobId = "../evil-1";
    fake.dialogs.expectBox("Error", "An error occured : Invalid file name", BoxAnswer::Ok, BoxStyle::Information);
    expectComplete();
    lists.zip();
    EXPECT_FALSE(exists("evil.zip"));
    EXPECT_EQ(folder.read(kept("1234-Partition 1.csv")), "rows of partition 1");
}

TEST_F(ZipRunTest, AListThatChangedSinceItWasPackedStandsUnderKept) {
    open();
    screen.onShow = [this] {
        if (lists.state.progressVisible && lists.state.progress >= 100)
            folder.write("local/1234-Partition 2.csv", "rows that came later");
    };
    expectComplete();
    lists.zip();
    EXPECT_FALSE(exists("local/1234-Partition 2.csv"));
    EXPECT_EQ(folder.read(kept("1234-Partition 2.csv")), "rows that came later");
    EXPECT_FALSE(exists(kept("1234-Partition 1.csv")));
}

TEST_F(ZipRunTest, AListThatCannotBeKeptStaysAndTheRunEndsWithoutAWord) {
    folder.write("local/Kept", "a file in the way of the folder");
    open();
    lists.state.rows.insert(lists.state.rows.begin(), folder / "local/missing.csv");
    fake.dialogs.expectBox("Error", "An error occured : Invalid file name");
    lists.zip();
    EXPECT_TRUE(exists("local/1234-Partition 1.csv"));
    EXPECT_FALSE(lists.state.busyPointer);
}

TEST_F(ZipRunTest, AnArchiveThatCannotBeWrittenIsToldAndNoListIsLost) {
    open();
    installation.useZipPath(folder.write("file", "no folder"));
    std::vector<std::string> boxes;  // the words of the system are not fixed
    fake.dialogs.onProblem = [&boxes](const std::string& box) { boxes.push_back(box); };
    lists.zip();
    EXPECT_THAT(boxes, ElementsAre(HasSubstr("box \"Error\": An error occured : "),
                                   HasSubstr("box \"Process complete\": Zip Processing complete")));
    EXPECT_EQ(folder.read(kept("1234-Partition 1.csv")), "rows of partition 1");
    EXPECT_EQ(folder.read(kept("1234-Partition 2.csv")), "rows of partition 2");
}

TEST_F(ZipRunTest, TheBarIsSeenOnlyWhileTheArchiveIsWritten) {
    open();
    std::vector<double> seen;
    screen.onShow = [&] {
        if (lists.state.progressVisible)
            seen.push_back(lists.state.progress);
    };
    expectComplete();
    lists.zip();
    ASSERT_GE(seen.size(), 2U);
    EXPECT_DOUBLE_EQ(seen.front(), 0.0);
    EXPECT_DOUBLE_EQ(seen.back(), 100.0);
    EXPECT_GT(fake.loop.turns, 0);
}

TEST_F(ZipRunTest, ASecondZipMayRunWithinTheFirst) {
    open();
    expectComplete();
    // The inner run has taken the lists away while the outer one was about to read them.
    fake.dialogs.expectBox("Error", "An error occured : Invalid file name");
    expectComplete();
    bool pressed = false;
    fake.loop.onTurn = [&](int) {
        if (!pressed && lists.state.notice.empty()) {  // not yet while the folder is waited for
            pressed = true;
            lists.zip();
        }
    };
    lists.zip();
    EXPECT_EQ(archiveNames().size(), 2U);
    EXPECT_FALSE(exists("local/1234-Partition 1.csv"));
}

}  // namespace
}  // namespace quillon::test
