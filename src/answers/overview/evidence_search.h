// SPDX-License-Identifier: MIT
#pragma once

// Finds the files of a wish in the evidence, some thousand rows at a time: between two pieces the file is free for a
// writer. For the sources of this folder only.

#include "answers/overview/overview_source.h"
#include "evidence/evidence_reader.h"

namespace quillon {

class EvidenceSearch final : public FileSearch {
public:
    [[nodiscard]] static Result<std::unique_ptr<FileSearch>> begin(EvidenceReader& reader, const FileWish& wish);

    [[nodiscard]] Result<bool> more(std::vector<std::int64_t>& ids) override;

private:
    EvidenceSearch(Statement piece, std::vector<std::int64_t> folders, bool everywhere)
        : piece_(std::move(piece)), folders_(std::move(folders)), everywhere_(everywhere) {}
    [[nodiscard]] Result<int> takePiece(std::vector<std::int64_t>& ids);

    Statement piece_;
    std::vector<std::int64_t> folders_;
    bool everywhere_;
    std::size_t folder_ = 0;  // of `folders_`
    std::int64_t last_ = 0;   // id
};

}  // namespace quillon
