// SPDX-License-Identifier: MIT
// A program that is killed while it writes evidence leaves what it committed, and the file is whole.
#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

#include "evidence/evidence_fixture.h"

namespace quillon {
namespace {

using test::headOf;
using test::rowOf;

constexpr int kFilesInCommit = 20;

class EvidenceKillTest : public test::EvidenceFixture {
protected:
    // Tells each commit by one byte, and goes on until it is killed.
    [[noreturn]] void write(int tell) const {
        auto store = EvidenceStore::open(path);
        for (int i = 1; store; ++i) {
            EvidenceRow row = rowOf(i, "pic" + std::to_string(i / 50), "IMG_" + std::to_string(i) + ".jpg");
            const FileHead head = headOf(i);
            if (!store->add(row, &head))
                break;
            if (i % kFilesInCommit == 0 && (!store->commit() || ::write(tell, "c", 1) != 1))
                break;
        }
        ::_exit(1);
    }
    // Kills a writer behind so many commits, wherever it is by then.
    void killBehind(int commits) const {
        int ends[2];
        ASSERT_EQ(::pipe(ends), 0);
        const pid_t child = ::fork();
        if (child == 0) {
            ::close(ends[0]);
            write(ends[1]);
        }
        ::close(ends[1]);
        char told = 0;
        for (int i = 0; i < commits; ++i) ASSERT_EQ(::read(ends[0], &told, 1), 1);
        ::kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSIGNALED(status));
        ::close(ends[0]);
    }
};

TEST_F(EvidenceKillTest, WhatWasCommittedIsThereAndTheFileIsWhole) {
    for (int commits = 1; commits <= 25; ++commits) {
        created();
        killBehind(commits);
        const auto left = rows();
        EXPECT_GE(left.size(), static_cast<std::size_t>(commits * kFilesInCommit));
        EXPECT_EQ(left.size() % kFilesInCommit, 0U) << "all of a transaction or nothing";
        auto from = reader();
        for (const auto& row : left) {
            const auto head = from.head(row);
            ASSERT_TRUE(head && *head != nullptr) << row.id;
            EXPECT_EQ(**head, headOf(static_cast<int>(row.id)));
        }
        EXPECT_EQ(answers(path, "PRAGMA integrity_check"), std::vector<std::string>{"ok"});
        auto again = opened();
        EvidenceRow more = rowOf(1, "", "more");
        EXPECT_TRUE(again.add(more, nullptr) && again.commit()) << "and can be gone on with";
    }
}

}  // namespace
}  // namespace quillon
