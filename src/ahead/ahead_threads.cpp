// SPDX-License-Identifier: MIT
#include "ahead/ahead_threads.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <new>
#include <system_error>
#include <utility>

#include "platform/folders.h"

namespace quillon {

namespace {

// Each thread holds some files and folders open, and so does work that waits for its turn.
constexpr std::uint64_t kOpenFiles = 256;
// So many threads may hang at what was given up.
constexpr std::size_t kMostGivenUp = 256;
// What does not hang ends within this time; one who pressed Stop does not notice it.
constexpr std::chrono::milliseconds kAtOnce{20};

}  // namespace

// What the threads work on. Those that are left behind keep it alive.
struct AheadThreads::Shared {
    std::mutex mutex;
    std::condition_variable toDo;
    std::condition_variable done;
    std::condition_variable ended;
    // Guarded by the mutex.
    std::deque<std::shared_ptr<AheadTask>> waiting;
    std::size_t idle = 0;  // threads that wait for a task and were not woken for one
    std::size_t running = 0;
    bool ending = false;
    bool outOfMemory = false;

    void run(const MakeWork& makeWork);
    void work(const MakeWork& makeWork);
    [[nodiscard]] static bool didWork(const MakeWork& makeWork, Work& work, AheadTask& task);

    // Said once: who has heard it gives up and has to be able to wait for what else runs.
    void throwIfOutOfMemory() {
        if (std::exchange(outOfMemory, false))
            throw std::bad_alloc();
    }
};

AheadThreads::AheadThreads(std::size_t most, MakeWork makeWork, AtEnd atEnd)
    : most_(most), makeWork_(std::move(makeWork)), atEnd_(atEnd), shared_(std::make_shared<Shared>()) {
}

void AheadThreads::add() {
    if (threads_.size() >= most_ + givenUp_ || openFileLimit() < kOpenFiles)
        return;
    {
        const std::lock_guard lock(shared_->mutex);
        ++shared_->running;
    }
    try {
        threads_.emplace_back([shared = shared_, makeWork = makeWork_] { shared->run(makeWork); });
    } catch (const std::system_error&) {
        // A system out of threads: those that run have to do.
        const std::lock_guard lock(shared_->mutex);
        --shared_->running;
    }
}

void AheadThreads::giveUp(const AheadTask& task) {
    const std::lock_guard lock(shared_->mutex);
    const auto begun = std::erase_if(shared_->waiting, [&task](const auto& left) { return left.get() == &task; }) == 0;
    if (begun && !task.done_ && givenUp_ < kMostGivenUp)
        ++givenUp_;
}

template <typename Put>
void AheadThreads::leaveBy(std::shared_ptr<AheadTask> task, Put put) {
    bool wake = false;
    {
        const std::lock_guard lock(shared_->mutex);
        task->done_ = false;
        put(std::move(task));
        wake = shared_->idle > 0;
        if (wake)
            --shared_->idle;  // it is on its way: to wake it once more would only cost
    }
    if (wake)
        shared_->toDo.notify_one();
}

void AheadThreads::leave(std::shared_ptr<AheadTask> task) {
    leaveBy(std::move(task), [this](auto given) { shared_->waiting.push_back(std::move(given)); });
}

void AheadThreads::leaveFirst(std::shared_ptr<AheadTask> task) {
    leaveBy(std::move(task), [this](auto given) { shared_->waiting.push_front(std::move(given)); });
}

AheadTask* AheadThreads::takeBackLast() {
    const std::lock_guard lock(shared_->mutex);
    if (shared_->waiting.empty())
        return nullptr;
    AheadTask* task = shared_->waiting.back().get();
    shared_->waiting.pop_back();
    task->done_ = true;
    return task;
}

bool AheadThreads::takeBack(AheadTask& first) {
    const std::lock_guard lock(shared_->mutex);
    if (shared_->waiting.empty() || shared_->waiting.front().get() != &first)
        return false;
    shared_->waiting.pop_front();
    first.done_ = true;
    return true;
}

void AheadThreads::Shared::run(const MakeWork& makeWork) {
    work(makeWork);
    const std::lock_guard lock(mutex);
    --running;
    ended.notify_all();
}

void AheadThreads::Shared::work(const MakeWork& makeWork) {
    Work work;
    std::unique_lock lock(mutex);
    while (true) {
        while (waiting.empty() && !ending) {
            ++idle;
            toDo.wait(lock);
        }
        if (ending)
            return;
        std::shared_ptr<AheadTask> task = std::move(waiting.front());
        waiting.pop_front();
        lock.unlock();
        const bool did = didWork(makeWork, work, *task);
        lock.lock();
        outOfMemory = outOfMemory || !did;
        task->done_ = true;
        done.notify_one();
        // The last one to hold a task that was given up closes what it has opened, which may take its time.
        if (task.use_count() == 1) {
            lock.unlock();
            task.reset();
            lock.lock();
        }
    }
}

// False when the memory did not suffice. That is the owner's to hear: here it would end the process.
bool AheadThreads::Shared::didWork(const MakeWork& makeWork, Work& work, AheadTask& task) {
    try {
        if (!work)
            work = makeWork();
        work(task);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

bool AheadThreads::isDone(const AheadTask& task) {
    const std::lock_guard lock(shared_->mutex);
    shared_->throwIfOutOfMemory();
    return task.done_;
}

bool AheadThreads::isDoneWithin(const AheadTask& task, std::chrono::microseconds limit) {
    std::unique_lock lock(shared_->mutex);
    const bool done = shared_->done.wait_for(lock, limit, [&task] { return task.done_; });
    shared_->throwIfOutOfMemory();
    return done;
}

void AheadThreads::waitFor(const AheadTask& task) {
    std::unique_lock lock(shared_->mutex);
    shared_->done.wait(lock, [&task] { return task.done_; });
    shared_->throwIfOutOfMemory();
}

// True when every thread has ended, or ends without a wait.
bool AheadThreads::endAtOnce() {
    std::deque<std::shared_ptr<AheadTask>> forgotten;
    std::unique_lock lock(shared_->mutex);
    shared_->ending = true;
    forgotten.swap(shared_->waiting);
    shared_->toDo.notify_all();
    return atEnd_ == AtEnd::Wait || shared_->ended.wait_for(lock, kAtOnce, [this] { return shared_->running == 0; });
}

void AheadThreads::end() {
    if (threads_.empty())
        return;
    const bool join = endAtOnce();
    for (auto& thread : threads_) join ? thread.join() : thread.detach();
    threads_.clear();
    givenUp_ = 0;
    shared_ = std::make_shared<Shared>();
}

}  // namespace quillon
