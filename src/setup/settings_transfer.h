// SPDX-License-Identifier: MIT
#pragma once

// Export and import of the settings: the settings record under another name, passed from one workstation to the next
// by hand. docs/formats/settings-record.md.

#include "app/installation.h"
#include "app/kept_files.h"
#include "app/surroundings.h"

namespace quillon {

inline constexpr const char* kExportedSettingsName = "ZOV-Settings.dat";

/// Asks for a folder and writes the record in memory there, telling how it went. An existing export is overwritten
/// without a question; its bytes go under Kept. Kept: whether there are settings is asked of the file on disk, though
/// the record in memory is exported (test ExportNeedsASettingsFileAndWritesTheRecordInMemory).
void exportSettings(const Installation& installation, const Surroundings& surroundings);

/// Asks for a file of exactly the record's length, takes it as the record in memory, saves it at once and derives the
/// paths. Nothing in it is examined. True when a record was taken; false after a cancel, another length (told in a box)
/// or a failure to read (without a word).
[[nodiscard]] bool importSettings(Installation& installation, Dialogs& dialogs);

}  // namespace quillon
