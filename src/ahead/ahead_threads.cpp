// SPDX-License-Identifier: MIT
#include "ahead/ahead_threads.h"

#include <new>
#include <system_error>
#include <utility>

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
    Work work;
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
        const bool did = didWork(work, task);
        lock.lock();
        outOfMemory_ = outOfMemory_ || !did;
        task.done_ = true;
        done_.notify_one();
    }
}

// False when the memory did not suffice. That is the owner's to hear: here it would end the process.
bool AheadThreads::didWork(Work& work, AheadTask& task) {
    try {
        if (!work)
            work = makeWork_();
        work(task);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

// Said once: who has heard it gives up and has to be able to wait for what else runs.
void AheadThreads::throwIfOutOfMemory() {
    if (std::exchange(outOfMemory_, false))
        throw std::bad_alloc();
}

bool AheadThreads::isDone(const AheadTask& task) {
    const std::lock_guard lock(mutex_);
    throwIfOutOfMemory();
    return task.done_;
}

bool AheadThreads::isDoneWithin(const AheadTask& task, std::chrono::microseconds limit) {
    std::unique_lock lock(mutex_);
    const bool done = done_.wait_for(lock, limit, [&task] { return task.done_; });
    throwIfOutOfMemory();
    return done;
}

void AheadThreads::waitFor(const AheadTask& task) {
    std::unique_lock lock(mutex_);
    done_.wait(lock, [&task] { return task.done_; });
    throwIfOutOfMemory();
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
