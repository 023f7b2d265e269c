// SPDX-License-Identifier: MIT
// The overview without its screen: what each choice shows.
#include "answers/overview/overview.h"

#include <fstream>

#include "answers/overview/overview_fixture.h"
#include "evidence/sector_notes.h"
#include "support/fake_surroundings.h"
#include "support/recording_screen.h"

namespace quillon::test {

namespace {

class OverviewTest : public testing::Test {
protected:
    OverviewTest() {
        std::filesystem::create_directories(folder / "lists");
        installation.settings.localPath.assign(pageFromPath(folder / "lists"));
        installation.refreshPathVariables();
    }
    void openEvidence() {
        writeOverviewEvidence(folder / "lists/1.sqlite");
        overview.open("1");
        ASSERT_TRUE(overview.state.isOpen) << overview.state.remark;
    }

    [[nodiscard]] std::vector<std::string> paths() const {
        std::vector<std::string> all;
        for (int row = 0; row < overview.rows.count(); ++row) all.push_back(overview.rows.cell(row, 0));
        return all;
    }
    static int entryOf(const FigureRows& rows, std::string_view name) {
        for (std::size_t i = 1; i < rows.size(); ++i)
            if (rows[i].first == name)
                return static_cast<int>(i);
        return -1;
    }

    TempFolder folder;
    FakeSurroundings fake;
    Installation installation{folder / "app"};
    ReportMessages messages = ReportMessages::fallback();
    RecordingScreen screen;
    Overview overview{{installation, fake.surroundings, messages}, screen};
};

using Paths = std::vector<std::string>;

TEST_F(OverviewTest, AJobThatIsNotThereIsToldOf) {
    overview.open("nothing");
    EXPECT_FALSE(overview.state.isOpen);
    EXPECT_TRUE(overview.state.trouble);
    EXPECT_EQ(overview.state.remark, "there is no list and no evidence of \"nothing\"");
    EXPECT_EQ(overview.folders(), nullptr);
    overview.showAll();
    overview.chooseExtension(3);
    EXPECT_EQ(overview.rows.count(), 0);
}

TEST_F(OverviewTest, TheQualityIsNeverWithoutItsBase) {
    openEvidence();
    EXPECT_EQ(overview.state.quality, "50.00%");
    EXPECT_EQ(overview.state.base, "of the 4 files that could be judged; 2 of 6 could not");
    EXPECT_EQ(overview.state.source, "/source");
    EXPECT_EQ(overview.state.remark, "");
    EXPECT_EQ(overview.state.filter, "All files of the job");
    EXPECT_EQ(overview.state.matching, "6 files");
}

TEST_F(OverviewTest, UnreadSectorsAreToldOfTheJobAndOfEachFile) {
    writeOverviewEvidence(folder / "lists/1.sqlite");
    auto notes = SectorNotes::open(folder / "lists/1.sqlite");
    ASSERT_TRUE(notes);
    ASSERT_TRUE(notes->setUnread(1, {{0, 512}}));
    ASSERT_TRUE(notes->setUnread(2, {}));
    ASSERT_TRUE(notes->commit());
    overview.open("1");
    EXPECT_EQ(overview.state.remark,
              "1 file of 2 holds unread sectors, 512 Bytes in all; good and whole as far as known: 25.00%");
    EXPECT_EQ(overview.rows.cell(0, 3), "12 bytes are missing; 512 bytes in unread sectors");
    EXPECT_EQ(overview.state.quality, "50.00%") << "the told figure stays";
}

TEST_F(OverviewTest, AListAloneSaysWhatIsNotKnown) {
    writeOverviewList(folder / "lists/1.csv");
    overview.open("1");
    EXPECT_TRUE(overview.state.isOpen);
    EXPECT_FALSE(overview.state.knowsAll);
    EXPECT_EQ(overview.state.quality, "50.00%");
    EXPECT_EQ(overview.state.remark,
              "There is no evidence beside this list: reasons, doubts, what was not read and the heads are not known.");
    EXPECT_EQ(overview.state.source, "/source");
    overview.selectRow(0);
    EXPECT_EQ(overview.state.headText, "a.jpg: no head is kept of it");
}

TEST_F(OverviewTest, ChoicesAreJoined) {
    openEvidence();
    overview.chooseExtension(entryOf(overview.state.extensions, "jpg"));
    EXPECT_EQ(paths(), (Paths{"a.jpg", "photos/b.jpg", "photos/2019/c.JPG"}));
    FolderNode& photos = *overview.folders()->root().below[0];
    overview.chooseFolder(photos);
    EXPECT_EQ(paths(), (Paths{"photos/b.jpg", "photos/2019/c.JPG"}));
    overview.chooseReason(entryOf(overview.state.reasons, "noise"));
    EXPECT_EQ(paths(), (Paths{"photos/2019/c.JPG"}));
    EXPECT_EQ(overview.state.filter, "below photos · .jpg · noise");
    EXPECT_EQ(overview.state.matching, "1 files");
    overview.showAll();
    EXPECT_EQ(overview.rows.count(), 6);
    EXPECT_EQ(overview.state.filter, "All files of the job");
}

TEST_F(OverviewTest, EachGradeAndEachDoubtCanBeChosen) {
    openEvidence();
    const auto choose = [this](std::string_view caption) {
        const auto& all = fileChoices();
        for (std::size_t i = 0; i < all.size(); ++i)
            if (all[i].caption == caption)
                overview.chooseFiles(static_cast<int>(i));
        return paths();
    };
    EXPECT_EQ(choose("Unknown"), (Paths{"photos2/f.xyz"}));
    EXPECT_EQ(choose("Good, but doubtful"), (Paths{"a.jpg"}));
    EXPECT_EQ(choose("Not read whole"), Paths{});
    EXPECT_EQ(choose("All files").size(), 6U);
}

TEST_F(OverviewTest, RowsTellWhy) {
    openEvidence();
    EXPECT_EQ(overview.rows.cell(0, 2), "Good");
    EXPECT_EQ(overview.rows.cell(0, 3), "12 bytes are missing");
    EXPECT_EQ(overview.rows.cell(1, 1), "2,000");
    EXPECT_EQ(overview.rows.cell(1, 2), "Corrupt");
    EXPECT_EQ(overview.rows.cell(1, 3), "nothing but zero bytes");
    EXPECT_EQ(overview.rows.cell(99, 0), "");
}

TEST_F(OverviewTest, ARowOpensItsHead) {
    openEvidence();
    overview.selectRow(1);
    EXPECT_EQ(overview.state.head, std::string(512, '2'));
    EXPECT_EQ(overview.state.headText, "b.jpg: its first 512 bytes");
    overview.chooseExtension(0);
    EXPECT_EQ(overview.state.head, "") << "another choice has no current row";
}

TEST_F(OverviewTest, TheMapIsWalkedIntoAndOutOf) {
    openEvidence();
    ASSERT_EQ(overview.state.tiles.size(), 3U);
    overview.chooseTile(0);
    EXPECT_EQ(overview.rows.count(), 3);
    EXPECT_EQ(overview.state.mapRoot, &overview.folders()->root()) << "only chosen";
    overview.walkInto(2);
    EXPECT_EQ(overview.state.mapRoot, &overview.folders()->root()) << "files have nothing inside";
    overview.walkInto(0);
    EXPECT_EQ(overview.state.mapRoot->facts.name, "photos");
    EXPECT_EQ(overview.state.filter, "below photos");
    overview.walkOut();
    overview.walkOut();
    EXPECT_EQ(overview.state.mapRoot, &overview.folders()->root());
    EXPECT_EQ(overview.rows.count(), 6);
    overview.chooseArea(MapArea::Bytes);
    EXPECT_EQ(overview.state.tiles.front().weight, 9000);
}

TEST_F(OverviewTest, TheViewerGetsWhatIsChosen) {
    openEvidence();
    EXPECT_EQ(overview.forViewer().grade, Grade::Corrupt);
    EXPECT_EQ(overview.forViewer().extension, "");
    overview.selectRow(5);
    EXPECT_EQ(overview.forViewer().grade, Grade::Unknown);
    EXPECT_EQ(overview.forViewer().extension, "xyz");
    overview.selectRow(0);
    EXPECT_EQ(overview.forViewer().grade, Grade::Corrupt) << "the viewer has no entry for good files";
}

TEST_F(OverviewTest, AnotherJobIsTheEarlierAttempt) {
    openEvidence();
    auto writer = ListWriter::create(folder / "lists/0.csv");
    ListRow row;
    row.beginFile(u"", "a.jpg");
    row.addFile({u"01/01/2026", 1000, 32, u"TOKEN"});
    row.add(kGrades[Grade::Corrupt].message.value);
    ASSERT_TRUE(writer->write(row));
    ASSERT_TRUE(writer->close());
    fake.dialogs.expectFiles("Compare with", {folder / "lists/0.csv"});
    overview.compare();
    EXPECT_EQ(overview.state.filter, "From 0 to 1");
    EXPECT_EQ(overview.state.matching, "5 gained, 0 lost, 0 moved, 1 better, 0 worse, 0 same");
    EXPECT_EQ(overview.rows.count(), 6);
    EXPECT_STREQ(overview.rows.titles()[1], "Change");
    overview.showAll();
    EXPECT_FALSE(overview.rows.areChanges());
}

TEST_F(OverviewTest, ACopyIsHandedTheFilterInWordsButNotTheGrades) {
    openEvidence();
    EXPECT_EQ(overview.forCopies(false).what, "");
    overview.chooseFiles(1);
    const CopiesHandover ofGrade = overview.forCopies(true);
    EXPECT_EQ(ofGrade.what, "") << "the ticks tell the grades, and they change";
    EXPECT_EQ(ofGrade.wish.grades, fileChoices()[1].wish.grades);
    EXPECT_TRUE(ofGrade.failedOnly);
    overview.chooseFiles(static_cast<int>(fileChoices().size()) - 1);
    overview.chooseExtension(entryOf(overview.state.extensions, "jpg"));
    EXPECT_EQ(overview.forCopies(false).what, ".jpg · Not read whole");
}

TEST_F(OverviewTest, WhatIsShownIsExported) {
    openEvidence();
    overview.chooseExtension(entryOf(overview.state.extensions, "png"));
    fake.dialogs.expectFolder("Export", folder / "");
    fake.dialogs.expectInput(
        "Export", "Name of the file. Its ending tells the form: .csv, .jsonl or .xlsx, a workbook of a spreadsheet.",
        "out.jsonl", "1.csv");
    overview.exportFiles();
    EXPECT_FALSE(overview.state.trouble) << overview.state.remark;
    std::ifstream file(folder / "out.jsonl");
    std::string line;
    ASSERT_TRUE(std::getline(file, line));
    EXPECT_NE(line.find("photos/2019/d.png"), line.npos);
    EXPECT_FALSE(std::getline(file, line));
}

TEST_F(OverviewTest, AJobThatBelongsToACaseShowsTheCaseToo) {
    for (const char* id : {"7-a", "7-b"}) writeOverviewEvidence(folder / "lists" / (std::string(id) + ".sqlite"));
    writeOverviewList(folder / "lists/77.csv");
    overview.open("7-b");
    EXPECT_EQ(overview.state.scopes, (std::vector<std::string>{"Job 7-b", "Case 7 (2 jobs)"}));
    EXPECT_EQ(overview.state.job, "Job 7-b");
    overview.chooseExtension(1);
    overview.chooseScope(1);
    EXPECT_EQ(overview.state.job, "Case 7");
    EXPECT_EQ(overview.state.source, "7-a, 7-b");
    EXPECT_EQ(overview.state.extension, 0);
    EXPECT_EQ(overview.state.total.files, 12);
    EXPECT_EQ(overview.state.quality, "50.00%");
    EXPECT_EQ(overview.state.base, "of the 8 files that could be judged; 4 of 12 could not");
    EXPECT_EQ(overview.state.filter, "All files of the case");
    while (overview.searchOn()) continue;
    EXPECT_EQ(overview.state.matching, "12 files");
    EXPECT_EQ(overview.rows.cell(6, 0), "7-b/a.jpg");
    EXPECT_FALSE(overview.state.hasOneJob);
    overview.chooseScope(0);
    EXPECT_EQ(overview.state.job, "Job 7-b");
    EXPECT_EQ(overview.state.source, "/source");
    EXPECT_EQ(overview.state.matching, "6 files");
    EXPECT_TRUE(overview.state.hasOneJob);
}

TEST_F(OverviewTest, AFolderOfACaseIsAFolderOfItsJob) {
    for (const char* id : {"7-a", "7-b"}) writeOverviewEvidence(folder / "lists" / (std::string(id) + ".sqlite"));
    overview.open("7-b");
    overview.chooseScope(1);
    FolderNode& first = *overview.folders()->root().below[0];
    overview.chooseFolder(first);
    EXPECT_EQ(overview.state.filter, "below 7-a");
    EXPECT_TRUE(overview.state.hasOneJob);
    EXPECT_FALSE(overview.state.isInOwnJob) << "the viewer has the list of 7-b";
    ASSERT_TRUE(overview.folders()->load(first));
    overview.chooseFolder(*first.below[0]);
    EXPECT_EQ(paths(), (Paths{"7-a/photos/b.jpg", "7-a/photos/2019/c.JPG", "7-a/photos/2019/d.png"}));
    const CopiesHandover copies = overview.forCopies(false);
    EXPECT_EQ(copies.job, (folder / "lists/7-a.sqlite").native());
    EXPECT_EQ(copies.wish.below, "photos");
    fake.dialogs.expectFolder("Export", folder / "");
    fake.dialogs.expectInput(
        "Export", "Name of the file. Its ending tells the form: .csv, .jsonl or .xlsx, a workbook of a spreadsheet.",
        "out.jsonl", "7.csv");
    overview.exportFiles();
    std::ifstream file(folder / "out.jsonl");
    int lines = 0;
    for (std::string line; std::getline(file, line); ++lines) EXPECT_NE(line.find("photos/"), line.npos);
    EXPECT_EQ(lines, 3);
    overview.chooseFolder(*overview.folders()->root().below[1]);
    EXPECT_TRUE(overview.state.isInOwnJob);
}

TEST_F(OverviewTest, ACaseThatCannotBeReadLeavesTheJob) {
    writeOverviewEvidence(folder / "lists/7-b.sqlite");
    folder.write("lists/7-a.sqlite", "no evidence");
    overview.open("7-b");
    ASSERT_EQ(overview.state.scopes.size(), 2U);
    overview.chooseScope(1);
    EXPECT_TRUE(overview.state.trouble);
    EXPECT_EQ(overview.state.scope, 0);
    EXPECT_EQ(overview.state.matching, "6 files");
}

TEST_F(OverviewTest, AReportIsNotWrittenOverAFileWithoutAYes) {
    openEvidence();
    folder.write("out.html", "old");
    fake.dialogs.expectFolder("Report", folder / "");
    fake.dialogs.expectInput("Report", "Name of the page for the customer.", "out.html", "1.html");
    fake.dialogs.expectBox("Report", (folder / "out.html").native() + " is there already. Replace it ?", BoxAnswer::No);
    overview.report();
    EXPECT_EQ(std::filesystem::file_size(folder / "out.html"), 3U);
    fake.dialogs.expectFolder("Report", folder / "");
    fake.dialogs.expectInput("Report", "Name of the page for the customer.", "new.html", "1.html");
    overview.report();
    EXPECT_GT(std::filesystem::file_size(folder / "new.html"), 1000U);
}

}  // namespace

}  // namespace quillon::test
