// SPDX-License-Identifier: MIT
// What the driver does before the walk: the local database follows the shared one, and the rule lists are loaded.
#include <algorithm>
#include <cerrno>

#include "job/driver_fixture.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "setup/database_folder.h"
#include "support/failing_files.h"
#include "support/hanging_share.h"

namespace quillon::test {

namespace {

namespace fs = std::filesystem;

TEST_F(DriverTest, WithoutStoredCommonHeadersAJobNeitherRefreshesNorLoadsTheSkipList) {
    installation.settings.useCommonHeaders = 0;
    installation.settings.useSharedDb = 1;
    installation.refreshPathVariables();
    state.options.useSkipList = true;
    state.options.useCommonHeaders = true;
    folder.write("local/Settings/SkipList.dat", "file\r\n");
    folder.write("share/Database/abc.dat", "1,MZ,T\r\n");
    folder.write("share/Settings/CommonHeaders.dat", "shared");
    sourceFile("file", "x");
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(state.counters.skipped, 0);
    EXPECT_EQ(state.counters.files, 1);
    EXPECT_FALSE(exists("local/Database/abc.dat"));
    EXPECT_NE(folder.read("local/Settings/CommonHeaders.dat"), "shared");
}

TEST_F(DriverTest, TheSkipListOfTheJobIsUsed) {
    state.options.useSkipList = true;
    folder.write("local/Settings/SkipList.dat", "skipme\r\n");
    sourceFile("SkipMe.txt", "x");
    sourceFile("kept.txt", "x");
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(state.counters.skipped, 1);
    EXPECT_EQ(finalRows().size(), 1U);
}

class SharedDriverTest : public DriverTest {
protected:
    SharedDriverTest() {
        installation.settings.useSharedDb = 1;
        installation.refreshPathVariables();
    }
};

TEST_F(SharedDriverTest, TheLocalDatabaseFollowsTheSharedOne) {
    folder.write("share/Database/abc.dat", "1,MZ,T\r\n");
    folder.write("local/Database/orphan.dat", "1,XX,T\r\n");
    folder.write("share/Settings/CommonHeaders.dat", "0,PK,T,Zip\r\n");
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(folder.read("local/Database/abc.dat"), "1,MZ,T\r\n");
    EXPECT_FALSE(exists("local/Database/orphan.dat"));
    EXPECT_EQ(folder.read("local/Kept/2026-11-15 10.20.30/Database/orphan.dat"), "1,XX,T\r\n");
    EXPECT_EQ(folder.read("local/Settings/CommonHeaders.dat"), "0,PK,T,Zip\r\n");
    EXPECT_EQ(logTexts().at(0), "Copying ext database from network drive");
}

TEST_F(SharedDriverTest, WhatTheRefreshDidIsOneRow) {
    folder.write("share/Database/abc.dat", "1,MZ,T\r\n");
    folder.write("share/Database/same.dat", "1,PK,T\r\n");
    folder.write("local/Database/same.dat", "1,PK,T\r\n");
    const auto shared = modificationTime(folder / "share/Database/same.dat");
    ASSERT_TRUE(setModificationTime(folder / "local/Database/same.dat", shared.value()));
    folder.write("local/Database/orphan.dat", "1,XX,T\r\n");
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(logTexts().at(1), "Shared database: 2 compared, 1 fetched, 1 removed, 0 failed");
    state.log.clear();
    state.options.confirmedList = folder / "local/1234.csv";
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(logTexts().at(1), "Starting Folder tests ") << "nothing has changed, and nothing is told";
}

TEST_F(SharedDriverTest, WhatCouldNotBeNotedIsToldOnce) {
    folder.write("local/Settings/History", "a file in the way");
    folder.write("share/Database/abc.dat", "1,MZ,T\r\n");
    for (const char* name : {"CommonHeaders.dat", "BadSectors.dat"})
        folder.write(std::string("share/Settings/") + name, "0,PK,T,Zip\r\n");
    EXPECT_EQ(run(), JobEnd::Complete);
    const std::string told =
        "Not noted in the history of the database : " + (folder / "local/Settings/History").native() + ": File exists";
    const auto texts = logTexts();
    EXPECT_EQ(std::ranges::count(texts, told), 1) << texts.front();
}

TEST_F(SharedDriverTest, FilesThatCannotBeFetchedAreCountedInOrange) {
    const auto shared = folder.write("share/Database/abc.dat", "1,MZ,T\r\n");
    ASSERT_TRUE(setModificationTime(shared, {1'000'000'000, 0}));
    folder.write("local/Database/abc.dat/inside", "a folder where the file should be");
    EXPECT_EQ(run(), JobEnd::Complete);
    const auto& row = state.log.rows().at(1);
    EXPECT_EQ(row.text, "Shared database: 1 compared, 0 fetched, 0 removed, 1 failed");
    EXPECT_EQ(row.colour, kLightOrange);
}

TEST_F(SharedDriverTest, LitterOfKilledSavesGoesUnderKeptAndIsTold) {
    folder.write("share/Database/abc.dat", "1,MZ,T\r\n");
    std::string name = temporaryName();
    const auto counter = name.rfind('-');
    const auto time = name.rfind('-', counter - 1);
    const auto number = name.rfind('-', time - 1);
    name.replace(number + 1, time - number - 1, "2147483646");  // above any number that a system gives a process
    for (const char* place : {"local", "share/Database"})
        ASSERT_TRUE(setModificationTime(folder.write(std::string(place) + "/" + name, "half"), {1'000'000'000, 0}));
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(logTexts().at(0), "1 files of saves that were cut short moved to Kept");
    EXPECT_EQ(logTexts().at(3), "1 files of saves that were cut short moved to Kept") << "those of the share";
    EXPECT_FALSE(exists("local/" + name) || exists("share/Database/" + name));
    EXPECT_EQ(listEntries(folder / "local/Kept/2026-11-15 10.20.30")->size(), 2U);
}

// The list tells the grades by the built-in texts then, and whoever counts on the own ones misses every row.
TEST_F(DriverTest, TooFewReportMessagesAreToldAndNoLoss) {
    const NativePath file = folder.write("local/Settings/Errors.dat", "1\r\n2\r\n3\r\n");
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(state.counters.unreadRules, 0);
    const auto texts = logTexts();
    EXPECT_EQ(std::ranges::count(texts, "The built-in report messages stand in the list : " + file.native() +
                                            ": fewer than ten messages"),
              1);
}

TEST_F(SharedDriverTest, SharedReportMessagesThatCouldNotBeFetchedAreToldAndCounted) {
    folder.write("share/Database/abc.dat", "1,MZ,T\r\n");
    for (const bool fetched : {false, true}) {
        std::string lines;
        for (int i = 1; i <= 10; ++i) lines += std::to_string(i) + "\r\n";
        const NativePath shared = folder.write("share/Settings/Errors.dat", lines);
        folder.write("local/Settings/Errors.dat", lines);
        if (!fetched) {
            fs::remove(shared);
            fs::create_directory(shared);
        }
        loadReportMessages(installation, fake.dialogs, job.kept(), job.messages);
        fs::remove_all(shared);
        state.log.clear();
        state.options.confirmedList = folder / "local/1234.csv";
        EXPECT_EQ(run(), JobEnd::Complete);
        const auto texts = logTexts();
        const auto told = std::ranges::count_if(
            texts, [](const std::string& text) { return text.starts_with("Report messages cannot be read"); });
        EXPECT_EQ(told, fetched ? 0 : 1);
        EXPECT_EQ(state.counters.unreadRules, fetched ? 0 : 1);
    }
}

// As of a server that has gone. A Stop of the window ahead of the question about the list is taken back by that.
TEST_F(DriverTest, AnArchiveFolderThatHangsIsLeftAtStop) {
    fs::create_directory(folder / "archives");
    installation.settings.zipPath.assign(pageFromPath(folder / "archives"));
    installation.refreshPathVariables();
    const auto hanging = HangingShare::mount(folder / "archives");
    if (!hanging)
        GTEST_SKIP();
    sourceFile("file", "x");
    stopWhen([] { return true; });
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_GT(fake.loop.turns, 0);
    EXPECT_EQ(finalRows().size(), 1U);
}

TEST_F(SharedDriverTest, AShareThatRefusesToBeWrittenIsARowInOrange) {
    folder.write("share/Database/abc.dat", "1,MZ,T\r\n");
    const std::string what = ": no file can be deleted there (Permission denied)";
    FailingFiles files;
    files.refuse("unlink", EACCES);
    EXPECT_EQ(run(), JobEnd::Complete);
    const auto& rows = state.log.rows();
    const std::string text = "What is taught on this computer cannot reach the others. " +
                             (folder / "share/Database").native() + what + "; " + (folder / "share/Settings").native() +
                             what + ". All users of the share need the right to write, rename and delete in it.";
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const LogRow& r) { return r.text == text; });
    ASSERT_NE(row, rows.end());
    EXPECT_EQ(row->colour, kLightOrange);
}

class UnreadShareTest : public SharedDriverTest {
protected:
    // Rows that tell what the share refuses, of a job that can delete nothing until it has told so.
    std::ptrdiff_t told() {
        folder.write("share/Database/abc.dat", "1,MZ,T\r\n");
        const auto tells = [](const LogRow& row) {
            return row.text.starts_with("What is taught on this computer cannot reach the others. ") &&
                   row.colour == kLightOrange;
        };
        std::optional<FailingFiles> files(std::in_place);
        files->refuse("unlink", EACCES);
        onRow = [&](const LogRow& row) {
            if (tells(row))
                files.reset();
        };
        EXPECT_EQ(run(), JobEnd::Complete);
        return std::ranges::count_if(state.log.rows(), tells);
    }
};

TEST_F(UnreadShareTest, IsTriedByAJobWithoutTesting) {
    state.options.checkFileQuality = false;
    EXPECT_EQ(told(), 1);
}

TEST_F(UnreadShareTest, IsTriedByAJobWithoutTheRefresh) {
    installation.settings.useCommonHeaders = 0;
    EXPECT_EQ(told(), 1);
}

TEST_F(UnreadShareTest, IsNotTriedWhereNoneIsUsed) {
    installation.settings.useSharedDb = 0;
    installation.refreshPathVariables();
    EXPECT_EQ(told(), 0);
}

TEST_F(SharedDriverTest, AShareThatHangsDoesNotHoldAJobThatTakesNothingFromIt) {
    installation.settings.useCommonHeaders = 0;
    const auto hanging = HangingShare::mount(folder / "share");
    if (!hanging)
        GTEST_SKIP();
    fake.loop.onTurn = [this](int) { fake.clock.tick += 500; };
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(logTexts().at(0), "The shared folder " + (folder / "share").native() +
                                    " does not answer: whether it can be written is not known");
}

TEST_F(SharedDriverTest, AShareThatLooksEmptyIsToldBeforeAnythingMoves) {
    folder.write("local/Database/jpg.dat", "1,FFD8,H\r\n");
    folder.write("local/Database/png.dat", "1,PNG,T\r\n");
    std::size_t filesAtTheWarning = 0;
    onRow = [&](const LogRow& row) {
        if (row.text.starts_with("The shared database looks empty"))
            filesAtTheWarning = databaseFiles(folder / "local/Database").size();
    };
    fake.dialogs.expectBox("No Database",
                           "Unable to find shared database. Do you want to continue the check with the local copy?",
                           BoxAnswer::No);
    EXPECT_EQ(run(), JobEnd::NotStarted);
    EXPECT_EQ(filesAtTheWarning, 2U);
    const auto& row = state.log.rows().at(0);
    EXPECT_EQ(row.text, "The shared database looks empty (" + (folder / "share/Database").native() +
                            "): 2 term files of this computer are about to move to Kept. Is the share mounted?");
    EXPECT_EQ(row.colour, kLightOrange);
    EXPECT_EQ(listEntries(folder / "local/Kept")->size(), 1U);
}

TEST_F(SharedDriverTest, WithoutTestingTheDatabaseIsNotRefreshedButTheListsAre) {
    state.options.checkFileQuality = false;
    folder.write("share/Database/abc.dat", "1,MZ,T\r\n");
    folder.write("share/Settings/CommonHeaders.dat", "0,PK,T,Zip\r\n");
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_FALSE(exists("local/Database/abc.dat"));
    EXPECT_EQ(folder.read("local/Settings/CommonHeaders.dat"), "0,PK,T,Zip\r\n");
}

TEST_F(SharedDriverTest, AnEmptySharedDatabaseAsksAndNoEndsTheJob) {
    fake.dialogs.expectBox("No Database",
                           "Unable to find shared database. Do you want to continue the check with the local copy?",
                           BoxAnswer::No, std::nullopt, BoxButtons::YesNo);
    EXPECT_EQ(run(), JobEnd::NotStarted);
    EXPECT_EQ(logTexts(), std::vector<std::string>{"Copying ext database from network drive"});
}

TEST_F(SharedDriverTest, WithoutAnyDatabaseTheThreeAnswersAreKept) {
    const auto expectBoth = [this](BoxAnswer answer) {
        fake.dialogs.expectBox("No Database",
                               "Unable to find shared database. Do you want to continue the check with the local copy?",
                               BoxAnswer::Yes);
        fake.dialogs.expectBox("No Database",
                               "Unable to find local database. Do you want to disable the file quality testing?",
                               answer, std::nullopt, BoxButtons::YesNoCancel);
    };
    expectBoth(BoxAnswer::Cancel);
    EXPECT_EQ(run(), JobEnd::NotStarted);
    EXPECT_TRUE(state.options.checkFileQuality);
    expectBoth(BoxAnswer::No);
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_TRUE(state.options.checkFileQuality);
    fs::remove(folder / "local/1234.csv");
    expectBoth(BoxAnswer::Yes);
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_FALSE(state.options.checkFileQuality);
    EXPECT_EQ(logTexts().back(), "File list process complete");
}

TEST_F(SharedDriverTest, AMissingSkipListClearsAndDisablesItsBox) {
    folder.write("share/Database/abc.dat", "1,MZ,T\r\n");
    state.options.useSkipList = true;
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_FALSE(state.options.useSkipList);
    EXPECT_FALSE(state.options.useSkipListEnabled);
}

TEST_F(SharedDriverTest, ASharedSkipListThatCannotBeTakenIsToldAndTheLocalOneIsUsed) {
    folder.write("share/Database/abc.dat", "1,MZ,T\r\n");
    folder.write("share/Settings/SkipList.dat/inside", "a folder where the list should be");
    folder.write("local/Settings/SkipList.dat", "skipme\r\n");
    state.options.useSkipList = true;
    sourceFile("skipme", "x");
    std::string told;
    fake.dialogs.onProblem = [&](const std::string& problem) { told += problem; };
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_NE(told.find(" while attempting to load the shared skiplist and common headers .\r\n"), std::string::npos)
        << told;
    EXPECT_EQ(state.counters.skipped, 1);
}

TEST_F(DriverTest, AMissingCommonListClearsAndDisablesItsBox) {
    fs::remove(folder / "local/Settings/CommonHeaders.dat");
    state.options.useCommonHeaders = true;
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_FALSE(state.options.useCommonHeaders);
    EXPECT_FALSE(state.options.useCommonHeadersEnabled);
}

TEST_F(DriverTest, TheErrorHandlerTellsTheStepAndTheJobGoesOn) {
    folder.write("share/Settings/CommonHeaders.dat/inside", "a folder where the list should be");
    std::string told;
    fake.dialogs.onProblem = [&](const std::string& problem) { told += problem; };
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_NE(told.find("box \"Error\": The following error has occurred : "), std::string::npos) << told;
    EXPECT_NE(told.find(" while attempting to load the shared skiplist and common headers .\r\n Please ensure you have "
                        "the correct permissions on the drive under test and the database locations."),
              std::string::npos)
        << told;
}

TEST_F(DriverTest, TheCommonListIsLoadedWhenItsBoxIsTicked) {
    folder.write("local/Settings/CommonHeaders.dat", "0,PK,T,Zip\r\n0,MZ,T,Program\r\n");
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_TRUE(job.commonList.records().empty());
    state.options.useCommonHeaders = true;
    state.options.confirmedList = folder / "local/1234.csv";
    EXPECT_EQ(run(), JobEnd::Complete);
    EXPECT_EQ(job.commonList.records().size(), 2U);
}

}  // namespace

}  // namespace quillon::test
