// SPDX-License-Identifier: MIT
#include "ahead/copies_ahead.h"

#include <algorithm>
#include <cassert>
#include <memory>
#include <new>

#include "platform/moment.h"

namespace quillon {

namespace {

using std::chrono::milliseconds;

// As many as processors while files come quickly, since then they are what is short; more where a disk or a server is
// waited for.
constexpr unsigned kFirstThreads = 4;
constexpr std::size_t kMostThreads = 16;
// What comes from memory and goes to memory takes some tens of microseconds.
constexpr milliseconds kSlow{2};
// Between two idle calls.
constexpr milliseconds kWait{10};

}  // namespace

CopiesAhead::CopiesAhead(Helping helping, Idle idle)
    : helping_(helping), idle_(std::move(idle)), threads_(kMostThreads, [this]() -> AheadThreads::Work {
          return [this, copier = std::make_shared<FileCopier>()](AheadTask& task) {
              work(static_cast<Slot&>(task), *copier);
          };
      }) {
}

void CopiesAhead::ask(std::string_view source, std::string_view target) {
    assert(asked_ < kMost);
    if (!threads_.any()) {
        const unsigned own = helping_ == Helping::Allowed ? 1 : 0;
        const unsigned processors = std::clamp(std::thread::hardware_concurrency(), 2U, kFirstThreads);
        for (unsigned i = own; i < processors; ++i) threads_.add();
    }
    Slot& slot = slots_[(first_ + asked_) % kMost];
    ++asked_;
    slot.source = source;
    slot.target = target;
    slot.itsTurn = false;
    slot.left = threads_.any();
    if (slot.left)
        threads_.leave(slot);
}

void CopiesAhead::work(Slot& slot, FileCopier& copier) {
    if (!slot.itsTurn) {
        prepare(slot, copier);
        return;
    }
    const auto tell = [&slot](std::uint64_t done, std::uint64_t total) {
        slot.size = total;
        slot.done = done;
        return !slot.cancelled;
    };
    try {
        slot.finished = finish(slot, copier, tell);
    } catch (const std::bad_alloc&) {
        slot.finished =
            tl::unexpected<CopyError>(CopyError{CopySide::Source, {ErrorKind::PathAccess, "memory is short"}});
    }
}

void CopiesAhead::prepare(Slot& slot, FileCopier& copier) try {
    const auto goOn = [this, &slot](std::uint64_t, std::uint64_t total) {
        slot.size = total;
        return !ending_;
    };
    auto prepared = copier.prepare(slot.source, slot.target, kLargest, goOn);
    // What cannot be opened may be at its turn: files that wait for theirs take handles, and a folder may be made anew.
    if (prepared || prepared.error().opened)
        slot.file.emplace(std::move(prepared));
} catch (const std::bad_alloc&) {
    // Memory is short: the file is copied at its turn.
}

void CopiesAhead::prepareTimed(Slot& slot) {
    const Moment start = momentNow();
    prepare(slot, copier_);
    if (momentNow() - start > kSlow)
        quickInARow_ = 0;
}

// True when the first copy is prepared, or will not be.
bool CopiesAhead::firstArrives() {
    Slot& slot = first();
    if (!slot.left || threads_.isDone(slot) || helpUntilDone(slot)) {
        quickInARow_ = std::min(quickInARow_ + 1, kMost);
        return true;
    }
    if (threads_.isDoneWithin(slot, kSlow))
        return true;
    quickInARow_ = 0;
    threads_.add();
    return threads_.isDoneWithin(slot, kWait);
}

// While a thread is at the first file, or none has come to it, this thread need not stand by.
bool CopiesAhead::helpUntilDone(Slot& slot) {
    while (mayHelp()) {
        if (threads_.takeBack(slot)) {
            prepareTimed(slot);
            return true;
        }
        AheadTask* const last = threads_.takeBackLast();
        if (last == nullptr)
            return false;
        prepareTimed(static_cast<Slot&>(*last));
        if (threads_.isDone(slot))
            return true;
    }
    return false;
}

CopiesAhead::Finished CopiesAhead::finishFirst(const CopyProgress& progress) {
    assert(asked_ > 0);
    while (!firstArrives()) idle_();
    Slot& slot = first();
    auto finished = mayMakeWait(slot) ? finishBeside(slot, progress) : finish(slot, copier_, progress);
    slot.file.reset();
    slot.size = 0;
    first_ = (first_ + 1) % kMost;
    --asked_;
    return finished;
}

// A large file keeps its caller waiting, and so may a volume that knows no files without a name: it is no disk of this
// computer, or a slow one.
bool CopiesAhead::mayMakeWait(const Slot& slot) const {
    if (helping_ == Helping::Allowed || !threads_.any())
        return false;
    return !slot.file || (slot.file->has_value() && (*slot.file)->naming() == Naming::Rename);
}

CopiesAhead::Finished CopiesAhead::finishBeside(Slot& slot, const CopyProgress& progress) {
    slot.itsTurn = true;
    slot.done = 0;
    slot.cancelled = !progress(0, slot.size);
    threads_.leaveFirst(slot);
    while (!threads_.isDoneWithin(slot, kWait)) {
        if (!progress(slot.done, slot.size))
            slot.cancelled = true;
        idle_();
    }
    return std::move(slot.finished);
}

CopiesAhead::Finished CopiesAhead::finish(Slot& slot, FileCopier& copier, const CopyProgress& progress) {
    if (!slot.file)
        return copier.copy(slot.source, slot.target, progress);
    if (!progress(0, slot.size))
        return tl::unexpected<CopyError>(CopyError::cancelled());
    return std::move(*slot.file).and_then([&](ArrivingFile file) -> Finished {
        auto arrived = file.arrive();
        if (!arrived && file.isStranded())
            return copier.copy(slot.source, slot.target, progress);
        if (!arrived)
            return tl::unexpected<CopyError>(CopyError{CopySide::Target, std::move(arrived.error()), true});
        progress(slot.size, slot.size);
        return {};
    });
}

void CopiesAhead::release() {
    ending_ = true;
    threads_.end();
    ending_ = false;
    for (Slot& slot : slots_) slot.file.reset();
    asked_ = 0;
    quickInARow_ = kMost;
}

}  // namespace quillon
