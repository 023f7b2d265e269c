// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace quillon {

/// Bytes as a record of a term file has them.
struct TermWords {
    char type = 'H';   ///< 'T' or 'H'
    std::string term;  ///< text, or hexadecimal digits in upper case
};

/// Text where a term file and its editors keep every byte of it, else hexadecimal digits. `bytes` are not empty.
[[nodiscard]] TermWords termWords(std::string_view bytes);

}  // namespace quillon
