// SPDX-License-Identifier: MIT
#include "platform/heads_ahead.h"

#include <cassert>
#include <system_error>

namespace quillon {

namespace {

// A solid-state disk gives four times the files to sixteen readers, and hardly more to sixty-four.
constexpr std::size_t kThreads = 16;
// What comes from memory comes in a few microseconds, what comes from a disk in a hundred and more.
constexpr std::chrono::microseconds kSlow{100};
// Behind a slow head the next is most likely slow too, and trying it would open it twice.
constexpr unsigned kTryEvery = 16;

}  // namespace

void HeadsAhead::ask(std::string_view nativePath) {
    assert(asked_ < kMost);
    Slot& slot = slots_[(first_ + asked_) % kMost];
    ++asked_;
    slot.path = nativePath;
    slot.left = !readInLine(slot) && leaveToThread(slot);
    if (slot.left)
        quickInARow_ = 0;
    else if (quickInARow_ < kMost)
        ++quickInARow_;
}

// False: the head would have to be waited for.
bool HeadsAhead::readInLine(Slot& slot) {
    if (firstWait_ == FirstWait::Allowed && quickInARow_ == kMost) {
        readTimed(slot);
        return true;
    }
    if (quickInARow_ == 0 && ++untried_ % kTryEvery != 0)
        return false;
    const auto attempt = files_.tryHead(slot.path, slot.head);
    slot.result = attempt ? Result<void>() : failure(attempt.error());
    return !attempt || *attempt == Attempt::Read;
}

void HeadsAhead::readTimed(Slot& slot) {
    const auto start = std::chrono::steady_clock::now();
    slot.result = files_.readHead(slot.path, slot.head);
    if (std::chrono::steady_clock::now() - start > kSlow)
        quickInARow_ = 0;
}

// False: no thread could be started, and the head was read in line after all.
bool HeadsAhead::leaveToThread(Slot& slot) {
    if (!startThread()) {
        slot.result = files_.readHead(slot.path, slot.head);
        return false;
    }
    {
        const std::lock_guard lock(mutex_);
        slot.arrived = false;
        toRead_.push_back(&slot);
    }
    toDo_.notify_one();
    return true;
}

bool HeadsAhead::startThread() {
    if (threads_.size() == kThreads)
        return true;
    try {
        threads_.emplace_back([this] { work(); });
    } catch (const std::system_error&) {
        // A system out of threads: those that run have to do.
    }
    return !threads_.empty();
}

void HeadsAhead::work() {
    const auto reader = makeReader_();
    std::unique_lock lock(mutex_);
    while (true) {
        toDo_.wait(lock, [this] { return ending_ || !toRead_.empty(); });
        if (ending_)
            return;
        Slot& slot = *toRead_.front();
        toRead_.pop_front();
        lock.unlock();
        auto result = reader->readHead(slot.path, slot.head);
        lock.lock();
        slot.result = std::move(result);
        slot.arrived = true;
        done_.notify_one();
    }
}

bool HeadsAhead::firstArrives(std::chrono::milliseconds limit) {
    assert(asked_ > 0);
    if (!first().left)
        return true;
    std::unique_lock lock(mutex_);
    return done_.wait_for(lock, limit, [this] { return first().arrived; });
}

void HeadsAhead::dropFirst() {
    assert(asked_ > 0);
    first_ = (first_ + 1) % kMost;
    --asked_;
}

Result<void> HeadsAhead::readHead(std::string_view nativePath, HeaderBytes& head) {
    if (asked_ == 0 || first().path != nativePath)
        return files_.readHead(nativePath, head);
    if (first().left) {
        std::unique_lock lock(mutex_);
        done_.wait(lock, [this] { return first().arrived; });
    }
    head = first().head;
    return first().result;
}

void HeadsAhead::release() {
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
        toRead_.clear();
    }
    toDo_.notify_all();
    for (auto& thread : threads_) thread.join();
    threads_.clear();
    ending_ = false;
    asked_ = 0;
    quickInARow_ = kMost;
    files_.closeFolder();
}

}  // namespace quillon
