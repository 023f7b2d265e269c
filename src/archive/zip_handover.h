// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace quillon {

/// What the main window hands to the zip screen when it opens it. UTF-8.
struct ZipHandover {
    std::string jobId;
    std::string separator;  ///< of the separator box; may be empty
};

}  // namespace quillon
