// SPDX-License-Identifier: MIT
// What the driver does before the walk: the local database follows the shared one, and the rule lists are loaded.
#include "job/driver_fixture.h"

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
