// SPDX-License-Identifier: MIT
#pragma once

// Finds why a tested file is not good, from its first bytes alone. The reason stands beside the grade and never changes
// it.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "testing/common_list.h"
#include "testing/header_term.h"
#include "testing/reason.h"
#include "testing/sector_markers.h"
#include "testing/term_index.h"

namespace quillon {

struct FoundReason {
    Reason reason = Reason::Structured;
    std::string detail;  ///< what was found and where, in UTF-8; empty where the reason says it all

    friend bool operator==(const FoundReason&, const FoundReason&) = default;
};

/// Fewer zeros than this at the beginning may be a length or a count of a format.
inline constexpr std::size_t kLeastLeadingZeros = 16;

/// The first reason that holds, in the order of the enumeration. `head`: the bytes that could be read, at most
/// kHeaderBytes. `own`: the terms of the file's extension, null when it has no term file. A head of no bytes is
/// Structured. The detail of a bad sector is the name of its marker.
[[nodiscard]] FoundReason findReason(std::string_view head, const SectorMarkers& markers,
                                     const std::vector<CompiledTerm>* own, const CommonList& common,
                                     const TermIndex& index);

}  // namespace quillon
