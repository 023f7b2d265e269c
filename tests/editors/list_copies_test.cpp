// SPDX-License-Identifier: MIT
// Two workstations that teach at once: what the screens save when a copy is not the one that they loaded.
#include "editors/list_copies.h"

#include <filesystem>
#include <functional>

#include <gtest/gtest.h>

#include "app/database_history.h"
#include "editors/common_headers_editor.h"
#include "editors/lost_update_fixture.h"
#include "editors/manual_update.h"
#include "editors/report_messages_editor.h"
#include "editors/skip_list_editor.h"
#include "platform/folders.h"
#include "support/failing_files.h"

namespace quillon::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kTitle = "Changed by another workstation";

TEST_F(LostUpdateTest, WhatAnotherWorkstationAddedStandsAheadOfOurs) {
    openShared("1,AAA,T\r\n");
    add("OURS");
    theyWrite("1,AAA,T\r\n1,THEIRS,T\r\n");
    editor.save();
    expectBoth("1,AAA,T\r\n1,THEIRS,T\r\n1,OURS,T\r\n");
    EXPECT_EQ(listed(), "1,AAA,T\r\n1,THEIRS,T\r\n1,OURS,T\r\n");
    EXPECT_FALSE(folders.has("local/Kept")) << "nothing is gone";
}

// As some shares have it when a file is replaced: there is none for a moment.
TEST_F(LostUpdateTest, ASharedFileThatIsBeingReplacedIsNotTakenForADeletedOne) {
    openShared("1,AAA,T\r\n1,BBB,T\r\n");
    add("OURS");
    fs::remove(folders.folder / kSharedTerms);
    FailingFiles files;
    files.ahead("wait", [this] { theyWrite("1,AAA,T\r\n1,BBB,T\r\n1,THEIRS,T\r\n"); });
    editor.save();
    EXPECT_EQ(files.waits(), 1);
    expectBoth("1,AAA,T\r\n1,BBB,T\r\n1,THEIRS,T\r\n1,OURS,T\r\n");
}

TEST_F(LostUpdateTest, ASharedFileThatCannotBeReadForAMomentIsLookedAtAgain) {
    FailingFiles files;
    const auto place = folders.folder / kSharedTerms;
    folders.folder.write(kSharedTerms, "1,AAA,T\r\n");
    fs::rename(place, place.native() + ".away");
    fs::create_directory(place);  // no file, and no missing one
    files.ahead("wait", [&] {
        fs::remove(place);
        fs::rename(place.native() + ".away", place);
    });
    openTerms("1,AAA,T\r\n");
    EXPECT_EQ(files.waits(), 1);
    add("OURS");
    theyWrite("1,AAA,T\r\n1,THEIRS,T\r\n");
    editor.save();
    expectBoth("1,AAA,T\r\n1,THEIRS,T\r\n1,OURS,T\r\n");
}

// None while it is replaced, as the screen opens: the untouched list is not to take the place of what comes back.
TEST_F(LostUpdateTest, ASharedFileThatIsBeingReplacedAsTheScreenOpensIsSeen) {
    fs::create_directories(folders.folder / "share/Settings/History/lock");
    FailingFiles files;
    files.ahead("wait", [this] { theyWrite("1,AAA,T\r\n1,THEIRS,T\r\n"); });
    openTerms("1,AAA,T\r\n");
    EXPECT_EQ(files.waits(), 1);
    fs::remove_all(folders.folder / "share/Settings/History/lock");
    editor.save();
    expectBoth("1,AAA,T\r\n1,THEIRS,T\r\n");
}

TEST_F(LostUpdateTest, AShareThatHasNoListAndIsNotBeingChangedIsNotWaitedFor) {
    FailingFiles files;
    openTerms("1,AAA,T\r\n");
    EXPECT_EQ(files.waits(), 0);
}

// Nobody knows then whether others are writing.
TEST_F(LostUpdateTest, AShareThatDoesNotAnswerIsNotWrittenTo) {
    openShared("1,AAA,T\r\n");
    add("OURS");
    {
        FailingFiles files;
        files.refuse("rename", EIO);
        editor.save();
    }
    EXPECT_EQ(folders.bytesOf(kSharedTerms), "1,AAA,T\r\n");
    theyWrite("1,AAA,T\r\n1,THEIRS,T\r\n");
    editor.save();
    expectBoth("1,AAA,T\r\n1,THEIRS,T\r\n1,OURS,T\r\n");
}

