// SPDX-License-Identifier: MIT
#pragma once

// The score board: resetting and recounting it, the recovery quality, throughput and size displays.

#include "job/job_lists.h"
#include "job/pass_context.h"
#include "testing/report_messages.h"

namespace quillon {

/// Sets every counter and the total size to 0 and the board's texts to "0". The quality therefore reads "0", not
/// "0.00%", until a first computation.
void resetCounters(JobState& state);

/// Recovery quality: (good + common) / (good + corrupt + common), shown with two decimals. Without a good file the
/// label stays as it was.
void updateQuality(JobState& state);

/// From here to the next reset the size label shows the total size as it grows.
void showSize(JobState& state);

/// What the size label shows: "0" behind a reset, "0 Bytes" for a tree of no bytes. The text is made when somebody
/// looks at it, and not for every file.
[[nodiscard]] std::string sizeLabel(const JobState& state);

/// How far the job is and what it will still take, from what was counted so far: the pace and its text. Between two
/// jobs there is none.
void lookAtPace(JobState& state, std::int64_t milliseconds);

/// The handler of the timer that ticks every second while a job runs: elapsed time in the status panel, files per
/// minute in the throughput label. The count is rows read if above 0, and files otherwise.
void timerTick(JobState& state, const Clock& clock);

/// Recounts the board from the list of the job ID. It restores only what a list can tell; rows that have not exactly
/// five fields count nothing. While a job runs, counters and controls are the job's, and nothing is recounted.
///
/// Kept: the quality is recomputed only at rows of an access error, a common header or no known text, so a list of
/// nothing but good and corrupt rows leaves it at "0" (test ARecountOfGoodAndCorruptRowsLeavesTheQualityAtZero).
void upDateAllLabels(const PassContext& context, const JobLists& lists, const ReportMessages& messages);

}  // namespace quillon
