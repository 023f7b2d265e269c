// SPDX-License-Identifier: MIT
#pragma once

#include "app/installation.h"
#include "app/surroundings.h"

namespace quillon {

/// Creates every folder of the installation that is missing, the shared ones too, and tells in a box when the
/// structure is not whole afterwards.
///
/// Kept: the archive folder is taken from its settings field with the blanks that fill the field up, so that only a
/// path of the field's full length is created here (test TheArchiveFolderIsNotRepaired); the check of the structure
/// looks at the archive folder by itself.
void repairFolders(const Installation& installation, const Surroundings& surroundings);

}  // namespace quillon
