// SPDX-License-Identifier: MIT
// The wait for another computer that is changing the database.
#include "app/history_dialogs.h"

#include <future>
#include <thread>

#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/folders.h"
#include "platform/whole_file.h"
#include "support/failing_files.h"
#include "support/temp_folder.h"
#include "support/waiting_dialogs.h"

namespace quillon::test {
namespace {

constexpr std::chrono::milliseconds kLongest{60'000};
constexpr int kMostLooks = 60'000;

class WaitForTurnTest : public testing::Test {
protected:
    WaitForTurnTest() {
        dialogs.onWait = [](const PatientWait&) {
            ADD_FAILURE() << "nobody has to be waited for";
            return true;
        };
    }
    /// The other thread sees in its time who has the turn.
    static void expectQuestion(const PatientWait& wait, const std::string& text) {
        for (int looks = 0; wait.text() != text && looks < kMostLooks; ++looks)
            ASSERT_FALSE(wait.isOver(std::chrono::milliseconds(1)));
        EXPECT_EQ(wait.text(), text);
    }
    /// The wait of the other thread ends behind this one's.
    void waitUntilOthersAreDone() const {
        for (int looks = 0; listEntries(history())->size() > 1 && looks < kMostLooks; ++looks)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        EXPECT_EQ(listEntries(history())->size(), 1U);
    }
    void lockedBy(const std::string& owner) const {
        std::filesystem::create_directories(history() / "lock" / ("owner" + owner));
    }
    [[nodiscard]] NativePath settings() const { return temp / "Settings"; }
    [[nodiscard]] NativePath history() const { return historyFolder(settings()); }
    [[nodiscard]] std::string question(const std::string& who) const {
        return "Waiting for " + who + ", which is changing the database in " + temp.path().native() +
               " at this moment.\r\n\r\nWithout waiting nothing is changed there : it can be done again later.";
    }

    TempFolder temp;
    ScriptedDialogs boxes;
    WaitingDialogs dialogs{boxes};
};

TEST_F(WaitForTurnTest, ATurnThatIsFreeComesWithoutAWord) {
    std::filesystem::create_directories(settings());
    dialogs.noticedAfter = kLongest;
    const auto turn = waitForTurn(dialogs, settings());
    ASSERT_TRUE(turn);
    EXPECT_FALSE(turn->through().empty());
    EXPECT_FALSE(turn->isLost());
    EXPECT_TRUE(waitForTurn(dialogs, {})) << "without a settings folder there is nobody to wait for";
}

TEST_F(WaitForTurnTest, WhoIsWaitedForIsNamedAndNeedNotBeWaitedFor) {
    lockedBy(".quillon-save-LAB-7-4711-19a3b-0");
    dialogs.onWait = [this](const PatientWait& wait) {
        EXPECT_EQ(wait.title, "Database History");
        EXPECT_EQ(wait.leave, "Do not wait");
        expectQuestion(wait, question("LAB-7"));
        return false;
    };
    EXPECT_FALSE(waitForTurn(dialogs, settings()));
    waitUntilOthersAreDone();
    EXPECT_TRUE(pathExists(history() / "lock/owner.quillon-save-LAB-7-4711-19a3b-0")) << "it is still theirs";
}

TEST_F(WaitForTurnTest, AnotherProgramOfThisComputerIsToldSo) {
    lockedBy(ownTemporaryPrefix() + std::to_string(::getpid()) + "-1-0");
    dialogs.onWait = [this](const PatientWait& wait) {
        expectQuestion(wait, question("another program of this computer"));
        return false;
    };
    EXPECT_FALSE(waitForTurn(dialogs, settings()));
    waitUntilOthersAreDone();
}

TEST_F(WaitForTurnTest, AnOwnerWithoutANameIsAnotherComputer) {
    lockedBy("strange");
    dialogs.onWait = [this](const PatientWait& wait) {
        expectQuestion(wait, question("another computer"));
        return false;
    };
    EXPECT_FALSE(waitForTurn(dialogs, settings()));
    waitUntilOthersAreDone();
}

TEST_F(WaitForTurnTest, ATurnThatComesFreeEndsTheWait) {
    lockedBy(".quillon-save-LAB7-4711-19a3b-0");
    bool waited = false;
    dialogs.onWait = [&](const PatientWait& wait) {
        waited = true;
        EXPECT_FALSE(wait.isOver(std::chrono::milliseconds(0)));
        std::filesystem::rename(history() / "lock", temp / "given back");
        EXPECT_TRUE(wait.isOver(kLongest));
        return true;
    };
    const auto turn = waitForTurn(dialogs, settings());
    ASSERT_TRUE(turn);
    EXPECT_TRUE(waited);
    EXPECT_FALSE(turn->isLost());
}

// Until the other thread has seen an owner, it may be the share that does not answer.
TEST_F(WaitForTurnTest, WhatIsWaitedForIsTheShareUntilAnOwnerWasSeen) {
    lockedBy(".quillon-save-LAB7-4711-19a3b-0");
    std::promise<void> asked;
    FailingFiles disk;
    disk.ahead("rename", [reached = asked.get_future().share()] { reached.wait(); });
    dialogs.onWait = [&](const PatientWait& wait) {
        EXPECT_EQ(wait.text(), "Waiting for the share " + temp.path().native() +
                                   ".\r\n\r\nWithout waiting nothing is changed there : it can be done again later.");
        asked.set_value();
        expectQuestion(wait, question("LAB7"));
        return false;
    };
    EXPECT_FALSE(waitForTurn(dialogs, settings()));
    waitUntilOthersAreDone();
}

// As those of a command.
TEST_F(WaitForTurnTest, DialogsThatShowNoWaitSitItOut) {
    lockedBy(".quillon-save-LAB7-4711-19a3b-0");
    const auto none = waitForTurn(boxes, settings(), {std::chrono::milliseconds(60'000), std::chrono::milliseconds(0)});
    ASSERT_TRUE(none) << "whoever has waited in vain changes without a lock";
    EXPECT_TRUE(none->through().empty());
}

TEST(LostNoteTest, IsToldInABox) {
    ScriptedDialogs dialogs;
    warnOfLostNote(dialogs, std::nullopt);
    dialogs.expectBox("Database History",
                      "What was changed is saved, but not noted in the history of the database : no room",
                      BoxAnswer::Ok, BoxStyle::Warning);
    warnOfLostNote(dialogs, FileError{ErrorKind::PathAccess, "no room"});
    EXPECT_TRUE(dialogs.done());
}

}  // namespace
}  // namespace quillon::test
