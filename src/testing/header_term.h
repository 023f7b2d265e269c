// SPDX-License-Identifier: MIT
#pragma once

// One term of the header database, compiled for matching: docs/formats/term-file.md and rule-lists.md tell the records.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/source_files.h"

namespace quillon {

/// Decodes hexadecimal digits in pairs to page bytes. A pair that is not hexadecimal gives the byte 0; a single last
/// digit gives its own value. "4D5A" -> "MZ", "4G" -> "\0", "415" -> "A\x05".
[[nodiscard]] std::string hexToText(std::string_view hex);

/// Lower-cases a header by the page's table, for matching.
void foldHeader(HeaderBytes& head);

/// What a record does with a header.
enum class MatchResult {
    No,
    Yes,
    Defective,  ///< the record lacks its term: the comparison itself fails and counts as a hit
    GivenUp,    ///< the position is not one (below 1 after rounding): the whole search ends
};

/// One record, decoded and folded once.
class CompiledTerm {
public:
    /// A line of a term file. The position is read leniently; a missing type counts as "H".
    [[nodiscard]] static CompiledTerm fromTermFileLine(std::string_view line);
    /// A line of the common list. The position must be a plain number, otherwise it counts as 0; a missing type counts
    /// as "H".
    [[nodiscard]] static CompiledTerm fromCommonLine(std::string_view line);
    /// A term as the term search has it, with its position already read.
    [[nodiscard]] static CompiledTerm fromParts(double position, std::string_view term, bool hexadecimal);

    /// `folded` is a header behind `foldHeader`. Position 0 means anywhere; a position counts from 1. Both sides are
    /// lower-cased, also for a hexadecimal term, so that the term 41 matches the byte 61.
    [[nodiscard]] MatchResult match(const HeaderBytes& folded) const;

    /// True when the record's position is 0.
    [[nodiscard]] bool isAnywhere() const { return place_ == Place::Anywhere; }

    /// Where a record with a fixed position looks, counted from 0; none of any other record, and none where the term
    /// would not fit into a header.
    [[nodiscard]] std::optional<std::size_t> fixedOffset() const {
        return place_ == Place::Fixed ? std::optional<std::size_t>(offset_) : std::nullopt;
    }

    /// The bytes that it looks for, lower-cased.
    [[nodiscard]] std::string_view folded() const { return folded_; }

private:
    enum class Place { Anywhere, Fixed, Nowhere, Defective, NotAPosition };

    Place place_ = Place::Defective;
    std::uint32_t offset_ = 0;  // counted from 0, for Place::Fixed
    std::string folded_;
};

/// The terms of one extension as they were at one moment: whoever holds them keeps them.
using SharedTerms = std::shared_ptr<const std::vector<CompiledTerm>>;

}  // namespace quillon
