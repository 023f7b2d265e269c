// SPDX-License-Identifier: MIT
#pragma once

// `quillon-list report`: the page for the customer.

#include "answers/job_files.h"
#include "programs/list_options.h"

namespace quillon {

/// Writes the page of these jobs to `options.output`, whole or not at all.
[[nodiscard]] Result<void> writeReport(const std::vector<JobFiles>& jobs, const ListCommandOptions& options);

}  // namespace quillon
