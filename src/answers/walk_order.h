// SPDX-License-Identifier: MIT
#pragma once

// The order in which a walk meets what it finds, told from the paths alone.

#include <compare>
#include <string_view>

namespace quillon {

/// Of two files: a folder's own files come before its subfolders, and names stand in byte order. Paths are bytes, both
/// absolute or both below one folder.
[[nodiscard]] std::strong_ordering filesInWalkOrder(std::string_view first, std::string_view second);

/// Of two folders: each comes before what is below it, and names stand in byte order.
[[nodiscard]] std::strong_ordering foldersInWalkOrder(std::string_view first, std::string_view second);

}  // namespace quillon
