// SPDX-License-Identifier: MIT
#include "viewer/extension_list.h"

#include <algorithm>
#include <utility>

namespace quillon {

void ExtensionList::clear() {
    entries_.clear();
    chosen_ = -1;
}

void ExtensionList::rebuild(const ViewRows& rows) {
    if (rows.count() == 0)
        return;
    const std::u16string before(chosenText());
    const bool hadChoice = chosen_ >= 0;
    entries_ = rows.foldedExtensions();
    if (entries_.size() == 1 && entries_.front().empty())
        entries_.clear();
    std::sort(entries_.begin(), entries_.end());
    chosen_ = hadChoice ? find(before) : -1;
}

void ExtensionList::add(std::u16string extension) {
    const auto place = std::upper_bound(entries_.begin(), entries_.end(), extension);
    if (place - entries_.begin() <= chosen_)
        ++chosen_;
    entries_.insert(place, std::move(extension));
}

std::u16string_view ExtensionList::chosenText() const {
    return chosen_ < 0 ? std::u16string_view() : std::u16string_view(entries_[static_cast<std::size_t>(chosen_)]);
}

int ExtensionList::find(std::u16string_view extension) const {
    const auto found = std::find(entries_.begin(), entries_.end(), extension);
    return found == entries_.end() ? -1 : static_cast<int>(found - entries_.begin());
}

}  // namespace quillon
