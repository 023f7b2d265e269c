// SPDX-License-Identifier: MIT
// The command when the figures of its job do not agree.
#include <filesystem>
#include <functional>
#include <sstream>
#include <utility>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "app/installation.h"
#include "programs/job_command.h"
#include "support/posix_files.h"
#include "support/temp_folder.h"

namespace quillon::test {

namespace {

namespace fs = std::filesystem;

// Messages that do something when a certain one has come.
class ListeningMessages final : public std::stringbuf {
public:
    ListeningMessages(std::string awaited, std::function<void()> act)
        : awaited_(std::move(awaited)), act_(std::move(act)) {}

private:
    int sync() override {
        if (act_ && str().find(awaited_) != std::string::npos)
            std::exchange(act_, nullptr)();
        return std::stringbuf::sync();
    }

    std::string awaited_;
    std::function<void()> act_;
};

TEST(JobFigures, ThatDoNotAgreeAreALineAndStatus3) {
    const TempFolder folder;
    for (const char* name : {"app", "local/Database", "local/Settings", "zips"}) fs::create_directories(folder / name);
    Installation installation(folder / "app");
    installation.settings.runHeaderTest = 1;
    installation.settings.localPath.assign(pageFromPath(folder / "local"));
    installation.settings.zipPath.assign(pageFromPath(folder / "zips"));
    ASSERT_TRUE(installation.saveSettingsRecord());
    for (const char* name : {"source/a.abc", "source/b.abc"}) folder.write(name, std::string(600, '.'));

    ListeningMessages messages("Start file quality testing", [&] { fs::resize_file(folder / "app/tFile.csv", 0); });
    std::ostream err(&messages);
    std::ostringstream out;
    std::istringstream in;
    const int status = runJobCommand(
        {"--job", "1234", "--source", (folder / "source").native(), "--app", (folder / "app").native(), "--json"},
        {in, out, err});
    EXPECT_EQ(status, 3);
    const std::string gap = "2 rows of the raw list were written, 0 rows of it were read";
    const std::string line = "quillon-job: the figures of the job do not agree: " + gap + "\n";
    EXPECT_NE(messages.str().find(line), std::string::npos) << messages.str();
    EXPECT_EQ(nlohmann::json::parse(out.str())["gaps"], nlohmann::json::array({gap}));
}

}  // namespace

}  // namespace quillon::test
