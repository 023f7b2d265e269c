// SPDX-License-Identifier: MIT
#pragma once

// The files of a job out of its evidence, with what most questions need of them: whole rows take several times as long.
// For the sources of this folder only.

#include <string>
#include <vector>

#include "answers/job_answers.h"
#include "evidence/evidence_reader.h"

namespace quillon {

class EvidenceFiles final : public BriefFiles {
public:
    /// The reader must outlive this.
    [[nodiscard]] static Result<std::unique_ptr<BriefFiles>> begin(EvidenceReader& reader, const FileWish& wish);

    [[nodiscard]] Result<bool> next(BriefFile& file) override;

private:
    // A part of `texts_`.
    struct Text {
        std::size_t at = 0;
        std::size_t bytes = 0;
    };
    struct File {
        std::int64_t id = 0;
        std::int64_t size = 0;
        Text folder;
        Text name;
        Text extension;
        std::optional<Grade> grade;
    };

    EvidenceFiles(Statement piece, Statement folderById, std::string below)
        : piece_(std::move(piece)), folderById_(std::move(folderById)), below_(std::move(below)) {}
    [[nodiscard]] Result<void> readPiece();
    [[nodiscard]] Result<void> takeRow();
    [[nodiscard]] Result<void> goTo(std::int64_t folder);
    [[nodiscard]] Text keep(std::string_view text);
    [[nodiscard]] std::string_view textOf(const Text& text) const {
        return std::string_view(texts_).substr(text.at, text.bytes);
    }

    Statement piece_;
    Statement folderById_;
    std::string below_;

    std::vector<File> files_;  // of the piece in work that fit
    std::string texts_;        // theirs
    std::size_t given_ = 0;    // of `files_`
    bool isLast_ = false;      // there is no piece behind this one
    std::int64_t lastId_ = 0;

    // Where the last file lay: files of one folder stand together.
    std::optional<std::int64_t> folder_;
    bool isWanted_ = false;
    Text folderText_;
};

}  // namespace quillon
