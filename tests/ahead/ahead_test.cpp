// SPDX-License-Identifier: MIT
// Items asked for ahead of their turn: they come back in their order, whoever does their work. Work is quick or slow
// because the limit says so: none takes less than no time, and none more than an hour.
#include "ahead/ahead.h"

#include <atomic>
#include <latch>
#include <memory>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace quillon {
namespace {

using std::chrono::hours;
using std::chrono::microseconds;

constexpr microseconds kLong = std::chrono::minutes(1);
constexpr microseconds kAllIsQuick = hours(1);
constexpr microseconds kAllIsSlow{-1};

struct Item {
    int number = 0;
    std::thread::id doneBy;
    std::shared_ptr<int> holds;
};

using Items = Ahead<Item>;

// Work of the threads ends only when it may; the owner's own ends at once.
class AheadTest : public testing::Test {
protected:
    std::unique_ptr<Items> make(StandingStill standingStill, std::size_t threads, microseconds slow) {
        return std::make_unique<Items>(standingStill, threads, slow, [this]() -> Items::Work {
            return [this](Item& item) {
                ++begun;
                begun.notify_all();
                mayEnd.wait();
                work(item);
            };
        });
    }
    static void work(Item& item) { item.doneBy = std::this_thread::get_id(); }

    void askInLineOrLeave(Items& items, int number) {
        items.ask().number = number;
        items.doLast(
            [this](Item& item) {
                ++tries;
                if (mayTry)
                    work(item);
                return mayTry;
            },
            work);
    }
    static void askAndLeave(Items& items, int number) {
        Item& item = items.ask();
        item.number = number;
        item.doneBy = {};
        items.leaveLast();
    }
    void awaitBegun(int count) const {
        for (int seen = begun; seen < count; seen = begun) begun.wait(seen);
    }
    // Item 0, held by a thread.
    void askAndSeeItBegun(Items& items) const {
        items.addThread();
        askAndLeave(items, 0);
        awaitBegun(1);
    }
    // The thread of the first item, which is forgotten.
    static std::thread::id takeFirst(Items& items, int number) {
        EXPECT_TRUE(items.firstArrives(kLong));
        EXPECT_EQ(items.first().number, number);
        const auto doneBy = items.first().doneBy;
        items.dropFirst();
        return doneBy;
    }

