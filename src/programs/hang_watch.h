// SPDX-License-Identifier: MIT
#pragma once

// Names the file or folder that a job hangs at. The job's own thread may stand in a call of the system that does not
// come back, so another one looks.

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/start_beside.h"

namespace quillon {

/// What the job is at. One thread turns from one thing to the next, another one looks.
class WorkInHand {
public:
    /// An empty path: at nothing that could hang.
    void turnTo(std::string_view path) {
        const std::lock_guard lock(mutex_);
        path_ = path;
        ++turnedTo_;
    }

    struct Look {
        std::string path;
        std::uint64_t turnedTo = 0;  ///< another number: something else, or the same once more
    };
    [[nodiscard]] Look look() const {
        const std::lock_guard lock(mutex_);
        return {path_, turnedTo_};
    }

private:
    mutable std::mutex mutex_;
    std::string path_;
    std::uint64_t turnedTo_ = 0;
};

/// After how many seconds at one thing it is named, and again after ten times as many.
inline constexpr std::int64_t kHangSeconds = 10;

/// Decides when something is to be named; asked once a second.
class HangRule {
public:
    /// The line to show now, if any: "waiting for /media/a.jpg (10 s)".
    [[nodiscard]] std::string secondPassed(const WorkInHand::Look& now);

private:
    std::uint64_t turnedTo_ = 0;
    std::int64_t seconds_ = 0;
    std::int64_t next_ = kHangSeconds;
};

/// Looks once a second, on a thread of its own, as long as it lives.
class HangWatch {
public:
    using Say = std::function<void(const std::string& line)>;

    /// `work` must outlive this; `say` is called on the other thread. Where no thread is to be had nobody looks.
    HangWatch(const WorkInHand& work, Say say);
    ~HangWatch();
    HangWatch(const HangWatch&) = delete;
    HangWatch& operator=(const HangWatch&) = delete;

private:
    void watch();

    const WorkInHand& work_;
    Say say_;
    std::mutex mutex_;
    std::condition_variable wake_;
    bool ended_ = false;
    AnswerBeside<std::function<void()>> watching_;
};

}  // namespace quillon
