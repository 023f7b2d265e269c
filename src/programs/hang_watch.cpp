// SPDX-License-Identifier: MIT
#include "programs/hang_watch.h"

#include <utility>

#include <fmt/format.h>

#include "text/list_text.h"
#include "text/numbers.h"

namespace quillon {

std::string HangRule::secondPassed(const WorkInHand::Look& now) {
    if (now.turnedTo != turnedTo_ || now.path.empty()) {
        turnedTo_ = now.turnedTo;
        seconds_ = 0;
        next_ = kHangSeconds;
        return {};
    }
    if (++seconds_ < next_)
        return {};
    next_ *= 10;
    return fmt::format("waiting for {} ({} s)", readable(std::string_view(now.path)), grouped(seconds_));
}

HangWatch::HangWatch(const WorkInHand& work, Say say) : work_(work), say_(std::move(say)) {
    if (auto started = startBeside(std::function<void()>([this] { watch(); })))
        watching_ = std::move(*started);
}

HangWatch::~HangWatch() {
    {
        const std::lock_guard lock(mutex_);
        ended_ = true;
    }
    wake_.notify_all();
    if (watching_.valid())
        watching_.wait();
}

void HangWatch::watch() {
    HangRule rule;
    std::unique_lock lock(mutex_);
    while (!wake_.wait_for(lock, std::chrono::seconds(1), [this] { return ended_; })) {
        const std::string line = rule.secondPassed(work_.look());
        if (!line.empty())
            say_(line);
    }
}

}  // namespace quillon
