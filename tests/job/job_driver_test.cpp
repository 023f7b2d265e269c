// SPDX-License-Identifier: MIT
#include "job/job_driver.h"

#include "job/driver_fixture.h"
#include "job/scripted_alerts.h"
#include "job/statistics.h"
#include "platform/folder_lock.h"
#include "text/fields.h"

namespace quillon::test {

namespace {

namespace fs = std::filesystem;
const char* const kEmptyTime = "00:00:00";

TEST_F(DriverTest, ATestedJobGoesThroughItsStepsInOrder) {
    sourceFile("a/file", "x");
    EXPECT_EQ(run(), JobEnd::Complete);
    const std::string none = kEmptyTime;
    EXPECT_EQ(trace,
              (Trace{
                  "toolbar R--ZFMT ",
                  "Starting Folder tests |R--ZFMT ",
                  "Folder tests completed in (HH:MM:SS) : " + none + "|R--ZFMT Checking folders and access rights",
                  "Start file count |-S----T Running primary list",
                  "File count completed in (HH:MM:SS) : " + none + "|-S----T Running primary list",
                  "Start file quality testing |-S----T Running primary list",
                  "File testing completed in (HH:MM:SS) : " + none + "|-S----T Testing files",
                  "toolbar R-VZFM- Testing files",
              }));
    EXPECT_EQ(finalRows().size(), 1U);
    EXPECT_EQ(state.counters.folders, 1);
    EXPECT_EQ(sizeLabel(state), "1 Bytes");
}

TEST_F(DriverTest, AJobWithoutTestingCopiesTheRawListAndDoesNotEnableView) {
    sourceFile("file", "x");
    state.options.checkFileQuality = false;
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(folder.read("local/1234.csv"), folder.read("app/tFile.csv"));
    EXPECT_EQ(splitFields(std::u16string_view(finalRows().at(0))).size(), 4U);
    EXPECT_EQ(state.texts.quality, "0");
    const std::string none = kEmptyTime;
    EXPECT_EQ(trace,
              (Trace{
                  "toolbar R--ZFMT ",
                  "Starting Folder tests |R--ZFMT ",
                  "Folder tests completed in (HH:MM:SS) : " + none + "|R--ZFMT Checking folders and access rights",
                  "Start file count |-S----T Running primary list",
                  "File count completed in (HH:MM:SS) : " + none + "|-S----T Running primary list",
                  "File list process complete|-S----T Running primary list",
                  "toolbar R--ZFM- Running primary list",
              }));
}

TEST_F(DriverTest, ACopyComesBehindTheListAndShowsItsOwnLine) {
    const auto a = sourceFile("file", "x");
    state.options.copy = true;
    state.options.target = folder / "target";
    bool shown = false;
    fake.loop.onTurn = [&](int) {
        if (state.texts.status == "Copying data ...")
            shown = !boardOf(state).throughput && state.progress.shown && state.fileLineShown;
    };
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_TRUE(shown);
    EXPECT_TRUE(boardOf(state).throughput);
    EXPECT_FALSE(state.progress.shown);
    EXPECT_FALSE(state.fileLineShown);
    EXPECT_EQ(folder.read("target" + a), "x");
    ASSERT_GE(trace.size(), 3U);
    EXPECT_EQ(trace[trace.size() - 3], "Started copying Files|-S----T Testing files");
    EXPECT_EQ(trace[trace.size() - 2], "File copying completed in (HH:MM:SS) : 00:00:00|-S----T Ready >");
}

TEST_F(DriverTest, ElapsedTimesAreTheDifferenceOfTheRowsTimes) {
    sourceFile("file", "x");
    state.options.checkFileQuality = false;
    fake.clock.time = {2026, 11, 15, 23, 59, 50, 0, 318};
    fake.loop.onTurn = [this](int) { fake.clock.time = {2026, 11, 16, 0, 1, 0, 1, 319}; };
    run();
    EXPECT_EQ(logTexts().at(3), "File count completed in (HH:MM:SS) : 00:01:10");
}

TEST_F(DriverTest, WithoutASourceThePickerRunsAndItsChoiceIsUsed) {
    sourceFile("file", "x");
    state.options.source.reset();
    onPickSource = [this] { state.options.source = folder / "source"; };
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(trace.at(0), "pick source");
    EXPECT_EQ(finalRows().size(), 1U);
}

TEST_F(DriverTest, WhenThePickerIsCancelledTheJobGoesOnAndFindsNothing) {
    sourceFile("file", "x");
    state.options.source.reset();
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_TRUE(finalRows().empty());
    EXPECT_EQ(state.counters.files, 0);
}

TEST_F(DriverTest, CopyingWithoutATargetEndsTheJobWithTheFocusOnTheTarget) {
    state.options.copy = true;
    state.counters[Grade::Good] = 7;
    fake.dialogs.expectBox("Error",
                           "You have selected to copy the files to another location, but not selected a location.");
    EXPECT_EQ(run(), JobEnd::NotStarted);
    EXPECT_EQ(trace, Trace{"focus target"});
    EXPECT_EQ(state.counters[Grade::Good], 7) << "counters are reset behind this check";
    EXPECT_FALSE(exists("app/tFile.csv"));
}

TEST_F(DriverTest, AnExistingListIsOverwrittenAfterYesAndItsBytesAreKept) {
    sourceFile("file", "x");
    folder.write("local/1234.csv", "old");
    expectOverwrite(BoxAnswer::Yes);
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(finalRows().size(), 1U);
    EXPECT_EQ(folder.read("local/Kept/2026-11-15 10.20.30/1234.csv"), "old");
}

TEST_F(DriverTest, NoAtTheOverwriteQuestionEndsTheJobBehindTheRefresh) {
    folder.write("local/1234.csv", "old");
    state.options.useSkipList = true;
    folder.write("local/Settings/SkipList.dat", "abc\r\n");
    expectOverwrite(BoxAnswer::No);
    EXPECT_EQ(run(), JobEnd::NotStarted);
    EXPECT_EQ(folder.read("local/1234.csv"), "old");
    EXPECT_FALSE(exists("app/tFile.csv"));
    EXPECT_FALSE(job.skipList.empty()) << "the lists were loaded before";
    EXPECT_TRUE(trace.empty());
}

TEST_F(DriverTest, AnOverwriteThatWasConfirmedIsNotAskedAgainAndLastsForOneJob) {
    folder.write("local/1234.csv", "old");
    state.options.confirmedList = folder / "local/1234.csv";
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_TRUE(state.options.confirmedList.empty());
    expectOverwrite(BoxAnswer::No);
    EXPECT_EQ(run(), JobEnd::NotStarted);
}

// Yes was said to the list of job 1234, by the picker or by the job itself; the job of another ID has another list.
TEST_F(DriverTest, YesToOneListIsNoYesToAnother) {
    folder.write("local/1234.csv", "old");
    const NativePath other = folder.write("local/5678.csv", "old too");
    state.options.confirmedList = folder / "local/1234.csv";
    state.options.jobId = "5678";
    fake.dialogs.expectBox(
        "Overwrite file",
        "You are about to overwrite the existing file (" + other.native() + "), are you sure you want to do this",
        BoxAnswer::No);
    EXPECT_EQ(run(), JobEnd::NotStarted);
    EXPECT_EQ(folder.read("local/5678.csv"), "old too");
}

TEST_F(DriverTest, AnIdThatChangesDuringTheFolderTestsIsAskedForAgainBeforeAnythingIsLost) {
    folder.write("app/tFile.csv", "of the last job");
    folder.write("local/1234.csv", "old");
    const NativePath other = folder.write("local/5678.csv", "old too");
    sourceFile("a/file", "x");
    for (const BoxAnswer answer : {BoxAnswer::No, BoxAnswer::Yes}) {
        state.options.jobId = "1234";
        expectOverwrite(BoxAnswer::Yes);
        atTurnWhen([this] { return state.phase == JobPhase::FolderTest; }, [this] { state.options.jobId = "5678"; });
        fake.dialogs.expectBox(
            "Overwrite file",
            "You are about to overwrite the existing file (" + other.native() + "), are you sure you want to do this",
            answer);
        EXPECT_EQ(run(), answer == BoxAnswer::Yes ? JobEnd::Complete : JobEnd::NotStarted);
        EXPECT_EQ(folder.read("local/1234.csv"), "old");
        EXPECT_EQ(folder.read("local/5678.csv") == "old too", answer == BoxAnswer::No);
        EXPECT_EQ(folder.read("app/tFile.csv") == "of the last job", answer == BoxAnswer::No);
        EXPECT_TRUE(state.options.confirmedList.empty());
        EXPECT_EQ(boardOf(state).frames, true);
    }
}

TEST_F(DriverTest, AnotherLocalPathDuringTheFolderTestsIsAnotherList) {
    folder.write("local/1234.csv", "old");
    const NativePath other = folder.write("other/1234.csv", "old too");
    sourceFile("a/file", "x");
    state.options.confirmedList = folder / "local/1234.csv";
    const auto inTest = [this] { return state.phase == JobPhase::FolderTest; };
    atTurnWhen(inTest, [this] {
        installation.settings.localPath.assign(pageFromPath(folder / "other"));
        installation.refreshPathVariables();
    });
    fake.dialogs.expectBox(
        "Overwrite file",
        "You are about to overwrite the existing file (" + other.native() + "), are you sure you want to do this",
        BoxAnswer::No);
    EXPECT_EQ(run(), JobEnd::NotStarted);
    EXPECT_EQ(folder.read("other/1234.csv"), "old too");
}

TEST_F(DriverTest, TheOutcomeTellsWhetherAListOfThisJobStands) {
    sourceFile("a", "x");
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_TRUE(state.outcome && state.outcome->cause == EndCause::Complete && state.outcome->hasList);
    state.options.confirmedList = folder / "local/1234.csv";
    stopWhen([this] { return state.phase == JobPhase::Walk; });
    EXPECT_EQ(run(), JobEnd::Stopped);
    EXPECT_FALSE(state.outcome->hasList) << "the one that stands is the last job's";
    state.options.confirmedList = folder / "local/1234.csv";
    stopWhen([this] { return state.phase == JobPhase::Testing; });
    fake.dialogs.expectBox("Delete partial file list?",
                           "Process stopped, do you want to delete the current file list ?", BoxAnswer::Yes);
    EXPECT_EQ(run(), JobEnd::Stopped);
    EXPECT_FALSE(state.outcome->hasList);
}

TEST_F(DriverTest, TheSameJobIdOfAListWithTheSeparatorIsAnOrdinaryList) {
    state.options.jobId = "1234-Partition 1";
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_TRUE(exists("local/1234-Partition 1.csv"));
}

TEST_F(DriverTest, StopDuringTheFolderTestsEndsTheWalkAtItsStart) {
    sourceFile("a/file", "x");
    stopWhen([this] { return state.phase == JobPhase::FolderTest; });
    EXPECT_EQ(run(), JobEnd::Stopped);
    EXPECT_EQ(fs::file_size(folder / "app/tFile.csv"), 0U);
    EXPECT_FALSE(exists("local/1234.csv"));
    EXPECT_EQ(trace.back(), "toolbar R-VZFM- Running primary list");
}

TEST_F(DriverTest, StopDuringTheWalkLeavesAPartlyWrittenRawListAndNoFinalList) {
    for (const char* name : {"a", "b", "c"}) sourceFile(name);
    stopWhen([this] { return state.counters.files == 1; });
    EXPECT_EQ(run(), JobEnd::Stopped);
    EXPECT_EQ(rowsOf("app/tFile.csv").size(), 1U);
    EXPECT_FALSE(exists("local/1234.csv"));
    EXPECT_EQ(logTexts().back(), "Process stopped by user");
    EXPECT_EQ(screen(), "R-VZFM- Running primary list");
}

TEST_F(DriverTest, StopDuringTestingActsBehindTheLastRowAndTheCopyPassStillRuns) {
    for (const char* name : {"a", "b", "c"}) sourceFile(name, "x");
    state.options.copy = true;
    state.options.target = folder / "target";
    stopWhen([this] { return state.phase == JobPhase::Testing && state.counters.rowsRead == 1; });
    fake.dialogs.expectBox("Delete partial file list?",
                           "Process stopped, do you want to delete the current file list ?", BoxAnswer::No);
    EXPECT_EQ(run(), JobEnd::Stopped);
    EXPECT_EQ(finalRows().size(), 3U);
    EXPECT_EQ(state.counters.rowsRead, 3) << "the copy pass went through all rows";
    EXPECT_EQ(state.counters.copyErrors, 3) << "and each copy was given up, as its own flag stays set";
    EXPECT_NE(std::find(trace.begin(), trace.end(), "Started copying Files|-S----T Testing files"), trace.end());
}

TEST_F(DriverTest, ADeletedPartialListMakesTheCopyPassSayThatThereIsNone) {
    sourceFile("a", "x");
    state.options.copy = true;
    state.options.target = folder / "target";
    stopWhen([this] { return state.phase == JobPhase::Testing; });
    fake.dialogs.expectBox("Delete partial file list?",
                           "Process stopped, do you want to delete the current file list ?", BoxAnswer::Yes);
    fake.dialogs.expectBox("Error copying files", "Unable to find file list..", BoxAnswer::Ok, BoxStyle::Critical);
    EXPECT_EQ(run(), JobEnd::Stopped);
}

TEST_F(DriverTest, StopAsksAndOnlyYesStops) {
    fake.dialogs.expectBox("Stop process?", "Do you want to stop the process?", BoxAnswer::No, std::nullopt,
                           BoxButtons::YesNo);
    askToStop(job.passContext());
    EXPECT_FALSE(state.stopRequested);
    fake.dialogs.expectBox("Stop process?", "Do you want to stop the process?", BoxAnswer::Yes);
    askToStop(job.passContext());
    EXPECT_TRUE(state.stopRequested);
    EXPECT_TRUE(state.copyCancelled);
    EXPECT_EQ(logTexts(), std::vector<std::string>{"Process stopped by user"});
}

TEST_F(DriverTest, FilesThatChangeBetweenWalkAndTestAreGradedByWhatIsThere) {
    termFile("abc", "1,MZ,T\r\n");
    const std::string healthy = "MZ" + std::string(600, '.');
    for (const char* name : {"0 same", "1 gone", "2 fifo", "3 link", "4 shrunk", "5 folder"})
        sourceFile(std::string(name) + ".abc", healthy);
    folder.write("outside.abc", healthy);
    const auto walkIsThrough = [this] { return state.counters.files == 6; };
    atTurnWhen(walkIsThrough, [this] {
        for (const char* name : {"1 gone", "2 fifo", "3 link", "5 folder"})
            fs::remove(folder / ("source/" + std::string(name) + ".abc"));
        makeFifo(folder / "source/2 fifo.abc");
        fs::create_symlink(folder / "outside.abc", folder / "source/3 link.abc");
        fs::resize_file(folder / "source/4 shrunk.abc", 1);
        fs::create_directory(folder / "source/5 folder.abc");
    });
    EXPECT_EQ(run(), JobEnd::Complete);
    std::vector<std::u16string> grades;
    for (const auto& row : finalRows()) grades.push_back(row.substr(row.rfind(u',') + 1));
    const std::u16string denied = u"Access error";
    EXPECT_EQ(grades, (std::vector<std::u16string>{u"Header OK", denied, denied, denied, u"Header Corrupt", denied}));
    EXPECT_EQ(state.counters[Grade::AccessError], 4);
}

TEST_F(DriverTest, AnOldStopDoesNotStopTheNextJob) {
    sourceFile("a", "x");
    job.passContext().stop();
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_FALSE(state.copyCancelled);
}

TEST_F(DriverTest, ARawListThatCannotBeMadeEndsTheJob) {
    fs::create_directories(folder / "app/tFile.csv/inside");
    expectDenied();
    EXPECT_NE(run(), JobEnd::Complete);
    EXPECT_FALSE(exists("local/1234.csv"));
    EXPECT_EQ(screen(), "R-VZFM- Running primary list");
    EXPECT_EQ(logTexts().back(), "Start file count ");
    EXPECT_EQ(fake.dialogs.lastDetails(), (folder / "app/tFile.csv").native() + ": Is a directory");
}

TEST_F(DriverTest, ASecondJobInTheSameApplicationFolderIsRefused) {
    folder.write("app/tFile.csv", "of the first job");
    auto first = FolderLock::take(folder / "app");
    ASSERT_TRUE(first);
    expectDenied();
    EXPECT_NE(run(), JobEnd::Complete);
    EXPECT_EQ(folder.read("app/tFile.csv"), "of the first job");
}

TEST_F(DriverTest, AnEndedJobLetsTheNextOneRun) {
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_TRUE(FolderLock::take(folder / "app"));
}

TEST_F(DriverTest, AFinalListThatCannotBeMadeIsNoCompleteJobThoughAnOldListStands) {
    folder.write("local/1234.csv", "old");
    folder.write("local/Kept", "a file where the folder should be");
    state.options.confirmedList = folder / "local/1234.csv";
    fake.dialogs.expectBox(
        "Quillon", "Unable to create output file. Please check access rights on folder " + (folder / "local").native());
    EXPECT_EQ(run(), JobEnd::NoList);
    EXPECT_EQ(folder.read("local/1234.csv"), "old");
}

TEST_F(DriverTest, AJobIdThatCannotBeAFileNameNeverLeadsOutOfTheFolder) {
    state.options.jobId = "../evil";
    fake.dialogs.expectBox(
        "Quillon", "Unable to create output file. Please check access rights on folder " + (folder / "local").native());
    EXPECT_EQ(run(), JobEnd::NoList);
    EXPECT_FALSE(exists("evil.csv"));
}

TEST_F(DriverTest, WhileTheReportIsOnItsWayThePointerIsBusyAndTheTimerStands) {
    state.options.recipientIndex = 1;
    state.options.recipient = "LAB9";
    JobBoard board;
    ScriptedAlerts alerts;
    alerts.onSend = [&] { board = boardOf(state); };
    EXPECT_EQ(JobDriver(job, *this, &alerts).run(), JobEnd::Complete);
    EXPECT_EQ(alerts.sent.size(), 1U);
    EXPECT_TRUE(board.busyPointer && board.stop && !board.timer);
    EXPECT_FALSE(boardOf(state).busyPointer);
}

TEST_F(DriverTest, TheTestingPassGivesTheBarTheNumberOfFiles) {
    for (const char* name : {"a", "b", "c"}) sourceFile(name);
    state.options.showProgress = true;
    run();
    EXPECT_EQ(state.progress.maximum, 3);
    EXPECT_EQ(state.progress.value, 3);
    EXPECT_FALSE(state.progress.shown);
}

}  // namespace

}  // namespace quillon::test
