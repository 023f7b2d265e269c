// SPDX-License-Identifier: MIT
#pragma once

// A clock that moves only when told, an event loop that counts and can act on a turn, and all that the core takes from
// its computer, fixed.

#include <functional>

#include "app/surroundings.h"
#include "support/scripted_dialogs.h"

namespace quillon::test {

class FakeClock final : public Clock {
public:
    LocalTime now() const override { return time; }
    std::int64_t milliseconds() const override { return tick; }

    LocalTime time{2026, 11, 15, 10, 20, 30, 0, 318};
    std::int64_t tick = 1000;
};

class CountingLoop final : public EventLoop {
public:
    void turn() override {
        ++turns;
        if (onTurn)
            onTurn(turns);
    }

    int turns = 0;
    std::function<void(int)> onTurn;  ///< called with the number of the turn, from 1
};

/// Owns the twins and hands them out as Surroundings. The host is called LAB7; dates have the plain form.
class FakeSurroundings {
public:
    FakeClock clock;
    DateTexts dates{"C"};
    ScriptedDialogs dialogs;
    CountingLoop loop;
    Surroundings surroundings{clock, dates, dialogs, loop, "LAB7"};
};

}  // namespace quillon::test
