// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include <nlohmann/json_fwd.hpp>

namespace quillon {

/// A document in UTF-8 for scripts and for whoever looks at it: a control character, and one that hides or turns the
/// text around it, is written as an escape, and reads as itself. Bytes that are no text become U+FFFD. `indent`: blanks
/// for each level; below 0 all in one line.
[[nodiscard]] std::string jsonText(const nlohmann::ordered_json& json, int indent = 2);

}  // namespace quillon
