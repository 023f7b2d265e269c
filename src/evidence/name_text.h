// SPDX-License-Identifier: MIT
#pragma once

// Names of any bytes as text that every tool can show: bytes that are not UTF-8 and control characters become `\xHH`, a
// backslash is doubled. No two names have one text.
//
//   café -> café      new<line feed>line -> new\x0Aline      a\b -> a\\b

#include <string>
#include <string_view>

namespace quillon {

[[nodiscard]] std::string nameText(std::string_view name);

/// The same into a string that is kept; old contents are replaced.
void nameText(std::string_view name, std::string& out);

}  // namespace quillon
