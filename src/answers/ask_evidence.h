// SPDX-License-Identifier: MIT
#pragma once

// Questions of ours to the tables of an evidence file. For the sources of this folder only.

#include <optional>
#include <string>
#include <string_view>

#include "evidence/evidence_reader.h"
#include "evidence/name_text.h"

namespace quillon {

/// Hands each row of a statement's answer to `take`.
template <typename Take>
[[nodiscard]] Result<void> eachRow(Statement& statement, Take take) {
    while (true) {
        const auto more = statement.step();
        if (!more)
            return failure(more.error());
        if (!*more)
            return {};
        take(statement);
    }
}

/// Runs a question and hands each row of its answer to `take`.
template <typename Take>
[[nodiscard]] Result<void> ask(EvidenceReader& reader, std::string_view sql, Take take) {
    auto statement = reader.prepare(sql);
    if (!statement)
        return failure(statement.error());
    return eachRow(*statement, take);
}

/// The paths below a folder, as a range of the index over paths: "/" is followed by "0", and no text begins with a byte
/// of all ones.
struct BranchRange {
    explicit BranchRange(std::string_view folder)
        : first(folder.empty() ? "" : nameText(folder) + "/"),
          behind(folder.empty() ? "\xFF" : nameText(folder) + "0") {}

    std::string first;   ///< smaller than all of them
    std::string behind;  ///< larger than all of them
};

/// A grade or reason by its number; none where the column holds no such number.
template <typename Kind>
[[nodiscard]] std::optional<Kind> numbered(const Statement& row, int column) {
    const auto number = row.integerOrNone(column);
    if (!number || *number < 0 || *number >= static_cast<std::int64_t>(Kind::Count))
        return std::nullopt;
    return static_cast<Kind>(*number);
}

}  // namespace quillon
