// SPDX-License-Identifier: MIT
#pragma once

#include "platform/file.h"
#include "platform/result.h"

namespace quillon {

/// Gives a file a second name in its folder, under which its bytes stay whatever becomes of the first: a link, and a
/// copy where the volume knows no links. A file that has the name already is replaced.
[[nodiscard]] Result<void> giveSecondName(const NativePath& file, const NativePath& second);

}  // namespace quillon
