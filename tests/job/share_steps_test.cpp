// SPDX-License-Identifier: MIT
// The start of a job whose share does not answer, has gone, or has been unmounted.
#include "job/share_steps.h"

#include <gtest/gtest.h>

#include "job/driver_fixture.h"
#include "support/hanging_share.h"

namespace quillon::test {
namespace {

class ShareStepsTest : public DriverTest {
protected:
    ShareStepsTest() {
        installation.settings.useSharedDb = 1;
        installation.refreshPathVariables();
        std::filesystem::create_directories(folder / "share");
        folder.write("local/Database/jpg.dat", "1,FFD8,H\r\n");
        folder.write("local/Database/odd name.dat", std::string("any \xFF bytes\0", 12));
    }

    // Neither database is to be found; the job is given up at the second question.
    void expectGivingUp() {
        fake.dialogs.expectBox("No Database",
                               "Unable to find shared database. Do you want to continue the check with the local copy?",
                               BoxAnswer::Yes);
        fake.dialogs.expectBox("No Database",
                               "Unable to find local database. Do you want to disable the file quality testing?",
                               BoxAnswer::Cancel);
    }
    void expectAllUnderKept() const {
        const std::string kept = "local/Kept/2026-11-15 10.20.30/Database/";
        EXPECT_TRUE(databaseFiles(folder / "local/Database").empty());
        EXPECT_EQ(folder.read(kept + "jpg.dat"), "1,FFD8,H\r\n");
        EXPECT_EQ(folder.read(kept + "odd name.dat"), std::string("any \xFF bytes\0", 12));
    }
};

TEST_F(ShareStepsTest, AnUnmountedShareIsAnEmptyFolderAndEveryTermFileIsKept) {
    expectGivingUp();
    EXPECT_EQ(run(), JobEnd::NotStarted);
    expectAllUnderKept();
}

TEST_F(ShareStepsTest, TheLoopTurnsWhileTheShareHangsAndEveryTermFileIsKeptWhenItGoes) {
    const auto share = HangingShare::mount(folder / "share");
    if (share == nullptr)
        GTEST_SKIP();
    fake.loop.onTurn = [&](int turn) {
        if (turn > 3)
            return;
        EXPECT_EQ(state.texts.currentFile, "Comparing databases....");
        EXPECT_EQ(databaseFiles(folder / "local/Database").size(), 2U) << "nothing goes before the share has answered";
        if (turn == 3)
            share->goAway();
    };
    expectGivingUp();
    EXPECT_EQ(run(), JobEnd::NotStarted);
    EXPECT_GE(fake.loop.turns, 3);
    expectAllUnderKept();
}

TEST_F(ShareStepsTest, AHandlerThatChangesTheSettingsMeanwhileDoesNotMisleadTheStep) {
    const auto share = HangingShare::mount(folder / "share");
    if (share == nullptr)
        GTEST_SKIP();
    folder.write("elsewhere/Database/jpg.dat", "of another local root");
    fake.loop.onTurn = [&](int) {
        installation.settings.localPath.assign(pageFromPath(folder / "elsewhere"));
        installation.refreshPathVariables();
        share->goAway();
    };
    fake.dialogs.expectBox("No Database",
                           "Unable to find shared database. Do you want to continue the check with the local copy?",
                           BoxAnswer::No);
    EXPECT_EQ(run(), JobEnd::NotStarted);
    expectAllUnderKept();
    EXPECT_EQ(folder.read("elsewhere/Database/jpg.dat"), "of another local root");
}

}  // namespace
}  // namespace quillon::test
