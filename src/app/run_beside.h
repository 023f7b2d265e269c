// SPDX-License-Identifier: MIT
#pragma once

// Work that may hang, as on a share whose server has gone. A system call cannot be cut short, but the window need not
// stand still with it.

#include <functional>
#include <optional>
#include <type_traits>
#include <utility>

#include "app/event_loop.h"

namespace quillon {

/// Runs `work` on a thread of its own and comes back when it has ended, never before. Work that ends within 20
/// milliseconds costs no turn: what is quick happens as in a plain call. After that the event loop is turned again and
/// again, with `aheadOfTurn` called first and once more at the end, on the calling thread.
///
/// Handlers run in those turns: `work` is given copies of whatever a handler may change, and nothing of the screen.
/// An exception of `work` comes back to the caller. Where no thread is to be had `work` is a plain call.
void runBeside(EventLoop& loop, const std::function<void()>& work, const std::function<void()>& aheadOfTurn = {});

/// The same for work with a result.
template <typename Work>
[[nodiscard]] std::invoke_result_t<Work> answerBeside(EventLoop& loop, Work work,
                                                      const std::function<void()>& aheadOfTurn = {}) {
    std::optional<std::invoke_result_t<Work>> answer;
    runBeside(
        loop, [&] { answer.emplace(work()); }, aheadOfTurn);
    return *std::move(answer);
}

}  // namespace quillon
