// SPDX-License-Identifier: MIT
#include "ahead/copies_ahead.h"

#include <algorithm>
#include <limits>
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

CopiesAhead::CopiesAhead(StandingStill standingStill, const CopyManner& manner, std::shared_ptr<SourceCare> care)
    : standingStill_(standingStill),
      care_(std::move(care)),
      copier_(manner),
      ahead_(standingStill, kMostThreads, kSlow, [this, manner]() -> Ahead<Copy>::Work {
          return [this, copier = std::make_shared<FileCopier>(manner)](Copy& copy) { work(copy, *copier); };
      }) {
}

void CopiesAhead::ask(std::string_view source, std::string_view target) {
    startThreads();
    Copy& copy = ahead_.ask();
    copy.source = source;
    copy.target = target;
    copy.itsTurn = false;
    copy.prepared.reset();
    ahead_.leaveLast();
}

void CopiesAhead::startThreads() {
    if (ahead_.hasThreads())
        return;
    const unsigned own = standingStill_ == StandingStill::Allowed ? 1 : 0;
    const unsigned processors = std::clamp(std::thread::hardware_concurrency(), 2U, kFirstThreads);
    for (unsigned i = own; i < processors; ++i) ahead_.addThread();
}

void CopiesAhead::work(Copy& copy, FileCopier& copier) {
    if (!copy.itsTurn) {
        prepare(copy, copier);
        return;
    }
    const auto tell = [&copy](std::uint64_t done, std::uint64_t total) {
        copy.size = total;
        copy.done = done;
        return !copy.cancelled;
    };
    try {
        finish(copy, copier, tell);
    } catch (const std::bad_alloc&) {
        copy.prepared.emplace(
            tl::unexpected<CopyError>(CopyError{CopySide::Source, {ErrorKind::PathAccess, "memory is short"}}));
    }
}

void CopiesAhead::prepare(Copy& copy, FileCopier& copier) try {
    if (care_ && care_->oneAtATime())
        return;
    const auto goOn = [this, &copy](std::uint64_t, std::uint64_t total) {
        copy.size = total;
        return !ending_;
    };
    auto prepared = copier.prepare(copy.source, copy.target, kLargest, goOn);
    // What cannot be opened may be at its turn: files that wait for theirs take handles, and a folder may be made anew.
    if (prepared || prepared.error().opened)
        copy.prepared.emplace(std::move(prepared));
} catch (const std::bad_alloc&) {
    // Memory is short: the file is copied at its turn.
}

bool CopiesAhead::firstEnds(milliseconds limit, const CopyProgress& progress) {
    Copy& copy = ahead_.first();
    if (copy.itsTurn)
        return endsBeside(copy, limit, progress);
    if (!ahead_.firstArrives(limit, [this](Copy& mine) { prepare(mine, copier_); }))
        return false;
    if (!mayMakeWait(copy)) {
        finish(copy, copier_, progress);
        return true;
    }
    copy.itsTurn = true;
    copy.done = 0;
    copy.cancelled = !progress(0, copy.size);
    ahead_.leaveFirst();
    return endsBeside(copy, limit, progress);
}

bool CopiesAhead::endsBeside(Copy& copy, milliseconds limit, const CopyProgress& progress) {
    if (ahead_.firstArrives(limit))
        return true;
    if (!progress(copy.done, copy.size))
        copy.cancelled = true;
    return false;
}

tl::expected<PreparedCopy, CopyError> CopiesAhead::takeFirst() {
    Copy& copy = ahead_.first();
    auto prepared = *std::move(copy.prepared);
    copy.prepared.reset();
    copy.size = 0;
    ahead_.dropFirst();
    return prepared;
}

// A large file keeps its caller waiting.
bool CopiesAhead::mayMakeWait(const Copy& copy) const {
    return standingStill_ == StandingStill::Never && ahead_.hasThreads() && !copy.prepared;
}

void CopiesAhead::finish(Copy& copy, FileCopier& copier, const CopyProgress& progress) {
    if (!copy.prepared) {
        const auto noLimit = std::numeric_limits<std::uint64_t>::max();
        copy.prepared.emplace(copier.prepare(copy.source, copy.target, noLimit, progress));
        return;
    }
    if (!progress(0, copy.size))
        copy.prepared.emplace(tl::unexpected<CopyError>(CopyError::cancelled()));
    else if (copy.prepared->has_value())
        progress(copy.size, copy.size);
}

void CopiesAhead::release() {
    ending_ = true;
    ahead_.release();
    ending_ = false;
}

}  // namespace quillon
