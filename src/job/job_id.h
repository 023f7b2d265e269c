// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace quillon {

/// Removes the characters that a job ID and a separator may not hold, every occurrence: the double quotation mark and
/// : \ / @ * ? < > |
[[nodiscard]] std::string withoutForbidden(std::string_view text);

/// A job ID as the box keeps it: without blanks around it and without forbidden characters.
[[nodiscard]] std::string cleanJobId(std::string_view text);

}  // namespace quillon
