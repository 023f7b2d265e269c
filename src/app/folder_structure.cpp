// SPDX-License-Identifier: MIT
#include "app/folder_structure.h"

#include "platform/directory.h"
#include "platform/folders.h"

namespace quillon {

namespace {

bool existsOrCreated(const NativePath& path) {
    return pathExists(path) || CreateFolderPath(path);
}

int countMissing(const Installation& installation) {
    const Paths& paths = installation.paths();
    int missing = 0;
    if (!pathExists(paths.settingsFile))
        ++missing;
    for (const NativePath* folder : {&paths.localSettings, &paths.localDatabase, &paths.zipPath}) {
        if (!existsOrCreated(*folder))
            ++missing;
    }
    if (paths.useSharedDb) {
        for (const NativePath* folder : {&paths.sharedPath, &paths.sharedDatabase}) {
            if (!existsOrCreated(*folder))
                ++missing;
        }
    }
    return missing;
}

void repairOnce(const Paths& paths) {
    if (!pathExists(paths.localPath))
        CreateFolderPath(paths.localSettings);
    if (!pathExists(paths.localDatabase))
        CreateFolderPath(paths.localDatabase);
    if (!pathExists(paths.zipPath))
        CreateFolderPath(paths.zipPath);
    if (!paths.useSharedDb)
        return;
    if (!pathExists(paths.sharedSettings))
        CreateFolderPath(paths.sharedSettings);
    if (!pathExists(paths.sharedDatabase))
        CreateFolderPath(paths.sharedDatabase);
}

}  // namespace

bool CreateFolderPath(const NativePath& path) {
    if (!path.is_absolute() || path.native().find('\0') != std::string::npos)
        return pathExists(path);
    NativePath walked;
    for (const auto& element : path) {
        walked /= element;
        if (!pathExists(walked))
            passOver(createFolder(walked), "an upper level may be out of reach; the last one decides");
    }
    return pathExists(path);
}

void createFolderChain(const NativePath& path) {
    if (path.native().find('\0') != std::string::npos)
        return;
    auto folder = Directory::openToLookUp(path.is_absolute() ? "/" : ".");
    for (const auto& element : path.parent_path().relative_path()) {
        if (!folder)
            return;
        if (element.empty())
            continue;
        auto next = folder->lookUpFolder(element.native());
        if (!next) {
            passOver(folder->createFolder(element.native()), "the next look-up tells whether it is there");
            next = folder->lookUpFolder(element.native());
        }
        folder = std::move(next);
    }
}

bool checkFolderStructure(const Installation& installation) {
    if (countMissing(installation) < 1)
        return true;
    repairOnce(installation.paths());
    return false;
}

FirstScreen decideFirstScreen(Installation& installation, const std::function<void()>& whenLoaded) {
    const NativePath& settingsFile = installation.paths().settingsFile;
    if (!pathExists(settingsFile))
        return FirstScreen::SetupWizard;
    const auto size = fileSize(settingsFile);
    if (!size)
        return FirstScreen::SetupWizard;
    if (*size == 0)
        return FirstScreen::MainWindow;
    if (!installation.loadSettingsRecord())
        return FirstScreen::SetupWizard;
    if (whenLoaded)
        whenLoaded();
    return checkFolderStructure(installation) ? FirstScreen::MainWindow : FirstScreen::SetupWizard;
}

}  // namespace quillon
