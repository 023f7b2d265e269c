// SPDX-License-Identifier: MIT
#include "programs/list_command.h"

#include <random>

#include "programs/command_fixture.h"

namespace quillon::test {

namespace {

class ListCommandTest : public CommandFixture {
protected:
    void SetUp() override {
        install();
        folder.write("source/a.abc", "MZ" + std::string(600, 'x'));
        folder.write("source/sub/b.abc", std::string(600, '\0'));
        folder.write("source/sub/new\nline.xyz", noise());
        ASSERT_EQ(job({"--yes", "--quiet"}), 0) << err.str();
    }

    // Bytes that look like nothing.
    static std::string noise() {
        std::mt19937 random(1);
        std::string bytes(600, '\0');
        for (char& c : bytes) c = static_cast<char>(random() & 0xFFU);
        return bytes;
    }

    int list(std::vector<std::string> arguments, bool terminal = false) {
        out.str("");
        err.str("");
        arguments.insert(arguments.end(), {"--app", (folder / "app").native()});
        return runListCommand(arguments, {out, err, terminal, false});
    }
    [[nodiscard]] nlohmann::json json() const { return nlohmann::json::parse(out.str()); }
};

TEST_F(ListCommandTest, SummaryCountsTheJob) {
    ASSERT_EQ(list({"summary", "1234", "--json"}), 0) << err.str();
    EXPECT_EQ(json()["files"], 3);
    EXPECT_EQ(json()["good"], 1);
    EXPECT_EQ(json()["corrupt"], 1);
    EXPECT_EQ(json()["unknown"], 1);
    EXPECT_DOUBLE_EQ(json()["quality"], 50.0);
    ASSERT_EQ(list({"summary", "1234"}), 0);
    EXPECT_NE(out.str().find("50.00% of the 2 files that could be judged; 1 could not"), std::string::npos);
}

TEST_F(ListCommandTest, TheApplicationFolderMayStandAheadOfTheQuestion) {
    ASSERT_EQ(list({"summary", "1234"}), 0) << err.str();
    const std::string behind = out.str();
    out.str("");
    EXPECT_EQ(runListCommand({"--app", (folder / "app").native(), "summary", "1234"}, {out, err, false, false}), 0)
        << err.str();
    EXPECT_EQ(out.str(), behind);
}

TEST_F(ListCommandTest, AJobKeepsReasonsAndDoubts) {
    ASSERT_EQ(list({"reasons", "1234", "--json"}), 0) << err.str();
    ASSERT_FALSE(json().empty());
    ASSERT_EQ(json().size(), 2U);
    EXPECT_EQ(json()[0]["reason"], "noise");
    EXPECT_EQ(json()[1]["reason"], "zero-filled");
    EXPECT_EQ(json()[1]["files"], 1);
    folder.write("local/Database/wav.dat", "1,RIFF,T\r\n");
    folder.write("source/cut.wav", std::string("RIFF\xFF\xFF\0\0WAVEfmt ", 16) + std::string(600, 'x'));
    ASSERT_EQ(job({"--yes", "--quiet"}), 0);
    ASSERT_EQ(list({"files", "1234", "--doubt", "--ext", "wav"}), 0);
    EXPECT_EQ(out.str(), "cut.wav\n");
    ASSERT_EQ(list({"export", "1234", "--format", "jsonl", "--ext", "wav"}), 0);
    EXPECT_EQ(json()["doubt"], "cut");
    EXPECT_EQ(json()["grade"], "good");
}

TEST_F(ListCommandTest, ExtensionsAndFoldersAreListsOfObjects) {
    ASSERT_EQ(list({"extensions", "1234", "--json"}), 0) << err.str();
    EXPECT_EQ(json()[0]["extension"], "abc");
    EXPECT_EQ(json()[0]["files"], 2);
    ASSERT_EQ(list({"folders", "1234", "--json", "--worst", "1"}), 0);
    ASSERT_EQ(json().size(), 1U);
    EXPECT_EQ(json()[0]["corrupt"], 1);
}

TEST_F(ListCommandTest, FilesAreNamesBelowTheSource) {
    ASSERT_EQ(list({"files", "1234", "-0"}), 0) << err.str();
    EXPECT_EQ(out.str(), std::string("a.abc\0sub/b.abc\0sub/new\nline.xyz\0", 33));
    ASSERT_EQ(list({"files", "1234", "--grade", "corrupt,good", "--below", "sub"}), 0);
    EXPECT_EQ(out.str(), "sub/b.abc\n");
    ASSERT_EQ(list({"files", "1234", "--absolute", "--grade", "good"}), 0);
    EXPECT_EQ(out.str(), (folder / "source/a.abc").native() + "\n");
    ASSERT_EQ(list({"files", "1234", "--ext", "XYZ"}, true), 0);
    EXPECT_EQ(out.str().find("new\nline"), std::string::npos) << "no control characters on a terminal";
}

TEST_F(ListCommandTest, AListAloneIsAnswerEnough) {
    const auto csv = (folder / "local/1234.csv").native();
    std::filesystem::remove(folder / "local/1234.sqlite");
    ASSERT_EQ(list({"summary", csv, "--json"}), 0) << err.str();
    EXPECT_EQ(json()["files"], 3);
    EXPECT_EQ(json()["evidence"], false);
}

TEST_F(ListCommandTest, AJobThatDidNotComeToItsEndIsToldInEveryAnswer) {
    const std::string told =
        "quillon-list: 1234 did not come to its end: files are missing from its list and from every figure\n";
    ASSERT_EQ(list({"summary", "1234", "--json"}), 0);
    EXPECT_EQ(json()["unfinished"], false);
    EXPECT_EQ(err.str(), "");
    folder.write("local/1234.csv.unfinished", "");
    for (const char* question : {"summary", "extensions", "folders", "reasons", "files", "export"}) {
        ASSERT_EQ(list({question, "1234"}), 0) << question;
        EXPECT_EQ(err.str(), told) << question;
    }
    ASSERT_EQ(list({"compare", "1234", "1234"}), 0);
    EXPECT_EQ(err.str(), told + told) << "once for each of the two";
    ASSERT_EQ(list({"summary", "1234", "--json"}), 0);
    EXPECT_EQ(json()["unfinished"], true);
    ASSERT_EQ(list({"report", "1234", "-o", (folder / "1234.html").native()}), 0);
    EXPECT_EQ(err.str(), told);
    std::filesystem::remove(folder / "local/1234.sqlite");
    ASSERT_EQ(list({"report", "1234", "-o", (folder / "alone.html").native()}), 0);
    for (const char* page : {"1234.html", "alone.html"})
        EXPECT_NE(folder.read(page).find("did not come to its end"), std::string::npos) << page;
}

TEST_F(ListCommandTest, ExportsGoToAFileOrToTheOutput) {
    ASSERT_EQ(list({"export", "1234", "--format", "jsonl", "--grade", "good"}), 0) << err.str();
    EXPECT_EQ(json()["path"], "a.abc");
    ASSERT_EQ(list({"export", "1234", "-o", (folder / "x.csv").native()}), 0);
    EXPECT_TRUE(folder.read("x.csv").starts_with("row,path,name,"));
    EXPECT_EQ(out.str(), "");
}

TEST_F(ListCommandTest, CompareTellsDifferencesByItsStatus) {
    EXPECT_EQ(list({"compare", "1234", "1234"}), 0) << err.str();
    folder.write("source/sub/b.abc", "MZ" + std::string(600, 'x'));
    folder.write("source/c.abc", "MZ" + std::string(700, 'x'));
    std::filesystem::rename(folder / "local/1234.csv", folder / "local/old.csv");
    std::filesystem::rename(folder / "local/1234.sqlite", folder / "local/old.sqlite");
    ASSERT_EQ(job({"--yes", "--quiet"}), 0);
    ASSERT_EQ(list({"compare", "old", "1234", "--json"}), 1) << err.str();
    EXPECT_EQ(json()["gained"], 1);
    EXPECT_EQ(json()["better"], 1);
    EXPECT_EQ(json()["same"], 2);
    EXPECT_EQ(json()["rows"].size(), 2U);
}

TEST_F(ListCommandTest, ForgetDeletesTheEvidenceAndLeavesTheList) {
    ASSERT_EQ(list({"forget", "1234"}), 0) << err.str();
    EXPECT_FALSE(std::filesystem::exists(folder / "local/1234.sqlite"));
    EXPECT_TRUE(std::filesystem::exists(folder / "local/1234.csv"));
}

TEST_F(ListCommandTest, TroubleIsStatusTwo) {
    EXPECT_EQ(list({"summary", "none"}), 2);
    EXPECT_NE(err.str().find("none"), std::string::npos);
    EXPECT_EQ(list({"summary"}), 2);
    EXPECT_EQ(list({"files", "1234", "--grade", "great"}), 2);
    EXPECT_EQ(list({"nonsense"}), 2);
    folder.write("local/bad.sqlite", "no evidence");
    EXPECT_EQ(list({"summary", "bad"}), 2);
}

}  // namespace

}  // namespace quillon::test
