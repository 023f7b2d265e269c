// SPDX-License-Identifier: MIT
#pragma once

// What a copy of a finished job's files will need and meet, and what came of one, for whoever starts it.

#include "answers/copy_look.h"
#include "answers/file_copies.h"

namespace quillon {

struct CopyOutlook {
    std::int64_t files = 0;
    std::int64_t bytes = 0;
    std::optional<std::uint64_t> freeBytes;  ///< on the target, for this user
    std::vector<std::string> findings;       ///< see CopyLook
};

/// Looks at every file that is asked for, and at the target; nothing is copied. Where `goOn` says no it is of the files
/// so far.
[[nodiscard]] Result<CopyOutlook> outlookOf(FileCopies& copies, const NativePath& target,
                                            const FileCopies::GoOn& goOn = {});

/// "3 files, 1,802 bytes; 1,000,000 bytes are free on the target".
[[nodiscard]] std::string needText(const CopyOutlook& outlook);

/// "2 files copied, 1,202 bytes; 1 failed".
[[nodiscard]] std::string sumsText(const CopySums& sums);

}  // namespace quillon
