// SPDX-License-Identifier: MIT
#include "app/database_history.h"
#include "evidence/evidence_store.h"
#include "platform/whole_file.h"
#include "programs/command_fixture.h"
#include "programs/list_command.h"

namespace quillon::test {

namespace {

class ListHistoryTest : public CommandFixture {
protected:
    void SetUp() override {
        install();
        settings_ = folder / "local/Settings";
        terms_ = folder / "local/Database/new.dat";
    }
    /// As the Extension Editor does it.
    std::string teach(const std::string& bytes) {
        DatabaseChange change;
        change.screen = "Extension Editor";
        change.job = "4711";
        EXPECT_TRUE(changeNoted(settings_, terms_, change, [&] { return saveWholeFile(terms_, bytes); }));
        return readHistory(settings_, 1).front().id;
    }
    int history(std::vector<std::string> arguments) {
        out.str("");
        err.str("");
        arguments.insert(arguments.begin(), "history");
        arguments.insert(arguments.end(), {"--app", (folder / "app").native()});
        return runListCommand(arguments, {out, err, false, false});
    }

    NativePath settings_;
    NativePath terms_;
};

TEST_F(ListHistoryTest, TellsWhoChangedWhatTheNewestFirst) {
    teach("1,MZ,T\r\n");
    const auto id = teach("1,PE,T\r\n");
    ASSERT_EQ(history({"--json"}), 0) << err.str();
    const auto rows = json();
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0]["id"], id);
    EXPECT_EQ(rows[0]["screen"], "Extension Editor");
    EXPECT_EQ(rows[0]["job"], "4711");
    EXPECT_EQ(rows[0]["files"][0]["file"], "Database/new.dat");
    EXPECT_EQ(rows[0]["files"][0]["added"], nlohmann::json::array({"1,PE,T"}));
    EXPECT_EQ(rows[0]["files"][0]["gone"], nlohmann::json::array({"1,MZ,T"}));
    EXPECT_EQ(rows[1]["files"][0]["created"], true);
    ASSERT_EQ(history({"--last", "1"}), 0);
    EXPECT_NE(out.str().find("Extension Editor by "), std::string::npos) << out.str();
    EXPECT_NE(out.str().find("job 4711: new.dat +1 -1"), std::string::npos) << out.str();
    EXPECT_EQ(out.str().find("new.dat new"), std::string::npos) << "only the newest";
}

TEST_F(ListHistoryTest, TakesAChangeBackAndTellsSo) {
    teach("1,MZ,T\r\n");
    const auto id = teach("1,MZ,T\r\n5,bad,T\r\n");
    ASSERT_EQ(history({"--undo", id}), 0) << err.str();
    EXPECT_EQ(readWholeFile(terms_).value(), "1,MZ,T\r\n");
    ASSERT_EQ(history({"--json"}), 0);
    EXPECT_EQ(json()[0]["undoes"], id);
    EXPECT_EQ(json()[1]["undone_by"], json()[0]["id"]);
    EXPECT_EQ(history({"--undo", "20200101T000000.000000Z-LAB7-1-0"}), 2);
    EXPECT_NE(err.str().find("There is no change"), std::string::npos);
}

TEST_F(ListHistoryTest, ARemarkStandsBesideItsChange) {
    const auto id = teach("1,MZ,T\r\n");
    ASSERT_EQ(history({"--about", id, "--remark", "new maker"}), 0) << err.str();
    ASSERT_EQ(history({"--json"}), 0);
    ASSERT_EQ(json().size(), 1U);
    EXPECT_EQ(json()[0]["remarks"], nlohmann::json::array({"new maker"}));
    EXPECT_EQ(history({"--about", id}), 2) << "a remark has words";
    EXPECT_EQ(history({"--about", id, "--remark", "x", "--undo", id}), 2);
}

TEST_F(ListHistoryTest, AskedForItTellsWhatBecameOfKeptHeads) {
    const NativePath evidence = folder / "local/4711.sqlite";
    ASSERT_TRUE(EvidenceStore::create(evidence));
    auto store = EvidenceStore::open(evidence);
    ASSERT_TRUE(store);
    FileHead head{kHeaderBytes, {}};
    head.bytes.fill(' ');
    head.bytes[0] = 'M';
    EvidenceRow row;
    row.name = "a.new";
    row.extension = "new";
    row.grade = Grade::Corrupt;
    ASSERT_TRUE(store->add(row, &head));
    ASSERT_TRUE(store->finish());
    teach("1,M,T\r\n");
    ASSERT_EQ(history({}), 0);
    EXPECT_EQ(out.str().find("kept heads"), std::string::npos) << "not asked for";
    ASSERT_EQ(history({"--effect"}), 0) << err.str();
    EXPECT_NE(out.str().find("    Of 1 kept heads of new 0 were good before and 1 after\n"), std::string::npos)
        << out.str();
    ASSERT_EQ(history({"--effect", "--json"}), 0);
    EXPECT_EQ(json()[0]["effects"],
              nlohmann::json::array({{{"extension", "new"}, {"heads", 1}, {"before", 0}, {"after", 1}}}));
}

TEST_F(ListHistoryTest, WhatIsWrittenHasNoEffectToTell) {
    const auto id = teach("1,MZ,T\r\n");
    EXPECT_EQ(history({"--effect", "--undo", id}), 2);
    EXPECT_EQ(history({"--effect", "--about", id, "--remark", "x"}), 2);
    EXPECT_EQ(readHistory(settings_, 9).size(), 1U) << "nothing is written";
}

TEST_F(ListHistoryTest, NothingChangedIsNothingToTell) {
    EXPECT_EQ(history({}), 0);
    EXPECT_EQ(out.str(), "nothing was changed\n");
}

}  // namespace

}  // namespace quillon::test
