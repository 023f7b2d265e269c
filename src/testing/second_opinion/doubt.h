// SPDX-License-Identifier: MIT
#pragma once

// What the head of a file and the file's size tell against it. A doubt never changes a grade.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "testing/second_opinion/bytes.h"

namespace quillon {

enum class DoubtKind {
    Cut,             ///< the head asks for more bytes than the file has
    Longer,          ///< data behind the declared end, in a format where that is rare
    Inconsistent,    ///< a check sum, an offset, a count or a version contradicts the rest of the head
    EmptyContainer,  ///< the head declares no content
    NoIndex,         ///< media data without the index that tells what they are
};

/// "cut", "longer", "inconsistent", "empty-container", "no-index".
[[nodiscard]] std::string_view doubtKindName(DoubtKind kind);

struct Doubt {
    DoubtKind kind = DoubtKind::Cut;
    std::uint64_t needed = 0;  ///< Cut: at least this many bytes belong to the file; Longer: this many; others: 0
    std::string sentence;      ///< in English, ASCII, one sentence with its full stop

    bool operator==(const Doubt&) const = default;
};

/// Nothing: there is no reason for a doubt, or nobody can tell.
using Opinion = std::optional<Doubt>;

/// Sizes are at most `kLargestSize`. A cut when `needed` is known and the file is smaller by more than `slack` bytes,
/// which healthy files of careless writers may lack. `who`: what asks for the bytes, as the beginning of a sentence:
/// "The RIFF header".
[[nodiscard]] Opinion needs(Number needed, std::uint64_t size, std::string_view who, std::uint64_t slack = 0);

/// Longer, when more than `slack` bytes follow behind the declared end.
[[nodiscard]] Opinion endsAt(Number end, std::uint64_t size, std::string_view who, std::uint64_t slack = 0);

/// A file that consists of whole units, such as pages, and whose last one is not whole: a cut.
[[nodiscard]] Opinion wholeUnits(std::uint64_t unit, std::uint64_t size, std::string_view who);

[[nodiscard]] Opinion inconsistent(std::string_view sentence);
[[nodiscard]] Opinion emptyContainer(std::string_view sentence);
[[nodiscard]] Opinion noIndex(std::string_view sentence);

}  // namespace quillon
