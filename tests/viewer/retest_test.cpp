// SPDX-License-Identifier: MIT
#include "viewer/retest.h"

#include "viewer/retest_fixture.h"

namespace quillon::test {
namespace {

constexpr const char* kInUse =
    "Warning, the file appears to be open in another application! Please close any programs that may be accessing the "
    "file list.";
TEST_F(RetestTest, GoodRowsLeaveTheGridAndTheListHasTheNewResults) {
    openWithTerm();
    const std::u16string before = listNow();
    viewer.retest();
    EXPECT_EQ(listNow(),
              listRow(good_, u"Header OK") + listRow(u"/s/a.pdf", u"Header OK") + listRow(bad_, u"Header Corrupt"));
    EXPECT_EQ(paths(), std::vector<std::u16string>{bad_});
    EXPECT_EQ(viewer.state.matching, "Matching :  1");
    EXPECT_EQ(utf16Text(folders.folder.read("app/tFile.csv")), before);
    EXPECT_EQ(utf16Text(folders.folder.read(folders.keptName("J1.csv"))), before);
    EXPECT_EQ(job.state.counters[Grade::Good], 1);
    EXPECT_EQ(job.state.counters[Grade::Corrupt], 1);
    EXPECT_EQ(host.beeps, 1);
    EXPECT_EQ(host.focused, std::vector<std::string>(2, "iGrid1"));
    EXPECT_FALSE(viewer.state.busy);
    EXPECT_FALSE(viewer.state.busyPointer);
    EXPECT_TRUE(viewer.state.changed);
    EXPECT_EQ(folders.fake.loop.turns, 3);
}

TEST_F(RetestTest, ASecondRetestGradesTheRowsThatStayed) {
    openWithTerm();
    viewer.retest();
    EXPECT_EQ(viewer.state.extensions.chosenText(), u"qlx");
    folders.folder.write("local/Database/qlx.dat", "1,QLX!,T\r\n1,nope,T\r\n");
    viewer.retest();
    EXPECT_EQ(viewer.state.rows.count(), 0);
    EXPECT_EQ(listNow(),
              listRow(good_, u"Header OK") + listRow(u"/s/a.pdf", u"Header OK") + listRow(bad_, u"Header OK"));
    EXPECT_EQ(viewer.state.extensions.entries(), std::vector<std::u16string>{u"qlx"}) << "the old entries stay";
}

TEST_F(RetestTest, TheRowsInViewStayInViewWhenOthersLeave) {
    const auto first = makeFile("first.qlx", "nope");
    const auto gone = makeFile("gone.qlx", "QLX!");
    const auto top = makeFile("top.qlx", "nope");
    const auto last = makeFile("last.qlx", "QLX!");
    folders.folder.write("local/Database/qlx.dat", "1,QLX!,T\r\n");
    filterCorrupt(listRow(first, u"Header Corrupt") + listRow(gone, u"Header Corrupt") +
                  listRow(top, u"Header Corrupt") + listRow(last, u"Header Corrupt"));
    viewer.selectRow(0);
    viewer.state.topRow = 2;
    viewer.retest();
    EXPECT_EQ(paths(), (std::vector<std::u16string>{first, top}));
    EXPECT_EQ(viewer.state.topRow, 1);
    EXPECT_EQ(viewer.state.currentRow, 0);
}

TEST_F(RetestTest, ACurrentRowThatLeavesHasNoSuccessorAndTheExtensionStays) {
    openWithTerm();
    viewer.retest();
    EXPECT_EQ(viewer.state.currentRow, -1);
    EXPECT_EQ(viewer.state.extensions.chosenText(), u"qlx");
    EXPECT_EQ(viewer.state.status, "");
}

TEST_F(RetestTest, AnUnknownRowLeavesTheGridToo) {
    openWithTerm();
    std::filesystem::remove(folders.folder / "local/Database/qlx.dat");
    viewer.retest();
    EXPECT_EQ(viewer.state.rows.count(), 0);
    EXPECT_EQ(listNow(), listRow(good_, u"Unknown or ambiguous file type") + listRow(u"/s/a.pdf", u"Header OK") +
                             listRow(bad_, u"Unknown or ambiguous file type"));
}

TEST_F(RetestTest, OnlyRowsOfTheGridAreTested) {
    openWithTerm();
    viewer.state.maxFiles = "0";
    folders.fake.dialogs.expectBox("Quillon", "Maximum file limit reached");
    viewer.filter();
    viewer.selectRow(0);
    folders.folder.write("local/Database/qlx.dat", "1,QLX!,T\r\n1,nope,T\r\n");
    viewer.retest();
    EXPECT_EQ(listNow(),
              listRow(good_, u"Header OK") + listRow(u"/s/a.pdf", u"Header OK") + listRow(bad_, u"Header Corrupt"));
}

TEST_F(RetestTest, AnEmptyExtensionTestsNothingAndRewritesTheList) {
    makeFile("noext", "QLX!");
    const std::u16string rows = listRow(u"/s/noext", u"No Extension") + listRow(u"/s/a.pdf", u"Header OK");
    writeList(rows);
    open(u"No Extension");
    viewer.filter();
    viewer.retest();
    EXPECT_EQ(listNow(), rows);
    EXPECT_EQ(viewer.state.rows.count(), 1);
    EXPECT_EQ(job.state.counters, JobCounters{});
}

TEST_F(RetestTest, AListOfFourColumnsEndsUpEmpty) {
    writeList(u"/s/a.jpg,15/11/2026, 600, 32;Ab9x\r\n/s/b.jpg,15/11/2026, 600, 32;Ab9x\r\n");
    open(u"Header Corrupt");
    viewer.filter();
    EXPECT_EQ(viewer.state.rows.count(), 0);
    viewer.retest();
    EXPECT_EQ(listNow(), u"");
    EXPECT_FALSE(folders.folder.read(folders.keptName("J1.csv")).empty());
}

TEST_F(RetestTest, BlankLinesVanish) {
    const std::u16string row = listRow(u"/s/a.jpg", u"Header Corrupt");
    writeList(row + u"\r\n\r\n" + row);
    open(u"Header Corrupt");
    viewer.retest();
    EXPECT_EQ(listNow(), row + row);
}

TEST_F(RetestTest, APathWithACommaSurvivesUntested) {
    const std::u16string row = listRow(u"/s/a>b.qlx", u"Header Corrupt");
    const std::u16string shown = makeFile("c.qlx", "nope");
    filterCorrupt(row + listRow(shown, u"Header Corrupt"));
    EXPECT_EQ(paths(), std::vector<std::u16string>{shown}) << "a path with a comma is never shown";
    viewer.selectRow(0);
    viewer.retest();
    EXPECT_EQ(listNow().substr(0, row.size()), row);
}

TEST_F(RetestTest, OfTwoLinesWithOnePathEachTakesItsOwnRow) {
    const auto path = makeFile("twice.qlx", "QLX!");
    folders.folder.write("local/Database/qlx.dat", "1,QLX!,T\r\n");
    filterCorrupt(listRow(path, u"Header Corrupt") + listRow(path, u"Header Corrupt"));
    viewer.selectRow(0);
    viewer.retest();
    EXPECT_EQ(viewer.state.rows.count(), 0);
    EXPECT_EQ(listNow(), listRow(path, u"Header OK") + listRow(path, u"Header OK"));
}

TEST_F(RetestTest, ASecondLineFindsNoRowOnceTheFirstRemovedTheOnlyOne) {
    const auto path = makeFile("twice.qlx", "QLX!");
    folders.folder.write("local/Database/qlx.dat", "1,QLX!,T\r\n");
    filterCorrupt(listRow(path, u"Header Corrupt") + listRow(path, u"Access error"));
    viewer.selectRow(0);
    viewer.retest();
    EXPECT_EQ(listNow(), listRow(path, u"Header OK") + listRow(path, u"Access error"));
}

TEST_F(RetestTest, TheListKeepsItsEncoding) {
    const auto path = makeFile("one.qlx", "QLX!");
    folders.folder.write("local/Database/qlx.dat", "1,QLX!,T\r\n");
    const std::string mark = "\xFF\xFE";
    folders.folder.write("local/J1.csv", mark + utf16Bytes(listRow(path, u"Header Corrupt")));
    open(u"Header Corrupt");
    viewer.filter();
    viewer.selectRow(0);
    viewer.retest();
    EXPECT_EQ(folders.folder.read("local/J1.csv"), mark + utf16Bytes(listRow(path, u"Header OK")));

    const std::string page = std::string(path.begin(), path.end()) + ",15/11/2026, 600, 32;Ab9x,";
    folders.folder.write("local/J1.csv", page + "Header Corrupt\r\n");
    viewer.filter();
    viewer.selectRow(0);
    viewer.retest();
    EXPECT_EQ(folders.folder.read("local/J1.csv"), page + "Header OK\r\n");
}

TEST_F(RetestTest, NamesOfAnyBytesAreFoundAgain) {
    const auto native = folders.folder.write("source/caf\xE9 \n.qlx", "QLX!" + std::string(600, 'x'));
    folders.folder.write("local/Database/qlx.dat", "1,QLX!,T\r\n");
    const std::u16string path = toListText(native.native());
    filterCorrupt(listRow(path, u"Header Corrupt"));
    viewer.selectRow(0);
    viewer.retest();
    EXPECT_EQ(listNow(), listRow(path, u"Header OK"));
}

TEST_F(RetestTest, WithoutAListNothingIsWritten) {
    openWithTerm();
    std::filesystem::remove(folders.folder / "local/J1.csv");
    folders.folder.write("app/tFile.csv", "old raw list");
    viewer.retest();
    EXPECT_FALSE(pathExists(copy()));
    EXPECT_FALSE(pathExists(folders.folder / "local/J1.csv"));
    EXPECT_EQ(host.beeps, 1);
    EXPECT_FALSE(viewer.state.busy);
}

TEST_F(RetestTest, ACopyThatCannotBeRemovedLeavesTheScreenBusy) {
    openWithTerm();
    const std::u16string before = listNow();
    std::filesystem::create_directories(copy() / "inside");
    expectWarning("Error", kInUse);
    viewer.retest();
    EXPECT_EQ(listNow(), before);
    EXPECT_TRUE(viewer.state.busy);
    EXPECT_TRUE(viewer.state.busyPointer);
    EXPECT_FALSE(viewer.state.passRunning);
    EXPECT_EQ(host.beeps, 0);
}

TEST_F(RetestTest, AListThatCannotBeKeptIsNotTouched) {
    openWithTerm();
    const std::u16string before = listNow();
    folders.folder.write("local/Kept", "a file where the folder should be");
    expectFailure();
    viewer.retest();
    EXPECT_EQ(listNow(), before);
    EXPECT_EQ(viewer.state.rows.count(), 2);
    EXPECT_FALSE(viewer.state.busy);
    EXPECT_FALSE(viewer.state.busyPointer);
}

TEST_F(RetestTest, AShortLineOfAPathInTheGridEndsThePass) {
    openWithTerm();
    const std::u16string first = listRow(good_, u"Header Corrupt");
    const std::u16string rest = bad_ + u",15/11/2026, 600, 32;Ab9x\r\n" + listRow(u"/s/z.pdf", u"Header OK");
    writeList(first + rest);
    expectFailure();
    viewer.retest();
    EXPECT_EQ(listNow(), listRow(good_, u"Header OK")) << "rows written so far stay";
    EXPECT_EQ(utf16Text(folders.folder.read("app/tFile.csv")), first + rest);
    EXPECT_EQ(utf16Text(folders.folder.read(folders.keptName("J1.csv"))), first + rest);
    EXPECT_EQ(host.beeps, 0);
    EXPECT_FALSE(viewer.state.busy);
    EXPECT_EQ(host.focused, std::vector<std::string>(2, "iGrid1"));
}

TEST_F(RetestTest, ADiskThatFillsUpDuringThePassLeavesAllRowsRecoverable) {
    openWithTerm();
    const std::u16string before = listNow();
    // The new results are longer than the old ones, so the copies fit and the last row does not.
    std::filesystem::remove(folders.folder / "local/Database/qlx.dat");
    expectFailure();
    {
        const FileSizeLimit limit(before.size() * 2);
        viewer.retest();
    }
    EXPECT_EQ(listNow(), listRow(good_, u"Unknown or ambiguous file type") + listRow(u"/s/a.pdf", u"Header OK"));
    EXPECT_EQ(utf16Text(folders.folder.read("app/tFile.csv")), before);
    EXPECT_EQ(utf16Text(folders.folder.read(folders.keptName("J1.csv"))), before);
}

TEST_F(RetestTest, AFullDiskAtTheStartLeavesTheListUntouched) {
    openWithTerm();
    const std::u16string before = listNow();
    for (const std::size_t room : {std::size_t(0), before.size()}) {
        expectFailure();
        {
            const FileSizeLimit limit(room);
            viewer.retest();
        }
        EXPECT_EQ(listNow(), before) << room;
        EXPECT_EQ(viewer.state.rows.count(), 2);
    }
}

TEST_F(RetestTest, TheListIsTheOneOfTheOpening) {
    openWithTerm();
    job.state.options.jobId = "J2";
    viewer.retest();
    EXPECT_EQ(listNow().find(u"Header OK") != std::u16string::npos, true);
    EXPECT_FALSE(pathExists(folders.folder / "local/J2.csv"));
}

TEST_F(RetestTest, TheScreenIsBusyWhileThePassRuns) {
    openWithTerm();
    int seen = 0;
    folders.fake.loop.onTurn = [&](int) {
        ++seen;
        EXPECT_TRUE(viewer.state.busy);
        EXPECT_FALSE(viewer.state.busyPointer) << "the pointer is the normal one during the pass";
        EXPECT_TRUE(viewer.state.passRunning);
    };
    viewer.retest();
    EXPECT_EQ(seen, 3);
}

}  // namespace
}  // namespace quillon::test
