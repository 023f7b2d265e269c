// SPDX-License-Identifier: MIT
#pragma once

// A backup of the shared database: one zip in the shared path itself, which holds all that lies there but the backups
// before it. With them in it every backup would hold all earlier ones again and double the share with each.

#include <string>

#include "app/installation.h"
#include "app/surroundings.h"
#include "archive/zip_writer.h"

namespace quillon {

/// "DBBackup_", the first ten characters of date and time in the user's form without the signs "\/-:><,;", ".zip".
/// 15/11/2026 gives "DBBackup_15112026.zip". Kept: a shorter date runs into the time (test
/// AShortDateRunsIntoTheTime).
[[nodiscard]] std::string backupName(const Surroundings& surroundings);

/// Writes the backup. Two of one day have one name; the first one's bytes go where `options.kept` says. Links are not
/// followed. A shared path without files gives no backup and no failure.
[[nodiscard]] Result<void> backUpSharedDatabase(const Paths& paths, const Surroundings& surroundings,
                                                ZipOptions options);

}  // namespace quillon
