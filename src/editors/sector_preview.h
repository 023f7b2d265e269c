// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace quillon {

/// What a screen hands to the preview of a bad sector marker.
struct SectorPreview {
    std::string bytes;         ///< of the preview file, or of a sector
    bool fromComposer = true;  ///< the screen that composes a marker comes back behind it
};

}  // namespace quillon
