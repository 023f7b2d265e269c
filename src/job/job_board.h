// SPDX-License-Identifier: MIT
#pragma once

// What a front end lets a person use and see while a job is in a phase: one table of phases, and the facts beside it.
// The job itself knows no control.

#include <string>

#include "job/job_state.h"

namespace quillon {

/// Which controls of the main window can be used and seen.
struct JobBoard {
    bool frames = true;              ///< Frame1 and Frame3 can be used
    bool menus = true;               ///< mnu and mnuFile can be used
    bool toolbarRestricted = false;  ///< Toolbar1: only Stop can be used
    bool run = false;                ///< CommandButton3 can be used
    bool stop = false;               ///< CommandButton4 can be used
    bool view = false;               ///< CommandButton5 can be used
    bool zip = true;                 ///< CommandButton6 can be used
    bool throughput = true;          ///< Label19 and Label16 are seen
    bool busyPointer = false;        ///< hourglass
    bool timer = false;              ///< Timer1 runs
    bool copyChoices = false;        ///< what is chosen for copies beside their target can be used

    friend bool operator==(const JobBoard&, const JobBoard&) = default;
};

[[nodiscard]] JobBoard boardOf(const JobState& state);

/// How a word on the job is meant.
enum class JobTone { Quiet, Running, Done, Trouble };

/// What the job does, or how the last one ended, in a few words for a place that is always seen. Told status lines keep
/// their words, and some of them stay when a job has ended.
struct JobSummary {
    std::string text;  ///< "Running 3 of 4: testing", "Complete", "Stopped, no list"; empty before the first job
    JobTone tone = JobTone::Quiet;

    friend bool operator==(const JobSummary&, const JobSummary&) = default;
};

[[nodiscard]] JobSummary jobSummary(const JobState& state);

/// The job is in this phase from here on. A phase that has a status line of its own tells it.
void enterPhase(JobState& state, JobPhase phase);

}  // namespace quillon
