// SPDX-License-Identifier: MIT
#include "evidence/schema.h"

#include <algorithm>
#include <array>
#include <vector>

#include <fmt/format.h>

#include "evidence/job_keys.h"
#include "platform/folders.h"
#include "testing/reason.h"
#include "text/list_text.h"

namespace quillon {

namespace {

// Rows lie close together, and a page holds whole blocks of good heads.
constexpr int kPageBytes = 16384;

struct SchemaObject {
    std::string type;
    std::string name;
    std::string sql;  // as SQLite keeps it
};

// "<before>good<behind>, <before>corrupt<behind>, ..." over all grades.
std::string overGrades(const auto& piece) {
    std::string all;
    for (const auto& row : kGrades.values) all += (all.empty() ? "" : ", ") + piece(row.grade.value);
    return all;
}

// What has come to the table of files since its first version, as ALTER TABLE leaves it.
constexpr const char* kTailColumns = ", tail TEXT, tail_detail TEXT";

std::vector<SchemaObject> tables(std::int64_t version) {
    const std::string counts = overGrades([](Grade grade) { return countColumn(grade) + " INTEGER"; });
    return {
        {"table", "job", "CREATE TABLE job (key TEXT PRIMARY KEY, value) WITHOUT ROWID"},
        {"table", "folder",
         "CREATE TABLE folder (id INTEGER PRIMARY KEY, parent INTEGER, name TEXT, path TEXT, path_bytes BLOB, error TEXT, "
         "files INTEGER, bytes INTEGER, " +
             counts + ")"},
        {"index", "folder_path", "CREATE UNIQUE INDEX folder_path ON folder (path)"},
        {"table", "file",
         "CREATE TABLE file (id INTEGER PRIMARY KEY, row INTEGER, folder INTEGER, name TEXT, name_bytes BLOB, "
         "extension TEXT, size INTEGER, modified INTEGER, attributes INTEGER, grade INTEGER, result TEXT, "
         "reason INTEGER, detail TEXT, unread INTEGER, doubt TEXT, doubt_detail TEXT, copied INTEGER, "
         "verified INTEGER, copy_error TEXT, bad_bytes INTEGER, bad_ranges TEXT, head INTEGER" +
             std::string(version < 2 ? "" : kTailColumns) + ")"},
        {"index", "file_folder", "CREATE INDEX file_folder ON file (folder)"},
        {"table", "head_block", "CREATE TABLE head_block (id INTEGER PRIMARY KEY, digest INTEGER, heads BLOB)"},
        {"table", "grade", "CREATE TABLE grade (id INTEGER PRIMARY KEY, name TEXT, text TEXT)"},
        {"table", "reason", "CREATE TABLE reason (id INTEGER PRIMARY KEY, name TEXT, text TEXT)"},
        {"table", "by_extension",
         "CREATE TABLE by_extension (extension TEXT, grade INTEGER, files INTEGER, bytes INTEGER, "
         "PRIMARY KEY (extension, grade)) WITHOUT ROWID"},
        {"table", "by_reason",
         "CREATE TABLE by_reason (reason INTEGER, extension TEXT, files INTEGER, bytes INTEGER, "
         "PRIMARY KEY (reason, extension)) WITHOUT ROWID"},
    };
}

constexpr const char* kFilesView =
    "CREATE VIEW files AS SELECT f.row, iif(o.path = '', f.name, o.path || '/' || f.name) AS path, f.name, "
    "CASE WHEN f.name_bytes IS NOT NULL OR o.path_bytes IS NOT NULL THEN CAST(iif(o.path = '', '', "
    "CAST(coalesce(o.path_bytes, o.path) AS TEXT) || '/') || CAST(coalesce(f.name_bytes, f.name) AS TEXT) AS BLOB) END "
    "AS path_bytes, f.extension, f.size, f.modified, f.attributes, g.name AS grade, "
    "coalesce(f.result, g.text) AS result, r.name AS reason, f.detail, f.unread, f.doubt, f.doubt_detail, f.copied, "
    "f.verified, f.copy_error, f.bad_bytes FROM file f JOIN folder o ON o.id = f.folder "
    "LEFT JOIN grade g ON g.id = f.grade LEFT JOIN reason r ON r.id = f.reason";

std::vector<SchemaObject> views() {
    const std::string counts = overGrades([](Grade grade) { return countColumn(grade); });
    const std::string sums = overGrades([](Grade grade) {
        return fmt::format("sum(iif(grade = {}, files, 0)) AS {}", static_cast<int>(grade), countColumn(grade));
    });
    return {
        {"view", "files", kFilesView},
        {"view", "folders",
         "CREATE VIEW folders AS SELECT path, path_bytes, error, files, bytes, " + counts + " FROM folder"},
        {"view", "extensions",
         "CREATE VIEW extensions AS SELECT extension, sum(files) AS files, sum(bytes) AS bytes, " + sums +
             " FROM by_extension GROUP BY extension"},
        {"view", "reasons",
         "CREATE VIEW reasons AS SELECT r.name AS reason, r.text, b.extension, b.files, b.bytes FROM by_reason b "
         "JOIN reason r ON r.id = b.reason"},
    };
}

std::vector<SchemaObject> allObjects(std::int64_t version) {
    auto all = tables(version);
    for (auto& view : views()) all.push_back(std::move(view));
    return all;
}

// What may be there or not.
SchemaObject nameIndex() {
    return {"index", "file_place", kCreateNameIndex};
}

std::uint32_t bigEndian(std::string_view bytes) {
    std::uint32_t number = 0;
    for (const char c : bytes.substr(0, 4)) number = number << 8U | static_cast<unsigned char>(c);
    return number;
}

}  // namespace

std::string countColumn(Grade grade) {
    std::string name = kGrades[grade].name.value;
    std::ranges::replace(name, '-', '_');
    return name;
}

Result<std::string> emptyEvidence() {
    std::vector<std::string> statements = {fmt::format("PRAGMA application_id = {}", kEvidenceId),
                                           fmt::format("PRAGMA user_version = {}", kEvidenceVersion)};
    for (const auto& object : allObjects(kEvidenceVersion)) statements.push_back(object.sql);
    for (const char* counted : {job_keys::kDoubtsCounted, job_keys::kSectorsCounted})
        statements.push_back(fmt::format("INSERT INTO job VALUES ('{}', 1)", counted));
    for (const auto& row : kGrades.values)
        statements.push_back(fmt::format("INSERT INTO grade (id, name) VALUES ({}, '{}')",
                                         static_cast<int>(row.grade.value), row.name.value));
    for (const auto& row : kReasons)
        statements.push_back(fmt::format("INSERT INTO reason VALUES ({}, '{}', '{}')", static_cast<int>(row.reason),
                                         row.name, row.text));
    return Database::bytesOfNew(statements, kPageBytes);
}

Result<void> checkEvidenceFile(const NativePath& path) {
    const std::string shown = readable(path.native());
    if (!pathExists(path))
        return failure(ErrorKind::NotFound, shown + ": there is no evidence");
    if (!isRegularFile(path))
        return failure(ErrorKind::PermissionDenied, shown + ": it is no file");
    auto file = File::openForReading(path);
    if (!file)
        return failure(file.error());
    std::array<std::byte, 100> bytes{};
    const auto count = file->read(bytes);
    if (!count)
        return failure(count.error());
    const std::string_view head(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    using namespace std::string_view_literals;
    const bool ours =
        *count == bytes.size() && head.starts_with("SQLite format 3\0"sv) && bigEndian(head.substr(68)) == kEvidenceId;
    if (!ours)
        return failure(ErrorKind::PathAccess, shown + ": it is no evidence of a job");
    if (const auto version = bigEndian(head.substr(60)); version < 1 || version > kEvidenceVersion)
        return failure(ErrorKind::PathAccess, shown + ": it was written by another version of the program");
    // A log beside the database would change what it holds; ours never have one.
    if (head.substr(18, 2) != "\1\1")
        return failure(ErrorKind::PathAccess, shown + ": it is not kept as the program keeps it");
    return {};
}

Result<void> checkSchema(Database& database) {
    auto found = database.prepare("SELECT type, name, sql FROM sqlite_schema");
    if (!found)
        return failure(found.error());
    const auto version = versionOf(database);
    if (!version)
        return failure(version.error());
    auto expected = allObjects(*version);
    expected.push_back(nameIndex());
    while (true) {
        const auto more = found->step();
        if (!more)
            return failure(more.error());
        if (!*more)
            break;
        const auto same = std::ranges::find_if(expected, [&](const SchemaObject& object) {
            return object.type == found->text(0) && object.name == found->text(1) && object.sql == found->text(2);
        });
        if (same == expected.end())
            return database.wrong("it holds something that the program did not put there");
        expected.erase(same);
    }
    std::erase_if(expected, [](const SchemaObject& object) { return object.name == nameIndex().name; });
    if (!expected.empty())
        return database.wrong("it is not whole");
    return {};
}

Result<std::int64_t> versionOf(Database& database) {
    auto asked = database.prepare("PRAGMA user_version");
    if (!asked)
        return failure(asked.error());
    const auto found = asked->step();
    if (!found)
        return failure(found.error());
    return asked->integer(0);
}

Result<void> bringUpToDate(Database& database) {
    const auto version = versionOf(database);
    if (!version)
        return failure(version.error());
    if (*version == kEvidenceVersion)
        return {};
    return database.run(
        fmt::format("BEGIN IMMEDIATE; ALTER TABLE file ADD COLUMN tail TEXT; ALTER TABLE file ADD COLUMN tail_detail "
                    "TEXT; PRAGMA user_version = {}; COMMIT",
                    kEvidenceVersion));
}

}  // namespace quillon
