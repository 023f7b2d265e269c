// SPDX-License-Identifier: MIT
// The table of ends, walked: each row is brought about, and exit status, JSON and text are those of the row.
#include <new>
#include <set>

#include "job/job_end.h"
#include "platform/folder_lock.h"
#include "platform/host.h"
#include "programs/command_fixture.h"

namespace quillon::test {

namespace {

namespace fs = std::filesystem;

// An address of the block for documents, which nobody has.
constexpr const char* kNobody = "192.0.2.1";

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
    // `later` is how often it is still asked for presses behind the text.
    void interruptAt(const std::string& text, int later = 0) {
        interruptWhen([this, text, later]() mutable { return told(text) && later-- == 0; });
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
        {EndCause::TargetDenied,
         [this] {
             folder.write("file", "");
             return Options{"--yes", "--target", (folder / "file/below").native()};
         }},
        {EndCause::TargetRefused,
         [this] {
             folder.write("target/older", "");
             return Options{"--target", target()};
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
        {EndCause::StoppedInChecks,
         [this] {
             interruptWhen([] { return true; });
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
        {EndCause::StoppedInEnds,
         [this] {
             interruptAt("Start looking at file ends ");
             return Options{"--ends"};
         }},
        {EndCause::StoppedInReport,
         [this] {
             interruptAt("File testing completed", 10);
             return Options{"--alert", kNobody};
         }},
        {EndCause::OutOfMemory,
         [this] {
             interrupts = [this]() -> int { return told("Start file quality testing ") ? throw std::bad_alloc() : 0; };
             return Options{};
         }},
        {EndCause::Complete, [] { return Options{}; }},
    };
}

int countOf(const std::string& part, const std::string& text) {
    int count = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
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
    const std::set<EndCause> withList = {EndCause::StoppedInTesting, EndCause::StoppedInCopying,
                                         EndCause::StoppedInEnds,    EndCause::StoppedInReport,
                                         EndCause::OutOfMemory,      EndCause::Complete};
    EXPECT_EQ(json()["list"].is_string(), withList.contains(row.cause));
    EXPECT_EQ(err.str().find("quillon-job: ") != std::string::npos, row.status != 0) << err.str();
    EXPECT_FALSE(json()["list"].is_string() && told("ended without a list")) << err.str();
    if (const std::string cause = json()["detail"]; !cause.empty()) {
        EXPECT_EQ(countOf(cause, err.str()), 1) << err.str();
    }
    EXPECT_EQ(told("; the list so far stays"),
              row.cause == EndCause::StoppedInTesting || row.cause == EndCause::OutOfMemory)
        << err.str();
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

// The alert waits ten seconds for its answer.
TEST_F(JobEnds, CtrlCIsHeardWhileAnAlertWaits) {
    install();
    interruptAt("File testing completed", 10);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(job({"--alert", kNobody}), 130) << err.str();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(8));
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
