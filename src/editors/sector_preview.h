// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace quillon {

/// What the bad sector screen hands to its preview.
struct SectorPreview {
    std::string bytes;  ///< of the preview file
};

}  // namespace quillon
