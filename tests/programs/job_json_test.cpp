// SPDX-License-Identifier: MIT
// The result of a job as JSON: docs/formats/job-json.md.
#include "programs/job_command.h"

#include <algorithm>
#include <fstream>

#include <fmt/format.h>

#include "job/job.h"
#include "job/job_end.h"
#include "programs/command_fixture.h"
#include "text/list_text.h"

namespace quillon::test {

namespace {

namespace fs = std::filesystem;

using JobJsonTest = CommandFixture;

TEST_F(JobJsonTest, JsonHasEveryCounterTheListTheTimesAndTheLog) {
    install();
    folder.write("source/good.abc", "MZ" + std::string(600, '.'));
    folder.write("source/empty.abc", "");
    folder.write("source/none", std::string(600, '.'));
    EXPECT_EQ(job({"--json"}), 0);
    const auto result = nlohmann::json::parse(out.str());
    EXPECT_EQ(result["job"], "1234");
    EXPECT_EQ(result["end"], "complete");
    EXPECT_EQ(result["list"], (folder / "local/1234.csv").native());
    EXPECT_EQ(result["quality"], "100.00%");
    EXPECT_EQ(result["size"], "1.2 Kb");
    const auto& counters = result["counters"];
    const std::map<std::string, int> expected = {
        {"folders", 0},        {"folder_errors", 0},  {"folders_not_read", 0}, {"files", 3},
        {"total_bytes", 1202}, {"skipped", 0},        {"rows_read", 3},        {"tested", 1},
        {"good", 1},           {"corrupt", 0},        {"unknown", 0},          {"common", 0},
        {"no_extension", 1},   {"small", 0},          {"zero_bytes", 1},       {"bad_name", 0},
        {"access_errors", 0},  {"encrypted", 0},      {"copy_errors", 0},      {"lost_rows", 0},
        {"unread_heads", 0},   {"graded", 3},         {"copied", 0},           {"not_copied", 0},
        {"not_fetched", 0},    {"rules_not_read", 0}, {"lost_evidence", 0},    {"lost_messages", 0},
        {"damaged_copies", 0}};
    EXPECT_EQ(counters.size(), expected.size());
    for (const auto& [name, value] : expected) EXPECT_EQ(counters.at(name), value) << name;
    for (const char* phase : {"folder_tests", "file_count", "testing", "copying"})
        EXPECT_TRUE(result["seconds"].at(phase).is_number()) << phase;
    ASSERT_EQ(result["log"].size(), 6U);
    EXPECT_EQ(result["log"][0]["event"], "Starting Folder tests ");
}

TEST_F(JobJsonTest, TheCountersStandInTheirOrder) {
    install();
    EXPECT_EQ(job({"--json"}), 0);
    const auto result = nlohmann::ordered_json::parse(out.str());
    std::vector<std::string> names;
    for (const auto& counter : result["counters"].items()) names.push_back(counter.key());
    EXPECT_EQ(names, (std::vector<std::string>{
                         "folders",        "folder_errors",  "folders_not_read", "files",        "total_bytes",
                         "skipped",        "rows_read",      "tested",           "good",         "corrupt",
                         "unknown",        "common",         "no_extension",     "small",        "zero_bytes",
                         "bad_name",       "access_errors",  "encrypted",        "graded",       "copied",
                         "copy_errors",    "damaged_copies", "lost_rows",        "unread_heads", "not_copied",
                         "rules_not_read", "not_fetched",    "lost_evidence",    "lost_messages"}));
}

TEST_F(JobJsonTest, NamesInJsonAreLossless) {
    install();
    const auto file = folder.write("source/bad\xFF.abc", "MZ" + std::string(600, '.'));
    EXPECT_EQ(job({"--yes", "--json", "--target", "/"}), 3) << err.str();
    EXPECT_EQ(json()["version"], 1);
    EXPECT_EQ(json()["log_cut"], 0);
    std::string hex;
    for (const char byte : file.native()) hex += fmt::format("{:02x}", static_cast<unsigned char>(byte));
    const auto rows = json()["log"];
    const auto row = std::ranges::find_if(
        rows, [](const auto& each) { return each["event"].template get<std::string>().starts_with("Error copying"); });
    ASSERT_NE(row, rows.end());
    EXPECT_EQ((*row)["path_bytes"], hex);
    EXPECT_EQ((*row)["path"], readable(std::string_view(file.native())));
    EXPECT_TRUE(json()["list"].is_string());
    EXPECT_FALSE(json().contains("list_bytes")) << "the text is the name itself";
}

TEST_F(JobJsonTest, ALogThatIsCutSaysHowManyRowsItLost) {
    JobLog log;
    log.setLimit(2);
    for (int i = 0; i < 5; ++i) log.add({{}, std::to_string(i), std::nullopt});
    EXPECT_EQ(log.rows().size(), 2U);
    EXPECT_EQ(log.dropped(), 3U);
}

TEST_F(JobJsonTest, EachRowOfTheLogIsALineOfJsonWhenItComes) {
    install();
    EXPECT_EQ(job({"--log-json", "--quiet"}), 0);
    std::istringstream lines(err.str());
    std::vector<std::string> events;
    for (std::string line; std::getline(lines, line);) {
        const auto row = nlohmann::json::parse(line);
        EXPECT_EQ(row["level"], "info");
        EXPECT_EQ(row["at"].get<std::string>().size(), std::string("2026-11-22T09:33:26").size());
        events.push_back(row["event"]);
    }
    ASSERT_EQ(events.size(), 6U);
    EXPECT_EQ(events.front(), "Starting Folder tests ");
}

TEST_F(JobJsonTest, ThePageHasEveryReasonAndEveryCounter) {
    install();
    EXPECT_EQ(job({"--json"}), 0);
    std::ifstream file(fs::path(QUILLON_PROJECT) / "docs/formats/job-json.md");
    const std::string page(std::istreambuf_iterator<char>(file), {});
    const auto expectNamed = [&page](const std::string& name) {
        EXPECT_NE(page.find('`' + name + '`'), std::string::npos) << name;
    };
    for (const auto& row : kJobEnds) expectNamed(row.word);
    const auto told = json();
    for (const auto& object : {told, told["counters"], told["seconds"], told["log"][0]}) {
        EXPECT_FALSE(object.empty());
        for (const auto& entry : object.items()) expectNamed(entry.key());
    }
    for (const auto& loss : kJobLosses) EXPECT_TRUE(told["counters"].contains(loss.word)) << loss.word;
}

}  // namespace

}  // namespace quillon::test
