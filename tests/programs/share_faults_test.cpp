// SPDX-License-Identifier: MIT
// quillon-job whose share goes at any call of the job's start: every byte of the local database stands where it was or
// under Kept. The calls are made to fail by strace; without it this program says so and counts as skipped.
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "app/folder_structure.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "support/strace.h"
#include "support/temp_folder.h"

namespace quillon {
namespace {

using test::runShell;
using test::TempFolder;

std::string program;  // quillon-job, quoted, from the command line

constexpr FileTime kSameTime{1'500'000'000, 0};

class ShareFaults : public testing::Test {
protected:
    // Of the local files one is equal to the shared one, one differs, and one has no counterpart.
    ShareFaults() {
        Installation installation(temp / "app");
        installation.settings.localPath.assign(pageFromPath(temp / "data"));
        installation.settings.zipPath.assign(pageFromPath(temp / "zip"));
        installation.settings.sharedPath.assign(pageFromPath(temp / "share"));
        installation.settings.runHeaderTest = 1;
        installation.settings.useSkipList = 1;
        installation.settings.useCommonHeaders = 1;
        installation.settings.useSharedDb = 1;
        std::filesystem::create_directory(temp / "app");
        std::filesystem::create_directory(temp / "source");
        installation.refreshPathVariables();
        EXPECT_TRUE(installation.saveSettingsRecord());
        fill();
        EXPECT_TRUE(checkFolderStructure(installation));
    }

    void fill() const {
        for (const char* folder : {"data", "share"}) std::filesystem::remove_all(temp / folder);
        for (const auto& [name, bytes] : local_) temp.write("data/" + name, bytes);
        for (const auto& [name, bytes] : shared_) temp.write("share/" + name, bytes);
        for (const char* root : {"data", "share"})
            EXPECT_TRUE(setModificationTime(temp / root / "Database/same.dat", kSameTime));
    }

    [[nodiscard]] std::string path(const std::string& name) const { return "'" + (temp / name).native() + "'"; }

    // The job with these calls failing on the share, from the `from`th of each step on.
    [[nodiscard]] std::string jobWithFault(const std::string& calls, const std::string& error, int from) const {
        std::string options = "-f -P " + path("share") + " -P " + path("share/Database");
        for (const auto& [name, bytes] : shared_) options += " -P " + path("share/" + name);
        options += " -P " + path("share/Database/orphan.dat");
        options += " -e inject=" + calls + ":error=" + error + ":when=" + std::to_string(from) + "+";
        return test::traced(options, program + " --app " + path("app") + " --job 7 --yes --source " + path("source") +
                                         " >" + path("out") + " 2>" + path("err"));
    }

    // Where the bytes of a local file may be: in their place, replaced by the whole shared file, or under Kept.
    void expectNothingLost() const {
        for (const auto& [name, bytes] : local_) {
            const auto now = readWholeFile(temp / ("data/" + name));
            if (now && *now == bytes)
                continue;
            EXPECT_TRUE(!now || *now == shared_.at(name)) << name << " is cut or mixed";
            EXPECT_TRUE(isKept(name, bytes)) << name << " is gone";
        }
    }
    [[nodiscard]] bool isKept(const std::string& name, const std::string& bytes) const {
        const auto moments = listEntries(temp / "data/Kept");
        if (!moments)
            return false;
        for (const auto& moment : *moments) {
            const auto kept = readWholeFile(temp / "data/Kept" / moment / name);
            if (kept && *kept == bytes)
                return true;
        }
        return false;
    }

    TempFolder temp;
    const std::map<std::string, std::string> local_{{"Database/same.dat", "1,SAME,T\r\n"},
                                                    {"Database/jpg.dat", "1,FFD8,H\r\n"},
                                                    {"Database/orphan.dat", "1,\xE9\xFF,T\r\n"},
                                                    {"Settings/SkipList.dat", "*.local\r\n"},
                                                    {"Settings/CommonHeaders.dat", "0,local,T,x\r\n"}};
    const std::map<std::string, std::string> shared_{{"Database/same.dat", "1,SAME,T\r\n"},
                                                     {"Database/jpg.dat", "1,FFD8FF,H\r\n"},
                                                     {"Database/new.dat", "1,NEW,T\r\n"},
                                                     {"Settings/SkipList.dat", "*.shared\r\n"},
                                                     {"Settings/CommonHeaders.dat", "0,shared,T,x\r\n"}};
};

TEST_F(ShareFaults, AnUndisturbedJobFollowsTheShare) {
    EXPECT_EQ(runShell(jobWithFault("getdents64", "EIO", 1000)), 0) << temp.read("err");
    for (const auto& [name, bytes] : shared_) EXPECT_EQ(temp.read("data/" + name), bytes);
    EXPECT_FALSE(pathExists(temp / "data/Database/orphan.dat"));
    expectNothingLost();
}

TEST_F(ShareFaults, WhatAShareThatDiesDidNotGiveIsCounted) {
    const std::string job = program + " --app " + path("app") + " --job 7 --yes --source " + path("source") + " >" +
                            path("out") + " 2>" + path("err");
    const std::string both = "-f -P " + path("share/Database/jpg.dat") + " -P " + path("share/Database/new.dat");
    EXPECT_EQ(runShell(test::traced(both + " -e inject=openat:error=EIO", job)), 3) << temp.read("err");
    EXPECT_NE(temp.read("err").find("quillon-job: 2 files of the shared database could not be fetched\n"),
              std::string::npos)
        << temp.read("err");
    EXPECT_EQ(temp.read("data/Database/jpg.dat"), local_.at("Database/jpg.dat"));
}

TEST_F(ShareFaults, NothingIsLostWhenTheShareGoesAtAnyCall) {
    struct Fault {
        const char* calls;
        const char* error;
        int last;
    };
    const Fault faults[] = {{"all", "ENOTCONN", 12},
                            {"openat", "EIO", 5},
                            {"read,pread64", "EIO", 3},
                            {"newfstatat,statx,stat", "EHOSTDOWN", 6},
                            {"getdents64", "EIO", 2}};
    for (const auto& fault : faults) {
        for (int from = 1; from <= fault.last; ++from) {
            SCOPED_TRACE(std::string(fault.calls) + " from " + std::to_string(from));
            fill();
            const std::string calls = std::string(fault.calls) == "all"
                                          ? "openat,read,pread64,newfstatat,statx,stat,getdents64"
                                          : fault.calls;
            const int status = runShell(jobWithFault(calls, fault.error, from));
            EXPECT_TRUE(status == 0 || status == 1 || status == 3) << status << temp.read("err");
            expectNothingLost();
        }
    }
}

}  // namespace
}  // namespace quillon

int main(int count, char* arguments[]) {
    return quillon::test::runTracingTests(count, arguments, quillon::program);
}
