// SPDX-License-Identifier: MIT
#include "setup/database_folder.h"

#include <utility>

#include "archive/file_mask.h"
#include "text/list_text.h"

namespace quillon {

std::vector<std::string> databaseFiles(const NativePath& folder) {
    return listByMask(folder, "*.*");
}

DatabaseFolder::DatabaseFolder(NativePath folder, const std::vector<std::string>& names) : folder_(std::move(folder)) {
    for (const auto& name : names) {
        const std::string folded = foldedName(name);
        const auto [at, added] = names_.emplace(folded, name);
        if (!added && name == folded)
            at->second = name;
    }
}

bool DatabaseFolder::contains(std::string_view name) const {
    return names_.contains(foldedName(name));
}

NativePath DatabaseFolder::pathOf(std::string_view name) const {
    const std::string folded = foldedName(name);
    const auto at = names_.find(folded);
    return folder_ / (at == names_.end() ? folded : at->second);
}

}  // namespace quillon
