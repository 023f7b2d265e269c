// SPDX-License-Identifier: MIT
#pragma once

// The tables, indexes and views of an evidence file, and whether a file has them and nothing else.
// docs/formats/evidence.md.

#include <string>

#include "evidence/database.h"
#include "testing/grade.h"

namespace quillon {

/// Stands for a reason in `by_reason` and counts the good files that their own heads doubt; an evidence that counts
/// them says so under `kDoubtsCounted`.
inline constexpr std::int64_t kDoubtful = -1;
/// The same for what the medium did not give, under `kSectorsCounted`: files of which that is known; those that lack
/// bytes, with the number of these bytes; and how many of those count as recovered.
inline constexpr std::int64_t kSectorsKnown = -2;
inline constexpr std::int64_t kHurt = -3;
inline constexpr std::int64_t kHurtRecovered = -4;

inline constexpr std::int64_t kEvidenceId = 0x514C4556;  // "QLEV"
/// Version 1 lacks what the ends of files show. It is read as it is, and brought up to this one before it is written.
inline constexpr std::int64_t kEvidenceVersion = 2;

/// The number of a file that was not tested, where a total has to say so.
inline constexpr std::int64_t kNotTested = -1;

/// An index over names, for who looks for very many files by their paths. It takes a tenth of the file.
inline constexpr const char* kCreateNameIndex = "CREATE INDEX file_place ON file (folder, name)";
inline constexpr const char* kDropNameIndex = "DROP INDEX IF EXISTS file_place";

/// The column that counts files of a grade: its name with "_" for "-".
[[nodiscard]] std::string countColumn(Grade grade);

/// The bytes of an evidence file without rows.
[[nodiscard]] Result<std::string> emptyEvidence();

/// Fails when the file is no evidence, one of a newer program, or holds anything that is not ours. The file alone is
/// looked at, before SQLite is.
[[nodiscard]] Result<void> checkEvidenceFile(const NativePath& path);
/// The same for what it says of its tables.
[[nodiscard]] Result<void> checkSchema(Database& database);

[[nodiscard]] Result<std::int64_t> versionOf(Database& database);
/// Gives an evidence of an earlier version, which `checkSchema` has passed, the columns of this one.
[[nodiscard]] Result<void> bringUpToDate(Database& database);

}  // namespace quillon
