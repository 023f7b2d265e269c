// SPDX-License-Identifier: MIT
#include "setup/folder_repair.h"

#include "app/folder_structure.h"
#include "app/run_beside.h"
#include "platform/folders.h"

namespace quillon {

namespace {

void createMissing(const Installation& installation) {
    const Paths& paths = installation.paths();
    for (const NativePath* folder : {&paths.localPath, &paths.localSettings, &paths.localDatabase, &paths.sharedPath,
                                     &paths.sharedDatabase, &paths.sharedSettings}) {
        if (!pathExists(*folder))
            CreateFolderPath(*folder);
    }
    const bool fillsTheField = installation.settings.zipPath.trimmed().bytes.size() == kSettingsTextBytes;
    if (fillsTheField && !pathExists(paths.zipPath))
        CreateFolderPath(paths.zipPath);
}

}  // namespace

void repairFolders(const Installation& installation, const Surroundings& surroundings) {
    const bool whole = answerBeside(surroundings.loop, [installation] {
        createMissing(installation);
        return checkFolderStructure(installation);
    });
    if (!whole) {
        surroundings.dialogs.warn(
            "Error",
            "Unable to repair folder structure. "
            "Please check that network drives are mapped correcty, and that the shared drives are accessible.");
    }
}

}  // namespace quillon
