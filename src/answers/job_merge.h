// SPDX-License-Identifier: MIT
#pragma once

// Makes one list and one evidence file of several jobs. Of all parts of one job it makes what that job would have left
// if one computer had done it: the list byte for byte, the evidence row for row.

#include <vector>

#include "answers/job_files.h"

namespace quillon {

struct MergedFigures {
    std::int64_t files = 0;    ///< in the evidence
    std::int64_t rows = 0;     ///< of the list
    std::int64_t damaged = 0;  ///< files whose head was damaged and left out
};

/// Writes `<id>.csv` and `<id>.sqlite` in `folder`, both whole or not at all. Files stand in the order of the walk over
/// the folder that all sources lie in; every row has the token of the first one. The jobs stay as they are.
///
/// Refused, with the reason: a list or an evidence of this ID that is there already; a job without its list, without
/// evidence or without an end; a list and an evidence that disagree; a file that two jobs list; parts that miss, are
/// there twice, belong to different jobs, or were made by different rules, options, locales or versions.
[[nodiscard]] Result<MergedFigures> mergeJobs(const NativePath& folder, const std::string& id,
                                              const std::vector<JobFiles>& jobs);

}  // namespace quillon
