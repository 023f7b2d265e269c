// SPDX-License-Identifier: MIT
#include "editors/extension_editor.h"

#include <algorithm>

#include "editors/extension_editor_fixture.h"

namespace quillon::test {
namespace {

constexpr const char* kThree = "1,AAA,T\r\n5,BB,T\r\n0,FFD8,H\r\n";

TEST_F(ExtensionEditorTest, OpeningShowsTheFirstFileAndTheTerms) {
    addHead("a.qlx", "first");
    addHead("b.qlx", "second");
    openTerms(kThree);
    EXPECT_EQ(editor.state.extension, u"qlx");
    EXPECT_EQ(editor.state.files.size(), 2U);
    EXPECT_EQ(editor.state.viewing, "Viewing file  1 of  2");
    EXPECT_EQ(editor.state.head, "first" + std::string(507, 'x'));
    EXPECT_EQ(folders.bytesOf("app/tFile.bin"), editor.state.head);
    EXPECT_EQ(editor.state.position, "");
    EXPECT_EQ(listed(), kThree);
    EXPECT_EQ(editor.state.currentRow, -1);
    EXPECT_FALSE(editor.state.updating);
    EXPECT_TRUE(editor.state.upEnabled);
    EXPECT_TRUE(editor.state.downEnabled);
}

TEST_F(ExtensionEditorTest, WithoutAFileOfLengthTheViewIsBlankAndTheTermsLoad) {
    addFile("a.qlx", "");
    openTerms("1,AAA,T\r\n");
    EXPECT_TRUE(editor.state.files.empty());
    EXPECT_EQ(editor.state.viewing, "");
    EXPECT_EQ(editor.state.head, "");
    EXPECT_EQ(editor.state.position, "1");
    EXPECT_EQ(editor.state.rows.size(), 1U);
    EXPECT_FALSE(editor.state.upEnabled);
    EXPECT_FALSE(editor.state.downEnabled);
}

TEST_F(ExtensionEditorTest, AMissingTermFileLeavesTheGridEmptyAndTheShareIsNotLookedAt) {
    folders.folder.write("share/Database/qlx.dat", "1,SHARED,T\r\n");
    folders.share(true);
    open();
    EXPECT_TRUE(editor.state.rows.empty());
}

TEST_F(ExtensionEditorTest, LinesOfOneFieldAreLeftOut) {
    openTerms("junk\r\n1,AAA\r\n");
    EXPECT_EQ(listed(), "1,AAA,\r\n");
}

TEST_F(ExtensionEditorTest, AFileThatIsGoneIsLeftOutAndAZeroInItsPathIsPassedOver) {
    const std::string path = addHead("a.qlx", "first");
    handover.files.push_back({toListText(path + "2"), {}});
    std::u16string damaged = toListText(path);
    damaged.insert(damaged.size() - 3, 1, u'\0');
    handover.files.push_back({damaged, {}});
    open();
    ASSERT_EQ(editor.state.files.size(), 2U);
    editor.chooseFile(1);
    EXPECT_EQ(editor.state.viewing, "Viewing file  2 of  2");
    EXPECT_EQ(editor.state.head.substr(0, 5), "first");
}

TEST_F(ExtensionEditorTest, AShortFileGivesAShortWorkFile) {
    addFile("a.qlx", "tiny");
    open();
    EXPECT_EQ(editor.state.head, "tiny");
    EXPECT_EQ(folders.bytesOf("app/tFile.bin"), "tiny");
}

TEST_F(ExtensionEditorTest, AVanishedFileKeepsTheViewOfThePreviousOne) {
    addHead("a.qlx", "first");
    const std::string second = addHead("b.qlx", "second");
    open();
    std::filesystem::remove(second);
    editor.state.position = "7";
    editor.chooseFile(1);
    EXPECT_EQ(editor.state.currentFile, 1);
    EXPECT_EQ(editor.state.head.substr(0, 5), "first");
    EXPECT_EQ(editor.state.viewing, "Viewing file  1 of  2");
    EXPECT_EQ(editor.state.position, "7");
}

TEST_F(ExtensionEditorTest, PlusOnTheLastFileBeepsAndGoesToTheFirst) {
    addHead("a.qlx", "first");
    addHead("b.qlx", "second");
    open();
    editor.state.position = "9";
    editor.nextFile();
    EXPECT_EQ(editor.state.viewing, "Viewing file  2 of  2");
    EXPECT_EQ(editor.state.position, "");
    EXPECT_EQ(host.beeps, 0);
    editor.nextFile();
    EXPECT_EQ(editor.state.currentFile, 0);
    EXPECT_EQ(host.beeps, 1);
}

TEST_F(ExtensionEditorTest, MinusOnTheFirstFileGoesToTheLastSilently) {
    addHead("a.qlx", "first");
    addHead("b.qlx", "second");
    open();
    editor.previousFile();
    EXPECT_EQ(editor.state.viewing, "Viewing file  2 of  2");
    editor.previousFile();
    EXPECT_EQ(editor.state.viewing, "Viewing file  1 of  2");
    EXPECT_EQ(host.beeps, 0);
}

TEST_F(ExtensionEditorTest, SteppingWithoutFilesIsHarmless) {
    open();
    editor.nextFile();
    editor.previousFile();
    editor.clear();
    EXPECT_EQ(editor.state.currentFile, -1);
    EXPECT_EQ(editor.state.viewing, "");
}

TEST_F(ExtensionEditorTest, TheCaretFillsInThePositionFromOne) {
    open();
    editor.caretMoved(0);
    EXPECT_EQ(editor.state.position, "1");
    editor.caretMoved(511);
    EXPECT_EQ(editor.state.position, "512");
}

TEST_F(ExtensionEditorTest, ASelectedRowGoesToTheCriteria) {
    openTerms("1,AAA,T\r\n0,FFD8,H\r\n3,lower,t\r\n");
    editor.selectRow(0);
    EXPECT_EQ(editor.state.term, "AAA");
    EXPECT_EQ(editor.state.position, "1");
    EXPECT_EQ(editor.state.type, kTextType);
    EXPECT_TRUE(editor.state.updating);
    EXPECT_FALSE(editor.state.upEnabled);
    EXPECT_TRUE(editor.state.downEnabled);
    editor.selectRow(2);
    EXPECT_EQ(editor.state.type, kHexType) << "only exactly T is text";
    EXPECT_TRUE(editor.state.upEnabled);
    EXPECT_FALSE(editor.state.downEnabled);
}

TEST_F(ExtensionEditorTest, AddPutsTheFieldsAtTheEndUnchecked) {
    openTerms(kThree);
    enter("x1", "", kTextType);
    editor.addOrUpdate();
    enter("1", "AAA", kTextType);
    editor.addOrUpdate();
    EXPECT_EQ(listed(), std::string(kThree) + "x1,,T\r\n1,AAA,T\r\n");
    EXPECT_FALSE(editor.state.updating);
    EXPECT_EQ(clipboardCleared, 2);
}

TEST_F(ExtensionEditorTest, AddNormalisesAHexadecimalTerm) {
    open();
    enter("1", " d0 cf 11 ", kHexType);
    editor.addOrUpdate();
    EXPECT_EQ(editor.state.term, "D0CF11");
    EXPECT_EQ(listed(), "1,D0CF11,H\r\n");
}

TEST_F(ExtensionEditorTest, AddRefusesAWrongHexadecimalTerm) {
    open();
    enter("1", "D0C", kHexType);
    expectWarning("Error", "Invalid hex must be in pairs (e.d. 01 02 03 or 010203)");
    editor.addOrUpdate();
    enter("1", "D0CG", kHexType);
    expectWarning("Hex Error", "Invalid HEX characters in string. Hex must only contain numbers 0-9 and Letter A-F");
    editor.addOrUpdate();
    EXPECT_TRUE(editor.state.rows.empty());
    EXPECT_EQ(host.focused, std::vector<std::string>(2, "Text3"));
}

TEST_F(ExtensionEditorTest, UpdateOverwritesTheCurrentRowAndStaysUpdate) {
    openTerms(kThree);
    editor.selectRow(1);
    enter("7", "414", kTextType);
    editor.addOrUpdate();
    EXPECT_EQ(listed(), "1,AAA,T\r\n7,414,T\r\n0,FFD8,H\r\n");
    EXPECT_TRUE(editor.state.updating);
}

TEST_F(ExtensionEditorTest, BehindClrTheNextPressAddsARow) {
    addHead("a.qlx", "first");
    addHead("b.qlx", "second");
    openTerms(kThree);
    editor.nextFile();
    editor.selectRow(2);
    editor.clear();
    EXPECT_EQ(editor.state.term, "");
    EXPECT_EQ(editor.state.position, "");
    EXPECT_EQ(editor.state.type, kHexType) << "the type stays";
    EXPECT_EQ(editor.state.currentFile, 0);
    EXPECT_FALSE(editor.state.updating);
    enter("1", "NEW", kTextType);
    editor.addOrUpdate();
    EXPECT_EQ(listed(), std::string(kThree) + "1,NEW,T\r\n");
}

TEST_F(ExtensionEditorTest, PresetsFillTheCriteriaAlone) {
    open();
    editor.presetExe();
    EXPECT_EQ(editor.state.position + editor.state.term, "1MZ");
    EXPECT_EQ(editor.state.type, kTextType);
    editor.presetOle();
    EXPECT_EQ(editor.state.position + editor.state.term, "1D0CF11");
    EXPECT_EQ(editor.state.type, kHexType);
    editor.presetWp();
    EXPECT_EQ(editor.state.position + editor.state.term, "1WP");
    EXPECT_EQ(editor.state.type, kTextType);
    EXPECT_TRUE(editor.state.rows.empty());
    EXPECT_EQ(clipboardCleared, 3);
}

TEST_F(ExtensionEditorTest, ACommaIsRefusedInATerm) {
    open();
    folders.dialogs.expectBox(
        "No Commas!",
        "You are not allowed to use commas in searches as these are used internally by the program. If you need a term "
        "using a comma, use a HEX based search for '2C'.",
        BoxAnswer::Ok, BoxStyle::Plain, BoxButtons::Ok);
    editor.termChanged("a,b,c");
    EXPECT_EQ(editor.state.term, "abc");
    editor.termChanged("abcd");
    EXPECT_EQ(editor.state.term, "abcd");
}

TEST_F(ExtensionEditorTest, MovingSwapsRowsAndTheCurrentRowFollows) {
    openTerms(kThree);
    editor.selectRow(0);
    editor.moveUp();
    EXPECT_EQ(listed(), kThree);
    editor.moveDown();
    EXPECT_EQ(listed(), "5,BB,T\r\n1,AAA,T\r\n0,FFD8,H\r\n");
    EXPECT_EQ(editor.state.currentRow, 1);
    editor.moveDown();
    EXPECT_EQ(editor.state.currentRow, 2);
    EXPECT_FALSE(editor.state.downEnabled);
    editor.moveDown();
    EXPECT_EQ(listed(), "5,BB,T\r\n0,FFD8,H\r\n1,AAA,T\r\n");
    editor.moveUp();
    EXPECT_EQ(editor.state.currentRow, 1);
    EXPECT_EQ(editor.state.term, "AAA");
}

TEST_F(ExtensionEditorTest, DeleteAsksAndRemovesTheCurrentRow) {
    openTerms(kThree);
    editor.deleteRow();
    editor.selectRow(1);
    expectQuestion("Delete entry", "Delete entry for qlx ?", BoxAnswer::No);
    editor.deleteRow();
    EXPECT_EQ(listed(), kThree);
    expectQuestion("Delete entry", "Delete entry for qlx ?", BoxAnswer::Yes);
    editor.deleteRow();
    EXPECT_EQ(listed(), "1,AAA,T\r\n0,FFD8,H\r\n");
    EXPECT_EQ(editor.state.currentRow, -1);
    EXPECT_TRUE(editor.state.upEnabled);
}

TEST_F(ExtensionEditorTest, TheLastRowDeletedTakesTheSharedFileAwayAndLeavesTheLocalOne) {
    folders.share(true);
    folders.folder.write("share/Database/qlx.dat", "1,AAA,T\r\n");
    openTerms("1,AAA,T\r\n");
    editor.selectRow(0);
    expectQuestion("Delete entry", "Delete entry for qlx ?", BoxAnswer::Yes);
    editor.deleteRow();
    EXPECT_FALSE(folders.has("share/Database/qlx.dat"));
    EXPECT_TRUE(folders.has(folders.keptName("qlx.dat")));
    editor.save();
    EXPECT_EQ(folders.bytesOf("local/Database/qlx.dat"), "1,AAA,T\r\n");
}

TEST_F(ExtensionEditorTest, ATermDeletedAsTheLastRowIsBackOnReopening) {
    openTerms("1,AAA,T\r\n");
    editor.selectRow(0);
    expectQuestion("Delete entry", "Delete entry for qlx ?", BoxAnswer::Yes);
    editor.deleteRow();
    editor.save();
    open();
    EXPECT_EQ(listed(), "1,AAA,T\r\n");
}

TEST_F(ExtensionEditorTest, DeleteAllAsksAndNoUnticksTheBox) {
    openTerms(kThree);
    const std::string question = "This will delete all terms for the extension qlx, are you sure you want to do this ?";
    editor.state.deleteAllTicked = true;
    expectQuestion("delete all?", question, BoxAnswer::No);
    editor.deleteAllRows();
    EXPECT_FALSE(editor.state.deleteAllTicked);
    EXPECT_EQ(listed(), kThree);
    editor.state.deleteAllTicked = true;
    folders.share(true);
    folders.folder.write("share/Database/qlx.dat", kThree);
    expectQuestion("delete all?", question, BoxAnswer::Yes);
    editor.deleteAllRows();
    EXPECT_TRUE(editor.state.deleteAllTicked);
    EXPECT_TRUE(editor.state.rows.empty());
    EXPECT_FALSE(editor.state.upEnabled);
    EXPECT_FALSE(folders.has("share/Database/qlx.dat"));
}

TEST_F(ExtensionEditorTest, DoneWritesTheLocalAndTheSharedFile) {
    folders.share(true);
    openTerms("1,AAA,T\r\n");
    enter("2", "BBB");
    editor.addOrUpdate();
    editor.save();
    EXPECT_EQ(folders.bytesOf("local/Database/qlx.dat"), "1,AAA,T\r\n2,BBB,T\r\n");
    EXPECT_EQ(folders.bytesOf("share/Database/qlx.dat"), "1,AAA,T\r\n2,BBB,T\r\n");
    folders.share(false);
    enter("3", "CCC");
    editor.addOrUpdate();
    editor.save();
    EXPECT_EQ(folders.bytesOf("share/Database/qlx.dat"), "1,AAA,T\r\n2,BBB,T\r\n");
}

TEST_F(ExtensionEditorTest, ACopyThatFailsDoesNotKeepTheOtherFromBeingWritten) {
    folders.share(true);
    open();
    enter("1", "AAA");
    editor.addOrUpdate();
    std::filesystem::remove_all(folders.folder / "share");
    editor.save();
    EXPECT_EQ(folders.bytesOf("local/Database/qlx.dat"), "1,AAA,T\r\n");
    std::filesystem::create_directories(folders.folder / "share/Database");
    std::filesystem::remove(folders.folder / "local/Database/qlx.dat");
    std::filesystem::create_directories(folders.folder / "local/Database/qlx.dat/in the way");
    editor.save();
    EXPECT_EQ(folders.bytesOf("share/Database/qlx.dat"), "1,AAA,T\r\n");
}

TEST_F(ExtensionEditorTest, ASharedFileOfAnotherWorkstationIsKeptBeforeItIsOverwritten) {
    folders.share(true);
    openTerms("1,AAA,T\r\n");
    folders.folder.write("share/Database/qlx.dat", "9,THEIRS,T\r\n");
    editor.save();
    EXPECT_EQ(folders.bytesOf("share/Database/qlx.dat"), "1,AAA,T\r\n");
    EXPECT_EQ(folders.bytesOf(folders.keptName("qlx.dat")), "9,THEIRS,T\r\n");
}

TEST_F(ExtensionEditorTest, APositionWithoutDigitsIsStoredAsItStands) {
    open();
    enter("abc", "AAA");
    editor.addOrUpdate();
    editor.save();
    EXPECT_EQ(folders.bytesOf("local/Database/qlx.dat"), "abc,AAA,T\r\n");
}

TEST_F(ExtensionEditorTest, AFileOfASourceThatIsAwayShowsItsKeptHeadAndSaysSo) {
    handover.files = {{u"/away/a.qlx", u""}, {u"/away/b.qlx", u""}};
    handover.keptHead = [](std::u16string_view path) {
        FileHead head;
        head.length = 5;
        head.bytes.fill(' ');
        std::ranges::copy(std::string("QLX!x"), head.bytes.begin());
        return path == u"/away/a.qlx" ? std::optional(head) : std::nullopt;
    };
    open();
    EXPECT_EQ(editor.state.files, std::vector<std::u16string>{u"/away/a.qlx"}) << "of the other there is nothing";
    EXPECT_EQ(editor.state.head, "QLX!x");
    EXPECT_EQ(editor.state.viewing, "Viewing file  1 of  1 (kept head, source not read)");
    enter("1", "QLX!");
    expectResult(" 1", " 0", BoxAnswer::No);
    editor.search();
}

TEST_F(ExtensionEditorTest, AFileThatIsThereIsReadWhateverWasKept) {
    addHead("a.qlx", "now!");
    handover.keptHead = [](std::u16string_view) { return std::optional(FileHead{512, {}}); };
    open();
    EXPECT_EQ(editor.state.head.substr(0, 4), "now!");
    EXPECT_EQ(editor.state.viewing, "Viewing file  1 of  1");
}

}  // namespace
}  // namespace quillon::test