TEST_F(LostUpdateTest, ASharedFileThatCannotBeReadAtTheSaveIsLeftAlone) {
    openShared("1,AAA,T\r\n");
    add("OURS");
    const auto place = folders.folder / kSharedTerms;
    fs::rename(place, place.native() + ".away");
    fs::create_directory(place);  // no file, and no missing one
    {
        FailingFiles files;
        editor.save();
    }
    EXPECT_TRUE(fs::is_directory(place));
    EXPECT_EQ(folders.bytesOf(kLocalTerms), "1,AAA,T\r\n1,OURS,T\r\n");
    fs::remove(place);
    fs::rename(place.native() + ".away", place);
    editor.save();
    expectBoth("1,AAA,T\r\n1,OURS,T\r\n");
}

TEST_F(LostUpdateTest, WhatCouldNotBeReadAsTheScreenOpenedIsNotOverwritten) {
    const auto place = folders.folder / kSharedTerms;
    fs::create_directory(place);  // no file, and no missing one
    {
        FailingFiles files;  // nobody waits
        openTerms("1,AAA,T\r\n1,HERE,T\r\n");
    }
    fs::remove(place);
    theyWrite("1,AAA,T\r\n1,THEIRS,T\r\n");
    add("OURS");
    editor.save();
    expectBoth("1,AAA,T\r\n1,THEIRS,T\r\n1,HERE,T\r\n1,OURS,T\r\n");
}

TEST_F(LostUpdateTest, NothingIsToldOfAHistoryThatNothingWasToBeNotedIn) {
    openShared("1,AAA,T\r\n");
    folders.folder.write("share/Settings/History", "a file where the folder should be");
    editor.save();
    expectBoth("1,AAA,T\r\n");
}

// The local copy is that of the last job; others have taught the share since.
TEST_F(LostUpdateTest, WhatTheShareWasTaughtSinceItWasFetchedStays) {
    folders.folder.write(kSharedTerms, "1,AAA,T\r\n1,THEIRS,T\r\n");
    openTerms("1,AAA,T\r\n1,HERE,T\r\n");
    EXPECT_EQ(listed(), "1,AAA,T\r\n1,HERE,T\r\n") << "the screen shows the local terms";
    add("OURS");
    editor.save();
    expectBoth("1,AAA,T\r\n1,THEIRS,T\r\n1,HERE,T\r\n1,OURS,T\r\n");
}

TEST_F(LostUpdateTest, AnExtensionThatWasNeverFetchedKeepsWhatTheShareHas) {
    folders.folder.write(kSharedTerms, "1,THEIRS,T\r\n");
    open();
    EXPECT_EQ(listed(), "");
    add("OURS");
    editor.save();
    expectBoth("1,THEIRS,T\r\n1,OURS,T\r\n");
}

TEST_F(LostUpdateTest, AnExtensionThatBothBeginHasTheTermsOfBoth) {
    open();
    add("OURS");
    theyWrite("1,THEIRS,T\r\n");
    editor.save();
    expectBoth("1,THEIRS,T\r\n1,OURS,T\r\n");
}

TEST_F(LostUpdateTest, ARecordThatOneSideDeletedIsGone) {
    openShared("1,AAA,T\r\n1,BBB,T\r\n1,CCC,T\r\n");
    editor.selectRow(0);
    expectQuestion("Delete entry", "Delete entry for qlx ?", BoxAnswer::Yes);
    editor.deleteRow();
    theyWrite("1,AAA,T\r\n1,BBB,T\r\n");
    editor.save();
    expectBoth("1,BBB,T\r\n");
}

TEST_F(LostUpdateTest, TermsThatAnotherWorkstationDeletedAltogetherAreGone) {
    openShared("1,AAA,T\r\n");
    add("OURS");
    std::filesystem::remove(folders.folder / kSharedTerms);
    editor.save();
    expectBoth("1,OURS,T\r\n");
}

TEST_F(LostUpdateTest, AShareThatWentAwayDeletesNothing) {
    openShared("1,AAA,T\r\n");
    add("OURS");
    std::filesystem::remove_all(folders.folder / "share");
    editor.save();
    EXPECT_EQ(folders.bytesOf(kLocalTerms), "1,AAA,T\r\n1,OURS,T\r\n");
}

