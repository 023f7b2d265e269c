// SPDX-License-Identifier: MIT
#pragma once

// What saves left in the data folders when their process was killed.

#include <cstddef>
#include <vector>

#include "app/kept_files.h"

namespace quillon {

/// Moves the litter of saves (platform/whole_file, isSaveLitter) that lies directly in these folders under Kept; a
/// folder that cannot be listed is passed over. Gives the number of files that went.
std::size_t moveSaveLitterAway(const std::vector<NativePath>& folders, KeptFiles& kept);

}  // namespace quillon
