// SPDX-License-Identifier: MIT
#pragma once

// Rows of files in the forms that other programs read.

#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "evidence/evidence_row.h"

namespace quillon {

struct CsvStyle {
    bool bom = false;          ///< a UTF-8 mark first, for spreadsheets
    bool spreadsheet = false;  ///< no field can be taken for a formula
};

/// The columns of both forms, separated by commas: those of the evidence's view `files`.
[[nodiscard]] std::string csvHead(const CsvStyle& style);
/// One record by RFC 4180, in UTF-8; names are written as the evidence has them, so that every one comes back.
[[nodiscard]] std::string csvRecord(const EvidenceRow& file, const CsvStyle& style);
/// One object and a line feed, in UTF-8. What there is nothing of is null.
[[nodiscard]] std::string jsonLine(const EvidenceRow& file);

/// What stands in a column: nothing, a number or text.
using ExportValue = std::variant<std::monostate, std::int64_t, std::string>;
[[nodiscard]] std::vector<std::string> exportColumns();
[[nodiscard]] std::vector<ExportValue> exportValues(const EvidenceRow& file);

/// A field of a CSV record, quoted where it has to be. With `spreadsheet` one that begins with = + - @, a tab, CR or LF
/// gets an apostrophe ahead.
[[nodiscard]] std::string csvField(std::string_view text, bool spreadsheet);

}  // namespace quillon
