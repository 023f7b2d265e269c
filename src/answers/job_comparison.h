// SPDX-License-Identifier: MIT
#pragma once

// Two attempts at one case, file by file: by the paths below their sources.

#include <array>
#include <functional>
#include <string>

#include "answers/job_answers.h"

namespace quillon {

/// What became of a file from the first job to the second.
enum class Change {
    Gained,  ///< only the second job has it
    Lost,    ///< only the first job has it
    Moved,   ///< under another path, with the same size and head (where no head is known: the same size and name)
    Better,
    Worse,
    Same,
    Count  ///< no change: how many there are
};
inline constexpr std::array<const char*, static_cast<std::size_t>(Change::Count)> kChangeNames{
    "gained", "lost", "moved", "better", "worse", "same"};

struct ChangedFile {
    Change change = Change::Same;
    std::string path;    ///< bytes; of the second job, or of the first where that alone has it
    std::string before;  ///< bytes; the path in the first job, of a file that moved
    std::optional<Grade> gradeBefore;
    std::optional<Grade> gradeNow;
    std::string extension;
};

struct ComparisonSides {
    JobAnswers& first;
    JobAnswers& second;
    std::string stripFirst;  ///< a folder below the source (bytes) that is cut off; files beside it are left out
    std::string stripSecond;
};

/// How many files changed how.
using ChangeCounts = std::array<std::int64_t, static_cast<std::size_t>(Change::Count)>;

/// Hands each file that changed to `take`: those of the second job by path, then the lost ones by path. Files that are
/// the same are counted. Of several rows of a job with one path the last one counts.
[[nodiscard]] Result<ChangeCounts> compareJobs(const ComparisonSides& sides,
                                               const std::function<void(const ChangedFile&)>& take);

}  // namespace quillon
