// SPDX-License-Identifier: MIT
#pragma once

// The terms that come into question, each with its worth. For the sources of this folder only.

#include <cstdint>
#include <string>
#include <vector>

#include "testing/header_term.h"
#include "testing/suggest/term_suggestion.h"

namespace quillon {

struct Candidate {
    std::size_t position = 0;  ///< from 1; 0: anywhere
    std::string bytes;         ///< as the head has them that it was found in
    double kept = 0;           ///< the chance that another healthy file of its variant has it
    double falseShare = 0;     ///< of the files of other extensions, as far as they tell
    double worth = 0;          ///< by itself

    [[nodiscard]] CompiledTerm compiled() const;
};

/// Heads in the order of `raw`, folded, and those that the candidates are held against.
struct CandidateHeads {
    std::vector<HeaderBytes> raw;
    std::vector<HeaderBytes> listed;
    std::vector<HeaderBytes> others;
    std::string extension;  ///< of the listed files, in lower case; may be empty
};

/// What a share of the other files takes from the worth of the first term, and of one behind it: that one is looked at
/// when the first did not do.
[[nodiscard]] double falsePrice(double share);
[[nodiscard]] double laterFalsePrice(double share);

/// The best candidates that the head of this listed file has, best first.
[[nodiscard]] std::vector<Candidate> candidatesOf(const CandidateHeads& heads, std::size_t pivot);

}  // namespace quillon
