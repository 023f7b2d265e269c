// SPDX-License-Identifier: MIT
// The program quillon-job itself, as a process: first run, exit statuses, Ctrl-C. QUILLON_JOB is its path.
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "app/installation.h"
#include "programs/child_process.h"
#include "support/hanging_share.h"
#include "support/posix_files.h"
#include "support/temp_folder.h"

namespace quillon::test {

namespace {

namespace fs = std::filesystem;

class JobProcess : public testing::Test {
protected:
    JobProcess() {
        fs::create_directory(folder / "app");
        fs::create_directory(folder / "source");
    }

    // A small installation: unpacking the whole starter database takes its time.
    void install() {
        for (const char* name : {"local/Database", "local/Settings", "zips"}) fs::create_directories(folder / name);
        Installation installation(folder / "app");
        installation.settings.runHeaderTest = 1;
        installation.settings.useCommonHeaders = 1;
        installation.settings.localPath.assign(pageFromPath(folder / "local"));
        installation.settings.zipPath.assign(pageFromPath(folder / "zips"));
        ASSERT_TRUE(installation.saveSettingsRecord());
    }

    // `instead`: an option that `more` gives a value of its own.
    void start(const std::vector<std::string>& more = {}, const std::string& instead = {}) {
        std::vector<std::string> words = {QUILLON_JOB, "--job", "1234"};
        for (const char* name : {"source", "app"})
            if (const std::string option = std::string("--") + name; option != instead)
                words.insert(words.end(), {option, (folder / name).native()});
        words.insert(words.end(), more.begin(), more.end());
        job.start(words, (folder / "output").native());
    }
    bool readUntil(const std::string& text) { return job.readUntil(text); }
    int finish() { return job.finish(); }
    int run(const std::vector<std::string>& more = {}) {
        start(more);
        return finish();
    }

    // A thread that the system holds back stands there for good, unlike one that a disk keeps for a moment. True: it
    // does; false: the process has ended.
    [[nodiscard]] bool waitUntilItHangs() const {
        const std::string place = "/proc/" + std::to_string(job.id) + "/stat";
        for (int seen = 0; seen < 1000; std::this_thread::yield()) {
            std::string stat;
            std::getline(std::ifstream(place), stat);
            const auto state = stat.rfind(") ");  // behind the name, which may hold anything
            if (state == std::string::npos || stat.compare(state, 4, ") Z ") == 0)
                return false;
            const bool hangs = stat.compare(state, 4, ") D ") == 0 && isQuillonJob();
            seen = hangs ? seen + 1 : 0;
        }
        return true;
    }
    // Between fork and exec it is a copy of this process, which the loading of a program may hold back.
    [[nodiscard]] bool isQuillonJob() const {
        std::error_code error;
        return fs::equivalent("/proc/" + std::to_string(job.id) + "/exe", QUILLON_JOB, error);
    }

    void manyFiles(int count = 6000) {
        for (int i = 0; i < count; ++i) {
            const auto name = (folder / ("source/file" + std::to_string(i) + ".jpg")).native();
            ::close(::open(name.c_str(), O_WRONLY | O_CREAT, 0644));
        }
    }

