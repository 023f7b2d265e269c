// SPDX-License-Identifier: MIT
#pragma once

// The subcommand `quillon-list suggest`: terms for the files of an extension.

#include <vector>

#include "answers/job_files.h"
#include "programs/list_command.h"
#include "programs/list_options.h"

namespace quillon {

/// Writes the suggestions for `options.wish.extensions`, of which there is one, from the heads of all `jobs`. Gives the
/// exit status. NotFound: a job without evidence, or a list of names that is not there.
[[nodiscard]] Result<int> suggestFromJobs(const std::vector<JobFiles>& jobs, const ListCommandOptions& options,
                                          const ListStreams& streams);

}  // namespace quillon
