// SPDX-License-Identifier: MIT
#include "answers/overview/evidence_search.h"

#include <fmt/format.h>

#include "answers/ask_evidence.h"
#include "answers/wish_condition.h"
#include "evidence/name_text.h"

namespace quillon {

namespace {

// So many rows are looked at in one piece, which takes some milliseconds.
constexpr int kRowsInPiece = 20'000;
constexpr int kFoldersInPiece = 2'000;

}  // namespace

Result<std::unique_ptr<FileSearch>> EvidenceSearch::begin(EvidenceReader& reader, const FileWish& wish) {
    const bool everywhere = wish.below.empty();
    std::vector<std::int64_t> folders;
    if (!everywhere) {
        auto branch = reader.prepare("SELECT id FROM folder WHERE path = ?1 OR (path > ?2 AND path < ?3) ORDER BY id");
        if (!branch)
            return failure(branch.error());
        const BranchRange range(wish.below);
        const std::string own = nameText(wish.below);
        const auto asked = eachRow(branch->bind(own, range.first, range.behind),
                                   [&](const Statement& row) { folders.push_back(row.integer(0)); });
        if (!asked)
            return failure(asked.error());
    }
    auto piece = reader.prepare(fmt::format("SELECT id, {} FROM file WHERE {} id > ?1 ORDER BY id LIMIT ?2",
                                            wishCondition(wish), everywhere ? "" : "folder = ?3 AND"));
    if (!piece)
        return failure(piece.error());
    return std::unique_ptr<FileSearch>(new EvidenceSearch(std::move(*piece), std::move(folders), everywhere));
}

// Gives how many rows were looked at; fewer than a piece has when the folder, or the file, has no more.
Result<int> EvidenceSearch::takePiece(std::vector<std::int64_t>& ids) {
    int rows = 0;
    const std::int64_t before = last_;
    if (everywhere_)
        piece_.bind(last_, kRowsInPiece);
    else
        piece_.bind(last_, kRowsInPiece, folders_[folder_]);
    const auto asked = eachRow(piece_, [&](const Statement& row) {
        ++rows;
        last_ = row.integer(0);
        if (row.integer(1) != 0)
            ids.push_back(last_);
    });
    piece_.reset();
    if (!asked)
        return failure(asked.error());
    if (rows > 0 && last_ <= before)  // an index that leads in a circle
        return failure(ErrorKind::PathAccess, "the evidence is damaged");
    return rows;
}

Result<bool> EvidenceSearch::more(std::vector<std::int64_t>& ids) {
    if (everywhere_)
        return takePiece(ids).map([](int rows) { return rows == kRowsInPiece; });
    int rows = 0;
    for (int i = 0; folder_ < folders_.size() && i < kFoldersInPiece && rows < kRowsInPiece; ++i) {
        const auto taken = takePiece(ids);
        if (!taken)
            return failure(taken.error());
        rows += *taken;
        if (*taken == kRowsInPiece)
            continue;
        ++folder_;
        last_ = 0;
    }
    return folder_ < folders_.size();
}

}  // namespace quillon
