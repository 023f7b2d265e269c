// SPDX-License-Identifier: MIT
#include "job/job_board.h"

#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "job/job_end.h"

namespace quillon::test {

namespace {

// The board as the table of a phase tells it: a letter for each control that can be used or is seen. F Frame1 and
// Frame3, M mnu and mnuFile, X the restricted toolbar, R Run, S Stop, V View, Z Zip, T Label19 and Label16, B the busy
// pointer, C the clock Timer1.
std::string lettersOf(const JobState& state) {
    const JobBoard board = boardOf(state);
    const std::pair<bool, char> controls[] = {
        {board.frames, 'F'}, {board.menus, 'M'},      {board.toolbarRestricted, 'X'},
        {board.run, 'R'},    {board.stop, 'S'},       {board.view, 'V'},
        {board.zip, 'Z'},    {board.throughput, 'T'}, {board.busyPointer, 'B'},
        {board.timer, 'C'}};
    std::string letters;
    for (const auto& [on, letter] : controls) letters.push_back(on ? letter : '-');
    return letters;
}

struct PhaseCase {
    JobPhase phase;
    const char* board;
    const char* status;  // behind "before"
};
constexpr PhaseCase kPhaseCases[] = {
    {JobPhase::Idle, "FM-R--ZT--", "before"},
    {JobPhase::Checking, "FM-R--ZT-C", "before"},
    {JobPhase::Starting, "FMXR--ZT-C", "before"},
    {JobPhase::FolderTest, "FMXR--ZT-C", "Checking folders and access rights"},
    {JobPhase::Walk, "--X-S--T-C", "Running primary list"},
    {JobPhase::Testing, "--X-S--T-C", "Testing files"},
    {JobPhase::Copying, "--X-S----C", "before"},
    {JobPhase::Ends, "--X-S--T-C", "Looking at file ends"},
    {JobPhase::Reporting, "--X-S--TB-", "before"},
    {JobPhase::Scanning, "--X-S----C", "Looking for bad sectors"},
};
static_assert(std::size(kPhaseCases) == kJobPhases);

JobState stateIn(JobPhase phase) {
    JobState state;
    state.mayRun = true;
    state.texts.status = "before";
    enterPhase(state, phase);
    return state;
}

TEST(JobBoardTest, EachPhaseEnablesShowsAndSaysWhatBelongsToIt) {
    for (const auto& told : kPhaseCases) {
        const JobState state = stateIn(told.phase);
        EXPECT_EQ(lettersOf(state), told.board) << static_cast<int>(told.phase);
        EXPECT_EQ(state.texts.status, told.status) << static_cast<int>(told.phase);
    }
}

TEST(JobBoardTest, AtTheStartNothingRunsAndNothingCanBeRunOrViewed) {
    EXPECT_EQ(lettersOf(JobState()), "FM----ZT--");
    EXPECT_EQ(boardOf(JobState()), JobBoard());
}

TEST(JobBoardTest, RunAndViewFollowTheirFactsAndOnlyRunIsLocked) {
    JobState state;
    state.mayRun = state.mayView = true;
    EXPECT_EQ(lettersOf(state), "FM-R-VZT--");
    enterPhase(state, JobPhase::Walk);
    EXPECT_EQ(lettersOf(state), "--X-SV-T-C");
}

TEST(JobBoardTest, WhatIsChosenForCopiesNeedsACopyAndAnUnlockedScreen) {
    for (const auto& told : kPhaseCases) {
        JobState state = stateIn(told.phase);
        EXPECT_FALSE(boardOf(state).copyChoices) << static_cast<int>(told.phase);
        state.options.copy = true;
        EXPECT_EQ(boardOf(state).copyChoices, told.board[0] == 'F') << static_cast<int>(told.phase);
    }
}

TEST(JobBoardTest, ARecountLocksInEveryPhase) {
    for (const auto& told : kPhaseCases) {
        JobState state = stateIn(told.phase);
        state.recounting = true;
        EXPECT_EQ(lettersOf(state).substr(0, 7), "--X-S--") << static_cast<int>(told.phase);
        EXPECT_TRUE(boardOf(state).busyPointer);
    }
}

TEST(JobBoardTest, AListThatIsFetchedShowsTheBusyPointerAndLocksNothing) {
    JobState state = stateIn(JobPhase::Idle);
    state.fetchingList = true;
    EXPECT_EQ(lettersOf(state), "FM-R--ZTB-");
}

TEST(JobSummaryTest, ARunningJobTellsWhichOfItsPassesItIsIn) {
    struct Case {
        JobPhase phase;
        bool tests;
        bool copies;
        const char* text;
    };
    const Case cases[] = {
        {JobPhase::Checking, true, true, "Preparing"},
        {JobPhase::Starting, true, true, "Preparing"},
        {JobPhase::FolderTest, true, true, "Running 1 of 4: checking folders"},
        {JobPhase::Walk, false, false, "Running 2 of 2: listing files"},
        {JobPhase::Testing, true, false, "Running 3 of 3: testing"},
        {JobPhase::Testing, true, true, "Running 3 of 4: testing"},
        {JobPhase::Copying, true, true, "Running 4 of 4: copying"},
        {JobPhase::Copying, false, true, "Running 3 of 3: copying"},
        {JobPhase::Reporting, true, true, "Sending the report"},
        {JobPhase::Scanning, true, true, "Running 5 of 5: looking for bad sectors"},
    };
    for (const auto& told : cases) {
        JobState state = stateIn(told.phase);
        state.options.checkFileQuality = told.tests;
        state.options.copy = told.copies;
        state.options.scanSectors = told.phase == JobPhase::Scanning;
        state.outcome = JobOutcome{};
        EXPECT_EQ(jobSummary(state), (JobSummary{told.text, JobTone::Running}));
    }
}

TEST(JobSummaryTest, AScanOfAJobThatWasDoneBeforeIsNoneOfThePassesOfTheNext) {
    JobState state = stateIn(JobPhase::Scanning);
    state.scansDoneJob = true;
    for (const bool chosen : {false, true}) {
        state.options.scanSectors = chosen;
        EXPECT_EQ(jobSummary(state).text, "Running: looking for bad sectors");
    }
}

TEST(JobSummaryTest, AfterStopTheTestStillGoesToItsEndAndSaysSo) {
    JobState state = stateIn(JobPhase::Testing);
    state.options.checkFileQuality = true;
    state.stopRequested = true;
    EXPECT_EQ(jobSummary(state).text, "Stopping after 3 of 3: testing");
}

TEST(JobSummaryTest, AnEndedJobSaysHow) {
    EXPECT_EQ(jobSummary(JobState()), JobSummary());
    const std::pair<JobOutcome, JobSummary> cases[] = {
        {{EndCause::Complete, true, false}, {"Complete", JobTone::Done}},
        {{EndCause::Complete, true, true}, {"Complete, with errors", JobTone::Trouble}},
        {{EndCause::StoppedInCopying, true, true}, {"Stopped, list kept", JobTone::Trouble}},
        {{EndCause::StoppedInWalk, false, false}, {"Stopped, no list", JobTone::Trouble}},
        {{EndCause::NoTarget, false, false}, {"Not started: no target is chosen", JobTone::Trouble}},
        {{EndCause::Busy, false, false},
         {"Not started: another job runs in this application folder, try again later", JobTone::Trouble}},
        {{EndCause::ListDenied, false, false}, {"Failed, no list", JobTone::Trouble}},
    };
    for (const auto& [outcome, summary] : cases) {
        JobState state = stateIn(JobPhase::Idle);
        state.outcome = outcome;
        EXPECT_EQ(jobSummary(state), summary);
        state.recounting = true;
        EXPECT_EQ(jobSummary(state), (JobSummary{"Counting", JobTone::Running}));
    }
}

}  // namespace

}  // namespace quillon::test
