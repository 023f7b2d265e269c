// SPDX-License-Identifier: MIT
#pragma once

// The heads that terms are suggested from, out of the evidence of jobs.

#include <optional>
#include <set>
#include <string>

#include "answers/job_files.h"
#include "testing/suggest/term_suggestion.h"

namespace quillon {

/// What terms are wanted for.
struct SuggestionWish {
    std::string extension;  ///< lower case, without a point
    /// Names below the source, as `quillon-list files` writes them: bytes. None: the corrupt and unknown files of the
    /// extension. Named files of other extensions are passed over.
    std::optional<std::set<std::string>> paths;
};

/// Adds the heads that the evidence of a job holds. NotFound: the job has none, only its list. PathAccess: it cannot be
/// read. Files without a head, and files shorter than one, are passed over: no term ever meets them.
[[nodiscard]] Result<void> addHeads(const JobFiles& job, const SuggestionWish& wish, SuggestionHeads& heads);

}  // namespace quillon
