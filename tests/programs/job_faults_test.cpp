// SPDX-License-Identifier: MIT
// quillon-job whose system calls fail, and which is killed, in the middle of a job: it ends, says what was lost, never
// writes below the source, and leaves no cut file under a final name. The calls are made to fail by strace; without it
// this program says so and counts as skipped.
#include <fstream>
#include <functional>
#include <map>
#include <regex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "evidence/evidence_store.h"
#include "evidence/job_keys.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "programs/job_faults.h"
#include "support/posix_files.h"
#include "support/strace.h"

namespace quillon::test {
namespace {

TEST_F(JobFaults, AnUndisturbedJobGradesAndCopiesEverything) {
    std::filesystem::create_directory(temp / "target");
    EXPECT_EQ(runShell(copyingJob()), 0) << said();
    EXPECT_EQ(grades().size(), 6U);
    for (const auto& [file, grade] : grades()) EXPECT_EQ(grade, "Header OK") << file;
    EXPECT_EQ(wholeCopies(), 6U);
}

// The whole piece fails, and then the first of its pages.
TEST_F(JobFaults, AScanReadsAroundWhatCannotBeRead) {
    ASSERT_EQ(runShell(jobWithEvidence()), 0) << said();
    const std::string scan =
        program + " --app " + path("app") + " --job 7 --scan-sectors --json >" + path("out") + " 2>" + path("err");
    const std::string faults = "-f -e trace=read -P " + path("source/a.jpg") + " -e inject=read:error=EIO:when=1..2";
    EXPECT_EQ(runShell(traced(faults, scan)), 0) << said();
    const std::string out = temp.read("out");
    EXPECT_NE(out.find("\"unread_files\": 1,"), std::string::npos) << out;
    EXPECT_NE(out.find("\"unread_bytes\": 4096,"), std::string::npos) << out;
}

TEST_F(JobFaults, NothingBelowTheSourceIsEverOpenedForWriting) {
    std::filesystem::create_directory(temp / "target");
    const bool timesMove = test::volumeKeepsAccessTimes(temp.path());
    EXPECT_EQ(runShell("exec strace -f -qq -y -o " + path("trace") + " -e trace=%file,%desc " +
                       jobWithEvidence("--target " + path("target"))),
              0)
        << said();
    const std::string source = (temp / "source").native();
    const std::regex changing(
        "(^|\\s)(p?write\\w*|f?truncate|rename\\w*|unlink\\w*|link\\w*|symlink\\w*|mkdir\\w*|mknod\\w*|f?chmod\\w*|"
        "[lf]?chown\\w*|utim\\w*|futimes\\w*|\\w*setxattr|\\w*removexattr)$");
    const std::regex forWriting("O_WRONLY|O_RDWR|O_CREAT|O_TRUNC");
    int opened = 0;
    std::ifstream trace(temp / "trace");
    for (std::string line; std::getline(trace, line);) {
        // The source stands in the argument of the call itself, and not behind the path of the target.
        const auto at = line.find(source);
        if (at == line.npos || (at > 0 && line[at - 1] != '"' && line[at - 1] != '<'))
            continue;
        const auto call = line.substr(0, line.find('('));
        EXPECT_FALSE(std::regex_search(call, changing)) << line;
        EXPECT_FALSE(std::regex_search(line, forWriting)) << line;
        opened += call.find("open") != call.npos ? 1 : 0;
    }
    EXPECT_GE(opened, 6) << "the trace shows the source at all";
    if (timesMove) {
        for (const auto& [name, bytes] : files_)
            EXPECT_EQ(test::statOf(temp / ("source/" + name)).st_atim.tv_sec, 1000000000);
    }
}

TEST_F(JobFaults, ARegradeMakesNoSystemCallBelowTheSource) {
    ASSERT_EQ(runShell(jobWithEvidence()), 0) << said();
    temp.write("data/Database/jpg.dat", "1,none,T\r\n");
    EXPECT_EQ(runShell("exec strace -f -qq -y -s 0 -o " + path("trace") + " " + program + " --regrade 7 --app " +
                       path("app") + " >" + path("out") + " 2>" + path("err")),
              0)
        << said();
    const std::string trace = temp.read("trace");
    EXPECT_EQ(trace.find((temp / "source").native()), trace.npos);
    EXPECT_NE(trace.find((temp / "data/7.sqlite").native()), trace.npos) << "the trace shows paths at all";
    for (const auto& [file, grade] : grades()) EXPECT_EQ(grade, "Header Corrupt") << file;
}

TEST_F(JobFaults, AReadErrorGradesThatFileByABlankHeaderAndNoOtherOne) {
    const std::string fault = " -e inject=read,pread64,preadv2:error=EIO";
    EXPECT_EQ(runShell(traced("-f -P " + path("source/one/c.jpg") + fault, job())), 0) << said();
    for (const auto& [file, grade] : grades())
        EXPECT_EQ(grade, file == temp / "source/one/c.jpg" ? "Header Corrupt" : "Header OK") << file;
    EXPECT_EQ(grades().size(), 6U);
}

TEST_F(JobFaults, AFolderThatCannotBeListedIsToldAndTheRestIsListed) {
    EXPECT_EQ(runShell(traced("-f -P " + path("source/one") + " -e inject=getdents64:error=EIO", job())), 3);
    EXPECT_NE(said().find("folders could not be read to their end"), std::string::npos) << said();
    EXPECT_EQ(grades().size(), 4U);
}

TEST_F(JobFaults, AListThatTheCopyCannotReadIsALoss) {
    std::filesystem::create_directory(temp / "target");
    for (const char* fault : {"read,pread64:error=EIO", "openat:error=EIO:when=2"}) {
        std::filesystem::remove(temp / "data/7.csv");  // an older list is opened once more, to be kept
        EXPECT_EQ(runShell(traced("-P " + path("data/7.csv") + " -e inject=" + fault, copyingJob())), 3) << fault;
        EXPECT_NE(said().find("6 files of the list were not reached by the copy"), std::string::npos)
            << fault << said();
    }
}

TEST_F(JobFaults, EvidenceThatCannotBeWrittenCostsNothingElse) {
    const std::string fault = "-f -P " + path("data/7.sqlite") + " -e inject=pwrite64:error=ENOSPC:when=2+";
    EXPECT_EQ(runShell(traced(fault, jobWithEvidence())), 3) << said();
    EXPECT_NE(said().find("Evidence lost : "), std::string::npos) << said();
    EXPECT_EQ(grades().size(), 6U);
}

// A system without /proc; the program lies beside its settings, and somebody stands in another folder.
TEST_F(JobFaults, WithoutProcTheCurrentFolderIsNotTheApplicationFolder) {
    std::filesystem::create_directory(temp / "elsewhere");
    const std::string copied = "cp " + program + " " + path("app/quillon-job");
    ASSERT_EQ(runShell(copied), 0);
    const std::string own = path("app/quillon-job") + " --job 7 --source " + path("source") + " 2>" + path("err");
    EXPECT_EQ(
        runShell("cd " + path("elsewhere") + "; " +
                 traced("-P /proc/self/exe -e inject=readlink,readlinkat:error=ENOENT", own) + " >" + path("out")),
        0)
        << said();
    EXPECT_EQ(grades().size(), 6U);
    EXPECT_TRUE(std::filesystem::is_empty(temp / "elsewhere"));
}

TEST_F(JobFaults, RowsThatDoNotFitAreCountedAndTheOthersStayReadable) {
    EXPECT_EQ(runShell(traced("-P " + path("app/tFile.csv") + " -e inject=write:error=ENOSPC:when=2", job())), 3);
    EXPECT_NE(said().find("1 rows of a list could not be written (" + (temp / "app/tFile.csv").native() +
                          ": No space left on device)"),
              std::string::npos)
        << said();
    EXPECT_EQ(grades().size(), 5U);
    EXPECT_EQ(runShell(traced("-P " + path("data/7.csv") + " -e inject=write:error=EIO:when=3", job())), 3);
    EXPECT_EQ(grades().size(), 5U);
}

// The signal comes with the third row of the final list.
TEST_F(JobFaults, CtrlCStopsAtTheNextRowAndTheListStays) {
    const std::string fault = "-P " + path("data/7.csv") + " -e inject=write:signal=INT:when=3";
    EXPECT_EQ(runShell(traced(fault, job("--target " + path("target")))), 130) << said();
    EXPECT_EQ(grades().size(), 3U);
    EXPECT_EQ(wholeCopies(), 0U);
}

TEST_F(JobFaults, TermAndHangUpStopTheJobLikeCtrlC) {
    for (const char* signal : {"INT", "TERM", "HUP"}) {
        const std::string fault = "-P " + path("app/tFile.csv") + " -e inject=write:signal=" + signal + ":when=2";
        EXPECT_EQ(runShell(traced(fault, job())), 130) << signal << said();
        EXPECT_NE(said().find("Process stopped by user"), std::string::npos) << signal;
        EXPECT_FALSE(pathExists(temp / "data/7.csv"));
    }
}

TEST_F(JobFaults, AJobThatWasStartedToOutliveItsTerminalDoes) {
    const std::string fault = "-P " + path("app/tFile.csv") + " -e inject=write:signal=HUP:when=2";
    EXPECT_EQ(runShell("trap '' HUP; " + traced(fault, job())), 0) << said();
    EXPECT_EQ(grades().size(), 6U);
}

TEST_F(JobFaults, CopiesThatFailAreCountedAndLeaveNoCutFile) {
    const std::string unlinked = "linkat:error=EPERM -e inject=";  // of a volume that knows no files without a name
    for (const std::string& fault :
         {std::string("linkat:error=ENOSPC:when=2"), std::string("write:error=ENOSPC:when=15+"),
          unlinked + "renameat:error=EIO:when=2"}) {
        std::filesystem::remove_all(temp / "target");
        std::filesystem::create_directory(temp / "target");
        std::filesystem::remove(temp / "data/7.csv");  // the calls that keep an older list would be counted, too
        const int status = runShell(traced("-f -e inject=" + fault, copyingJob()));
        EXPECT_TRUE(status == 0 || status == 3) << fault << ": " << status << said();
        EXPECT_EQ(wholeCopies() == 6U, status == 0) << fault;
    }
    EXPECT_EQ(wholeCopies(), 5U);
    EXPECT_NE(said().find("files could not be copied"), std::string::npos) << said();
    EXPECT_NE(said().find("target: "), std::string::npos) << "the log names the side that failed";
}

// Calls `check` behind a kill at every call of these kinds, at most twelve of each. Calls are counted for each thread;
// where threads share the work, none may come to a later one.
void killAtEach(const std::string& calls, const std::string& command, const std::string& log,
                const std::function<void()>& prepare, const std::function<void(const std::string&)>& check) {
    prepare();
    int killed = 0;
    for (const auto& [call, count] : test::countCalls(calls, command, log)) {
        const int step = count / 12 + 1;
        for (int i = 1; i <= count; i += step) {
            const std::string fault = "-f -e inject=" + call + ":signal=KILL:when=" + std::to_string(i);
            prepare();
            const int status = runShell(traced(fault, command));
            EXPECT_TRUE(status == kKilledStatus || (status == 0 && i > 1)) << fault << ": " << status;
            killed += status == kKilledStatus ? 1 : 0;
            check(fault);
        }
    }
    EXPECT_GE(killed, 12);
}

TEST_F(JobFaults, AKilledCopyLeavesNoCutFileUnderAFinalName) {
    const auto prepare = [this] {
        std::filesystem::remove_all(temp / "target");
        std::filesystem::create_directory(temp / "target");
    };
    const auto check = [this](const std::string&) { passOver(wholeCopies(), "each one found is checked"); };
    killAtEach("copy_file_range,write,linkat,rename,fchmod,utimensat,ftruncate,mkdirat", copyingJob(),
               (temp / "log").native(), prepare, check);
}

TEST_F(JobFaults, AKilledCopyIsCompletedByTheRunThatGoesOn) {
    const std::string copying = jobWithEvidence("--verify --target " + path("target"));
    const auto prepare = [this] {
        std::filesystem::remove_all(temp / "target");
        std::filesystem::create_directory(temp / "target");
        for (const char* left : {"data/7.csv", "data/7.sqlite", "data/7.sqlite-journal", "data/7.sha256"})
            std::filesystem::remove(temp / left);
    };
    const auto check = [&](const std::string& fault) {
        passOver(wholeCopies(), "each one found is checked");
        EXPECT_EQ(runShell(copying + " --resume"), 0) << fault << said();
        EXPECT_EQ(wholeCopies(), 6U) << fault;
        EXPECT_EQ(runShell("cd " + path("target") + " && sha256sum --strict --status -c 7.sha256"), 0) << fault;
    };
    killAtEach("linkat,write,fchmod,mkdirat", copying, (temp / "log").native(), prepare, check);
}

TEST_F(JobFaults, AKilledCopyLeavesOlderTargetsWhole) {
    const NativePath root = temp / "target" / (temp / "source").relative_path();
    const auto prepare = [&] {
        for (const auto& [name, bytes] : files_)
            temp.write((root / name).lexically_relative(temp.path()).native(), "older");
    };
    const auto check = [&](const std::string& fault) {
        for (const auto& [name, bytes] : files_) {
            const auto copy = readWholeFile(root / name).value_or("");
            EXPECT_TRUE(copy == "older" || copy == bytes) << fault << ": " << name << " is neither";
        }
    };
    killAtEach("write,linkat,renameat,unlinkat", copyingJob(), (temp / "log").native(), prepare, check);
}

// The list of an earlier job stands in its place or under Kept, at whatever moment the next one dies.
TEST_F(JobFaults, AKilledJobNeverLosesTheListOfAnEarlierOne) {
    const auto prepare = [this] {
        std::filesystem::remove_all(temp / "data/Kept");
        temp.write("data/7.csv", "the list of an earlier job");
    };
    const auto check = [this](const std::string& fault) {
        bool found = readWholeFile(temp / "data/7.csv").value_or("") == "the list of an earlier job";
        std::error_code error;
        for (const auto& moment : std::filesystem::directory_iterator(temp / "data/Kept", error))
            found = found || readWholeFile(moment.path() / "7.csv").value_or("") == "the list of an earlier job";
        EXPECT_TRUE(found) << fault;
    };
    killAtEach("write,rename,renameat,fsync,unlink,unlinkat,ftruncate,mkdir,mkdirat", job(), (temp / "log").native(),
               prepare, check);
}

// Behind a kill at whatever call, of a job that goes on with one that was cut short, the next one goes on to the list
// of a job that was never cut short, and reads no file twice that the first run had read.
TEST_F(JobFaults, AKilledJobThatWentOnLosesNothingOfTheRunBeforeIt) {
    ASSERT_EQ(runShell(jobWithEvidence()), 0) << said();
    const std::string whole = temp.read("data/7.csv");
    {
        auto store = EvidenceStore::open(temp / "data/7.sqlite");
        ASSERT_TRUE(store && store->setJob(job_keys::kEnd, job_keys::kRunning) && store->commit());
    }
    const std::string bytes = temp.read("data/7.sqlite");
    const auto prepare = [&] {
        std::filesystem::remove_all(temp / "data/Kept");
        std::filesystem::remove(temp / "data/7.sqlite-earlier");
        std::filesystem::remove(temp / "data/7.sqlite-journal");
        temp.write("data/7.csv", whole.substr(0, whole.size() / 2));
        temp.write("data/7.sqlite", bytes);
    };
    const auto check = [&](const std::string& fault) {
        EXPECT_EQ(runShell(jobWithEvidence("--resume --json")), 0) << fault << said();
        EXPECT_EQ(temp.read("data/7.csv"), whole) << fault;
        const std::string told = temp.read("out");
        EXPECT_NE(told.find("\"not_read_again\": 6"), std::string::npos) << fault << told;
    };
    killAtEach("rename,renameat,unlink,unlinkat,linkat,fdatasync,fsync,pwrite64", jobWithEvidence("--resume"),
               (temp / "log").native(), prepare, check);
}

}  // namespace
}  // namespace quillon::test

int main(int count, char* arguments[]) {
    return quillon::test::runTracingTests(count, arguments, quillon::test::program);
}
