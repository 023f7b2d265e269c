// SPDX-License-Identifier: MIT
#pragma once

// Which folder is the application folder of a running program.

#include "platform/file.h"

namespace quillon {

/// The help: a zip archive whose entries are the pages, in the order of the contents.
inline constexpr const char* kHelpFileName = "Quillon.chm";

/// Name of the application folder below a user's data folder.
inline constexpr const char* kUserApplicationFolderName = "quillon";

/// `userData`/quillon, made when it is missing, with links to the files that come with `program` (the starter database
/// and the help). A file of the user's own stays. On failure no files can be made there.
[[nodiscard]] Result<NativePath> userApplicationFolder(const NativePath& program, const NativePath& userData);

/// The folder of the program, when files can be made in it: an application folder that was copied to a workstation
/// keeps all in one place. A program that was installed for all users lies where a user cannot write; then it is the
/// user's own, and when that cannot be made either, the folder of the program.
[[nodiscard]] NativePath applicationFolder(const NativePath& program, const NativePath& userData);

/// For the program that runs.
[[nodiscard]] NativePath applicationFolder();

}  // namespace quillon
