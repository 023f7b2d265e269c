// SPDX-License-Identifier: MIT
#pragma once

// Every way in which a job can end, and every way in which a complete job can lack something: two tables, from which a
// front end takes what it says, and a command its exit status.

#include <array>
#include <cstdint>
#include <string>

#include "job/job_state.h"

namespace quillon {

/// How a job ended, for a front end that has to say so.
enum class JobEnd {
    Complete,    ///< all phases ran and there is a final list
    NotStarted,  ///< a check or a question ended it before the walk
    Stopped,     ///< a person ended it
    NoList,      ///< all phases ran, but there is no final list
    Busy,        ///< another job runs in the same application folder
};

/// Exit statuses of a command that runs a job.
inline constexpr int kExitComplete = 0;
inline constexpr int kExitNoList = 1;  ///< the job ended without a list
inline constexpr int kExitUsage = 2;   ///< a line says how to use it
inline constexpr int kExitLosses = 3;  ///< complete, but something is missing: a row of the table of losses
inline constexpr int kExitAlert = 4;   ///< complete, but the report was not acknowledged
inline constexpr int kExitBusy = 75;   ///< try again later
inline constexpr int kExitStopped = 130;

/// What a status says, for help and manual.
struct StatusRow {
    int status;
    const char* text;
};
inline constexpr std::array<StatusRow, 7> kExitStatuses{{
    {kExitComplete, "the list is complete"},
    {kExitNoList, "the job ended without a list"},
    {kExitUsage, "wrong usage"},
    {kExitLosses, "the list is there, but rows or copies failed, or something could not be read or written"},
    {kExitAlert, "complete, but nobody acknowledged the alert"},
    {kExitBusy, "another job runs in the application folder, try again later"},
    {kExitStopped, "stopped"},
}};

/// In the order of the phases.
enum class EndCause : std::uint8_t {
    NotSetUp,          ///< the folders or settings of the installation cannot be made or read
    TargetDenied,      ///< the target cannot be written
    TargetRefused,     ///< No to a target that holds something
    NoTarget,          ///< files were to be copied, and no target was chosen
    NoDatabase,        ///< No where the shared database was not to be found
    OverwriteRefused,  ///< No to overwriting the list
    StoppedInChecks,   ///< or in the refresh of the database
    Busy,
    RawListDenied,  ///< the raw list cannot be made
    StoppedInWalk,  ///< or in the folder test ahead of it
    ListDenied,     ///< the final list cannot be made
    StoppedInTesting,
    StoppedInCopying,
    StoppedInEnds,
    StoppedInReport,
    OutOfMemory,
    Complete,
    Count  ///< no cause: how many there are
};

struct EndRow {
    EndCause cause;
    JobEnd end;
    int status;        ///< exit status of a command
    const char* word;  ///< "reason" in docs/formats/job-json.md
    const char* text;  ///< for a person; empty where there is nothing to say
};

inline constexpr std::array<EndRow, static_cast<std::size_t>(EndCause::Count)> kJobEnds{{
    {EndCause::NotSetUp, JobEnd::NotStarted, kExitNoList, "not_set_up", "the installation is not whole"},
    {EndCause::TargetDenied, JobEnd::NotStarted, kExitNoList, "target_denied", "permission denied for the target"},
    {EndCause::TargetRefused, JobEnd::NotStarted, kExitNoList, "target_refused", "the target holds files already"},
    {EndCause::NoTarget, JobEnd::NotStarted, kExitNoList, "no_target", "no target is chosen"},
    {EndCause::NoDatabase, JobEnd::NotStarted, kExitNoList, "no_database", "there is no database"},
    {EndCause::OverwriteRefused, JobEnd::NotStarted, kExitNoList, "overwrite_refused",
     "the list of an earlier job stays"},
    {EndCause::StoppedInChecks, JobEnd::Stopped, kExitStopped, "stopped_in_checks",
     "ahead of the walk, without a list"},
    {EndCause::Busy, JobEnd::Busy, kExitBusy, "busy", "another job runs in this application folder, try again later"},
    {EndCause::RawListDenied, JobEnd::NotStarted, kExitNoList, "raw_list_denied", "the raw list cannot be made"},
    {EndCause::StoppedInWalk, JobEnd::Stopped, kExitStopped, "stopped_in_walk", "in the walk, without a list"},
    {EndCause::ListDenied, JobEnd::NoList, kExitNoList, "list_denied", "the list cannot be made"},
    {EndCause::StoppedInTesting, JobEnd::Stopped, kExitStopped, "stopped_in_testing", "in testing"},
    {EndCause::StoppedInCopying, JobEnd::Stopped, kExitStopped, "stopped_in_copying",
     "in copying; the list is complete, the copy is not"},
    {EndCause::StoppedInEnds, JobEnd::Stopped, kExitStopped, "stopped_in_ends",
     "while file ends were looked at; list and copy are complete"},
    {EndCause::StoppedInReport, JobEnd::Stopped, kExitStopped, "stopped_in_report",
     "while the report was on its way; list and copy are complete"},
    {EndCause::OutOfMemory, JobEnd::NoList, kExitNoList, "out_of_memory", "out of memory"},
    {EndCause::Complete, JobEnd::Complete, kExitComplete, "complete", ""},
}};

[[nodiscard]] constexpr const EndRow& rowOf(EndCause cause) {
    return kJobEnds[static_cast<std::size_t>(cause)];
}

/// The end in one or two words: "end" in docs/formats/job-json.md.
[[nodiscard]] const char* wordOf(JobEnd end);

/// What a complete job may lack. Each has status 3.
struct LossRow {
    std::int32_t JobCounters::*counter;
    const char* word;  ///< of the counter, in docs/formats/job-json.md
    const char* text;  ///< behind the count, for a person
};

inline constexpr std::array<LossRow, 9> kJobLosses{{
    {&JobCounters::lostRows, "lost_rows", "rows of a list could not be written"},
    {&JobCounters::copyErrors, "copy_errors", "files could not be copied"},
    {&JobCounters::damagedCopies, "damaged_copies",
     "files were copied with gaps, as the source did not give all of them"},
    {&JobCounters::notCopied, "not_copied", "files of the list were not reached by the copy"},
    {&JobCounters::unreadRules, "rules_not_read", "files with rules could not be read"},
    {&JobCounters::notFetched, "not_fetched", "files of the shared database could not be fetched"},
    {&JobCounters::unlistedFolders, "folders_not_read", "folders could not be read to their end"},
    {&JobCounters::lostMessages, "lost_messages", "messages found no reader"},
    {&JobCounters::lostEvidence, "lost_evidence", "evidence file could not be written to its end"},
}};

/// True when a counter of that table is above 0.
[[nodiscard]] bool hasLosses(const JobCounters& counters);
/// The same, or when the figures of a job that has ended do not agree.
[[nodiscard]] bool hasLosses(const JobState& state);

/// The exit status of a command behind a job. Figures that do not agree are a loss, too, and a loss outweighs a report
/// that nobody acknowledged.
[[nodiscard]] int exitStatus(EndCause cause, const JobState& state, bool alertOptional);

}  // namespace quillon
