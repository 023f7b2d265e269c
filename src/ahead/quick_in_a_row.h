// SPDX-License-Identifier: MIT
#pragma once

// The rule by which whoever asks ahead knows a quick source from a slow one: it is quick until something was slow, and
// again behind a number of quick things in a row.

#include <algorithm>
#include <cstddef>

namespace quillon {

class QuickInARow {
public:
    /// Behind so many quick things the next is taken for quick, too.
    static constexpr std::size_t kEnough = 64;

    void wasQuick() { count_ = std::min(count_ + 1, kEnough); }
    void wasSlow() { count_ = 0; }
    void was(bool quick) { quick ? wasQuick() : wasSlow(); }

    [[nodiscard]] bool isQuick() const { return count_ == kEnough; }
    /// True unless the last thing was slow.
    [[nodiscard]] bool lastWasQuick() const { return count_ > 0; }

private:
    std::size_t count_ = kEnough;
};

}  // namespace quillon
