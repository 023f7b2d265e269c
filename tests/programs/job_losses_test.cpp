// SPDX-License-Identifier: MIT
// The table of losses, walked: each row is brought about in a job, and exit status, JSON and text are those of the row.
#include <algorithm>
#include <functional>

#include <nlohmann/json.hpp>

#include "job/job_end.h"
#include "programs/job_faults.h"

namespace quillon::test {
namespace {

class JobLosses : public JobFaults {
protected:
    struct Scene {
        const char* word;
        std::string faults;  // of the system calls; empty for none
        std::string options{};
        std::function<void()> prepare = [] {};
        int told = 1;  // how many were lost
    };

    JobLosses() { std::filesystem::create_directory(temp / "target"); }

    [[nodiscard]] std::string copying() const { return "--target " + path("target"); }
    void share() const {
        Installation installation(temp / "app");
        ASSERT_TRUE(installation.loadSettingsRecord());
        installation.settings.sharedPath.assign(pageFromPath(temp / "share"));
        installation.settings.useSharedDb = 1;
        installation.settings.useCommonHeaders = 1;
        ASSERT_TRUE(installation.saveSettingsRecord());
        for (const char* name : {"jpg", "new"}) temp.write(std::string("share/Database/") + name + ".dat", "1,X,T\r\n");
    }
    [[nodiscard]] std::vector<Scene> scenes() const;
    void expectLoss(const LossRow& row, const Scene& scene);
};

std::vector<JobLosses::Scene> JobLosses::scenes() const {
    const std::string inPlaceOfACopy = "target" + (temp / "source").native() + "/a.jpg/inside";
    return {
        {"lost_rows", "-P " + path("app/tFile.csv") + " -e inject=write:error=ENOSPC:when=2"},
        {"copy_errors", "", copying(), [this, inPlaceOfACopy] { temp.write(inPlaceOfACopy, ""); }},
        {"damaged_copies", "-f -P " + path("source/a.jpg") + " -e inject=read,pread64,preadv2:error=EIO",
         copying() + " --salvage"},
        {"not_copied", "-P " + path("data/7.csv") + " -e inject=read,pread64:error=EIO", copying(), [] {}, 6},
        {"rules_not_read", "-P " + path("data/Database/jpg.dat") + " -e inject=openat:error=EACCES"},
        {"not_fetched", "-f -P " + path("share/Database/new.dat") + " -e inject=openat:error=EIO", "",
         [this] { share(); }},
        {"folders_not_read", "-f -P " + path("source/one") + " -e inject=getdents64:error=EIO"},
        {"lost_messages", ""},
        {"lost_evidence", "-f -P " + path("data/7.sqlite") + " -e inject=pwrite64:error=ENOSPC:when=2+"},
    };
}

void JobLosses::expectLoss(const LossRow& row, const Scene& scene) {
    SCOPED_TRACE(row.word);
    for (const char* name : {"data/7.csv", "data/7.sqlite", "target", "out", "err"})
        std::filesystem::remove_all(temp / name);
    std::filesystem::create_directory(temp / "target");
    scene.prepare();
    const bool withEvidence = std::string(row.word) == "lost_evidence";
    const std::string options = "--json " + scene.options;
    std::string command = withEvidence ? jobWithEvidence(options) : job(options);
    if (row.counter == &JobCounters::lostMessages)
        command += " 2>/dev/full";
    EXPECT_EQ(runShell(scene.faults.empty() ? command : traced(scene.faults, command)), 3) << said();
    const auto result = nlohmann::json::parse(temp.read("out"), nullptr, false);
    ASSERT_TRUE(result.is_object()) << temp.read("out") << said();
    EXPECT_EQ(result["end"], "complete");
    EXPECT_EQ(result["status"], 3);
    EXPECT_EQ(result["losses"], std::vector<std::string>{row.word}) << said();
    if (row.counter == &JobCounters::lostMessages)
        return;  // nobody is there to read it
    EXPECT_NE(said().find(std::string(" ") + row.text), std::string::npos) << said();
    EXPECT_NE(said().find("quillon-job: " + std::to_string(scene.told) + " "), std::string::npos) << said();
}

TEST_F(JobLosses, EachRowHasItsStatusItsWordAndItsText) {
    const auto all = scenes();
    for (const auto& row : kJobLosses) {
        const auto scene = std::find_if(all.begin(), all.end(), [&](const Scene& s) { return row.word == s.word; });
        ASSERT_NE(scene, all.end()) << row.word << " has no scene";
        expectLoss(row, *scene);
    }
}

// Whether there should be files the program cannot know.
TEST_F(JobLosses, ASourceWithoutFilesIsCompleteAndLacksNothing) {
    std::filesystem::remove_all(temp / "source");
    std::filesystem::create_directory(temp / "source");
    EXPECT_EQ(runShell(job("--json " + copying())), 0) << said();
    const auto result = nlohmann::json::parse(temp.read("out"), nullptr, false);
    ASSERT_TRUE(result.is_object()) << temp.read("out");
    EXPECT_EQ(result["end"], "complete");
    EXPECT_EQ(result["status"], 0);
    EXPECT_TRUE(result["losses"].empty());
    EXPECT_TRUE(result["list"].is_string());
    EXPECT_EQ(said().find("quillon-job: "), std::string::npos) << said();
}

}  // namespace
}  // namespace quillon::test
