// SPDX-License-Identifier: MIT
// A disk that is full from any write of the evidence on costs a job its evidence and nothing else, and what the
// evidence then holds can be gone on with.
#include <filesystem>

#include "evidence/sqlite_faults.h"
#include "job/driver_fixture.h"

namespace quillon::test {
namespace {

class EvidenceFullDiskTest : public DriverTest {
protected:
    EvidenceFullDiskTest() {
        state.options.keepEvidence = true;
        state.log.setListener(nullptr);
        termFile("abc", "1,MZ,T\r\n");
        for (int i = 0; i < 40; ++i)
            sourceFile(std::to_string(i % 4) + "/f" + std::to_string(i) + ".abc",
                       (i % 3 == 0 ? "no" : "MZ") + std::string(600, static_cast<char>('a' + i % 26)));
    }
    /// The list of a job whose evidence can write so much less one; whether it came to a failing write.
    std::pair<std::string, bool> jobThatFailsAt(int write) {
        const SqliteFaults faults(write);
        EXPECT_EQ(run(), JobEnd::Complete);
        return {folder.read("local/1234.csv"), faults.met()};
    }
    void forget() const {
        for (const char* name : {"local/1234.csv", "local/1234.sqlite", "local/1234.sqlite-journal"})
            std::filesystem::remove(folder / name);
    }
};

TEST_F(EvidenceFullDiskTest, AtWhateverWriteTheListIsWholeAndTheLossIsTold) {
    const std::string whole = jobThatFailsAt(0).first;
    forget();
    int failed = 0;
    for (int write = 1;; ++write) {
        state.options.resume = false;
        const auto [list, met] = jobThatFailsAt(write);
        EXPECT_EQ(list, whole) << write;
        EXPECT_EQ(state.counters.lostEvidence, met ? 1 : 0) << write;
        EXPECT_EQ(state.evidenceLoss.empty(), !met) << write;
        if (!met)
            break;
        ++failed;
        std::filesystem::remove(folder / "local/1234.csv");
        state.options.resume = true;
        EXPECT_EQ(run(), JobEnd::Complete);
        EXPECT_EQ(folder.read("local/1234.csv"), whole) << write;
        EXPECT_EQ(state.counters.lostEvidence, 0) << write;
        forget();
    }
    EXPECT_GE(failed, 5) << "the disk was full at some writes";
}

}  // namespace
}  // namespace quillon::test
