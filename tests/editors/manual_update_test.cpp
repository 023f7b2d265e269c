// SPDX-License-Identifier: MIT
// The criteria of the manual update: what goes from the fields to the rows and back.
#include "editors/manual_update.h"

#include "editors/manual_update_fixture.h"

using namespace quillon;
using quillon::test::ManualUpdateTest;
using Focus = ManualUpdate::Focus;

namespace {

constexpr const char* kLocal = "local/Database/jpg.dat";

TEST_F(ManualUpdateTest, HexadecimalTakesBlanksAwayAndMakesCapitals) {
    editor.fields.term = " ff d8 ";
    editor.chooseType(true);
    EXPECT_EQ(editor.fields.term, "FFD8");
    editor.fields.term = "a b";
    editor.chooseType(false);
    EXPECT_EQ(editor.fields.term, "a b");
}

TEST_F(ManualUpdateTest, EmptyFieldsAreToldInOrder) {
    editor.load();
    expectWarning("Error", "Please enter a Extension type.");
    EXPECT_EQ(add("", ""), Focus::Extension);
    editor.setExtension("jpg");
    expectWarning("Error", "Please enter a start position for the term.");
    EXPECT_EQ(add("", ""), Focus::Position);
    expectWarning("Error", "Please enter a search term.");
    EXPECT_EQ(add("1", ""), Focus::Term);
    EXPECT_TRUE(editor.rows().empty());
}

TEST_F(ManualUpdateTest, BadHexDigitsAreTold) {
    editor.setExtension("jpg");
    expectWarning("Error", "Invalid hex must be in pairs (e.d. 01 02 03 or 010203)");
    EXPECT_EQ(add("1", "ff d", true), Focus::Term);
    EXPECT_EQ(editor.fields.term, "FFD");
    expectWarning("Hex Error", "Invalid HEX characters in string. Hex must only contain numbers 0-9 and Letter A-F");
    EXPECT_EQ(add("1", "xx", true), Focus::Term);
    EXPECT_TRUE(editor.rows().empty());
}

TEST_F(ManualUpdateTest, AddAppendsAndTheFieldsKeepTheirContent) {
    editor.setExtension("jpg");
    EXPECT_EQ(add("7", "JFIF"), Focus::Stays);
    EXPECT_EQ(add("1", "ff d8", true), Focus::Stays);
    EXPECT_EQ(listed(), "7,JFIF,T\r\n1,FFD8,H\r\n");
    EXPECT_EQ(editor.fields, (ManualUpdate::Fields{"1", "FFD8", true}));
    EXPECT_FALSE(editor.updating());
}

TEST_F(ManualUpdateTest, ATermThatDiffersInCaseAloneCountsAsEqual) {
    folders.folder.write(kLocal, "1,Other,T\r\n1,JFIF,T\r\n");
    editor.setExtension("jpg");
    expectEqualTerm(BoxAnswer::No);
    add("9", "jfif");
    EXPECT_EQ(editor.rows().size(), 2U);
    EXPECT_EQ(editor.current(), 1);
    expectEqualTerm(BoxAnswer::Yes);
    add("9", "jfif");
    EXPECT_EQ(listed(), "1,Other,T\r\n1,JFIF,T\r\n9,jfif,T\r\n");
}

TEST_F(ManualUpdateTest, PositionAndTypeDoNotMakeATermAnother) {
    editor.setExtension("jpg");
    add("1", "FFD8");
    expectEqualTerm(BoxAnswer::No);
    add("2", "ffd8", true);
    EXPECT_EQ(editor.rows().size(), 1U);
}

TEST_F(ManualUpdateTest, UpdateReplacesTheCurrentRowUntilClr) {
    folders.folder.write(kLocal, "1,one,T\r\n2,0202,H\r\n3,three,?\r\n");
    editor.setExtension("jpg");
    editor.selectRow(2);
    EXPECT_TRUE(editor.fields.hexadecimal);
    editor.selectRow(1);
    EXPECT_EQ(editor.fields, (ManualUpdate::Fields{"2", "0202", true}));
    EXPECT_TRUE(editor.updating());
    add("5", "five");
    EXPECT_EQ(listed(), "1,one,T\r\n5,five,T\r\n3,three,?\r\n");
    add("6", "six");
    EXPECT_EQ(listed(), "1,one,T\r\n6,six,T\r\n3,three,?\r\n");
    editor.clear();
    EXPECT_EQ(editor.fields, ManualUpdate::Fields{});
    EXPECT_FALSE(editor.updating());
    add("7", "seven");
    EXPECT_EQ(listed(), "1,one,T\r\n6,six,T\r\n3,three,?\r\n7,seven,T\r\n");
}

TEST_F(ManualUpdateTest, AnUnchangedUpdateAsksAboutItsOwnRow) {
    folders.folder.write(kLocal, "1,one,T\r\n");
    editor.setExtension("jpg");
    editor.selectRow(0);
    expectEqualTerm(BoxAnswer::Yes);
    editor.addOrUpdate();
    EXPECT_EQ(listed(), "1,one,T\r\n");
}

TEST_F(ManualUpdateTest, AnUpdateGoesToTheRowThatWasCurrentBeforeTheEqualOne) {
    folders.folder.write(kLocal, "1,one,T\r\n2,two,T\r\n");
    editor.setExtension("jpg");
    editor.selectRow(1);
    expectEqualTerm(BoxAnswer::Yes);
    add("9", "ONE");
    EXPECT_EQ(listed(), "1,one,T\r\n9,ONE,T\r\n");
    EXPECT_EQ(editor.current(), 0);
}

TEST_F(ManualUpdateTest, ACommaInATextTermBreaksTheRecordAtTheNextReading) {
    editor.setExtension("jpg");
    add("1", "a,b");
    editor.save();
    EXPECT_EQ(folders.bytesOf(kLocal), "1,a,b,T\r\n");
    editor.setExtension("jpg");
    EXPECT_EQ(listed(), "1,a,b\r\n");
}

TEST_F(ManualUpdateTest, ThePopupTellsTheTerm) {
    folders.folder.write(kLocal, "1,one,T\r\n");
    editor.setExtension("jpg");
    editor.selectRow(0);
    EXPECT_EQ(editor.deleteCaption(), "Delete the term 'one'");
    EXPECT_EQ(editor.commonHeaderCaption(), "Add 'one' to common headers");
}

}  // namespace
