// SPDX-License-Identifier: MIT
#pragma once

// Work that may hang, such as a call to a share or a name server that does not answer: a system call cannot be cut
// short, but nobody has to wait for it.

#include <future>
#include <system_error>
#include <thread>
#include <type_traits>
#include <utility>

#include "platform/result.h"

namespace quillon {

/// The answer of work on another thread, when there is one; `get` hands on an exception of the work.
template <typename Work>
using AnswerBeside = std::future<std::invoke_result_t<Work>>;

/// Runs `work` on a thread of its own, which ends when it does. Dropping the answer does not wait: whoever may do so
/// gives work that owns all that it uses. PathAccess when no thread is to be had.
template <typename Work>
[[nodiscard]] Result<AnswerBeside<Work>> startBeside(Work work) {
    std::packaged_task<std::invoke_result_t<Work>()> task(std::move(work));
    auto answer = task.get_future();
    try {
        std::thread(std::move(task)).detach();
    } catch (const std::system_error& error) {
        return failure(ErrorKind::PathAccess, error.what());
    }
    return answer;
}

/// True when the answer has come. Waits for it, but not longer than `limit`.
template <typename Answer>
[[nodiscard]] bool hasCome(const std::future<Answer>& answer, std::chrono::milliseconds limit) {
    return answer.wait_for(limit) == std::future_status::ready;
}

}  // namespace quillon
