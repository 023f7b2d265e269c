// SPDX-License-Identifier: MIT
#pragma once

#include "app/database_history.h"
#include "app/kept_files.h"
#include "platform/copy_file.h"

namespace quillon {

/// Puts a copy of a small data file over another, with its modification time. The old bytes of the target go under Kept
/// when they differ; equal bytes are left alone but for their time. A copy over a file that cannot be kept is not made.
[[nodiscard]] Result<void> copyKeepingOld(const NativePath& source, const NativePath& target, KeptFiles& kept);

/// The same, noted in the history of the target's root, whose settings folder this is, as a change by `who`. Without
/// room for the note the copy is made all the same.
[[nodiscard]] Result<LostNote> copyNoted(const NativePath& source, const NativePath& target, KeptFiles& kept,
                                         const NativePath& settings, DatabaseChange who);

}  // namespace quillon
