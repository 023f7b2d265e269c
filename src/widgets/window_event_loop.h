// SPDX-License-Identifier: MIT
#pragma once

// The event loop of a window program. Passes turn it once per row; it looks at the clock and really runs the loop only
// when 16 milliseconds have passed since the last time, so that mouse, keys and timers are prompt. Painting is what
// costs: a repaint for every row would make a fast disk wait for the screen two hundred times as long. So the screens
// are brought up to date some ten times a second, which is as fast as a person reads a count, and less often where
// one refresh is slow, as on a remote display.

#include <functional>
#include <vector>

#include "app/event_loop.h"
#include "platform/dates.h"

namespace quillon {

class WindowEventLoop final : public EventLoop {
public:
    /// Milliseconds between two runs of the loop.
    static constexpr std::int64_t kInterval = 16;
    /// Milliseconds between two refreshes: eight times what the last one took, within these bounds.
    static constexpr std::int64_t kShortestRefresh = 96;
    static constexpr std::int64_t kLongestRefresh = 240;

    /// The clock must outlive the loop.
    explicit WindowEventLoop(const Clock& clock) : clock_(clock) {}

    void turn() override;
    [[nodiscard]] bool mayStandStill() const override { return false; }

    /// Refreshes the screens and runs the loop now. Whoever ran a pass calls it behind it: a short pass ends before its
    /// first real turn, and would leave old numbers on the screen.
    void flush();

    /// Brings what all screens show up to date without running the loop.
    void refreshScreens();

    /// Called at each refresh, so that a screen brings what it shows up to date. Gives a number for `remove`.
    int addRefresh(std::function<void()> refresh);
    void removeRefresh(int number);

private:
    const Clock& clock_;
    std::int64_t lastRun_ = 0;
    std::int64_t nextRefresh_ = 0;
    int nextNumber_ = 1;
    std::vector<std::pair<int, std::function<void()>>> refreshes_;
};

}  // namespace quillon
