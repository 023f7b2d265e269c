// SPDX-License-Identifier: MIT
#include "dbcheck/table_file.h"

#include <fmt/format.h>

#include "platform/whole_file.h"
#include "text/fields.h"

namespace quillon {

Result<TableFile> TableFile::read(const NativePath& path) {
    const auto bytes = readWholeFile(path);
    if (!bytes)
        return failure(bytes.error());
    TableFile table;
    table.path_ = path;
    std::size_t number = 0;
    for (const auto line : splitLines(*bytes)) {
        const auto fields = splitFields(line, '\t');
        if (++number == 1) {
            for (std::size_t i = 0; i < fields.size(); ++i) table.columns_.emplace(fields[i], i);
            continue;
        }
        if (fields.size() != table.columns_.size()) {
            return failure(ErrorKind::InvalidArgument,
                           fmt::format("{}, line {}: {} fields instead of {}", path.native(), number, fields.size(),
                                       table.columns_.size()));
        }
        table.rows_.emplace_back(fields.begin(), fields.end());
    }
    if (number == 0)
        return failure(ErrorKind::InvalidArgument, fmt::format("{} is empty", path.native()));
    return table;
}

std::vector<std::string> wordsOf(std::string_view field) {
    std::vector<std::string> all;
    for (const auto word : splitFields(field, ' ')) {
        if (!word.empty())
            all.emplace_back(word);
    }
    return all;
}

const std::string& TableFile::field(std::size_t row, std::string_view column) const {
    static const std::string none;
    const auto found = columns_.find(column);
    return found == columns_.end() ? none : rows_[row][found->second];
}

Result<void> TableFile::require(const std::vector<std::string>& columns) const {
    for (const auto& column : columns) {
        if (!columns_.contains(column))
            return failure(ErrorKind::InvalidArgument, fmt::format("{} has no column {}", path_.native(), column));
    }
    return {};
}

}  // namespace quillon
