// SPDX-License-Identifier: MIT
#pragma once

#include "app/kept_files.h"
#include "platform/copy_file.h"

namespace quillon {

/// Puts the shared copy of a data file over the local one. The old local bytes go under Kept when they differ; equal
/// bytes are left alone. A copy of a file that cannot be kept is not made.
[[nodiscard]] Result<void> takeSharedCopy(const NativePath& shared, const NativePath& local, KeptFiles& kept);

}  // namespace quillon
