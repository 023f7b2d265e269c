// SPDX-License-Identifier: MIT
// Ends of files are looked at behind the passes of a job, and what they show is kept.
#include "job/ends_pass.h"

#include <algorithm>
#include <filesystem>

#include "evidence/job_keys.h"
#include "job/driver_fixture.h"
#include "job/regrade.h"
#include "support/tailed_files.h"

namespace quillon::test {

namespace {

namespace fs = std::filesystem;

class EndsPassTest : public DriverTest {
protected:
    static constexpr const char* kCutPng = "The last chunk (IEND) is missing at the end of the file.";

    EndsPassTest() {
        state.options.keepEvidence = true;
        state.options.lookAtEnds = true;
        state.log.setListener(nullptr);
        for (const auto& file : tailedFiles()) {
            termFile(file.extension, "1," + file.start + ",H\r\n");
            sourceFile("whole." + file.extension, file.bytes);
            sourceFile("cut." + file.extension, file.bytes.substr(0, file.bytes.size() - 1000));
        }
        termFile("abc", "1,MZ,T\r\n");
        sourceFile("none.abc", "MZ" + std::string(5000, 'x'));
        sourceFile("wrong.abc", png().substr(0, 4000));
    }
    static std::string png() {
        const auto files = tailedFiles();
        return std::ranges::find(files, "png", &TailedFile::extension)->bytes;
    }
    [[nodiscard]] NativePath evidence() const { return folder / "local/1234.sqlite"; }
    [[nodiscard]] EvidenceRow rowOf(const std::string& path) const {
        auto from = EvidenceReader::open(evidence());
        EvidenceRow row;
        EXPECT_TRUE(from && from->findPath(path, row).value_or(false)) << path;
        return row;
    }
    [[nodiscard]] std::vector<std::string> doubted() const {
        auto from = EvidenceReader::open(evidence());
        std::vector<std::string> paths;
        EvidenceRow row;
        while (from && from->next(row).value_or(false)) {
            if (!row.doubt.empty())
                paths.push_back(row.path());
        }
        std::ranges::sort(paths);
        return paths;
    }
    [[nodiscard]] std::int64_t countedDoubts() const {
        auto from = EvidenceReader::open(evidence());
        auto sum = from->prepare("SELECT coalesce(sum(files), 0) FROM by_reason WHERE reason = -1");
        return sum->step().value_or(false) ? sum->integer(0) : -1;
    }
    JobEnd again(bool resume) {
        state.options.resume = resume;
        expectOverwrite(BoxAnswer::Yes);
        return run();
    }
};

const std::vector<std::string> kCut = {"cut.gif", "cut.jpg", "cut.mp4", "cut.pdf", "cut.png", "cut.zip"};

TEST_F(EndsPassTest, ExactlyTheCutFilesAreDoubted) {
    ASSERT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(doubted(), kCut);
    EXPECT_EQ(rowOf("cut.png").doubt, "cut");
    EXPECT_EQ(rowOf("cut.png").doubtDetail, kCutPng);
    EXPECT_EQ(rowOf("whole.png").tail, tails::kWhole);
    EXPECT_EQ(rowOf("none.abc").tail, "");
    EXPECT_EQ(countedDoubts(), 6);
}

TEST_F(EndsPassTest, WithoutBeingAskedNobodyLooks) {
    state.options.lookAtEnds = false;
    ASSERT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(rowOf("whole.png").tail, "");
    EXPECT_EQ(rowOf("cut.png").tail, "");
    EXPECT_EQ(state.ends, std::nullopt);
}

TEST_F(EndsPassTest, TheListIsThatOfAJobThatDoesNotLook) {
    ASSERT_EQ(run(), JobEnd::Complete);
    const std::string list = folder.read("local/1234.csv");
    state.options.lookAtEnds = false;
    ASSERT_EQ(again(false), JobEnd::Complete);
    EXPECT_EQ(folder.read("local/1234.csv"), list);
}

TEST_F(EndsPassTest, AnEndThatCannotBeReadIsNoDoubt) {
    // Behind the testing pass.
    onRow = [this](const LogRow& row) {
        if (row.text.starts_with("Start looking at file ends"))
            fs::remove(folder / "source/whole.gif");
    };
    state.log.setListener(this);
    ASSERT_EQ(run(), JobEnd::Complete);
    const EvidenceRow row = rowOf("whole.gif");
    EXPECT_EQ(row.tail, tails::kUnread);
    EXPECT_EQ(row.doubt, "");
    EXPECT_EQ(row.doubtDetail, "The end of the file could not be read.");
    EXPECT_EQ(doubted(), kCut);
    ASSERT_TRUE(state.ends);
    EXPECT_EQ(state.ends->unread, 1);
    EXPECT_EQ(state.ends->doubted, 6);
}

TEST_F(EndsPassTest, ASourceThatIsReadGentlyShowsTheSame) {
    state.options.gentle = true;
    ASSERT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(doubted(), kCut);
}

TEST_F(EndsPassTest, WithAHangLimitTheyAreReadByThreadsAndShowTheSame) {
    state.options.hangLimit = std::chrono::seconds(60);
    ASSERT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(doubted(), kCut);
}

TEST_F(EndsPassTest, HeadsThatWereLeftOutAreReadOnceMore) {
    state.options.keepHeads = false;
    ASSERT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(doubted(), kCut);
}

TEST_F(EndsPassTest, WithoutEvidenceThereIsNoPlaceForIt) {
    state.options.keepEvidence = false;
    ASSERT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(state.ends, std::nullopt);
}

TEST_F(EndsPassTest, StopLeavesTheListAndTheEvidenceWhole) {
    stopWhen([this] { return state.phase == JobPhase::Ends; });
    state.options.hangLimit = std::chrono::seconds(60);
    EXPECT_EQ(run(), JobEnd::Stopped);
    EXPECT_EQ(state.outcome->cause, EndCause::StoppedInEnds);
    EXPECT_EQ(EvidenceReader::open(evidence())->jobText(job_keys::kEnd).value(), "complete");
    EXPECT_EQ(finalRows().size(), 14U);
}

TEST_F(EndsPassTest, ARegradeKeepsTheDoubtsOfEndsWithoutTheSource) {
    ASSERT_EQ(run(), JobEnd::Complete);
    fs::rename(folder / "source", folder / "away");
    EXPECT_EQ(Regrade(job).run().end, RegradeEnd::Complete);
    EXPECT_EQ(doubted(), kCut);
    EXPECT_EQ(rowOf("cut.png").doubtDetail, kCutPng);
    EXPECT_EQ(countedDoubts(), 6);
}

TEST_F(EndsPassTest, ARegradeAsksTheEndOfAFileThatTodaysRulesCallGood) {
    ASSERT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(rowOf("wrong.abc").grade, Grade::Corrupt);
    EXPECT_EQ(rowOf("wrong.abc").doubt, "") << "a bad file needs no doubt";
    EXPECT_EQ(rowOf("wrong.abc").tail, "cut");
    termFile("abc", "1,89504E47,H\r\n");
    EXPECT_EQ(Regrade(job).run().end, RegradeEnd::Complete);
    EXPECT_EQ(rowOf("wrong.abc").doubtDetail, kCutPng);
    termFile("abc", "1,MZ,T\r\n");
    EXPECT_EQ(Regrade(job).run().end, RegradeEnd::Complete);
    EXPECT_EQ(rowOf("wrong.abc").doubt, "");
    EXPECT_EQ(countedDoubts(), 6);
}

TEST_F(EndsPassTest, AJobThatGoesOnReadsOnlyEndsThatDidNotStand) {
    ASSERT_EQ(run(), JobEnd::Complete);
    const auto first = state.ends.value_or(EndFigures());
    EXPECT_EQ(first.read, 13);
    // A later pass of the imaging tool: neither size nor time changes.
    sourceFile("cut.png", png().substr(0, png().size() - 1000 - 12) + png().substr(png().size() - 12));
    ASSERT_EQ(again(true), JobEnd::Complete);
    EXPECT_EQ(state.ends, (EndFigures{.read = 7, .unread = 0, .doubted = 5, .known = 6}));
    EXPECT_EQ(rowOf("cut.png").tail, tails::kWhole);
    EXPECT_EQ(rowOf("cut.png").doubt, "");
    EXPECT_EQ(rowOf("whole.png").tail, tails::kWhole);
}

TEST_F(EndsPassTest, AnEarlierRunThatWasKilledLendsAllThatItSaw) {
    ASSERT_EQ(run(), JobEnd::Complete);
    {
        auto store = EvidenceStore::open(evidence());
        ASSERT_TRUE(store && store->setJob(job_keys::kEnd, job_keys::kRunning) && store->commit());
    }
    ASSERT_EQ(again(true), JobEnd::Complete);
    EXPECT_EQ(state.ends->read, 0);
    EXPECT_EQ(doubted(), kCut);
}

}  // namespace

}  // namespace quillon::test
