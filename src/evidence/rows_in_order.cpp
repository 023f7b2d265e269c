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

Result<const EvidenceRow*> RowsInOrder::find(EvidenceReader& reader, std::string_view path) {
    if (next_ == nullptr)
        next_ = reader.next().value_or(nullptr);
    if (next_ != nullptr && isAt(*next_, path)) {
        last_ = next_->id;
        return std::exchange(next_, nullptr);
    }
    const auto found = reader.findPath(path, elsewhere_);
    if (!found)
        return failure(found.error());
    if (!*found)
        return nullptr;
    last_ = elsewhere_.id;
    letGo(reader);
    return &elsewhere_;
}

Result<bool> RowsInOrder::find(EvidenceReader& reader, std::string_view path, EvidenceRow& row) {
    const auto found = find(reader, path);
    if (!found)
        return failure(found.error());
    if (*found != nullptr)
        row = **found;
    return *found != nullptr;
}

void RowsInOrder::letGo(EvidenceReader& reader) {
    reader.continueBehind(last_);
    next_ = nullptr;
}

}  // namespace quillon
