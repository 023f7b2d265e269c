// SPDX-License-Identifier: MIT
#include "app/application_folder.h"

#include <system_error>

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
    std::error_code error;
    if (std::filesystem::is_symlink(link, error))
        passOver(removeFile(link), "the next step fails too, and setup tells of a missing file");
    std::filesystem::create_symlink(shipped, link, error);
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
