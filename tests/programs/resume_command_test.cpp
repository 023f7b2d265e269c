// SPDX-License-Identifier: MIT
// `quillon-job --resume`, as its user meets it, and behind jobs that were really killed.
#include <algorithm>
#include <csignal>
#include <filesystem>

#include <sys/wait.h>
#include <unistd.h>

#include "evidence/evidence_reader.h"
#include "evidence/evidence_store.h"
#include "evidence/job_keys.h"
#include "job/job_end.h"
#include "platform/folders.h"
#include "programs/command_fixture.h"
#include "support/list_bytes.h"

namespace quillon::test {
namespace {

class ResumeCommandTest : public CommandFixture {
protected:
    static constexpr int kFiles = 60;

    ResumeCommandTest() {
        install();
        for (int i = 0; i < kFiles; ++i) {
            const std::string name = "source/" + std::to_string(i % 5) + "/f" + std::to_string(i) + ".abc";
            folder.write(name, (i % 3 == 0 ? "no" : "MZ") + std::string(600, 'f'));
        }
    }
    [[nodiscard]] NativePath evidence() const { return folder / "local/1234.sqlite"; }
    [[nodiscard]] std::string list() const { return folder.read("local/1234.csv"); }
    // Rows that a program would find now.
    [[nodiscard]] std::int64_t rows() const {
        auto from = EvidenceReader::open(evidence());
        auto count = from ? from->prepare("SELECT count(*) FROM file") : failure(from.error());
        return count && count->step().value_or(false) ? count->integer(0) : 0;
    }
    [[nodiscard]] std::int64_t linesInList() const {
        const std::string path = (folder / "local/1234.csv").native();
        return std::filesystem::exists(path) ? std::ranges::count(utf16Text(list()), u'\n') : 0;
    }
    // Runs the job in a process of its own, which is killed when its list has so many rows and its evidence, too.
    void killBehind(int lines, const std::vector<std::string>& more) {
        const auto before = fileStamp(folder / "local/1234.csv");
        const pid_t child = ::fork();
        if (child == 0) {
            interrupts = [this, lines, before] {
                const auto now = fileStamp(folder / "local/1234.csv");
                if (!now || (before && before->inode == now->inode) || linesInList() < lines)
                    return 0;
                while (rows() < lines - 1) ::usleep(1000);
                return ::raise(SIGKILL);
            };
            ::_exit(job(more));
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSIGNALED(status)) << "it came to its end";
    }
};

TEST_F(ResumeCommandTest, AKilledJobGoesOnToTheSameListHoweverOftenItIsKilled) {
    ASSERT_EQ(job(), kExitComplete) << err.str();
    const std::string whole = list();
    std::filesystem::remove_all(folder / "local/1234.csv");
    std::filesystem::remove_all(evidence());

    killBehind(30, {});
    const auto first = rows();
    EXPECT_LT(first, kFiles);
    killBehind(10, {"--resume"});
    EXPECT_LT(rows(), first) << "the rest stands in the evidence of the run before";
    killBehind(45, {"--resume"});
    killBehind(2, {"--resume"});
    EXPECT_EQ(job({"--resume", "--json"}), kExitComplete) << err.str();
    EXPECT_EQ(list(), whole);
    EXPECT_GE(json()["resume"]["not_read_again"], 44) << "what the third run had read";
    EXPECT_EQ(json()["resume"]["gone"], 0);
    EXPECT_FALSE(std::filesystem::exists(folder / "local/1234.sqlite-earlier"));
}

TEST_F(ResumeCommandTest, JsonAndLogTellHowManyOfEach) {
    ASSERT_EQ(job(), kExitComplete) << err.str();
    folder.write("source/0/new.abc", "MZ" + std::string(600, 'n'));
    folder.write("source/1/f1.abc", "MZ" + std::string(900, 'c'));
    std::filesystem::remove(folder / "source/2/f2.abc");
    EXPECT_EQ(job({"--resume", "--json"}), kExitComplete) << "the old list is replaced unasked: " << err.str();
    EXPECT_EQ(json()["resume"], nlohmann::json({{"from", "complete"},
                                                {"not_read_again", 38},
                                                {"read_again", 20},
                                                {"changed", 1},
                                                {"new", 1},
                                                {"gone", 1}}));
    EXPECT_TRUE(told("Not read again : 38, read again : 20, changed : 1, new : 1, gone : 1")) << err.str();
    EXPECT_EQ(json()["counters"]["files"], kFiles);
    ASSERT_EQ(job({"--yes", "--json"}), kExitComplete);
    EXPECT_EQ(json()["resume"], nullptr);
}

TEST_F(ResumeCommandTest, TheListOfAnotherSourceIsNotReplacedUnasked) {
    ASSERT_EQ(job(), kExitComplete) << err.str();
    std::filesystem::create_directory(folder / "other");
    EXPECT_EQ(command({"--job", "1234", "--source", (folder / "other").native(), "--app", (folder / "app").native(),
                       "--resume"}),
              kExitNoList);
    EXPECT_TRUE(told("give --yes to answer Yes to: You are about to overwrite the existing file")) << err.str();
}

TEST_F(ResumeCommandTest, WithoutAnEarlierRunItIsAJobLikeAnyOther) {
    EXPECT_EQ(job({"--resume", "--json"}), kExitComplete) << err.str();
    EXPECT_EQ(json()["resume"]["from"], "");
    EXPECT_EQ(json()["counters"]["tested"], kFiles);
}

TEST_F(ResumeCommandTest, WhatItCannotGoTogetherWithIsWrongUsage) {
    EXPECT_EQ(job({"--resume", "--no-evidence"}), kExitUsage);
    EXPECT_TRUE(told("--resume takes no --no-evidence")) << err.str();
    EXPECT_EQ(job({"--resume", "--no-test"}), kExitUsage);
    EXPECT_TRUE(told("--resume takes no --no-test")) << err.str();
    EXPECT_EQ(command({"--regrade", "1234", "--resume"}), kExitUsage);
    EXPECT_TRUE(told("--regrade takes no --resume")) << err.str();
}

}  // namespace
}  // namespace quillon::test
