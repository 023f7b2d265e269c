// SPDX-License-Identifier: MIT
#pragma once

// `quillon-job --scan-sectors JOB`: every file of a job is read to its end, and bad sectors are looked for.

#include "programs/job_command.h"
#include "programs/job_options.h"

namespace quillon {

/// Runs it and gives the exit status: docs/man/quillon-job.1.
[[nodiscard]] int runScanCommand(const JobCommandOptions& chosen, const CommandStreams& streams);

}  // namespace quillon
