// SPDX-License-Identifier: MIT
#include "testing/shared_copy.h"

#include "platform/folders.h"
#include "platform/whole_file.h"

namespace quillon {

Result<void> takeSharedCopy(const NativePath& shared, const NativePath& local, KeptFiles& kept) {
    const auto theirs = readWholeFile(shared);
    if (!theirs)
        return failure(theirs.error());
    const auto ours = readWholeFile(local);
    if (ours && *ours == *theirs)
        return {};
    if (pathExists(local)) {
        if (const auto copy = kept.copyAway(local); !copy)
            return failure(copy.error());
    }
    return copyDataFile(shared, local);
}

}  // namespace quillon
