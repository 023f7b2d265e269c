// SPDX-License-Identifier: MIT
#pragma once

// What the user of this process may write, and where programs keep the user's data.

#include "platform/file.h"

namespace quillon {

/// True when this process may make files in the folder.
[[nodiscard]] bool canCreateFilesIn(const NativePath& folder);

/// True for a folder in which this process may make files, or that it may make with the folders above it.
[[nodiscard]] bool canBeFolder(const NativePath& path);

/// $XDG_DATA_HOME, or .local/share of the home folder; empty for a user without a home.
[[nodiscard]] NativePath userDataFolder();

}  // namespace quillon
