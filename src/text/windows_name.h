// SPDX-License-Identifier: MIT
#pragma once

// Which names Windows can open.

#include <string_view>

namespace quillon {

/// Of one part of a path, in bytes. False for a name with one of < > : " | ? * \ or a control character, one that ends
/// in a dot or a blank, one that is not UTF-8, and the names of devices (CON, NUL.txt, COM1 and the like).
[[nodiscard]] bool windowsCanOpen(std::string_view name);

}  // namespace quillon
