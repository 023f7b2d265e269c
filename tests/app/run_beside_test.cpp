// SPDX-License-Identifier: MIT
#include "app/run_beside.h"

#include <future>
#include <stdexcept>
#include <thread>

#include <gtest/gtest.h>

#include "app/progress_relay.h"
#include "support/fake_surroundings.h"

namespace quillon::test {
namespace {

// Work that hangs until it is let go, as a call to a share whose server does not answer.
class Hanging {
public:
    int operator()() {
        gone_.get_future().wait();
        return 7;
    }
    void letGo() { gone_.set_value(); }

private:
    std::promise<void> gone_;
};

TEST(RunBesideTest, TheLoopTurnsWhileTheWorkHangs) {
    CountingLoop loop;
    Hanging share;
    loop.onTurn = [&](int turn) {
        if (turn == 3)
            share.letGo();
    };
    EXPECT_EQ(answerBeside(loop, [&] { return share(); }), 7);
    EXPECT_GE(loop.turns, 3);
}

TEST(RunBesideTest, TheCallerComesBackOnlyWhenTheWorkHasEnded) {
    CountingLoop loop;
    Hanging share;
    bool ended = false;
    bool endedInATurn = false;
    loop.onTurn = [&](int turn) {
        endedInATurn = endedInATurn || (turn < 3 && ended);
        if (turn == 3)
            share.letGo();
    };
    runBeside(loop, [&] {
        share();
        ended = true;
    });
    EXPECT_TRUE(ended);
    EXPECT_FALSE(endedInATurn);
}

TEST(RunBesideTest, NewsComesAheadOfEachTurnAndOnceMoreAtTheEnd) {
    CountingLoop loop;
    Hanging share;
    int news = 0;
    loop.onTurn = [&](int turn) {
        EXPECT_EQ(news, turn);
        if (turn == 3)
            share.letGo();
    };
    runBeside(
        loop, [&] { share(); }, [&] { ++news; });
    EXPECT_EQ(news, loop.turns + 1);
}

TEST(RunBesideTest, TheWorkHasAThreadOfItsOwnAndItsNewsHasNot) {
    CountingLoop loop;
    std::thread::id worker;
    std::thread::id teller;
    runBeside(
        loop, [&] { worker = std::this_thread::get_id(); }, [&] { teller = std::this_thread::get_id(); });
    EXPECT_NE(worker, std::this_thread::get_id());
    EXPECT_EQ(teller, std::this_thread::get_id());
}

TEST(RunBesideTest, AnExceptionComesBackToTheCaller) {
    CountingLoop loop;
    EXPECT_THROW(runBeside(loop, [] { throw std::runtime_error("no memory"); }), std::runtime_error);
}

class LastProgress final : public ProgressHost {
public:
    void progressRange(std::int64_t maximum) override { said += "range " + std::to_string(maximum) + ";"; }
    void progressValue(std::int64_t value) override { said += "value " + std::to_string(value) + ";"; }
    void currentFile(const std::string& text) override { said += text + ";"; }
    std::string said;
};

TEST(ProgressRelayTest, OnlyTheLastOfEachIsHandedOnAndOnlyOnce) {
    ProgressRelay relay;
    LastProgress host;
    relay.handOn(host);
    EXPECT_EQ(host.said, "");
    relay.currentFile("Comparing databases....");
    relay.progressRange(5);
    relay.progressValue(1);
    relay.progressValue(2);
    relay.handOn(host);
    EXPECT_EQ(host.said, "Comparing databases....;range 5;value 2;");
    relay.handOn(host);
    EXPECT_EQ(host.said, "Comparing databases....;range 5;value 2;");
}

TEST(ProgressRelayTest, AValueOfAnEarlierRangeIsForgotten) {
    ProgressRelay relay;
    LastProgress host;
    relay.progressValue(9);
    relay.progressRange(3);
    relay.handOn(host);
    EXPECT_EQ(host.said, "range 3;");
}

}  // namespace
}  // namespace quillon::test
