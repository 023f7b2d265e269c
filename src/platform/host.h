// SPDX-License-Identifier: MIT
#pragma once

// What this computer and its user are called.

#include <string>

namespace quillon {

/// The host name, UTF-8, blanks cut on the right; "localhost" when the system has none.
[[nodiscard]] std::string hostName();

/// The user's login name; empty when the system does not know it.
[[nodiscard]] std::string userName();

}  // namespace quillon
