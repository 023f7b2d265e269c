// SPDX-License-Identifier: MIT
#pragma once

// `quillon-job --regrade JOB`: the list of a job by today's rules, without its source.

#include "programs/job_command.h"
#include "programs/job_options.h"

namespace quillon {

/// Runs it and gives the exit status: docs/man/quillon-job.1.
[[nodiscard]] int runRegradeCommand(const JobCommandOptions& chosen, const CommandStreams& streams);

}  // namespace quillon
