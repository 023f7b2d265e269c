// SPDX-License-Identifier: MIT
#include "job/folder_walk.h"

#include <fcntl.h>
#include <unistd.h>

#include "job/job_fixture.h"
#include "job/statistics.h"
#include "text/list_text.h"

namespace quillon::test {

namespace {

namespace fs = std::filesystem;

class WalkTest : public JobFixture {
protected:
    // Walks and gives the rows.
    std::vector<std::u16string> walk() {
        auto writer = ListWriter::create(folder / "app/tFile.csv");
        EXPECT_TRUE(writer);
        FolderWalk(job.passContext(), job.skipList, *writer).run(folder / "source");
        EXPECT_TRUE(writer->close());
        return rowsOf("app/tFile.csv");
    }

    // The paths of the rows below the source, native.
    std::vector<std::string> walkedNames() {
        const std::string prefix = (folder / "source").native() + "/";
        std::vector<std::string> names;
        for (const auto& row : walk()) {
            const std::string path = toNative(std::u16string_view(row).substr(0, row.find(u',')));
            EXPECT_EQ(path.substr(0, prefix.size()), prefix);
            names.push_back(path.substr(prefix.size()));
        }
        return names;
    }

    // Something happens at a turn of the loop. Nothing was asked ahead of it, so that all behind it is seen by the
    // walk.
    void atTurn(int number, std::function<void()> happens) {
        state.care = std::make_shared<SourceCare>(SourceCare::Reason::Asked);
        state.careTold = true;
        fake.loop.onTurn = [number, happens = std::move(happens)](int turn) {
            if (turn == number)
                happens();
        };
    }

