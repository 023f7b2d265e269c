// SPDX-License-Identifier: MIT
#include "evidence/folder_rows.h"

#include <fmt/format.h>

#include "evidence/name_text.h"
#include "evidence/row_columns.h"
#include "evidence/schema.h"

namespace quillon {

namespace {

// Some 6 MB of counts; with more folders the files are looked at again in the end.
constexpr std::size_t kMostFoldersCounted = 65'536;

// "<column> = <column> + <value of it>" for the counts of each grade, with commas between.
std::string eachCount(auto piece) {
    std::string all;
    for (const auto& row : kGrades.values) all += ", " + piece(countColumn(row.grade));
    return all;
}

Result<void> prepareTo(Database& database, Statement& to, const std::string& sql) {
    auto prepared = database.prepare(sql);
    if (!prepared)
        return failure(prepared.error());
    to = std::move(*prepared);
    return {};
}

}  // namespace

void FolderRows::Counts::add(std::int64_t size, std::optional<std::int64_t> grade) {
    ++files;
    bytes += size;
    const std::int64_t number = grade.value_or(kNotTested);
    if (number >= 0 && number < static_cast<std::int64_t>(kGradeCount))
        ++grades[static_cast<std::size_t>(number)];
}

Result<FolderRows> FolderRows::prepare(Database& database) {
    FolderRows rows;
    const std::string clear = eachCount([](const std::string& column) { return column + " = 0"; });
    // Its own row takes the place of the numbers that are added.
    int place = 3;
    const std::string add =
        eachCount([&](const std::string& column) { return fmt::format("{0} = {0} + ?{1}", column, ++place); });
    const std::string counts = eachCount([](const std::string& column) { return column; });
    const std::string sums =
        eachCount([](const std::string& column) { return fmt::format("folder.{0} + b.{0}", column); });
    const auto prepare = [&](Statement& to, const std::string& sql) {
        return [&database, &to, sql] { return prepareTo(database, to, sql); };
    };
    auto done =
        prepareTo(database, rows.find_, "SELECT id FROM folder WHERE path = ?")
            .and_then(prepare(rows.insert_, "INSERT INTO folder (parent, name, path, path_bytes) VALUES (?, ?, ?, ?)"))
            .and_then(prepare(rows.error_, "UPDATE folder SET error = ? WHERE id = ?"))
            .and_then(prepare(rows.clear_, "UPDATE folder SET files = 0, bytes = 0" + clear))
            .and_then(prepare(rows.file_, "SELECT folder, size, grade FROM file ORDER BY id"))
            .and_then(
                prepare(rows.add_, "UPDATE folder SET files = files + ?2, bytes = bytes + ?3" + add + " WHERE id = ?1"))
            .and_then(prepare(rows.above_, "SELECT id, parent FROM folder WHERE id < ? ORDER BY id DESC LIMIT 1"))
            .and_then(prepare(rows.rollUp_, "UPDATE folder SET (files, bytes" + counts +
                                                ") = (SELECT folder.files + b.files, folder.bytes + b.bytes" + sums +
                                                " FROM folder b WHERE b.id = ?2) WHERE id = ?1"));
    if (!done)
        return failure(done.error());
    return rows;
}

Result<std::int64_t> FolderRows::idOf(std::string_view path) {
    if (lastId_ != 0 && path == lastPath_)
        return lastId_;
    nameText(path, text_);
    auto found = find_.bind(text_).step();
    if (!found)
        return failure(found.error());
    std::int64_t id = 0;
    if (*found)
        id = find_.integer(0);
    find_.reset();
    if (id == 0) {
        const auto made = insert(path, std::string(text_));
        if (!made)
            return failure(made.error());
        id = *made;
    }
    lastId_ = id;
    lastPath_ = path;
    return id;
}

// A parent is made before its children, so that its number is smaller.
Result<std::int64_t> FolderRows::insert(std::string_view path, const std::string& text) {
    std::optional<std::int64_t> parent;
    const auto slash = path.rfind('/');
    const std::string_view name = path.substr(slash == path.npos ? 0 : slash + 1);
    if (!path.empty()) {
        const auto above = idOf(path.substr(0, slash == path.npos ? 0 : slash));
        if (!above)
            return above;
        parent = *above;
    }
    const std::optional<Blob> bytes = text == path ? std::nullopt : std::optional(Blob{path});
    const std::string shownName = nameText(name);
    if (auto made = insert_.bind(parent, shownName, text, bytes).run(); !made)
        return failure(made.error());
    // RETURNING would make a table for one number.
    const auto found = find_.bind(text).step();
    if (!found)
        return failure(found.error());
    const std::int64_t id = *found ? find_.integer(0) : 0;
    find_.reset();
    if (id == 0)
        return failure(ErrorKind::PathAccess, "the index of its folders is damaged");
    return id;
}

Result<void> FolderRows::setError(std::string_view path, std::string_view words) {
    const auto id = idOf(path);
    if (!id)
        return failure(id.error());
    return error_.bind(words, *id).run();
}

void FolderRows::added(std::int64_t folder, std::int64_t size, std::optional<Grade> grade) {
    const auto place = static_cast<std::size_t>(folder);
    if (own_ && place > kMostFoldersCounted)
        doNotKnowFiles();
    if (!own_)
        return;
    if (place >= own_->size())
        own_->resize(place + 1);
    (*own_)[place].add(size, numberOf(grade));
}

Result<void> FolderRows::countBranches() {
    return clear_.bind().run().and_then([this] { return own_ ? writeOwnCounts() : countOwnFiles(); }).and_then([this] {
        return addToParents();
    });
}

Result<void> FolderRows::write(std::int64_t folder, const Counts& counts) {
    const auto& g = counts.grades;
    static_assert(kGradeCount == 10, "each grade is one of the numbers");
    return add_.bind(folder, counts.files, counts.bytes, g[0], g[1], g[2], g[3], g[4], g[5], g[6], g[7], g[8], g[9])
        .run();
}

Result<void> FolderRows::writeOwnCounts() {
    for (std::size_t folder = 0; folder < own_->size(); ++folder) {
        if ((*own_)[folder].files == 0)
            continue;
        if (auto written = write(static_cast<std::int64_t>(folder), (*own_)[folder]); !written)
            return written;
    }
    return {};
}

// The files of a folder stand side by side unless some of them came in a later run.
Result<void> FolderRows::countOwnFiles() {
    std::int64_t last = 0;
    Counts counts;
    file_.bind();
    while (true) {
        const auto more = file_.step();
        if (!more)
            return failure(more.error());
        const std::int64_t folder = *more ? file_.integer(0) : 0;
        if (counts.files > 0 && (!*more || folder != last)) {
            if (auto written = write(last, counts); !written)
                return written;
            counts = {};
        }
        if (!*more)
            return {};
        last = folder;
        counts.add(file_.integer(1), file_.integerOrNone(2));
    }
}

// From the last folder to the first: a branch is counted whole before it is added to the folder above.
Result<void> FolderRows::addToParents() {
    for (std::int64_t id = INT64_MAX;;) {
        const auto more = above_.bind(id).step();
        if (!more)
            return failure(more.error());
        if (!*more)
            return {};
        id = above_.integer(0);
        const auto parent = above_.integerOrNone(1);
        above_.reset();
        if (!parent || *parent >= id)
            continue;
        if (auto added = rollUp_.bind(*parent, id).run(); !added)
            return added;
    }
}

}  // namespace quillon
