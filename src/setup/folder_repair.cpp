// SPDX-License-Identifier: MIT
#include "setup/folder_repair.h"

#include "app/folder_structure.h"
#include "platform/folders.h"

namespace quillon {

void repairFolders(const Installation& installation, Dialogs& dialogs) {
    const Paths& paths = installation.paths();
    for (const NativePath* folder : {&paths.localPath, &paths.localSettings, &paths.localDatabase, &paths.sharedPath,
                                     &paths.sharedDatabase, &paths.sharedSettings}) {
        if (!pathExists(*folder))
            CreateFolderPath(*folder);
    }
    const bool fillsTheField = installation.settings.zipPath.trimmed().bytes.size() == kSettingsTextBytes;
    if (fillsTheField && !pathExists(paths.zipPath))
        CreateFolderPath(paths.zipPath);
    if (!checkFolderStructure(installation)) {
        dialogs.warn(
            "Error",
            "Unable to repair folder structure. Please check that network drives are mapped correcty, and that "
            "the shared drives are accessible.");
    }
}

}  // namespace quillon
