// SPDX-License-Identifier: MIT
#pragma once

// The heads of a job's files as its evidence keeps them, by the whole paths of the files.

#include <optional>
#include <string>
#include <string_view>

#include "evidence/evidence_reader.h"
#include "job/evidence_facts.h"

namespace quillon {

class KeptOfJob {
public:
    /// `listFolder`: where the evidence of jobs stands. Without it, without a job, and where the evidence cannot be
    /// read no head is known.
    KeptOfJob(const NativePath& listFolder, const std::string& job);

    /// None: there is no such file, or its head was not kept, or its digest does not vouch for it.
    [[nodiscard]] std::optional<FileHead> head(std::string_view path);

private:
    std::optional<EvidenceReader> reader_;
    std::optional<RowDescriber> places_;
    EvidenceRow row_;
};

}  // namespace quillon
