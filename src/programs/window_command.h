// SPDX-License-Identifier: MIT
#pragma once

// The command line of the window program. It has two options, and neither needs a display; all others are Qt's.

#include <optional>
#include <string>
#include <vector>

namespace quillon {

/// What `quillon` writes to its standard output instead of opening its window; nothing when it opens. The arguments are
/// those behind the name of the program.
[[nodiscard]] std::optional<std::string> windowAnswer(const std::vector<std::string>& arguments);

/// What it writes to its error stream when it cannot open a window. The reason is Qt's, one or more lines.
[[nodiscard]] std::string withoutDisplay(const std::string& reason);

}  // namespace quillon
