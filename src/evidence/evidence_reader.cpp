// SPDX-License-Identifier: MIT
#include "evidence/evidence_reader.h"

#include <algorithm>
#include <span>

#include "evidence/name_text.h"
#include "evidence/row_columns.h"
#include "evidence/schema.h"

namespace quillon {

namespace {

// A lock on the file is held for no longer than this many rows take, some hundredths of a second. A block of heads that
// lies across two pages has its rows read once more.
constexpr int kRowsInPage = 4096;

}  // namespace

Result<EvidenceReader> EvidenceReader::open(const NativePath& path) {
    if (auto checked = checkEvidenceFile(path); !checked)
        return failure(checked.error());
    auto database = Database::open(path, Access::Reading);
    if (!database)
        return failure(database.error());
    if (auto checked = checkSchema(*database); !checked)
        return failure(checked.error());
    auto blocks = HeadBlocks::prepare(*database);
    if (!blocks)
        return failure(blocks.error());
    EvidenceReader reader(std::move(*database), std::move(*blocks));
    if (auto prepared = reader.prepareAll(); !prepared)
        return failure(prepared.error());
    return reader;
}

Result<void> EvidenceReader::prepareAll() {
    const auto found = selectRow(database_);
    if (!found)
        return failure(found.error());
    const std::string& select = *found;
    const auto prepareTo = [this](Statement& to, const std::string& sql) -> Result<void> {
        auto prepared = database_.prepare(sql);
        if (!prepared)
            return failure(prepared.error());
        to = std::move(*prepared);
        return {};
    };
    return prepareTo(job_, "SELECT value FROM job WHERE key = ?")
        .and_then([&] { return selectRowByFolder(database_); })
        .and_then([&](const std::string& byFolder) {
            return prepareTo(page_, byFolder + "WHERE f.id > ? ORDER BY f.id LIMIT ?");
        })
        .and_then([&] { return prepareTo(folder_, "SELECT coalesce(path_bytes, path) FROM folder WHERE id = ?"); })
        .and_then([&] { return prepareTo(byId_, select + "WHERE f.id = ?"); })
        .and_then([&] { return prepareTo(byPath_, select + "WHERE o.path = ? AND f.name = ? AND f.id > ? LIMIT 1"); });
}

Result<bool> EvidenceReader::take(Statement& statement, EvidenceRow& row) {
    const auto found = statement.step();
    if (!found)
        return failure(found.error());
    if (*found)
        readRow(statement, row);
    statement.reset();
    return *found;
}

Result<std::optional<std::string>> EvidenceReader::jobText(std::string_view key) {
    const auto found = job_.bind(key).step();
    if (!found)
        return failure(found.error());
    std::optional<std::string> value;
    if (*found && !job_.isNull(0))
        value = job_.text(0);
    job_.reset();
    return value;
}

Result<std::optional<std::int64_t>> EvidenceReader::jobNumber(std::string_view key) {
    const auto found = job_.bind(key).step();
    if (!found)
        return failure(found.error());
    std::optional<std::int64_t> value;
    if (*found)
        value = job_.integerOrNone(0);
    job_.reset();
    return value;
}

Result<const EvidenceRow*> EvidenceReader::next() {
    if (inPage_ == pageRows_) {
        if (auto read = readPage(); !read)
            return failure(read.error());
    }
    if (inPage_ == pageRows_)
        return nullptr;
    const EvidenceRow& row = rows_[inPage_++];
    last_ = row.id;
    return &row;
}

Result<bool> EvidenceReader::next(EvidenceRow& row) {
    const auto found = next();
    if (!found)
        return failure(found.error());
    if (*found != nullptr)
        row = **found;
    return *found != nullptr;
}

// Some rows at once, so that a block of heads is compared with them and not with rows read once more. What is wrong
// with a row comes to light when those ahead of it have been given.
Result<void> EvidenceReader::readPage() {
    inPage_ = pageRows_ = 0;
    folderStands_ = false;  // it may be another one since the last page
    std::int64_t before = last_;
    while (pageRows_ == 0) {
        const auto last = readRowsBehind(before);
        if (!last)
            return pageRows_ > 0 ? Result<void>() : failure(last.error());
        if (*last == before)
            break;
        before = *last;
    }
    return {};
}

// Gives the last id there was; the rows of folders that are not there are left out.
Result<std::int64_t> EvidenceReader::readRowsBehind(std::int64_t before) {
    auto more = page_.bind(before, kRowsInPage).step();
    for (; more && *more; more = page_.step()) {
        if (pageRows_ == rows_.size())
            rows_.emplace_back();
        EvidenceRow& row = rows_[pageRows_];
        const auto stands = readInPage(row);
        if (!stands || row.id <= before) {  // an index that leads in a circle
            more = stands ? Result<bool>(database_.wrong("it is damaged")) : stands;
            break;
        }
        before = row.id;
        pageRows_ += *stands ? 1 : 0;
    }
    page_.reset();
    return more ? Result<std::int64_t>(before) : failure(more.error());
}

// False: its folder is not there.
Result<bool> EvidenceReader::readInPage(EvidenceRow& row) {
    const std::int64_t folder = readRowByFolder(page_, row);
    if (!folderStands_ || folder != folderId_) {
        const auto found = folder_.bind(folder).step();
        if (!found)
            return found;
        folderId_ = folder;
        folderPath_ = *found ? folder_.blob(0) : std::string_view();
        folderStands_ = *found;
        folder_.reset();
    }
    row.folder = folderPath_;
    return folderStands_;
}

void EvidenceReader::continueBehind(std::int64_t id) {
    inPage_ = pageRows_ = 0;
    last_ = id;
}

Result<bool> EvidenceReader::findId(std::int64_t id, EvidenceRow& row) {
    byId_.bind(id);
    return take(byId_, row);
}

Result<bool> EvidenceReader::findPath(std::string_view path, EvidenceRow& row) {
    const auto slash = path.rfind('/');
    const std::string folder = slash == path.npos ? std::string() : nameText(path.substr(0, slash));
    const std::string name = nameText(path.substr(slash == path.npos ? 0 : slash + 1));
    // Whoever looks for many files mostly does so in their order: what lies behind the last one comes first.
    byPath_.bind(folder, name, lastFound_);
    auto found = take(byPath_, row);
    if (found && !*found && lastFound_ != 0) {
        byPath_.bind(folder, name, 0);
        found = take(byPath_, row);
    }
    if (found && *found)
        lastFound_ = row.id;
    return found;
}

// As long as no line was lost or gone, the id is the line.
Result<bool> EvidenceReader::findLine(std::int64_t line, std::string_view path, EvidenceRow& row) {
    EvidenceRow found;
    const auto same = findId(line, found);
    if (!same)
        return failure(same.error());
    if (!*same || found.row != line || found.path() != path)
        return findPath(path, row);
    row = std::move(found);
    return true;
}

Result<const CheckedBlock*> EvidenceReader::blockFor(std::int64_t id) {
    const auto known = std::ranges::find(kept_, id, &Kept::id);
    if (known != kept_.end())
        return &known->checked;
    Kept& kept = kept_[nextKept_];
    nextKept_ = (nextKept_ + 1) % kept_.size();
    kept.id = -1;
    if (auto read = blocks_.read(id, std::span(rows_).first(pageRows_), kept.checked); !read)
        return failure(read.error());
    kept.id = id;
    return &kept.checked;
}

// Null: the row has no place in a block, or its digest does not vouch for it.
Result<const HeadBlock*> EvidenceReader::vouchedBlock(const EvidenceRow& row) {
    if (!row.head || *row.head < 0)
        return nullptr;
    const auto checked = blockFor(blockOf(*row.head));
    if (!checked)
        return failure(checked.error());
    const CheckedBlock& block = **checked;
    const std::size_t place = placeOf(*row.head);
    if (block.whole && place < block.rowDigests.size() && block.rowDigests[place] == rowDigest(row))
        return &block.block;
    ++damaged_;
    return nullptr;
}

Result<const FileHead*> EvidenceReader::head(const EvidenceRow& row) {
    const auto block = vouchedBlock(row);
    if (!block)
        return failure(block.error());
    if (*block == nullptr || (*block)->leftOut)
        return nullptr;
    return &(*block)->places[placeOf(*row.head)].head;
}

Result<const FileHead*> EvidenceReader::headOrLength(const EvidenceRow& row) {
    const auto block = vouchedBlock(row);
    if (!block)
        return failure(block.error());
    return *block == nullptr ? nullptr : &(*block)->places[placeOf(*row.head)].head;
}

Result<bool> EvidenceReader::isVouchedFor(const EvidenceRow& row) {
    const auto block = vouchedBlock(row);
    if (!block)
        return failure(block.error());
    return *block != nullptr;
}

}  // namespace quillon
