// SPDX-License-Identifier: MIT
#pragma once

// The subcommand `merge` of `quillon-list`.

#include <string>
#include <vector>

#include "answers/job_files.h"
#include "programs/list_command.h"

namespace quillon {

/// Makes the job `id` of `jobs` in `folder`, and tells of it. Gives the exit status.
[[nodiscard]] Result<int> mergeListed(const std::vector<JobFiles>& jobs, const NativePath& folder,
                                      const std::string& id, const ListStreams& streams);

}  // namespace quillon
