// SPDX-License-Identifier: MIT
#pragma once

// The self-check of a job: every file that was found has one row in each list, one grade, and one copy or copy error.
// Where two of these counts differ without a word of the job, rows were lost or made up on the way.

#include <string>
#include <vector>

#include "job/job_state.h"

namespace quillon {

/// Compares what the passes counted with one another and with the counters of the score board; each gap is a sentence
/// without a full stop, and there is none in a sound job. What the job has told is no gap: rows that could not be
/// written, a raw list that could not be read on. A pass that did not run or was stopped is not compared.
[[nodiscard]] std::vector<std::string> gapsOf(const PassFigures& passes, const JobCounters& counters);

}  // namespace quillon
