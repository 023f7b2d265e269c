// SPDX-License-Identifier: MIT
#pragma once

// The lint of records: term files and common headers, whose lines begin alike. docs/formats tells both formats; the
// lint asks for the strict form that the editors write, since the tolerance of the readers hides slips.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "dbcheck/problem.h"

namespace quillon {

/// A term at a fixed position has at least this many bytes, and
inline constexpr std::size_t kLeastFixedBytes = 2;
/// one that may stand anywhere this many: shorter ones stand in files of any kind.
inline constexpr std::size_t kLeastFloatingBytes = 4;

/// A record with nothing wrong: its position (0 means anywhere, otherwise counted from 1) and its bytes, lower-cased.
struct PlainRecord {
    std::size_t position = 0;
    std::string folded;

    friend bool operator==(const PlainRecord&, const PlainRecord&) = default;
};

/// True when `record` fits every header that `other` fits, so that behind it `other` is never reached.
[[nodiscard]] bool coversRecord(const PlainRecord& record, const PlainRecord& other);

/// Checks one line of `fieldCount` fields, 3 or 4. A slip is added to `problems` and gives no record; a short term is
/// added too, but the record is one.
[[nodiscard]] std::optional<PlainRecord> lintRecord(std::string_view line, std::size_t fieldCount, const Problem& place,
                                                    Problems& problems);

/// Checks a whole term file (three fields a line) or common list (four): line ends, fields, digits, duplicates, records
/// that an earlier one keeps from being reached, short terms, terms that an empty sector fits. `file` names it in the
/// problems.
void lintTerms(const std::string& file, std::string_view bytes, std::size_t fieldCount, Problems& problems);

/// The lines of a file whose lines all end in carriage return and line feed. Any other line end, a byte-order mark and
/// an empty line are problems.
[[nodiscard]] std::vector<std::string_view> lintLines(const std::string& file, std::string_view bytes,
                                                      Problems& problems);

}  // namespace quillon
