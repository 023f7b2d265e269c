// SPDX-License-Identifier: MIT
#pragma once

// Threads that do work before it is needed. One thread, the owner's, leaves tasks to them in the order in which it will
// want them, and may take one back that none of them has begun. The tasks are the owner's and outlive their work.

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace quillon {

/// What a task derives from. All but `AheadThreads` leaves it alone.
class AheadTask {
private:
    friend class AheadThreads;
    bool done_ = false;  // guarded by the threads' mutex
};

class AheadThreads {
public:
    using Work = std::function<void(AheadTask&)>;
    /// Called once by each thread, for what it works with.
    using MakeWork = std::function<Work()>;

    AheadThreads(std::size_t most, MakeWork makeWork) : most_(most), makeWork_(std::move(makeWork)) {}
    ~AheadThreads() { end(); }
    AheadThreads(const AheadThreads&) = delete;
    AheadThreads& operator=(const AheadThreads&) = delete;

    /// Starts one more thread, up to the most.
    void add();
    /// False when none runs: a system may be out of threads, or the process may open too few files for any.
    [[nodiscard]] bool any() const { return !threads_.empty(); }

    /// Leaves a task to the threads, of which there must be one, behind all others.
    void leave(AheadTask& task);
    /// The same ahead of all others.
    void leaveFirst(AheadTask& task);
    /// The last of the tasks left that none has begun, which now is the owner's again; null when there is none.
    [[nodiscard]] AheadTask* takeBackLast();
    /// The same for this task, the first of those left.
    [[nodiscard]] bool takeBack(AheadTask& first);

    /// These three throw std::bad_alloc when a thread was out of memory at a task.
    [[nodiscard]] bool isDone(const AheadTask& task);
    /// True when a task left is done. Waits for it, but not longer than `limit`.
    [[nodiscard]] bool isDoneWithin(const AheadTask& task, std::chrono::microseconds limit);
    void waitFor(const AheadTask& task);

    /// Forgets the tasks that none has begun, and waits for the threads to end.
    void end();

private:
    template <typename Put>
    void leaveBy(AheadTask& task, Put put);
    void work();
    [[nodiscard]] bool didWork(Work& work, AheadTask& task);
    void throwIfOutOfMemory();

    std::size_t most_;
    MakeWork makeWork_;
    std::vector<std::thread> threads_;

    std::mutex mutex_;
    std::condition_variable toDo_;
    std::condition_variable done_;
    std::deque<AheadTask*> waiting_;  // guarded by mutex_, as are the next
    std::size_t idle_ = 0;            // threads that wait for a task and were not woken for one
    bool ending_ = false;
    bool outOfMemory_ = false;
};

}  // namespace quillon
