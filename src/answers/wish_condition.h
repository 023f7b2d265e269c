// SPDX-License-Identifier: MIT
#pragma once

// A wish for files in the words of the database. For the sources of this folder only.

#include <string>

#include "answers/file_wish.h"

namespace quillon {

/// SQL over columns of the table `file` that is true for the files that `fits` lets through, but for their folder.
[[nodiscard]] std::string wishCondition(const FileWish& wish);

}  // namespace quillon
