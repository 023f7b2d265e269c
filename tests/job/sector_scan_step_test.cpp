// SPDX-License-Identifier: MIT
#include "job/sector_scan_step.h"

#include <algorithm>

#include "job/driver_fixture.h"
#include "job/statistics.h"

namespace quillon::test {
namespace {

class SectorScanStepTest : public DriverTest {
protected:
    SectorScanStepTest() {
        state.options.keepEvidence = state.options.scanSectors = true;
        termFile("jpg", "1,FFD8FF,H\r\n");
        sourceFile("whole.jpg", "\xFF\xD8\xFF" + std::string(5000, 'x'));
        std::string hurt = "\xFF\xD8\xFF" + std::string(509, 'x');
        while (hurt.size() < 1024) hurt += "BAD SECTOR";
        sourceFile("hurt.jpg", hurt.substr(0, 1024) + std::string(1024, 'x'));
    }
    [[nodiscard]] bool isLogged(std::string_view text) const {
        const auto texts = logTexts();
        return std::ranges::find(texts, text) != texts.end();
    }
    [[nodiscard]] NativePath list() const { return folder / "local/1234.csv"; }
};

constexpr const char* kOneOfTwo = "1 file of 2 holds unread sectors, 512 Bytes in all";

TEST_F(SectorScanStepTest, BehindACompleteJobItsFilesAreReadToTheirEnds) {
    std::string during;
    onRow = [&](const LogRow& row) {
        if (row.text == "Looking for bad sectors")
            during = jobSummary(state).text;
    };
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(during, "Running 4 of 4: looking for bad sectors");
    EXPECT_TRUE(isLogged(kOneOfTwo));
    EXPECT_EQ(state.texts.sectors, std::string(kOneOfTwo) + "\nGood and whole as far as known: 50.00%");
    EXPECT_EQ(state.phase, JobPhase::Idle);
    EXPECT_EQ(state.texts.quality, "100.00%") << "the told figure stays";
    EXPECT_FALSE(state.progress.shown);
}

TEST_F(SectorScanStepTest, UnlessItIsAskedForNothingIsLookedFor) {
    state.options.scanSectors = false;
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_FALSE(isLogged("Looking for bad sectors"));
    EXPECT_EQ(state.texts.sectors, "");
}

TEST_F(SectorScanStepTest, WithoutEvidenceThereIsNoPlaceForWhatIsFound) {
    state.options.keepEvidence = false;
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_TRUE(isLogged("No bad sectors were looked for : the job has left no evidence to keep them in"));
}

TEST_F(SectorScanStepTest, StopEndsTheScanAndTheNextOneGoesOn) {
    onRow = [&](const LogRow& row) {
        if (row.text == "Looking for bad sectors")
            job.passContext().stop();
    };
    EXPECT_EQ(run(), JobEnd::Complete) << "the job itself is complete";
    EXPECT_TRUE(isLogged("Looking for bad sectors was stopped. The next time goes on from here"));
    EXPECT_FALSE(state.stopRequested);
    onRow = {};
    lookForBadSectors(job.passContext(), installation, list(), ScanOf::DoneJob);
    EXPECT_TRUE(isLogged(kOneOfTwo));
}

TEST_F(SectorScanStepTest, AJobThatWasDoneBeforeTellsWhatIsKnownWhenItIsOpened) {
    EXPECT_EQ(run(), JobEnd::Complete);
    resetCounters(state);
    EXPECT_EQ(state.texts.sectors, "");
    upDateAllLabels(job.passContext(), job.lists(), job.messages);
    EXPECT_EQ(state.texts.sectors.substr(0, 50), kOneOfTwo);
}

TEST_F(SectorScanStepTest, AFileThatIsGoneIsTold) {
    state.options.scanSectors = false;
    EXPECT_EQ(run(), JobEnd::Complete);
    std::filesystem::remove(folder / "source/whole.jpg");
    lookForBadSectors(job.passContext(), installation, list(), ScanOf::DoneJob);
    EXPECT_TRUE(isLogged("Files that could not be opened : 1"));
}

}  // namespace
}  // namespace quillon::test
