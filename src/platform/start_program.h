// SPDX-License-Identifier: MIT
#pragma once

// Starts another program without a shell and does not wait for it.

#include <cstddef>
#include <string>
#include <vector>

#include "platform/result.h"

namespace quillon {

/// Starts programs beside this one and collects them when they have ended.
class BackgroundPrograms {
public:
    BackgroundPrograms() = default;
    BackgroundPrograms(const BackgroundPrograms&) = delete;
    BackgroundPrograms& operator=(const BackgroundPrograms&) = delete;

    /// Starts `arguments[0]`, looked for along PATH, with the others as its arguments, as they are. Its input is empty
    /// and its output goes nowhere.
    [[nodiscard]] Result<void> start(const std::vector<std::string>& arguments);

    /// How many are running still.
    [[nodiscard]] std::size_t running();

private:
    std::vector<int> children_;
};

}  // namespace quillon
