// SPDX-License-Identifier: MIT
#pragma once

// A source that comes to need care while much was asked of it ahead: whatever no thread has begun is left out, and
// asked for again, one thing at a time, when its turn has come.

#include <chrono>
#include <cstddef>

#include "ahead/ahead.h"
#include "platform/source_care.h"

namespace quillon {

/// What one thing that is asked for knows of its turn.
struct TurnWithCare {
    bool itsTurn = false;     ///< it is needed now, and not ahead
    bool isAnswered = false;  ///< false: it was left out

    /// At the asking.
    void begin(const SourceCare& care) {
        itsTurn = care.oneAtATime();
        isAnswered = true;
    }
    /// By a thread that comes to it: `work()`, or nothing.
    template <typename Work>
    void answer(const SourceCare& care, Work work) {
        isAnswered = itsTurn || !care.oneAtATime();
        if (isAnswered)
            work();
    }
};

/// True when the first item, a TurnWithCare, is at hand and answered. One that was left out is done by `work(item)` in
/// line where the owner's thread may stand still, else by a thread. Waits for each of the two, but not longer than
/// `limit`.
template <typename Item, std::size_t kMost, typename Do>
[[nodiscard]] bool firstIsAnswered(Ahead<Item, kMost>& ahead, StandingStill standingStill,
                                   std::chrono::milliseconds limit, Do work) {
    if (!ahead.firstArrives(limit))
        return false;
    Item& item = ahead.first();
    if (item.isAnswered)
        return true;
    item.itsTurn = true;
    if (standingStill == StandingStill::Allowed) {
        work(item);
        item.isAnswered = true;
        return true;
    }
    ahead.leaveFirst();
    return ahead.firstArrives(limit);
}

}  // namespace quillon
