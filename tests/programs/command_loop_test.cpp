// SPDX-License-Identifier: MIT
#include "programs/command_loop.h"

#include <sstream>

#include "job/job_board.h"
#include "job/job_fixture.h"

namespace quillon::test {

namespace {

class CommandLoopTest : public JobFixture {
protected:
    CommandLoopTest() {
        loop.attach(job);
        state.startTick = 0;
        state.texts.status = "Working";
    }

    // The line that stands on the terminal at a time; the clock is looked at once in so many turns.
    std::string lineAt(std::int64_t milliseconds) {
        fake.clock.tick = milliseconds;
        err.str("");
        for (int i = 0; i < 32; ++i) loop.turn();
        return err.str();
    }

    std::ostringstream err;
    int interrupts = 0;
    CommandLoop loop{fake.clock, err, true, [this] { return interrupts; }};
};

TEST_F(CommandLoopTest, TheFolderTestsShowFolders) {
    state.counters.folders = 1234;
    EXPECT_EQ(lineAt(1000), "\r\x1B[KWorking  1,234 folders");
}

TEST_F(CommandLoopTest, TheWalkShowsFilesAndTheirRate) {
    state.counters.folders = 12;
    state.counters.files = 5000;
    EXPECT_EQ(lineAt(2000), "\r\x1B[KWorking  5,000  2,500 files/s");
}

TEST_F(CommandLoopTest, APassShowsHowMuchIsLeft) {
    state.counters.files = 40000;
    state.counters.rowsRead = 10000;
    EXPECT_EQ(lineAt(10000), "\r\x1B[KWorking  10,000/40,000  1,000 files/s  00:00:30 left");
}

TEST_F(CommandLoopTest, ARunningJobShowsItsShareAndTheTimeLeftOfAllPasses) {
    state.options.checkFileQuality = false;
    enterPhase(state, JobPhase::FolderTest);
    state.counters.folders = 7;
    state.passes.met = 1000;
    EXPECT_EQ(lineAt(0), "\r\x1B[KChecking folders and access rights  7 folders  at least 1,000 files");
    enterPhase(state, JobPhase::Walk);
    state.counters.files = 250;
    EXPECT_EQ(lineAt(10'000), "\r\x1B[KRunning primary list  at least 250  25 %  25 files/s  00:00:30 left");
}

TEST_F(CommandLoopTest, ARateBelowOneIsTold) {
    state.counters.files = 100;
    state.counters.rowsRead = 5;
    EXPECT_EQ(lineAt(50000), "\r\x1B[KWorking  5/100  6.0 files/min  00:15:50 left");
}

TEST_F(CommandLoopTest, PastADayTheTimeLeftIsInDaysAndHours) {
    EXPECT_EQ(timeLeftText(86399), "23:59:59");
    EXPECT_EQ(timeLeftText(86400), "1 d 0 h");
    EXPECT_EQ(timeLeftText(42 * 3600 + 1800), "1 d 18 h");
    EXPECT_EQ(timeLeftText(1e300), "more than 10,000 d");
}

TEST_F(CommandLoopTest, AFileThatHangsForTenSecondsIsNamed) {
    HangRule rule;
    const auto lineAfter = [&](int seconds) {
        std::string line;
        for (int i = 0; i < seconds; ++i) line = rule.secondPassed(loop.workInHand().look());
        return line;
    };
    EXPECT_EQ(lineAfter(60), "") << "nothing is in hand";
    loop.workingOn("/s/a.jpg");
    EXPECT_EQ(lineAfter(10), "");
    EXPECT_EQ(lineAfter(1), "waiting for /s/a.jpg (10 s)");
    EXPECT_EQ(lineAfter(89), "");
    EXPECT_EQ(lineAfter(1), "waiting for /s/a.jpg (100 s)");
    loop.workingOn("/s/b.jpg");
    EXPECT_EQ(lineAfter(10), "");
    EXPECT_NE(lineAfter(1), "");
}

TEST_F(CommandLoopTest, TheLineComesAFewTimesASecond) {
    EXPECT_NE(lineAt(1000), "");
    EXPECT_EQ(lineAt(1199), "");
    EXPECT_NE(lineAt(1200), "");
}

TEST_F(CommandLoopTest, TheLineIsTakenAwayOnce) {
    EXPECT_NE(lineAt(1000), "");
    err.str("");
    loop.clearLine();
    loop.clearLine();
    EXPECT_EQ(err.str(), "\r\x1B[K");
}

TEST_F(CommandLoopTest, EveryPressOfCtrlCIsOneStop) {
    loop.turn();
    EXPECT_FALSE(state.stopRequested);
    interrupts = 1;
    for (int i = 0; i < 3; ++i) loop.turn();
    EXPECT_TRUE(state.stopRequested);
    EXPECT_TRUE(state.copyCancelled);
    EXPECT_EQ(logTexts(), std::vector<std::string>{"Process stopped by user"});
}

TEST_F(CommandLoopTest, CtrlCDuringTheChecksStopsTheJobBehindThem) {
    enterPhase(state, JobPhase::Checking);
    interrupts = 1;
    loop.turn();
    EXPECT_FALSE(state.stopRequested);
    enterPhase(state, JobPhase::Starting);
    loop.turn();
    EXPECT_TRUE(state.stopRequested && state.copyCancelled);
}

}  // namespace

}  // namespace quillon::test
