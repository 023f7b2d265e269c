// SPDX-License-Identifier: MIT
#pragma once

// A row of the evidence as it comes out of the database, and its digest. For the sources of this folder only.

#include "evidence/database.h"
#include "evidence/evidence_row.h"

namespace quillon {

/// What `readRow` reads; a WHERE may follow, with the file as f and its folder as o.
[[nodiscard]] Result<std::string> selectRow(Database& database);

void readRow(const Statement& found, EvidenceRow& row);

/// Over what a later reader relies on: id, path, size, time, attributes, grade, result and unread bytes.
[[nodiscard]] std::int64_t rowDigest(const EvidenceRow& row);

}  // namespace quillon
