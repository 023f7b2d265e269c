// SPDX-License-Identifier: MIT
#pragma once

// A row of the evidence as it comes out of the database, and its digest. For the sources of this folder only.

#include "evidence/database.h"
#include "evidence/evidence_row.h"

namespace quillon {

/// What `readRow` reads; a WHERE may follow, with the file as f and its folder as o.
[[nodiscard]] Result<std::string> selectRow(Database& database);

void readRow(const Statement& found, EvidenceRow& row);

/// The same with the folder's number in the place of its path: many files of one folder need no look at it each.
[[nodiscard]] Result<std::string> selectRowByFolder(Database& database);

/// Reads that but for the folder, and gives its number.
[[nodiscard]] std::int64_t readRowByFolder(const Statement& found, EvidenceRow& row);

// What there is mostly nothing of takes no room.
[[nodiscard]] inline std::optional<std::string_view> unlessEmpty(const std::string& text) {
    return text.empty() ? std::nullopt : std::optional<std::string_view>(text);
}
[[nodiscard]] inline std::optional<std::int64_t> unlessZero(std::int64_t number) {
    return number == 0 ? std::nullopt : std::optional(number);
}

/// The number of a grade or reason.
template <typename Kind>
[[nodiscard]] std::optional<std::int64_t> numberOf(const std::optional<Kind>& kind) {
    return kind ? std::optional(static_cast<std::int64_t>(*kind)) : std::nullopt;
}

/// The grade or reason in a column; none for a number that stands for none.
template <typename Kind>
[[nodiscard]] std::optional<Kind> kindIn(const Statement& found, int column) {
    const auto number = found.integerOrNone(column);
    if (!number || *number < 0 || *number >= static_cast<std::int64_t>(Kind::Count))
        return std::nullopt;
    return static_cast<Kind>(*number);
}

/// Over what a later reader relies on: id, path, size, time, attributes, grade, result and unread bytes.
[[nodiscard]] std::int64_t rowDigest(const EvidenceRow& row);

}  // namespace quillon