    TempFolder folder;
    ChildProcess job;
    const std::string& said = job.said;
};

TEST_F(JobProcess, AFirstRunSetsUpTheDefaultInstallationAndGrades) {
    fs::copy_file(fs::path(QUILLON_JOB).parent_path() / "db.zip", folder / "app/db.zip");
    folder.write("source/picture.png", "\x89PNG\r\n\x1A\n" + std::string(600, '.'));
    folder.write("source/broken.png", std::string(600, '.'));
    EXPECT_EQ(run(), 0) << said;
    EXPECT_NE(said.find("First run: set up " + (folder / "app/Data").native() + " with the default database\n"),
              std::string::npos)
        << said;
    EXPECT_TRUE(fs::exists(folder / "app/settings.dat"));
    EXPECT_TRUE(fs::exists(folder / "app/Data/Database/png.dat"));
    EXPECT_TRUE(fs::is_directory(folder / "app/Data/Archives"));
    const std::string report = folder.read("output");
    EXPECT_NE(report.find("Total Files : 2 (Quality : 50.00%)\nGood Files : 1\n"), std::string::npos) << report;
    EXPECT_NE(report.find("\n" + (folder / "app/Data/1234.csv").native() + "\n"), std::string::npos) << report;
    EXPECT_EQ(run({"--yes"}), 0);
    EXPECT_EQ(said.find("First run"), std::string::npos);
}

TEST_F(JobProcess, StatusesAreThoseOfTheCommand) {
    install();
    EXPECT_EQ(run({"--nonsense"}), 2);
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(run(), 1) << "the list exists and nobody can be asked";
}

TEST_F(JobProcess, CtrlCStopsTheJobWithStatus130) {
    install();
    manyFiles();
    start();
    ASSERT_TRUE(readUntil("Start file count ")) << said;
    ::kill(job.id, SIGINT);
    EXPECT_EQ(finish(), 130) << said;
    EXPECT_NE(said.find("Process stopped by user"), std::string::npos) << said;
    EXPECT_NE(said.find("quillon-job: stopped"), std::string::npos) << said;
}

// The result has no reader, and its pipe is full: the job hangs in a call of the system.
TEST_F(JobProcess, ASecondSignalEndsAJobThatHangsAtOnce) {
    install();
    manyFiles(300);
    makeFifo(folder / "output");
    const int output = ::open((folder / "output").c_str(), O_RDONLY | O_NONBLOCK);
    for (const int second : {SIGINT, SIGTERM}) {
        start({"--yes", "--json", "--target", "/"});  // files onto themselves: each gives two rows of the log
        ASSERT_TRUE(readUntil("files could not be copied\n")) << said;
        ::kill(job.id, SIGINT);
        ASSERT_TRUE(readUntil("quillon-job: stopping at the next row; once more ends at once\n")) << said;
        // The same press within a moment is one press.
        int status = 0;
        while (::waitpid(job.id, &status, WNOHANG) == 0) ::kill(job.id, second);
        ASSERT_TRUE(WIFEXITED(status));
        EXPECT_EQ(WEXITSTATUS(status), 128 + second);
        job.forget();
    }
    ::close(output);
}

// As of a server that has been cut off: the call is only ended with the process.
TEST_F(JobProcess, ASecondSignalEndsAJobWhoseFoldersHang) {
    install();
    manyFiles(10);
    const auto hanging = folder / "hanging";
    fs::create_directory(hanging);
    const auto share = HangingShare::mount(hanging);
    if (!share)
        GTEST_SKIP();
    const std::vector<std::string> places[] = {
        {"--source", hanging.native()}, {"--target", hanging.native()}, {"--app", hanging.native()}};
    for (const auto& place : places) {
        SCOPED_TRACE(place.front());
        start(place, place.front());
        ASSERT_TRUE(waitUntilItHangs()) << said;
        ::kill(job.id, SIGINT);
        ASSERT_TRUE(readUntil("quillon-job: stopping at the next row; once more ends at once\n")) << said;
        int status = 0;
        ::kill(job.id, SIGTERM);
        ASSERT_EQ(::waitpid(job.id, &status, 0), job.id);
        ASSERT_TRUE(WIFEXITED(status));
        EXPECT_EQ(WEXITSTATUS(status), 128 + SIGTERM);
        job.forget();
    }
}

TEST_F(JobProcess, AReaderOfMessagesThatGoesAwayDoesNotEndTheJob) {
    install();
    manyFiles(10);
    job.startUnheard({QUILLON_JOB, "--job", "1234", "--json", "--source", (folder / "source").native(), "--app",
                      (folder / "app").native()},
                     (folder / "output").native());
    EXPECT_EQ(finish(), 3);
    const auto result = nlohmann::json::parse(folder.read("output"));
    EXPECT_EQ(result["end"], "complete");
    EXPECT_EQ(result["counters"]["rows_read"], 10);
    EXPECT_EQ(result["counters"]["lost_messages"], 6) << "the rows of the log";
    EXPECT_EQ(result["losses"], std::vector<std::string>{"lost_messages"});
}

TEST_F(JobProcess, AListThatMayGrowNoFurtherIsALossAndNotTheEnd) {
    install();
    manyFiles(100);
    job.start({"/bin/sh", "-c", "ulimit -f 16; exec \"$0\" \"$@\"", QUILLON_JOB, "--job", "1234", "--source",
               (folder / "source").native(), "--app", (folder / "app").native()},
              (folder / "output").native());
    EXPECT_EQ(finish(), 3) << said;
    EXPECT_NE(said.find("rows of a list could not be written (" + (folder / "app/tFile.csv").native() +
                        ": File too large)\n"),
              std::string::npos)
        << said;
}

// Where few files may be open at once, none are prepared ahead.
TEST_F(JobProcess, AJobThatMayOpenFewFilesGradesAndCopiesAll) {
    install();
    manyFiles();
    job.start({"/bin/sh", "-c", "ulimit -n 40; exec \"$0\" \"$@\"", QUILLON_JOB, "--job", "1234", "--yes", "--quiet",
               "--source", (folder / "source").native(), "--target", (folder / "target").native(), "--app",
               (folder / "app").native()},
              (folder / "output").native());
    EXPECT_EQ(finish(), 0) << said;
    const auto copies = fs::directory_iterator(folder / "target" / (folder / "source").relative_path());
    EXPECT_EQ(std::distance(fs::begin(copies), fs::end(copies)), 6000);
}

TEST_F(JobProcess, AKilledJobLeavesWholeRowsAndTheNextOneRuns) {
    install();
    manyFiles();
    start();
    ASSERT_TRUE(readUntil("Start file count ")) << said;
    ::kill(job.id, SIGKILL);
    EXPECT_EQ(finish(), -SIGKILL);
    EXPECT_EQ(run({"--yes"}), 0) << said << "\nthe lock of a dead job holds nobody up";
    EXPECT_NE(folder.read("output").find("Total Files : 6,000 "), std::string::npos);
}

}  // namespace

}  // namespace quillon::test
