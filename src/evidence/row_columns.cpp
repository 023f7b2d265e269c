// SPDX-License-Identifier: MIT
#include "evidence/row_columns.h"

#include <fmt/format.h>

#include "evidence/digest.h"
#include "evidence/schema.h"

namespace quillon {

namespace {

// All but the folder.
void readColumns(const Statement& found, EvidenceRow& row) {
    row.id = found.integer(0);
    row.row = found.integerOrNone(1);
    row.name = found.blob(3);
    row.extension = found.text(4);
    row.size = found.integer(5);
    row.modified = found.integerOrNone(6);
    row.attributes = found.integer(7);
    row.grade = kindIn<Grade>(found, 8);
    row.result = found.isNull(9) ? std::nullopt : std::optional<std::string>(found.text(9));
    row.reason = kindIn<Reason>(found, 10);
    row.detail = found.text(11);
    row.unread = found.integer(12);
    row.doubt = found.text(13);
    row.doubtDetail = found.text(14);
    row.copied = found.integerOrNone(15);
    row.verified = found.integerOrNone(16);
    row.copyError = found.text(17);
    row.badBytes = found.integerOrNone(18);
    row.badRanges = found.text(19);
    row.head = found.integerOrNone(20);
    row.tail = found.text(21);
    row.tailDetail = found.text(22);
}

// The first version has no columns for what ends show.
Result<std::string> selectWith(Database& database, const char* folder, const char* from) {
    const auto version = versionOf(database);
    if (!version)
        return failure(version.error());
    return fmt::format(
        "SELECT f.id, f.row, {}, coalesce(f.name_bytes, f.name), f.extension, f.size, f.modified, f.attributes, "
        "f.grade, f.result, f.reason, f.detail, f.unread, f.doubt, f.doubt_detail, f.copied, f.verified, f.copy_error, "
        "f.bad_bytes, f.bad_ranges, f.head, {} FROM file f {}",
        folder, *version < 2 ? "NULL, NULL" : "f.tail, f.tail_detail", from);
}

}  // namespace

Result<std::string> selectRow(Database& database) {
    return selectWith(database, "coalesce(o.path_bytes, o.path)", "JOIN folder o ON o.id = f.folder ");
}

Result<std::string> selectRowByFolder(Database& database) {
    return selectWith(database, "f.folder", "");
}

void readRow(const Statement& found, EvidenceRow& row) {
    readColumns(found, row);
    row.folder = found.blob(2);
}

std::int64_t readRowByFolder(const Statement& found, EvidenceRow& row) {
    readColumns(found, row);
    return found.integer(2);
}

std::int64_t rowDigest(const EvidenceRow& row) {
    Digest digest;
    digest.add(row.id);
    digest.add(std::string_view(row.folder));
    digest.add(std::string_view(row.name));
    digest.add(row.size);
    digest.add(row.modified);
    digest.add(row.attributes);
    digest.add(numberOf(row.grade));
    digest.add(std::uint64_t{row.result.has_value()});
    digest.add(row.result ? std::string_view(*row.result) : std::string_view());
    digest.add(row.unread);
    return digest.value();
}

}  // namespace quillon
