// SPDX-License-Identifier: MIT
#pragma once

// What a term would let through, told before it is stored. It advises and forbids nothing.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "testing/term_file.h"

namespace quillon {

/// Heads of files that jobs of this bench have kept, folded (foldHeader), the newest first.
struct BenchHeads {
    struct Kind {
        std::uint32_t extension = 0;  ///< its place in `extensions`
        std::uint16_t job = 0;        ///< its place in `jobs`
        bool good = false;            ///< its header was right
    };
    std::vector<HeaderBytes> heads;
    std::vector<Kind> kinds;              ///< of each head
    std::vector<std::string> extensions;  ///< UTF-8, lower case
    std::vector<std::string> jobs;        ///< IDs
};

/// What is known of one record that may be stored.
struct FalseAlarm {
    bool isTerm = false;     ///< it can meet anything at all
    std::size_t length = 0;  ///< bytes
    std::size_t hits = 0;    ///< of the good files of other extensions
    std::size_t good = 0;    ///< how many of these there are
    std::string kinds;       ///< the extensions that are met, most frequent first: "3 docx, 1 xlsx"
    std::size_t listedHits = 0;
    std::size_t listed = 0;
    std::vector<std::string> warnings;  ///< each with its reason, UTF-8

    friend bool operator==(const FalseAlarm&, const FalseAlarm&) = default;
};

/// `extension`: lower case, whose files are no false alarms; empty for a term that counts whatever the extension.
/// `listed`: heads that the term is wanted for, folded. `rows`: the records that it would stand beside; `ownRow` of
/// them is the one that it replaces, or -1.
[[nodiscard]] FalseAlarm judgeTerm(const HeaderTerm& term, const std::string& extension, const BenchHeads& bench,
                                   const std::vector<HeaderBytes>& listed, const std::vector<HeaderTerm>& rows,
                                   int ownRow);

/// One line: "4 bytes; 12 of 12 listed files; 3 of 40,116 good files of other extensions: 3 docx". Warnings come first.
[[nodiscard]] std::string falseAlarmText(const FalseAlarm& alarm);

/// True when every head that `term` meets is met by `other`, too.
[[nodiscard]] bool isCoveredBy(const CompiledTerm& term, const CompiledTerm& other);

}  // namespace quillon
