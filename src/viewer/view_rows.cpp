// SPDX-License-Identifier: MIT
#include "viewer/view_rows.h"

#include <algorithm>

#include "text/fields.h"
#include "text/list_text.h"
#include "text/unicode.h"

namespace quillon {

namespace {

constexpr std::size_t kBlockUnits = 262144;

std::u16string_view extensionOfRow(std::u16string_view path) {
    return trim(extensionOf(path));
}

}  // namespace

void ViewRows::clear() {
    *this = ViewRows();
}

std::u16string_view ViewRows::keep(std::u16string_view text) {
    if (text.empty())
        return {};
    if (blocks_.empty() || blocks_.back().capacity() - blocks_.back().size() < text.size()) {
        blocks_.emplace_back();
        blocks_.back().reserve(std::max(kBlockUnits, text.size()));
    }
    std::u16string& block = blocks_.back();
    const std::size_t start = block.size();
    block.append(text);
    return std::u16string_view(block).substr(start);
}

std::uint32_t ViewRows::extensionNumber(std::u16string_view path) {
    std::u16string folded = lowered(std::u16string(extensionOfRow(path)));
    const auto [place, isNew] = numbers_.try_emplace(folded, static_cast<std::uint32_t>(extensions_.size()));
    if (isNew)
        extensions_.push_back({std::move(folded), 0});
    return place->second;
}

void ViewRows::add(std::u16string_view path, std::u16string_view problem, std::uint32_t line) {
    const std::uint32_t extension = extensionNumber(path);
    ++extensions_[extension].rows;
    order_.push_back(static_cast<Id>(rows_.size()));
    rows_.push_back({keep(path), keep(problem), extension, line});
    removed_.push_back(false);
    ++live_;
}

std::u16string_view ViewRows::extension(Id id) const {
    return extensionOfRow(rows_[id].path);
}

std::vector<std::u16string> ViewRows::foldedExtensions() const {
    std::vector<std::u16string> all;
    for (const auto& extension : extensions_) {
        if (extension.rows > 0)
            all.push_back(extension.folded);
    }
    return all;
}

int ViewRows::countOf(std::u16string_view extension) const {
    const auto number = numbers_.find(lowered(std::u16string(extension)));
    return number == numbers_.end() ? 0 : extensions_[number->second].rows;
}

void ViewRows::remove(Id id) {
    if (isRemoved(id))
        return;
    removed_[id] = true;
    --extensions_[rows_[id].extension].rows;
    --live_;
}

int ViewRows::settledPlace(int row) const {
    const auto end = order_.begin() + std::clamp(row, 0, shown());
    return static_cast<int>(std::count_if(order_.begin(), end, [this](Id id) { return !isRemoved(id); }));
}

void ViewRows::settle() {
    std::erase_if(order_, [this](Id id) { return isRemoved(id); });
}

bool endsWithIgnoringCase(std::u16string_view text, std::u16string_view suffix) {
    if (text.size() < suffix.size())
        return false;
    const auto end = text.substr(text.size() - suffix.size());
    return std::equal(end.begin(), end.end(), suffix.begin(),
                      [](char16_t a, char16_t b) { return lowerUnit(a) == lowerUnit(b); });
}

RowLookup::RowLookup(const ViewRows& rows, std::u16string_view suffix) : rows_(rows) {
    for (int row = 0; row < rows.shown(); ++row) {
        const ViewRows::Id id = rows.idAt(row);
        if (!rows.isRemoved(id) && endsWithIgnoringCase(rows.path(id), suffix))
            byPath_[rows.path(id)].ids.push_back(id);
    }
}

const ViewRows::Id* RowLookup::find(std::u16string_view path) {
    const auto found = byPath_.find(path);
    if (found == byPath_.end())
        return nullptr;
    Equal& equal = found->second;
    while (equal.first < equal.ids.size() && rows_.isRemoved(equal.ids[equal.first])) ++equal.first;
    return equal.first < equal.ids.size() ? &equal.ids[equal.first] : nullptr;
}

}  // namespace quillon
