// SPDX-License-Identifier: MIT
#pragma once

// The subcommand `quillon-list verify`: copies compared with their check sums.

#include "answers/job_files.h"
#include "programs/list_command.h"
#include "programs/list_options.h"

namespace quillon {

/// Reads every file that the job's check sums name below `folder`, from the disk and not from memory, and tells of each
/// that is missing or another one. The check sums are those in the folder, else those beside the list. Gives the exit
/// status: 1 when a file is not as it was. NotFound: there are no check sums.
[[nodiscard]] Result<int> verifyCopies(const JobFiles& job, const NativePath& folder, const ListCommandOptions& options,
                                       const ListStreams& streams);

}  // namespace quillon
