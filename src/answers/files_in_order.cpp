// SPDX-License-Identifier: MIT
#include "answers/files_in_order.h"

#include <algorithm>

#include "answers/walk_order.h"

namespace quillon {

std::optional<std::string_view> folderBelow(std::string_view folder, std::string_view strip) {
    if (strip.empty())
        return folder;
    if (!folder.starts_with(strip) || (folder.size() > strip.size() && folder[strip.size()] != '/'))
        return std::nullopt;
    return folder.substr(std::min(strip.size() + 1, folder.size()));
}

Result<FilesInOrder> FilesInOrder::begin(JobAnswers& job, std::string strip) {
    auto found = job.files({});
    if (!found)
        return failure(found.error());
    FilesInOrder files(std::move(*found), std::move(strip));
    if (const auto begun = files.fetch().and_then([&] { return files.advance(); }); !begun)
        return failure(begun.error());
    return files;
}

BriefFile FilesInOrder::file() const {
    BriefFile file;
    file.id = current_.id;
    file.size = current_.size;
    file.folder = current_.folder;
    file.name = current_.name;
    file.extension = current_.extension;
    file.grade = current_.grade;
    return file;
}

Result<void> FilesInOrder::advance() {
    do {
        std::swap(current_, ahead_);
        ahead_.isThere = false;
        if (!current_.isThere)
            return {};
        if (auto fetched = fetch(); !fetched)
            return fetched;
    } while (ahead_.isThere && std::is_eq(orderOf(current_, ahead_)));
    inOrder_ = inOrder_ && (!ahead_.isThere || std::is_lt(orderOf(current_, ahead_)));
    return {};
}

std::strong_ordering FilesInOrder::orderOf(const Kept& first, const Kept& second) {
    return first.folder == second.folder ? first.name <=> second.name : foldersInWalkOrder(first.folder, second.folder);
}

Result<void> FilesInOrder::fetch() {
    BriefFile file;
    while (true) {
        const auto more = files_->next(file);
        if (!more)
            return failure(more.error());
        if (!*more)
            return {};
        const auto folder = folderBelow(file.folder, strip_);
        if (!folder)
            continue;
        ahead_.isThere = true;
        ahead_.id = file.id;
        ahead_.size = file.size;
        ahead_.folder = *folder;
        ahead_.name = file.name;
        ahead_.extension = file.extension;
        ahead_.grade = file.grade;
        return {};
    }
}

}  // namespace quillon
