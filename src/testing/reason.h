// SPDX-License-Identifier: MIT
#pragma once

// Why a tested file is not good, as far as its head alone tells: one row of one table for each reason.

#include <array>
#include <cstddef>
#include <cstdint>

namespace quillon {

/// In the order in which they are looked for: the first that holds is the reason.
enum class Reason : std::uint8_t {
    BadSector,     ///< the marker that an imaging tool writes where a disk could not be read
    ZeroFilled,    ///< nothing but zero bytes
    Fill,          ///< one byte or a short pattern again and again
    LeadingZeros,  ///< zeros, and data behind them
    Shifted,       ///< a term of its own extension, at another position
    OtherFormat,   ///< the header of another format
    Text,          ///< readable text
    Noise,         ///< encrypted, compressed, or the middle of something
    Structured,    ///< none of these
    Count          ///< no reason: how many there are
};

inline constexpr std::size_t kReasonCount = static_cast<std::size_t>(Reason::Count);

struct ReasonRow {
    Reason reason;
    const char* name;        ///< for evidence and scripts
    const char* text;        ///< for people
    const char* conclusion;  ///< what a technician concludes from it
};

// clang-format off
inline constexpr std::array<ReasonRow, kReasonCount> kReasons{{
    {Reason::BadSector, "bad-sector", "marked as unreadable by an imaging tool",
     "The imaging tool could not read the beginning of the file and wrote its marker there. Read the disk "
     "again at that place."},
    {Reason::ZeroFilled, "zero-filled", "nothing but zero bytes",
     "Nothing of the file was recovered: the sectors were erased, trimmed, never written or left out by "
     "the imaging tool."},
    {Reason::Fill, "fill", "one byte or a short pattern again and again",
     "An imaging tool, a wiping tool or a formatting filled the place of the file. Read the disk again, or "
     "take it for lost."},
    {Reason::LeadingZeros, "leading-zeros", "begins with zero bytes, with data behind them",
     "The first sector or cluster is missing and the data behind it is there: worth a repair with a header "
     "of the same format."},
    {Reason::Shifted, "shifted", "its own header, at another position",
     "The header stands at another place: wrong partition offset, cluster size or RAID order, or bytes put "
     "in front."},
    {Reason::OtherFormat, "other-format", "the header of another format",
     "The content is that of another file: a wrong name, clusters that were overwritten, or a wrong file "
     "system reconstruction."},
    {Reason::Text, "text", "readable text",
     "Text where a binary format was expected: a wrong name, an error page, or clusters of another file."},
    {Reason::Noise, "noise", "looks like noise: encrypted, compressed or the middle of something",
     "Encrypted, compressed or the middle of another file: look for ransomware, disk encryption or a wrong "
     "start cluster."},
    {Reason::Structured, "structured", "structured, but unknown",
     "Data of a kind that no rule knows: perhaps a variant of the format. Look at it, and teach its term "
     "if it is whole."},
}};
// clang-format on

[[nodiscard]] constexpr const ReasonRow& reasonRow(Reason reason) {
    return kReasons[static_cast<std::size_t>(reason)];
}

}  // namespace quillon
