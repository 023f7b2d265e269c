// SPDX-License-Identifier: MIT
#include "programs/prepare_installation.h"

#include <ostream>
#include <string>
#include <vector>

#include "app/folder_structure.h"
#include "platform/folders.h"
#include "setup/default_installation.h"
#include "text/list_text.h"

namespace quillon {

namespace {

// What an installation needs and does not have, each with a blank ahead; the shared folders only with sharing on.
std::string missingFolders(const Paths& paths) {
    std::vector<NativePath> needed = {paths.localSettings, paths.localDatabase, paths.zipPath};
    if (paths.useSharedDb)
        needed.insert(needed.end(), {paths.sharedPath, paths.sharedDatabase});
    std::string missing;
    for (const auto& folder : needed) {
        if (!pathExists(folder))
            missing += folder.empty() ? " (a path that is not set)" : " " + readable(folder.native());
    }
    return missing;
}

}  // namespace

bool prepareInstallation(Installation& installation, std::ostream& err, bool quiet) {
    if (!pathExists(installation.paths().settingsFile)) {
        const auto done = setUpDefaultInstallation(installation);
        if (!done) {
            err << "quillon-job: cannot set up " << readable(installation.appFolder().native()) << ": "
                << done.error().text << '\n';
            return false;
        }
        if (!quiet)
            err << "First run: set up " << readable(done->localPath.native()) << " with the default database\n";
        if (done->lostNote)
            err << "quillon-job: " << lostNoteText(*done->lostNote) << '\n';
        return true;
    }
    const auto size = fileSize(installation.paths().settingsFile);
    auto loaded = installation.loadSettingsRecord();
    if (!loaded || !size || *size == 0) {
        err << "quillon-job: " << readable(installation.paths().settingsFile.native())
            << (loaded ? " is empty: set the installation up first" : " cannot be read: " + loaded.error().text)
            << '\n';
        return false;
    }
    // A failed check repairs what it can; the second one tells whether that was enough.
    if (checkFolderStructure(installation))
        return true;
    if (checkFolderStructure(installation))
        return true;
    err << "quillon-job: the folders of the installation are not whole and cannot be created:"
        << missingFolders(installation.paths()) << '\n';
    return false;
}

}  // namespace quillon
