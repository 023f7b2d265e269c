// SPDX-License-Identifier: MIT
// Copies whose program was really killed: the next run makes exactly the missing ones.
#include <csignal>
#include <filesystem>
#include <map>
#include <set>

#include <sys/wait.h>
#include <unistd.h>

#include "answers/file_copies.h"
#include "evidence/evidence_reader.h"
#include "evidence/evidence_store.h"
#include "evidence/job_keys.h"
#include "job/copy_journal.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "programs/command_fixture.h"
#include "programs/list_command.h"
#include "support/fake_surroundings.h"
#include "support/posix_files.h"

namespace quillon::test {
namespace {

namespace fs = std::filesystem;

constexpr int kFiles = 40;

class KilledCopyTest : public CommandFixture {
protected:
    void SetUp() override {
        install();
        for (int i = 0; i < kFiles; ++i) {
            const std::string name = "d" + std::to_string(i % 3) + "/f" + std::to_string(i) + ".abc";
            files_[name] = "MZ" + std::string(static_cast<std::size_t>(600 + i), static_cast<char>('a' + i % 26));
            folder.write("source/" + name, files_[name]);
        }
    }

    [[nodiscard]] NativePath target() const { return folder / "target"; }
    [[nodiscard]] NativePath landed(const std::string& name) const {
        return target().native() + (folder / "source" / name).native();
    }
    [[nodiscard]] NativePath journal() const { return copyJournalIn(target(), "1234"); }
    [[nodiscard]] std::set<std::string> noted() const {
        std::set<std::string> places;
        const auto read =
            readCopyJournal(journal(), [&](const NotedCopy& copy) { places.insert((target() / copy.name).native()); });
        EXPECT_TRUE(read);
        return places;
    }
    // Of what is noted.
    [[nodiscard]] std::map<std::string, ino_t> inodes() const {
        std::map<std::string, ino_t> all;
        for (const auto& place : noted()) all[place] = statOf(place).st_ino;
        return all;
    }
    // Runs it in a process of its own, which has to be killed. Its saves in progress go, since a child of a fork gives
    // the names that this process would give next.
    void inKilledProcess(const std::function<void()>& run) const {
        const pid_t child = ::fork();
        if (child == 0) {
            run();
            ::_exit(0);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSIGNALED(status)) << "it came to its end";
        for (const NativePath& place : {target(), folder / "local"}) {
            for (const auto& entry : fs::directory_iterator(place)) {
                if (isTemporaryName(entry.path().filename().native()))
                    fs::remove(entry.path());
            }
        }
    }
    [[nodiscard]] std::vector<std::string> wish() const {
        return {"--yes", "--quiet", "--json", "--target", target().native(), "--no-sync", "--salvage"};
    }
    // A job that is killed when so many copies are noted.
    void killJobBehind(std::size_t copies, const std::vector<std::string>& arguments) {
        inKilledProcess([&] {
            interrupts = [&] { return noted().size() >= copies ? ::raise(SIGKILL) : 0; };
            static_cast<void>(job(arguments));
        });
    }
    int list(const std::vector<std::string>& more) {
        std::vector<std::string> arguments = more;
        arguments.insert(arguments.end(), {"--app", (folder / "app").native()});
        out.str("");
        err.str("");
        return runListCommand(arguments, {out, err, false, false, nullptr});
    }
    int copyWhatFailed() { return list({"copy", "1234", "--to", target().native(), "--failed", "--json"}); }

    void expectAllCopied() {
        for (const auto& [name, bytes] : files_) {
            EXPECT_EQ(readWholeFile(landed(name)).value_or(""), bytes) << name;
            EvidenceRow row;
            auto evidence = EvidenceReader::open(folder / "local/1234.sqlite");
            ASSERT_TRUE(evidence && evidence->findPath(name, row).value_or(false)) << name;
            EXPECT_EQ(row.copied, 1) << name;
        }
        EXPECT_FALSE(fs::exists(journal()));
        EXPECT_EQ(list({"verify", "1234", "--against", target().native(), "--json"}), 0) << err.str();
        EXPECT_EQ(json()["equal"], kFiles);
    }
    static void expectUntouched(const std::map<std::string, ino_t>& inodes) {
        for (const auto& [place, inode] : inodes) EXPECT_EQ(statOf(place).st_ino, inode) << place << " was made again";
    }

