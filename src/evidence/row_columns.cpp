// SPDX-License-Identifier: MIT
#include "evidence/row_columns.h"

#include "evidence/digest.h"

namespace quillon {

namespace {

// A number that is none of `Kind` is taken for none.
template <typename Kind>
std::optional<Kind> kindIn(const Statement& found, int column) {
    const auto number = found.integerOrNone(column);
    if (!number || *number < 0 || *number >= static_cast<std::int64_t>(Kind::Count))
        return std::nullopt;
    return static_cast<Kind>(*number);
}

std::optional<std::int64_t> numberOf(std::optional<Grade> grade) {
    return grade ? std::optional(static_cast<std::int64_t>(*grade)) : std::nullopt;
}

}  // namespace

void readRow(const Statement& found, EvidenceRow& row) {
    row.id = found.integer(0);
    row.row = found.integerOrNone(1);
    row.folder = found.blob(2);
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
    digest.add(std::string_view(row.result ? *row.result : std::string()));
    digest.add(row.unread);
    return digest.value();
}

}  // namespace quillon
