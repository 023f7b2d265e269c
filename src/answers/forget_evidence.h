// SPDX-License-Identifier: MIT
#pragma once

// Deletes what a job kept of a customer's files.

#include "answers/job_files.h"

namespace quillon {

/// Deletes the evidence of a job and its copies below `listFolder`/Kept. The lists stay. Gives how many files were
/// deleted; on failure the others may be gone.
[[nodiscard]] Result<std::size_t> forgetEvidence(const NativePath& listFolder, const JobFiles& job);

}  // namespace quillon
