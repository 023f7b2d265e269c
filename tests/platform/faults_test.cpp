// SPDX-License-Identifier: MIT
// Saves, copies and moves that are killed or fail at every single system call that changes something: what is left is
// the old bytes or the new ones, and a failure is reported. The calls are made to fail by strace; without it, or where
// it may not trace, this program says so and counts as skipped.
#include <functional>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "app/settings.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "support/posix_files.h"
#include "support/strace.h"
#include "support/temp_folder.h"

namespace quillon {
namespace {

using test::changingCalls;
using test::countCalls;
using test::everyFault;
using test::kKilledStatus;
using test::runShell;
using test::TempFolder;
using test::traced;

std::string probe;  // the path of quillon_fault_probe, from the command line

// One kind of work with its expectations.
struct Work {
    std::string arguments;
    std::function<void()> prepare;
    std::function<bool()> oldStands;
    std::function<bool()> newStands;
};

void expectOldOrNew(const Work& work, int status, const std::string& fault) {
    const bool isOld = work.oldStands();
    const bool isNew = work.newStands();
    if (status == 0)
        EXPECT_TRUE(isNew) << fault << ": said to be done, but it is not";
    else if (status == kKilledStatus)
        EXPECT_TRUE(isOld || isNew) << fault << ": neither the old bytes nor the new ones";
    else
        EXPECT_TRUE(isOld) << fault << ": reported with status " << status << ", but the old bytes are gone";
}

void disturb(const TempFolder& temp, const Work& work, const std::string& always = "") {
    work.prepare();
    auto counts = countCalls(changingCalls(), probe + " " + work.arguments, (temp / "strace.log").native());
    std::erase_if(counts, [&always](const auto& count) { return always.find(count.first) != std::string::npos; });
    const auto faults = everyFault(counts, always.empty() ? 0 : 3);
    EXPECT_GE(faults.size(), 3U) << "no call was disturbed";
    for (const auto& one : faults) {
        const std::string fault = fmt::format("{} {}", always, one);
        work.prepare();
        expectOldOrNew(work, runShell(traced(fault, probe + " " + work.arguments)), fault);
    }
}

class Faults : public testing::Test {
protected:
    // Work that turns the file `name` from old bytes into new ones.
    [[nodiscard]] Work changing(const std::string& what, const std::string& name, const std::string& oldBytes,
                                const std::string& newBytes) {
        Work work;
        work.arguments = what;
        work.prepare = [this, name, oldBytes] { temp.write(name, oldBytes); };
        work.oldStands = [this, name, oldBytes] { return temp.read(name) == oldBytes; };
        work.newStands = [this, name, newBytes] { return temp.read(name) == newBytes; };
        return work;
    }
    [[nodiscard]] std::string path(const std::string& name) const { return "'" + (temp / name).native() + "'"; }

