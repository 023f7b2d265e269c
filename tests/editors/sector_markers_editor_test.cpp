// SPDX-License-Identifier: MIT
#include "editors/sector_markers_editor.h"

#include <gtest/gtest.h>

#include "app/database_history.h"
#include "editors/bad_sector_marker.h"
#include "editors/editor_folders.h"

using namespace quillon;
using quillon::test::EditorFolders;
using Fields = SectorMarkersEditor::Fields;

namespace {

constexpr const char* kLocal = "local/Settings/BadSectors.dat";
constexpr const char* kShared = "share/Settings/BadSectors.dat";
constexpr const char* kTwo = "0,BAD SECTOR,T,R,BAD SECTOR\r\n1,0A23,H,R,lines\r\n";

Fields once(const char* name, const char* marker, const char* position, bool hexadecimal = false) {
    return {.name = name, .marker = marker, .position = position, .hexadecimal = hexadecimal, .repeating = false};
}
Fields filling(const char* name, const char* marker, const char* position = "0", bool hexadecimal = false) {
    return {.name = name, .marker = marker, .position = position, .hexadecimal = hexadecimal, .repeating = true};
}

class SectorMarkersEditorTest : public testing::Test {
protected:
    void enter(const Fields& fields) {
        editor.fields = fields;
        editor.addOrUpdate();
    }
    [[nodiscard]] std::vector<std::string> lines() const {
        std::vector<std::string> all;
        for (const auto& row : editor.rows()) all.push_back(row.line);
        return all;
    }

