// SPDX-License-Identifier: MIT
// Time is counted from the end of a turn, so that a slow screen never takes more than its share of a pass.
#include "widgets/window_event_loop.h"

#include <algorithm>
#include <utility>

#include <QCoreApplication>

namespace quillon {

void WindowEventLoop::turn() {
    const std::int64_t now = clock_.milliseconds();
    if (now - lastRun_ < kInterval)
        return;
    if (now >= nextRefresh_) {
        flush();
    } else {
        QCoreApplication::processEvents();
        lastRun_ = clock_.milliseconds();
    }
}

void WindowEventLoop::flush() {
    const std::int64_t start = clock_.milliseconds();
    refreshScreens();
    QCoreApplication::processEvents();
    lastRun_ = clock_.milliseconds();
    nextRefresh_ = lastRun_ + std::clamp(8 * (lastRun_ - start), kShortestRefresh, kLongestRefresh);
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
