// SPDX-License-Identifier: MIT
#pragma once

// Carries the progress of work on another thread to the screen's own.

#include <atomic>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "app/progress_host.h"

namespace quillon {

/// The work reports here; whoever waits for it hands on what has come in. Of several values the last one counts.
class ProgressRelay final : public ProgressHost {
public:
    void progressRange(std::int64_t maximum) override {
        const std::lock_guard lock(mutex_);
        waiting_.maximum = maximum;
        waiting_.value.reset();
    }
    void progressValue(std::int64_t value) override {
        const std::lock_guard lock(mutex_);
        waiting_.value = value;
    }
    void currentFile(const std::string& text) override {
        const std::lock_guard lock(mutex_);
        waiting_.text = text;
    }

    [[nodiscard]] bool cancelled() const override { return cancelled_; }

    /// On the screen's thread: the work ends at its next step.
    void cancel() { cancelled_ = true; }

    /// On the screen's thread: what has come in since the last call.
    void handOn(ProgressHost& host) {
        const Waiting news = take();
        if (news.text)
            host.currentFile(*news.text);
        if (news.maximum)
            host.progressRange(*news.maximum);
        if (news.value)
            host.progressValue(*news.value);
    }

private:
    struct Waiting {
        std::optional<std::string> text;
        std::optional<std::int64_t> maximum;
        std::optional<std::int64_t> value;
    };

    [[nodiscard]] Waiting take() {
        const std::lock_guard lock(mutex_);
        return std::exchange(waiting_, {});
    }

    std::mutex mutex_;
    Waiting waiting_;
    std::atomic<bool> cancelled_ = false;
};

}  // namespace quillon
