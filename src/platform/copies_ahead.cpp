// SPDX-License-Identifier: MIT
#include "platform/copies_ahead.h"

#include <algorithm>
#include <cassert>
#include <memory>
#include <new>

namespace quillon {

namespace {

using std::chrono::milliseconds;

// As many as processors while files come quickly, since then they are what is short; more where a disk or a server is
// waited for.
constexpr unsigned kFirstThreads = 4;
constexpr std::size_t kMostThreads = 16;
// What comes from memory and goes to memory takes some tens of microseconds.
constexpr milliseconds kSlow{2};

}  // namespace

CopiesAhead::CopiesAhead(Helping helping)
    : helping_(helping), threads_(kMostThreads, [this]() -> AheadThreads::Work {
          return [this, copier = std::make_shared<FileCopier>()](AheadTask& task) {
              prepare(static_cast<Slot&>(task), *copier);
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
    slot.left = threads_.any();
    if (slot.left)
        threads_.leave(slot);
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
    const auto start = std::chrono::steady_clock::now();
    prepare(slot, copier_);
    if (std::chrono::steady_clock::now() - start > kSlow)
        quickInARow_ = 0;
}

bool CopiesAhead::firstArrives(milliseconds limit) {
    assert(asked_ > 0);
    Slot& slot = first();
    if (!slot.left || threads_.isDone(slot) || helpUntilDone(slot)) {
        quickInARow_ = std::min(quickInARow_ + 1, kMost);
        return true;
    }
    if (threads_.isDoneWithin(slot, kSlow))
        return true;
    quickInARow_ = 0;
    threads_.add();
    return threads_.isDoneWithin(slot, limit);
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

tl::expected<void, CopyError> CopiesAhead::finishFirst(const CopyProgress& progress) {
    assert(asked_ > 0);
    Slot& slot = first();
    if (slot.left)
        threads_.waitFor(slot);
    auto finished = finish(slot, progress);
    slot.file.reset();
    slot.size = 0;
    first_ = (first_ + 1) % kMost;
    --asked_;
    return finished;
}

tl::expected<void, CopyError> CopiesAhead::finish(Slot& slot, const CopyProgress& progress) {
    if (!slot.file)
        return copier_.copy(slot.source, slot.target, progress);
    if (!progress(0, slot.size))
        return tl::unexpected<CopyError>(CopyError::cancelled());
    return std::move(*slot.file).and_then([&](ArrivingFile file) -> tl::expected<void, CopyError> {
        auto arrived = file.arrive();
        if (!arrived && file.isStranded())
            return copier_.copy(slot.source, slot.target, progress);
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
