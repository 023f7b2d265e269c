// SPDX-License-Identifier: MIT
#include "app/application_folder.h"

#include "app/folder_structure.h"
#include "app/installation.h"
#include "platform/folders.h"
#include "platform/user_folder.h"

namespace quillon {

namespace {

// A link whose target moved away is made anew; a file of the user's own is left alone.
void linkShippedFile(const NativePath& shipped, const NativePath& link) {
    if (!pathExists(shipped) || pathExists(link))
        return;
    if (isLink(link))
        passOver(removeFile(link), "the next step fails too, and setup tells of a missing file");
    passOver(createLink(shipped, link), "setup tells of a missing file");
}

}  // namespace

Result<NativePath> userApplicationFolder(const NativePath& program, const NativePath& userData) {
    const NativePath own = userData / kUserApplicationFolderName;
    if (userData.empty() || !CreateFolderPath(own) || !canCreateFilesIn(own))
        return failure(ErrorKind::PathAccess, "the user has no folder for data");
    for (const char* name : {kDefaultDatabaseName, kHelpFileName}) linkShippedFile(program / name, own / name);
    return own;
}

NativePath applicationFolder(const NativePath& program, const NativePath& userData) {
    return canCreateFilesIn(program) ? program : userApplicationFolder(program, userData).value_or(program);
}

NativePath applicationFolder() {
    return applicationFolder(programFolder(), userDataFolder());
}

}  // namespace quillon
