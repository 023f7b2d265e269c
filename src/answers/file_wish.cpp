// SPDX-License-Identifier: MIT
#include "answers/file_wish.h"

#include <algorithm>

namespace quillon {

namespace {

bool isAmong(const auto& wanted, const auto& value) {
    return wanted.empty() || std::ranges::find(wanted, value) != wanted.end();
}

}  // namespace

bool isBelow(std::string_view folder, std::string_view above) {
    return above.empty() || folder == above || (folder.starts_with(above) && folder[above.size()] == '/');
}

bool fits(const FileWish& wish, const EvidenceRow& file) {
    if (!wish.grades.empty() && (!file.grade || !isAmong(wish.grades, *file.grade)))
        return false;
    if (!wish.reasons.empty() && (!file.reason || !isAmong(wish.reasons, *file.reason)))
        return false;
    return isAmong(wish.extensions, file.extension) && isBelow(file.folder, wish.below) &&
           (!wish.doubt || !file.doubt.empty()) &&
           (!wish.unread || file.unread > 0 || file.badBytes.value_or(0) > 0 || file.grade == Grade::AccessError);
}

std::optional<Reason> reasonNamed(std::string_view name) {
    const auto found = std::ranges::find_if(kReasons, [&](const ReasonRow& row) { return row.name == name; });
    return found == kReasons.end() ? std::nullopt : std::optional<Reason>(found->reason);
}

}  // namespace quillon
