// SPDX-License-Identifier: MIT
// Tasks left to threads: done in their order, and given back as long as none has begun them.
#include "ahead/ahead_threads.h"

#include <atomic>
#include <latch>
#include <memory>
#include <new>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace quillon {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kLong{60'000};

struct Task : AheadTask {
    int number = 0;
    bool worked = false;
};

// Threads that tell of the task they begin, and work on when they may.
class AheadThreadsTest : public testing::Test {
protected:
    AheadThreadsTest() {
        for (std::size_t i = 0; i < tasks.size(); ++i) tasks[i].number = static_cast<int>(i);
    }
    ~AheadThreadsTest() override { threads.end(); }

    AheadThreads::Work work() {
        return [this](AheadTask& task) {
            if (!begun.try_wait())
                begun.count_down();
            mayWork.wait();
            auto& mine = static_cast<Task&>(task);
            mine.worked = true;
            order.push_back(mine.number);
        };
    }

    std::vector<Task> tasks = std::vector<Task>(4);
    std::latch begun{1};
    std::latch mayWork{1};
    std::vector<int> order;  // of one thread alone
    AheadThreads threads{1, [this] { return work(); }};
};

TEST_F(AheadThreadsTest, TasksAreDoneInTheOrderOfTheirLeaving) {
    threads.add();
    EXPECT_TRUE(threads.any());
    mayWork.count_down();
    for (Task& task : tasks) threads.leave(task);
    threads.waitFor(tasks[3]);
    EXPECT_EQ(order, (std::vector{0, 1, 2, 3}));
}

TEST_F(AheadThreadsTest, ATaskMayBeLeftAheadOfAllOthers) {
    threads.add();
    threads.leave(tasks[0]);
    begun.wait();
    threads.leave(tasks[1]);
    threads.leaveFirst(tasks[2]);
    mayWork.count_down();
    threads.waitFor(tasks[1]);
    EXPECT_EQ(order, (std::vector{0, 2, 1}));
}

TEST_F(AheadThreadsTest, WhatNoThreadHasBegunIsGivenBack) {
    threads.add();
    for (Task& task : tasks) threads.leave(task);
    begun.wait();
    EXPECT_FALSE(threads.takeBack(tasks[0])) << "a thread is at it";
    EXPECT_FALSE(threads.takeBack(tasks[2])) << "not the first of those left";
    EXPECT_TRUE(threads.takeBack(tasks[1]));
    EXPECT_EQ(threads.takeBackLast(), &tasks[3]);
    EXPECT_FALSE(threads.isDone(tasks[0]));
    EXPECT_FALSE(threads.isDoneWithin(tasks[0], milliseconds(1)));
    EXPECT_TRUE(threads.isDone(tasks[1])) << "there is nothing more to wait for";
    mayWork.count_down();
    EXPECT_TRUE(threads.isDoneWithin(tasks[2], kLong));
    EXPECT_EQ(threads.takeBackLast(), nullptr);
    EXPECT_EQ(order, (std::vector{0, 2}));
    EXPECT_FALSE(tasks[1].worked);
    EXPECT_FALSE(tasks[3].worked);
}

TEST_F(AheadThreadsTest, TheEndForgetsWhatNoThreadHasBegun) {
    threads.add();
    for (Task& task : tasks) threads.leave(task);
    begun.wait();
    const auto release = std::jthread([this] { mayWork.count_down(); });
    threads.end();
    EXPECT_TRUE(tasks[0].worked) << "what was begun is ended";
    EXPECT_FALSE(threads.any());
}

TEST(AheadThreads, ManyTasksOfManyThreadsAreEachDoneOnce) {
    struct Counted : AheadTask {
        std::atomic<int> times = 0;
    };
    AheadThreads threads(4, [] { return [](AheadTask& task) { ++static_cast<Counted&>(task).times; }; });
    for (int i = 0; i < 9; ++i) threads.add();
    std::vector<Counted> tasks(5000);
    std::size_t back = 0;
    for (std::size_t i = 0; i < tasks.size(); ++i) {
        threads.leave(tasks[i]);
        if (i % 3 == 0)
            back += threads.takeBack(tasks[i]) ? 1 : 0;
    }
    int times = 0;
    for (auto& task : tasks) {
        EXPECT_TRUE(threads.isDoneWithin(task, kLong));
        EXPECT_LE(task.times, 1);
        times += task.times;
    }
    EXPECT_EQ(static_cast<std::size_t>(times) + back, tasks.size());
}

TEST_F(AheadThreadsTest, AThreadOutOfMemoryTellsItsOwnerOnce) {
    AheadThreads poor{1, [] { return AheadThreads::Work([](AheadTask&) { throw std::bad_alloc(); }); }};
    poor.add();
    poor.leave(tasks[0]);
    EXPECT_THROW(poor.waitFor(tasks[0]), std::bad_alloc);
    EXPECT_TRUE(poor.isDone(tasks[0])) << "the owner can go on waiting for what else runs";
}

// What hangs, and lives as long as something holds it.
struct HangingTask : AheadTask {
    std::shared_ptr<std::latch> mayEnd;
};

AheadThreads::MakeWork waitsForTheLatch() {
    return [] { return [](AheadTask& task) { static_cast<HangingTask&>(task).mayEnd->wait(); }; };
}

std::shared_ptr<HangingTask> taskThatEndsWith(const std::shared_ptr<std::latch>& latch) {
    auto task = std::make_shared<HangingTask>();
    task->mayEnd = latch;
    return task;
}

TEST(AheadThreads, OneThatHangsIsLeftBehindWithWhatItWorksWith) {
    const auto latch = std::make_shared<std::latch>(1);
    auto task = taskThatEndsWith(latch);
    const std::weak_ptr<HangingTask> seen = task;
    {
        AheadThreads threads(1, waitsForTheLatch(), AtEnd::LeaveBehind);
        threads.add();
        threads.leave(task);
        while (!threads.isDoneWithin(*task, milliseconds(1)) && threads.takeBackLast() != nullptr) threads.leave(task);
        task.reset();
        threads.end();
        EXPECT_FALSE(threads.any());
        EXPECT_FALSE(seen.expired());
    }
    latch->count_down();
    while (!seen.expired()) std::this_thread::yield();
}

TEST(AheadThreads, InThePlaceOfOneWhoseTaskWasGivenUpAnotherIsStarted) {
    const auto latch = std::make_shared<std::latch>(1);
    const auto open = std::make_shared<std::latch>(0);
    AheadThreads threads(1, waitsForTheLatch(), AtEnd::LeaveBehind);
    threads.add();
    const auto hangs = taskThatEndsWith(latch);
    threads.leave(hangs);
    while (threads.takeBackLast() != nullptr) {
        threads.leave(hangs);
        std::this_thread::yield();
    }
    const auto next = taskThatEndsWith(open);
    threads.leave(next);
    threads.add();
    EXPECT_FALSE(threads.isDoneWithin(*next, milliseconds(1))) << "there is one thread at most";
    threads.giveUp(*hangs);
    threads.add();
    EXPECT_TRUE(threads.isDoneWithin(*next, kLong));
    latch->count_down();
}

}  // namespace
}  // namespace quillon
