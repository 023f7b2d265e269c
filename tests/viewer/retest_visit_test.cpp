// SPDX-License-Identifier: MIT
// What a retest leaves when it is cut off, what a visit of the viewer keeps, and what a person is told first.
#include "viewer/retest_fixture.h"

namespace quillon::test {
namespace {

// A machine that dies at any row leaves the old list, and one that dies behind the last row leaves the new one.
TEST_F(RetestTest, TheListIsTheOldOneUntilTheLastRowIsWritten) {
    openWithTerm();
    const std::u16string before = listNow();
    int rows = 0;
    folders.fake.loop.onTurn = [&](int) {
        ++rows;
        EXPECT_EQ(listNow(), before) << "row " << rows;
        EXPECT_EQ(listFiles(folders.folder / "local").value(), std::vector<std::string>{"J1.csv"});
    };
    viewer.retest();
    EXPECT_EQ(rows, 3);
    EXPECT_NE(listNow(), before);
}

TEST_F(RetestTest, TheNewListKeepsTheModeOfTheOldOne) {
    openWithTerm();
    const NativePath list = folders.folder / "local/J1.csv";
    std::filesystem::permissions(list, std::filesystem::perms(0664));
    viewer.retest();
    EXPECT_EQ(std::filesystem::status(list).permissions(), std::filesystem::perms(0664));
}

class RetestVisitTest : public RetestTest {
protected:
    /// How many copies of the list stand under Kept; the clock goes on, so that each has a folder of its own.
    [[nodiscard]] std::size_t keptCopies() const {
        std::size_t copies = 0;
        for (const auto& moment : std::filesystem::directory_iterator(folders.folder / "local/Kept"))
            copies += pathExists(moment.path() / "J1.csv") ? 1 : 0;
        return copies;
    }
    void retestLater() {
        ++folders.fake.clock.time.second;
        viewer.retest();
    }
};

TEST_F(RetestVisitTest, AVisitKeepsTheListOnceAsItFoundIt) {
    openWithTerm();
    const std::u16string before = listNow();
    viewer.retest();
    retestLater();
    retestLater();
    EXPECT_EQ(keptCopies(), 1U);
    EXPECT_EQ(utf16Text(folders.folder.read(folders.keptName("J1.csv"))), before);
}

TEST_F(RetestVisitTest, TheNextVisitKeepsTheListAgain) {
    openWithTerm();
    viewer.retest();
    open(u"Header Corrupt");
    viewer.filter();
    viewer.selectRow(0);
    retestLater();
    EXPECT_EQ(keptCopies(), 2U);
}

TEST_F(RetestVisitTest, AListThatSomebodyElseChangedIsKeptAgain) {
    openWithTerm();
    viewer.retest();
    writeList(listRow(bad_, u"Header Corrupt") + listRow(u"/s/new.pdf", u"Header OK"));
    retestLater();
    EXPECT_EQ(keptCopies(), 2U);
}

TEST_F(RetestVisitTest, ALaterRetestThatFailsHasAllItsRowsUnderKept) {
    openWithTerm();
    viewer.retest();
    const std::u16string before = listNow();
    // The new result of the last row is longer than the old one and does not fit.
    std::filesystem::remove(folders.folder / "local/Database/qlx.dat");
    expectFailure();
    {
        const FileSizeLimit limit(before.size() * 2);
        retestLater();
    }
    EXPECT_LT(listNow().size(), before.size());
    EXPECT_EQ(utf16Text(folders.folder.read("local/Kept/2026-11-15 10.20.31/tFile.csv")), before);
}

class RetestSourceTest : public RetestTest {
protected:
    void takeTheSourceAway() {
        openWithTerm();
        std::filesystem::rename(folders.folder / "source", folders.folder / "unplugged");
    }
    void expectQuestion(BoxAnswer answer) {
        folders.fake.dialogs.expectBox("Source not found",
                                       "The folder of these files is not there:\r\n" +
                                           (folders.folder / "source").string() +
                                           "\r\n\r\nA retest now grades each of them as an access error. Connect the "
                                           "source first. Do you want to retest all the same?",
                                       answer, BoxStyle::Warning, BoxButtons::YesNo);
    }
};

TEST_F(RetestSourceTest, ARetestWithTheSourceAwayAsksFirstAndNoLeavesTheList) {
    takeTheSourceAway();
    const std::u16string before = listNow();
    expectQuestion(BoxAnswer::No);
    viewer.retest();
    EXPECT_EQ(listNow(), before);
    EXPECT_FALSE(pathExists(copy()));
    EXPECT_EQ(job.state.counters, JobCounters{});
    EXPECT_FALSE(viewer.state.busy);
    EXPECT_EQ(host.beeps, 0);
}

TEST_F(RetestSourceTest, YesGradesTheFilesAsAccessErrors) {
    takeTheSourceAway();
    expectQuestion(BoxAnswer::Yes);
    viewer.retest();
    EXPECT_EQ(listNow(),
              listRow(good_, u"Access error") + listRow(u"/s/a.pdf", u"Header OK") + listRow(bad_, u"Access error"));
}

TEST_F(RetestSourceTest, OneFolderThatIsThereIsEnough) {
    const auto here = makeFile("here.qlx", "QLX!");
    folders.folder.write("local/Database/qlx.dat", "1,QLX!,T\r\n");
    filterCorrupt(listRow(u"/gone/a.qlx", u"Header Corrupt") + listRow(here, u"Header Corrupt"));
    viewer.selectRow(0);
    viewer.retest();
    EXPECT_EQ(listNow(), listRow(u"/gone/a.qlx", u"Access error") + listRow(here, u"Header OK"));
}

TEST_F(RetestTest, ARetestBeforeAnyJobTellsOfTheCommonHeadersInOrange) {
    openWithTerm();
    job.state.options.useCommonHeaders = true;
    viewer.retest();
    ASSERT_EQ(job.state.log.rows().size(), 1U);
    EXPECT_EQ(
        job.state.log.rows().front().text,
        "Retest without common headers : they are loaded by a job, and none has run yet. A file that fits no term "
        "loses its result. Run a job, or untick \"Use Common Headers\", and retest again.");
    EXPECT_EQ(job.state.log.rows().front().colour, kLightOrange);

    job.commonList.assign({"1,QQQQ,T,a type"});
    viewer.retest();
    job.state.options.useCommonHeaders = false;
    viewer.retest();
    EXPECT_EQ(job.state.log.rows().size(), 1U) << "a loaded list, or none wanted";
}

}  // namespace
}  // namespace quillon::test
