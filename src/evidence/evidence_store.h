// SPDX-License-Identifier: MIT
#pragma once

// Writes into the evidence of a job. What is written stands in the file behind `commit`, all of it or nothing: a
// program that dies leaves what the last one said. For one thread at a time.

#include <memory>
#include <span>
#include <string_view>

#include "evidence/database.h"
#include "evidence/evidence_row.h"
#include "evidence/folder_rows.h"
#include "evidence/head_store.h"
#include "evidence/new_files.h"
#include "evidence/totals.h"

namespace quillon {

class EvidenceStore {
public:
    /// Makes an evidence file without rows, for its owner alone to read (mode 0600), whole or not at all. A file of
    /// the name is replaced.
    [[nodiscard]] static Result<void> create(const NativePath& path);

    /// What becomes of the bytes of heads.
    enum class Heads { Kept, LeftOut };

    /// Opens what is there for further writing; fails as the reader does.
    [[nodiscard]] static Result<EvidenceStore> open(const NativePath& path, Heads heads = Heads::Kept);

    /// How long a reader's lock is waited for; five seconds unless told.
    void waitForLocks(std::chrono::milliseconds limit) { database_.waitForLocks(limit); }

    [[nodiscard]] Result<void> setJob(std::string_view key, std::string_view text);
    [[nodiscard]] Result<void> setJob(std::string_view key, std::int64_t number);
    [[nodiscard]] Result<void> setJob(std::string_view key, Blob bytes);
    /// The message of a grade as the list shows it, UTF-8.
    [[nodiscard]] Result<void> setMessage(Grade grade, std::string_view text);
    [[nodiscard]] Result<void> setFolderError(std::string_view path, std::string_view words);

    struct NewFile {
        EvidenceRow* row;
        const FileHead* head;  ///< null: it was not opened
    };
    /// Adds files; gives each row its id, behind all others, and its head's place. Many at once take half of the work.
    [[nodiscard]] Result<void> add(std::span<const NewFile> files);
    /// The same for one. `head` null: it was not opened.
    [[nodiscard]] Result<void> add(EvidenceRow& row, const FileHead* head);
    /// Replaces the row that has this id by all that `row` says. With `head` it gets a new head, else it keeps the
    /// place that `row` names, which is the old one. NotFound: there is no such row.
    [[nodiscard]] Result<void> change(EvidenceRow& row, const FileHead* head = nullptr);
    /// Replaces what a test found of a file: grade, result, reason, unread bytes and doubt. `before`: the row as it
    /// stands there, or stood there ahead of another verdict on the same file; all else of `now` is the same.
    [[nodiscard]] Result<void> setVerdict(const EvidenceRow& before, const EvidenceRow& now);
    /// Notes what became of a file's copy; a file of another id than there is, is passed over.
    [[nodiscard]] Result<void> setCopy(std::int64_t id, const CopyOutcome& outcome);
    /// Notes what the end of a file showed, and what comes of it: its doubt. `before`: the row as it stands there.
    [[nodiscard]] Result<void> setEnd(const EvidenceRow& before, const EvidenceRow& now);
    /// The file of this path stands in another line of the list now; one that is not there is passed over.
    [[nodiscard]] Result<void> moveLine(std::string_view path, std::int64_t line);
    /// Removes the row of this id. NotFound: there is no such row.
    [[nodiscard]] Result<void> remove(std::int64_t id);

    /// Makes the finding of a path quick in folders of any size, or gives up the room that this takes; commits.
    [[nodiscard]] Result<void> indexNames(bool indexed);

    /// Brings all since the last call into the file.
    [[nodiscard]] Result<void> commit();
    /// Counts the files of each folder's whole branch, and commits.
    [[nodiscard]] Result<void> finish();

private:
    EvidenceStore(Database database, FolderRows folders, Totals totals, HeadStore heads)
        : database_(std::move(database)),
          folders_(std::move(folders)),
          totals_(std::move(totals)),
          heads_(std::move(heads)) {}
    [[nodiscard]] Result<void> prepareAll();
    [[nodiscard]] Result<void> begin();
    [[nodiscard]] Result<void> write(Statement& statement, const EvidenceRow& row);
    [[nodiscard]] Result<void> describe(EvidenceRow& row, const FileHead* head);
    [[nodiscard]] Result<EvidenceRow> rowBefore(std::int64_t id);
    [[nodiscard]] Result<void> countSectors(std::int64_t id, std::optional<std::int64_t> now);
    [[nodiscard]] Result<void> writeVerdict(const EvidenceRow& before, const EvidenceRow& now);

    std::unique_ptr<NewFiles> newFiles_ = std::make_unique<NewFiles>();  // the database's statements read it
    Database database_;
    FolderRows folders_;
    Totals totals_;
    HeadStore heads_;
    Statement job_;
    Statement message_;
    Statement insert_;
    Statement update_;
    Statement remove_;
    Statement moveLine_;
    Statement copy_;
    Statement sectorsBefore_;
    Statement end_;
    Statement verdict_;
    Statement byId_;
    std::int64_t nextId_ = 1;
    std::int64_t highestVerdict_ = 0;  // id of a file that a verdict was set of
    bool begun_ = false;
    std::string nameText_;
};

}  // namespace quillon
