// SPDX-License-Identifier: MIT
#include "app/run_beside.h"

#include <chrono>

#include "app/turn_until.h"
#include "platform/start_beside.h"

namespace quillon {

namespace {

constexpr std::chrono::milliseconds kUnnoticed{20};

// Nothing that the work refers to goes before it has ended, not even when a handler throws.
struct EndAwaited {
    const std::future<void>& answer;
    ~EndAwaited() {
        if (answer.valid())
            answer.wait();
    }
};

}  // namespace

void runBeside(EventLoop& loop, const std::function<void()>& work, const std::function<void()>& aheadOfTurn) {
    const auto news = [&aheadOfTurn] {
        if (aheadOfTurn)
            aheadOfTurn();
    };
    auto started = startBeside([&work] { work(); });
    if (!started) {
        work();
        news();
        return;
    }
    const EndAwaited awaited{*started};
    const auto ended = [&](std::chrono::milliseconds pause) {
        const bool hasEnded = hasCome(*started, pause);
        news();
        return hasEnded;
    };
    if (!ended(kUnnoticed))
        turnUntil(loop, ended);
    started->get();
}

}  // namespace quillon