    const std::thread::id own = std::this_thread::get_id();
    std::latch mayEnd{1};
    std::atomic<int> begun = 0;
    bool mayTry = false;
    int tries = 0;
};

TEST_F(AheadTest, ItemsComeInTheOrderOfTheirAskingManyTimesRoundTheRing) {
    mayEnd.count_down();
    for (const auto standingStill : {StandingStill::Allowed, StandingStill::Never}) {
        for (const microseconds slow : {kAllIsQuick, kAllIsSlow}) {
            const auto items = make(standingStill, 4, slow);
            int next = 0;
            for (int i = 0; i < 500; ++i) {
                for (; next < 500 && items->asked() < Items::kMost - static_cast<std::size_t>(i % 30); ++next)
                    askInLineOrLeave(*items, next);
                takeFirst(*items, i);
            }
            EXPECT_EQ(items->asked(), 0U);
        }
    }
}

TEST_F(AheadTest, QuickItemsAreDoneInLineOneAtATime) {
    const auto items = make(StandingStill::Allowed, 4, kAllIsQuick);
    for (int i = 0; i < 200; ++i) {
        EXPECT_EQ(items->worthAsking(), 1U);
        askInLineOrLeave(*items, i);
        EXPECT_EQ(takeFirst(*items, i), own);
    }
    EXPECT_FALSE(items->hasThreads());
    EXPECT_EQ(tries, 0) << "a thread that may stand still does the work without a look";
}

TEST_F(AheadTest, BehindASlowItemOfTheOwnThreadItIsTriedFirstAndLeftToAThread) {
    const auto items = make(StandingStill::Allowed, 4, kAllIsSlow);
    askInLineOrLeave(*items, 0);
    EXPECT_EQ(items->worthAsking(), Items::kMost);
    EXPECT_EQ(tries, 0);
    askInLineOrLeave(*items, 1);
    EXPECT_EQ(tries, 1);
    mayEnd.count_down();
    EXPECT_EQ(takeFirst(*items, 0), own);
    EXPECT_NE(takeFirst(*items, 1), own);
}

TEST_F(AheadTest, AThreadThatMayNotStandStillDoesWhatItCanTry) {
    const auto items = make(StandingStill::Never, 4, kAllIsQuick);
    mayTry = true;
    askInLineOrLeave(*items, 0);
    EXPECT_EQ(takeFirst(*items, 0), own);
    EXPECT_EQ(tries, 1);
    EXPECT_FALSE(items->hasThreads());
}

TEST_F(AheadTest, WhoAsksIsNeverHeldByWorkThatHangs) {
    const auto items = make(StandingStill::Never, 4, kAllIsQuick);
    for (int i = 0; i < static_cast<int>(Items::kMost); ++i) askInLineOrLeave(*items, i);
    EXPECT_FALSE(items->firstArrives(microseconds(0)));
    EXPECT_FALSE(items->firstArrives(microseconds(1000)));
    mayEnd.count_down();
    for (int i = 0; i < static_cast<int>(Items::kMost); ++i) EXPECT_NE(takeFirst(*items, i), own);
}

TEST_F(AheadTest, BehindAnItemLeftOneInSixteenIsTriedUntilOneSucceeds) {
    mayEnd.count_down();
    const auto items = make(StandingStill::Never, 4, kAllIsQuick);
    for (int i = 0; i < 33; ++i) {
        askInLineOrLeave(*items, i);
        takeFirst(*items, i);
        EXPECT_EQ(items->worthAsking(), Items::kMost);
    }
    EXPECT_EQ(tries, 3) << "the first, and two of the 32 behind it";
    mayTry = true;
    for (int i = 0; i < 17; ++i) {
        askInLineOrLeave(*items, i);
        takeFirst(*items, i);
    }
    EXPECT_EQ(tries, 5) << "behind one that succeeded the next is tried";
}

TEST_F(AheadTest, AsManyQuickItemsInARowAsFitMakeTheRestQuick) {
    mayEnd.count_down();
    const auto items = make(StandingStill::Never, 4, kAllIsQuick);
    askInLineOrLeave(*items, 0);
    takeFirst(*items, 0);
    mayTry = true;
    int quick = 0;
    for (int i = 1; items->worthAsking() == Items::kMost; ++i) {
        askInLineOrLeave(*items, i);
        quick += takeFirst(*items, i) == own ? 1 : 0;
    }
    EXPECT_EQ(quick, static_cast<int>(Items::kMost));
}

TEST_F(AheadTest, WhereNoThreadIsToBeHadTheOwnThreadDoesEverything) {
    for (const auto standingStill : {StandingStill::Allowed, StandingStill::Never}) {
        const auto items = make(standingStill, 0, kAllIsSlow);
        for (int i = 0; i < static_cast<int>(Items::kMost); ++i) askInLineOrLeave(*items, i);
        for (int i = 0; i < static_cast<int>(Items::kMost); ++i) EXPECT_EQ(takeFirst(*items, i), own);
        askAndLeave(*items, 7);
        EXPECT_EQ(takeFirst(*items, 7), std::thread::id()) << "nobody has done it, and it is at hand";
    }
}

TEST_F(AheadTest, TheOwnThreadHelpsFromBehindWhileAThreadIsAtTheFirstItem) {
    const auto items = make(StandingStill::Allowed, 1, kAllIsQuick);
    askAndSeeItBegun(*items);
    for (int i = 1; i < 4; ++i) askAndLeave(*items, i);
    std::vector<int> helped;
    EXPECT_TRUE(items->firstArrives(kLong, [&](Item& item) {
        work(item);
        helped.push_back(item.number);
        if (helped.size() == 2)
            mayEnd.count_down();
    }));
    ASSERT_GE(helped.size(), 2U);
    EXPECT_EQ(helped[0], 3);
    EXPECT_EQ(helped[1], 2);
    EXPECT_NE(takeFirst(*items, 0), own);
    takeFirst(*items, 1);
    EXPECT_EQ(takeFirst(*items, 2), own);
    EXPECT_EQ(takeFirst(*items, 3), own);
}

TEST_F(AheadTest, TheOwnThreadTakesTheFirstItemThatNoThreadHasBegun) {
    std::latch mayBegin{1};
    Items items(StandingStill::Allowed, 1, kAllIsQuick, [&]() -> Items::Work {
        mayBegin.wait();
        return work;
    });
    items.addThread();
    for (int i = 0; i < 3; ++i) askAndLeave(items, i);
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(items.firstArrives(microseconds(0), work));
        EXPECT_EQ(takeFirst(items, i), own);
    }
    mayBegin.count_down();
}

