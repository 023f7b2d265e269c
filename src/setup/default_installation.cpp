// SPDX-License-Identifier: MIT
#include "setup/default_installation.h"

#include "app/database_history.h"
#include "app/folder_structure.h"
#include "archive/zip_reader.h"
#include "platform/folders.h"
#include "text/list_text.h"

namespace quillon {

namespace {

AppSettings defaultSettings(const NativePath& localPath, const NativePath& zipPath) {
    AppSettings settings;
    settings.runHeaderTest = 1;
    settings.useSkipList = 1;
    settings.useCommonHeaders = 1;
    settings.localPath.assign(pageFromPath(localPath));
    settings.zipPath.assign(pageFromPath(zipPath));
    settings.alertRecipient.assign(PageText{"Query"});
    settings.zipRecipient.assign(PageText{"Query"});
    return settings;
}

Result<void> createFolders(const Paths& paths) {
    for (const NativePath* folder : {&paths.localSettings, &paths.localDatabase, &paths.zipPath}) {
        if (!CreateFolderPath(*folder))
            return failure(ErrorKind::PathAccess, readable(folder->native()) + " cannot be created");
    }
    return {};
}

Result<DefaultSetup> fillAndSave(Installation& installation) {
    const Paths& paths = installation.paths();
    ExtractOptions options;
    options.existing = ExistingFiles::Keep;
    LostNote lost;
    return createFolders(paths)
        .and_then([&] {
            NotedDatabase noted(paths.localSettings, changeBy("Setup"));
            auto extracted = extractArchive(installation.defaultDatabasePath(), paths.localPath, options);
            lost = noted.finish();
            return extracted;
        })
        .and_then([&](const Extracted& extracted) -> Result<DefaultSetup> {
            if (auto saved = installation.saveSettingsRecord(); !saved)
                return failure(saved.error());
            return DefaultSetup{paths.localPath, paths.zipPath, extracted.files.size(), extracted.alreadyThere, lost};
        });
}

}  // namespace

Result<DefaultSetup> setUpDefaultInstallation(Installation& installation) {
    const auto appFolder = absolutePath(installation.appFolder());
    const NativePath localPath = appFolder.value_or(installation.appFolder()) / "Data";
    const AppSettings before = installation.settings;
    installation.settings = defaultSettings(localPath, localPath / "Archives");
    installation.refreshPathVariables();
    Result<DefaultSetup> result;
    const std::string reason = whyNotInSettings(localPath / "Archives");
    if (!appFolder || !reason.empty())
        result = failure(ErrorKind::BadName,
                         readable(localPath.native()) + " has a name that the settings cannot hold: " + reason);
    else
        result = fillAndSave(installation);
    if (!result) {
        installation.settings = before;
        installation.refreshPathVariables();
    }
    return result;
}

}  // namespace quillon
