// SPDX-License-Identifier: MIT
#pragma once

// What the evidence of a job knows of bad sectors, in one line for a person.

#include <cstdint>
#include <optional>
#include <string>

#include "evidence/evidence_reader.h"

namespace quillon {

struct SectorSummary {
    std::int64_t known = 0;         ///< files of which is known whether their medium gave all bytes
    std::int64_t hurt = 0;          ///< of these, hold bytes that it did not give
    std::int64_t unreadBytes = 0;   ///< how many
    std::int64_t judged = 0;        ///< files that count for the quality: the base of the next one
    std::int64_t goodAndWhole = 0;  ///< of these, recovered ones that are not known to be hurt

    friend bool operator==(const SectorSummary&, const SectorSummary&) = default;
};

/// None when no file was looked at for bad sectors.
[[nodiscard]] Result<std::optional<SectorSummary>> readSectorSummary(EvidenceReader& evidence);

/// "12 files of 43,016 hold unread sectors, 188.0 Kb in all"; `bytes` below 0 counts as 0.
[[nodiscard]] std::string unreadSectorsText(std::int64_t hurt, std::int64_t known, std::int64_t bytes);

/// The same, and "Good and whole as far as known: 97.20%" in a second line where something could be judged.
[[nodiscard]] std::string summaryText(const SectorSummary& summary);

}  // namespace quillon
