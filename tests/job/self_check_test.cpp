// SPDX-License-Identifier: MIT
#include "job/self_check.h"

#include "job/driver_fixture.h"
#include "platform/folders.h"

namespace quillon::test {

namespace {

using Gaps = std::vector<std::string>;

// Ten files, of which each has a grade, a row in each list and a copy.
struct SoundJob {
    SoundJob() {
        passes.raw = {10, 0};
        passes.testing = PassEnd::Whole;
        passes.rowsRead = 10;
        passes.list = {10, 0};
        passes.copying = PassEnd::Whole;
        passes.copies = 10;
        counters.files = 10;
        counters[Grade::Good] = 7;
        counters[Grade::Corrupt] = 3;
    }
    [[nodiscard]] Gaps gaps() const { return gapsOf(passes, counters); }

    PassFigures passes;
    JobCounters counters;
};

TEST(SelfCheck, ASoundJobHasNoGap) {
    EXPECT_EQ(SoundJob().gaps(), Gaps{});
    EXPECT_EQ(gapsOf({}, {}), Gaps{}) << "no files";
}

TEST(SelfCheck, RowsThatNobodyAskedForNeedNoCopy) {
    SoundJob job;
    job.passes.copies = 6;
    job.passes.leftOut = 4;
    EXPECT_EQ(job.gaps(), Gaps{});
    job.passes.leftOut = 3;
    EXPECT_EQ(job.gaps(), Gaps{"7 rows of the list were asked for, 6 files were copied or have a copy error"});
}

TEST(SelfCheck, EveryLinkOfTheChainIsCompared) {
    struct Case {
        std::function<void(SoundJob&)> disturb;
        Gaps gaps;
    };
    const Case cases[] = {
        {[](SoundJob& job) { job.counters.files = 1012; },
         {"1,012 files were found, 10 rows of the raw list were written or lost"}},
        {[](SoundJob& job) { job.passes.raw.written = 12; },
         {"10 files were found, 12 rows of the raw list were written or lost",
          "12 rows of the raw list were written, 10 rows of it were read"}},
        {[](SoundJob& job) { job.counters[Grade::Good] = 6; }, {"10 rows were read, 9 files have a grade"}},
        {[](SoundJob& job) { job.passes.list.written = 9; },
         {"10 rows were read, 9 rows of the list were written or lost",
          "9 rows stand in the list, 10 files were copied or have a copy error"}},
        {[](SoundJob& job) { job.passes.copies = 4; },
         {"10 rows stand in the list, 4 files were copied or have a copy error"}},
    };
    for (const auto& one : cases) {
        SoundJob job;
        one.disturb(job);
        EXPECT_EQ(job.gaps(), one.gaps);
    }
}

TEST(SelfCheck, WhatTheJobHasToldIsNoGap) {
    SoundJob job;
    job.counters.copyErrors = 2;
    job.passes.copies = 8;
    EXPECT_EQ(job.gaps(), Gaps{}) << "two copies failed";

    job = {};
    job.passes.raw = {8, 2};
    job.passes.rowsRead = 8;
    job.passes.list = {7, 1};
    job.passes.copies = 7;
    job.counters[Grade::Good] = 5;
    EXPECT_EQ(job.gaps(), Gaps{}) << "two rows of one list and one of the other were lost";
}

TEST(SelfCheck, APassThatDidNotRunOrWasCutShortIsNotCompared) {
    SoundJob job;
    job.passes.testing = PassEnd::Short;
    job.passes.copying = PassEnd::Short;
    job.passes.rowsRead = 4;
    job.passes.list.written = 4;
    job.passes.copies = 1;
    job.counters[Grade::Good] = 1;
    EXPECT_EQ(job.gaps(), Gaps{});
    job.counters[Grade::Good] = 2;
    EXPECT_EQ(job.gaps(), Gaps{"4 rows were read, 5 files have a grade"}) << "what was read has its grade";

    job = {};
    job.passes.testing = PassEnd::NotRun;
    job.passes.copying = PassEnd::NotRun;
    job.passes.rowsRead = job.passes.copies = 0;
    job.counters.grades = {};
    EXPECT_EQ(job.gaps(), Gaps{}) << "without testing the raw list is the final one";
}

class SelfCheckOfAJob : public DriverTest {
protected:
    SelfCheckOfAJob() {
        for (const char* const name : {"a.abc", "b.abc", "none"}) sourceFile(name, std::string(600, 'x'));
    }
    // The row that a gap has in the log.
    static bool isGap(const LogRow& row) { return row.text.starts_with("The figures of the job do not agree : "); }
    [[nodiscard]] int gapRows() const { return static_cast<int>(std::ranges::count_if(state.log.rows(), isGap)); }
    void copyToTarget() {
        state.options.copy = true;
        state.options.target = folder / "target";
    }
};

TEST_F(SelfCheckOfAJob, EveryKindOfJobAgreesWithItself) {
    for (const bool tests : {true, false}) {
        for (const bool copies : {true, false}) {
            std::filesystem::remove(folder / "local/1234.csv");
            state.options.checkFileQuality = tests;
            state.options.copy = copies;
            state.options.target = folder / "target";
            EXPECT_EQ(run(), JobEnd::Complete);
            EXPECT_EQ(state.gaps, Gaps{}) << tests << copies;
            EXPECT_EQ(gapRows(), 0);
        }
    }
}

TEST_F(SelfCheckOfAJob, AFailedCopyIsAnErrorAndNoGap) {
    state.options.copy = true;
    state.options.target = "/";
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(state.counters.copyErrors, 3);
    EXPECT_EQ(state.gaps, Gaps{});
}

TEST_F(SelfCheckOfAJob, ARawListThatLosesItsRowsIsAGapInTheLog) {
    atTurnWhen([this] { return state.counters.files == 3; },
               [this] { std::filesystem::resize_file(folder / "app/tFile.csv", 0); });
    EXPECT_EQ(run(), JobEnd::Complete);
    ASSERT_EQ(state.gaps, Gaps{"3 rows of the raw list were written, 0 rows of it were read"});
    ASSERT_EQ(gapRows(), 1);
    const auto row = std::ranges::find_if(state.log.rows(), isGap);
    EXPECT_EQ(row->text, "The figures of the job do not agree : " + state.gaps[0]);
    EXPECT_EQ(row->colour, kLightRed);
    expectOverwrite(BoxAnswer::Yes);
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(state.gaps, Gaps{}) << "a gap is the job's own";
}

TEST_F(SelfCheckOfAJob, AListThatTheCopyPassCannotReadIsAGap) {
    copyToTarget();
    atTurnWhen([this] { return state.counters.rowsRead == 3; },
               [this] { std::filesystem::resize_file(folder / "local/1234.csv", 0); });
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(state.gaps, Gaps{"3 rows stand in the list, 0 files were copied or have a copy error"});
}

TEST_F(SelfCheckOfAJob, AStoppedTestWithItsListDeletedIsNoGap) {
    copyToTarget();
    fake.dialogs.expectBox("Delete partial file list?",
                           "Process stopped, do you want to delete the current file list ?", BoxAnswer::Yes,
                           std::nullopt, BoxButtons::YesNo);
    fake.dialogs.expectBox("Error copying files", "Unable to find file list..", BoxAnswer::Ok, BoxStyle::Critical);
    stopWhen([this] { return state.counters.rowsRead == 1; });
    EXPECT_EQ(run(), JobEnd::Stopped);
    EXPECT_EQ(state.gaps, Gaps{});
}

// The bytes of U+0A0D are the line end of 8-bit text.
TEST_F(SelfCheckOfAJob, FilesWhoseNamesHoldManyForeignLineEndsAreAllGraded) {
    std::string name;
    for (int i = 0; i < 40; ++i) name += "\xE0\xA8\x8D";
    for (const char* const last : {"1", "2", "3"}) sourceFile(name + last + ".abc", std::string(600, 'x'));
    copyToTarget();
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(finalRows().size(), 6U);
    EXPECT_EQ(state.counters.rowsRead, 6);
    EXPECT_EQ(state.counters.copyErrors, 0);
    EXPECT_EQ(state.gaps, Gaps{});
}

}  // namespace

}  // namespace quillon::test
