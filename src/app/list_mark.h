// SPDX-License-Identifier: MIT
#pragma once

// The mark beside a file list that is being written: `<name of the list>.unfinished`. It is there before the list has
// its name and goes when all of the list is on the medium, so that a list that a killed job, a full disk or a power cut
// has left short never looks whole. A list without a mark is whole. docs/formats/file-list.md.

#include "platform/file.h"
#include "platform/result.h"

namespace quillon {

/// Where the mark of a list stands.
[[nodiscard]] NativePath unfinishedMark(const NativePath& list);

/// True for a list that is being written or was left short.
[[nodiscard]] bool isUnfinished(const NativePath& list);

/// Marks a list, which need not exist yet. The mark is on the medium afterwards.
[[nodiscard]] Result<void> markUnfinished(const NativePath& list);

/// Takes the mark away, if there is one, and brings the folder's entries to the medium: the list's name with them.
/// Whoever calls it has brought the bytes there before.
[[nodiscard]] Result<void> markFinished(const NativePath& list);

/// Gives `to`, a list that is moved or copied from `from`, the mark that `from` has, or none. `from` keeps its own.
[[nodiscard]] Result<void> copyMark(const NativePath& from, const NativePath& to);

}  // namespace quillon
