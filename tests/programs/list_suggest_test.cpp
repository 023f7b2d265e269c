// SPDX-License-Identifier: MIT
#include "programs/command_fixture.h"
#include "programs/list_command.h"

namespace quillon::test {

namespace {

// Two damaged files and one of another kind; "abc" files begin with MZ.
class ListSuggestTest : public CommandFixture {
protected:
    void SetUp() override {
        install();
        folder.write("source/a.abc", "NEWMARK1" + std::string(600, 'x'));
        folder.write("source/sub/b.abc", "NEWMARK2" + std::string(600, 'y'));
        folder.write("source/good.abc", "MZ" + std::string(600, 'z'));
        folder.write("source/other.xyz", "OTHER" + std::string(600, '-'));
        ASSERT_EQ(job({"--yes", "--quiet"}), 0) << err.str();
    }
    int list(std::vector<std::string> arguments) {
        out.str("");
        err.str("");
        arguments.insert(arguments.end(), {"--app", (folder / "app").native()});
        return runListCommand(arguments, {out, err, false, false});
    }
};

TEST_F(ListSuggestTest, TellsTermsOfTheBadFilesFromTheEvidence) {
    ASSERT_EQ(list({"suggest", "1234", "--ext", ".ABC", "--json"}), 0) << err.str();
    const auto rows = json();
    ASSERT_TRUE(rows.is_array());
    ASSERT_FALSE(rows.empty());
    EXPECT_LE(rows.size(), 10U);
    EXPECT_EQ(rows[0]["position"], 1);
    EXPECT_EQ(rows[0]["term"].get<std::string>().substr(0, 4), "NEWM");
    EXPECT_EQ(rows[0]["type"], "T");
    EXPECT_EQ(rows[0]["hits"], 2);
    EXPECT_EQ(rows[0]["listed"], 2);
    EXPECT_EQ(rows[0]["false_hits"], 0);
    EXPECT_EQ(rows[0]["others"], 1);
}

TEST_F(ListSuggestTest, TellsPeopleASentence) {
    ASSERT_EQ(list({"suggest", "1234", "--ext", "abc"}), 0) << err.str();
    EXPECT_NE(out.str().find("all 2 files, 0 of 1 good ones; none of 1 others"), std::string::npos) << out.str();
}

TEST_F(ListSuggestTest, PathsSayWhichFilesToLearnFrom) {
    folder.write("names", "sub/b.abc\nother.xyz\n");
    ASSERT_EQ(list({"suggest", "1234", "--ext", "abc", "--paths", (folder / "names").native(), "--json"}), 0);
    ASSERT_FALSE(json().empty());
    EXPECT_EQ(json()[0]["listed"], 1);
}

TEST_F(ListSuggestTest, NothingInCommonIsAnEmptyList) {
    ASSERT_EQ(list({"suggest", "1234", "--ext", "none", "--json"}), 0);
    EXPECT_EQ(json(), nlohmann::json::array());
    ASSERT_EQ(list({"suggest", "1234", "--ext", "none"}), 0);
    EXPECT_EQ(out.str(), "nothing to suggest\n");
}

TEST_F(ListSuggestTest, AJobWithoutEvidenceIsTrouble) {
    ASSERT_EQ(list({"forget", "1234"}), 0) << err.str();
    EXPECT_EQ(list({"suggest", "1234", "--ext", "abc"}), 2);
    EXPECT_NE(err.str().find("has no evidence"), std::string::npos);
    EXPECT_EQ(list({"suggest", "1234"}), 2);
}

}  // namespace

}  // namespace quillon::test
