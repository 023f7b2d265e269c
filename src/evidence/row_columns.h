// SPDX-License-Identifier: MIT
#pragma once

// A row of the evidence as it comes out of the database, and its digest. For the sources of this folder only.

#include "evidence/database.h"
#include "evidence/evidence_row.h"

namespace quillon {

/// What `readRow` reads; a WHERE may follow, with the file as f and its folder as o.
inline constexpr const char* kSelectRow =
    "SELECT f.id, f.row, coalesce(o.path_bytes, o.path), coalesce(f.name_bytes, f.name), f.extension, f.size, "
    "f.modified, f.attributes, f.grade, f.result, f.reason, f.detail, f.unread, f.doubt, f.doubt_detail, f.copied, "
    "f.verified, f.copy_error, f.bad_bytes, f.bad_ranges, f.head FROM file f JOIN folder o ON o.id = f.folder ";

void readRow(const Statement& found, EvidenceRow& row);

/// Over what a later reader relies on: id, path, size, time, attributes, grade, result and unread bytes.
[[nodiscard]] std::int64_t rowDigest(const EvidenceRow& row);

}  // namespace quillon
