// SPDX-License-Identifier: MIT
#pragma once

// What the evidence of a job says that was made of several: whether they go together, and its table `job`. For the
// sources of this folder only.

#include <string>
#include <vector>

#include "answers/merge_input.h"
#include "evidence/evidence_store.h"

namespace quillon {

/// Parts of a job must be all of its parts, each once, made by equal rules and options. Whole jobs go with each other,
/// and never with parts.
[[nodiscard]] Result<void> checkTogether(const std::vector<MergeInput>& jobs);
[[nodiscard]] Result<void> checkRules(std::vector<MergeInput>& jobs);

/// The deepest folder that all sources lie in; bytes, without "/" behind it.
[[nodiscard]] std::string commonSource(const std::vector<MergeInput>& jobs);

/// Everything of the table `job` but the facts of the list; and the messages of the grades, which are the first job's.
[[nodiscard]] Result<void> writeMergedJob(EvidenceStore& store, const std::string& id, std::vector<MergeInput>& jobs);

/// What went wrong with folders, in the order in which one job would have met it. `source`: the common one.
[[nodiscard]] Result<void> writeFolderErrors(EvidenceStore& store, const std::string& source,
                                             std::vector<MergeInput>& jobs);

}  // namespace quillon
