// SPDX-License-Identifier: MIT
// Time is counted from the end of a turn, so that a slow screen never takes more than its share of a pass.
#include "ui/window_event_loop.h"

#include <algorithm>
#include <utility>

#include <QCoreApplication>

namespace quillon {

void WindowEventLoop::turn() {
    if (clock_.milliseconds() - last_ >= interval_)
        flush();
}

void WindowEventLoop::flush() {
    const std::int64_t start = clock_.milliseconds();
    refreshScreens();
    QCoreApplication::processEvents();
    last_ = clock_.milliseconds();
    interval_ = std::clamp(8 * (last_ - start), kInterval, kLongestInterval);
}

void WindowEventLoop::refreshScreens() {
    // By index: a refresh may add or remove one.
    for (std::size_t i = 0; i < refreshes_.size(); ++i) {
        const auto refresh = refreshes_[i].second;
        refresh();
    }
}

int WindowEventLoop::addRefresh(std::function<void()> refresh) {
    refreshes_.emplace_back(nextNumber_, std::move(refresh));
    return nextNumber_++;
}

void WindowEventLoop::removeRefresh(int number) {
    std::erase_if(refreshes_, [number](const auto& entry) { return entry.first == number; });
}

}  // namespace quillon
