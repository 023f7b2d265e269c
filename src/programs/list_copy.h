// SPDX-License-Identifier: MIT
#pragma once

// The subcommand `quillon-list copy`: files of finished jobs for whoever gets them.

#include <vector>

#include "answers/job_files.h"
#include "app/installation.h"
#include "programs/list_command.h"
#include "programs/list_options.h"

namespace quillon {

/// Copies the files that are asked for of all `jobs`, one after the other, and tells of each that failed. `paths`:
/// of the rules. Gives the exit status: 1 when something is not copied.
[[nodiscard]] Result<int> copyFiles(const std::vector<JobFiles>& jobs, const ListCommandOptions& options,
                                    const Paths& paths, const ListStreams& streams);

}  // namespace quillon
