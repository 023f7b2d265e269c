// SPDX-License-Identifier: MIT
#pragma once

// Reads the evidence of a job. A file that somebody else made or changed is refused with a word or gives what it holds
// within bounds; it never runs anything. Nothing is changed but what another program's death left half done.

#include <array>
#include <vector>

#include "evidence/database.h"
#include "evidence/evidence_row.h"
#include "evidence/head_blocks.h"

namespace quillon {

class EvidenceReader {
public:
    /// NotFound: there is none. PathAccess: it is damaged, foreign or of another version.
    [[nodiscard]] static Result<EvidenceReader> open(const NativePath& path);

    /// A value of the table `job`; none when it has no such key. Keys: `job_keys.h`.
    [[nodiscard]] Result<std::optional<std::string>> jobText(std::string_view key);
    [[nodiscard]] Result<std::optional<std::int64_t>> jobNumber(std::string_view key);

    /// Makes `row` the next one in the order of the ids. False at the end. Between some rows and the next the file is
    /// free for a writer.
    [[nodiscard]] Result<bool> next(EvidenceRow& row);
    /// The same without a copy: null at the end. Good until the next row is asked for.
    [[nodiscard]] Result<const EvidenceRow*> next();
    /// The file is free for a writer until the next row is asked for.
    void rest() { continueBehind(last_); }
    /// The next row is the first one behind this id; 0 for the first of all.
    void continueBehind(std::int64_t id);

    /// Looks for one file, and leaves `row` alone when there is none.
    [[nodiscard]] Result<bool> findId(std::int64_t id, EvidenceRow& row);
    /// `path`: bytes, below the source.
    [[nodiscard]] Result<bool> findPath(std::string_view path, EvidenceRow& row);
    /// The file of a line of the list (from 1) that has this path; by the path alone where the lines are others.
    [[nodiscard]] Result<bool> findLine(std::int64_t line, std::string_view path, EvidenceRow& row);

    /// The head of a row that this reader gave; null when none was kept. Null, too, and counted as damaged, when the
    /// digest of its block disagrees: then the row's path, size, time and grade are not to be relied on either. Good
    /// until the next call.
    [[nodiscard]] Result<const FileHead*> head(const EvidenceRow& row);
    /// The same, but where the bytes of heads were left out it gives how long the head was, with blanks for bytes.
    [[nodiscard]] Result<const FileHead*> headOrLength(const EvidenceRow& row);
    /// True when the digest of the block vouches for the row, whether its head was kept or left out.
    [[nodiscard]] Result<bool> isVouchedFor(const EvidenceRow& row);
    /// How many rows a digest did not agree with, of those whose head was asked for.
    [[nodiscard]] std::int64_t damaged() const { return damaged_; }

    /// For totals that the database finds by itself. `sql` is the program's own; views cannot be used.
    [[nodiscard]] Result<Statement> prepare(std::string_view sql) { return database_.prepare(sql); }

private:
    struct Kept {
        std::int64_t id = -1;
        CheckedBlock checked;
    };

    EvidenceReader(Database database, HeadBlocks blocks) : database_(std::move(database)), blocks_(std::move(blocks)) {}
    [[nodiscard]] Result<void> prepareAll();
    [[nodiscard]] Result<void> readPage();
    [[nodiscard]] Result<std::int64_t> readRowsBehind(std::int64_t before);
    [[nodiscard]] Result<bool> readInPage(EvidenceRow& row);
    [[nodiscard]] Result<const CheckedBlock*> blockFor(std::int64_t id);
    [[nodiscard]] Result<const HeadBlock*> vouchedBlock(const EvidenceRow& row);
    [[nodiscard]] static Result<bool> take(Statement& statement, EvidenceRow& row);

    Database database_;
    HeadBlocks blocks_;
    Statement job_;
    Statement page_;
    Statement folder_;
    Statement byId_;
    Statement byPath_;
    std::int64_t last_ = 0;          // id of the last row given
    std::vector<EvidenceRow> rows_;  // of the page in work; they keep their room
    std::size_t pageRows_ = 0;
    std::size_t inPage_ = 0;     // of these, given
    std::int64_t folderId_ = 0;  // of the last row of the page
    std::string folderPath_;
    bool folderStands_ = false;
    std::int64_t lastFound_ = 0;  // id of the last file found by its path
    std::array<Kept, 4> kept_;    // a row that was read anew has its head in another block than its neighbours
    std::size_t nextKept_ = 0;
    std::int64_t damaged_ = 0;
};

}  // namespace quillon
