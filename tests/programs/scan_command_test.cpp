// SPDX-License-Identifier: MIT
#include "programs/scan_command.h"

#include <filesystem>

#include "programs/command_fixture.h"
#include "programs/list_command.h"

namespace quillon::test {

namespace {

std::string sector(const std::string& beginning) {
    return beginning + std::string(512 - beginning.size(), '.');
}

class ScanCommandTest : public CommandFixture {
protected:
    void SetUp() override {
        install();
        folder.write("local/Settings/BadSectors.dat", "1,UNREAD,T,O,ours\r\n");
        folder.write("source/hurt.abc", sector("MZ") + sector("UNREAD") + std::string(1024, '\0') + "end");
        folder.write("source/whole.abc", sector("MZ") + sector("unread"));
        folder.write("source/head.abc", sector("UNREAD") + sector(""));
        ASSERT_EQ(job({"--yes", "--quiet"}), 0) << err.str();
    }
    int scan(const std::vector<std::string>& more = {}) {
        std::vector<std::string> arguments = {"--job", "1234", "--scan-sectors", "--app", (folder / "app").native()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return command(arguments);
    }
    std::string list(const std::vector<std::string>& question) {
        std::ostringstream answer;
        std::vector<std::string> arguments = question;
        arguments.insert(arguments.begin() + 1, {"1234", "--app", (folder / "app").native()});
        EXPECT_EQ(runListCommand(arguments, {answer, err, false, false}), 0) << err.str();
        return answer.str();
    }
};

TEST_F(ScanCommandTest, TellsHowManyFilesHoldUnreadSectors) {
    ASSERT_EQ(scan(), 0) << err.str();
    EXPECT_EQ(out.str(),
              "2 files of 3 hold unread sectors, 1,024 Bytes in all\nSectors of zeros, read or not : 1,024 Bytes\n");
    EXPECT_EQ(list({"files", "--unread"}), "head.abc\nhurt.abc\n");
    const auto rows = list({"export", "--format", "jsonl"});
    EXPECT_NE(rows.find("\"bad_bytes\":512"), std::string::npos) << rows;
}

TEST_F(ScanCommandTest, TellsScriptsTheSame) {
    ASSERT_EQ(scan({"--json"}), 0) << err.str();
    EXPECT_EQ(json()["scan_sectors"], "1234");
    EXPECT_EQ(json()["end"], "complete");
    EXPECT_EQ(json()["files"], 3);
    EXPECT_EQ(json()["unread_files"], 2);
    EXPECT_EQ(json()["unread_bytes"], 1024);
    EXPECT_EQ(json()["zero_bytes"], 1024);
    EXPECT_EQ(json()["bytes"], json()["bytes_done"]);
}

TEST_F(ScanCommandTest, AHeadWithAMarkerHasItAsItsReason) {
    const auto rows = list({"export", "--format", "jsonl", "--reason", "bad-sector"});
    EXPECT_NE(rows.find("\"path\":\"head.abc\""), std::string::npos) << rows;
    EXPECT_NE(rows.find("\"detail\":\"ours\""), std::string::npos) << rows;
    EXPECT_EQ(list({"files", "--reason", "bad-sector"}), "head.abc\n");
}

TEST_F(ScanCommandTest, AStoppedScanIsGoneOnWith) {
    int asked = 0;
    interrupts = [&asked] { return ++asked > 5 ? 1 : 0; };  // three files are gathered and two of them read
    EXPECT_EQ(scan({"--json"}), 130) << err.str();
    EXPECT_EQ(json()["end"], "stopped");
    interrupts = [] { return 0; };
    ASSERT_EQ(scan({"--json"}), 0) << err.str();
    EXPECT_EQ(json()["earlier"], 2);
    EXPECT_EQ(list({"files", "--unread"}), "head.abc\nhurt.abc\n");
}

TEST_F(ScanCommandTest, AFileThatIsGoneIsToldAndTheStatusIsThatOfLosses) {
    std::filesystem::remove(folder / "source/whole.abc");
    EXPECT_EQ(scan(), 3);
    EXPECT_TRUE(told("whole.abc")) << err.str();
    EXPECT_NE(out.str().find("Could not be opened : 1\n"), std::string::npos) << out.str();
}

TEST_F(ScanCommandTest, WithoutEvidenceNothingIsRead) {
    std::filesystem::remove(folder / "local/1234.sqlite");
    EXPECT_EQ(scan(), 1);
    EXPECT_TRUE(told("no evidence")) << err.str();
}

TEST_F(ScanCommandTest, AnInstallationThatIsNotWholeIsToldScriptsToo) {
    folder.write("app/settings.dat", "");
    EXPECT_EQ(scan({"--json"}), 1);
    EXPECT_EQ(json()["end"], "failed");
    EXPECT_EQ(json()["detail"], "the installation is not whole");
    EXPECT_EQ(json()["status"], 1);
}

TEST_F(ScanCommandTest, ItTakesNoOptionOfANewJob) {
    EXPECT_EQ(scan({"--no-test"}), 2);
    EXPECT_TRUE(told("--scan-sectors without --source takes no --no-test")) << err.str();
    EXPECT_EQ(scan({"--regrade", "1234"}), 2);
}

TEST_F(ScanCommandTest, ANewJobIsScannedBehindItsEnd) {
    ASSERT_EQ(job({"--yes", "--quiet", "--scan-sectors", "--json"}), 0) << err.str();
    EXPECT_EQ(json()["end"], "complete");
    EXPECT_EQ(json()["sectors"]["end"], "complete");
    EXPECT_EQ(json()["sectors"]["unread_files"], 2);
    EXPECT_EQ(list({"files", "--unread"}), "head.abc\nhurt.abc\n");
    EXPECT_EQ(job({"--yes", "--quiet", "--scan-sectors", "--no-evidence"}), 2);
    ASSERT_EQ(job({"--yes", "--quiet", "--json"}), 0) << err.str();
    EXPECT_TRUE(json()["sectors"].is_null());
}

}  // namespace

}  // namespace quillon::test
