// SPDX-License-Identifier: MIT
#include "evidence/rows_in_order.h"

#include <utility>

namespace quillon {

namespace {

bool isAt(const EvidenceRow& row, std::string_view path) {
    const std::size_t before = row.folder.empty() ? 0 : row.folder.size() + 1;
    return path.size() == before + row.name.size() && path.ends_with(row.name) && path.starts_with(row.folder) &&
           (before == 0 || path[before - 1] == '/');
}

}  // namespace

Result<bool> RowsInOrder::find(EvidenceReader& reader, std::string_view path, EvidenceRow& row) {
    if (!hasNext_)
        hasNext_ = reader.next(next_).value_or(false);
    if (hasNext_ && isAt(next_, path)) {
        hasNext_ = false;
        last_ = next_.id;
        std::swap(row, next_);
        return true;
    }
    const auto found = reader.findPath(path, row);
    if (found && *found) {
        last_ = row.id;
        letGo(reader);
    }
    return found;
}

void RowsInOrder::letGo(EvidenceReader& reader) {
    reader.continueBehind(last_);
    hasNext_ = false;
}

}  // namespace quillon
