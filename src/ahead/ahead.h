// SPDX-License-Identifier: MIT
#pragma once

// Work that is asked for before its turn. Items come back one after the other in the order of their asking, whoever did
// their work and whenever it ended; so what is seen, Stop and failures are those of one thread.
//
// What comes quickly is done by the owner's own thread, as nothing is quicker. What a disk or a server has to be waited
// for goes to threads, many at a time, so that a slow volume is kept busy and the owner can do something else until the
// first item is at hand. There are two ways to share the work:
//
// - `doLast` decides when an item is asked for. It is for work that mostly waits, such as reading a head.
// - `leaveLast` leaves every item to the threads, and the owner helps while it would wait for the first one
//   (`firstArrives` with work of its own). It is for work that keeps a processor busy, too, such as a copy.
//
// All calls are those of one thread, the owner's. An item is the owner's from its asking until it is left to a thread,
// and again when it is at hand; it never moves.

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <utility>

#include "ahead/ahead_threads.h"
#include "ahead/quick_in_a_row.h"
#include "ahead/ring.h"
#include "platform/moment.h"

namespace quillon {

/// Whether the owner's thread may stand still for what is slow. One that a window hangs on may not.
enum class StandingStill { Allowed, Never };

template <typename Item, std::size_t kMostItems = QuickInARow::kEnough>
class Ahead {
public:
    /// So many items can be asked for at once.
    static constexpr std::size_t kMost = kMostItems;

    using Work = std::function<void(Item&)>;
    /// Called once by each thread, for what it works with.
    using MakeWork = std::function<Work()>;

    /// At most `threads` work at once. What takes the owner's thread more than `slow` was not quick.
    Ahead(StandingStill standingStill, std::size_t threads, std::chrono::microseconds slow, MakeWork makeWork,
          AtEnd atEnd = AtEnd::Wait)
        : standingStill_(standingStill),
          slow_(slow),
          threads_(
              threads,
              [makeWork = std::move(makeWork)]() -> AheadThreads::Work {
                  return [work = makeWork()](AheadTask& task) { work(static_cast<Slot&>(task).item); };
              },
              atEnd) {}
    Ahead(const Ahead&) = delete;
    Ahead& operator=(const Ahead&) = delete;

    /// A place behind all items asked for, of which there are at most kMost. It holds what an earlier item left there,
    /// and is at hand unless it is left to a thread.
    [[nodiscard]] Item& ask() {
        std::shared_ptr<Slot>& place = slots_.add();
        if (!place)
            place = std::make_shared<Slot>();
        place->left = false;
        return place->item;
    }
    [[nodiscard]] std::size_t asked() const { return slots_.count(); }
    /// How many items it is worth to ask for now: one as long as they come quickly, kMost behind one that did not.
    [[nodiscard]] std::size_t worthAsking() const { return quick_.isQuick() ? 1 : kMost; }

    /// Has the item asked for last done: in line while items come quickly, else by a thread, and in line after all
    /// where no thread is to be had. `work(item)` does it however long that takes; `tryNow(item)` does it if that needs
    /// no waiting, and gives false if it would.
    template <typename Try, typename Do>
    void doLast(Try tryNow, Do work);

    /// Leaves the item asked for last to a thread; where none runs it stays at hand.
    void leaveLast() { leave(slots_.last(), &AheadThreads::leave); }
    /// Leaves the first item, which must be at hand, to a thread for one more piece of work, ahead of all others. One
    /// must run.
    void leaveFirst() { leave(slots_.first(), &AheadThreads::leaveFirst); }

    [[nodiscard]] Item& first() { return slots_.first()->item; }
    /// True when the first item is at hand. Waits for it, but not longer than `limit`.
    [[nodiscard]] bool firstArrives(std::chrono::microseconds limit) {
        Slot& slot = *slots_.first();
        slot.left = slot.left && !threads_.isDoneWithin(slot, limit);
        return !slot.left;
    }
    /// The same, but while items come quickly the owner's thread does `work(item)` with items that no thread has begun,
    /// instead of standing by. An item that does not come quickly even so gets the threads one more.
    template <typename Do>
    [[nodiscard]] bool firstArrives(std::chrono::microseconds limit, Do work);
    /// Waits for the first item without a limit.
    void waitForFirst() {
        if (std::exchange(slots_.first()->left, false))
            threads_.waitFor(*slots_.first());
    }
    /// Forgets the first item; it must be at hand.
    void dropFirst() { slots_.dropFirst(); }
    /// Forgets the first item while a thread may still be at it; where threads are waited for at the end, it still is.
    void giveUpFirst() {
        threads_.giveUp(*slots_.first());
        slots_.first().reset();
        slots_.dropFirst();
    }
    /// The same for the item asked for last.
    void giveUpLast() {
        threads_.giveUp(*slots_.last());
        slots_.last().reset();
        slots_.dropLast();
    }

