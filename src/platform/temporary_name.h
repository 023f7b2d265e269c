// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace quillon {

/// The computer whose process made a temporary name (platform/whole_file); empty for a name that is none.
[[nodiscard]] std::string computerOfTemporary(std::string_view temporaryName);

}  // namespace quillon
