// SPDX-License-Identifier: MIT
#include "ahead/heads_ahead.h"

#include <cassert>

#include "platform/moment.h"

namespace quillon {

namespace {

// A solid-state disk gives four times the files to sixteen readers, and hardly more to sixty-four.
constexpr std::size_t kThreads = 16;
// What comes from memory comes in a few microseconds, what comes from a disk in a hundred and more.
constexpr std::chrono::microseconds kSlow{100};
// Behind a slow head the next is most likely slow too, and trying it would open it twice.
constexpr unsigned kTryEvery = 16;

}  // namespace

HeadsAhead::HeadsAhead(FirstWait firstWait, MakeReader makeReader)
    : firstWait_(firstWait), threads_(kThreads, [makeReader = std::move(makeReader)]() -> AheadThreads::Work {
          return [reader = std::shared_ptr(makeReader())](AheadTask& task) {
              auto& slot = static_cast<Slot&>(task);
              slot.result = reader->readHead(slot.path, slot.head);
          };
      }) {
}

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
    const Moment start = momentNow();
    slot.result = files_.readHead(slot.path, slot.head);
    if (momentNow() - start > kSlow)
        quickInARow_ = 0;
}

// False: no thread could be started, and the head was read in line after all.
bool HeadsAhead::leaveToThread(Slot& slot) {
    threads_.add();
    if (!threads_.any()) {
        slot.result = files_.readHead(slot.path, slot.head);
        return false;
    }
    threads_.leave(slot);
    return true;
}

bool HeadsAhead::firstArrives(std::chrono::milliseconds limit) {
    assert(asked_ > 0);
    return !first().left || threads_.isDoneWithin(first(), limit);
}

void HeadsAhead::dropFirst() {
    assert(asked_ > 0);
    first_ = (first_ + 1) % kMost;
    --asked_;
}

Result<void> HeadsAhead::readHead(std::string_view nativePath, HeaderBytes& head) {
    if (asked_ == 0 || first().path != nativePath)
        return files_.readHead(nativePath, head);
    if (first().left)
        threads_.waitFor(first());
    head = first().head;
    return first().result;
}

void HeadsAhead::release() {
    threads_.end();
    asked_ = 0;
    quickInARow_ = kMost;
    files_.closeFolder();
}

}  // namespace quillon
