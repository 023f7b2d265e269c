// SPDX-License-Identifier: MIT
#pragma once

// Work that waits for a medium rather than for a processor, side by side. For the sources of this folder and of ahead.

#include <cstddef>
#include <functional>

namespace quillon {

/// Does `work` for each place below `count`, on this thread and up to `mostThreads` further ones, as many as the system
/// gives; returns when all is done. False: memory was short, and some may not be done.
[[nodiscard]] bool workOnAll(std::size_t count, std::size_t mostThreads, const std::function<void(std::size_t)>& work);

}  // namespace quillon
