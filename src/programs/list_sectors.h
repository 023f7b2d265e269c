// SPDX-License-Identifier: MIT
#pragma once

// `quillon-list sectors`: which files lie where the map of a rescue says that the disk was not read.

#include <vector>

#include "answers/job_files.h"
#include "platform/file_extents.h"
#include "programs/list_command.h"
#include "programs/list_options.h"

namespace quillon {

/// Tells the files of `jobs` that are asked for and hold unread sectors, writes the map of what is still wanted where
/// `options.output` names one, and keeps what was found of every file in the evidence. Gives the exit status.
/// InvalidArgument: the map does not fit the device that a source lies on. NotFound: a job has no evidence, or its
/// source is not there.
[[nodiscard]] Result<int> tellSectors(const std::vector<JobFiles>& jobs, const ListCommandOptions& options,
                                      const ListStreams& streams, PlaceReader& places);

}  // namespace quillon
