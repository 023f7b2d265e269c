// SPDX-License-Identifier: MIT
#include "app/run_beside.h"

#include <chrono>
#include <future>
#include <system_error>
#include <thread>

namespace quillon {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kUnnoticed{20};
constexpr milliseconds kTurnInterval{10};

// False when there is no thread to be had.
bool start(std::jthread& thread, std::packaged_task<void()>& task) {
    try {
        thread = std::jthread([&task] { task(); });
        return true;
    } catch (const std::system_error&) {
        return false;
    }
}

}  // namespace

void runBeside(EventLoop& loop, const std::function<void()>& work, const std::function<void()>& aheadOfTurn) {
    std::packaged_task<void()> task(work);
    auto ended = task.get_future();
    std::jthread thread;  // joined at the end: nothing that the work refers to goes before it has ended
    if (!start(thread, task))
        task();
    for (milliseconds wait = kUnnoticed; ended.wait_for(wait) != std::future_status::ready; wait = kTurnInterval) {
        if (aheadOfTurn)
            aheadOfTurn();
        loop.turn();
    }
    if (aheadOfTurn)
        aheadOfTurn();
    ended.get();
}

}  // namespace quillon