TEST_F(AheadTest, HelpEndsBehindASlowItemAndOneMoreThreadIsStarted) {
    const auto items = make(StandingStill::Allowed, 2, kAllIsSlow);
    askAndSeeItBegun(*items);
    for (int i = 1; i < 4; ++i) askAndLeave(*items, i);
    int helped = 0;
    const auto help = [&](Item& item) {
        work(item);
        ++helped;
    };
    EXPECT_FALSE(items->firstArrives(microseconds(0), help));
    EXPECT_FALSE(items->firstArrives(microseconds(0), help));
    EXPECT_EQ(helped, 1);
    awaitBegun(2);
    mayEnd.count_down();
    for (int i = 0; i < 4; ++i) takeFirst(*items, i);
}

TEST_F(AheadTest, AThreadThatMayNotStandStillNeverHelps) {
    const auto items = make(StandingStill::Never, 1, kAllIsQuick);
    askAndSeeItBegun(*items);
    askAndLeave(*items, 1);
    const auto help = [](Item&) { ADD_FAILURE() << "it would stand still"; };
    mayEnd.count_down();
    EXPECT_TRUE(items->firstArrives(kLong, help));
    EXPECT_NE(takeFirst(*items, 0), own);
    EXPECT_NE(takeFirst(*items, 1), own);
}

TEST_F(AheadTest, TheFirstItemCanBeLeftOnceMoreAheadOfAllOthers) {
    std::vector<int> order;  // of one thread alone
    Items items(StandingStill::Never, 1, kAllIsQuick, [&]() -> Items::Work {
        return [&](Item& item) {
            if (item.number == 1)
                mayEnd.wait();
            order.push_back(item.number);
        };
    });
    items.addThread();
    for (int i = 0; i < 3; ++i) askAndLeave(items, i);
    items.waitForFirst();
    items.leaveFirst();
    EXPECT_FALSE(items.firstArrives(microseconds(0)));
    mayEnd.count_down();
    for (int i = 0; i < 3; ++i) takeFirst(items, i);
    EXPECT_EQ(order, (std::vector{0, 1, 0, 2}));
}

TEST_F(AheadTest, AReleaseForgetsEveryItemAndWhatItHolds) {
    const auto items = make(StandingStill::Never, 1, kAllIsQuick);
    const auto held = std::make_shared<int>(7);
    askAndSeeItBegun(*items);
    askInLineOrLeave(*items, 1);
    for (int i = 2; i < 5; ++i) {
        items->ask().holds = held;
        items->leaveLast();
    }
    const auto end = std::jthread([this] { mayEnd.count_down(); });
    items->release();
    EXPECT_EQ(items->asked(), 0U);
    EXPECT_FALSE(items->hasThreads());
    EXPECT_EQ(items->worthAsking(), 1U) << "items are taken for quick again";
    EXPECT_EQ(held.use_count(), 1);
    askInLineOrLeave(*items, 9);
    takeFirst(*items, 9);
}

TEST_F(AheadTest, ItemsThatNobodyTakesAreNoHarm) {
    mayEnd.count_down();
    const auto items = make(StandingStill::Never, 4, kAllIsQuick);
    for (int i = 0; i < 50; ++i) askInLineOrLeave(*items, i);
}

TEST_F(AheadTest, AFirstItemThatIsGivenUpLeavesTheOthersInTheirOrder) {
    const auto items = make(StandingStill::Never, 2, kAllIsQuick);
    askAndSeeItBegun(*items);
    for (int i = 1; i < 4; ++i) askAndLeave(*items, i);
    EXPECT_FALSE(items->firstArrives(microseconds(0)));
    items->giveUpFirst();
    items->addThread();
    mayEnd.count_down();
    for (int i = 1; i < 4; ++i) takeFirst(*items, i);
    for (int i = 4; i < 200; ++i) {
        askAndLeave(*items, i);
        takeFirst(*items, i);
    }
}

}  // namespace
}  // namespace quillon
