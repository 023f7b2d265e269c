// SPDX-License-Identifier: MIT
// One job at a time in one application folder, and what the computer is called.
#include "platform/folder_lock.h"

#include <csignal>
#include <utility>

#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/host.h"
#include "support/temp_folder.h"

namespace quillon {
namespace {

using test::TempFolder;

// The answer of another process that asks for the lock: 0 when it got it, else the number of the failure.
int askedByAnother(const NativePath& folder) {
    const pid_t child = ::fork();
    if (child == 0) {
        const auto lock = FolderLock::take(folder);
        ::_exit(lock ? 0 : lock.error().number());
    }
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(FolderLockTest, ASecondOneIsPermissionDenied) {
    const TempFolder temp;
    const auto lock = FolderLock::take(temp.path());
    ASSERT_TRUE(lock);
    EXPECT_EQ(askedByAnother(temp.path()), 70);
    const auto second = FolderLock::take(temp.path());
    ASSERT_FALSE(second);
    EXPECT_EQ(second.error().kind, ErrorKind::PermissionDenied);
    const auto tried = FolderLock::tryToTake(temp.path());
    ASSERT_TRUE(tried) << "a lock that another one holds is no failure here";
    EXPECT_FALSE(*tried);
    EXPECT_FALSE(FolderLock::tryToTake(temp / "none"));
}

TEST(FolderLockTest, TheLockGoesWithItsHolder) {
    const TempFolder temp;
    {
        auto lock = FolderLock::take(temp.path());
        ASSERT_TRUE(lock);
        const FolderLock moved = std::move(*lock);
        EXPECT_EQ(askedByAnother(temp.path()), 70);
    }
    EXPECT_EQ(askedByAnother(temp.path()), 0);
    EXPECT_TRUE(FolderLock::take(temp.path()));
}

TEST(FolderLockTest, TheLockOfAKilledProcessIsGone) {
    const TempFolder temp;
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        const auto lock = FolderLock::take(temp.path());
        const char told = lock ? 'y' : 'n';
        if (::write(ready[1], &told, 1) == 1)
            ::pause();
        ::_exit(1);
    }
    char told = 'n';
    ASSERT_EQ(::read(ready[0], &told, 1), 1);
    EXPECT_EQ(told, 'y');
    EXPECT_FALSE(FolderLock::take(temp.path()));
    ::kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(FolderLock::take(temp.path()));
    ::close(ready[0]);
    ::close(ready[1]);
}

TEST(FolderLockTest, OtherFoldersAreFreeAndAMissingOneIsAFailure) {
    const TempFolder one;
    const TempFolder other;
    const auto lock = FolderLock::take(one.path());
    ASSERT_TRUE(lock);
    EXPECT_TRUE(FolderLock::take(other.path()));
    EXPECT_FALSE(FolderLock::take(one / "none"));
}

TEST(FolderLockTest, TheLockLeavesNoFile) {
    const TempFolder temp;
    const auto lock = FolderLock::take(temp.path());
    ASSERT_TRUE(lock);
    EXPECT_TRUE(std::filesystem::is_empty(temp.path()));
}

TEST(Host, TheComputerHasAName) {
    EXPECT_FALSE(hostName().empty());
    EXPECT_NE(hostName().back(), ' ');
}

}  // namespace
}  // namespace quillon
