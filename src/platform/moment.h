// SPDX-License-Identifier: MIT
#pragma once

// Moments to wait for and to measure by. What a person is shown comes from `Clock`, which tests can hold still.

#include <chrono>

namespace quillon {

/// A point of a clock that never runs backwards; it tells no time of day.
using Moment = std::chrono::steady_clock::time_point;

[[nodiscard]] inline Moment momentNow() {
    return std::chrono::steady_clock::now();
}

}  // namespace quillon
