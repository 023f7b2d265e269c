// SPDX-License-Identifier: MIT
#include "answers/evidence_files.h"

#include <fmt/format.h>

#include "answers/ask_evidence.h"
#include "answers/wish_condition.h"

namespace quillon {

namespace {

// A lock on the file is held for no longer than this many rows take.
constexpr int kRowsInPiece = 4096;

enum Column { Id, Fits, Folder, Name, Size, Extension, GradeNumber };

}  // namespace

Result<std::unique_ptr<BriefFiles>> EvidenceFiles::begin(EvidenceReader& reader, const FileWish& wish) {
    auto piece = reader.prepare(
        fmt::format("SELECT id, {}, folder, coalesce(name_bytes, name), size, extension, grade FROM file WHERE id > ?1 "
                    "ORDER BY id LIMIT ?2",
                    wishCondition(wish)));
    auto folderById = reader.prepare("SELECT coalesce(path_bytes, path) FROM folder WHERE id = ?");
    if (!piece || !folderById)
        return failure(piece ? folderById.error() : piece.error());
    return std::unique_ptr<BriefFiles>(new EvidenceFiles(std::move(*piece), std::move(*folderById), wish.below));
}

Result<bool> EvidenceFiles::next(BriefFile& file) {
    while (given_ == files_.size()) {
        if (isLast_)
            return false;
        if (auto read = readPiece(); !read)
            return failure(read.error());
    }
    const File& kept = files_[given_++];
    file.id = kept.id;
    file.size = kept.size;
    file.folder = textOf(kept.folder);
    file.name = textOf(kept.name);
    file.extension = textOf(kept.extension);
    file.grade = kept.grade;
    return true;
}

// What is wrong with a row comes to light when those ahead of it have been given.
Result<void> EvidenceFiles::readPiece() {
    files_.clear();
    texts_.clear();
    given_ = 0;
    folder_.reset();
    int rows = 0;
    auto more = piece_.bind(lastId_, kRowsInPiece).step();
    for (; more && *more; more = piece_.step(), ++rows) {
        if (piece_.integer(Id) <= lastId_) {  // an index that leads in a circle
            more = failure(ErrorKind::PathAccess, "the evidence is damaged");
            break;
        }
        if (auto taken = piece_.integer(Fits) != 0 ? takeRow() : Result<void>(); !taken) {
            more = failure(taken.error());
            break;
        }
        lastId_ = piece_.integer(Id);
    }
    piece_.reset();
    isLast_ = more && rows < kRowsInPiece;
    return more || !files_.empty() ? Result<void>() : failure(more.error());
}

Result<void> EvidenceFiles::takeRow() {
    const std::int64_t folder = piece_.integer(Folder);
    if (folder_ != folder) {
        if (auto found = goTo(folder); !found)
            return found;
    }
    if (!isWanted_)
        return {};
    File& file = files_.emplace_back();
    file.id = piece_.integer(Id);
    file.size = piece_.integer(Size);
    file.folder = folderText_;
    file.name = keep(piece_.blob(Name));
    file.extension = keep(piece_.text(Extension));
    file.grade = numbered<Grade>(piece_, GradeNumber);
    return {};
}

// A file whose folder is not there has no path.
Result<void> EvidenceFiles::goTo(std::int64_t folder) {
    const auto found = folderById_.bind(folder).step();
    if (!found) {
        folderById_.reset();
        return failure(found.error());
    }
    folder_ = folder;
    isWanted_ = *found && isBelow(folderById_.blob(0), below_);
    if (isWanted_)
        folderText_ = keep(folderById_.blob(0));
    folderById_.reset();
    return {};
}

EvidenceFiles::Text EvidenceFiles::keep(std::string_view text) {
    const std::size_t at = texts_.size();
    texts_ += text;
    return {at, text.size()};
}

}  // namespace quillon
