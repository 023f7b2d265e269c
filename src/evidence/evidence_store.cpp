// SPDX-License-Identifier: MIT
#include "evidence/evidence_store.h"

#include <fmt/format.h>

#include "app/kept_files.h"
#include "evidence/name_text.h"
#include "evidence/row_columns.h"
#include "evidence/schema.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "text/list_text.h"

namespace quillon {

namespace {

// Heads are pieces of a customer's files.
constexpr unsigned kOwnerOnly = 0600;

constexpr const char* kUpdate =
    "UPDATE file SET row = ?2, folder = ?3, name = ?4, name_bytes = ?5, extension = ?6, size = ?7, modified = ?8, "
    "attributes = ?9, grade = ?10, result = ?11, reason = ?12, detail = ?13, unread = ?14, doubt = ?15, "
    "doubt_detail = ?16, copied = ?17, verified = ?18, copy_error = ?19, bad_bytes = ?20, bad_ranges = ?21, "
    "head = ?22, tail = ?23, tail_detail = ?24 WHERE id = ?1";

Result<void> writeTo(const NativePath& path, std::string_view bytes) {
    auto file = File::createNew(path, kOwnerOnly);
    if (!file)
        return failure(file.error());
    return file->write(bytes).and_then([&] { return file->sync(); }).and_then([&] { return file->close(); });
}

}  // namespace

Result<void> EvidenceStore::create(const NativePath& path) {
    // SQLite names the journal so.
    if (!isFileName(journalOf(path).filename().native()))
        return failure(ErrorKind::BadName, readable(path.native()) + ": the name is too long for evidence");
    const auto bytes = emptyEvidence();
    if (!bytes)
        return failure(bytes.error());
    const NativePath temporary = path.parent_path() / temporaryName();
    // What another evidence of the name left to be undone would be undone in this one.
    const auto clear = [&]() -> Result<void> {
        return pathExists(journalOf(path)) ? removeFile(journalOf(path)) : Result<void>();
    };
    auto made = clear().and_then([&] { return writeTo(temporary, *bytes); }).and_then([&] {
        return renameFile(temporary, path);
    });
    if (!made)
        passOver(removeFile(temporary), "it may not even have been made");
    else
        syncFolder(path.parent_path());
    return made;
}

Result<EvidenceStore> EvidenceStore::open(const NativePath& path, Heads heads) {
    if (auto checked = checkEvidenceFile(path); !checked)
        return failure(checked.error());
    auto database = Database::open(path, Access::Writing);
    if (!database)
        return failure(database.error());
    if (auto checked = checkSchema(*database).and_then([&] { return bringUpToDate(*database); }); !checked)
        return failure(checked.error());
    auto folders = FolderRows::prepare(*database);
    if (!folders)
        return failure(folders.error());
    auto totals = Totals::prepare(*database);
    if (!totals)
        return failure(totals.error());
    auto blocks = HeadStore::prepare(*database, heads == Heads::LeftOut);
    if (!blocks)
        return failure(blocks.error());
    EvidenceStore store(std::move(*database), std::move(*folders), std::move(*totals), std::move(*blocks));
    if (auto prepared = store.prepareAll(); !prepared)
        return failure(prepared.error());
    return store;
}

Result<void> EvidenceStore::prepareAll() {
    const auto select = selectRow(database_);
    if (!select)
        return failure(select.error());
    const std::pair<Statement&, std::string> statements[] = {
        {job_, "INSERT OR REPLACE INTO job VALUES (?, ?)"},
        {message_, "UPDATE grade SET text = ? WHERE id = ?"},
        {update_, kUpdate},
        {remove_, "DELETE FROM file WHERE id = ?"},
        {moveLine_, "UPDATE file SET row = ? WHERE folder = (SELECT id FROM folder WHERE path = ?) AND name = ?"},
        {copy_,
         "UPDATE file SET copied = ?2, verified = ?3, copy_error = ?4, bad_bytes = coalesce(?5, bad_bytes), "
         "bad_ranges = iif(?5 IS NULL, bad_ranges, ?6) WHERE id = ?1"},
        {sectorsBefore_, "SELECT extension, grade, bad_bytes FROM file WHERE id = ?"},
        {verdict_,
         "UPDATE file SET grade = ?2, result = ?3, reason = ?4, detail = ?5, unread = ?6, doubt = ?7, "
         "doubt_detail = ?8 WHERE id = ?1"},
        {end_, "UPDATE file SET doubt = ?2, doubt_detail = ?3, tail = ?4, tail_detail = ?5 WHERE id = ?1"},
        {byId_, *select + "WHERE f.id = ?"},
    };
    for (const auto& [statement, sql] : statements) {
        auto prepared = database_.prepare(sql);
        if (!prepared)
            return failure(prepared.error());
        statement = std::move(*prepared);
    }
    auto insert = newFiles_->prepareInsert(database_);
    if (!insert)
        return failure(insert.error());
    insert_ = std::move(*insert);
    auto last = database_.prepare("SELECT coalesce(max(id), 0) FROM file");
    if (!last)
        return failure(last.error());
    if (const auto found = last->step(); !found)
        return failure(found.error());
    nextId_ = last->integer(0) + 1;
    if (nextId_ > 1)
        folders_.doNotKnowFiles();
    return {};
}

Result<void> EvidenceStore::begin() {
    if (begun_)
        return {};
    auto begun = database_.run("BEGIN IMMEDIATE");
    begun_ = begun.has_value();
    return begun;
}

Result<void> EvidenceStore::setJob(std::string_view key, std::string_view text) {
    return begin().and_then([&] { return job_.bind(key, text).run(); });
}

Result<void> EvidenceStore::setJob(std::string_view key, std::int64_t number) {
    return begin().and_then([&] { return job_.bind(key, number).run(); });
}

Result<void> EvidenceStore::setJob(std::string_view key, Blob bytes) {
    return begin().and_then([&] { return job_.bind(key, bytes).run(); });
}

Result<void> EvidenceStore::setMessage(Grade grade, std::string_view text) {
    return begin().and_then([&] { return message_.bind(text, static_cast<std::int64_t>(grade)).run(); });
}

Result<void> EvidenceStore::setFolderError(std::string_view path, std::string_view words) {
    return begin().and_then([&] { return folders_.setError(path, words); });
}

Result<void> EvidenceStore::write(Statement& statement, const EvidenceRow& row) {
    const auto folder = folders_.idOf(row.folder);
    if (!folder)
        return failure(folder.error());
    nameText(row.name, nameText_);
    const std::optional<Blob> bytes = nameText_ == row.name ? std::nullopt : std::optional(Blob{row.name});
    return statement
        .bind(row.id, row.row, *folder, nameText_, bytes, row.extension, row.size, row.modified, row.attributes,
              numberOf(row.grade), row.result, numberOf(row.reason), unlessEmpty(row.detail), unlessZero(row.unread),
              unlessEmpty(row.doubt), unlessEmpty(row.doubtDetail), row.copied, row.verified,
              unlessEmpty(row.copyError), row.badBytes, unlessEmpty(row.badRanges), row.head, unlessEmpty(row.tail),
              unlessEmpty(row.tailDetail))
        .run();
}

Result<void> EvidenceStore::add(EvidenceRow& row, const FileHead* head) {
    const NewFile file{&row, head};
    return add({&file, 1});
}

Result<void> EvidenceStore::add(std::span<const NewFile> files) {
    if (files.empty())
        return {};
    if (auto begun = begin(); !begun)
        return begun;
    newFiles_->clear();
    Result<void> added;
    for (auto file = files.begin(); added && file != files.end(); ++file) added = describe(*file->row, file->head);
    if (added)
        added = insert_.run();
    if (!added)
        folders_.doNotKnowFiles();
    newFiles_->clear();  // the rows are the caller's, and may go now
    return added;
}

// All of a new file but its row.
Result<void> EvidenceStore::describe(EvidenceRow& row, const FileHead* head) {
    row.id = nextId_++;
    row.head = head != nullptr ? std::optional(heads_.nextHead()) : std::nullopt;
    const auto folder = folders_.idOf(row.folder);
    if (!folder)
        return failure(folder.error());
    newFiles_->add(row, *folder);
    folders_.added(*folder, row.size, row.grade);
    return (head != nullptr ? heads_.add(row, *head) : Result<void>()).and_then([&] { return totals_.add(row); });
}

Result<EvidenceRow> EvidenceStore::rowBefore(std::int64_t id) {
    const auto found = byId_.bind(id).step();
    if (!found)
        return failure(found.error());
    EvidenceRow row;
    if (*found)
        readRow(byId_, row);
    byId_.reset();
    if (!*found)
        return failure(ErrorKind::NotFound,
                       fmt::format("{}: no file {}", readable(std::string_view(database_.path())), id));
    return row;
}

Result<void> EvidenceStore::change(EvidenceRow& row, const FileHead* head) {
    folders_.doNotKnowFiles();
    if (auto begun = begin(); !begun)
        return begun;
    const auto before = rowBefore(row.id);
    if (!before)
        return failure(before.error());
    if (before->head) {
        if (auto checked = heads_.beforeChange(*before->head); !checked)
            return checked;
    }
    row.head = head != nullptr ? std::optional(heads_.nextHead()) : before->head;
    if (auto written = write(update_, row); !written)
        return written;
    if (before->head)
        heads_.afterChange(*before->head, head != nullptr ? 0 : rowDigest(row));
    if (head != nullptr) {
        if (auto added = heads_.add(row, *head); !added)
            return added;
    }
    return totals_.remove(*before).and_then([&] { return totals_.add(row); });
}

Result<void> EvidenceStore::setVerdict(const EvidenceRow& before, const EvidenceRow& now) {
    if (now.id > highestVerdict_) {
        highestVerdict_ = now.id;
        return writeVerdict(before, now);
    }
    // Whoever gives `before` may not see yet what an earlier verdict has made of the row.
    const auto stands = begin().and_then([&] { return rowBefore(now.id); });
    return stands ? writeVerdict(*stands, now) : failure(stands.error());
}

Result<void> EvidenceStore::writeVerdict(const EvidenceRow& before, const EvidenceRow& now) {
    folders_.doNotKnowFiles();
    auto changed = begin().and_then([&] { return now.head ? heads_.beforeChange(*now.head) : Result<void>(); });
    if (changed)
        changed = verdict_
                      .bind(now.id, numberOf(now.grade), now.result, numberOf(now.reason), unlessEmpty(now.detail),
                            unlessZero(now.unread), unlessEmpty(now.doubt), unlessEmpty(now.doubtDetail))
                      .run();
    if (changed && now.head)
        heads_.afterChange(*now.head, rowDigest(now));
    return changed.and_then([&] { return totals_.remove(before); }).and_then([&] { return totals_.add(now); });
}

Result<void> EvidenceStore::moveLine(std::string_view path, std::int64_t line) {
    const auto slash = path.rfind('/');
    const std::string folder = nameText(path.substr(0, slash == path.npos ? 0 : slash));
    const std::string name = nameText(path.substr(slash == path.npos ? 0 : slash + 1));
    return begin().and_then([&] { return moveLine_.bind(line, folder, name).run(); });
}

Result<void> EvidenceStore::countSectors(std::int64_t id, std::optional<std::int64_t> now) {
    if (!now)
        return {};
    const auto found = sectorsBefore_.bind(id).step();
    if (found && *found)
        totals_.changeSectors(sectorsBefore_.text(0), kindIn<Grade>(sectorsBefore_, 1), sectorsBefore_.integerOrNone(2),
                              now);
    sectorsBefore_.reset();
    return found ? Result<void>() : failure(found.error());
}

// No digest covers these columns.
Result<void> EvidenceStore::setCopy(std::int64_t id, const CopyOutcome& outcome) {
    return begin().and_then([&] { return countSectors(id, outcome.badBytes); }).and_then([&] {
        return copy_
            .bind(id, outcome.copied ? 1 : 0, outcome.verified, unlessEmpty(outcome.error), outcome.badBytes,
                  unlessEmpty(outcome.badRanges))
            .run();
    });
}

// No digest covers these columns either.
Result<void> EvidenceStore::setEnd(const EvidenceRow& before, const EvidenceRow& now) {
    return begin()
        .and_then([&] {
            return end_
                .bind(now.id, unlessEmpty(now.doubt), unlessEmpty(now.doubtDetail), unlessEmpty(now.tail),
                      unlessEmpty(now.tailDetail))
                .run();
        })
        .and_then([&] { return totals_.remove(before); })
        .and_then([&] { return totals_.add(now); });
}

Result<void> EvidenceStore::remove(std::int64_t id) {
    folders_.doNotKnowFiles();
    if (auto begun = begin(); !begun)
        return begun;
    const auto before = rowBefore(id);
    if (!before)
        return failure(before.error());
    if (before->head) {
        if (auto checked = heads_.beforeChange(*before->head); !checked)
            return checked;
    }
    if (auto removed = remove_.bind(id).run(); !removed)
        return removed;
    if (before->head)
        heads_.afterChange(*before->head, 0);
    return totals_.remove(*before);
}

Result<void> EvidenceStore::commit() {
    if (!begun_)
        return {};
    auto written = heads_.write().and_then([this] { return totals_.write(); }).and_then([this] {
        return database_.run("COMMIT");
    });
    begun_ = !written;
    return written;
}

Result<void> EvidenceStore::indexNames(bool indexed) {
    return begin()
        .and_then([&] { return database_.run(kDropNameIndex); })
        .and_then([&] { return indexed ? database_.run(kCreateNameIndex) : Result<void>(); })
        .and_then([&] { return commit(); });
}

Result<void> EvidenceStore::finish() {
    return begin().and_then([this] { return folders_.countBranches(); }).and_then([this] { return commit(); });
}

}  // namespace quillon
