// SPDX-License-Identifier: MIT
#include "ahead/ring.h"

#include <string>

#include <gtest/gtest.h>

namespace quillon {
namespace {

TEST(Ring, ItemsComeBackInTheOrderOfTheirComingManyTimesRound) {
    Ring<int> ring(3);
    int added = 0;
    int taken = 0;
    for (int round = 0; round < 10; ++round) {
        while (ring.count() < 3) ring.add() = added++;
        for (int i = 0; i < 2; ++i, ring.dropFirst()) EXPECT_EQ(ring.first(), taken++);
    }
    EXPECT_EQ(ring.count(), 1U);
}

TEST(Ring, TheLastItemCanBeTakenBack) {
    Ring<int> ring(3);
    ring.add() = 1;
    ring.add() = 2;
    ring.dropLast();
    ring.add() = 3;
    ring.dropFirst();
    EXPECT_EQ(ring.first(), 3);
    EXPECT_EQ(ring.count(), 1U);
}

TEST(Ring, APlaceKeepsTheRoomOfItsItem) {
    Ring<std::string> ring(1);
    const char* const room = (ring.add() = std::string(1000, 'x')).data();
    ring.dropFirst();
    EXPECT_EQ(ring.add().assign("short").data(), room);
}

}  // namespace
}  // namespace quillon
