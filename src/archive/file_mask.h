// SPDX-License-Identifier: MIT
#pragma once

// File masks as a folder listing takes them: "*" any run of characters, "?" one character, everything else stands for
// itself, without regard to case. "*.*" is every name, also one without a dot.

#include <string>
#include <string_view>
#include <vector>

#include "platform/file.h"

namespace quillon {

/// True when the whole name fits the mask. `name` is a native name, `mask` UTF-8.
[[nodiscard]] bool matchesFileMask(std::string_view name, std::string_view mask);

/// The files directly in a folder whose names fit, sorted by bytes. None when the folder cannot be listed.
[[nodiscard]] std::vector<std::string> listByMask(const NativePath& folder, std::string_view mask);

}  // namespace quillon
