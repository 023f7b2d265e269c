// SPDX-License-Identifier: MIT
#pragma once

// The final list of a job, `<local root>/<job ID>.csv`. A list that a new job replaces goes under Kept first; when the
// new one cannot be made, the old one comes back.

#include "app/file_list.h"
#include "job/job.h"

namespace quillon {

/// Opens the final list for writing, empty.
[[nodiscard]] Result<ListWriter> createFinalList(Job& job);

/// Makes the final list a copy of the raw list, complete or not at all.
[[nodiscard]] Result<void> copyToFinalList(Job& job);

}  // namespace quillon
