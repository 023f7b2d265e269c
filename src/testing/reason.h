// SPDX-License-Identifier: MIT
#pragma once

// Why a tested file is not good, as far as its first bytes tell. The reason stands beside the grade and never changes
// it.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "testing/common_list.h"
#include "testing/header_term.h"
#include "testing/term_index.h"

namespace quillon {

/// In the order in which they are looked for: the first one that holds is the reason.
enum class ReasonKind : std::uint8_t {
    BadSector,     ///< the marker of an imaging tool
    ZeroFilled,    ///< nothing but zero bytes
    Fill,          ///< one byte or one short pattern, again and again
    LeadingZeros,  ///< zeros at the beginning, data behind them
    Shifted,       ///< a term of its own extension stands at another position
    OtherFormat,   ///< the header of another format
    Text,          ///< readable text
    Noise,         ///< encrypted, compressed or the middle of something
    Structured,    ///< none of these: data with a structure that no rule knows
    Count          ///< no reason: how many there are
};

inline constexpr std::size_t kReasonCount = static_cast<std::size_t>(ReasonKind::Count);

struct ReasonRow {
    ReasonKind kind;
    const char* name;        ///< as evidence, lists of figures and options have it
    const char* caption;     ///< as screens and reports show it
    const char* conclusion;  ///< what a technician concludes from it
};

inline constexpr std::array<ReasonRow, kReasonCount> kReasons{{
    {ReasonKind::BadSector, "bad-sector", "Bad sector marker",
     "The imaging tool could not read the beginning of the file and wrote its marker there. Read the disk again at that "
     "place."},
    {ReasonKind::ZeroFilled, "zero-filled", "Zeros only",
     "Nothing of the file was recovered: the sectors were erased, trimmed, never written or left out by the imaging tool."},
    {ReasonKind::Fill, "fill", "Fill pattern",
     "An imaging tool, a wiping tool or a formatting filled the place of the file. Read the disk again, or take it for lost."},
    {ReasonKind::LeadingZeros, "leading-zeros", "Begins with zeros",
     "The first sector or cluster is missing and the data behind it is there: worth a repair with a header of the same format."},
    {ReasonKind::Shifted, "shifted", "Shifted",
     "The header stands at another place: wrong partition offset, cluster size or RAID order, or bytes put in front."},
    {ReasonKind::OtherFormat, "other-format", "Another format",
     "The content is that of another file: a wrong name, clusters that were overwritten, or a wrong file system reconstruction."},
    {ReasonKind::Text, "text", "Readable text",
     "Text where a binary format was expected: a wrong name, an error page, or clusters of another file."},
    {ReasonKind::Noise, "noise", "Noise",
     "Encrypted, compressed or the middle of another file: look for ransomware, disk encryption or a wrong start cluster."},
    {ReasonKind::Structured, "structured", "Unknown structure",
     "Data of a kind that no rule knows: perhaps a variant of the format. Look at it, and teach its term if it is whole."},
}};

[[nodiscard]] constexpr const ReasonRow& reasonRow(ReasonKind kind) {
    return kReasons[static_cast<std::size_t>(kind)];
}

struct Reason {
    ReasonKind kind = ReasonKind::Structured;
    std::string detail;  ///< what was found and where, in UTF-8; empty where the kind says it all

    friend bool operator==(const Reason&, const Reason&) = default;
};

/// Fewer zeros than this at the beginning may be a length or a count of a format.
inline constexpr std::size_t kLeastLeadingZeros = 16;

/// `head`: the bytes that could be read, at most kHeaderBytes. `own`: the terms of the file's extension, null when it
/// has no term file. A head of no bytes is Structured.
[[nodiscard]] Reason reasonOf(std::span<const char> head, const std::vector<CompiledTerm>* own,
                              const CommonList& common, const TermIndex& index);

}  // namespace quillon
