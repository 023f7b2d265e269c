// SPDX-License-Identifier: MIT
#include "platform/folder_lock.h"

#include <sys/file.h>

#include "platform/system_error.h"

namespace quillon {

Result<FolderLock> FolderLock::take(const NativePath& folder) {
    auto taken = tryToTake(folder);
    if (!taken)
        return failure(taken.error());
    if (!*taken)
        return failure(systemError(folder.native(), EACCES));
    return std::move(**taken);
}

Result<std::optional<FolderLock>> FolderLock::tryToTake(const NativePath& folder) {
    auto opened = Directory::open(folder);
    if (!opened)
        return failure(opened.error());
    if (retried([&] { return ::flock(opened->handle(), LOCK_EX | LOCK_NB); }) != 0 && errno == EWOULDBLOCK)
        return std::nullopt;
    return FolderLock(std::move(*opened));
}

}  // namespace quillon
