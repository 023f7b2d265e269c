// SPDX-License-Identifier: MIT
#pragma once

// Which files of a job that goes on with its earlier run need not be copied again: that run has copied them, as its
// evidence tells, or its notes in the target where it was killed; the source still has the size and the time that were
// recorded, and what stands in the target gives the recorded check sum.

#include <functional>
#include <optional>
#include <string>

#include "app/file_list.h"
#include "job/earlier_run.h"
#include "job/evidence_facts.h"
#include "job/older_copies.h"
#include "platform/copy_terms.h"

namespace quillon {

class EarlierCopies {
public:
    /// None where there is no earlier run of this source beside the list, or the target has no check sums of the job.
    [[nodiscard]] static std::optional<EarlierCopies> find(const NativePath& list, const NativePath& source,
                                                           const NativePath& target, const std::string& jobId);

    /// Whether a check sum stands for the copy: without one the file is to be copied. Reads nothing.
    [[nodiscard]] bool isKnown(const std::string& target) const { return copies_.isKnown(target); }

    /// What is known of the copy that stands at `target`; none where the file is to be copied, as one of which not all
    /// could be read is. Reads the copy, and gives that up with none where `goOn` says no.
    [[nodiscard]] std::optional<CopyFacts> standing(const ListRow& row, const std::string& target,
                                                    const std::function<bool()>& goOn);

private:
    EarlierCopies(EarlierRun run, const NativePath& source, OlderCopies copies)
        : run_(std::move(run)), describer_(source), copies_(std::move(copies)) {}

    [[nodiscard]] std::optional<CopyFacts> toldOf(std::string_view path, const std::string& target,
                                                  const FileStamp& source);

    EarlierRun run_;
    RowDescriber describer_;
    OlderCopies copies_;
    EvidenceRow row_;
};

}  // namespace quillon
