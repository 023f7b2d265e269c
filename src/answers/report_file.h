// SPDX-License-Identifier: MIT
#pragma once

// Gathers what the page for the customer tells of jobs, and writes it.

#include <string>
#include <vector>

#include "answers/job_files.h"

namespace quillon {

struct ReportOptions {
    std::string laboratory;  ///< who made it, for the head of the page; empty: it is not named
    std::size_t depth = 1;   ///< folders how deep below the source
    bool withFiles = false;  ///< every file is named
};

/// Writes the page of these jobs to `target`, whole or not at all.
[[nodiscard]] Result<void> writeReport(const std::vector<JobFiles>& jobs, const ReportOptions& options,
                                       const NativePath& target);

}  // namespace quillon
