// SPDX-License-Identifier: MIT
#include "viewer/list_viewer.h"

#include <set>

#include "viewer/viewer_fixture.h"

namespace quillon::test {
namespace {

using Texts = std::vector<std::u16string>;

TEST_F(ViewerTest, TheCategoriesAreTheLinesWithoutTheGoodOne) {
    viewer.load();
    const Texts expected = {u"Please Select",
                            u"Header Corrupt",
                            u"No Extension",
                            u"Unknown or ambiguous file type",
                            u"File encrypted",
                            u"Access error",
                            u"File too small to test (<512 bytes)",
                            u"File is zero bytes",
                            u"Invalid File Name",
                            u"Appears to be of file type: "};
    EXPECT_EQ(viewer.state.categories, expected);
    EXPECT_EQ(viewer.state.marks, expected);
    EXPECT_EQ(viewer.state.category, 0);
    EXPECT_EQ(viewer.state.status, "Ready ..>");
    EXPECT_EQ(viewer.state.matching, "");
    EXPECT_TRUE(viewer.state.changed);
}

TEST_F(ViewerTest, BlankLinesAreNoCategories) {
    folders.folder.write("local/Settings/Errors.dat", "Header Corrupt\r\n\r\n  \r\nNo Extension\r\n");
    viewer.load();
    EXPECT_EQ(viewer.state.categories, (Texts{u"Please Select", u"Header Corrupt", u"No Extension"}));
}

TEST_F(ViewerTest, WithoutTheFileTheFallbackListServesAndHasTheGoodLine) {
    std::filesystem::remove(folders.folder / "local/Settings/Errors.dat");
    expectWarning("Error", "Unable to find Report Header Database. This should be stored in " +
                               (folders.folder / "local").string() +
                               "\\Settings\\errors.dat. Switching to default settings.\r\n");
    viewer.load();
    EXPECT_EQ(viewer.state.categories, (Texts{u"Please Select", u"Header OK", u"Header Corrupt", u"No Extension",
                                              u"Unknown or ambiguous file type", u"File encrypted", u"Access error",
                                              u"File too small to test (<512 bytes)", u"File is zero bytes",
                                              u"Invalid File Name", u"Appears to be of file type: "}));
    EXPECT_EQ(viewer.state.marks, Texts{u"Please Select"});
    writeList(listRow(u"/s/a.jpg", u"Header OK"));
    choose(u"Header OK");
    viewer.filter();
    EXPECT_EQ(viewer.state.rows.count(), 1);
}

TEST_F(ViewerTest, AFileThatCannotBeReadIsToldAndTheScreenOpens) {
    std::filesystem::remove(folders.folder / "local/Settings/Errors.dat");
    std::filesystem::create_directory(folders.folder / "local/Settings/Errors.dat");
    bool told = false;
    folders.fake.dialogs.onProblem = [&told](const std::string& problem) {
        told = told || problem.find("Error : ") != std::string::npos;
    };
    viewer.load();
    EXPECT_TRUE(told);
    EXPECT_EQ(viewer.state.categories, Texts{u"Please Select"});
    folders.fake.dialogs.onProblem = [](const std::string& problem) { ADD_FAILURE() << problem; };
}

TEST_F(ViewerTest, OnlyGradesThatCanBeTaughtEnableRun) {
    viewer.load();
    const std::vector<bool> expected = {false, true, true, true, false, false, false, false, true, true};
    for (int entry = 0; entry < 10; ++entry) {
        viewer.chooseCategory(entry);
        EXPECT_EQ(viewer.state.runEnabled, expected[static_cast<std::size_t>(entry)]) << entry;
    }
}

TEST_F(ViewerTest, TheFallbackListEnablesRunByItsTextsToo) {
    std::filesystem::remove(folders.folder / "local/Settings/Errors.dat");
    expectWarning("Error", "Unable to find Report Header Database. This should be stored in " +
                               (folders.folder / "local").string() +
                               "\\Settings\\errors.dat. Switching to default settings.\r\n");
    viewer.load();
    const std::vector<bool> expected = {false, true, true, true, true, false, false, false, false, true, true};
    for (int entry = 0; entry < 11; ++entry) {
        viewer.chooseCategory(entry);
        EXPECT_EQ(viewer.state.runEnabled, expected[static_cast<std::size_t>(entry)]) << entry;
    }
}

TEST_F(ViewerTest, TheMessagesInMemoryDecideNotTheLinesOfTheFile) {
    folders.folder.write("local/Settings/Errors.dat", "Fine\r\nHeader OK\r\nAccess error\r\nNo way in\r\n");
    job.messages[Grade::Good] = u"Fine";
    job.messages[Grade::AccessError] = u"No way in";
    viewer.load();
    EXPECT_EQ(viewer.state.categories, (Texts{u"Please Select", u"Header OK", u"Access error", u"No way in"}));
    viewer.chooseCategory(2);
    EXPECT_TRUE(viewer.state.runEnabled);
    viewer.chooseCategory(3);
    EXPECT_FALSE(viewer.state.runEnabled);
}

TEST_F(ViewerTest, ACopyIsHandedEveryGradeOfTheCategoryAndNoWordsOfIt) {
    job.messages[Grade::Unknown] = job.messages[Grade::Corrupt];
    open(u"Header Corrupt");
    const CopiesHandover handover = viewer.forCopies();
    EXPECT_EQ(std::set(handover.wish.grades.begin(), handover.wish.grades.end()),
              (std::set{Grade::Corrupt, Grade::Unknown}));
    EXPECT_EQ(handover.what, "") << "the ticks tell the grades, and they change";
}

TEST_F(ViewerTest, AResultHoldsTheCategoryAnywhereAndInItsOwnCase) {
    filterCorrupt(listRow(u"/s/a.x", u"Header Corrupt  ") + listRow(u"/s/b.x", u"very Header Corrupt, no") +
                  listRow(u"/s/c.x", u"The Header Corrupt one") + listRow(u"/s/d.x", u"header corrupt"));
    EXPECT_EQ(paths(), (Texts{u"/s/a.x", u"/s/c.x"}));
}

TEST_F(ViewerTest, AListThatCannotBeReadShowsNoRowsAndNoBox) {
    std::filesystem::create_directory(folders.folder / "local/J1.csv");
    open(u"Header Corrupt");
    viewer.filter();
    EXPECT_EQ(viewer.state.matching, "Matching :  0");
    EXPECT_FALSE(viewer.state.busy);
    EXPECT_FALSE(viewer.state.busyPointer);
}

TEST_F(ViewerTest, PleaseSelectMatchesNothing) {
    writeList(listRow(u"/s/a.jpg", u"Header Corrupt"));
    viewer.load();
    viewer.filter();
    EXPECT_EQ(viewer.state.rows.count(), 0);
    EXPECT_EQ(viewer.state.matching, "Matching :  0");
    EXPECT_TRUE(viewer.state.extensions.entries().empty());
    EXPECT_EQ(host.focused, std::vector<std::string>());
}

TEST_F(ViewerTest, FilterShowsTheRowsOfTheCategory) {
    filterCorrupt(listRow(u"/s/a.jpg", u"Header Corrupt") + listRow(u"/s/b.jpg", u"Header OK") +
                  listRow(u"/s/c.PDF", u"Header Corrupt"));
    EXPECT_EQ(paths(), (Texts{u"/s/a.jpg", u"/s/c.PDF"}));
    EXPECT_EQ(viewer.state.rows.extension(viewer.state.rows.idAt(1)), u"PDF");
    EXPECT_EQ(viewer.state.matching, "Matching :  2");
    EXPECT_EQ(viewer.state.status, "");
    EXPECT_EQ(viewer.state.extensions.entries(), (Texts{u"jpg", u"pdf"}));
    EXPECT_EQ(viewer.state.extensions.chosen(), -1);
    EXPECT_EQ(viewer.state.currentRow, -1);
    EXPECT_EQ(host.focused, std::vector<std::string>(1, "iGrid1"));
    EXPECT_FALSE(viewer.state.busy);
    EXPECT_FALSE(viewer.state.busyPointer);
}

TEST_F(ViewerTest, FilterReadsTheListOfTheJobIdOfThisMoment) {
    open(u"Header Corrupt");
    job.state.options.jobId = "J2";
    folders.folder.write("local/J2.csv", utf16Bytes(listRow(u"/s/z.jpg", u"Header Corrupt")));
    viewer.filter();
    EXPECT_EQ(paths(), Texts{u"/s/z.jpg"});
}

TEST_F(ViewerTest, TheLimitLetsOneRowMoreThrough) {
    std::u16string rows;
    for (char16_t c = u'a'; c <= u'f'; ++c) rows += listRow(std::u16string(u"/s/") + c + u".jpg", u"Header Corrupt");
    writeList(rows);
    open(u"Header Corrupt");
    const std::vector<std::pair<const char*, int>> cases = {{"3", 4}, {"0", 1}, {"abc", 1}, {"", 1}, {"2x", 3}};
    for (const auto& [limit, count] : cases) {
        viewer.state.maxFiles = limit;
        folders.fake.dialogs.expectBox("Quillon", "Maximum file limit reached", BoxAnswer::Ok, BoxStyle::Plain,
                                       BoxButtons::Ok);
        viewer.filter();
        EXPECT_EQ(viewer.state.rows.count(), count) << limit;
    }
    viewer.state.maxFiles = "5";
    viewer.filter();
    EXPECT_EQ(viewer.state.rows.count(), 6);
}

TEST_F(ViewerTest, APathWithACommaIsNeverShown) {
    filterCorrupt(listRow(u"/s/a>b.jpg", u"Header Corrupt") + listRow(u"/s/c.jpg", u"Header Corrupt"));
    EXPECT_EQ(paths(), std::vector<std::u16string>{u"/s/c.jpg"});
}

TEST_F(ViewerTest, RowsWithCommasThatAreNotShownAreCounted) {
    const std::u16string comma = listRow(u"/s/a>b.jpg", u"Header Corrupt");
    filterCorrupt(comma + listRow(u"/s/c.jpg", u"Header Corrupt"));
    EXPECT_EQ(viewer.state.notShown, "1 row with a comma is not shown");
    std::u16string rows = listRow(u"/s/x>y.jpg", u"Header OK") + u"/s/x>y.jpg,15/11/2026\r\n";
    for (int i = 0; i < 1052; ++i) rows += comma;
    filterCorrupt(rows);
    EXPECT_EQ(viewer.state.notShown, "1,052 rows with commas are not shown") << "those of the category";
    EXPECT_EQ(viewer.state.matching, "Matching :  0");
    filterCorrupt(listRow(u"/s/c.jpg", u"Header Corrupt"));
    EXPECT_EQ(viewer.state.notShown, "");
}

TEST_F(ViewerTest, AListOfFourColumnsShowsNoRows) {
    filterCorrupt(u"/s/a.jpg,15/11/2026, 600, 32;Ab9x\r\n");
    EXPECT_TRUE(paths().empty());
}

TEST_F(ViewerTest, TheProblemIsKeptForEntryNineAlone) {
    writeList(listRow(u"/s/a.jpg", u"Appears to be of file type : archive") +
              listRow(u"/s/b.jpg", u"Appears to be of file type: image"));
    viewer.load();
    viewer.chooseCategory(9);
    viewer.filter();
    ASSERT_EQ(viewer.state.rows.count(), 1);
    EXPECT_EQ(viewer.state.rows.problem(viewer.state.rows.idAt(0)), u"Appears to be of file type: image");
}

TEST_F(ViewerTest, TheFallbackListShiftsTheCommonHeaderEntryByOne) {
    std::filesystem::remove(folders.folder / "local/Settings/Errors.dat");
    folders.fake.dialogs.expectBox("Error", "Unable to find Report Header Database. This should be stored in " +
                                                (folders.folder / "local").string() +
                                                "\\Settings\\errors.dat. Switching to default settings.\r\n");
    writeList(listRow(u"/s/a.jpg", u"Appears to be of file type: image"));
    viewer.load();
    viewer.chooseCategory(10);
    viewer.filter();
    ASSERT_EQ(viewer.state.rows.count(), 1);
    EXPECT_EQ(viewer.state.rows.problem(viewer.state.rows.idAt(0)), u"");
}

TEST_F(ViewerTest, AMissingListIsTold) {
    open(u"Header Corrupt");
    expectWarning("List Error", "File list for J1 does not exist. ");
    viewer.filter();
    folders.folder.write("zips/J1.zip", "PK");
    expectWarning("List Error",
                  "File list for J1 does not exist. The file you requested appears to have been archived");
    viewer.filter();
    EXPECT_EQ(viewer.state.rows.count(), 0);
    EXPECT_FALSE(viewer.state.busy);
}

TEST_F(ViewerTest, SelectingARowChoosesAndCountsItsExtension) {
    filterCorrupt(listRow(u"/s/a.JPG", u"Header Corrupt") + listRow(u"/s/b.jpg", u"Header Corrupt") +
                  listRow(u"/s/c.pdf", u"Header Corrupt"));
    viewer.selectRow(0);
    EXPECT_EQ(viewer.state.extensions.chosenText(), u"jpg");
    EXPECT_EQ(viewer.state.status, "jpg = 2");
    viewer.selectRow(-1);
    EXPECT_EQ(viewer.state.currentRow, 0);
}

TEST_F(ViewerTest, AnExtensionOfOtherRowsCountsZero) {
    filterCorrupt(listRow(u"/s/a.jpg", u"Header Corrupt") + listRow(u"/s/c.pdf", u"Header Corrupt"));
    viewer.selectExtension(1);
    EXPECT_EQ(viewer.state.status, "") << "no current row";
    viewer.selectRow(0);
    viewer.selectExtension(1);
    EXPECT_EQ(viewer.state.status, "pdf = 0");
}

TEST_F(ViewerTest, CountsAreGrouped) {
    std::u16string rows;
    for (int i = 0; i < 1234; ++i) rows += listRow(u"/s/a.jpg", u"Header Corrupt");
    filterCorrupt(rows);
    viewer.selectRow(7);
    EXPECT_EQ(viewer.state.status, "jpg = 1,234");
    EXPECT_EQ(viewer.state.matching, "Matching :  1234");
}

TEST_F(ViewerTest, ARowOfExtensionCAddsAnEntryEachTime) {
    filterCorrupt(listRow(u"/s/a.c", u"Header Corrupt") + listRow(u"/s/b.C", u"Header Corrupt") +
                  listRow(u"/s/b.pdf", u"Header Corrupt"));
    EXPECT_EQ(viewer.state.extensions.entries(), (Texts{u"c", u"pdf"}));
    viewer.selectRow(0);
    viewer.selectRow(0);
    EXPECT_EQ(viewer.state.extensions.entries(), (Texts{u"c", u"c", u"c", u"pdf"}));
    viewer.selectRow(1);
    EXPECT_EQ(viewer.state.extensions.entries().size(), 4U) << "an upper-case C is another text";
    EXPECT_EQ(viewer.state.status, "c = 2");
}

TEST_F(ViewerTest, ARowWhoseExtensionIsNoEntryChoosesTheFirst) {
    filterCorrupt(listRow(u"/s/a", u"Header Corrupt"));
    viewer.selectRow(0);
    EXPECT_EQ(viewer.state.status, "") << "no entries, nothing chosen";
    viewer.state.extensions.add(u"zzz");
    viewer.selectRow(0);
    EXPECT_EQ(viewer.state.extensions.chosen(), 0);
    EXPECT_EQ(viewer.state.status, "zzz = 0");
}

TEST_F(ViewerTest, RunNeedsAnExtensionButForFilesWithoutOne) {
    filterCorrupt(listRow(u"/s/a.jpg", u"Header Corrupt") + listRow(u"/s/b.pdf", u"Header Corrupt") +
                  listRow(u"/s/c.JPG", u"Header Corrupt"));
    EXPECT_FALSE(viewer.openEditor());
    EXPECT_EQ(host.beeps, 1);
    viewer.selectRow(0);
    const auto handover = viewer.openEditor();
    ASSERT_TRUE(handover);
    EXPECT_EQ(handover->category, 1);
    EXPECT_EQ(handover->extension, u"jpg");
    ASSERT_EQ(handover->files.size(), 2U);
    EXPECT_EQ(handover->files[1].path, u"/s/c.JPG");

    writeList(listRow(u"/s/noext", u"No Extension"));
    choose(u"No Extension");
    viewer.filter();
    const auto without = viewer.openEditor();
    ASSERT_TRUE(without);
    EXPECT_EQ(without->extension, u"");
    EXPECT_EQ(without->files.size(), 1U);
    EXPECT_EQ(host.beeps, 1);
}

TEST_F(ViewerTest, ASkipTermIsAppendedToTheLocalList) {
    folders.folder.write("local/Settings/SkipList.dat", "*.tmp*");
    filterCorrupt(listRow(u"/s/a.jpg", u"Header Corrupt"));
    viewer.selectRow(0);
    folders.fake.dialogs.expectInput("Add to skip list", "Please enter the term you want to add to the skip list.",
                                     "*\xC3\xA4*", "/s/a.jpg");
    viewer.addToSkipList();
    EXPECT_EQ(folders.folder.read("local/Settings/SkipList.dat"), "*.tmp*\r\n*\xE4*\r\n");
    EXPECT_FALSE(pathExists(folders.folder / "share/Settings/SkipList.dat"));
    folders.fake.dialogs.expectInput("Add to skip list", "Please enter the term you want to add to the skip list.", "");
    viewer.addToSkipList();
    EXPECT_EQ(folders.folder.read("local/Settings/SkipList.dat"), "*.tmp*\r\n*\xE4*\r\n");
}

TEST_F(ViewerTest, CharactersThatTheSkipListCannotHoldAreTold) {
    filterCorrupt(listRow(u"/s/\u0436.jpg", u"Header Corrupt"));
    viewer.selectRow(0);
    folders.fake.dialogs.expectInput("Add to skip list", "Please enter the term you want to add to the skip list.",
                                     "/s/\xD0\xB6.jpg");
    viewer.addToSkipList();
    EXPECT_EQ(viewer.state.status, "Stored as \"?\" : \xD0\xB6");
    EXPECT_EQ(folders.folder.read("local/Settings/SkipList.dat"), "/s/?.jpg\r\n");
}

// The visible escapes of a name fit no file; a "?" fits any character.
TEST_F(ViewerTest, ANameThatCannotBeReadIsProposedAsATermThatFitsIt) {
    const std::pair<const char*, const char*> names[] = {{"/s/invoice\xE2\x80\xAE"
                                                          "fdp.exe",
                                                          "/s/invoice?fdp.exe"},
                                                         {"/s/bad\xFF\n.jpg", "/s/bad??.jpg"},
                                                         {"/s/\xD0\xB6.jpg", "/s/\xD0\xB6.jpg"}};
    for (const auto& [name, term] : names) {
        filterCorrupt(listRow(toListText(name), u"Header Corrupt"));
        viewer.selectRow(0);
        folders.fake.dialogs.expectInput("Add to skip list", "Please enter the term you want to add to the skip list.",
                                         "", term);
        viewer.addToSkipList();
    }
}

TEST_F(ViewerTest, WithSharingASkipTermIsAppendedToBothLists) {
    folders.installation.settings.useSharedDb = 1;
    folders.installation.refreshPathVariables();
    viewer.load();
    folders.fake.dialogs.expectInput("Add to skip list", "Please enter the term you want to add to the skip list.",
                                     "thumbs.db\nof two lines", "");
    viewer.addToSkipList();
    EXPECT_EQ(folders.folder.read("local/Settings/SkipList.dat"), "thumbs.db\r\n");
    EXPECT_EQ(folders.folder.read("share/Settings/SkipList.dat"), "thumbs.db\r\n");
    EXPECT_TRUE(job.skipList.empty()) << "the loaded list is another matter";
}

}  // namespace
}  // namespace quillon::test
