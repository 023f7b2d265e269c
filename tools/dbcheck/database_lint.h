// SPDX-License-Identifier: MIT
#pragma once

// The lint of a whole database folder.

#include "dbcheck/header_database.h"
#include "dbcheck/problem.h"

namespace quillon {

/// Checks every file: term files, common headers, skip list, report messages, and that families and kinds name
/// extensions that have a term file. Where there are reasons for position 0, each extension that has such records needs
/// one. A settings file that is missing is no problem; one that cannot be read is.
[[nodiscard]] Problems lintDatabase(const NativePath& folder, const HeaderDatabase& database);

/// A skip list: each line is lower-case, holds text besides wildcards, closes its brackets and has ">" in place of a
/// comma, which is how a path with a comma is compared.
void lintSkipList(const std::string& file, std::string_view bytes, Problems& problems);

/// Report messages: ten lines, none empty.
void lintReportMessages(const std::string& file, std::string_view bytes, Problems& problems);

}  // namespace quillon
