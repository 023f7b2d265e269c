// SPDX-License-Identifier: MIT
#pragma once

// The files that SQLite may open for us: the database and its rollback journal. A journal that somebody prepared may
// name any file of the user as its main journal, which SQLite would then remove; and a write-ahead log beside a
// database would change what it holds. Neither can be opened through this.

#include "platform/result.h"

namespace quillon {

/// The name by which SQLite is told to open its files so.
[[nodiscard]] Result<const char*> ownFilesOnly();

}  // namespace quillon
