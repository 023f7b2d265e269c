// SPDX-License-Identifier: MIT
#include "platform/start_beside.h"

#include <latch>
#include <memory>
#include <stdexcept>
#include <thread>

#include <gtest/gtest.h>

namespace quillon {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kLong{60'000};

TEST(StartBeside, TheWorkHasAThreadOfItsOwnAndItsAnswerComes) {
    auto worker = startBeside([] { return std::this_thread::get_id(); });
    ASSERT_TRUE(worker);
    ASSERT_TRUE(hasCome(*worker, kLong));
    EXPECT_NE(worker->get(), std::this_thread::get_id());
}

TEST(StartBeside, NobodyIsHeldByWorkThatHangs) {
    const auto mayEnd = std::make_shared<std::latch>(1);
    const auto ended = std::make_shared<std::latch>(1);
    {
        const auto hanging = startBeside([mayEnd, ended] {
            mayEnd->wait();
            ended->count_down();
        });
        ASSERT_TRUE(hanging);
        EXPECT_FALSE(hasCome(*hanging, milliseconds(0)));
        EXPECT_FALSE(hasCome(*hanging, milliseconds(1)));
    }
    mayEnd->count_down();
    ended->wait();
}

TEST(StartBeside, AnExceptionComesWithTheAnswer) {
    auto failing = startBeside([]() -> int { throw std::runtime_error("no memory"); });
    ASSERT_TRUE(failing);
    EXPECT_THROW(failing->get(), std::runtime_error);
}

}  // namespace
}  // namespace quillon