    std::u16string sourceText() const { return toListText((folder / "source").native() + "/"); }
};

using Names = std::vector<std::string>;

TEST_F(WalkTest, ARowIsPathDateSizeAttributesAndToken) {
    sourceFile("a,b.txt", std::string(1234, 'x'));
    const auto rows = walk();
    ASSERT_EQ(rows.size(), 1U);
    const std::u16string start = sourceText() + u"a>b.txt,15/11/2026, 1234, 32;";
    EXPECT_EQ(rows[0].substr(0, start.size()), start);
    const std::u16string token = rows[0].substr(start.size());
    ASSERT_EQ(token.size(), 4U);
    for (const char16_t unit : token) EXPECT_TRUE(unit > u' ' && unit < 0x7F && unit != u',');
    EXPECT_EQ(state.counters.files, 1);
    EXPECT_EQ(state.counters.totalBytes, 1234U);
}

TEST_F(WalkTest, AFileOfZeroBytesHasABlankAndAZero) {
    sourceFile("empty");
    EXPECT_NE(walk().at(0).find(u"/empty,15/11/2026, 0, 32;"), std::u16string::npos);
}

TEST_F(WalkTest, TheTokenIsThatOfTheFirstFileInEveryRowAndTheSameInTheNextRun) {
    sourceFile("a");
    sourceFile("b", "longer");
    setTimes(folder / "source/b", 1, 1);
    const auto rows = walk();
    const auto token = [](const std::u16string& row) { return row.substr(row.find(u';')); };
    EXPECT_EQ(token(rows[0]), token(rows[1]));
    EXPECT_EQ(walk(), rows);
    EXPECT_NE(listToken(32, u"15/11/2026"), listToken(33, u"15/11/2026"));
    EXPECT_NE(listToken(32, u"15/11/2026"), listToken(32, u"16/11/2026"));
}

TEST_F(WalkTest, AttributesAreMadeFromModeAndName) {
    sourceFile(".hidden");
    fs::permissions(sourceFile("readonly"), fs::perms::owner_read);
    const auto rows = walk();
    EXPECT_NE(rows[0].find(u".hidden,15/11/2026, 0, 34;"), std::u16string::npos);
    EXPECT_NE(rows[1].find(u"readonly,15/11/2026, 0, 33;"), std::u16string::npos);
}

TEST_F(WalkTest, FilesOfAFolderComeByNameAndThenItsSubfoldersByName) {
    for (const char* name : {"b/2", "b/1", "a/x/deep", "a/z", "z", "B", "a.txt", "\xC3\xA4", "_"}) sourceFile(name);
    EXPECT_EQ(walkedNames(), (Names{"B", "_", "a.txt", "z", "\xC3\xA4", "a/z", "a/x/deep", "b/1", "b/2"}));
}

TEST_F(WalkTest, AnEmptyTreeLeavesAnEmptyList) {
    fs::create_directories(folder / "source/empty/emptier");
    EXPECT_TRUE(walk().empty());
    EXPECT_EQ(fs::file_size(folder / "app/tFile.csv"), 0U);
    EXPECT_EQ(state.counters, JobCounters());
}

TEST_F(WalkTest, HostileNamesAreListedUnderTheirTrueNames) {
    const Names names = {
        std::string(255, 'n'), " leading", "-dash", "back\\slash", "cr\rin",       "gr>eater",
        "new\nline",           "quote\"",  "tab\t", "trailing ",   "\x01\x1F\x7F", "\xE4\xF6 bad utf-8",
        "\xED\xB0\x80",        "\xFF"};
    for (const auto& name : names) sourceFile(name);
    Names expected = names;
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(walkedNames(), expected);
    for (const auto& row : rowsOf("app/tFile.csv"))
        EXPECT_EQ(std::count(row.begin(), row.end(), u','), 3) << "a row has four columns whatever the name";
}

TEST_F(WalkTest, LinksLoopsFifosAndSocketsAreNeitherListedNorOpened) {
    sourceFile("real/file");
    fs::create_symlink(folder / "source/real/file", folder / "source/link");
    fs::create_directory_symlink(folder / "source", folder / "source/real/loop");
    fs::create_symlink("nowhere", folder / "source/dangling");
    makeFifo(folder / "source/fifo");
    passOver(makeSocket(folder / "source/socket"), "a path too long for one leaves the others");
    EXPECT_EQ(walkedNames(), Names{"real/file"});
    ListFolders(job.passContext(), folder / "source");
    EXPECT_EQ(state.counters.folders, 1) << "a link to a folder is no folder";
    EXPECT_EQ(state.counters.folderErrors, 0);
}

TEST_F(WalkTest, ASourceNamedByALinkIsWalked) {
    sourceFile("file");
    fs::create_directory_symlink(folder / "source", folder / "name");
    auto writer = ListWriter::create(folder / "app/tFile.csv");
    FolderWalk(job.passContext(), job.skipList, *writer).run(folder / "name");
    EXPECT_EQ(rowsOf("app/tFile.csv").at(0).find(toListText((folder / "name/file").native())), 0U);
}

TEST_F(WalkTest, PathsLongerThanTheSystemTakesAreListed) {
    const fs::path deep = makeDeepFolder(folder / "source");
    writeDeep(deep / "file", "x");
    ListFolders(job.passContext(), folder / "source");
    EXPECT_EQ(state.counters.folderErrors, 0);
    const auto names = walkedNames();
    ASSERT_EQ(names.size(), 1U);
    EXPECT_EQ(folder.path() / "source" / names[0], deep / "file");
    EXPECT_EQ(state.counters.unlistedFolders, 0);
}

// A chain of folders. One in ten holds a second folder with a file, which is visited on the way back.
int makeChain(const fs::path& start, int levels) {
    int at = ::open(start.c_str(), O_PATH | O_DIRECTORY);
    for (int i = 0; i < levels; ++i) {
        if (i % 10 == 0) {
            ::mkdirat(at, "z", 0755);
            ::close(::openat(at, "z/last", O_WRONLY | O_CREAT, 0644));
        }
        ::mkdirat(at, "d", 0755);
        const int next = ::openat(at, "d", O_PATH | O_DIRECTORY);
        ::close(at);
        at = next;
    }
    ::close(at);
    return levels;
}

// General tools take a time that grows with the square of the depth.
void removeChain(const fs::path& start, int levels) {
    int at = ::open(start.c_str(), O_PATH | O_DIRECTORY);
    const auto go = [&at](const char* name) {
        const int next = ::openat(at, name, O_PATH | O_DIRECTORY);
        ::close(at);
        at = next;
    };
    for (int i = 0; i < levels; ++i) go("d");
    for (int i = 0; i < levels; ++i) {
        go("..");
        ::unlinkat(at, "d", AT_REMOVEDIR);
        if (i % 10 == 9) {
            ::unlinkat(at, "z/last", 0);
            ::unlinkat(at, "z", AT_REMOVEDIR);
        }
    }
    ::close(at);
}

TEST_F(WalkTest, ATreeOf2100LevelsIsWalkedToItsEndAndBack) {
    const int levels = makeChain(folder / "source", 2100);
    ListFolders(job.passContext(), folder / "source");
    EXPECT_EQ(state.counters.folders, levels + levels / 10);
    EXPECT_EQ(state.counters.folderErrors, 0);
    EXPECT_EQ(walk().size(), static_cast<std::size_t>(levels / 10));
    EXPECT_EQ(state.counters.unlistedFolders, 0);
    removeChain(folder / "source", levels);
}

TEST_F(WalkTest, AFileThatVanishesMeanwhileHasNoRow) {
    for (const char* name : {"a", "b", "c"}) sourceFile(name);
    atTurn(1, [this] { fs::remove(folder / "source/b"); });
    EXPECT_EQ(walkedNames(), (Names{"a", "c"}));
    EXPECT_EQ(state.counters.unlistedFolders, 0);
}

TEST_F(WalkTest, AFileThatBecomesAFifoMeanwhileHasNoRow) {
    for (const char* name : {"a", "b"}) sourceFile(name);
    atTurn(1, [this] {
        fs::remove(folder / "source/b");
        makeFifo(folder / "source/b");
    });
    EXPECT_EQ(walkedNames(), Names{"a"});
}

TEST_F(WalkTest, AFolderThatBecomesALinkOutOfTheSourceIsNotEntered) {
    sourceFile("a/1");
    sourceFile("b/2");
    folder.write("outside/secret", "x");
    atTurn(1, [this] {
        fs::remove_all(folder / "source/b");
        fs::create_directory_symlink(folder / "outside", folder / "source/b");
    });
    EXPECT_EQ(walkedNames(), Names{"a/1"});
}

TEST_F(WalkTest, AFolderHighUpThatIsReplacedMeanwhileIsNotGoneOnWith) {
    makeChain(folder / "source", 100);
    atTurn(1, [this] {
        // The visit is deep below when the way back to a folder that it has not finished is laid elsewhere.
        const std::string tenth = "source/d/d/d/d/d/d/d/d/d/d";
        fs::rename(folder / (tenth + "/d"), folder / "moved");
        fs::rename(folder / tenth, folder / "old");
        folder.write(tenth + "/z/stranger", "x");
    });
    for (const auto& name : walkedNames()) EXPECT_EQ(name.find("stranger"), std::string::npos) << name;
    EXPECT_GT(state.counters.unlistedFolders, 0);
}

TEST_F(WalkTest, StopEndsTheWalkAtTheNextFile) {
    for (const char* name : {"a", "b", "c", "d/e"}) sourceFile(name);
    fake.loop.onTurn = [this](int turn) { state.stopRequested = turn >= 2; };
    EXPECT_EQ(walkedNames(), (Names{"a", "b"}));
}

TEST_F(WalkTest, TheLoopTurnsOncePerFile) {
    for (const char* name : {"a", "b", "c"}) sourceFile(name);
    walk();
    EXPECT_EQ(fake.loop.turns, 3);
}

TEST_F(WalkTest, CountAndSizeAreShownWithEveryFile) {
    sourceFile("a", "1234");
    sourceFile("b", std::string(2044, 'x'));
    std::vector<std::string> shown = {sizeLabel(state)};
    fake.loop.onTurn = [&](int) { shown.push_back(std::to_string(state.counters.files) + ": " + sizeLabel(state)); };
    walk();
    EXPECT_EQ(shown, (std::vector<std::string>{"0", "1: 4 Bytes", "2: 2.0 Kb"}));
}

TEST_F(WalkTest, ASkippedFileIsCountedNowhereElse) {
    state.options.useSkipList = true;
    job.skipList.assign({u"thumbs.db", u"a>b"});
    sourceFile("Thumbs.DB", "1234");
    sourceFile("a,b");
    sourceFile("kept", "12");
    EXPECT_EQ(walkedNames(), Names{"kept"});
    EXPECT_EQ(state.counters.skipped, 2);
    EXPECT_EQ(state.counters.files, 1);
    EXPECT_EQ(state.counters.totalBytes, 2U);
}

TEST_F(WalkTest, ATreeOfSkippedFilesAloneLeavesAnEmptyList) {
    state.options.useSkipList = true;
    job.skipList.assign({u"source"});
    sourceFile("a");
    sourceFile("b/c");
    EXPECT_TRUE(walk().empty());
    EXPECT_EQ(state.counters.skipped, 2);
    EXPECT_EQ(state.counters.files, 0);
}

TEST_F(WalkTest, WithTheBoxClearTheSkipListIsNotLookedAt) {
    job.skipList.assign({u"*"});
    sourceFile("a");
    EXPECT_EQ(walkedNames(), Names{"a"});
}

TEST_F(WalkTest, FoldersAreCountedWithoutTheSourceItself) {
    fs::create_directories(folder / "source/a/b");
    fs::create_directories(folder / "source/c");
    ListFolders(job.passContext(), folder / "source");
    EXPECT_EQ(state.counters.folders, 3);
    EXPECT_EQ(state.counters.folderErrors, 0);
    EXPECT_TRUE(state.log.rows().empty());
    EXPECT_EQ(fake.loop.turns, 3) << "one turn for each folder";
}

TEST_F(WalkTest, StopIsNotLookedAtInTheFolderTest) {
    fs::create_directories(folder / "source/a/b");
    state.stopRequested = true;
    ListFolders(job.passContext(), folder / "source");
    EXPECT_EQ(state.counters.folders, 2);
}

TEST_F(WalkTest, ASourceThatIsNotThereHasNoFoldersAndNoRows) {
    fs::remove_all(folder / "source");
    ListFolders(job.passContext(), folder / "source");
    EXPECT_EQ(state.counters, JobCounters());
    EXPECT_TRUE(walk().empty());
    EXPECT_EQ(state.counters.unlistedFolders, 1);
    EXPECT_EQ(logTexts(), std::vector<std::string>{"Unable to read folder : " + (folder / "source").native()});
}

TEST_F(WalkTest, AFolderThatCannotBeEnteredIsCountedLoggedInLightRedAndGoneOnBehind) {
    sourceFile("locked/inside");
    sourceFile("open/file");
    for (const char* name : {"app", "source"}) fs::permissions(folder / name, fs::perms::all);
    fs::permissions(folder / "source/locked", fs::perms::none);
    EXPECT_TRUE(asOrdinaryUser(folder.path(), [this] {
        ListFolders(job.passContext(), folder / "source");
        const bool counted = state.counters.folders == 2 && state.counters.folderErrors == 1;
        const auto& rows = state.log.rows();
        const bool logged = rows.size() == 1 && rows[0].colour == 0xC0C0FFU &&
                            rows[0].text == "Folder access error : " + (folder / "source/locked").native();
        const bool goneOn = walkedNames() == Names{"open/file"} && state.counters.unlistedFolders == 1;
        return counted && logged && goneOn && rows.size() == 1;
    }));
}

TEST_F(WalkTest, AFolderThatMayBeEnteredAndNotListedIsNoFolderErrorButIsMissed) {
    sourceFile("closed/inside");
    for (const char* name : {"app", "source"}) fs::permissions(folder / name, fs::perms::all);
    fs::permissions(folder / "source/closed",
                    fs::perms::all & ~(fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read));
    EXPECT_TRUE(asOrdinaryUser(folder.path(), [this] {
        ListFolders(job.passContext(), folder / "source");
        const bool counted = state.counters.folders == 1 && state.counters.folderErrors == 0;
        const bool missed = walkedNames().empty() && state.counters.unlistedFolders == 1;
        const auto& rows = state.log.rows();
        const bool logged = rows.size() == 1 && rows[0].colour == 0xC0C0FFU &&
                            rows[0].text == "Unable to read folder : " + (folder / "source/closed").native();
        return counted && missed && logged;
    }));
}

TEST_F(WalkTest, AFolderThatMayBeListedAndNotEnteredIsAFolderErrorAndItsFilesAreMissed) {
    sourceFile("shown/inside");
    for (const char* name : {"app", "source"}) fs::permissions(folder / name, fs::perms::all);
    fs::permissions(folder / "source/shown", fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    EXPECT_TRUE(asOrdinaryUser(folder.path(), [this] {
        ListFolders(job.passContext(), folder / "source");
        const bool counted = state.counters.folders == 1 && state.counters.folderErrors == 1;
        return counted && walkedNames().empty() && state.counters.unlistedFolders == 1;
    }));
}

TEST_F(WalkTest, TheSourceIsLeftAsItWas) {
    sourceFile("a", "12345");
    const auto before = statOf(folder / "source/a");
    walk();
    const auto after = statOf(folder / "source/a");
    EXPECT_EQ(after.st_atim.tv_sec, before.st_atim.tv_sec);
    EXPECT_EQ(after.st_ctim.tv_nsec, before.st_ctim.tv_nsec);
    EXPECT_EQ(namesIn(folder / "source"), "a");
}

TEST(RowDatesTest, EveryDateIsItsOwnText) {
    const DateTexts texts("C");
    RowDates dates(texts);
    EXPECT_EQ(dates.of({1794744000, 0}), u"15/11/2026");
    EXPECT_EQ(dates.of({0, 0}), u"01/01/1970");
    EXPECT_EQ(dates.of({1794744001, 0}), u"15/11/2026");
    EXPECT_EQ(dates.of({-1, 0}), u"31/12/1969");
    EXPECT_EQ(dates.of({253402300799, 0}), u"31/12/9999");
    EXPECT_EQ(dates.of({67768036191676799 / 2, 0}).size(), 10U) << "a year of ten digits is cut";
}

TEST(RowDatesTest, ShortDatesRunIntoTheTime) {
    const DateTexts texts("en_GB.UTF-8");
    if (texts.date(LocalTime{2026, 11, 15, 0, 0, 0, 0, 318}).size() >= 10)
        GTEST_SKIP() << "no locale with a short date here";
    RowDates dates(texts);
    const auto first = std::u16string(dates.of({1794744000, 0}));
    EXPECT_NE(first, dates.of({1794744000 + 11 * 3600, 0}));
}

}  // namespace

}  // namespace quillon::test
