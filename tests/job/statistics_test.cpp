// SPDX-License-Identifier: MIT
#include "job/statistics.h"

#include "job/job_board.h"
#include "job/job_fixture.h"

namespace quillon::test {

namespace {

class StatisticsTest : public JobFixture {
protected:
    std::string quality(int good, int corrupt, int common) {
        state.counters[Grade::Good] = good;
        state.counters[Grade::Corrupt] = corrupt;
        state.counters[Grade::CommonHeader] = common;
        updateQuality(state);
        return state.texts.quality;
    }
    std::string size(std::uint64_t bytes) {
        state.counters.totalBytes = bytes;
        showSize(state);
        return sizeLabel(state);
    }
    void recount(const std::vector<std::u16string>& results) {
        std::vector<std::u16string> rows;
        rows.reserve(results.size());
        for (const auto& result : results) rows.push_back(u"/s/f,15/11/2026, 600, 32;Ab9x," + result);
        writeFinalList(rows);
        upDateAllLabels(job.passContext(), job.lists(), job.messages);
    }
};

TEST_F(StatisticsTest, ThreeGoodAndOneCorruptAre75Percent) {
    EXPECT_EQ(quality(3, 1, 0), "75.00%");
}

TEST_F(StatisticsTest, TenGoodTenCorruptAndFiveCommonAre60Percent) {
    EXPECT_EQ(quality(10, 10, 5), "60.00%");
}

TEST_F(StatisticsTest, WithoutAGoodFileTheLabelStaysAsItWas) {
    EXPECT_EQ(quality(0, 0, 5), "0");
    EXPECT_EQ(quality(0, 3, 5), "0");
    state.texts.quality = "was here";
    EXPECT_EQ(quality(0, 1, 1), "was here");
}

TEST_F(StatisticsTest, TheQualityIsNewAtEveryChangeOfItsText) {
    EXPECT_EQ(quality(1, 0, 0), "100.00%");
    EXPECT_EQ(quality(1, 1, 0), "50.00%");
    EXPECT_EQ(quality(2, 1, 0), "66.67%");
    EXPECT_EQ(quality(57, 19943, 0), "0.29%") << "0.285 is a half";
    EXPECT_EQ(quality(57, 19944, 0), "0.28%") << "and now a little less";
    EXPECT_EQ(quality(57, 19943, 0), "0.29%");
}

TEST_F(StatisticsTest, AfterAResetTheSameQualityIsShownAgain) {
    EXPECT_EQ(quality(3, 1, 0), "75.00%");
    resetCounters(state);
    EXPECT_EQ(state.texts.quality, "0") << "not 0.00%";
    EXPECT_EQ(quality(3, 1, 0), "75.00%");
}

TEST_F(StatisticsTest, AResetPutsEveryCounterAndLabelToZero) {
    state.counters.files = 3;
    state.counters.copyErrors = 4;
    state.counters.tested = 5;
    state.counters.totalBytes = 6;
    showSize(state);
    state.texts.copied = "7";
    resetCounters(state);
    EXPECT_EQ(state.counters, JobCounters());
    EXPECT_EQ(sizeLabel(state), "0");
    EXPECT_EQ(state.texts.copied, "0");
}

TEST_F(StatisticsTest, SizesAreComparedStrictly) {
    EXPECT_EQ(size(0), "0 Bytes");
    EXPECT_EQ(size(1024), "1,024 Bytes");
    EXPECT_EQ(size(1025), "1.0 Kb");
    EXPECT_EQ(size(1048576), "1,024.0 Kb");
    EXPECT_EQ(size(1048577), "1.0 Mb");
    EXPECT_EQ(size(1073741824), "1,024.0 Mb");
    EXPECT_EQ(size(1073741825), "1.0 Gb");
    EXPECT_EQ(size(1099511627776), "1,024.0 Gb");
    EXPECT_EQ(size(1099511627777), "1.0 Tb");
    EXPECT_EQ(size(1717986918400), "1.6 Tb");
}

TEST_F(StatisticsTest, TheThroughputIsRowsPerMinuteOrFilesWhileNoneIsRead) {
    state.startTick = 1000;
    state.startTime = fake.clock.time;
    fake.clock.tick = 31000;
    fake.clock.time.second += 29;
    fake.clock.time.minute += 1;
    state.counters.files = 2500;
    timerTick(state, fake.clock);
    EXPECT_EQ(state.texts.throughput, "5,000 Files per minute");
    EXPECT_EQ(state.texts.statusPanel, "00:01:29");
    state.counters.rowsRead = 10;
    timerTick(state, fake.clock);
    EXPECT_EQ(state.texts.throughput, "20 Files per minute");
}

TEST_F(StatisticsTest, AFirstMillisecondDividesByNothing) {
    state.startTick = fake.clock.tick;
    state.texts.throughput = "as it was";
    timerTick(state, fake.clock);
    EXPECT_EQ(state.texts.throughput, "as it was");
}

TEST_F(StatisticsTest, ElapsedTimeGoesOverMidnight) {
    state.startTime = {2026, 11, 14, 23, 59, 50, 6, 317};
    fake.clock.time = {2026, 11, 15, 0, 0, 20, 0, 318};
    timerTick(state, fake.clock);
    EXPECT_EQ(state.texts.statusPanel, "00:00:30");
}

TEST_F(StatisticsTest, ARecountRaisesTheCounterOfEachText) {
    recount({u"Header OK", u"Header Corrupt", u"Unknown or ambiguous file type", u"No Extension",
             u"File too small to test (<512 bytes)", u"File is zero bytes", u"Invalid File Name", u"Access error",
             u"File encrypted", u"Appears to be of file type: : Zip", u"something else"});
    JobCounters expected;
    expected.rowsRead = 11;
    expected[Grade::Good] = expected[Grade::Corrupt] = expected[Grade::Unknown] = expected[Grade::NoExtension] =
        expected[Grade::TooSmall] = 1;
    expected[Grade::ZeroBytes] = expected[Grade::InvalidName] = expected[Grade::AccessError] =
        expected[Grade::Encrypted] = expected[Grade::CommonHeader] = 1;
    EXPECT_EQ(state.counters, expected);
    EXPECT_EQ(state.texts.quality, "66.67%");
    EXPECT_EQ(state.texts.status, "Ready");
}

TEST_F(StatisticsTest, ARecountOfGoodAndCorruptRowsLeavesTheQualityAtZero) {
    recount({u"Header OK", u"Header Corrupt", u"File encrypted"});
    EXPECT_EQ(state.counters[Grade::Good], 1);
    EXPECT_EQ(state.texts.quality, "0");
    recount({u"Header OK", u"Header Corrupt", u"Access error"});
    EXPECT_EQ(state.texts.quality, "50.00%") << "a row of an access error goes on to the quality";
    recount({u"Access error", u"Header OK"});
    EXPECT_EQ(state.texts.quality, "0") << "there was no good one at that row";
}

TEST_F(StatisticsTest, ComparisonIsExactAndTheCommonTextIsContained) {
    recount({u"header ok", u"Header OK ", u"x Appears to be of file type: y", u"Appears to be of file type"});
    EXPECT_EQ(state.counters[Grade::Good], 0);
    EXPECT_EQ(state.counters[Grade::CommonHeader], 1);
    EXPECT_EQ(state.counters.rowsRead, 4);
}

TEST_F(StatisticsTest, OfTwoMessagesThatReadTheSameTheFirstComparedCounts) {
    const Grade order[] = {Grade::Good,        Grade::Corrupt,     Grade::Unknown,
                           Grade::NoExtension, Grade::TooSmall,    Grade::ZeroBytes,
                           Grade::InvalidName, Grade::AccessError, Grade::Encrypted};
    for (std::size_t i = 0; i + 1 < std::size(order); ++i) {
        job.messages = ReportMessages::fallback();
        job.messages[order[i]] = job.messages[order[i + 1]] = u"Same";
        recount({u"Same"});
        EXPECT_EQ(state.counters[order[i]], 1) << i;
        EXPECT_EQ(state.counters[order[i + 1]], order[i] == Grade::AccessError ? 1 : 0) << i;
    }
}

TEST_F(StatisticsTest, AChangeOfWordingMakesOldListsCountDifferently) {
    job.messages[Grade::Good] = u"Fine";
    recount({u"Header OK", u"Fine"});
    EXPECT_EQ(state.counters[Grade::Good], 1);
}

TEST_F(StatisticsTest, RowsThatHaveNotFiveColumnsCountNothing) {
    writeFinalList(
        {u"/s/f,15/11/2026, 600, 32;Ab9x", u"", u"/s/f,15/11/2026, 600, 32;Ab9x,Header OK,more", u"Header OK"});
    upDateAllLabels(job.passContext(), job.lists(), job.messages);
    EXPECT_EQ(state.counters, JobCounters());
    EXPECT_EQ(state.texts.quality, "0");
}

TEST_F(StatisticsTest, EightBitListsAreCountedToo) {
    folder.write("local/1234.csv", "C:\\s\\f,15/11/2026, 600, 32;Ab9x,Header OK\r\n");
    upDateAllLabels(job.passContext(), job.lists(), job.messages);
    EXPECT_EQ(state.counters[Grade::Good], 1);
}

TEST_F(StatisticsTest, WithoutAListTheBoardIsResetAndTheScreenUnlocked) {
    state.counters[Grade::Good] = 5;
    upDateAllLabels(job.passContext(), job.lists(), job.messages);
    EXPECT_EQ(state.counters, JobCounters());
    EXPECT_EQ(state.texts.status, "Updating statistics ...");
    EXPECT_FALSE(boardOf(state).busyPointer);
    EXPECT_TRUE(boardOf(state).frames);
    EXPECT_TRUE(boardOf(state).menus);
    EXPECT_TRUE(boardOf(state).run);
    EXPECT_TRUE(boardOf(state).zip);
    EXPECT_FALSE(boardOf(state).stop);
}

TEST_F(StatisticsTest, ARecountLocksTheScreenAndTurnsTheLoopPerLineWhenProgressIsShown) {
    state.options.showProgress = true;
    int lockedTurns = 0;
    fake.loop.onTurn = [&](int turn) {
        const JobBoard board = boardOf(state);
        if (turn > 1 && board.busyPointer && board.stop && !board.frames && !board.menus && !board.run && !board.zip)
            ++lockedTurns;
    };
    recount({u"Header OK", u"Header OK", u"Header OK"});
    EXPECT_EQ(fake.loop.turns, 4);
    EXPECT_EQ(lockedTurns, 3);
    state.options.showProgress = false;
    fake.loop.turns = 0;
    recount({u"Header OK", u"Header OK", u"Header OK"});
    EXPECT_EQ(fake.loop.turns, 1);
}

TEST_F(StatisticsTest, WhileAJobRunsARecountTouchesNeitherItsCountersNorItsControls) {
    for (std::size_t phase = 1; phase < kJobPhases; ++phase) {
        resetCounters(state);
        enterPhase(state, static_cast<JobPhase>(phase));
        state.counters[Grade::Good] = 7;
        state.texts.status = "of the job";
        const JobCounters counters = state.counters;
        const JobBoard board = boardOf(state);
        recount({u"Header OK"});
        EXPECT_EQ(state.counters, counters) << phase;
        EXPECT_EQ(boardOf(state), board) << phase;
        EXPECT_EQ(state.texts.status, "of the job") << phase;
    }
}

TEST_F(StatisticsTest, AListThatCannotBeReadTellsTheStatusLine) {
    std::filesystem::create_directory(folder / "local/1234.csv");
    upDateAllLabels(job.passContext(), job.lists(), job.messages);
    EXPECT_NE(state.texts.status, "Ready");
    EXPECT_FALSE(state.texts.status.empty());
    EXPECT_TRUE(boardOf(state).frames);
}

}  // namespace

}  // namespace quillon::test
