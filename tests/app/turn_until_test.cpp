// SPDX-License-Identifier: MIT
#include "app/turn_until.h"

#include <vector>

#include <gtest/gtest.h>

#include "support/fake_surroundings.h"

namespace quillon::test {
namespace {

using std::chrono::milliseconds;

TEST(TurnUntilTest, ItIsAskedBehindEachTurnAndNoTurnFollowsTheEnd) {
    CountingLoop loop;
    std::vector<int> askedBehind;
    turnUntil(loop, [&](milliseconds) {
        askedBehind.push_back(loop.turns);
        return loop.turns == 3;
    });
    EXPECT_EQ(askedBehind, (std::vector{1, 2, 3}));
    EXPECT_EQ(loop.turns, 3);
}

TEST(TurnUntilTest, WhoeverIsAskedMayWaitForThePause) {
    CountingLoop loop;
    std::vector<milliseconds> pauses;
    const auto note = [&](milliseconds pause) {
        pauses.push_back(pause);
        return true;
    };
    turnUntil(loop, note);
    turnUntil(loop, note, milliseconds(2));
    EXPECT_EQ(pauses, (std::vector{milliseconds(10), milliseconds(2)}));
}

}  // namespace
}  // namespace quillon::test
