// SPDX-License-Identifier: MIT
// The files of the manual update: term files loaded, saved and deleted, and samples.
#include "editors/manual_update.h"

#include "editors/manual_update_fixture.h"

using namespace quillon;
using quillon::test::ManualUpdateTest;
using Focus = ManualUpdate::Focus;
using Opened = ManualUpdate::Opened;

namespace {

constexpr const char* kLocal = "local/Database/jpg.dat";
constexpr const char* kShared = "share/Database/jpg.dat";

TEST_F(ManualUpdateTest, OpeningAndDoneWritesAnEmptyFileWithoutAName) {
    editor.load();
    editor.save();
    EXPECT_EQ(folders.bytesOf("local/Database/.dat"), "");
    EXPECT_FALSE(folders.has("share/Database/.dat"));
    folders.share(true);
    editor.load();
    editor.save();
    EXPECT_EQ(folders.bytesOf("share/Database/.dat"), "");
}

TEST_F(ManualUpdateTest, TypingAnExtensionLoadsItsTerms) {
    folders.folder.write(kLocal, "1,JFIF,T\r\nnonsense\r\n0,FFD8,H\r\n");
    editor.load();
    editor.setExtension("JPG");
    EXPECT_EQ(listed(), "1,JFIF,T\r\n0,FFD8,H\r\n");
    EXPECT_EQ(editor.extension(), "JPG");
    editor.setExtension("jp");
    EXPECT_TRUE(editor.rows().empty());
}

TEST_F(ManualUpdateTest, TypingThrowsAwayTheRows) {
    editor.setExtension("jp");
    EXPECT_EQ(add("1", "x"), Focus::Stays);
    editor.setExtension("jpg");
    EXPECT_TRUE(editor.rows().empty());
    EXPECT_EQ(editor.current(), -1);
}

TEST_F(ManualUpdateTest, TheSharedFolderIsReadWithSharingOnWhenItExists) {
    folders.folder.write(kLocal, "1,local,T\r\n");
    folders.share(true);
    editor.setExtension("jpg");
    EXPECT_EQ(listed(), "");
    folders.folder.write(kShared, "1,shared,T\r\n");
    editor.setExtension("jpg");
    EXPECT_EQ(listed(), "1,shared,T\r\n");
    std::filesystem::remove_all(folders.folder / "share");
    editor.setExtension("jpg");
    EXPECT_EQ(listed(), "1,local,T\r\n");
}

TEST_F(ManualUpdateTest, AnExtensionNeverLeadsOutOfTheDatabaseFolders) {
    folders.share(true);
    folders.folder.write("local/secret.dat", "1,MZ,T\r\n");
    for (const char* name : {"../secret", "a/b", "a\\b", "/etc/x", "..\\x"}) {
        editor.setExtension(name);
        EXPECT_TRUE(editor.rows().empty()) << name;
        editor.save();
        editor.deleteAllTerms = true;
        folders.dialogs.expectBox("Delete entry",
                                  "Are you sure you want to delete all terms for " + std::string(name) + " ?",
                                  BoxAnswer::Yes, BoxStyle::Question, BoxButtons::YesNo);
        editor.deleteTerms();
    }
    EXPECT_EQ(folders.bytesOf("local/secret.dat"), "1,MZ,T\r\n");
    EXPECT_TRUE(listEntries(folders.folder / "local/Database")->empty());
    EXPECT_TRUE(listEntries(folders.folder / "share/Database")->empty());
    EXPECT_EQ(listEntries(folders.folder / "local")->size(), 3U);
}

TEST_F(ManualUpdateTest, ASampleOf511BytesIsRefusedAndOneOf512IsShown) {
    const NativePath small = folders.folder.write("small.jpg", std::string(511, 'x'));
    EXPECT_EQ(openRefused(small, "File too small", "File needs to be at least 512 bytes"), Opened::Nothing);
    EXPECT_EQ(editor.sample(), "");
    const NativePath enough = folders.folder.write("enough.jpg", std::string(512, 'x'));
    EXPECT_EQ(open(enough), Opened::Shown);
    EXPECT_EQ(editor.sample(), std::string(512, 'x'));
    EXPECT_EQ(editor.extension(), "jpg");
}

TEST_F(ManualUpdateTest, ASampleLoadsItsTermsAndLeavesTheDumpWithoutALineEnd) {
    folders.folder.write(kLocal, "1,JFIF,T\r\n");
    std::string bytes;
    for (int i = 0; i < 600; ++i) bytes.push_back(static_cast<char>(i));
    EXPECT_EQ(open(folders.folder.write("photo.JPG", bytes)), Opened::Shown);
    EXPECT_EQ(listed(), "1,JFIF,T\r\n");
    EXPECT_EQ(editor.extension(), "JPG");
    EXPECT_EQ(folders.bytesOf("app/fDump.bin"), bytes.substr(0, 512));
    EXPECT_EQ(folders.dialogs.lastPick().startFolder, NativePath("/"));
}

TEST_F(ManualUpdateTest, ACancelAndAPathThatDoesNotExistEndTheActionWithoutAWord) {
    editor.setExtension("jpg");
    folders.dialogs.expectFiles("open a file to view headers", {});
    EXPECT_EQ(editor.openSample(), Opened::Nothing);
    EXPECT_EQ(open(folders.folder / "missing.jpg"), Opened::Nothing);
    EXPECT_EQ(open({}), Opened::Nothing);
    EXPECT_EQ(editor.extension(), "jpg");
    EXPECT_FALSE(folders.has("app/fDump.bin"));
}

TEST_F(ManualUpdateTest, ASampleWithoutExtensionIsRefused) {
    const NativePath file = folders.folder.write("README", std::string(600, 'x'));
    ASSERT_EQ(file.native().find('.'), std::string::npos);
    EXPECT_EQ(openRefused(file, "No Extension", "File does not have any extension"), Opened::Nothing);
}

TEST_F(ManualUpdateTest, ADotInAFolderNameGivesAPartOfThePath) {
    EXPECT_EQ(open(folders.folder.write("case.1/README", std::string(600, 'x'))), Opened::Shown);
    EXPECT_EQ(editor.extension(), "1/README");
    EXPECT_TRUE(editor.rows().empty());
    editor.save();
    EXPECT_TRUE(listEntries(folders.folder / "local/Database")->empty());
}

TEST_F(ManualUpdateTest, ASampleThatCannotBeReadChangesNothing) {
    editor.setExtension("jpg");
    const NativePath notAFile = folders.folder / "folder.bmp";
    for (int i = 0; i < 40; ++i) folders.folder.write("folder.bmp/" + std::to_string(i), "");
    if (fileSize(notAFile).value_or(0) < 512)
        GTEST_SKIP() << "a folder of this file system has no size";
    EXPECT_EQ(open(notAFile), Opened::Failed);
    EXPECT_EQ(editor.sample(), "");
    EXPECT_EQ(editor.extension(), "jpg");
}

TEST_F(ManualUpdateTest, ALinkToASampleIsAsGoodAsTheSample) {
    folders.folder.write("real.bin", std::string(512, 'r'));
    std::filesystem::create_symlink(folders.folder / "real.bin", folders.folder / "link.gif");
    EXPECT_EQ(open(folders.folder / "link.gif"), Opened::Shown);
    EXPECT_EQ(editor.extension(), "gif");
    EXPECT_EQ(editor.sample(), std::string(512, 'r'));
}

TEST_F(ManualUpdateTest, WithSharingOnASampleLoadsTheSharedTermsOnly) {
    folders.share(true);
    folders.folder.write(kLocal, "1,JFIF,T\r\n");
    EXPECT_EQ(open(folders.folder.write("photo.jpg", std::string(512, 'x'))), Opened::Shown);
    EXPECT_EQ(editor.extension(), "jpg");
    EXPECT_TRUE(editor.rows().empty());
}

constexpr const char* kDeleteAll = "Are you sure you want to delete all terms for jpg ?";
constexpr const char* kDeleteOne = "Are you sure you want to delete the term one ?";

TEST_F(ManualUpdateTest, TheRemovedRowStaysOnTheDisk) {
    folders.share(true);
    folders.folder.write(kShared, "1,one,T\r\n2,two,T\r\n");
    editor.setExtension("jpg");
    editor.selectRow(0);
    folders.dialogs.expectBox("Delete entry", kDeleteOne, BoxAnswer::Yes, BoxStyle::Question, BoxButtons::YesNo);
    editor.deleteTerms();
    EXPECT_EQ(listed(), "2,two,T\r\n");
    EXPECT_EQ(folders.bytesOf(kLocal), "1,one,T\r\n2,two,T\r\n");
    EXPECT_EQ(folders.bytesOf(kShared), "1,one,T\r\n2,two,T\r\n");
    editor.save();
    EXPECT_EQ(folders.bytesOf(kLocal), "2,two,T\r\n");
    EXPECT_EQ(folders.bytesOf(kShared), "2,two,T\r\n");
    EXPECT_FALSE(folders.has("local/Kept"));
}

TEST_F(ManualUpdateTest, ANoLeavesTheRowButTheLocalFileIsWritten) {
    folders.folder.write(kLocal, "1,one,T\r\n");
    editor.setExtension("jpg");
    add("2", "two");
    editor.selectRow(0);
    folders.dialogs.expectBox("Delete entry", kDeleteOne, BoxAnswer::No);
    editor.deleteTerms();
    EXPECT_EQ(listed(), "1,one,T\r\n2,two,T\r\n");
    EXPECT_EQ(folders.bytesOf(kLocal), "1,one,T\r\n2,two,T\r\n");
}

TEST_F(ManualUpdateTest, WithoutACurrentRowDeleteOnlyWritesTheLocalFile) {
    editor.setExtension("jpg");
    add("2", "two");
    editor.deleteTerms();
    EXPECT_EQ(folders.bytesOf(kLocal), "2,two,T\r\n");
    std::filesystem::remove_all(folders.folder / "local/Database");
    editor.deleteTerms();
    EXPECT_FALSE(folders.has("local/Database"));
}

TEST_F(ManualUpdateTest, DeletingAllTermsWritesTheLocalFileAgain) {
    folders.share(true);
    folders.folder.write(kLocal, "9,only here,T\r\n");
    folders.folder.write(kShared, "1,one,T\r\n");
    editor.setExtension("jpg");
    editor.deleteAllTerms = true;
    folders.dialogs.expectBox("Delete entry", kDeleteAll, BoxAnswer::Yes, BoxStyle::Question, BoxButtons::YesNo);
    editor.deleteTerms();
    EXPECT_EQ(listed(), "1,one,T\r\n");
    EXPECT_FALSE(folders.has(kShared));
    EXPECT_EQ(folders.bytesOf(kLocal), "1,one,T\r\n");
    EXPECT_EQ(folders.bytesOf(folders.keptName("jpg.dat")), "1,one,T\r\n");
    EXPECT_EQ(folders.bytesOf(folders.keptName("Database/jpg.dat")), "9,only here,T\r\n");
    editor.save();
    EXPECT_EQ(folders.bytesOf(kShared), "1,one,T\r\n");
}

TEST_F(ManualUpdateTest, ANoToDeletingAllEndsTheWholeAction) {
    editor.setExtension("jpg");
    add("1", "one");
    editor.selectRow(0);
    editor.deleteAllTerms = true;
    folders.dialogs.expectBox("Delete entry", kDeleteAll, BoxAnswer::No);
    editor.deleteTerms();
    EXPECT_FALSE(folders.has(kLocal));
    EXPECT_EQ(editor.rows().size(), 1U);
}

TEST_F(ManualUpdateTest, DeletingAllAndTheCurrentRowAsksTwice) {
    folders.folder.write(kLocal, "1,one,T\r\n");
    folders.folder.write(kShared, "8,untouched,T\r\n");
    editor.setExtension("jpg");
    editor.selectRow(0);
    editor.deleteAllTerms = true;
    folders.dialogs.expectBox("Delete entry", kDeleteAll, BoxAnswer::Yes);
    folders.dialogs.expectBox("Delete entry", kDeleteOne, BoxAnswer::Yes);
    editor.deleteTerms();
    EXPECT_TRUE(editor.rows().empty());
    EXPECT_EQ(folders.bytesOf(kShared), "8,untouched,T\r\n");
}

TEST_F(ManualUpdateTest, AnEmptyListIsSavedAndMarksTheExtensionAsKnown) {
    folders.share(true);
    editor.setExtension("jpg");
    editor.save();
    EXPECT_EQ(folders.bytesOf(kLocal), "");
    EXPECT_EQ(folders.bytesOf(kShared), "");
}

TEST_F(ManualUpdateTest, TermsThatWereNotShownAreKeptBeforeAnEmptyListReplacesThem) {
    folders.share(true);
    folders.folder.write(kLocal, "1,only here,T\r\n");
    editor.setExtension("jpg");
    editor.save();
    EXPECT_EQ(folders.bytesOf(kLocal), "");
    EXPECT_EQ(folders.bytesOf(folders.keptName("Database/jpg.dat")), "1,only here,T\r\n");
}

TEST_F(ManualUpdateTest, ACopyThatFailsDoesNotHoldBackTheOther) {
    folders.share(true);
    editor.setExtension("jpg");
    add("1", "one");
    std::filesystem::create_directory(folders.folder / kShared);
    editor.save();
    EXPECT_EQ(folders.bytesOf(kLocal), "1,one,T\r\n");
    std::filesystem::remove_all(folders.folder / "share");
    editor.save();
    EXPECT_FALSE(folders.has("share"));
}

}  // namespace
