// SPDX-License-Identifier: MIT
// The end of a final list: on the medium before its mark goes, and marked for good when rows of the job are missing.
#include "job/job_lists.h"

#include "app/list_mark.h"
#include "job/job_fixture.h"
#include "job/statistics.h"
#include "job/testing_pass.h"
#include "support/failing_files.h"

namespace quillon::test {

namespace {

class JobListsTest : public JobFixture {
protected:
    void test() { TestingPass(job.passContext(), job.lists(), job.grader(), nullptr).run(); }
    [[nodiscard]] bool isMarked() const { return isUnfinished(folder / "local/1234.csv"); }

    const std::vector<std::u16string> two{u"/s/a,15/11/2026, 1, 32;Ab9x", u"/s/b,15/11/2026, 1, 32;Ab9x"};
};

TEST_F(JobListsTest, AListIsMarkedUntilItsLastRowIsWritten) {
    std::vector<bool> marked;
    fake.loop.onTurn = [&](int) { marked.push_back(isMarked()); };
    writeRawList(two);
    test();
    EXPECT_EQ(marked, (std::vector<bool>{true, true}));
    EXPECT_EQ(finalRows().size(), 2U);
    EXPECT_FALSE(isMarked());
}

TEST_F(JobListsTest, AListWithLostRowsStaysMarked) {
    writeRawList(two);
    state.counters.lostRows = 1;
    test();
    EXPECT_EQ(finalRows().size(), 2U);
    EXPECT_TRUE(isMarked());
}

TEST_F(JobListsTest, AListThatEndsBeforeTheFilesOfTheJobStaysMarked) {
    writeRawList(two);
    state.counters.files = 3;
    test();
    EXPECT_TRUE(isMarked());
}

TEST_F(JobListsTest, AListThatDoesNotComeToTheMediumStaysMarkedAndIsALoss) {
    writeRawList(two);
    auto list = job.lists().createFinal();
    ASSERT_TRUE(list);
    {
        FailingFiles disk;
        disk.failAt(1, Fault{EIO}, "sync");
        EXPECT_FALSE(job.lists().finishFinal(*list, ListEnd::Whole, fake.loop));
    }
    EXPECT_TRUE(isMarked());
}

TEST_F(JobListsTest, ACopiedRawListThatLacksRowsIsMarked) {
    writeRawList(two);
    ASSERT_TRUE(job.lists().copyRawToFinal(ListEnd::Cut, fake.loop));
    EXPECT_TRUE(isMarked());
    ASSERT_TRUE(job.lists().copyRawToFinal(ListEnd::Whole, fake.loop));
    EXPECT_FALSE(isMarked());
    EXPECT_TRUE(exists("local/Kept/2026-11-15 10.20.30/1234.csv.unfinished")) << "the mark goes where its list goes";
}

TEST_F(JobListsTest, ADeletedListTakesItsMarkAlong) {
    ASSERT_TRUE(job.lists().createFinal());
    ASSERT_TRUE(isMarked());
    ASSERT_TRUE(job.lists().removeFinal());
    EXPECT_FALSE(isMarked());
    EXPECT_FALSE(exists("local/1234.csv"));
}

TEST_F(JobListsTest, AListThatComesBackIsMarkedOnlyIfItWas) {
    for (const bool wasMarked : {false, true}) {
        writeFinalList({u"old"});
        if (wasMarked) {
            ASSERT_TRUE(markUnfinished(folder / "local/1234.csv"));
        }
        std::filesystem::remove(folder / "app/tFile.csv");
        EXPECT_FALSE(job.lists().copyRawToFinal(ListEnd::Whole, fake.loop)) << "there is no raw list";
        EXPECT_EQ(finalRows(), std::vector<std::u16string>{u"old"});
        EXPECT_EQ(isMarked(), wasMarked);
    }
}

TEST_F(JobListsTest, ACutListIsToldWhenItIsCounted) {
    writeFinalList({u"/s/a,15/11/2026, 1, 32;Ab9x,Header OK"});
    upDateAllLabels(job.passContext(), job.lists(), job.messages);
    EXPECT_EQ(logTexts(), std::vector<std::string>{});
    ASSERT_TRUE(markUnfinished(folder / "local/1234.csv"));
    upDateAllLabels(job.passContext(), job.lists(), job.messages);
    EXPECT_EQ(logTexts(), std::vector<std::string>{"The file list is not whole: its job was cut short"});
    EXPECT_EQ(state.counters[Grade::Good], 1) << "what it holds counts all the same";
}

}  // namespace

}  // namespace quillon::test
