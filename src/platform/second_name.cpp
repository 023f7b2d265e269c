// SPDX-License-Identifier: MIT
#include "platform/second_name.h"

#include <fcntl.h>

#include "platform/copy_file.h"
#include "platform/disk_calls.h"
#include "platform/folders.h"
#include "platform/whole_file.h"

namespace quillon {

Result<void> giveSecondName(const NativePath& file, const NativePath& second) {
    if (pathExists(second)) {
        if (auto removed = removeFile(second); !removed)
            return removed;
    }
    if (disk().link(AT_FDCWD, file.c_str(), AT_FDCWD, second.c_str(), 0) != 0) {
        const auto copied = FileCopier().copy(file.native(), second.native(), [](auto, auto) { return true; });
        if (!copied)
            return failure(copied.error().error);
    }
    syncFolder(second.parent_path());
    return {};
}

}  // namespace quillon