TEST_F(LostUpdateTest, WhatAJobFetchedMeanwhileIsNoLoss) {
    openShared("1,AAA,T\r\n");
    add("OURS");
    theyWrite("1,AAA,T\r\n1,THEIRS,T\r\n");
    folders.folder.write(kLocalTerms, "1,AAA,T\r\n1,THEIRS,T\r\n");
    editor.save();
    expectBoth("1,AAA,T\r\n1,THEIRS,T\r\n1,OURS,T\r\n");
}

TEST_F(LostUpdateTest, ALocalFileThatAJobTookAwayIsWrittenAgain) {
    openTerms("1,AAA,T\r\n");
    std::filesystem::remove(folders.folder / kLocalTerms);
    add("OURS");
    editor.save();
    expectBoth("1,AAA,T\r\n1,OURS,T\r\n");
}

TEST_F(LostUpdateTest, ARecordChangedByBothAsksWhichOneStands) {
    for (const auto& [answer, stands] : {std::pair{BoxAnswer::Yes, "1,OURS,T\r\n1,MORE,T\r\n"},
                                         std::pair{BoxAnswer::No, "1,THEIRS,T\r\n1,MORE,T\r\n"}}) {
        openShared("1,AAA,T\r\n");
        editor.selectRow(0);
        add("OURS");
        theyWrite("1,THEIRS,T\r\n1,MORE,T\r\n");
        expectQuestion(kTitle,
                       "While it was open here, another workstation changed the same records of qlx.dat.\r\n"
                       "\r\nBefore : 1,AAA,T\r\nHere : 1,OURS,T\r\nThere : 1,THEIRS,T\r\n"
                       "\r\nDo you want to keep what was entered here ? With No, theirs stands. What either added "
                       "stays.",
                       answer);
        editor.save();
        expectBoth(stands);
    }
}

TEST_F(LostUpdateTest, TwoOrdersAsk) {
    openShared("1,AAA,T\r\n1,BBB,T\r\n1,CCC,T\r\n");
    editor.selectRow(0);
    editor.moveDown();
    theyWrite("1,AAA,T\r\n1,CCC,T\r\n1,BBB,T\r\n");
    expectQuestion(kTitle,
                   "While it was open here, another workstation changed the same records of qlx.dat.\r\n"
                   "\r\nBoth put the records in an order of their own.\r\n"
                   "\r\nDo you want to keep what was entered here ? With No, theirs stands. What either added stays.",
                   BoxAnswer::Yes);
    editor.save();
    expectBoth("1,BBB,T\r\n1,AAA,T\r\n1,CCC,T\r\n");
}

TEST_F(LostUpdateTest, ASecondDoneIsMeasuredByWhatTheFirstWrote) {
    openShared("1,AAA,T\r\n");
    add("ONE");
    editor.save();
    theyWrite("1,AAA,T\r\n1,ONE,T\r\n1,THEIRS,T\r\n");
    add("TWO");
    editor.save();
    expectBoth("1,AAA,T\r\n1,ONE,T\r\n1,THEIRS,T\r\n1,TWO,T\r\n");
}

TEST_F(LostUpdateTest, TheLastTermGoesAndWhatOthersHaveAddedStays) {
    openShared("1,AAA,T\r\n");
    theyWrite("1,AAA,T\r\n1,THEIRS,T\r\n");
    editor.selectRow(0);
    expectQuestion("Delete entry", "Delete entry for qlx ?", BoxAnswer::Yes);
    editor.deleteRow();
    EXPECT_EQ(folders.bytesOf(kSharedTerms), "1,THEIRS,T\r\n");
}

TEST_F(LostUpdateTest, NoLockIsLeftAndADeadOneStopsNobody) {
    std::filesystem::create_directories(folders.folder / "share/Settings/History/lock");
    openShared("1,AAA,T\r\n");
    add("OURS");
    editor.save();
    expectBoth("1,AAA,T\r\n1,OURS,T\r\n");
    EXPECT_FALSE(folders.has("share/Settings/History/lock"));
    EXPECT_FALSE(folders.has("local/Settings/History/lock"));
}

TEST_F(LostUpdateTest, AFolderThatTakesNoLockTakesTheTermsAllTheSame) {
    folders.folder.write("share/Settings/History", "a file where the folder should be");
    openShared("1,AAA,T\r\n");
    add("OURS");
    theyWrite("1,AAA,T\r\n1,THEIRS,T\r\n");
    expectWarning("Database History", ("What was changed is saved, but not noted in the history of the database : " +
                                       (folders.folder / "share/Settings/History").native() + ": File exists")
                                          .c_str());
    editor.save();
    expectBoth("1,AAA,T\r\n1,THEIRS,T\r\n1,OURS,T\r\n");
}

