// SPDX-License-Identifier: MIT
#pragma once

// The one way to wait while a front end's event loop turns.

#include <chrono>

#include "app/event_loop.h"

namespace quillon {

/// Between two turns of the event loop while nothing happens: short enough for a lively screen, long enough to spare
/// the processor.
inline constexpr std::chrono::milliseconds kTurnInterval{10};

/// Turns the event loop, and does so again and again until `done(pause)` is true. It is asked behind each turn, and
/// itself waits for what is to come, but not longer than `pause`, so that what comes is seen at once and nothing burns
/// while it does not. Handlers run in the turns: what may be done already is asked before the call.
template <typename Done>
void turnUntil(EventLoop& loop, Done done, std::chrono::milliseconds pause = kTurnInterval) {
    do {
        loop.turn();
    } while (!done(pause));
}

}  // namespace quillon
