// SPDX-License-Identifier: MIT
// The evidence of `quillon-job`, as its user meets it.
#include <filesystem>

#include "evidence/evidence_reader.h"
#include "job/job_end.h"
#include "programs/command_fixture.h"

namespace quillon::test {
namespace {

class JobEvidenceCommandTest : public CommandFixture {
protected:
    JobEvidenceCommandTest() {
        install();
        folder.write("source/good.abc", "MZ" + std::string(600, 'g'));
        folder.write("source/bad.abc", std::string(600, 'b'));
    }
    [[nodiscard]] NativePath evidence() const { return folder / "local/1234.sqlite"; }
    /// Rows, and heads among them.
    [[nodiscard]] std::pair<int, int> counts() const {
        auto from = EvidenceReader::open(evidence());
        EXPECT_TRUE(from) << from.error().text;
        std::pair<int, int> counts;
        EvidenceRow row;
        while (from && from->next(row).value_or(false)) {
            ++counts.first;
            counts.second += from->head(row).value_or(nullptr) != nullptr ? 1 : 0;
        }
        return counts;
    }
};

TEST_F(JobEvidenceCommandTest, AJobLeavesItsEvidenceBesideItsList) {
    EXPECT_EQ(job(), kExitComplete);
    EXPECT_EQ(counts(), std::pair(2, 2));
}

TEST_F(JobEvidenceCommandTest, WithoutHeadsThereAreRowsAlone) {
    EXPECT_EQ(job({"--no-heads"}), kExitComplete);
    EXPECT_EQ(counts(), std::pair(2, 0));
}

TEST_F(JobEvidenceCommandTest, WithoutEvidenceThereIsNone) {
    EXPECT_EQ(job({"--no-evidence"}), kExitComplete);
    EXPECT_FALSE(std::filesystem::exists(evidence()));
}

TEST_F(JobEvidenceCommandTest, APreferenceTurnsItOff) {
    folder.write("app/preferences.ini", "evidence.heads=no\n");
    EXPECT_EQ(job(), kExitComplete);
    EXPECT_EQ(counts(), std::pair(2, 0));
    folder.write("app/preferences.ini", "evidence.keep=no\n");
    EXPECT_EQ(job({"--yes"}), kExitComplete);
    EXPECT_FALSE(std::filesystem::exists(evidence()));
}

TEST_F(JobEvidenceCommandTest, LostEvidenceIsALossOfACompleteJob) {
    const std::string id(245, 'j');  // the list's name fits, that of the evidence's journal does not
    const std::vector<std::string> arguments = {
        "--job", id, "--source", (folder / "source").native(), "--app", (folder / "app").native(), "--json"};
    EXPECT_EQ(command(arguments), kExitLosses);
    EXPECT_TRUE(told("1 evidence file could not be written to its end")) << err.str();
    EXPECT_TRUE(told("the name is too long for evidence")) << err.str();
    EXPECT_EQ(json()["losses"], nlohmann::json({"lost_evidence"}));
    EXPECT_EQ(json()["end"], "complete");
}

}  // namespace
}  // namespace quillon::test