    std::map<std::string, std::string> files_;
};

TEST_F(KilledCopyTest, AJobThatGoesOnMakesExactlyTheCopiesThatAreMissing) {
    killJobBehind(15, wish());
    const auto first = inodes();
    ASSERT_GE(first.size(), 15U);
    ASSERT_LT(first.size(), static_cast<std::size_t>(kFiles));
    auto again = wish();
    again.emplace_back("--resume");
    killJobBehind(first.size() + 10, again);
    expectUntouched(first);
    const auto second = inodes();
    ASSERT_GE(second.size(), first.size() + 10);
    ASSERT_LT(second.size(), static_cast<std::size_t>(kFiles));
    for (const auto& [place, inode] : second) setTimes(place, 1, 1);
    ASSERT_EQ(job(again), 0) << err.str();
    EXPECT_EQ(json()["counters"]["copied"], kFiles);
    expectUntouched(second);
    int made = 0;
    for (const auto& [name, bytes] : files_) made += statOf(landed(name)).st_mtim.tv_sec != 1 ? 1 : 0;
    EXPECT_EQ(made, kFiles - static_cast<int>(second.size()));
    expectAllCopied();
}

TEST_F(KilledCopyTest, WhatTheRunBeforeTheKilledOneHasCopiedStaysToo) {
    ASSERT_EQ(job(wish()), 0) << err.str();
    std::map<std::string, ino_t> all;
    for (const auto& [name, bytes] : files_) all[landed(name)] = statOf(landed(name)).st_ino;
    auto again = wish();
    again.emplace_back("--resume");
    killJobBehind(5, again);
    ASSERT_EQ(job(again), 0) << err.str();
    expectUntouched(all);
    expectAllCopied();
}

// As a run leaves it that is killed seconds after its first copies: its evidence has all files and few copies.
TEST_F(KilledCopyTest, WhatAKilledRunHasNotComeToIsKnownFromTheRunBefore) {
    ASSERT_EQ(job(wish()), 0) << err.str();
    std::map<std::string, ino_t> all;
    for (const auto& [name, bytes] : files_) all[landed(name)] = statOf(landed(name)).st_ino;
    const NativePath evidence = folder / "local/1234.sqlite";
    fs::copy_file(evidence, folder / "local/1234.sqlite-earlier");
    {
        auto rows = EvidenceReader::open(evidence);
        auto store = EvidenceStore::open(evidence);
        ASSERT_TRUE(rows && store);
        std::vector<EvidenceRow> late;
        EvidenceRow row;
        while (rows->next(row).value_or(false)) {
            if (row.id > 5)
                late.push_back(row);
        }
        rows->rest();
        for (EvidenceRow& one : late) {
            one.copied.reset();
            ASSERT_TRUE(store->change(one));
        }
        ASSERT_TRUE(store->setJob(job_keys::kEnd, job_keys::kRunning) && store->commit());
    }
    auto again = wish();
    again.emplace_back("--resume");
    ASSERT_EQ(job(again), 0) << err.str();
    expectUntouched(all);
    expectAllCopied();
}

TEST_F(KilledCopyTest, WhatFailedIsCopiedBehindAKilledCommand) {
    ASSERT_EQ(job({"--yes", "--quiet"}), 0) << err.str();
    inKilledProcess([&] {
        const JobFiles files{"1234", folder / "local/1234.csv", folder / "local/1234.sqlite"};
        CopyOrder order;
        order.target = target();
        order.care.hash = true;
        order.care.sync = false;
        auto copies = FileCopies::begin(files, order);
        CountingLoop loop;
        int ended = 0;
        passOver(copies->run(loop, [&](const SettledCopy&) { static_cast<void>(++ended == 15 && ::raise(SIGKILL)); }),
                 "it is killed");
    });
    const auto first = inodes();
    ASSERT_EQ(first.size(), 15U);
    ASSERT_EQ(copyWhatFailed(), 0) << err.str();
    EXPECT_EQ(json()["copied"], kFiles - 15);
    EXPECT_EQ(json()["already_there"], 15);
    expectUntouched(first);
    expectAllCopied();
}

TEST_F(KilledCopyTest, ACopyIsMadeAgainWhoseBytesOrSourceAreOthersByNow) {
    killJobBehind(30, wish());
    const auto places = noted();
    std::vector<std::string> names;
    for (const auto& [name, bytes] : files_) {
        if (places.contains(landed(name).native()))
            names.push_back(name);
    }
    ASSERT_GE(names.size(), 30U);
    flipBit(landed(names[0]), 300);
    files_[names[1]].back() = '#';
    folder.write("source/" + names[1], files_[names[1]]);
    fs::remove(landed(names[2]));
    auto again = wish();
    again.emplace_back("--resume");
    ASSERT_EQ(job(again), 0) << err.str();
    expectAllCopied();
}

// A list of check sums outlives the evidence: what it tells may be of an older source.
TEST_F(KilledCopyTest, ACheckSumOfAnOlderSourceLeavesNothingAlone) {
    ASSERT_EQ(job(wish()), 0) << err.str();
    files_["d0/f0.abc"].back() = '#';
    folder.write("source/d0/f0.abc", files_["d0/f0.abc"]);
    setTimes(folder / "source/d0/f0.abc", 1'000'000'000, 1'000'000'000);
    ASSERT_EQ(job({"--yes", "--quiet"}), 0) << err.str();
    ASSERT_EQ(copyWhatFailed(), 0) << err.str();
    EXPECT_EQ(json()["copied"], 1);
    EXPECT_EQ(json()["already_there"], kFiles - 1);
    expectAllCopied();
}

}  // namespace
}  // namespace quillon::test