    TempFolder temp;
};

TEST_F(Faults, ASettingsSaveLeavesTheOldOrTheNewRecord) {
    AppSettings old;
    old.alertSourcePort = 12020;
    old.alertListenPort = 12021;
    old.localPath.assign(PageText{"/data"});
    AppSettings changed = old;
    changed.alertRecipient.assign(PageText{"LAB8"});
    disturb(temp, changing("settings " + path("."), "settings.dat", encodeSettings(old), encodeSettings(changed)));
}

TEST_F(Faults, ATermFileSaveLeavesTheOldOrTheNewTerms) {
    const auto work = changing("term " + path("root/Database/jpg.dat"), "root/Database/jpg.dat", "1,4A464946,H\r\n",
                               "1,FFD8FF,H\r\n0,JFIF,T\r\n");
    disturb(temp, work);
    EXPECT_EQ(listFiles(temp / "root/Database").value(), std::vector<std::string>{"jpg.dat"})
        << "no save that died is listed among the data files";
}

TEST_F(Faults, ASaveOfAListLeavesTheOldOrTheNewRows) {
    disturb(temp, changing("save " + path("7.csv"), "7.csv", "old bytes, and more of them", "new bytes"));
}

// A share that refuses every rename: the bytes go into the file that is there. A machine that dies in the middle of it
// leaves the new bytes in the temporary file.
TEST_F(Faults, ASaveInPlaceLosesNothing) {
    Work work = changing("save " + path("data/7.csv"), "data/7.csv", "old bytes, and more of them", "new bytes");
    const auto targetIsNew = work.newStands;
    work.newStands = [this, targetIsNew] {
        bool found = targetIsNew();
        const auto names = listEntries(temp / "data").value_or(std::vector<std::string>());
        for (const auto& name : names)
            found = found || (isTemporaryName(name) && temp.read("data/" + name) == "new bytes");
        return found;
    };
    work.prepare = [this] {
        std::filesystem::remove_all(temp / "data");
        temp.write("data/7.csv", "old bytes, and more of them");
    };
    disturb(temp, work, "-e inject=rename,renameat:error=EACCES");
}

TEST_F(Faults, ARefusedRenameStillSaves) {
    const Work work = changing("save " + path("7.csv"), "7.csv", "old bytes, and more of them", "new bytes");
    work.prepare();
    EXPECT_EQ(runShell(traced("-e inject=rename,renameat:error=EACCES", probe + " " + work.arguments)), 0);
    EXPECT_TRUE(work.newStands());
    EXPECT_EQ(test::namesIn(temp.path()), "7.csv");
}

// While another computer reads it, a share does not let the file be replaced; to write into it would give that reader a
// mixture.
TEST_F(Faults, ABusyTargetIsReplacedAsSoonAsItIsFreeAndNotWrittenInto) {
    const Work work = changing("save " + path("7.csv"), "7.csv", "old bytes, and more of them", "new bytes");
    for (const char* busy : {"EBUSY", "EEXIST", "ETXTBSY"}) {
        work.prepare();
        const auto before = test::statOf(temp / "7.csv").st_ino;
        const std::string fault = std::string("-e inject=rename,renameat:error=") + busy + ":when=1..9";
        EXPECT_EQ(runShell(traced(fault, probe + " " + work.arguments)), 0) << busy;
        EXPECT_TRUE(work.newStands()) << busy;
        EXPECT_NE(test::statOf(temp / "7.csv").st_ino, before) << busy;
        EXPECT_EQ(test::namesIn(temp.path()), "7.csv") << busy;
    }
}

TEST_F(Faults, ATargetThatStaysBusyIsLeftWholeAndTheSaveFails) {
    const Work work = changing("save " + path("7.csv"), "7.csv", "old bytes, and more of them", "new bytes");
    work.prepare();
    EXPECT_EQ(runShell(traced("-e inject=rename,renameat:error=EBUSY", probe + " " + work.arguments)), 3);
    EXPECT_TRUE(work.oldStands());
    EXPECT_EQ(test::namesIn(temp.path()), "7.csv");
}

TEST_F(Faults, AShareThatFailsAltogetherIsNotWrittenInto) {
    const Work work = changing("save " + path("7.csv"), "7.csv", "old bytes, and more of them", "new bytes");
    work.prepare();
    EXPECT_EQ(runShell(traced("-e inject=rename,renameat:error=EIO", probe + " " + work.arguments)), 3);
    EXPECT_TRUE(work.oldStands());
}

TEST_F(Faults, AFailedSaveLeavesNoTemporaryFile) {
    const Work work = changing("save " + path("7.csv"), "7.csv", "old", "new bytes");
    for (const char* call : {"write", "fsync", "chmod"}) {
        work.prepare();
        EXPECT_EQ(runShell(traced(std::string("-e inject=") + call + ":error=EIO", probe + " " + work.arguments)), 3)
            << call;
        EXPECT_EQ(test::namesIn(temp.path()), "7.csv") << call;
    }
}

// Descriptors that cannot be had and closes that fail, also those of the start of the program.
TEST_F(Faults, AFailedOpenOrCloseIsReported) {
    const Work work = changing("save " + path("7.csv"), "7.csv", "old bytes", "new bytes");
    work.prepare();
    for (const auto& [call, count] :
         countCalls("openat,close", probe + " " + work.arguments, (temp / "strace.log").native())) {
        for (int i = 1; i <= count; ++i) {
            const std::string fault = "-e inject=" + call + ":error=EIO:when=" + std::to_string(i);
            work.prepare();
            expectOldOrNew(work, runShell(traced(fault, probe + " " + work.arguments) + " 2>/dev/null"), fault);
        }
    }
}

TEST_F(Faults, AnAppendIsThereWholeOrNotAtAll) {
    disturb(temp, changing("append " + path("log.dat"), "log.dat", "old row\r\n", "old row\r\nnew row\r\n"));
}

TEST_F(Faults, ACopyLeavesTheOlderTargetOrTheWholeNewOne) {
    std::string bytes;
    for (int i = 0; bytes.size() < 300000; ++i) bytes += std::to_string(i) + ",";
    temp.write("source", bytes);
    const auto work = changing("copy " + path("source") + " " + path("to/a"), "to/a", "older target", bytes);
    disturb(temp, work);
    disturb(temp, work, "-e inject=copy_file_range:error=EXDEV");
    disturb(temp, work, "-e inject=linkat:error=EPERM");
}

TEST_F(Faults, AReadErrorOfTheSourceLeavesTheOlderTarget) {
    temp.write("source", std::string(700000, 's'));
    const Work work =
        changing("copy " + path("source") + " " + path("to/a"), "to/a", "older target", std::string(700000, 's'));
    work.prepare();
    EXPECT_EQ(runShell(traced("-P " + path("source") + " -e inject=copy_file_range,read:error=EIO",
                              probe + " " + work.arguments)),
              3);
    EXPECT_TRUE(work.oldStands());
    EXPECT_EQ(test::namesIn(temp / "to"), "a");
}

// A page of which a later sector is bad: the whole page fails, the sector of the head alone does not.
TEST_F(Faults, AHeadWhosePageCannotBeReadIsReadByItself) {
    temp.write("a.jpg", "head bytes" + std::string(4086, ' '));
    const std::string file = path("a.jpg");
    if (runShell("dd if=" + file + " of=/dev/null iflag=direct bs=4096 count=1 2>/dev/null") != 0)
        GTEST_SKIP() << "this volume cannot be read past the page cache";
    const auto status = [&](const std::string& fault) {
        return runShell(traced("-P " + file + " " + fault, probe + " head " + file));
    };
    EXPECT_EQ(status(""), 0);
    EXPECT_EQ(status("-e inject=read:error=EIO"), 0);
    EXPECT_EQ(status("-e inject=read,pread64:error=EIO"), 3) << "the sector itself is bad";
    EXPECT_EQ(status("-e inject=read:error=EIO -e inject=fcntl:error=EINVAL"), 3) << "no reading past the page cache";
    EXPECT_EQ(status("-e inject=read:error=ENXIO"), 3) << "the drive has gone";
    EXPECT_EQ(status("-e inject=read:error=EIO:delay_enter=2100000"), 3) << "the drive has tried long enough";
}

// Moved by a rename, and where that is another volume, copied first: the bytes stand at one of the two places.
TEST_F(Faults, AMoveUnderKeptNeverLosesTheBytes) {
    Work work;
    work.arguments = "keep " + path("root") + " " + path("root/7.csv");
    work.prepare = [this] {
        std::filesystem::remove_all(temp / "root");
        temp.write("root/7.csv", "the only bytes");
    };
    work.oldStands = [this] { return pathExists(temp / "root/7.csv") && temp.read("root/7.csv") == "the only bytes"; };
    work.newStands = [this] {
        if (!pathExists(temp / "root/Kept"))
            return false;
        for (const auto& moment : std::filesystem::directory_iterator(temp / "root/Kept")) {
            if (readWholeFile(moment.path() / "7.csv").value_or("") == "the only bytes")
                return true;
        }
        return false;
    };
    disturb(temp, work);
    disturb(temp, work, "-e inject=rename,renameat:error=EXDEV");
}

}  // namespace
}  // namespace quillon

int main(int count, char* arguments[]) {
    return quillon::test::runTracingTests(count, arguments, quillon::probe);
}
