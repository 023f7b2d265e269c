// SPDX-License-Identifier: MIT
#include "job/job_board.h"

#include <array>

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
    {JobPhase::Reporting,  nullptr,                               true,   true,  true,       true,  false},
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

}  // namespace

JobBoard boardOf(const JobState& state) {
    const PhaseRow& phase = rowOf(state.phase);
    const bool locked = state.recounting || (phase.locksScreen && !state.unlockedByRecount);
    JobBoard board;
    board.frames = board.menus = board.zip = !locked;
    board.toolbarRestricted = state.recounting || (phase.restrictsToolbar && !state.unlockedByRecount);
    board.run = state.mayRun && !locked;
    board.stop = locked;
    board.view = state.mayView;
    board.throughput = phase.showsThroughput;
    board.busyPointer = phase.isBusy || state.recounting || state.fetchingList;
    board.timer = phase.runsTimer;
    return board;
}

void enterPhase(JobState& state, JobPhase phase) {
    state.phase = phase;
    if (const char* status = rowOf(phase).status)
        state.texts.status = status;
}

}  // namespace quillon
