// SPDX-License-Identifier: MIT
#include "job/testing_pass.h"

#include "job/job_fixture.h"
#include "job/scripted_alerts.h"

namespace quillon::test {

namespace {

using Rows = std::vector<std::u16string>;

// Gives each extension a scripted answer and keeps what it was asked.
class ScriptedChecker final : public RowChecker {
public:
    Result<FileVerdict> check(const ListRow& row) override {
        asked.push_back(row.extension());
        if (failures > 0 && row.extension() == u"bad") {
            --failures;
            return failure(error);
        }
        text = u"grade of " + row.extension();
        FileVerdict verdict;
        verdict.text = text;
        return verdict;
    }

    std::vector<std::u16string> asked;
    FileError error{ErrorKind::PermissionDenied, "Permission denied"};
    int failures = 1000;
    std::u16string text;
};

class TestingPassTest : public JobFixture {
protected:
    Rows run(const Rows& lines) {
        writeRawList(lines);
        TestingPass(job.passContext(), job.lists(), job.grader(), &alerts, &checker).run();
        return exists("local/1234.csv") ? finalRows() : Rows{u"<no list>"};
    }

    ScriptedChecker checker;
    ScriptedAlerts alerts;
};

TEST_F(TestingPassTest, ARowIsTheRawLineAndTheResult) {
    EXPECT_EQ(run({u"/s/a>b.txt,15/11/2026, 1234, 32;Ab9x"}),
              Rows{u"/s/a>b.txt,15/11/2026, 1234, 32;Ab9x,grade of txt"});
    EXPECT_EQ(state.counters.rowsRead, 1);
}

TEST_F(TestingPassTest, ATestedFileOfTheJobsOwnHeaderTestIsGraded) {
    termFile("txt", "1,XX,T\r\n");
    const auto path = sourceFile("a,b.TXT", "XX" + std::string(600, '.'));
    std::u16string row;
    for (const char c : path) row.push_back(c == ',' ? u'>' : static_cast<char16_t>(c));
    row += u",15/11/2026, 602, 32;Ab9x";
    writeRawList({row});
    TestingPass(job.passContext(), job.lists(), job.grader(), nullptr).run();
    EXPECT_EQ(finalRows(), Rows{row + u",Header OK"});
    EXPECT_EQ(state.counters[Grade::Good], 1);
    EXPECT_EQ(state.counters.tested, 1);
    EXPECT_EQ(state.texts.quality, "100.00%");
}

TEST_F(TestingPassTest, TheExtensionIsWhatFollowsTheLastDotOfTheNameInItsOwnCase) {
    run({u"/s/a.tar.gz,,,", u"/x.y/z,,,", u"/s/A.TxT,,,", u"/s/.bashrc,,,", u"/s/dot.,,,", u"C:\\x.y\\b.doc,,,",
         u"C:\\x.y\\z,,,", u"/s/n.a>b,,,"});
    EXPECT_EQ(checker.asked, (Rows{u"gz", u"TxT", u"bashrc", u"doc", u"a,b"}));
    EXPECT_EQ(state.counters[Grade::NoExtension], 3);
    EXPECT_EQ(finalRows()[1], u"/x.y/z,,,,No Extension");
}

TEST_F(TestingPassTest, ABlankLineTakesTheResultOfTheRowBefore) {
    EXPECT_EQ(run({u"", u"/s/a.txt,,,", u"", u"nocomma"}),
              (Rows{u",", u"/s/a.txt,,,,grade of txt", u",grade of txt", u"nocomma,grade of txt"}));
    EXPECT_EQ(state.counters.rowsRead, 4) << "raised before anything else, also for a blank one";
}

TEST_F(TestingPassTest, AnEmptyRawListMakesAnEmptyFinalList) {
    state.texts.quality = "as it was";
    EXPECT_EQ(run({}), Rows{});
    EXPECT_EQ(std::filesystem::file_size(folder / "local/1234.csv"), 0U);
    EXPECT_EQ(state.texts.quality, "as it was");
}

TEST_F(TestingPassTest, TheLoopTurnsOncePerRowBehindItsWrite) {
    std::vector<std::size_t> written;
    fake.loop.onTurn = [&](int) { written.push_back(finalRows().size()); };
    run({u"/s/a.txt,,,", u"/s/b.txt,,,"});
    EXPECT_EQ(written, (std::vector<std::size_t>{1, 2}));
}

TEST_F(TestingPassTest, ProgressIsShownOnlyWhenItIsWanted) {
    run({u"/s/a>b.txt,,,"});
    EXPECT_EQ(state.texts.currentFile, "");
    state.options.showProgress = true;
    run({u"/s/a>b.txt,,,", u""});
    EXPECT_EQ(state.texts.currentFile, "/s/a,b.txt");
    EXPECT_EQ(state.progress.value, 3) << "a blank line is a row too";
}

TEST_F(TestingPassTest, ARowWhoseTestIsRefusedIsMissingFromTheList) {
    for (const ErrorKind kind : {ErrorKind::PermissionDenied, ErrorKind::BadName}) {
        state.counters = {};
        checker.error.kind = kind;
        EXPECT_EQ(run({u"/s/a.txt,,,", u"/s/b.bad,,,", u"/s/c.txt,,,"}),
                  (Rows{u"/s/a.txt,,,,grade of txt", u"/s/c.txt,,,,grade of txt"}));
        EXPECT_EQ(state.counters[Grade::AccessError], 1);
        EXPECT_EQ(state.counters.rowsRead, 3);
    }
    EXPECT_TRUE(alerts.sent.empty());
}

TEST_F(TestingPassTest, ABlankLineBehindARefusedRowTakesTheAccessError) {
    EXPECT_EQ(run({u"/s/b.bad,,,", u""}), Rows{u",Access error"});
}

TEST_F(TestingPassTest, AnyOtherErrorShowsABoxSendsAnAlertAndRunsTheStepAgain) {
    checker.error = {ErrorKind::Subscript, "Subscript out of range"};
    checker.failures = 1;
    state.options.recipient = "LAB9";
    fake.dialogs.expectBox("Error", "Subscript out of range : occurred processing file :");
    EXPECT_EQ(run({u"/s/b.bad,,,", u"/s/a.txt,,,"}), (Rows{u"/s/b.bad,,,,grade of bad", u"/s/a.txt,,,,grade of txt"}));
    EXPECT_EQ(alerts.sent, std::vector<std::string>{"LAB9|1|Process error|1"});
    EXPECT_EQ(alerts.bodies, std::vector<std::string>{
                                 "The error message (Subscript out of range) occurred during processing a file "});
}

TEST_F(TestingPassTest, FurtherErrorsPassWithoutAWordAndKeepTheLastResult) {
    checker.error = {ErrorKind::Subscript, "Subscript out of range"};
    fake.dialogs.expectBox("Error", "Subscript out of range : occurred processing file :");
    EXPECT_EQ(run({u"/s/a.txt,,,", u"/s/b.bad,,,", u"/s/c.bad,,,"}),
              (Rows{u"/s/a.txt,,,,grade of txt", u"/s/b.bad,,,,grade of txt", u"/s/c.bad,,,,grade of txt"}));
    EXPECT_EQ(alerts.sent.size(), 1U);
    EXPECT_EQ(state.counters[Grade::AccessError], 0);
}

TEST_F(TestingPassTest, ARowWithTooFewColumnsIsSuchAnError) {
    fake.dialogs.expectBox("Error", "Subscript out of range : occurred processing file :");
    writeRawList({u"/s/a.txt,15/11/2026", u"/s/b.zzz,15/11/2026, 600, 32;Ab9x"});
    TestingPass(job.passContext(), job.lists(), job.grader(), nullptr).run();
    EXPECT_EQ(finalRows(),
              (Rows{u"/s/a.txt,15/11/2026,", u"/s/b.zzz,15/11/2026, 600, 32;Ab9x,Unknown or ambiguous file type"}));
}

TEST_F(TestingPassTest, AFinalListThatCannotBeMadeIsTold) {
    std::filesystem::remove_all(folder / "local");
    fake.dialogs.expectBox(
        "Quillon", "Unable to create output file. Please check access rights on folder " + (folder / "local").native());
    EXPECT_EQ(run({u"/s/a.txt,,,"}), Rows{u"<no list>"});
    EXPECT_EQ(state.counters.rowsRead, 0);
}

TEST_F(TestingPassTest, AMissingRawListIsToldAndLeavesAnEmptyFinalList) {
    fake.dialogs.expectBox("Error!",
                           "Unable to find the raw file list. Please run the file list before testing file quality!",
                           BoxAnswer::Ok, BoxStyle::Critical, BoxButtons::Ok);
    state.counters.files = 3;
    TestingPass(job.passContext(), job.lists(), job.grader(), nullptr).run();
    EXPECT_EQ(finalRows(), Rows{});
    EXPECT_EQ(state.counters.lostRows, 3) << "no list of no rows may pass for complete";
}

TEST_F(TestingPassTest, ARawListThatCannotBeReadIsALoss) {
    std::filesystem::create_directory(folder / "app/tFile.csv");
    fake.dialogs.onProblem = [](const std::string&) {};
    TestingPass(job.passContext(), job.lists(), job.grader(), nullptr).run();
    EXPECT_GT(state.counters.lostRows, 0);
}

TEST_F(TestingPassTest, AStopTakesEffectBehindTheLastRowAndNoKeepsACompleteList) {
    fake.loop.onTurn = [this](int turn) { state.stopRequested = state.stopRequested || turn == 1; };
    fake.dialogs.expectBox("Delete partial file list?",
                           "Process stopped, do you want to delete the current file list ?", BoxAnswer::No,
                           std::nullopt, BoxButtons::YesNo);
    EXPECT_EQ(run({u"/s/a.txt,,,", u"/s/b.txt,,,"}).size(), 2U);
    EXPECT_FALSE(state.stopRequested) << "the pass clears the flag";
}

TEST_F(TestingPassTest, YesToTheQuestionDeletesTheList) {
    fake.loop.onTurn = [this](int turn) { state.stopRequested = turn == 2; };
    fake.dialogs.expectBox("Delete partial file list?",
                           "Process stopped, do you want to delete the current file list ?", BoxAnswer::Yes);
    EXPECT_EQ(run({u"/s/a.txt,,,", u"/s/b.txt,,,"}), Rows{u"<no list>"});
    EXPECT_FALSE(state.stopRequested);
}

TEST_F(TestingPassTest, TheBytesOfAReplacedListAreKept) {
    folder.write("local/1234.csv", "the old list");
    run({u"/s/a.txt,,,"});
    EXPECT_EQ(folder.read("local/Kept/2026-11-15 10.20.30/1234.csv"), "the old list");
}

TEST_F(TestingPassTest, WhenTheNewListCannotBeMadeTheOldOneStays) {
    folder.write("local/1234.csv", "the old list");
    folder.write("local/Kept", "a file where the folder should be");
    fake.dialogs.expectBox(
        "Quillon", "Unable to create output file. Please check access rights on folder " + (folder / "local").native());
    writeRawList({u"/s/a.txt,,,"});
    TestingPass pass(job.passContext(), job.lists(), job.grader(), nullptr);
    pass.run();
    EXPECT_FALSE(pass.madeList());
    EXPECT_EQ(folder.read("local/1234.csv"), "the old list");
}

TEST_F(TestingPassTest, EightBitAndMarkedRawListsAreReadToo) {
    folder.write("app/tFile.csv", "C:\\a\\b.txt,15/11/2026, 5, 32;Ab9x\r\n");
    TestingPass(job.passContext(), job.lists(), job.grader(), nullptr, &checker).run();
    EXPECT_EQ(finalRows(), Rows{u"C:\\a\\b.txt,15/11/2026, 5, 32;Ab9x,grade of txt"});
    folder.write("app/tFile.csv", "\xFF\xFE" + utf16Bytes(u"/b.txt,,,\r\n"));
    TestingPass(job.passContext(), job.lists(), job.grader(), nullptr, &checker).run();
    EXPECT_EQ(finalRows(), Rows{u"/b.txt,,,,grade of txt"});
}

}  // namespace

}  // namespace quillon::test
