// SPDX-License-Identifier: MIT
#pragma once

// How well the second opinion tells cut files from whole ones.

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "dbcheck/samples.h"

namespace quillon {

/// What the second opinion says of the samples of one format, and of the same samples with smaller sizes.
struct DoubtScore {
    std::size_t samples = 0;
    std::size_t doubted = 0;  ///< with their true size
    std::size_t cuts = 0;     ///< tried, on samples that were not doubted
    std::size_t found = 0;    ///< of them, those that were doubted

    /// In percent; 100 when nothing was cut.
    [[nodiscard]] double foundPercent() const;
};

struct DoubtScores {
    std::map<std::string, DoubtScore> formats;  ///< by the name that the second opinion gives them
    std::vector<std::string> doubted;           ///< a line for each sample that is doubted with its true size
    std::size_t samples = 0;                    ///< of all formats, unknown ones too
    std::size_t odd = 0;                        ///< left out as odd, whether doubted or not
    std::size_t oddDoubted = 0;                 ///< of them, those that are doubted

    /// In percent of all samples whose format is known; 0 when there are none.
    [[nodiscard]] double doubtedPercent() const;
};

/// Judges each sample with its true size, and with `cutsEach` sizes between 1 and that, spread by chance but the same
/// at each run. `odd`: paths of samples that are truly cut or not what a healthy file is, with the reason; they are
/// counted apart and not cut again.
[[nodiscard]] DoubtScores scoreDoubts(const std::vector<Sample>& samples,
                                      const std::map<std::string, std::string>& odd = {}, std::size_t cutsEach = 20);

/// Reads such a list: a table with the columns `path` and `reason`.
[[nodiscard]] Result<std::map<std::string, std::string>> readOddSamples(const NativePath& file);

/// A table of formats, best known first by name: `| Format | Samples | Doubted | Cuts found |`.
[[nodiscard]] std::string doubtTable(const DoubtScores& scores);

}  // namespace quillon
