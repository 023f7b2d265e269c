// SPDX-License-Identifier: MIT
#include "editors/skip_list_editor.h"

#include <gtest/gtest.h>

#include "editors/editor_folders.h"

using namespace quillon;
using quillon::test::EditorFolders;

namespace {

constexpr const char* kLocal = "local/Settings/SkipList.dat";
constexpr const char* kShared = "share/Settings/SkipList.dat";

std::vector<std::string> termsOf(const SkipListEditor& editor) {
    std::vector<std::string> terms;
    for (const auto& term : editor.terms()) terms.push_back(toUtf8(term));
    return terms;
}

using Terms = std::vector<std::string>;

class SkipListEditorTest : public testing::Test {
protected:
    void add(const std::string& term) {
        editor.entry = term;
        editor.addOrUpdate();
    }

    EditorFolders folders;
    SkipListEditor editor{folders.installation, folders.dialogs, folders.kept};
};

TEST_F(SkipListEditorTest, LinesAreShownAsTheyStandAndInFileOrder) {
    folders.folder.write(kLocal, "zebra\r\nThumbs.DB\r\n\r\n*.lnk\r\n");
    editor.load();
    EXPECT_EQ(termsOf(editor), (Terms{"zebra", "Thumbs.DB", "", "*.lnk"}));
    EXPECT_EQ(editor.selected(), -1);
    EXPECT_FALSE(editor.updating());
}

TEST_F(SkipListEditorTest, TheSharedCopyIsReadOnlyWithSharingOnAndOnlyWhenItExists) {
    folders.folder.write(kLocal, "local\r\n");
    editor.load();
    EXPECT_EQ(termsOf(editor), Terms{"local"});
    folders.share(true);
    editor.load();
    EXPECT_EQ(termsOf(editor), Terms{"local"});
    folders.folder.write(kShared, "shared\r\n");
    editor.load();
    EXPECT_EQ(termsOf(editor), Terms{"shared"});
    folders.share(false);
    editor.load();
    EXPECT_EQ(termsOf(editor), Terms{"local"});
}

TEST_F(SkipListEditorTest, AMissingFileGivesAnEmptyList) {
    editor.load();
    EXPECT_TRUE(editor.terms().empty());
    std::filesystem::create_directory(folders.folder / kLocal);
    editor.load();
    EXPECT_TRUE(editor.terms().empty());
}

TEST_F(SkipListEditorTest, ATermIsStoredInLowerCaseAndMovesToItsPlace) {
    folders.folder.write(kLocal, "alpha\r\nzebra\r\n");
    editor.load();
    add("Thumbs.DB");
    EXPECT_EQ(folders.bytesOf(kLocal), "alpha\r\nthumbs.db\r\nzebra\r\n");
    EXPECT_EQ(termsOf(editor), (Terms{"alpha", "thumbs.db", "zebra"}));
    EXPECT_EQ(editor.entry, "");
    EXPECT_FALSE(folders.has(kShared));
}

TEST_F(SkipListEditorTest, ATermThatExistsInOtherCaseIsRefused) {
    folders.folder.write(kLocal, "Thumbs.db\r\n");
    editor.load();
    folders.dialogs.expectBox("Quillon", "Term already in skip list. ");
    add("THUMBS.db");
    EXPECT_EQ(folders.bytesOf(kLocal), "Thumbs.db\r\n");
    EXPECT_EQ(editor.entry, "THUMBS.db");
}

TEST_F(SkipListEditorTest, AnEmptyEntryIsSavedAsAnEmptyLine) {
    editor.load();
    add("b");
    add("");
    EXPECT_EQ(folders.bytesOf(kLocal), "\r\nb\r\n");
    EXPECT_EQ(termsOf(editor), (Terms{"", "b"}));
}

TEST_F(SkipListEditorTest, ACharacterOutsideThePageBecomesAQuestionMark) {
    editor.load();
    add("\xC3\x84rger\xD0\x96");
    EXPECT_EQ(folders.bytesOf(kLocal), "\xE4rger?\r\n");
}

TEST_F(SkipListEditorTest, AClickTakesTheTermToTheEntryAndUpdateReplacesIt) {
    folders.folder.write(kLocal, "alpha\r\nbeta\r\n");
    editor.load();
    editor.selectRow(0);
    EXPECT_EQ(editor.entry, "alpha");
    EXPECT_TRUE(editor.updating());
    add("Gamma");
    EXPECT_EQ(folders.bytesOf(kLocal), "beta\r\ngamma\r\n");
    EXPECT_EQ(editor.entry, "");
    EXPECT_FALSE(editor.updating());
}

TEST_F(SkipListEditorTest, AnUpdateDoesNotLookForAnEqualTerm) {
    folders.folder.write(kLocal, "alpha\r\nbeta\r\n");
    editor.load();
    editor.selectRow(0);
    add("BETA");
    EXPECT_EQ(folders.bytesOf(kLocal), "beta\r\nbeta\r\n");
}

TEST_F(SkipListEditorTest, ARowThatDoesNotExistCannotBeSelected) {
    editor.load();
    editor.selectRow(0);
    editor.selectRow(-1);
    EXPECT_FALSE(editor.updating());
    EXPECT_EQ(editor.selected(), -1);
}

TEST_F(SkipListEditorTest, ClearGoesBackToAdd) {
    folders.folder.write(kLocal, "alpha\r\n");
    editor.load();
    editor.selectRow(0);
    editor.clear();
    EXPECT_EQ(editor.entry, "");
    EXPECT_FALSE(editor.updating());
    add("beta");
    EXPECT_EQ(termsOf(editor), (Terms{"alpha", "beta"}));
}

TEST_F(SkipListEditorTest, DeleteAsksAndSaves) {
    folders.folder.write(kLocal, "alpha\r\nbeta\r\n");
    editor.load();
    editor.deleteSelected();
    editor.selectRow(1);
    folders.dialogs.expectBox("Delete term?", "Are you sure you want to delete the term \r\nbeta?", BoxAnswer::No,
                              BoxStyle::Question, BoxButtons::YesNo);
    editor.deleteSelected();
    EXPECT_EQ(folders.bytesOf(kLocal), "alpha\r\nbeta\r\n");
    folders.dialogs.expectBox("Delete term?", "Are you sure you want to delete the term \r\nbeta?", BoxAnswer::Yes);
    editor.deleteSelected();
    EXPECT_EQ(folders.bytesOf(kLocal), "alpha\r\n");
    EXPECT_EQ(editor.entry, "");
    EXPECT_FALSE(editor.updating());
    EXPECT_EQ(editor.selected(), -1);
}

TEST_F(SkipListEditorTest, WithSharingOnBothFilesAreWritten) {
    folders.share(true);
    folders.folder.write(kShared, "shared\r\n");
    editor.load();
    add("new");
    EXPECT_EQ(folders.bytesOf(kLocal), "new\r\nshared\r\n");
    EXPECT_EQ(folders.bytesOf(kShared), "new\r\nshared\r\n");
}

TEST_F(SkipListEditorTest, ALocalListThatWasNotShownIsKeptBeforeTheSharedOneReplacesIt) {
    folders.share(true);
    folders.folder.write(kLocal, "only here\r\n");
    folders.folder.write(kShared, "shared\r\n");
    editor.load();
    add("new");
    EXPECT_EQ(folders.bytesOf(folders.keptName("Settings/SkipList.dat")), "only here\r\n");
}

TEST_F(SkipListEditorTest, APathThatCannotBeWrittenIsToldAndTheNextOneIsWritten) {
    folders.share(true);
    std::filesystem::remove_all(folders.folder / "local/Settings");
    editor.load();
    folders.dialogs.expectBox("Error", "Unable to find Skip list path (" + (folders.folder / kLocal).string() + ").",
                              BoxAnswer::Ok, BoxStyle::Warning);
    add("term");
    EXPECT_EQ(folders.bytesOf(kShared), "term\r\n");
    EXPECT_EQ(termsOf(editor), Terms{"term"});
}

TEST_F(SkipListEditorTest, AnImportAsksOnlyWhenTheListHasRows) {
    const NativePath chosen = folders.folder.write("other.txt", "X\r\na\r\n");
    editor.load();
    folders.dialogs.expectFiles("Open Skip List", {chosen});
    EXPECT_TRUE(editor.loadFromFile());
    EXPECT_EQ(folders.dialogs.lastPick().filter, "All Files(*.*)|*.*");
    EXPECT_EQ(termsOf(editor), (Terms{"X", "a"}));
    EXPECT_EQ(folders.bytesOf(kLocal), "X\r\na\r\n");

    const char* question = "Importing a skip list will overwrite the existing skip list. Do you want to continue?";
    folders.dialogs.expectBox("Overwrite existing skip list", question, BoxAnswer::No);
    EXPECT_TRUE(editor.loadFromFile());
    folders.dialogs.expectBox("Overwrite existing skip list", question, BoxAnswer::Yes);
    folders.dialogs.expectFiles("Open Skip List", {});
    EXPECT_TRUE(editor.loadFromFile());
    EXPECT_EQ(folders.bytesOf(kLocal), "X\r\na\r\n");
    EXPECT_FALSE(folders.has("local/Kept"));
}

TEST_F(SkipListEditorTest, AnImportKeepsTheOldListAndGoesToTheFileThatIsRead) {
    folders.share(true);
    folders.folder.write(kLocal, "local\r\n");
    folders.folder.write(kShared, "shared\r\n");
    const NativePath chosen = folders.folder.write("other.txt", "imported\r\n");
    editor.load();
    editor.selectRow(0);
    folders.dialogs.expectBox("Overwrite existing skip list",
                              "Importing a skip list will overwrite the existing skip list. Do you want to continue?",
                              BoxAnswer::Yes);
    folders.dialogs.expectFiles("Open Skip List", {chosen});
    EXPECT_TRUE(editor.loadFromFile());
    EXPECT_EQ(termsOf(editor), Terms{"imported"});
    EXPECT_FALSE(editor.updating());
    EXPECT_EQ(folders.bytesOf(kShared), "imported\r\n");
    EXPECT_EQ(folders.bytesOf(kLocal), "local\r\n");
    EXPECT_EQ(folders.bytesOf(folders.keptName("SkipList.dat")), "shared\r\n");
}

TEST_F(SkipListEditorTest, AFailedImportLeavesTheListAsItWas) {
    folders.folder.write(kLocal, "alpha\r\n");
    editor.load();
    folders.dialogs.expectBox("Overwrite existing skip list",
                              "Importing a skip list will overwrite the existing skip list. Do you want to continue?",
                              BoxAnswer::Yes);
    folders.dialogs.expectFiles("Open Skip List", {folders.folder / "missing.txt"});
    EXPECT_FALSE(editor.loadFromFile());
    EXPECT_EQ(termsOf(editor), Terms{"alpha"});
    EXPECT_EQ(folders.bytesOf(kLocal), "alpha\r\n");
}

}  // namespace
