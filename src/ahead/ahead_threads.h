// SPDX-License-Identifier: MIT
#pragma once

// Threads that do work before it is needed. One thread, the owner's, leaves tasks to them in the order in which it will
// want them, and may take one back that none of them has begun.
//
// A system call that hangs cannot be cut short, but nobody has to wait for it: the owner may give up a task that a
// thread is at, and end the threads without waiting for those that hang. What a thread works with is then its own.

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace quillon {

/// What a task derives from. All but `AheadThreads` leaves it alone.
class AheadTask {
private:
    friend class AheadThreads;
    bool done_ = false;  // guarded by the threads' mutex
};

/// What becomes of threads that are at work when the owner ends them.
enum class AtEnd {
    Wait,        ///< they are waited for
    LeaveBehind  ///< those that do not end at once go on by themselves; their work uses nothing of the owner's
};

class AheadThreads {
public:
    using Work = std::function<void(AheadTask&)>;
    /// Called once by each thread, for what it works with.
    using MakeWork = std::function<Work()>;

    AheadThreads(std::size_t most, MakeWork makeWork, AtEnd atEnd = AtEnd::Wait);
    ~AheadThreads() { end(); }
    AheadThreads(const AheadThreads&) = delete;
    AheadThreads& operator=(const AheadThreads&) = delete;

    /// Starts one more thread, up to the most.
    void add();
    /// False when none runs: a system may be out of threads, or the process may open too few files for any.
    [[nodiscard]] bool any() const { return !threads_.empty(); }

    /// Leaves a task to the threads, of which there must be one, behind all others. They hold it until it is done.
    void leave(std::shared_ptr<AheadTask> task);
    /// The same ahead of all others.
    void leaveFirst(std::shared_ptr<AheadTask> task);
    /// These two with a task that is the owner's and outlives its work.
    void leave(AheadTask& task) { leave(unowned(task)); }
    void leaveFirst(AheadTask& task) { leaveFirst(unowned(task)); }
    /// The last of the tasks left that none has begun, which now is the owner's again; null when there is none.
    [[nodiscard]] AheadTask* takeBackLast();
    /// The same for this task, the first of those left.
    [[nodiscard]] bool takeBack(AheadTask& first);
    /// Nobody waits for this task any more, at which a thread may be: another thread may be added in its place.
    void giveUp(const AheadTask& task);

    /// These three throw std::bad_alloc when a thread was out of memory at a task.
    [[nodiscard]] bool isDone(const AheadTask& task);
    /// True when a task left is done. Waits for it, but not longer than `limit`.
    [[nodiscard]] bool isDoneWithin(const AheadTask& task, std::chrono::microseconds limit);
    void waitFor(const AheadTask& task);

    /// Forgets the tasks that none has begun, and ends the threads.
    void end();

private:
    struct Shared;

    [[nodiscard]] static std::shared_ptr<AheadTask> unowned(AheadTask& task) {
        return {std::shared_ptr<AheadTask>(), &task};
    }
    template <typename Put>
    void leaveBy(std::shared_ptr<AheadTask> task, Put put);
    [[nodiscard]] bool endAtOnce();

    std::size_t most_;
    MakeWork makeWork_;
    AtEnd atEnd_;
    std::size_t givenUp_ = 0;
    std::shared_ptr<Shared> shared_;
    std::vector<std::thread> threads_;
};

}  // namespace quillon
