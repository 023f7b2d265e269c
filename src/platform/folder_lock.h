// SPDX-License-Identifier: MIT
#pragma once

// An advisory lock on a folder: one job at a time in one application folder. It needs no file of its own, and the
// system drops it when the process ends in whatever way.

#include <optional>

#include "platform/directory.h"
#include "platform/result.h"

namespace quillon {

class FolderLock {
public:
    /// Takes the lock without waiting. PermissionDenied when another process holds it. A file system that has no such
    /// locks counts as unlocked.
    [[nodiscard]] static Result<FolderLock> take(const NativePath& folder);
    /// The same; no value when another process holds it, so that this can be told from a folder out of reach.
    [[nodiscard]] static Result<std::optional<FolderLock>> tryToTake(const NativePath& folder);

private:
    explicit FolderLock(Directory folder) : folder_(std::move(folder)) {}
    Directory folder_;  // closing it releases the lock
};

}  // namespace quillon
