// SPDX-License-Identifier: MIT
// `quillon-job --ends` and `quillon-list files --doubt`, as their user meets them.
#include <algorithm>

#include "programs/command_fixture.h"
#include "programs/list_command.h"
#include "support/tailed_files.h"

namespace quillon::test {
namespace {

class EndsCommandTest : public CommandFixture {
protected:
    EndsCommandTest() {
        install();
        for (const auto& file : tailedFiles()) {
            folder.write("local/Database/" + file.extension + ".dat", "1," + file.start + ",H\r\n");
            folder.write("source/whole/a." + file.extension, file.bytes);
            folder.write("source/cut/a." + file.extension, file.bytes.substr(0, file.bytes.size() - 1000));
        }
    }
    // What `quillon-list files --doubt` prints, in order.
    [[nodiscard]] std::string doubted() {
        std::ostringstream found;
        const int status = runListCommand({"files", "1234", "--doubt", "--app", (folder / "app").native()},
                                          {.out = found, .err = err});
        EXPECT_EQ(status, 0) << err.str();
        std::istringstream lines(found.str());
        std::vector<std::string> paths;
        for (std::string line; std::getline(lines, line);) paths.push_back(line);
        std::ranges::sort(paths);
        std::string all;
        for (const auto& path : paths) all += path + "\n";
        return all;
    }
};

TEST_F(EndsCommandTest, ExactlyTheCutFilesAreDoubted) {
    EXPECT_EQ(job({"--ends", "--json"}), 0) << err.str();
    EXPECT_EQ(json()["ends"], nlohmann::json({{"read", 12}, {"unread", 0}, {"doubted", 6}, {"known", 0}}));
    EXPECT_EQ(doubted(), "cut/a.gif\ncut/a.jpg\ncut/a.mp4\ncut/a.pdf\ncut/a.png\ncut/a.zip\n");
    EXPECT_TRUE(told("File ends read : 12, doubtful : 6, not readable : 0, known : 0"));
}

TEST_F(EndsCommandTest, WithoutItNobodyLooks) {
    EXPECT_EQ(job({"--json"}), 0) << err.str();
    EXPECT_TRUE(json()["ends"].is_null());
    EXPECT_EQ(doubted(), "") << "heads do not tell";
}

TEST_F(EndsCommandTest, APartLooksAtItsOwnFiles) {
    EXPECT_EQ(job({"--ends", "--part", "1/1", "--json"}), 0) << err.str();
    EXPECT_EQ(json()["ends"]["read"], 12);
}

TEST_F(EndsCommandTest, WhatItFindsNeedsAPlace) {
    EXPECT_EQ(job({"--ends", "--no-evidence"}), 2);
    EXPECT_TRUE(told("--ends takes no --no-evidence"));
    EXPECT_EQ(job({"--ends", "--no-test"}), 2);
    EXPECT_TRUE(told("--ends takes no --no-test"));
}

}  // namespace
}  // namespace quillon::test
