// SPDX-License-Identifier: MIT
// `quillon-job --regrade`, as its user meets it.
#include <filesystem>

#include "evidence/evidence_reader.h"
#include "evidence/job_keys.h"
#include "job/job_end.h"
#include "programs/command_fixture.h"

namespace quillon::test {
namespace {

class RegradeCommandTest : public CommandFixture {
protected:
    RegradeCommandTest() {
        install();
        folder.write("local/Settings/Errors.dat", "1\r\n2\r\n3\r\n4\r\n5\r\n6\r\n7\r\n8\r\n9\r\n10\r\n");
        folder.write("source/good.abc", "MZ" + std::string(600, 'g'));
        folder.write("source/bad.abc", std::string(600, 'b'));
        EXPECT_EQ(job(), kExitComplete) << err.str();
        std::filesystem::rename(folder / "source", folder / "away");
    }
    int regrade(const std::vector<std::string>& more = {}) {
        std::vector<std::string> arguments = {"--regrade", "1234", "--app", (folder / "app").native()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return command(arguments);
    }
    [[nodiscard]] bool printed(const std::string& text) const { return out.str().find(text) != std::string::npos; }
};

TEST_F(RegradeCommandTest, ATaughtTermMovesTheQualityWithTheSourceAway) {
    folder.write("local/Database/abc.dat", "1,MZ,T\r\n1,bb,T\r\n");
    EXPECT_EQ(regrade(), kExitComplete) << err.str();
    EXPECT_TRUE(printed("Rows of the list : 2\nGraded again : 2\nOf these with another result : 1\n")) << out.str();
    EXPECT_TRUE(printed("Recovery quality : 100.00% (before : 50.00%)\n" + (folder / "local/1234.csv").native()));
    EXPECT_EQ(err.str(), "");
}

TEST_F(RegradeCommandTest, JsonHasRowsAndQuality) {
    EXPECT_EQ(regrade({"--json"}), kExitComplete) << err.str();
    const auto result = json();
    EXPECT_EQ(result["regrade"], "1234");
    EXPECT_EQ(result["end"], "complete");
    EXPECT_EQ(result["status"], 0);
    EXPECT_EQ(result["list"], (folder / "local/1234.csv").native());
    EXPECT_EQ(result["rows"], nlohmann::json({{"all", 2}, {"graded", 2}, {"changed", 0}, {"kept", 0}, {"damaged", 0}}));
    EXPECT_EQ(result["quality"], "50.00%");
    EXPECT_EQ(result["quality_before"], "50.00%");
    EXPECT_EQ(result["counters"]["good"], 1);
    EXPECT_EQ(result["losses"], nlohmann::json::array());
}

TEST_F(RegradeCommandTest, DamagedEvidenceIsStatusThree) {
    {
        auto database = Database::open(folder / "local/1234.sqlite", Access::Writing);
        ASSERT_TRUE(database && database->run("UPDATE head_block SET digest = digest + 1"));
    }
    EXPECT_EQ(regrade(), kExitLosses);
    EXPECT_TRUE(printed("Result kept, as there is no head : 2\nOf these with damaged evidence : 2\n")) << out.str();
}

TEST_F(RegradeCommandTest, AStopLeavesTheListAsItWas) {
    const std::string before = folder.read("local/1234.csv");
    folder.write("local/Database/abc.dat", "1,bb,T\r\n");
    interrupts = [] { return 1; };
    EXPECT_EQ(regrade({"--json"}), kExitStopped);
    EXPECT_EQ(json()["end"], "stopped");
    EXPECT_EQ(folder.read("local/1234.csv"), before);
    interrupts = [] { return 0; };
    EXPECT_EQ(EvidenceReader::open(folder / "local/1234.sqlite")->jobNumber(job_keys::kListDigest).value(), 0)
        << "it may be ahead of the list";
    EXPECT_EQ(regrade(), kExitComplete);
    EXPECT_NE(folder.read("local/1234.csv"), before);
}

TEST_F(RegradeCommandTest, WithoutAListOrEvidenceItSaysSo) {
    std::filesystem::remove(folder / "local/1234.sqlite");
    EXPECT_EQ(regrade(), kExitNoList);
    EXPECT_TRUE(told("quillon-job: no evidence: ")) << err.str();
    std::filesystem::remove(folder / "local/1234.csv");
    EXPECT_EQ(regrade({"--json"}), kExitNoList);
    EXPECT_TRUE(told("quillon-job: no list: ")) << err.str();
    EXPECT_EQ(json()["list"], nullptr);
}

TEST_F(RegradeCommandTest, OptionsOfAJobAreWrongUsage) {
    EXPECT_EQ(regrade({"--source", (folder / "away").native()}), kExitUsage);
    EXPECT_TRUE(told("--regrade takes no --source")) << err.str();
    EXPECT_EQ(regrade({"--no-heads"}), kExitUsage);
    EXPECT_TRUE(told("--regrade takes no --no-heads")) << err.str();
    EXPECT_EQ(command({"--regrade", "a/b"}), kExitUsage);
    EXPECT_TRUE(told("--regrade \"a/b\" cannot be used")) << err.str();
    EXPECT_EQ(command({"--source", (folder / "away").native()}), kExitUsage);
    EXPECT_TRUE(told("--job is required")) << err.str();
}

}  // namespace
}  // namespace quillon::test
