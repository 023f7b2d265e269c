// SPDX-License-Identifier: MIT
// The table of ends, walked: each row is brought about, and exit status, JSON and text are those of the row.
#include <set>

#include "job/job_end.h"
#include "platform/folder_lock.h"
#include "platform/host.h"
#include "programs/command_fixture.h"

namespace quillon::test {

namespace {

namespace fs = std::filesystem;

class JobEnds : public CommandFixture {
protected:
    // A job that ends in this way when it is run with these options.
    using Scene = std::function<std::vector<std::string>()>;

    struct SceneRow {
        EndCause cause;
        Scene prepare;
    };

    JobEnds() {
        for (const char* name : {"a.abc", "b.abc", "c.abc"})
            folder.write(std::string("source/") + name, "MZ" + std::string(600, '.'));
    }

    // Interrupts from the moment on at which this is so.
    void interruptWhen(std::function<bool()> isSo) {
        interrupts = [isSo = std::move(isSo), pressed = false]() mutable {
            pressed = pressed || isSo();
            return pressed ? 1 : 0;
        };
    }
    void interruptAt(const std::string& text) {
        interruptWhen([this, text] { return told(text); });
    }
    [[nodiscard]] std::string target() const { return (folder / "target").native(); }

    // What a command cannot bring about has no scene: NoTarget, as --target is what asks for copies.
    [[nodiscard]] std::vector<SceneRow> scenes();

    void expectRow(const SceneRow& scene);

    std::optional<FolderLock> otherJob;
};

std::vector<JobEnds::SceneRow> JobEnds::scenes() {
    using Options = std::vector<std::string>;
    return {
        {EndCause::NotSetUp,
         [this] {
             folder.write("app/settings.dat", "");
             return Options{};
         }},
        {EndCause::NoDatabase,
         [this] {
             shareDatabase();
             folder.write("share/Settings/SkipList.dat", "x\r\n");
             return Options{};
         }},
        {EndCause::OverwriteRefused,
         [this] {
             folder.write("local/1234.csv", "old");
             return Options{};
         }},
        {EndCause::Busy,
         [this] {
             otherJob.emplace(FolderLock::take(folder / "app").value());
             return Options{};
         }},
        {EndCause::RawListDenied,
         [this] {
             folder.write("app/tFile.csv/inside", "");
             return Options{};
         }},
        {EndCause::StoppedInWalk,
         [this] {
             interruptAt("Start file count ");
             return Options{};
         }},
        {EndCause::ListDenied,
         [this] {
             folder.write("local/1234.csv", "old");
             folder.write("local/Kept", "a file where the folder should be");
             return Options{"--yes"};
         }},
        {EndCause::StoppedInTesting,
         [this] {
             interruptAt("Start file quality testing ");
             return Options{};
         }},
        {EndCause::StoppedInCopying,
         [this] {
             interruptAt("Started copying Files");
             return Options{"--target", target()};
         }},
        {EndCause::Complete, [] { return Options{}; }},
    };
}

void JobEnds::expectRow(const SceneRow& scene) {
    const EndRow& row = rowOf(scene.cause);
    SCOPED_TRACE(row.word);
    for (const char* name : {"app", "local", "zips", "share", "target"}) fs::remove_all(folder / name);
    fs::create_directory(folder / "app");
    install();
    std::vector<std::string> options = scene.prepare();
    options.emplace_back("--json");
    EXPECT_EQ(job(options), row.status) << err.str();
    otherJob.reset();
    interrupts = [] { return 0; };
    ASSERT_TRUE(nlohmann::json::accept(out.str())) << out.str();
    EXPECT_EQ(json()["end"], wordOf(row.end));
    EXPECT_EQ(json()["reason"], row.word);
    EXPECT_EQ(json()["status"], row.status);
    const bool listStands = row.cause == EndCause::Complete || row.cause == EndCause::StoppedInTesting ||
                            row.cause == EndCause::StoppedInCopying;
    EXPECT_EQ(json()["list"].is_string(), listStands);
    EXPECT_EQ(err.str().find("quillon-job: ") != std::string::npos, row.status != 0) << err.str();
}

TEST_F(JobEnds, EachRowHasItsStatusItsWordAndItsText) {
    std::set<EndCause> walked;
    for (const auto& scene : scenes()) {
        expectRow(scene);
        walked.insert(scene.cause);
    }
    for (const auto& row : kJobEnds)
        EXPECT_EQ(walked.contains(row.cause), row.cause != EndCause::NoTarget) << row.word << " has no scene";
}

TEST_F(JobEnds, WordsAreDifferentAndAllButTheGoodEndHaveAText) {
    std::set<std::string> words;
    std::set<int> statuses;
    for (const auto& row : kExitStatuses) EXPECT_TRUE(statuses.insert(row.status).second) << row.status;
    for (const auto& row : kJobEnds) {
        EXPECT_TRUE(words.insert(row.word).second) << row.word;
        EXPECT_EQ(*row.text == '\0', row.cause == EndCause::Complete) << row.word;
        EXPECT_TRUE(statuses.contains(row.status)) << row.word;
    }
}

TEST_F(JobEnds, EachLossOfACompleteJobIsStatus3) {
    EXPECT_EQ(exitStatus(EndCause::Complete, JobState(), false), 0);
    for (const auto& loss : kJobLosses) {
        JobState state;
        state.counters.*loss.counter = 1;
        EXPECT_EQ(exitStatus(EndCause::Complete, state, false), 3) << loss.word;
        EXPECT_EQ(exitStatus(EndCause::StoppedInCopying, state, false), 130) << loss.word;
    }
}

TEST_F(JobEnds, AnAlertThatNobodyAcknowledgedIsStatus4UnlessItIsOptional) {
    JobState state;
    state.report = ReportState::NotAcknowledged;
    EXPECT_EQ(exitStatus(EndCause::Complete, state, false), 4);
    EXPECT_EQ(exitStatus(EndCause::Complete, state, true), 0);
    state.report = ReportState::Acknowledged;
    EXPECT_EQ(exitStatus(EndCause::Complete, state, false), 0);
    state.report = ReportState::NotAcknowledged;
    state.counters.copyErrors = 1;
    EXPECT_EQ(exitStatus(EndCause::Complete, state, true), 3) << "a loss outweighs it";
}

// The recipient is this computer: nothing is sent, and nobody waits ten seconds.
TEST_F(JobEnds, AnAlertThatIsNotAcknowledgedStandsInJson) {
    install();
    EXPECT_EQ(job({"--json", "--alert", hostName()}), 4) << err.str();
    EXPECT_EQ(json()["alert"]["to"], hostName());
    EXPECT_EQ(json()["alert"]["acknowledged"], false);
    EXPECT_TRUE(told("quillon-job: " + hostName() + " has not acknowledged the alert\n")) << err.str();
    EXPECT_EQ(job({"--json", "--yes", "--alert-optional", "--alert", hostName()}), 0);
    EXPECT_EQ(job({"--json", "--yes"}), 0);
    EXPECT_TRUE(json()["alert"].is_null());
}

}  // namespace

}  // namespace quillon::test
