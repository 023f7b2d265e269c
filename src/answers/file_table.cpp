// SPDX-License-Identifier: MIT
#include "answers/file_table.h"

#include <algorithm>

namespace quillon {

namespace {

constexpr std::size_t kFirstSlots = 1024;

std::size_t hashOf(std::uint32_t folder, std::string_view name) {
    constexpr std::size_t kSpread = 0x9E3779B97F4A7C15U;
    return std::hash<std::string_view>()(name) ^ (folder + 1U) * kSpread;
}

}  // namespace

std::uint32_t TextNumbers::add(std::string_view text) {
    if (const auto known = find(text))
        return *known;
    last_ = static_cast<std::uint32_t>(texts_.size());
    texts_.push_back(&numbers_.emplace(text, last_).first->first);
    return last_;
}

std::optional<std::uint32_t> TextNumbers::find(std::string_view text) const {
    if (last_ < texts_.size() && *texts_[last_] == text)
        return last_;
    const auto found = numbers_.find(text);
    if (found == numbers_.end())
        return std::nullopt;
    last_ = found->second;
    return last_;
}

// The slot of the file, or the empty one where it would stand.
std::size_t FileTable::slotFor(std::uint32_t folder, std::string_view wanted) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = hashOf(folder, wanted) & mask;
    while (slots_[slot] != 0) {
        const std::size_t number = slots_[slot] - 1;
        if (files_[number].folder == folder && name(number) == wanted)
            break;
        slot = (slot + 1) & mask;
    }
    return slot;
}

void FileTable::grow() {
    slots_.assign(std::max(kFirstSlots, 2 * slots_.size()), 0);
    for (std::size_t i = 0; i < files_.size(); ++i) slots_[slotFor(files_[i].folder, name(i))] = i + 1;
}

std::size_t FileTable::put(std::string_view folder, const BriefFile& file) {
    if (2 * (files_.size() + 1) > slots_.size())
        grow();
    const std::uint32_t place = folders_.add(folder);
    std::size_t& slot = slots_[slotFor(place, file.name)];
    if (slot == 0) {
        File& added = files_.emplace_back();
        added.nameAt = names_.size();
        added.nameBytes = static_cast<std::uint32_t>(file.name.size());
        names_ += file.name;
        slot = files_.size();
    }
    File& known = files_[slot - 1];
    known.id = file.id;
    known.size = file.size;
    known.folder = place;
    known.extension = extensions_.add(file.extension);
    known.grade = file.grade;
    return slot - 1;
}

std::optional<std::size_t> FileTable::find(std::string_view folder, std::string_view name) const {
    const auto place = folders_.find(folder);
    const std::size_t number = place && !slots_.empty() ? slots_[slotFor(*place, name)] : 0;
    return number == 0 ? std::nullopt : std::optional(number - 1);
}

void FileTable::clear() {
    names_.clear();
    files_.clear();
    slots_.clear();
}

std::string_view FileTable::name(std::size_t number) const {
    const File& file = files_[number];
    return std::string_view(names_).substr(file.nameAt, file.nameBytes);
}

const std::string& FileTable::extension(std::size_t number) const {
    return extensions_.text(files_[number].extension);
}

std::string FileTable::path(std::size_t number) const {
    const std::string& folder = folders_.text(files_[number].folder);
    return folder.empty() ? std::string(name(number)) : folder + "/" + std::string(name(number));
}

}  // namespace quillon
