// SPDX-License-Identifier: MIT
#pragma once

// What saves left in the data folders when their process was killed.

#include <cstddef>
#include <vector>

#include "app/kept_files.h"

namespace quillon {

/// The litter of saves (platform/whole_file, isSaveLitter) that lies directly in these folders; a folder that cannot be
/// listed is passed over.
[[nodiscard]] std::vector<NativePath> findSaveLitter(const std::vector<NativePath>& folders);

/// Moves such files under Kept. Gives the number of those that went.
[[nodiscard]] std::size_t moveUnderKept(const std::vector<NativePath>& litter, KeptFiles& kept);

/// Both at once.
std::size_t moveSaveLitterAway(const std::vector<NativePath>& folders, KeptFiles& kept);

}  // namespace quillon