    EditorFolders folders;
    SectorMarkersEditor editor{folders.installation, folders.dialogs, folders.kept};
};

using Lines = std::vector<std::string>;

TEST_F(SectorMarkersEditorTest, WithoutAFileThePublishedMarkersStandThereAndNothingIsWritten) {
    folders.share(true);
    editor.load();
    EXPECT_EQ(editor.rows().size(), SectorMarkers::published().all().size());
    EXPECT_FALSE(folders.has(kLocal));
    EXPECT_FALSE(folders.has(kShared));
}

TEST_F(SectorMarkersEditorTest, AnEmptyFileIsAListWithoutMarkers) {
    folders.folder.write(kLocal, "");
    editor.load();
    EXPECT_TRUE(editor.rows().empty());
}

TEST_F(SectorMarkersEditorTest, TheSharedCopyIsReadWithSharingOnWhenItExists) {
    folders.folder.write(kLocal, "0,LOCAL,T,R,l\r\n");
    folders.share(true);
    editor.load();
    EXPECT_EQ(lines(), Lines{"0,LOCAL,T,R,l"});
    folders.folder.write(kShared, "0,SHARED,T,R,s\r\n");
    editor.load();
    EXPECT_EQ(lines(), Lines{"0,SHARED,T,R,s"});
    folders.share(false);
    editor.load();
    EXPECT_EQ(lines(), Lines{"0,LOCAL,T,R,l"});
}

TEST_F(SectorMarkersEditorTest, AddWritesTheLineToBothCopiesAndTheHistory) {
    folders.folder.write(kLocal, kTwo);
    folders.folder.write(kShared, kTwo);
    folders.share(true);
    editor.load();
    enter(once("imager 7", "NOT READ", "1"));
    const std::string expected = std::string(kTwo) + "1,NOT READ,T,O,imager 7\r\n";
    EXPECT_EQ(folders.bytesOf(kLocal), expected);
    EXPECT_EQ(folders.bytesOf(kShared), expected);
    EXPECT_EQ(editor.fields, Fields{});
    for (const char* root : {"local/Settings", "share/Settings"}) {
        const auto history = readHistory(folders.folder / root, 10);
        ASSERT_EQ(history.size(), 1U) << root;
        EXPECT_EQ(history[0].screen, "Bad Sector Markers");
        EXPECT_EQ(history[0].files[0].file, "Settings/BadSectors.dat");
    }
}

TEST_F(SectorMarkersEditorTest, HexadecimalStandsInCapitalsAndTextThatCannotStandInALineTurnsHexadecimal) {
    folders.folder.write(kLocal, "");
    editor.load();
    enter(filling("digits", "de ad be ef", "0", true));
    enter(filling("comma", "A,B"));
    EXPECT_EQ(folders.bytesOf(kLocal), "0,DEADBEEF,H,R,digits\r\n0,412C42,H,R,comma\r\n");
}

TEST_F(SectorMarkersEditorTest, WhatMarksNothingIsToldAndNotAdded) {
    folders.folder.write(kLocal, kTwo);
    editor.load();
    struct Case {
        Fields fields;
        const char* remark;
    };
    const Case cases[] = {
        {{}, ""},
        {filling("x", ""), "Type what the imaging tool writes"},
        {filling("x", "0000", "0", true), "Zeros alone mark nothing: healthy files hold them"},
        {filling("x", "123", "0", true), "Hexadecimal digits stand in pairs: 01 02 0A"},
        {filling("x", "GG", "0", true), "Hexadecimal digits stand in pairs: 01 02 0A"},
        {once("x", "ABC", "1"), "What stands once needs at least 4 bytes"},
        {once("x", "AAAA", "1"), "One byte again and again has to repeat to the sector's end"},
        {once("x", "ABCD", "510"), "Does not fit into a sector of 512 bytes"},
        {once("x", "ABCD", "513"), "The position is a number from 1 to 512, or 0 for anywhere"},
        {once("x", "ABCD", "-1"), "The position is a number from 1 to 512, or 0 for anywhere"},
        {once("x", "ABCD", ""), "The position is a number from 1 to 512, or 0 for anywhere"},
        {once(" ", "ABCD", "1"), "Give it a name, which is told of the files"},
        {once("a,b", "ABCD", "1"), "A name holds no comma"},
        {filling("x", "BAD SECTOR"), "Stands in the list already: BAD SECTOR"},
    };
    for (const auto& [fields, remark] : cases) {
        enter(fields);
        EXPECT_EQ(editor.remark(), remark);
        EXPECT_EQ(editor.fields, fields) << remark;
    }
    EXPECT_EQ(folders.bytesOf(kLocal), kTwo);
}

TEST_F(SectorMarkersEditorTest, AClickTakesTheRowAndUpdateReplacesIt) {
    folders.folder.write(kLocal, kTwo);
    editor.load();
    editor.selectRow(1);
    EXPECT_EQ(editor.fields, filling("lines", "0A23", "1", true));
    EXPECT_TRUE(editor.updating());
    EXPECT_EQ(editor.remark(), "");
    editor.fields.repeating = false;
    editor.fields.marker = "0A2320706F73";
    editor.addOrUpdate();
    EXPECT_EQ(folders.bytesOf(kLocal), "0,BAD SECTOR,T,R,BAD SECTOR\r\n1,0A2320706F73,H,O,lines\r\n");
    EXPECT_FALSE(editor.updating());
}

TEST_F(SectorMarkersEditorTest, DeleteAsks) {
    folders.folder.write(kLocal, kTwo);
    editor.load();
    editor.deleteSelected();
    editor.selectRow(0);
    const char* question = "Are you sure you want to delete the marker \r\nBAD SECTOR?";
    folders.dialogs.expectBox("Delete marker?", question, BoxAnswer::No, BoxStyle::Question, BoxButtons::YesNo);
    editor.deleteSelected();
    EXPECT_EQ(folders.bytesOf(kLocal), kTwo);
    folders.dialogs.expectBox("Delete marker?", question, BoxAnswer::Yes);
    editor.deleteSelected();
    EXPECT_EQ(folders.bytesOf(kLocal), "1,0A23,H,R,lines\r\n");
    EXPECT_EQ(editor.selected(), -1);
}

TEST_F(SectorMarkersEditorTest, AMarkerGoesUpAndDownAndStaysSelected) {
    const std::string third = "0,UNREAD,T,R,third\r\n";
    folders.folder.write(kLocal, kTwo + third);
    editor.load();
    editor.moveUp();
    editor.moveDown();
    EXPECT_EQ(folders.bytesOf(kLocal), kTwo + third) << "nothing is selected";
    editor.selectRow(2);
    EXPECT_FALSE(editor.canMoveDown());
    editor.fields.name = "typed";
    editor.moveUp();
    editor.moveUp();
    editor.moveUp();
    EXPECT_EQ(folders.bytesOf(kLocal), third + kTwo);
    EXPECT_EQ(editor.selected(), 0);
    EXPECT_FALSE(editor.canMoveUp());
    EXPECT_EQ(editor.fields.name, "typed");
    editor.moveDown();
    EXPECT_EQ(editor.selected(), 1);
    editor.addOrUpdate();
    EXPECT_EQ(folders.bytesOf(kLocal), "0,BAD SECTOR,T,R,BAD SECTOR\r\n0,UNREAD,T,R,typed\r\n1,0A23,H,R,lines\r\n");
}

TEST_F(SectorMarkersEditorTest, AMarkerThatWentAwayMeanwhileIsNoLongerSelected) {
    folders.folder.write(kLocal, kTwo);
    folders.folder.write(kShared, kTwo);
    folders.share(true);
    editor.load();
    editor.selectRow(1);
    folders.folder.write(kShared, "0,BAD SECTOR,T,R,BAD SECTOR\r\n0,THEIRS,T,R,theirs\r\n");
    editor.moveUp();
    EXPECT_EQ(lines(), (Lines{"0,BAD SECTOR,T,R,BAD SECTOR", "0,THEIRS,T,R,theirs"}));
    EXPECT_EQ(editor.selected(), -1);
    EXPECT_FALSE(editor.updating());
    EXPECT_EQ(folders.bytesOf(kShared), "0,BAD SECTOR,T,R,BAD SECTOR\r\n0,THEIRS,T,R,theirs\r\n");
}

TEST_F(SectorMarkersEditorTest, ALineThatMarksNothingStaysAsItStands) {
    folders.folder.write(kLocal, "a remark of somebody\r\n\r\n0,00,H,R,zeros\r\n");
    editor.load();
    ASSERT_EQ(editor.rows().size(), 2U);
    EXPECT_TRUE(editor.rows()[0].marker.bytes.empty());
    enter(filling("new", "UNREAD"));
    EXPECT_EQ(folders.bytesOf(kLocal), "a remark of somebody\r\n0,00,H,R,zeros\r\n0,UNREAD,T,R,new\r\n");
}

TEST_F(SectorMarkersEditorTest, WhatAnotherWorkstationAddedMeanwhileStays) {
    folders.folder.write(kLocal, kTwo);
    folders.folder.write(kShared, kTwo);
    folders.share(true);
    editor.load();
    folders.folder.write(kShared, std::string(kTwo) + "0,THEIRS,T,R,theirs\r\n");
    enter(filling("ours", "OURS"));
    const std::string expected = std::string(kTwo) + "0,THEIRS,T,R,theirs\r\n0,OURS,T,R,ours\r\n";
    EXPECT_EQ(folders.bytesOf(kShared), expected);
    EXPECT_EQ(folders.bytesOf(kLocal), expected);
    EXPECT_EQ(editor.rows().size(), 4U);
}

TEST_F(SectorMarkersEditorTest, ASaveThatFailsIsTold) {
    editor.load();
    std::filesystem::remove_all(folders.folder / "local/Settings");
    folders.folder.write("local/Settings", "no folder");
    bool told = false;
    folders.dialogs.onProblem = [&](const std::string& problem) {
        told = problem.find("Not saved : ") != std::string::npos;
    };
    enter(filling("ours", "OURS"));
    EXPECT_TRUE(told);
}

TEST(MarkedSector, IsFilledAsTheMarkerTells) {
    const auto sector = [](const SectorMarker& marker) { return markedSector(marker); };
    EXPECT_EQ(sector({1, "AB", true, ""}), markerSector("AB"));
    EXPECT_EQ(sector({0, "ABC", true, ""}), markerSector("ABC"));
    EXPECT_EQ(sector({3, "ABCD", false, ""}), std::string(2, '\0') + "ABCD" + std::string(506, '\0'));
    EXPECT_EQ(sector({0, "ABCD", false, ""}), "ABCD" + std::string(508, '\0'));
    EXPECT_EQ(sector({512, "A", true, ""}), std::string(511, '\0') + "A");
    SectorMarkers markers;
    markers.assign({"5,ABCD,T,O,x"});
    EXPECT_NE(markers.find(sector(markers.all()[0])), nullptr);
}

}  // namespace
