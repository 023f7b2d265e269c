// SPDX-License-Identifier: MIT
#pragma once

// Terms for a term file, found in the heads of files: the runs of bytes that many of them share at one position, or
// anywhere, and that other files lack.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/source_files.h"

namespace quillon {

/// At most so many terms are suggested.
inline constexpr std::size_t kMostSuggestions = 10;

/// Heads as they were read; what a file did not give is blank.
struct SuggestionHeads {
    std::vector<HeaderBytes> listed;  ///< of the files that a term is wanted for
    std::vector<HeaderBytes> good;    ///< of good files of the same extension; may be empty
    std::vector<HeaderBytes> others;  ///< of files of other extensions; may be empty
    /// For each of `others` the place of its extension in `extensions`; empty where the sentence need not name them.
    std::vector<std::uint32_t> otherExtensions;
    std::vector<std::string> extensions;  ///< UTF-8
    std::string extension;                ///< of the listed files, in lower case, UTF-8; may be empty
};

/// A record that may be added as it is, and what it would meet.
struct TermSuggestion {
    std::size_t position = 0;  ///< from 1; 0: anywhere
    std::string term;          ///< text, or hexadecimal digits in upper case
    char type = 'H';           ///< 'T' or 'H', as in a term file
    std::size_t hits = 0;      ///< of the listed files
    std::size_t listed = 0;
    std::size_t falseHits = 0;  ///< of the files of other extensions
    std::size_t others = 0;
    std::size_t goodHits = 0;  ///< of the good files of this extension
    std::size_t good = 0;
    std::string sentence;  ///< UTF-8: "all 212 files; also 3 of 40116 others: 3 docx"

    friend bool operator==(const TermSuggestion&, const TermSuggestion&) = default;
};

/// At most kMostSuggestions, best first; none where the files have nothing in common. Several variants give several
/// terms. The same heads in the same order give the same terms. Counts are those of the header test: letters fold.
[[nodiscard]] std::vector<TermSuggestion> suggestTerms(SuggestionHeads heads);

}  // namespace quillon
