// SPDX-License-Identifier: MIT
// Rows with the heads of their files asked for ahead. Files of /proc stand for a slow source: they lie on no disk.
#include "job/rows_ahead.h"

#include "job/job_fixture.h"
#include "job/testing_pass.h"

namespace quillon::test {

namespace {

using Rows = std::vector<std::u16string>;

class WatchedLoop final : public EventLoop {
public:
    void turn() override { ++turns; }
    bool mayStandStill() const override { return false; }
    int turns = 0;
};

class RowsAheadTest : public JobFixture {
protected:
    RowsAheadTest() : watched(installation, {fake.clock, fake.dates, fake.dialogs, loop, "LAB7"}) {
        watched.messages = ReportMessages::fallback();
        watched.state.options = state.options;
    }

    Rows rowsOfList(const Rows& lines) {
        writeRawList(lines);
        auto reader = ListReader::open(folder / "app/tFile.csv");
        RowsAhead rows(*reader, watched.grader(), watched.surroundings().loop, watched.passContext().evidence);
        Rows read;
        while (const ListRow* row = rows.next()) read.emplace_back(row->line());
        return read;
    }

    // How many heads are asked for while the first of `lines` is in work.
    std::size_t askedFor(const Rows& lines) {
        writeRawList(lines);
        auto reader = ListReader::open(folder / "app/tFile.csv");
        RowsAhead rows(*reader, watched.grader(), watched.surroundings().loop, watched.passContext().evidence);
        EXPECT_TRUE(rows.next());
        return watched.grader().heads().asked();
    }

    std::u16string row(const std::string& name, std::string_view bytes) const {
        const std::string path = sourceFile(name, bytes);
        return std::u16string(path.begin(), path.end()) + u",15/11/2026, 600, 32;Ab9x";
    }

