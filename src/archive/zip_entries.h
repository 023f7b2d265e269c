// SPDX-License-Identifier: MIT
#pragma once

// Looks through an archive without unpacking it to a disk.

#include <functional>
#include <string_view>

#include "platform/file.h"
#include "platform/result.h"

namespace quillon {

/// Hands every entry to `take` in pieces that follow each other, with its name. Fails where an entry is cut or its
/// check sum disagrees.
[[nodiscard]] Result<void> readEntries(const NativePath& archive,
                                       const std::function<void(std::string_view name, std::string_view piece)>& take);

}  // namespace quillon
