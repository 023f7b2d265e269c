// SPDX-License-Identifier: MIT
#include "platform/user_folder.h"

#include <cstdlib>

#include <pwd.h>
#include <unistd.h>

#include "platform/folders.h"

namespace quillon {

bool canCreateFilesIn(const NativePath& folder) {
    return isFolder(folder) && ::access(folder.c_str(), W_OK | X_OK) == 0;
}

bool canBeFolder(const NativePath& path) {
    NativePath there = path;
    while (!pathExists(there) && there.has_parent_path() && there != there.parent_path()) there = there.parent_path();
    return canCreateFilesIn(there);
}

NativePath userDataFolder() {
    const char* named = std::getenv("XDG_DATA_HOME");
    if (named != nullptr && NativePath(named).is_absolute())
        return named;
    const char* home = std::getenv("HOME");
    if (home == nullptr || *home == '\0') {
        const struct passwd* user = ::getpwuid(::geteuid());
        home = user != nullptr ? user->pw_dir : nullptr;
    }
    if (home == nullptr || !NativePath(home).is_absolute())
        return {};
    return NativePath(home) / ".local" / "share";
}

}  // namespace quillon
