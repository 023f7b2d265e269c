// SPDX-License-Identifier: MIT
#include "setup/settings_transfer.h"

#include "platform/folders.h"
#include "platform/whole_file.h"

namespace quillon {

void exportSettings(const Installation& installation, const Surroundings& surroundings) {
    Dialogs& dialogs = surroundings.dialogs;
    if (!pathExists(installation.paths().settingsFile)) {
        dialogs.warn("No Settings", "There are no settigns to export.");
        return;
    }
    const auto folder = dialogs.pickFolder("Export settings to ...", NativePath());
    if (!folder || folder->empty())
        return;
    const NativePath file = *folder / kExportedSettingsName;
    KeptFiles kept(installation, surroundings.clock);
    passOver(kept.copyAway(file), "the settings that were exported before live on in their own installation");
    const auto saved = saveWholeFile(file, encodeSettings(installation.settings));
    if (saved)
        dialogs.tell("Export OK", "Settings successfully exported.", BoxStyle::Information);
    else
        dialogs.warn("Error", "An error occurred while exporting the settings. (" + saved.error().text + ")");
}

bool importSettings(Installation& installation, Dialogs& dialogs) {
    FilePick pick;
    pick.title = "Open";
    pick.filter = "Settings File(Settings.Dat)|*Settings.dat|All Files(*.*)|*.*";
    const NativePath start = installation.folder(SettingsFolder::Local);
    pick.startFolder = start.empty() ? NativePath("/") : start;
    const auto picked = dialogs.pickFiles(pick);
    if (picked.empty())
        return false;
    const auto size = fileSize(picked.front());
    if (!size)
        return false;
    if (*size != kSettingsBytes) {
        dialogs.warn("Error", "Not a settings database.");
        return false;
    }
    const auto bytes = readWholeFile(picked.front());
    if (!bytes)
        return false;
    installation.settings = decodeSettings(*bytes);
    const bool saved = installation.saveSettingsRecord().has_value();
    if (!saved || !installation.loadSettingsRecord())
        installation.refreshPathVariables();  // the program goes on with what is in memory
    return true;
}

}  // namespace quillon
