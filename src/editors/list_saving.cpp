// SPDX-License-Identifier: MIT
#include "editors/list_saving.h"

#include <algorithm>

#include "platform/folders.h"
#include "platform/whole_file.h"

namespace quillon {

Result<void> ListSaver::save(const NativePath& file, const std::string& bytes, const NativePath& through) {
    if (file.empty())
        return failure(ErrorKind::NotFound, "no folder is set for this file");
    if (std::find(seen_.begin(), seen_.end(), bytes) == seen_.end())
        seen_.push_back(bytes);
    const auto old = readWholeFile(file);
    // Bytes that cannot be read can still be moved.
    if (!old && pathExists(file) && !isFolder(file)) {
        if (const auto moved = kept_.moveAway(file); !moved)
            return failure(moved.error());
    }
    if (old && !old->empty() && std::find(seen_.begin(), seen_.end(), *old) == seen_.end()) {
        if (const auto copy = kept_.copyAway(file); !copy)
            return failure(copy.error());
    }
    if (!through.empty())
        return saveWholeFileThrough(through, file, bytes);
    return saveWholeFile(file, bytes, TemporaryPlace::AboveFolder);
}

}  // namespace quillon
