// SPDX-License-Identifier: MIT
#include "editors/common_headers_editor.h"

#include <gtest/gtest.h>

#include "editors/editor_folders.h"
#include "support/failing_files.h"

using namespace quillon;
namespace test = quillon::test;
using quillon::test::EditorFolders;
using Entered = CommonHeadersEditor::Entered;

namespace {

constexpr const char* kLocal = "local/Settings/CommonHeaders.dat";
constexpr const char* kShared = "share/Settings/CommonHeaders.dat";
constexpr const char* kTwo = "1,MZ,T,Program\r\n0,D0CF11,H,OLE file\r\n";

class CommonHeadersEditorTest : public testing::Test {
protected:
    Entered enter(CommonHeadersEditor::Fields fields) {
        editor.fields = std::move(fields);
        return editor.addOrUpdate();
    }
    [[nodiscard]] std::string listed() const { return commonHeaderBytes(editor.rows()); }

    EditorFolders folders;
    CommonHeadersEditor editor{folders.installation, folders.dialogs, folders.kept};
};

TEST_F(CommonHeadersEditorTest, ALineHoldsPositionTermTypeAndId) {
    folders.folder.write(kLocal, kTwo);
    editor.load();
    ASSERT_EQ(editor.rows().size(), 2U);
    EXPECT_EQ(editor.rows()[1], (CommonHeader{{"0"}, {"D0CF11"}, {"H"}, {"OLE file"}}));
    EXPECT_FALSE(editor.updating());
}

TEST_F(CommonHeadersEditorTest, AShortLineIsReadAsFarAsItGoes) {
    folders.folder.write(kLocal, "1,MZ\r\n\r\n2,PK,T,Zip,more\r\n");
    editor.load();
    EXPECT_EQ(listed(), "1,MZ,,\r\n2,PK,T,Zip\r\n");
}

TEST_F(CommonHeadersEditorTest, TheSharedCopyIsReadWithSharingOnWhenItExists) {
    folders.folder.write(kLocal, "1,local,T,L\r\n");
    folders.share(true);
    editor.load();
    EXPECT_EQ(listed(), "1,local,T,L\r\n");
    folders.folder.write(kShared, "1,shared,T,S\r\n");
    editor.load();
    EXPECT_EQ(listed(), "1,shared,T,S\r\n");
    folders.share(false);
    editor.load();
    EXPECT_EQ(listed(), "1,local,T,L\r\n");
    EXPECT_EQ(folders.bytesOf(kShared), "1,shared,T,S\r\n");
}

TEST_F(CommonHeadersEditorTest, AnEmptySharedCopyIsRestoredFromTheLocalOne) {
    folders.share(true);
    folders.folder.write(kLocal, kTwo);
    folders.folder.write(kShared, "");
    editor.load();
    EXPECT_EQ(listed(), kTwo);
    EXPECT_EQ(folders.bytesOf(kShared), kTwo);
    EXPECT_EQ(folders.bytesOf(kLocal), kTwo);
}

TEST_F(CommonHeadersEditorTest, ASecondReadingFillsTheShareWhateverTheFlag) {
    folders.folder.write(kLocal, "");
    folders.folder.write(kShared, kTwo);
    editor.load();
    EXPECT_TRUE(editor.rows().empty());
    EXPECT_EQ(folders.bytesOf(kShared), "");
    EXPECT_EQ(folders.bytesOf(folders.keptName("CommonHeaders.dat")), kTwo);
}

// The list that looked empty was being replaced.
TEST_F(CommonHeadersEditorTest, ASharedListThatWasEmptyForAMomentIsNotOverwritten) {
    folders.share(true);
    folders.folder.write(kLocal, "1,local,T,L\r\n");
    folders.folder.write(kShared, "");
    test::FailingFiles files;
    files.ahead("makeFolder", [this] { folders.folder.write(kShared, kTwo); });
    editor.load();
    EXPECT_EQ(listed(), kTwo);
    EXPECT_EQ(folders.bytesOf(kShared), kTwo);
    EXPECT_EQ(folders.bytesOf(kLocal), "1,local,T,L\r\n");
    EXPECT_FALSE(folders.has(folders.keptName("CommonHeaders.dat")));
}

TEST_F(CommonHeadersEditorTest, ASharedListThatCannotBeReadIsNotOverwritten) {
    folders.share(true);
    folders.folder.write(kLocal, "1,local,T,L\r\n");
    folders.folder.write(kShared, "");
    test::FailingFiles files;
    files.ahead("makeFolder", [this] {
        std::filesystem::remove(folders.folder / kShared);
        std::filesystem::create_directories(folders.folder / kShared);
    });
    editor.load();
    EXPECT_EQ(listed(), "1,local,T,L\r\n") << "what there is to be seen";
    EXPECT_TRUE(std::filesystem::is_directory(folders.folder / kShared));
    EXPECT_FALSE(folders.has(folders.keptName("CommonHeaders.dat")));
}

TEST_F(CommonHeadersEditorTest, AShareThatIsAwayIsPassedOverAtTheLoad) {
    folders.folder.write(kLocal, "");
    std::filesystem::remove_all(folders.folder / "share");
    editor.load();
    EXPECT_TRUE(editor.rows().empty());
}

TEST_F(CommonHeadersEditorTest, NoFileAnywhereGivesNoRowsAndWritesNone) {
    folders.share(true);
    editor.load();
    EXPECT_TRUE(editor.rows().empty());
    EXPECT_FALSE(folders.has(kShared));
    folders.folder.write(kShared, "");
    editor.load();
    EXPECT_FALSE(folders.has(kLocal));
}

TEST_F(CommonHeadersEditorTest, AddAppendsARowAndClearsTheFields) {
    folders.folder.write(kLocal, kTwo);
    editor.load();
    editor.deleteAllEnabled = true;
    EXPECT_EQ(enter({"Zip", "PK", "1", false}), Entered::Done);
    EXPECT_EQ(listed(), std::string(kTwo) + "1,PK,T,Zip\r\n");
    EXPECT_EQ(editor.fields, CommonHeadersEditor::Fields{});
    EXPECT_FALSE(editor.deleteAllEnabled);
    EXPECT_EQ(folders.bytesOf(kLocal), kTwo);
}

TEST_F(CommonHeadersEditorTest, AnEmptyFieldOrAPositionThatIsNoNumberIsRefused) {
    const CommonHeadersEditor::Fields refused[] = {
        {"", "PK", "1", false},     {"Zip", "", "1", false},    {"Zip", "PK", "", false},  {"Zip", "PK", "abc", false},
        {"Zip", "PK", "00", false}, {"Zip", "PK", " 0", false}, {"Zip", "PK", "0x", false}};
    for (const auto& fields : refused) {
        EXPECT_EQ(enter(fields), Entered::Refused) << fields.offset;
        EXPECT_TRUE(editor.rows().empty());
        EXPECT_EQ(editor.fields, fields);
    }
    for (const char* accepted : {"0", "12", "3x", "512"})
        EXPECT_EQ(enter({"Zip", "PK", accepted, false}), Entered::Done) << accepted;
    EXPECT_EQ(listed(), "0,PK,T,Zip\r\n12,PK,T,Zip\r\n3x,PK,T,Zip\r\n512,PK,T,Zip\r\n");
}

TEST_F(CommonHeadersEditorTest, AHexTermIsStoredInCapitalsWithoutBlanks) {
    EXPECT_EQ(enter({"X", "01 02 03", "1", true}), Entered::Done);
    EXPECT_EQ(enter({"Y", " d0cf 11 ", "1", true}), Entered::Done);
    EXPECT_EQ(listed(), "1,010203,H,X\r\n1,D0CF11,H,Y\r\n");
}

TEST_F(CommonHeadersEditorTest, ABadHexTermIsToldAndTheKeyboardGoesBackToIt) {
    folders.dialogs.expectBox("Error", "Invalid hex must be in pairs (e.d. 01 02 03 or 010203)", BoxAnswer::Ok,
                              BoxStyle::Warning, BoxButtons::Ok);
    EXPECT_EQ(enter({"X", "01 2", "1", true}), Entered::BadHexDigits);
    folders.dialogs.expectBox("Hex Error",
                              "Invalid HEX characters in string. Hex must only contain numbers 0-9 and Letter A-F",
                              BoxAnswer::Ok, BoxStyle::Warning, BoxButtons::Ok);
    EXPECT_EQ(enter({"X", "0g", "1", true}), Entered::BadHexDigits);
    EXPECT_TRUE(editor.rows().empty());
}

TEST_F(CommonHeadersEditorTest, ThePositionIsLookedAtBeforeTheDigits) {
    EXPECT_EQ(enter({"X", "0g", "abc", true}), Entered::Refused);
}

TEST_F(CommonHeadersEditorTest, AClickTakesTheRowToTheFieldsAndUpdateReplacesIt) {
    folders.folder.write(kLocal, kTwo);
    editor.load();
    editor.selectRow(1);
    EXPECT_EQ(editor.fields, (CommonHeadersEditor::Fields{"OLE file", "D0CF11", "0", true}));
    EXPECT_TRUE(editor.updating());
    editor.selectRow(0);
    EXPECT_EQ(editor.fields, (CommonHeadersEditor::Fields{"Program", "MZ", "1", false}));
    editor.fields.id = "Windows program";
    EXPECT_EQ(editor.addOrUpdate(), Entered::Done);
    EXPECT_EQ(listed(), "1,MZ,T,Windows program\r\n0,D0CF11,H,OLE file\r\n");
    EXPECT_FALSE(editor.updating());
    EXPECT_EQ(editor.fields, CommonHeadersEditor::Fields{});
}

TEST_F(CommonHeadersEditorTest, ASelectedRowCanBeThePatternOfANewOne) {
    folders.folder.write(kLocal, kTwo);
    editor.load();
    editor.selectRow(0);
    editor.toggleMode();
    EXPECT_FALSE(editor.updating());
    editor.fields.term = "ZM";
    EXPECT_EQ(editor.addOrUpdate(), Entered::Done);
    EXPECT_EQ(listed(), std::string(kTwo) + "1,ZM,T,Program\r\n");
    editor.toggleMode();
    EXPECT_TRUE(editor.updating());
}

TEST_F(CommonHeadersEditorTest, AnUpdateWithoutASelectedRowIsRefused) {
    editor.toggleMode();
    EXPECT_EQ(enter({"Zip", "PK", "1", false}), Entered::Refused);
}

TEST_F(CommonHeadersEditorTest, DeleteSelectedAsks) {
    folders.folder.write(kLocal, kTwo);
    editor.load();
    editor.deleteSelected();
    editor.selectRow(1);
    folders.dialogs.expectBox("Delete Common Header ?", "Are you sure you want to delete the entry for OLE file ?",
                              BoxAnswer::No, BoxStyle::Question, BoxButtons::YesNo);
    editor.deleteSelected();
    EXPECT_EQ(listed(), kTwo);
    folders.dialogs.expectBox("Delete Common Header ?", "Are you sure you want to delete the entry for OLE file ?",
                              BoxAnswer::Yes);
    editor.deleteSelected();
    EXPECT_EQ(listed(), "1,MZ,T,Program\r\n");
    EXPECT_EQ(editor.selected(), -1);
    EXPECT_FALSE(editor.updating());
}

constexpr const char* kAll = "Are you sure you want to remove all refererences to common file types?";
constexpr const char* kAllShared = "Do you want to delete the SHARED copy of the common header types too ?";

TEST_F(CommonHeadersEditorTest, DeleteAllAsksAndKeepsTheLocalFile) {
    folders.folder.write(kLocal, kTwo);
    editor.load();
    folders.dialogs.expectBox("Delete All?", kAll, BoxAnswer::No, BoxStyle::Question, BoxButtons::YesNo);
    editor.deleteAll();
    EXPECT_EQ(listed(), kTwo);
    editor.deleteAllEnabled = true;
    editor.selectRow(0);
    folders.dialogs.expectBox("Delete All?", kAll, BoxAnswer::Yes);
    editor.deleteAll();
    EXPECT_TRUE(editor.rows().empty());
    EXPECT_EQ(editor.fields, CommonHeadersEditor::Fields{});
    EXPECT_FALSE(editor.deleteAllEnabled);
    EXPECT_FALSE(folders.has(kLocal));
    EXPECT_EQ(folders.bytesOf(folders.keptName("Settings/CommonHeaders.dat")), kTwo);
}

TEST_F(CommonHeadersEditorTest, DeleteAllAsksForTheSharedCopyByItself) {
    for (const auto answer : {BoxAnswer::No, BoxAnswer::Yes}) {
        EditorFolders place(true);
        CommonHeadersEditor screen(place.installation, place.dialogs, place.kept);
        place.folder.write(kShared, kTwo);
        screen.load();
        place.dialogs.expectBox("Delete All?", kAll, BoxAnswer::Yes);
        place.dialogs.expectBox("Delete Shared Copy?", kAllShared, answer, BoxStyle::Question, BoxButtons::YesNo);
        screen.deleteAll();
        EXPECT_EQ(place.has(kShared), answer == BoxAnswer::No);
        EXPECT_EQ(place.has(place.keptName("CommonHeaders.dat")), answer == BoxAnswer::Yes);
        EXPECT_TRUE(screen.rows().empty());
    }
}

TEST_F(CommonHeadersEditorTest, ASharedCopyThatWasNotToBeDeletedIsKeptBeforeTheEmptyListReplacesIt) {
    folders.share(true);
    folders.folder.write(kShared, kTwo);
    editor.load();
    folders.dialogs.expectBox("Delete All?", kAll, BoxAnswer::Yes);
    folders.dialogs.expectBox("Delete Shared Copy?", kAllShared, BoxAnswer::No);
    editor.deleteAll();
    ASSERT_TRUE(editor.save());
    EXPECT_EQ(folders.bytesOf(kShared), "");
    EXPECT_EQ(folders.bytesOf(folders.keptName("CommonHeaders.dat")), kTwo);
}

TEST_F(CommonHeadersEditorTest, SavingWritesTheSharedFileOnlyWithSharingOn) {
    enter({"Zip", "PK", "1", false});
    ASSERT_TRUE(editor.save());
    EXPECT_EQ(folders.bytesOf(kLocal), "1,PK,T,Zip\r\n");
    EXPECT_FALSE(folders.has(kShared));
    folders.share(true);
    ASSERT_TRUE(editor.save());
    EXPECT_EQ(folders.bytesOf(kShared), "1,PK,T,Zip\r\n");
}

TEST_F(CommonHeadersEditorTest, AFileThatCannotBeWrittenEndsTheSave) {
    folders.share(true);
    std::filesystem::remove_all(folders.folder / "local/Settings");
    enter({"Zip", "PK", "1", false});
    EXPECT_FALSE(editor.save());
    EXPECT_FALSE(folders.has(kShared));
}

TEST_F(CommonHeadersEditorTest, ACommaInTheIdBreaksTheRecordAtTheNextReading) {
    enter({"Zip, or office", "PK", "1", false});
    ASSERT_TRUE(editor.save());
    EXPECT_EQ(folders.bytesOf(kLocal), "1,PK,T,Zip, or office\r\n");
    editor.load();
    EXPECT_EQ(listed(), "1,PK,T,Zip\r\n");
}

TEST_F(CommonHeadersEditorTest, ThePrefixIsMessageTen) {
    ReportMessages messages;
    messages[Grade::CommonHeader] = u"Looks like: ";
    EXPECT_EQ(currentPrefix(messages), "Current Prefix : Looks like: ");
}

}  // namespace
