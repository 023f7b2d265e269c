// SPDX-License-Identifier: MIT
#include "job/copy_pass.h"

#include "job/job_fixture.h"
#include "text/list_text.h"

namespace quillon::test {

namespace {

namespace fs = std::filesystem;

class CopyPassTest : public JobFixture {
protected:
    CopyPassTest() {
        state.options.copy = true;
        state.options.target = folder / "target";
    }

    // A list of these native paths, copied.
    void copy(const std::vector<std::string>& paths) {
        std::vector<std::u16string> rows;
        rows.reserve(paths.size());
        for (const auto& path : paths) rows.push_back(toListText(path) + u",15/11/2026, 5, 32;Ab9x,Header OK");
        writeFinalList(rows);
        state.counters.files = static_cast<std::int32_t>(paths.size());
        CopyPass(job.passContext(), job.lists(), job.messages).run();
    }

    // Where the file of a source path lands.
    std::string landed(const std::string& path) const { return "target" + path; }
};

TEST_F(CopyPassTest, FilesLandUnderTheirFullPathBelowTheTarget) {
    const auto a = sourceFile("a.txt", "first");
    const auto b = sourceFile("sub/b,c.txt", "second");
    copy({a, b});
    EXPECT_EQ(folder.read(landed(a)), "first");
    EXPECT_EQ(folder.read(landed(b)), "second");
    EXPECT_EQ(state.counters.copyErrors, 0);
    EXPECT_EQ(state.counters.rowsRead, 2);
    EXPECT_EQ(state.texts.copied, "2");
    EXPECT_EQ(state.texts.status, "Ready >");
    EXPECT_EQ(state.texts.jobPercent, "");
    EXPECT_EQ(state.texts.copiedCaption, "Copying file:");
    EXPECT_EQ(statOf(folder.path() / landed(a)).st_mtim.tv_sec, 1794744000);
}

TEST_F(CopyPassTest, OnlyTheGradesThatAreAskedForAreCopied) {
    const std::vector<std::pair<std::string, std::u16string>> files = {{"good", u"Header OK"},
                                                                       {"bad", u"Header Corrupt"},
                                                                       {"common", u"Appears to be of file type: ZIP"},
                                                                       {"raw", u""}};
    std::vector<std::u16string> rows;
    for (const auto& [name, result] : files)
        rows.push_back(toListText(sourceFile(name, name)) + u",15/11/2026, 5, 32;Ab9x" +
                       (result.empty() ? u"" : u"," + result));
    writeFinalList(rows);
    state.counters.files = 4;
    state.options.checkFileQuality = true;
    state.options.copyGrades = {Grade::Good, Grade::CommonHeader};
    CopyPass(job.passContext(), job.lists(), job.messages).run();
    EXPECT_EQ(namesIn(folder.path() / landed((folder / "source").native())), "common good");
    EXPECT_EQ(state.counters.rowsRead, 2);
    EXPECT_EQ(state.counters.copied, 2);
    EXPECT_EQ(state.counters.copyErrors, 0);
    EXPECT_EQ(state.passes.leftOut, 2);
}

TEST(CopyTargetTest, LeadingSeparatorsAreDropped) {
    EXPECT_EQ(copyTarget("/t/", "/a/b.txt"), "/t/a/b.txt");
    EXPECT_EQ(copyTarget("/t/", "//server/share/a.txt"), "/t/server/share/a.txt");
    EXPECT_EQ(copyTarget("/t/", "a.txt"), "/t/a.txt");
}

TEST(CopyTargetTest, NoPathLeadsOutOfTheTarget) {
    for (const char* path : {"", "/", "../x", "/a/../../x", "/a/.."})
        EXPECT_EQ(copyTarget("/t/", path), std::nullopt) << path;
    EXPECT_EQ(copyTarget("/t/", "/a/..b/c"), "/t/a/..b/c");
}

TEST_F(CopyPassTest, WithoutTheTestAllFilesAreCopiedWhateverGradesAreChosen) {
    writeFinalList({toListText(sourceFile("raw", "raw")) + u",15/11/2026, 3, 32;Ab9x"});
    state.counters.files = 1;
    state.options.checkFileQuality = false;
    state.options.copyGrades = {Grade::Good};
    CopyPass(job.passContext(), job.lists(), job.messages).run();
    EXPECT_EQ(state.counters.copied, 1);
    EXPECT_EQ(state.passes.leftOut, 0);
}

TEST_F(CopyPassTest, HostileNamesAreCopiedUnderTheirTrueNames) {
    std::vector<std::string> paths;
    for (const char* name : {"new\nline", "gr>eater", "back\\slash", "\xFF\xFE", " blank ", "-dash", "cr\r"})
        paths.push_back(sourceFile(name, name));
    copy(paths);
    EXPECT_EQ(state.counters.copyErrors, 0);
    for (const auto& path : paths) EXPECT_EQ(folder.read(landed(path)), fs::path(path).filename().native());
}

TEST_F(CopyPassTest, PathsLongerThanTheSystemTakesAreCopied) {
    const fs::path deep = makeDeepFolder(folder / "source");
    writeDeep(deep / "file", "deep bytes");
    copy({(deep / "file").native()});
    EXPECT_EQ(state.counters.copyErrors, 0);
    EXPECT_EQ(readDeep(fs::path((folder / "target").native() + (deep / "file").native())), "deep bytes");
}

TEST_F(CopyPassTest, TheTargetMayEndInSeparators) {
    state.options.target = NativePath((folder / "target").native() + "//");
    const auto a = sourceFile("a.txt", "first");
    copy({a});
    EXPECT_EQ(folder.read(landed(a)), "first");
}

TEST_F(CopyPassTest, AMissingListIsTold) {
    fake.dialogs.expectBox("Error copying files", "Unable to find file list..", BoxAnswer::Ok, BoxStyle::Critical,
                           BoxButtons::Ok);
    CopyPass(job.passContext(), job.lists(), job.messages).run();
    EXPECT_EQ(fake.loop.turns, 0);
}

TEST_F(CopyPassTest, AListOfNoRowsEndsAtOnce) {
    copy({});
    EXPECT_EQ(state.counters.rowsRead, 0);
    EXPECT_EQ(state.counters.copyErrors, 0);
    EXPECT_EQ(namesIn(folder / "target"), "");
}

TEST_F(CopyPassTest, RawRowsAreCopiedToo) {
    const auto a = sourceFile("a.txt", "first");
    writeFinalList({toListText(a) + u",15/11/2026, 5, 32;Ab9x"});
    CopyPass(job.passContext(), job.lists(), job.messages).run();
    EXPECT_EQ(folder.read(landed(a)), "first");
}

TEST_F(CopyPassTest, AFailedCopyIsCountedAndLoggedWithItsSide) {
    const auto a = sourceFile("a.txt", "first");
    copy({(folder / "source/gone.txt").native(), a});
    EXPECT_EQ(state.counters.copyErrors, 1);
    const auto texts = logTexts();
    ASSERT_EQ(texts.size(), 2U);
    EXPECT_EQ(texts[0], "Error copying : " + (folder / "source/gone.txt").native());
    EXPECT_EQ(texts[1].substr(0, 8), "source: ");
    EXPECT_EQ(folder.read(landed(a)), "first") << "the pass goes on with the next row";
}

TEST_F(CopyPassTest, AFolderThatCannotBeCreatedFailsTheCopyOnTheTargetsSide) {
    const auto a = sourceFile("a.txt", "first");
    const auto top = NativePath(a).relative_path().begin()->native();
    folder.write("target/" + top, "a file in the way");
    copy({a});
    EXPECT_EQ(state.counters.copyErrors, 1);
    EXPECT_EQ(logTexts().at(1).substr(0, 8), "target: ");
    EXPECT_EQ(folder.read("target/" + top), "a file in the way");
}

TEST_F(CopyPassTest, StopEndsThePassBeforeTheNextRow) {
    const auto a = sourceFile("a", "1");
    const auto b = sourceFile("b", "2");
    fake.loop.onTurn = [this](int turn) { state.stopRequested = turn == 1; };
    copy({a, b});
    EXPECT_EQ(state.counters.rowsRead, 1);
    EXPECT_FALSE(exists(landed(b)));
    EXPECT_TRUE(state.stopRequested) << "the flag stays until the next job";
}

TEST_F(CopyPassTest, StopMidFileLeavesNoCutFileAndCountsAnError) {
    const auto a = sourceFile("a", std::string(8'000'000, 'x'));
    folder.write(landed(a), "older target");
    fake.loop.onTurn = [this](int) { state.stopRequested = state.copyCancelled = true; };
    copy({a});
    EXPECT_EQ(state.counters.copyErrors, 1);
    EXPECT_EQ(logTexts(), std::vector<std::string>{"Error copying : " + a});
    EXPECT_EQ(folder.read(landed(a)), "older target");
    EXPECT_EQ(namesIn((folder.path() / landed(a)).parent_path()), "a");
}

TEST_F(CopyPassTest, ALargeFileShowsZeroPercentAndTurnsTheLoopPerChunk) {
    const auto a = sourceFile("a", std::string(2'000'001, 'x'));
    state.fileProgress = 55;
    copy({a});
    EXPECT_EQ(state.texts.filePercent, ".00%");
    EXPECT_EQ(state.fileProgress, 0);
    EXPECT_GE(fake.loop.turns, 2) << "one of the row, and one of each chunk";
}

TEST_F(CopyPassTest, AFileOf2000000BytesOnlyResetsTheFilesBar) {
    const auto a = sourceFile("a", std::string(2'000'000, 'x'));
    state.fileProgress = 55;
    copy({a});
    EXPECT_EQ(state.texts.filePercent, "");
    EXPECT_EQ(state.fileProgress, 0);
    EXPECT_EQ(fake.loop.turns, 1);
}

TEST_F(CopyPassTest, TheJobsProgressIsRowsOfFiles) {
    const auto a = sourceFile("a", "1");
    const auto b = sourceFile("b,c", "2");
    const auto c = sourceFile("c", "3");
    std::vector<std::string> shown;
    fake.loop.onTurn = [&](int) {
        shown.push_back(std::to_string(state.progress.value) + " " + state.texts.jobPercent + " " +
                        state.texts.currentFile + " " + state.texts.status);
    };
    copy({a, b, c});
    EXPECT_EQ(shown, (std::vector<std::string>{"33 33.33% Copying " + a + " Copying data ...",
                                               "66 66.67% Copying " + b + " Copying data ...",
                                               "100 100.00% Copying " + c + " Copying data ..."}));
    EXPECT_EQ(state.progress.maximum, 100);
}

TEST_F(CopyPassTest, AListOfUnknownCountShowsNoMoreThanAHundred) {
    const auto a = sourceFile("a", "1");
    writeFinalList({toListText(a) + u",,,", toListText(a) + u",,,"});
    state.counters.files = 1;
    std::int64_t most = 0;
    fake.loop.onTurn = [&](int) { most = std::max(most, state.progress.value); };
    CopyPass(job.passContext(), job.lists(), job.messages).run();
    EXPECT_EQ(most, 100);
}

TEST_F(CopyPassTest, ATargetInTheSourceIsRefused) {
    const auto a = sourceFile("a", "1");
    fs::create_directories(folder / "source/copies");
    state.options.target = folder / "source/copies";
    copy({a});
    EXPECT_EQ(state.counters.copyErrors, 1);
    EXPECT_EQ(namesIn(folder / "source/copies"), "");
}

TEST_F(CopyPassTest, ATargetThatLeadsFilesOntoThemselvesIsRefused) {
    const auto a = sourceFile("a", "1");
    const auto before = statOf(a);
    state.options.target = "/";
    copy({a});
    EXPECT_EQ(state.counters.copyErrors, 1);
    EXPECT_EQ(statOf(a).st_ino, before.st_ino);
    EXPECT_EQ(statOf(a).st_ctim.tv_nsec, before.st_ctim.tv_nsec);
}

TEST_F(CopyPassTest, ALinkInTheTargetThatLeadsIntoTheSourceIsRefused) {
    const auto a = sourceFile("a", "1");
    const auto b = sourceFile("sub/b", "2");
    fs::create_directories((folder.path() / landed(a)).parent_path());
    fs::create_directory_symlink(folder / "source", (folder.path() / landed(b)).parent_path());
    copy({a, b});
    EXPECT_EQ(state.counters.copyErrors, 1);
    EXPECT_EQ(folder.read(landed(a)), "1");
    EXPECT_EQ(namesIn(folder / "source"), "a sub");
}

TEST_F(CopyPassTest, ASourceFileThatBecameALinkOrAFifoIsNotFollowed) {
    folder.write("secret", "outside");
    fs::create_symlink(folder / "secret", folder / "source/link");
    makeFifo(folder / "source/fifo");
    copy({(folder / "source/link").native(), (folder / "source/fifo").native()});
    EXPECT_EQ(state.counters.copyErrors, 2);
    EXPECT_FALSE(exists(landed((folder / "source/link").native())));
}

}  // namespace

}  // namespace quillon::test