    /// Starts one more thread, up to the most. A system may be out of threads: `hasThreads` tells.
    void addThread() { threads_.add(); }
    [[nodiscard]] bool hasThreads() const { return threads_.any(); }

    /// Forgets every item and what it holds, ends the threads, and takes items for quick again.
    void release() {
        threads_.end();
        slots_ = Ring<std::shared_ptr<Slot>>(kMost);
        quick_ = {};
    }

private:
    struct Slot : AheadTask {
        Item item;
        bool left = false;  // to a thread, and not known to be at hand again
    };

    // Behind an item that was not quick the next is most likely slow too, and trying it would begin it twice.
    static constexpr unsigned kTryEvery = 16;

    void leave(const std::shared_ptr<Slot>& slot, void (AheadThreads::*how)(std::shared_ptr<AheadTask>)) {
        slot->left = threads_.any();
        if (slot->left)
            (threads_.*how)(slot);
    }

    [[nodiscard]] bool isAtHand(Slot& slot) {
        slot.left = slot.left && !threads_.isDone(slot);
        return !slot.left;
    }

    [[nodiscard]] bool mayDoInLine() const { return standingStill_ == StandingStill::Allowed && quick_.isQuick(); }
    template <typename Do>
    void doTimed(Item& item, Do& work);
    template <typename Try, typename Do>
    [[nodiscard]] bool doneInLine(Item& item, Try& tryNow, Do& work);
    template <typename Do>
    [[nodiscard]] bool helpUntilDone(Slot& slot, Do& work);

    StandingStill standingStill_;
    std::chrono::microseconds slow_;
    QuickInARow quick_;
    unsigned untried_ = 0;

    Ring<std::shared_ptr<Slot>> slots_{kMost};

    AheadThreads threads_;
};

template <typename Item, std::size_t kMostItems>
template <typename Do>
void Ahead<Item, kMostItems>::doTimed(Item& item, Do& work) {
    const Moment start = momentNow();
    work(item);
    if (momentNow() - start > slow_)
        quick_.wasSlow();
}

template <typename Item, std::size_t kMostItems>
template <typename Try, typename Do>
void Ahead<Item, kMostItems>::doLast(Try tryNow, Do work) {
    Slot& slot = *slots_.last();
    if (!doneInLine(slot.item, tryNow, work)) {
        threads_.add();
        leaveLast();
        if (!slot.left)
            work(slot.item);
    }
    quick_.was(!slot.left);
}

// False: it would have to be waited for.
template <typename Item, std::size_t kMostItems>
template <typename Try, typename Do>
bool Ahead<Item, kMostItems>::doneInLine(Item& item, Try& tryNow, Do& work) {
    if (mayDoInLine()) {
        doTimed(item, work);
        return true;
    }
    const bool promising = quick_.lastWasQuick() || ++untried_ % kTryEvery == 0;
    return promising && tryNow(item);
}

template <typename Item, std::size_t kMostItems>
template <typename Do>
bool Ahead<Item, kMostItems>::firstArrives(std::chrono::microseconds limit, Do work) {
    Slot& slot = *slots_.first();
    if (isAtHand(slot) || helpUntilDone(slot, work)) {
        quick_.wasQuick();
        return true;
    }
    if (firstArrives(slow_))
        return true;
    quick_.wasSlow();
    threads_.add();
    return firstArrives(limit);
}

// While a thread is at the first item, or none has come to it, this thread need not stand by.
template <typename Item, std::size_t kMostItems>
template <typename Do>
bool Ahead<Item, kMostItems>::helpUntilDone(Slot& slot, Do& work) {
    while (mayDoInLine()) {
        AheadTask* const mine = threads_.takeBack(slot) ? &slot : threads_.takeBackLast();
        if (mine == nullptr)
            return false;
        doTimed(static_cast<Slot*>(mine)->item, work);
        if (isAtHand(slot))
            return true;
    }
    return false;
}

}  // namespace quillon
