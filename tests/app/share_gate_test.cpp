// SPDX-License-Identifier: MIT
// A share that does not answer: a word after two seconds, and a way to go on without it.
#include "app/share_gate.h"

#include <gtest/gtest.h>

#include "app/app_fixture.h"
#include "support/fake_surroundings.h"
#include "support/hanging_share.h"

namespace quillon {
namespace {

class RecordingWait final : public ShareWait {
public:
    void show(const std::string& shown) override { text = shown; }
    void hide() override { hidden = true; }
    [[nodiscard]] bool goesOn() const override { return pressed; }

    std::string text;
    bool hidden = false;
    bool pressed = false;
};

class ShareGateTest : public test::AppFixture {
protected:
    ShareGateTest() {
        usePaths();
        makeFolder("share/Database");
        installation.settings.sharedPath.assign(pageFromPath(temp / "share"));
        installation.settings.useSharedDb = 1;
        installation.refreshPathVariables();
    }
    bool pass() { return passShareGate(installation, fake.surroundings, wait); }

    test::FakeSurroundings fake;
    RecordingWait wait;
};

TEST_F(ShareGateTest, AShareThatAnswersIsPassedWithoutAWord) {
    EXPECT_TRUE(pass());
    std::filesystem::remove_all(temp / "share");
    EXPECT_TRUE(pass()) << "that it is gone is an answer";
    installation.settings.sharedPath.assign(PageText{});
    installation.refreshPathVariables();
    EXPECT_TRUE(pass()) << "without a share there is nothing to ask";
    EXPECT_EQ(wait.text, "");
    EXPECT_FALSE(wait.hidden);
}

TEST_F(ShareGateTest, AWordComesAfterTwoSecondsAndAPersonMayGoOnLocally) {
    const auto share = test::HangingShare::mount(temp / "share");
    if (share == nullptr)
        GTEST_SKIP();
    fake.loop.onTurn = [&](int turn) {
        if (turn == 3) {
            EXPECT_EQ(wait.text, "") << "before two seconds nothing is said";
        }
        if (turn == 4)
            fake.clock.tick += kShareSilence;
        if (turn == 8)
            wait.pressed = true;
    };
    EXPECT_FALSE(pass());
    EXPECT_EQ(wait.text.find("The shared folder " + (temp / "share").native() + " does not answer."), 0U) << wait.text;
    EXPECT_TRUE(wait.hidden);
    EXPECT_GE(fake.loop.turns, 8);
    EXPECT_FALSE(installation.paths().useSharedDb);
    EXPECT_TRUE(installation.paths().sharedPath.empty() && installation.paths().sharedDatabase.empty() &&
                installation.paths().sharedSettings.empty());
    EXPECT_EQ(installation.settings.useSharedDb, 1) << "the record is not changed";
    EXPECT_TRUE(pass()) << "what was left out is not asked again";
    installation.refreshPathVariables();
    EXPECT_FALSE(installation.paths().useSharedDb) << "also behind a change of the settings";
    installation.takeShareBack();
    EXPECT_EQ(installation.paths().sharedPath, temp / "share");
    EXPECT_TRUE(installation.paths().useSharedDb);
}

TEST_F(ShareGateTest, AShareThatAnswersLateClosesTheWord) {
    const auto share = test::HangingShare::mount(temp / "share");
    if (share == nullptr)
        GTEST_SKIP();
    fake.loop.onTurn = [&](int turn) {
        if (turn == 2)
            fake.clock.tick += kShareSilence;
        if (turn == 4)
            share->goAway();
    };
    EXPECT_TRUE(pass());
    EXPECT_NE(wait.text, "");
    EXPECT_TRUE(wait.hidden);
    EXPECT_TRUE(installation.paths().useSharedDb);
}

TEST_F(ShareGateTest, AnArchiveFolderThatHangsGivesWayToOneBelowTheLocalPath) {
    EXPECT_TRUE(passArchiveGate(installation, fake.surroundings, wait)) << "that it is not there is an answer";
    EXPECT_EQ(installation.paths().zipPath, temp / "zip");
    makeFolder("zip");
    const auto share = test::HangingShare::mount(temp / "zip");
    if (share == nullptr)
        GTEST_SKIP();
    fake.loop.onTurn = [&](int turn) {
        fake.clock.tick += turn == 2 ? kShareSilence : 0;
        wait.pressed = turn >= 4;
    };
    EXPECT_FALSE(passArchiveGate(installation, fake.surroundings, wait));
    EXPECT_EQ(wait.text.find("The archive folder " + (temp / "zip").native() + " does not answer."), 0U) << wait.text;
    EXPECT_TRUE(wait.hidden);
    EXPECT_EQ(installation.paths().zipPath, temp / "local/Archives");
    EXPECT_EQ(installation.folder(SettingsFolder::Archive), temp / "zip") << "the record is not changed";
    EXPECT_TRUE(installation.paths().useSharedDb) << "the database is another folder";
    installation.settings.localPath.assign(pageFromPath(temp / "other"));
    installation.refreshPathVariables();
    EXPECT_EQ(installation.paths().zipPath, temp / "other/Archives") << "also behind a change of the settings";
    installation.setFolder(SettingsFolder::Archive, temp / "zip");
    installation.refreshPathVariables();
    EXPECT_EQ(installation.paths().zipPath, temp / "zip") << "whoever stores a folder wants it";
}

}  // namespace
}  // namespace quillon
