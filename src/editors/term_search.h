// SPDX-License-Identifier: MIT
#pragma once

// Looks for one candidate term in the first 512 bytes of many files. Matching is the header test's own; sizes and
// attributes are not looked at, so a shorter file is searched in its bytes and the blanks behind them.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/source_files.h"

namespace quillon {

struct CandidateTerm {
    std::string position;  ///< as typed: leading digits count, anything else is 0, and 0 is anywhere
    std::string term;      ///< UTF-8 text, or hexadecimal digits in pairs
    bool hexadecimal = false;
};

struct SearchCounts {
    std::int32_t good = 0;  ///< files that hold the term
    std::int32_t bad = 0;   ///< files that do not
};

/// Counts the files that hold the term, both sides lower-cased. `files`: paths in list form. No value when a file
/// cannot be opened: the whole search is dropped. A position below 1 and not 0 matches nothing.
[[nodiscard]] std::optional<SearchCounts> searchTerm(const CandidateTerm& candidate,
                                                     const std::vector<std::u16string>& files, HeadReader& heads);

/// Where the term really stands in the file in view: its first position there, from 1, when it does not occur from the
/// typed position on but does before it. Case-sensitive, unlike the counting. No value when the position is 0 or needs
/// no repair: a hit behind the typed position leaves it alone.
[[nodiscard]] std::optional<int> repairedPosition(const CandidateTerm& candidate, const HeaderBytes& inView);

}  // namespace quillon
