// SPDX-License-Identifier: MIT
#include "ahead/ahead_threads.h"

#include <system_error>

#include "platform/folders.h"

namespace quillon {

namespace {

// Each thread holds some files and folders open, and so does work that waits for its turn.
constexpr std::uint64_t kOpenFiles = 256;

}  // namespace

void AheadThreads::add() {
    if (threads_.size() == most_ || openFileLimit() < kOpenFiles)
        return;
    try {
        threads_.emplace_back([this] { work(); });
    } catch (const std::system_error&) {
        // A system out of threads: those that run have to do.
    }
}

template <typename Put>
void AheadThreads::leaveBy(AheadTask& task, Put put) {
    bool wake = false;
    {
        const std::lock_guard lock(mutex_);
        task.done_ = false;
        put(&task);
        wake = idle_ > 0;
        if (wake)
            --idle_;  // it is on its way: to wake it once more would only cost
    }
    if (wake)
        toDo_.notify_one();
}

void AheadThreads::leave(AheadTask& task) {
    leaveBy(task, [this](AheadTask* given) { waiting_.push_back(given); });
}

void AheadThreads::leaveFirst(AheadTask& task) {
    leaveBy(task, [this](AheadTask* given) { waiting_.push_front(given); });
}

AheadTask* AheadThreads::takeBackLast() {
    const std::lock_guard lock(mutex_);
    if (waiting_.empty())
        return nullptr;
    AheadTask* task = waiting_.back();
    waiting_.pop_back();
    task->done_ = true;
    return task;
}

bool AheadThreads::takeBack(AheadTask& first) {
    const std::lock_guard lock(mutex_);
    if (waiting_.empty() || waiting_.front() != &first)
        return false;
    waiting_.pop_front();
    first.done_ = true;
    return true;
}

void AheadThreads::work() {
    const Work work = makeWork_();
    std::unique_lock lock(mutex_);
    while (true) {
        while (waiting_.empty() && !ending_) {
            ++idle_;
            toDo_.wait(lock);
        }
        if (ending_)
            return;
        AheadTask& task = *waiting_.front();
        waiting_.pop_front();
        lock.unlock();
        work(task);
        lock.lock();
        task.done_ = true;
        done_.notify_one();
    }
}

bool AheadThreads::isDone(const AheadTask& task) {
    const std::lock_guard lock(mutex_);
    return task.done_;
}

bool AheadThreads::isDoneWithin(const AheadTask& task, std::chrono::microseconds limit) {
    std::unique_lock lock(mutex_);
    return done_.wait_for(lock, limit, [&task] { return task.done_; });
}

void AheadThreads::waitFor(const AheadTask& task) {
    std::unique_lock lock(mutex_);
    done_.wait(lock, [&task] { return task.done_; });
}

void AheadThreads::end() {
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
        waiting_.clear();
    }
    toDo_.notify_all();
    for (auto& thread : threads_) thread.join();
    threads_.clear();
    ending_ = false;
    idle_ = 0;
}

}  // namespace quillon
