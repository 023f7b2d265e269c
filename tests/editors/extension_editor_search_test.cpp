// SPDX-License-Identifier: MIT
#include <random>

#include <fmt/format.h>

#include "editors/extension_editor_fixture.h"
#include "editors/term_search.h"
#include "text/page_text.h"

namespace quillon::test {
namespace {

using ExtensionEditorSearchTest = ExtensionEditorTest;
using Names = std::vector<std::string>;
using Texts = std::vector<std::u16string>;

TEST_F(ExtensionEditorSearchTest, AnEmptyPositionOrTermIsAskedFor) {
    open();
    enter("", "A");
    expectWarning("Error", "Please enter a starting position for the search term (0= Anywhere in the first 512 bytes)");
    editor.search();
    EXPECT_EQ(host.focused, Names{"Text2"});
    enter("1", "");
    expectWarning("Error", "Please enter a term to search for");
    editor.search();
    EXPECT_EQ(host.focused, (Names{"Text2", "Text3"}));
    EXPECT_TRUE(editor.state.framesEnabled);
    EXPECT_EQ(clipboardCleared, 2);
}

TEST_F(ExtensionEditorSearchTest, WithoutFilesTheTermIsNotFound) {
    open();
    enter("1", "A");
    expectWarning("Term not found", "Search term not found");
    editor.search();
    EXPECT_TRUE(editor.state.framesEnabled);
    EXPECT_FALSE(editor.state.busyPointer);
}

TEST_F(ExtensionEditorSearchTest, YesAddsTheTermAndShowsTheFileAnew) {
    addHead("a.qlx", "QLX!");
    addHead("b.qlx", "none");
    openTerms("1,AAA,T\r\n");
    editor.selectRow(0);
    enter("1", "qlx");
    expectResult(" 1", " 1", BoxAnswer::Yes);
    editor.search();
    EXPECT_EQ(listed(), "1,AAA,T\r\n1,qlx,T\r\n") << "a search never updates a row";
    EXPECT_FALSE(editor.state.updating);
    EXPECT_EQ(editor.state.position, "");
    EXPECT_TRUE(editor.state.framesEnabled);
    EXPECT_FALSE(folders.has("local/Database/qlx2.dat"));
    EXPECT_EQ(folders.bytesOf("local/Database/qlx.dat"), "1,AAA,T\r\n") << "on disk only with Done";
}

TEST_F(ExtensionEditorSearchTest, NoAddsNothing) {
    addHead("a.qlx", "QLX!");
    open();
    enter("1", "QLX");
    expectResult(" 1", " 0", BoxAnswer::No);
    editor.search();
    EXPECT_TRUE(editor.state.rows.empty());
    EXPECT_EQ(editor.state.position, "1");
    EXPECT_TRUE(editor.state.framesEnabled);
    EXPECT_FALSE(editor.state.busyPointer);
}

TEST_F(ExtensionEditorSearchTest, AHexadecimalTermIsStoredBackWithoutBlanks) {
    addHead("a.qlx", "aBc");
    open();
    enter("1", "41 62 63", kHexType);
    expectResult(" 1", " 0", BoxAnswer::Yes);
    editor.search();
    EXPECT_EQ(listed(), "1,416263,H\r\n");
}

TEST_F(ExtensionEditorSearchTest, AnOddLengthHasTheWordsOfTheSearch) {
    open();
    enter("1", "4 1 6", kHexType);
    expectWarning("Error", "Hex terms must be in pairs (e.g. 01 02 03 or 010203). ");
    editor.search();
    EXPECT_EQ(editor.state.term, "416");
    EXPECT_EQ(host.focused, Names{"Text3"});
    EXPECT_TRUE(editor.state.framesEnabled);
}

TEST_F(ExtensionEditorSearchTest, OtherCharactersMayBecomeATextSearch) {
    const char* question =
        "Invalid HEX characters in string. Hex must only contain numbers 0-9 and Letter A-F. Did you want to perform a "
        "text based search?";
    addHead("a.qlx", "WORD");
    open();
    enter("1", "wo rd", kHexType);
    folders.dialogs.expectBox("Hex Error", question, BoxAnswer::No, BoxStyle::Warning, BoxButtons::YesNo);
    editor.search();
    EXPECT_EQ(host.focused, Names{"Text3"});
    EXPECT_EQ(editor.state.type, kHexType);
    folders.dialogs.expectBox("Hex Error", question, BoxAnswer::Yes, BoxStyle::Warning, BoxButtons::YesNo);
    expectResult(" 1", " 0", BoxAnswer::Yes);
    editor.search();
    EXPECT_EQ(listed(), "1,WORD,T\r\n");
    EXPECT_EQ(editor.state.type, kTextType);
}

TEST_F(ExtensionEditorSearchTest, ThePositionIsRepairedByTheFileInView) {
    addHead("a.qlx", "xxQLX");
    open();
    enter("600", "QLX");
    expectResult(" 1", " 0", BoxAnswer::No);
    editor.search();
    EXPECT_EQ(editor.state.position, "3");
}

TEST_F(ExtensionEditorSearchTest, WithoutAFileInViewNothingIsRepaired) {
    addHead("a.qlx", "xxQLX");
    open();
    std::filesystem::remove(folders.folder / "app/tFile.bin");
    enter("600", "QLX");
    expectWarning("Term not found", "Search term not found");
    editor.search();
    EXPECT_EQ(editor.state.position, "600");
}

TEST_F(ExtensionEditorSearchTest, AVanishedFileDropsTheSearchSilently) {
    addHead("a.qlx", "QLX");
    const std::string second = addHead("b.qlx", "QLX");
    open();
    std::filesystem::remove(second);
    enter("1", "QLX");
    editor.search();
    EXPECT_TRUE(editor.state.framesEnabled);
    EXPECT_FALSE(editor.state.busyPointer);
    EXPECT_TRUE(editor.state.rows.empty());
}

// Files that pass the gates of size and attributes, which the search does not look at.
TEST_F(ExtensionEditorSearchTest, WhatTheSearchCountsGoodTheHeaderTestGradesGood) {
    std::mt19937 random(5);
    const auto anyOf = [&random](std::string_view letters) { return letters[random() % letters.size()]; };
    int good = 0;
    for (int round = 0; round < 300; ++round) {
        std::string head;
        while (head.size() < 512) head.push_back(anyOf("aAbB \xE4\xC4"));
        const bool hexadecimal = round % 2 == 0;
        std::string term;
        for (std::size_t i = 0; i <= random() % 3; ++i)
            term += hexadecimal ? std::string(1, anyOf("46")) + anyOf("12") : std::string(1, anyOf("aAbB\xE4\xC4"));
        const std::string position = std::to_string(round % 3 == 0 ? 0 : random() % 516);
        const std::u16string path = toListText(folders.folder.write("source/f.qlx", head + "beyond").native());
        folders.folder.write("local/Database/qlx.dat",
                             fmt::format("{},{},{}\r\n", position, term, hexadecimal ? "H" : "T"));

        SourceFiles heads;
        const auto counts = searchTerm({position, toUtf8(PageText{term}), hexadecimal}, {path}, heads);
        const auto grade = job.grader().checkFile(ListRow(path + u",15/11/2026, 518, 32;Ab9x"), u"qlx");
        ASSERT_TRUE(counts && grade);
        EXPECT_EQ(counts->good == 1, grade->grade == Grade::Good) << position << " " << term;
        good += counts->good;
    }
    EXPECT_GT(good, 30) << "both outcomes are met";
    EXPECT_LT(good, 270);
}

TEST_F(ExtensionEditorSearchTest, CommonHeaderControlsShowForTheirCategoryAlone) {
    folders.folder.write("local/Settings/CommonHeaders.dat", "1,PK,T,archive\r\n");
    addFile("a.qlx", "PK..", u"Appears to be of file type : archive");
    addFile("b.qlx", "PK..", u"Appears to be of file type :image");
    addFile("c.qlx", "PK..", u"Appears to be of file type : archive");
    open(9);
    EXPECT_TRUE(editor.state.commonShown);
    EXPECT_EQ(editor.state.identifiers, (Texts{u"(Please Select)", u"archive", u"image"}));
    EXPECT_EQ(editor.state.identifier, 0);
    open(1);
    EXPECT_FALSE(editor.state.commonShown);
}

TEST_F(ExtensionEditorSearchTest, IdentifiersAreSortedAsAPersonReads) {
    folders.folder.write("local/Settings/CommonHeaders.dat", "1,PK,T,archive\r\n");
    for (const char16_t* identifier : {u"picture", u"JPEG", u"Zip", u"archive"})
        addFile("a.qlx", "PK..", std::u16string(u"Appears to be of file type : ") + identifier);
    open(9);
    EXPECT_EQ(editor.state.identifiers, (Texts{u"(Please Select)", u"archive", u"JPEG", u"picture", u"Zip"}));
}

TEST_F(ExtensionEditorSearchTest, TheCommonControlsShowWithoutAnyIdentifier) {
    folders.folder.write("local/Settings/CommonHeaders.dat", "1,PK,T,archive\r\n");
    open(9);
    EXPECT_TRUE(editor.state.commonShown);
    EXPECT_EQ(editor.state.identifiers, Texts{u"(Please Select)"});
}

TEST_F(ExtensionEditorSearchTest, WithoutTheCommonListItsControlsStayHidden) {
    addFile("a.qlx", "PK..", u"Appears to be of file type : archive");
    open(9);
    EXPECT_FALSE(editor.state.commonShown);
    editor.testCommon();
    EXPECT_EQ(editor.state.term, "");
}

TEST_F(ExtensionEditorSearchTest, TheCommonTestFillsTheCriteriaAndSearches) {
    folders.folder.write("local/Settings/CommonHeaders.dat",
                         "1,PK,T,archive\r\n1,FFD8,H,image\r\n3,LAST,T,something\r\n");
    addFile("a.qlx", "PK..", u"Appears to be of file type : archive");
    open(9);
    editor.state.identifier = 1;
    expectResult(" 1", " 0", BoxAnswer::No);
    editor.testCommon();
    EXPECT_EQ(editor.state.position + editor.state.term, "1PK");
    EXPECT_EQ(editor.state.type, kTextType);
    editor.state.identifier = 0;
    expectWarning("Term not found", "Search term not found");
    editor.testCommon();
    EXPECT_EQ(editor.state.position + editor.state.term, "3LAST") << "without a match the last line counts";
}

TEST_F(ExtensionEditorSearchTest, AnIdentifierIsAppendedToTheSharedListAlone) {
    folders.share(true);
    folders.folder.write("share/Settings/CommonHeaders.dat", "1,PK,T,archive\r\n");
    openTerms("1,AAA,T\r\n0,FFD8,H\r\n");
    editor.popupAddCommon();
    editor.hitRow(1);
    EXPECT_EQ(editor.addCommonCaption(), "Add 'FFD8' to common headers list");
    const char* prompt =
        "Please enter an Idientifier (e.g. Graphics file, Music File, etc.) for the term FFD8\r\nThe current prefix is "
        "\r\n\r\nAppears to be of file type: \r\n";
    folders.dialogs.expectInput("Enter Identifier", prompt, "Picture", "");
    editor.popupAddCommon();
    EXPECT_EQ(folders.bytesOf("share/Settings/CommonHeaders.dat"), "1,PK,T,archive\r\n0,FFD8,H,Picture\r\n");
    EXPECT_FALSE(folders.has("local/Settings/CommonHeaders.dat"));
    folders.dialogs.expectInput("Enter Identifier", prompt, "");
    folders.dialogs.expectBox("No ID Entered", "Term not added!", BoxAnswer::Ok, BoxStyle::Plain, BoxButtons::Ok);
    editor.popupAddCommon();
}

TEST_F(ExtensionEditorSearchTest, WithoutSharingAnIdentifierIsAskedForAndNothingIsStored) {
    openTerms("1,AAA,T\r\n");
    editor.hitRow(0);
    folders.dialogs.expectInput("Enter Identifier",
                                "Please enter an Idientifier (e.g. Graphics file, Music File, etc.) for the term "
                                "AAA\r\nThe current prefix is \r\n\r\nAppears to be of file type: \r\n",
                                "Picture");
    editor.popupAddCommon();
    EXPECT_FALSE(folders.has("local/Settings/CommonHeaders.dat"));
    EXPECT_FALSE(folders.has("share/Settings/CommonHeaders.dat"));
}

TEST_F(ExtensionEditorSearchTest, ThePopupDeletesTheRowThatWasHit) {
    openTerms("1,AAA,T\r\n2,BBB,T\r\n");
    editor.hitRow(1);
    EXPECT_EQ(editor.state.currentRow, 1);
    expectQuestion("Delete entry?", "Delete the entry BBB ?", BoxAnswer::Yes);
    editor.popupDelete();
    EXPECT_EQ(listed(), "1,AAA,T\r\n");
    EXPECT_TRUE(editor.state.upEnabled) << "the popup touches no move button";
}

}  // namespace
}  // namespace quillon::test
