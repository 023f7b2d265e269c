// SPDX-License-Identifier: MIT
#pragma once

// How well the second opinion, by head and end together, tells cut files from whole ones, judged on whole files.

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/file.h"
#include "platform/result.h"

namespace quillon {

/// Of one format.
struct EndScore {
    std::size_t files = 0;
    std::size_t doubted = 0;    ///< as they are
    std::size_t cuts = 0;       ///< tried, on files that were not doubted
    std::size_t foundHead = 0;  ///< of them, those that the head tells
    std::size_t found = 0;      ///< of them, those that head and end tell together
};

struct EndScores {
    std::map<std::string, EndScore> formats;  ///< of files whose head or end is known, by the name of the format
    std::vector<std::string> doubted;         ///< a line for each file that is doubted as it is
    std::size_t unread = 0;                   ///< files that could not be read

    [[nodiscard]] std::size_t files() const;
};

/// Judges every regular file below the folder as it is, and `cutsEach` times as if it ended earlier, at places spread
/// by chance but the same at each run. Folders that cannot be read are passed over.
[[nodiscard]] EndScores scoreEnds(const NativePath& folder, std::size_t cutsEach = 20);

/// `| Format | Files | Doubted | Cuts found by the head | Cuts found with the end |`.
[[nodiscard]] std::string endTable(const EndScores& scores);

}  // namespace quillon