TEST_F(LostUpdateTest, EveryChangeIsNotedOnceInTheHistoryOfItsRoot) {
    openShared("1,AAA,T\r\n");
    add("OURS");
    editor.save();
    editor.save();
    for (const char* settings : {"share/Settings", "local/Settings"}) {
        const auto notes = readHistory(folders.folder / settings, 10);
        ASSERT_EQ(notes.size(), 1U) << settings;
        EXPECT_EQ(notes.front().screen, "Extension Editor");
        EXPECT_EQ(notes.front().job, "J1");
        EXPECT_EQ(notes.front().files,
                  (std::vector<FileChange>{{"Database/qlx.dat", "1,AAA,T\r\n", "1,AAA,T\r\n1,OURS,T\r\n"}}));
    }
}

struct ListCase {
    const char* name;
    const char* file;
    const char* before;
    const char* theirs;
    const char* after;
    std::function<void(EditorFolders&, const std::function<void()>& theyWrite)> act;
};

void teachUpdate(EditorFolders& folders, const std::function<void()>& theyWrite) {
    ManualUpdate update(folders.installation, folders.dialogs, folders.kept);
    update.setExtension("qlx");
    update.fields = {"2", "OURS", false};
    update.addOrUpdate();
    theyWrite();
    update.save();
}
void teachCommon(EditorFolders& folders, const std::function<void()>& theyWrite) {
    CommonHeadersEditor common(folders.installation, folders.dialogs, folders.kept);
    common.load();
    common.fields = {"Ours", "PK", "1", false};
    common.addOrUpdate();
    theyWrite();
    ASSERT_TRUE(common.save());
}
void teachSkips(EditorFolders& folders, const std::function<void()>& theyWrite) {
    SkipListEditor skips(folders.installation, folders.dialogs, folders.kept);
    skips.load();
    theyWrite();
    skips.entry = "ours";
    skips.addOrUpdate();
    EXPECT_EQ(skips.terms().size(), 4U);
}
void teachMessages(EditorFolders& folders, const std::function<void()>& theyWrite) {
    ReportMessages messages;
    ReportMessagesEditor errors(folders.installation, folders.dialogs, folders.kept, messages);
    errors.load();
    errors.texts[0] = "OURS";
    theyWrite();
    ASSERT_TRUE(errors.save());
    EXPECT_EQ(messages[Grade::Good], u"OURS");
    EXPECT_EQ(messages[Grade::Corrupt], u"THEIRS");
}

TEST(LostUpdate, EveryListKeepsWhatTheOtherWorkstationDid) {
    const ListCase cases[] = {
        {"manual update", "Database/qlx.dat", "1,AAA,T\r\n", "1,AAA,T\r\n1,THEIRS,T\r\n",
         "1,AAA,T\r\n1,THEIRS,T\r\n2,OURS,T\r\n", teachUpdate},
        {"common headers", "Settings/CommonHeaders.dat", "1,MZ,T,Program\r\n", "1,MZ,T,Program\r\n1,BM,T,Theirs\r\n",
         "1,MZ,T,Program\r\n1,BM,T,Theirs\r\n1,PK,T,Ours\r\n", teachCommon},
        {"skip list", "Settings/SkipList.dat", "a\r\nz\r\n", "a\r\nz\r\ntheirs\r\n", "a\r\nours\r\ntheirs\r\nz\r\n",
         teachSkips},
        {"report messages", "Settings/Errors.dat", "a\r\nb\r\nc\r\nd\r\ne\r\nf\r\ng\r\nh\r\ni\r\nj:\r\n",
         "a\r\nTHEIRS\r\nc\r\nd\r\ne\r\nf\r\ng\r\nh\r\ni\r\nj:\r\n",
         "OURS\r\nTHEIRS\r\nc\r\nd\r\ne\r\nf\r\ng\r\nh\r\ni\r\nj:\r\n", teachMessages},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        EditorFolders folders(true);
        const std::string local = std::string("local/") + one.file;
        const std::string shared = std::string("share/") + one.file;
        for (const auto& file : {local, shared}) folders.folder.write(file, one.before);
        one.act(folders, [&] { folders.folder.write(shared, one.theirs); });
        EXPECT_EQ(folders.bytesOf(shared), one.after);
        EXPECT_EQ(folders.bytesOf(local), one.after);
    }
}

}  // namespace
}  // namespace quillon::test
