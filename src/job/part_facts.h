// SPDX-License-Identifier: MIT
#pragma once

// What the evidence of a part of a job says beside what every evidence does: which part it is, and all that the parts
// of one job must have in common for their lists to be one.

#include "app/installation.h"
#include "app/surroundings.h"
#include "evidence/evidence_reader.h"
#include "evidence/evidence_store.h"
#include "job/job_state.h"

namespace quillon {

struct PartFacts {
    JobPart part;
    std::string token;          ///< of the part's list; empty for one without files
    std::int64_t skipList = 0;  ///< digest of the skip list; 0 when it was not asked
    std::string dates;          ///< a fixed moment as this computer writes dates: its locale and its time zone
};

/// Of the job that runs, which is a part. `token`: of its list.
[[nodiscard]] PartFacts partFacts(const JobOptions& options, const Paths& paths, const DateTexts& dates,
                                  std::u16string_view token);

[[nodiscard]] Result<void> writePartFacts(EvidenceStore& store, const PartFacts& facts);
/// None when the evidence is that of a whole job.
[[nodiscard]] Result<std::optional<PartFacts>> readPartFacts(EvidenceReader& evidence);

}  // namespace quillon
