// SPDX-License-Identifier: MIT
#pragma once

// Many writers and readers of one term file, as workstations that share a database: a reader has to see one whole
// version, whichever.

#include <cstddef>
#include <string>

#include "platform/file.h"

namespace quillon::test {

struct SaveStorm {
    std::size_t saves = 200;
    std::size_t reads = 2000;
    unsigned writers = 4;
    unsigned readers = 4;
    /// Told apart from the versions of other processes that save the same file at the same time.
    unsigned process = 0;
};

struct StormCounts {
    std::size_t saved = 0;
    std::size_t refused = 0;  ///< saves that reported a failure, and were tried again
    std::size_t whole = 0;    ///< reads of one whole version
    std::size_t absent = 0;   ///< reads that failed
    std::size_t empty = 0;
    std::size_t torn = 0;  ///< of several versions, or cut
    std::string refusal;   ///< what one of the refused saves said
};

/// Saves and reads `file` from all threads until both counts are reached. The file exists from the start.
[[nodiscard]] StormCounts runSaveStorm(const NativePath& file, const SaveStorm& storm);

}  // namespace quillon::test
