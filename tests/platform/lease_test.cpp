// SPDX-License-Identifier: MIT
#include "platform/lease.h"

#include <algorithm>
#include <atomic>
#include <optional>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/folders.h"
#include "platform/temporary_name.h"
#include "platform/whole_file.h"
#include "support/failing_files.h"
#include "support/temp_folder.h"

using namespace quillon;
using quillon::test::TempFolder;
using std::chrono::milliseconds;

namespace {

constexpr LeaseTimes kAtOnce{milliseconds(0), milliseconds(20'000)};
constexpr LeaseTimes kNever{milliseconds(60'000), milliseconds(0)};

class LeaseTest : public testing::Test {
protected:
    [[nodiscard]] Result<Lease> take(LeaseTimes times = {}) const { return Lease::take(temp.path(), times); }
    [[nodiscard]] std::vector<std::string> entries() const { return listEntries(temp.path()).value(); }

    TempFolder temp;
};

TEST_F(LeaseTest, WhoHasItKeepsOthersOutAndLeavesNothingBehind) {
    {
        const auto mine = take();
        ASSERT_TRUE(mine);
        EXPECT_TRUE(mine->isHeld());
        const auto other = take(kNever);
        ASSERT_FALSE(other);
        EXPECT_TRUE(mine->isHeld());
        EXPECT_EQ(entries(), std::vector<std::string>{"lock"});
    }
    EXPECT_TRUE(entries().empty());
    EXPECT_TRUE(take(kNever));
}

TEST_F(LeaseTest, AnOwnerThatIsSeenForTooLongLosesIt) {
    const auto slow = take();
    ASSERT_TRUE(slow);
    const auto mine = take(kAtOnce);
    ASSERT_TRUE(mine);
    EXPECT_FALSE(slow->isHeld());
    EXPECT_TRUE(mine->isHeld());
}

// The bytes that it had ready went away with its lock: they can take nobody's place any more.
TEST_F(LeaseTest, APausedOwnerThatReturnsCannotPutItsBytesInPlace) {
    temp.write("data/file", "before");
    std::filesystem::create_directory(temp / "locks");
    auto paused = Lease::take(temp / "locks");
    ASSERT_TRUE(paused);
    const NativePath ready = paused->folder() / "ready";
    ASSERT_TRUE(saveWholeFile(ready, "of the paused owner"));
    {
        const auto mine = Lease::take(temp / "locks", kAtOnce);
        ASSERT_TRUE(mine);
        ASSERT_TRUE(saveWholeFileThrough(mine->folder(), temp / "data/file", "after"));
        EXPECT_FALSE(renameFile(ready, temp / "data/file"));
        // It may also have been asleep before it had anything ready.
        EXPECT_FALSE(saveWholeFileThrough(paused->folder(), temp / "data/file", "too late"));
    }
    EXPECT_EQ(readWholeFile(temp / "data/file").value(), "after");
    const auto left = takenLeases(temp / "locks");
    ASSERT_EQ(left.size(), 1U);
    ASSERT_EQ(leftInLease(left.front()).size(), 1U);
    EXPECT_EQ(readWholeFile(leftInLease(left.front()).front()).value(), "of the paused owner");
    removeTakenLease(left.front());
    EXPECT_TRUE(takenLeases(temp / "locks").empty());
}

TEST_F(LeaseTest, APausedOwnerGivesNothingBackThatIsNotItsOwn) {
    std::optional<Lease> paused;
    paused.emplace(std::move(*take()));
    const auto mine = take(kAtOnce);
    ASSERT_TRUE(mine);
    paused.reset();
    EXPECT_TRUE(mine->isHeld());
}

TEST_F(LeaseTest, AProcessThatDiedStopsNobody) {
    const pid_t child = fork();
    if (child == 0)
        _exit(0);
    ASSERT_EQ(waitpid(child, nullptr, 0), child);
    std::filesystem::create_directories(temp / ("lock/owner" + ownTemporaryPrefix() + std::to_string(child) + "-1-0"));
    const std::string unused = ownTemporaryPrefix() + std::to_string(child) + "-1-1";
    std::filesystem::create_directory(temp / unused);
    EXPECT_TRUE(take({milliseconds(60'000), milliseconds(60'000)}));
    EXPECT_EQ(takenLeases(temp.path()).size(), 2U) << "the lock that was taken and the one that never was";
    for (const auto& taken : takenLeases(temp.path())) removeTakenLease(taken);
    EXPECT_TRUE(entries().empty());
}

TEST_F(LeaseTest, ALockThatWasHalfGivenBackStopsNobody) {
    std::filesystem::create_directory(temp / "lock");
    EXPECT_TRUE(take({milliseconds(60'000), milliseconds(60'000)}));
}

TEST_F(LeaseTest, AFolderThatTakesNoFilesIsAFailureAtOnce) {
    EXPECT_FALSE(Lease::take(temp / "missing"));
    test::FailingFiles disk;
    disk.refuse("rename", ENOSPC);
    EXPECT_FALSE(take());
    EXPECT_TRUE(entries().empty());
    EXPECT_LE(disk.waits(), 2);
}

// A share does not let go of a folder while somebody looks at it.
TEST_F(LeaseTest, ALockThatIsLookedAtIsGivenBackAllTheSame) {
    test::FailingFiles disk;
    {
        const auto mine = take();
        ASSERT_TRUE(mine);
        disk.failAt(1, {.number = EBUSY}, "rename");
    }
    EXPECT_TRUE(disk.met());
    EXPECT_TRUE(entries().empty());
}

// It was given up for dead meanwhile.
TEST_F(LeaseTest, ALockThatIsSomebodyElsesByTheNextTryStaysThere) {
    const std::string theirs = "owner.quillon-save-LAB7-4711-19a3b-0";
    test::FailingFiles disk;
    {
        const auto mine = take();
        ASSERT_TRUE(mine);
        disk.failAt(1, {.number = EBUSY}, "rename");
        disk.ahead("wait", [&] {
            std::filesystem::rename(temp / "lock", temp / "gone");
            std::filesystem::create_directories(temp / "lock" / theirs);
        });
    }
    EXPECT_EQ(disk.waits(), 1);
    EXPECT_TRUE(pathExists(temp / "lock" / theirs));
}

TEST_F(LeaseTest, ALockThatIsLookedAtIsGivenBackOnAnotherThread) {
    test::FailingFiles disk;
    {
        auto mine = take();
        ASSERT_TRUE(mine);
        mine->endBeside();
        disk.failAt(1, {.number = EBUSY}, "rename");
    }
    for (int looks = 0; !entries().empty() && looks < 60'000; ++looks) std::this_thread::sleep_for(milliseconds(1));
    EXPECT_TRUE(entries().empty());
    EXPECT_EQ(disk.waits(), 1);
}

TEST_F(LeaseTest, AWaitEndsWhenItsFolderWentAway) {
    std::filesystem::create_directories(temp / "locks/lock/owner.quillon-save-LAB7-4711-19a3b-0");
    test::FailingFiles disk;
    disk.ahead("wait", [this] { std::filesystem::remove_all(temp / "locks"); });
    EXPECT_FALSE(Lease::take(temp / "locks", {milliseconds(60'000), milliseconds(60'000)}));
    EXPECT_LE(disk.waits(), 4);
}

TEST_F(LeaseTest, AWaitThatOthersMadeAVainOneIsToldFromALockThatCannotBeTaken) {
    const auto theirs = take();
    ASSERT_TRUE(theirs);
    EXPECT_TRUE(Lease::isTaken(temp.path()));
    LeaseWatch inTime;
    EXPECT_FALSE(Lease::take(temp.path(), kNever, &inTime));
    EXPECT_TRUE(inTime.isInVain());
    LeaseWatch stuck;
    test::FailingFiles disk;
    disk.refuse("rename", EBUSY);
    EXPECT_FALSE(Lease::take(temp.path(), {milliseconds(0), milliseconds(0)}, &stuck));
    EXPECT_FALSE(stuck.isInVain());
}

// As one does whose server was lost for some seconds: every call fails, and nothing is known of what is there.
TEST_F(LeaseTest, AMountThatConnectsAgainIsWaitedFor) {
    for (const char* call : {"makeFolder", "rename"}) {
        SCOPED_TRACE(call);
        test::FailingFiles disk;
        disk.failAt(1, {.number = EIO}, call);
        {
            const auto mine = take();
            ASSERT_TRUE(mine);
            EXPECT_TRUE(mine->isHeld());
            disk.failAt(1, {.number = EIO}, "rename");
        }
        EXPECT_TRUE(disk.met());
        EXPECT_TRUE(entries().empty()) << "given back behind it";
    }
}

TEST_F(LeaseTest, AShareThatStaysAwayIsToldFromOneThatTakesNoLock) {
    for (const int number : {EIO, EROFS}) {
        LeaseWatch watch;
        test::FailingFiles disk;
        disk.refuse("rename", number);
        EXPECT_FALSE(Lease::take(temp.path(), {}, &watch));
        EXPECT_EQ(watch.isShareAway(), number == EIO);
    }
}

// Of a mount whose every call takes its seconds to fail, the time is over long before the tries are.
TEST_F(LeaseTest, AShareThatIsAwayWhenTheTimeIsOverIsNoVainWait) {
    LeaseWatch watch;
    test::FailingFiles disk;
    disk.refuse("rename", ETIMEDOUT);
    EXPECT_FALSE(Lease::take(temp.path(), {milliseconds(0), milliseconds(0)}, &watch));
    EXPECT_TRUE(watch.isShareAway());
    EXPECT_FALSE(watch.isInVain());
}

TEST_F(LeaseTest, WhatIsLeftToOthersStaysInTheTakenLock) {
    {
        auto mine = take();
        ASSERT_TRUE(mine);
        ASSERT_TRUE(saveWholeFile(mine->folder() / "note", "in doubt"));
        mine->leaveToOthers();
    }
    const auto left = takenLeases(temp.path());
    ASSERT_EQ(left.size(), 1U);
    ASSERT_EQ(leftInLease(left.front()).size(), 1U);
    EXPECT_TRUE(take(kNever)) << "it is free";
}

TEST_F(LeaseTest, ALockThatWasTakenInSpiteOfWhatTheShareSaysIsOurs) {
    test::FailingFiles disk;
    disk.ahead("rename", [this] {
        for (const auto& name : entries()) {
            if (isTemporaryName(name))
                std::filesystem::rename(temp / name, temp / "lock");
        }
    });
    const auto mine = take(kNever);
    ASSERT_TRUE(mine);
    EXPECT_TRUE(mine->isHeld());
}

TEST_F(LeaseTest, AWaitTellsWhoHasTheLockAndEndsWhenItIsLeft) {
    std::filesystem::create_directories(temp / "lock/owner.quillon-save-LAB7-4711-19a3b-0");
    LeaseWatch watch;
    EXPECT_EQ(watch.owner(), "");
    watch.leave();
    EXPECT_FALSE(Lease::take(temp.path(), {milliseconds(60'000), milliseconds(60'000)}, &watch));
    EXPECT_EQ(watch.owner(), "LAB7");
    EXPECT_EQ(entries(), std::vector<std::string>{"lock"}) << "nothing of ours is left";
    std::filesystem::remove_all(temp / "lock");
    EXPECT_TRUE(Lease::take(temp.path(), kNever, &watch)) << "one that is free is taken all the same";
}

TEST(TemporaryName, TellsTheComputerThatMadeIt) {
    EXPECT_EQ(ownTemporaryPrefix(), ".quillon-save-" + computerOfTemporary(temporaryName()) + "-");
    EXPECT_EQ(computerOfTemporary(".quillon-save-LAB-7-4711-19a3b-0"), "LAB-7");
    for (const char* none : {"", "-", "---", "lock", "LAB7-4711-19a3b-0"})
        EXPECT_EQ(computerOfTemporary(none), "") << none;
}

TEST_F(LeaseTest, OneAtATimeOfMany) {
    std::atomic<int> inside = 0;
    std::atomic<int> most = 0;
    std::atomic<int> total = 0;
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&] {
                for (int round = 0; round < 20; ++round) {
                    const auto mine = take();
                    if (!mine)
                        continue;
                    most = std::max<int>(most, ++inside);
                    ++total;
                    --inside;
                }
            });
        }
    }
    EXPECT_EQ(most, 1);
    EXPECT_EQ(total, 80);
    EXPECT_TRUE(entries().empty());
}

}  // namespace