    WatchedLoop loop;
    Job watched;
};

TEST_F(RowsAheadTest, RowsComeInTheOrderOfTheListWhateverTheyHold) {
    termFile("txt", "1,XX,T\r\n");
    Rows lines = {u"", u"nocomma", u"/s/none.txt,,,", u",,,,", row("a.txt", "XX")};
    for (int i = 0; i < 300; ++i) {
        lines.push_back(row("a" + std::to_string(i % 9) + ".txt", "XX"));
        if (i % 3 != 0)
            lines.push_back(u"/proc/none" + std::u16string(1, static_cast<char16_t>('a' + i % 26)) +
                            u".txt,15/11/2026, 600, 32");
    }
    EXPECT_EQ(rowsOfList(lines), lines);
}

TEST_F(RowsAheadTest, OnlyFilesThatTheTestWillOpenAreAskedFor) {
    termFile("txt", "1,XX,T\r\n");
    EXPECT_EQ(askedFor({row("a.txt", "XX")}), 1U);
    EXPECT_EQ(askedFor({u"/proc/a.txt,15/11/2026, 0, 32"}), 0U) << "zero bytes";
    EXPECT_EQ(askedFor({u"/proc/a.txt,15/11/2026, 511, 32"}), 0U) << "too small";
    EXPECT_EQ(askedFor({u"/proc/a.txt,15/11/2026, 600, 16384"}), 0U) << "encrypted";
    EXPECT_EQ(askedFor({u"/proc/a,15/11/2026, 600, 32"}), 0U) << "no extension";
    EXPECT_EQ(askedFor({u"/proc/a.none,15/11/2026, 600, 32"}), 0U) << "nothing is known of the type";
    EXPECT_EQ(askedFor({u"/proc/a.txt"}), 0U) << "no comma";
    watched.state.options.useCommonHeaders = true;
    EXPECT_EQ(askedFor({u"/proc/a.none,15/11/2026, 600, 32"}), 1U) << "a common header may be found";
}

TEST_F(RowsAheadTest, BehindASlowFileManyHeadsAreAskedForAndNotOneMoreThanFits) {
    termFile("txt", "1,XX,T\r\n");
    const Rows lines(600, u"/proc/a.txt,15/11/2026, 600, 32");
    EXPECT_EQ(askedFor(lines), HeadsAhead::kMost);
    EXPECT_EQ(rowsOfList(lines), lines);
}

TEST_F(RowsAheadTest, AWatchedPassGradesAsOneThatReadsInLine) {
    termFile("txt", "1,XX,T\r\n");
    termFile("slow", "1,XX,T\r\n");
    Rows lines;
    for (int i = 0; i < 200; ++i) {
        const std::string number = std::to_string(i);
        lines.push_back(row("f" + number + ".txt", i % 5 == 0 ? "no" : "XX" + std::string(600, '.')));
        lines.push_back(u"/proc/none.slow,15/11/2026, 600, 32");
        lines.push_back(u"");
    }
    writeRawList(lines);
    TestingPass(job.passContext(), job.lists(), job.grader(), nullptr).run();
    const Rows inLine = finalRows();
    TestingPass(watched.passContext(), watched.lists(), watched.grader(), nullptr).run();
    EXPECT_EQ(finalRows(), inLine);
    EXPECT_EQ(watched.state.counters[Grade::Good], job.state.counters[Grade::Good]);
    EXPECT_EQ(watched.state.counters[Grade::Corrupt], job.state.counters[Grade::Corrupt]);
    EXPECT_EQ(watched.state.counters[Grade::AccessError], 200);
    EXPECT_GE(loop.turns, 600) << "one behind each row, and more where a head kept the pass waiting";
}

TEST_F(RowsAheadTest, HeadsThatAreReadInBatchesGradeAsOneAfterTheOther) {
    termFile("txt", "1,XX,T\r\n");
    Rows lines;
    for (int i = 0; i < 1200; ++i) {
        const std::string number = std::to_string(i);
        if (i % 7 == 0)
            lines.push_back(u"/none/at.txt,15/11/2026, 600, 32");
        else if (i % 40 < 33)  // a batch may have no file that is opened
            lines.push_back(row("f" + number + ".txt", i % 5 == 0 ? "no" : "XX" + std::string(600, '.')));
        else
            lines.push_back(i % 2 == 0 ? u"" : u"/s/small.txt,15/11/2026, 10, 32");
    }
    writeRawList(lines);
    job.state.options.threads = 1;
    TestingPass(job.passContext(), job.lists(), job.grader(), nullptr).run();
    const Rows inLine = finalRows();
    ASSERT_EQ(inLine.size(), lines.size());
    for (Job* const by : {&job, &watched}) {
        for (const int threads : {2, 4}) {
            by->state.counters = {};
            by->state.options.threads = threads;
            TestingPass(by->passContext(), by->lists(), by->grader(), nullptr).run();
            EXPECT_EQ(finalRows(), inLine) << threads;
            EXPECT_EQ(by->state.counters[Grade::AccessError], 172) << threads;
        }
    }
}

TEST_F(RowsAheadTest, BehindASlowFileTheHeadsOfABatchAreAskedForOneByOne) {
    termFile("txt", "1,XX,T\r\n");
    watched.state.options.threads = 3;
    Rows lines;
    for (int i = 0; i < 900; ++i)
        lines.push_back(i < 300 || i > 600 ? row("f" + std::to_string(i) + ".txt", "XX")
                                           : u"/proc/version.txt,15/11/2026, 600, 32");
    EXPECT_EQ(rowsOfList(lines), lines);
}

TEST_F(RowsAheadTest, AGentleJobReadsNoBatches) {
    termFile("txt", "1,XX,T\r\n");
    watched.state.options.threads = 3;
    watched.state.care = std::make_shared<SourceCare>(SourceCare::Reason::Asked);
    Rows lines;
    for (int i = 0; i < 300; ++i) lines.push_back(row("f" + std::to_string(i) + ".txt", "XX"));
    EXPECT_EQ(rowsOfList(lines), lines);
    EXPECT_EQ(askedFor(lines), 1U);
}

}  // namespace

}  // namespace quillon::test
