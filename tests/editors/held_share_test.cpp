// SPDX-License-Identifier: MIT
// What becomes of a screen's list while another computer has its turn at the share, and is not waited for.
#include <chrono>
#include <filesystem>
#include <future>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

#include "editors/lost_update_fixture.h"
#include "editors/sector_markers_editor.h"
#include "editors/skip_list_editor.h"
#include "platform/folders.h"
#include "support/failing_files.h"
#include "support/waiting_dialogs.h"

namespace quillon::test {
namespace {

constexpr std::chrono::milliseconds kLongest{60'000};

// Another computer has its turn at the share.
class HeldShareTest : public LostUpdateTest {
protected:
    HeldShareTest() {
        std::filesystem::create_directories(theirs_);
        dialogs_.onWait = [this](const PatientWait& wait) {
            const std::string who = "Waiting for LAB7, ";
            for (int looks = 0; !wait.text().starts_with(who) && looks < 60'000; ++looks)
                EXPECT_FALSE(wait.isOver(std::chrono::milliseconds(1)));
            EXPECT_TRUE(wait.text().starts_with(who)) << wait.text();
            ++waits_;
            return false;
        };
    }
    void expectNothingSaved() {
        expectWarning("Extension Editor",
                      "Nothing was saved, as another computer was not waited for. What was entered stays here until it "
                      "is saved, or this screen is closed.");
    }
    void openHeld() {
        openShared("1,AAA,T\r\n");
        waiting_.load(handover);
    }
    void addOurs() {
        waiting_.state.position = "1";
        waiting_.state.term = "OURS";
        waiting_.state.type = kTextType;
        waiting_.addOrUpdate();
    }
    // What another thread still does in these folders ends first.
    void TearDown() override {
        for (int looks = 0; listEntries(history_)->size() > 1 && looks < 60'000; ++looks)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    void giveBack() {
        std::filesystem::rename(history_ / "lock", folders.folder / "given back");
        dialogs_.noticedAfter = kLongest;
    }

    const NativePath history_ = folders.folder / "share/Settings/History";
    const NativePath theirs_ = history_ / "lock/owner.quillon-save-LAB7-4711-19a3b-0";
    WaitingDialogs dialogs_{folders.dialogs};
    ExtensionEditor waiting_{folders.installation, dialogs_, folders.kept, job.messages, host, [] {}};
    int waits_ = 0;
};

TEST_F(HeldShareTest, WhoDoesNotWaitWritesNothingAndLosesNothing) {
    openHeld();
    addOurs();
    expectNothingSaved();
    EXPECT_FALSE(waiting_.save());
    EXPECT_EQ(waits_, 1);
    expectBoth("1,AAA,T\r\n");
    EXPECT_EQ(termFileBytes(waiting_.state.rows), "1,AAA,T\r\n1,OURS,T\r\n");
    EXPECT_FALSE(folders.has("local/Settings/History/lock")) << "nobody waits for us meanwhile";
    giveBack();
    EXPECT_TRUE(waiting_.save());
    EXPECT_EQ(waits_, 1);
    expectBoth("1,AAA,T\r\n1,OURS,T\r\n");
}

TEST_F(HeldShareTest, WhoWaitsSavesAsAlways) {
    openHeld();
    addOurs();
    dialogs_.onWait = [&](const PatientWait& wait) {
        theyWrite("1,AAA,T\r\n1,THEIRS,T\r\n");
        giveBack();
        EXPECT_TRUE(wait.isOver(kLongest));
        return true;
    };
    EXPECT_TRUE(waiting_.save());
    expectBoth("1,AAA,T\r\n1,THEIRS,T\r\n1,OURS,T\r\n");
}

TEST_F(HeldShareTest, AFileIsNotTakenAwayWithoutWaiting) {
    openHeld();
    waiting_.selectRow(0);
    expectQuestion("Delete entry", "Delete entry for qlx ?", BoxAnswer::Yes);
    expectWarning("Extension Editor",
                  "Nothing was changed, as another computer was not waited for. It is done when this screen saves.");
    waiting_.deleteRow();
    expectBoth("1,AAA,T\r\n");
    giveBack();
    EXPECT_TRUE(waiting_.save()) << "what was left is done now";
    EXPECT_FALSE(folders.has(kSharedTerms));
    EXPECT_EQ(folders.bytesOf(folders.keptName("qlx.dat")), "1,AAA,T\r\n");
    EXPECT_EQ(folders.bytesOf(kLocalTerms), "1,AAA,T\r\n") << "the local one stays, as without a wait";
}

TEST_F(HeldShareTest, WhoAddsATermAfterADeletionThatWasLeftSavesIt) {
    openHeld();
    waiting_.selectRow(0);
    expectQuestion("Delete entry", "Delete entry for qlx ?", BoxAnswer::Yes);
    expectWarning("Extension Editor",
                  "Nothing was changed, as another computer was not waited for. It is done when this screen saves.");
    waiting_.deleteRow();
    addOurs();
    giveBack();
    EXPECT_TRUE(waiting_.save());
    expectBoth("1,OURS,T\r\n");
    EXPECT_TRUE(waiting_.save());
    expectBoth("1,OURS,T\r\n");
}

TEST_F(HeldShareTest, WhoDoesNotWaitIsAskedWhetherTheScreenClosesUnsaved) {
    for (const bool closes : {false, true}) {
        openHeld();
        addOurs();
        expectNothingSaved();
        folders.dialogs.expectBox("Close without saving ?",
                                  "What was done here is not saved yet. Do you want to close this screen and drop it ?",
                                  closes ? BoxAnswer::Yes : BoxAnswer::No, BoxStyle::Warning, BoxButtons::YesNo);
        EXPECT_EQ(waiting_.saveToClose(), closes);
        expectBoth("1,AAA,T\r\n");
    }
    giveBack();
    EXPECT_TRUE(waiting_.saveToClose()) << "without a word";
    expectBoth("1,AAA,T\r\n1,OURS,T\r\n");
}

TEST_F(HeldShareTest, AListThatIsSavedAtOnceIsSavedAgainAsItsScreenCloses) {
    const char* const file = "share/Settings/SkipList.dat";
    folders.folder.write(file, "a\r\n");
    SkipListEditor skips(folders.installation, dialogs_, folders.kept);
    skips.load();
    EXPECT_TRUE(skips.saveToClose()) << "nothing is to be saved";
    skips.entry = "ours";
    expectWarning("Skip List",
                  "Nothing was saved, as another computer was not waited for. What was entered stays here until it is "
                  "saved, or this screen is closed.");
    skips.addOrUpdate();
    EXPECT_EQ(folders.bytesOf(file), "a\r\n");
    giveBack();
    EXPECT_TRUE(skips.saveToClose());
    EXPECT_EQ(folders.bytesOf(file), "a\r\nours\r\n");
    EXPECT_EQ(waits_, 1);
}

TEST_F(HeldShareTest, MarkersThatWereNotSavedAreToldAndSavedAsTheScreenCloses) {
    const char* const file = "share/Settings/BadSectors.dat";
    folders.folder.write(file, "0,BAD SECTOR,T,R,bad\r\n");
    SectorMarkersEditor markers(folders.installation, dialogs_, folders.kept);
    markers.load();
    EXPECT_EQ(markers.remark(), "");
    markers.fields = {.name = "ours", .marker = "UNREAD"};
    expectWarning("Bad Sector Markers",
                  "Nothing was saved, as another computer was not waited for. What was entered stays here until it is "
                  "saved, or this screen is closed.");
    markers.addOrUpdate();
    EXPECT_EQ(markers.remark(), "Not saved yet : another computer was not waited for");
    giveBack();
    EXPECT_TRUE(markers.saveToClose());
    EXPECT_EQ(markers.remark(), "");
    EXPECT_EQ(folders.bytesOf(file), "0,BAD SECTOR,T,R,bad\r\n0,UNREAD,T,R,ours\r\n");
}

// The share has given the turn, and answers no longer.
TEST_F(LostUpdateTest, ASaveThatHangsIsSatOutBesideTheScreensThread) {
    WaitingDialogs dialogs(folders.dialogs);
    ExtensionEditor waiting(folders.installation, dialogs, folders.kept, job.messages, host, [] {});
    openShared("1,AAA,T\r\n");
    waiting.load(handover);
    waiting.state.position = "1";
    waiting.state.term = "OURS";
    waiting.state.type = kTextType;
    waiting.addOrUpdate();
    std::promise<void> answer;
    const auto answers = answer.get_future().share();
    FailingFiles disk;
    disk.ahead("sync", [&answers] { answers.wait(); });
    std::string told;
    bool isAlive = false;
    dialogs.onWait = [&](const PatientWait& wait) {
        if (!wait.leave.empty())
            return wait.isOver(kLongest);  // for the turn, which comes
        if (std::exchange(isAlive, true))
            return wait.isOver(kLongest);
        told = wait.text();
        EXPECT_GT(wait.untold, std::chrono::seconds(1)) << "nobody is told of a disk that is merely busy";
        EXPECT_FALSE(wait.isOver(std::chrono::milliseconds(0)));
        answer.set_value();
        return false;  // a box that somebody closes: what has begun is waited for all the same
    };
    EXPECT_TRUE(waiting.save());
    EXPECT_TRUE(isAlive);
    EXPECT_TRUE(told.starts_with("Waiting for " + (folders.folder / "share/Database").native() + ",")) << told;
    expectBoth("1,AAA,T\r\n1,OURS,T\r\n");
}

}  // namespace
}  // namespace quillon::test
