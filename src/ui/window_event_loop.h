// SPDX-License-Identifier: MIT
#pragma once

// The event loop of a window program. Passes turn it once per row; it looks at the clock and really runs the loop only
// when 16 milliseconds have passed since the last time. Painting is what costs: a repaint for every row would make a
// fast disk wait for the screen two hundred times as long. Where one real turn is slow, as on a remote display, the
// next one is put off in proportion.

#include <functional>
#include <vector>

#include "app/event_loop.h"
#include "platform/dates.h"

namespace quillon {

class WindowEventLoop final : public EventLoop {
public:
    /// Milliseconds between two real turns: eight times what the last one took, within these bounds.
    static constexpr std::int64_t kInterval = 16;
    static constexpr std::int64_t kLongestInterval = 64;

    /// The clock must outlive the loop.
    explicit WindowEventLoop(const Clock& clock) : clock_(clock) {}

    void turn() override;
    [[nodiscard]] bool mayStandStill() const override { return false; }

    /// Refreshes the screens and runs the loop now. Whoever ran a pass calls it behind it: a short pass ends before its
    /// first real turn, and would leave old numbers on the screen.
    void flush();

    /// Called ahead of each real turn, so that a screen brings what it shows up to date. Gives a number for `remove`.
    int addRefresh(std::function<void()> refresh);
    void removeRefresh(int number);

private:
    void refreshScreens();

    const Clock& clock_;
    std::int64_t last_ = 0;
    std::int64_t interval_ = kInterval;
    int nextNumber_ = 1;
    std::vector<std::pair<int, std::function<void()>>> refreshes_;
};

}  // namespace quillon
