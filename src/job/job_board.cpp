// SPDX-License-Identifier: MIT
#include "job/job_board.h"

#include <array>
#include <vector>

#include <fmt/format.h>

#include "job/job_end.h"

namespace quillon {

namespace {

struct PhaseRow {
    JobPhase phase;
    const char* status;  // null: the line stays as it is
    bool restrictsToolbar;
    bool locksScreen;
    bool showsThroughput;
    bool isBusy;
    bool runsTimer;
};

// clang-format off
constexpr std::array<PhaseRow, kJobPhases> kPhases = {{
    // phase                status                                toolbar  lock  throughput  busy   timer
    {JobPhase::Idle,       nullptr,                               false,  false, true,       false, false},
    {JobPhase::Checking,   nullptr,                               false,  false, true,       false, true},
    {JobPhase::Starting,   nullptr,                               true,   false, true,       false, true},
    {JobPhase::FolderTest, "Checking folders and access rights",  true,   false, true,       false, true},
    {JobPhase::Walk,       "Running primary list",                true,   true,  true,       false, true},
    {JobPhase::Testing,    "Testing files",                       true,   true,  true,       false, true},
    {JobPhase::Copying,    nullptr,                               true,   true,  false,      false, true},
    {JobPhase::Ends,       "Looking at file ends",                true,   true,  true,       false, true},
    {JobPhase::Reporting,  nullptr,                               true,   true,  true,       true,  false},
    {JobPhase::Scanning,   "Looking for bad sectors",             true,   true,  false,      false, true},
}};
// clang-format on

constexpr bool everyPhaseHasItsRow() {
    for (std::size_t i = 0; i < kPhases.size(); ++i) {
        if (kPhases[i].phase != static_cast<JobPhase>(i))
            return false;
    }
    return true;
}
static_assert(everyPhaseHasItsRow());

const PhaseRow& rowOf(JobPhase phase) {
    return kPhases[static_cast<std::size_t>(phase)];
}

constexpr const char* kScanningName = "looking for bad sectors";

struct Pass {
    JobPhase phase;
    const char* name;
};

// The passes that this job has, in their order. Until they begin, the options may change.
std::vector<Pass> passesOf(const JobOptions& options) {
    std::vector<Pass> passes = {{JobPhase::FolderTest, "checking folders"}, {JobPhase::Walk, "listing files"}};
    if (options.checkFileQuality)
        passes.push_back({JobPhase::Testing, "testing"});
    if (options.copy)
        passes.push_back({JobPhase::Copying, "copying"});
    if (looksAtEnds(options))
        passes.push_back({JobPhase::Ends, "looking at file ends"});
    if (options.scanSectors)
        passes.push_back({JobPhase::Scanning, kScanningName});
    return passes;
}

std::string runningText(const JobState& state) {
    if (state.phase == JobPhase::Scanning && state.scansDoneJob)
        return fmt::format("{}: {}", state.stopRequested ? "Stopping" : "Running", kScanningName);
    const std::vector<Pass> passes = passesOf(state.options);
    for (std::size_t i = 0; i < passes.size(); ++i) {
        if (passes[i].phase == state.phase)
            return fmt::format("{} {} of {}: {}", state.stopRequested ? "Stopping after" : "Running", i + 1,
                               passes.size(), passes[i].name);
    }
    return state.phase == JobPhase::Reporting ? "Sending the report" : "Preparing";
}

JobSummary endSummary(const JobOutcome& outcome) {
    const EndRow& end = rowOf(outcome.cause);
    switch (end.end) {
        case JobEnd::Complete:
            return outcome.losses ? JobSummary{"Complete, with errors", JobTone::Trouble}
                                  : JobSummary{"Complete", JobTone::Done};
        case JobEnd::Stopped:
            return {outcome.hasList ? "Stopped, list kept" : "Stopped, no list", JobTone::Trouble};
        case JobEnd::NotStarted:
        case JobEnd::Busy:
            return {std::string("Not started: ") + end.text, JobTone::Trouble};
        case JobEnd::NoList:
            break;
    }
    return {"Failed, no list", JobTone::Trouble};
}

}  // namespace

JobSummary jobSummary(const JobState& state) {
    if (state.phase != JobPhase::Idle)
        return {runningText(state), JobTone::Running};
    if (state.recounting)
        return {"Counting", JobTone::Running};
    return state.outcome ? endSummary(*state.outcome) : JobSummary{};
}

JobBoard boardOf(const JobState& state) {
    const PhaseRow& phase = rowOf(state.phase);
    const bool locked = state.recounting || phase.locksScreen;
    JobBoard board;
    board.frames = board.menus = board.zip = !locked;
    board.toolbarRestricted = state.recounting || phase.restrictsToolbar;
    board.run = state.mayRun && !locked;
    board.stop = locked;
    board.view = state.mayView;
    board.throughput = phase.showsThroughput;
    board.busyPointer = phase.isBusy || state.recounting || state.fetchingList;
    board.timer = phase.runsTimer;
    board.copyChoices = board.frames && state.options.copy;
    return board;
}

void enterPhase(JobState& state, JobPhase phase) {
    state.phase = phase;
    if (const char* status = rowOf(phase).status)
        state.texts.status = status;
}

}  // namespace quillon
