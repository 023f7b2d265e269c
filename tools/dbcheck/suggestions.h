// SPDX-License-Identifier: MIT
#pragma once

// How good suggested terms are: learned from two thirds of an extension's samples, tried on the last third.

#include <string>
#include <vector>

#include "dbcheck/header_database.h"
#include "dbcheck/samples.h"
#include "testing/suggest/term_suggestion.h"

namespace quillon {

/// The first terms of one extension, or of all of them together.
struct SuggestedScore {
    std::size_t heldBack = 0;       ///< samples that no term was learned from
    std::size_t accepted = 0;       ///< of them, by the first term
    std::size_t acceptedThree = 0;  ///< by one of the first three
    std::size_t others = 0;         ///< samples of other extensions, families left out
    std::size_t falseFirst = 0;     ///< of them, accepted by the first term
    std::size_t falseThree = 0;     ///< by one of the first three

    /// In percent; 0 where there are none.
    [[nodiscard]] double acceptedPercent() const;
    [[nodiscard]] double acceptedThreePercent() const;
    [[nodiscard]] double falsePercent() const;
    [[nodiscard]] double falseThreePercent() const;

    SuggestedScore& operator+=(const SuggestedScore& other);
};

struct ExtensionSuggestions {
    std::string extension;
    SuggestedScore score;               ///< summed over the three thirds
    std::vector<TermSuggestion> first;  ///< the first term of each third that was held back
};

/// Every extension with a term file and at least three samples that it accepts. Each third is held back once: every
/// third sample in the order of the table.
[[nodiscard]] std::vector<ExtensionSuggestions> scoreSuggestions(const HeaderDatabase& database,
                                                                 const std::vector<Sample>& samples);

/// The mean of the extensions' shares, in percent: each extension counts alike.
[[nodiscard]] double meanPercent(const std::vector<ExtensionSuggestions>& all,
                                 double (SuggestedScore::*percent)() const);

/// A line for each extension and a last one with the means.
[[nodiscard]] std::string suggestionTable(const std::vector<ExtensionSuggestions>& all);

}  // namespace quillon
