// SPDX-License-Identifier: MIT
#pragma once

// What the screen "Copy Files" is given by the screen that opens it.

#include <string>

#include "answers/file_wish.h"

namespace quillon {

struct CopiesHandover {
    std::string job;          ///< ID, or path of a list or an evidence file
    FileWish wish;            ///< which of its files
    std::string what;         ///< the same in words but for the grades, UTF-8; empty: all files
    bool failedOnly = false;  ///< of these only what is not copied yet
};

}  // namespace quillon
