// SPDX-License-Identifier: MIT
#pragma once

// The table of covered extensions for a document.

#include <string>

#include "dbcheck/header_database.h"

namespace quillon {

/// A Markdown table: a row a kind of file, by its name, with its extensions and their number of terms. Extensions of
/// one kind with unlike numbers of terms show the range. Ends with a line that counts kinds, extensions and terms.
[[nodiscard]] std::string extensionTable(const HeaderDatabase& database);

}  // namespace quillon
