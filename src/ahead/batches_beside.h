// SPDX-License-Identifier: MIT
#pragma once

// What one thread hands over piece by piece and another works off in the same order: pieces are gathered in batches, so
// that a thread is woken for many of them, and a batch that is not full goes when nothing has come for a while, so that
// nothing waits for long. How many wait is bounded.

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "platform/result.h"

namespace quillon {

/// `Batch` can be made without arguments, moved, asked whether it is `empty()`, and be given back by `clear()`.
template <typename Batch>
class BatchesBeside {
public:
    /// Called on the thread for each batch in its order, with an empty one when nothing came for the pause, and with an
    /// empty one at the end.
    using Work = std::function<void(Batch&)>;

    BatchesBeside(std::size_t most, std::chrono::milliseconds pause, Work work)
        : most_(most), pause_(pause), work_(std::move(work)) {}
    /// Waits until all that was given is worked off.
    ~BatchesBeside() {
        close();
        if (thread_.joinable())
            thread_.join();
    }
    BatchesBeside(const BatchesBeside&) = delete;
    BatchesBeside& operator=(const BatchesBeside&) = delete;

    /// PathAccess when the system has no thread to give.
    [[nodiscard]] Result<void> start() {
        try {
            thread_ = std::thread([this] { run(); });
        } catch (const std::system_error& error) {
            return failure(ErrorKind::PathAccess, error.what());
        }
        return {};
    }

    /// Lets `put(batch)` add one piece; it says whether the batch is full with it. False, and nothing is put, while as
    /// many batches wait as may.
    template <typename Put>
    [[nodiscard]] bool add(Put put) {
        const std::lock_guard lock(mutex_);
        if (waiting_.size() >= most_)
            return false;
        if (put(filling_)) {
            waiting_.push_back(std::exchange(filling_, spare()));
            wake_.notify_one();
        }
        return true;
    }

    /// True when `add` would take a piece. Waits for it, but not longer than `limit`.
    [[nodiscard]] bool roomWithin(std::chrono::milliseconds limit) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, limit, [this] { return waiting_.size() < most_; });
    }

    /// Nothing more will come: the thread works off what it has, and ends.
    void close() {
        const std::lock_guard lock(mutex_);
        closed_ = true;
        wake_.notify_one();
    }

    /// True when the thread has nothing more to do for good. Waits for it, but not longer than `limit`.
    [[nodiscard]] bool endsWithin(std::chrono::milliseconds limit) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, limit, [this] { return ended_; });
    }

private:
    void run() {
        std::unique_lock lock(mutex_);
        do {
            wake_.wait_for(lock, pause_, [this] { return closed_ || !waiting_.empty(); });
            Batch batch = next();
            lock.unlock();
            work_(batch);
            batch.clear();
            lock.lock();
            spare_.push_back(std::move(batch));
            changed_.notify_all();
        } while (!closed_ || !waiting_.empty() || !filling_.empty());
        lock.unlock();
        Batch last;
        work_(last);
        lock.lock();
        ended_ = true;
        changed_.notify_all();
    }

    // The mutex is held.
    [[nodiscard]] Batch next() {
        if (waiting_.empty())
            return std::exchange(filling_, spare());
        Batch first = std::move(waiting_.front());
        waiting_.pop_front();
        return first;
    }

    // A batch that was worked off, with its room. The mutex is held.
    [[nodiscard]] Batch spare() {
        if (spare_.empty())
            return Batch();
        Batch batch = std::move(spare_.back());
        spare_.pop_back();
        return batch;
    }

    const std::size_t most_;
    const std::chrono::milliseconds pause_;
    const Work work_;
    std::thread thread_;

    std::mutex mutex_;
    std::condition_variable wake_;
    std::condition_variable changed_;
    // Guarded by mutex_.
    Batch filling_;
    std::deque<Batch> waiting_;
    std::vector<Batch> spare_;
    bool closed_ = false;
    bool ended_ = false;
};

}  // namespace quillon
