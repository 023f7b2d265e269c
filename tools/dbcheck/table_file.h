// SPDX-License-Identifier: MIT
#pragma once

// Tables in text files: UTF-8, a line a row, fields separated by a tab, the names of the columns in the first line.

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file.h"

namespace quillon {

/// The words of a field that holds a list, separated by blanks.
[[nodiscard]] std::vector<std::string> wordsOf(std::string_view field);

class TableFile {
public:
    /// Reads a table. A failure: the file cannot be read, is empty, or has a row of another number of fields than the
    /// first line (InvalidArgument).
    [[nodiscard]] static Result<TableFile> read(const NativePath& path);

    [[nodiscard]] std::size_t rowCount() const { return rows_.size(); }
    /// A field by its column's name; empty for a column that the table lacks.
    [[nodiscard]] const std::string& field(std::size_t row, std::string_view column) const;
    /// An InvalidArgument failure that names the first of the columns that is missing.
    [[nodiscard]] Result<void> require(const std::vector<std::string>& columns) const;

private:
    NativePath path_;
    std::map<std::string, std::size_t, std::less<>> columns_;
    std::vector<std::vector<std::string>> rows_;
};

}  // namespace quillon
