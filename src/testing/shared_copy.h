// SPDX-License-Identifier: MIT
#pragma once

#include "app/kept_files.h"
#include "platform/copy_file.h"

namespace quillon {

/// Puts a copy of a small data file over another, with its modification time. The old bytes of the target go under Kept
/// when they differ; equal bytes are left alone but for their time. A copy over a file that cannot be kept is not made.
[[nodiscard]] Result<void> copyKeepingOld(const NativePath& source, const NativePath& target, KeptFiles& kept);

}  // namespace quillon
