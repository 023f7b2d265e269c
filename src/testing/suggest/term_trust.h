// SPDX-License-Identifier: MIT
#pragma once

// How far a run of bytes in a head can be believed to belong to a format. Only what one head shows; how many files
// share the run is counted elsewhere.

#include <array>
#include <cstddef>

#include "platform/source_files.h"

namespace quillon {

/// The longest run that is considered: more bytes tell nothing more, and long runs overfit.
inline constexpr std::size_t kLongestRun = 24;

/// Prices of the runs of one head, as it was read.
class TermTrust {
public:
    explicit TermTrust(const HeaderBytes& head);

    /// The chance from 0 to 1 that another healthy file has the run [offset, offset + length) too. Letters keep it
    /// high, counts, times and lengths lower it, and so does each step away from the start of the file. `files`: how
    /// many are known to have it, from 1; the more, the less of it is an accident.
    [[nodiscard]] double kept(std::size_t offset, std::size_t length, std::size_t files) const;
    /// The chance from 0 to 1 that a file of another kind has it, before any was looked at.
    [[nodiscard]] double shared(std::size_t offset, std::size_t length) const;
    /// The same for a run that may stand anywhere in a head.
    [[nodiscard]] double sharedAnywhere(std::size_t offset, std::size_t length) const;
    /// False for what is never a term: one byte repeated, blanks at an end, and fewer than two bytes that say anything,
    /// except at the start of the file, where a version or kind among zeros may be all that a format has for a mark.
    [[nodiscard]] bool mayBeTerm(std::size_t offset, std::size_t length) const;
    /// Whether the byte is part of a word: three or more letters in a row.
    [[nodiscard]] bool isWord(std::size_t offset) const { return word_[offset]; }

    /// How much a run tells, in bits.
    [[nodiscard]] double bits(std::size_t offset, std::size_t length) const;

private:
    [[nodiscard]] double price(std::size_t offset) const;
    [[nodiscard]] double startPrice(std::size_t offset) const;
    [[nodiscard]] double endPrice(std::size_t end) const;
    [[nodiscard]] std::size_t placeInWord(std::size_t offset) const;
    void findWords();

    HeaderBytes head_;
    std::array<bool, kHeaderBytes> word_{};
    std::array<double, kHeaderBytes + 1> prices_{};  // summed up to a byte
    std::array<double, kHeaderBytes + 1> bits_{};    // summed up to a byte
};

}  // namespace quillon
