// SPDX-License-Identifier: MIT
// What jobs and the set-up do to the database stands in its history.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/database_history.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "setup/setup_folders.h"
#include "setup/shared_database.h"
#include "testing/messages_for.h"
#include "testing/sector_markers.h"
#include "testing/skip_list.h"

namespace quillon::test {
namespace {

class NotedStepsTest : public testing::Test, public SetupFolders {
protected:
    [[nodiscard]] std::vector<DatabaseChange> notes(const char* root = "local") const {
        return readHistory(folder / root / "Settings", 100);
    }
    void refresh() {
        passOver(copyChangedTermFiles(databaseFiles(installation.paths().sharedDatabase), installation.paths(), kept,
                                      progress),
                 "the test looks at the notes");
    }
};

TEST_F(NotedStepsTest, ARefreshIsOneNoteOfAllFilesThatItChanged) {
    folder.write("share/Database/jpg.dat", "1,new,T\r\n");
    folder.write("share/Database/png.dat", "1,png,T\r\n");
    folder.write("local/Database/jpg.dat", "1,old,T\r\n");
    refresh();
    ASSERT_EQ(notes().size(), 1U);
    EXPECT_EQ(notes().front().screen, "Job");
    EXPECT_THAT(notes().front().files,
                testing::UnorderedElementsAre(FileChange{"Database/jpg.dat", "1,old,T\r\n", "1,new,T\r\n"},
                                              FileChange{"Database/png.dat", std::nullopt, "1,png,T\r\n"}));
    refresh();
    EXPECT_EQ(notes().size(), 1U) << "an unchanged database is no change";
    EXPECT_TRUE(notes("share").empty()) << "the share was only read";
}

TEST_F(NotedStepsTest, TermFilesThatAJobTakesAwayAreNoted) {
    folder.write("local/Database/old.dat", "1,old,T\r\n");
    const auto orphans = findOrphanTermFiles(installation.paths(), progress);
    ASSERT_EQ(moveOrphansAway(orphans, installation.paths(), kept).removed, 1U);
    ASSERT_EQ(notes().size(), 1U);
    EXPECT_EQ(notes().front().files, (std::vector<FileChange>{{"Database/old.dat", "1,old,T\r\n", std::nullopt}}));
}

TEST_F(NotedStepsTest, TheNotesOfARefreshNameItsJob) {
    folder.write("share/Database/jpg.dat", "1,new,T\r\n");
    folder.write("share/Settings/CommonHeaders.dat", "new\r\n");
    folder.write("share/Settings/BadSectors.dat", "new\r\n");
    folder.write("share/Settings/SkipList.dat", "new\r\n");
    folder.write("share/Settings/Errors.dat", "new\r\n");
    folder.write("local/Database/old.dat", "1,old,T\r\n");
    const Paths& paths = installation.paths();
    EXPECT_FALSE(moveOrphansAway(findOrphanTermFiles(paths, progress), paths, kept, "4711").lostNote);
    EXPECT_FALSE(copyChangedTermFiles(databaseFiles(paths.sharedDatabase), paths, kept, progress, "4711").lostNote);
    ASSERT_TRUE(fetchCommonHeaders(paths, kept, "4711"));
    ASSERT_TRUE(fetchSectorMarkers(paths, kept, "4711"));
    ASSERT_TRUE(fetchSkipList(paths, kept, "4711"));
    ReportMessages messages;
    EXPECT_FALSE(loadMessagesFor(changeByJob("4711"), installation, fake.dialogs, kept, messages));
    ASSERT_EQ(notes().size(), 6U);
    for (const auto& note : notes()) EXPECT_EQ(note.job, "4711") << note.files.front().file;
}

TEST_F(NotedStepsTest, ARefreshWithoutRoomForItsNoteIsDoneAndTellsSo) {
    folder.write("local/Settings/History", "a file in the way");
    folder.write("share/Database/jpg.dat", "1,new,T\r\n");
    folder.write("local/Database/old.dat", "1,old,T\r\n");
    const Paths& paths = installation.paths();
    const auto moved = moveOrphansAway(findOrphanTermFiles(paths, progress), paths, kept);
    EXPECT_EQ(moved.removed, 1U);
    EXPECT_TRUE(moved.lostNote);
    const auto fetched = copyChangedTermFiles(databaseFiles(paths.sharedDatabase), paths, kept, progress);
    EXPECT_EQ(fetched.copied, 1U);
    EXPECT_TRUE(fetched.lostNote);
}

TEST_F(NotedStepsTest, ARuleListWithoutRoomForItsNoteIsFetchedAndTellsSo) {
    folder.write("local/Settings/History", "a file in the way");
    for (const char* name : {"CommonHeaders.dat", "SkipList.dat", "BadSectors.dat", "Errors.dat"})
        folder.write(std::string("share/Settings/") + name, "new\r\n");
    const Paths& paths = installation.paths();
    const std::string why = (paths.localSettings / "History").native() + ": File exists";
    for (const auto& fetched :
         {fetchCommonHeaders(paths, kept), fetchSkipList(paths, kept), fetchSectorMarkers(paths, kept)}) {
        ASSERT_TRUE(fetched);
        ASSERT_TRUE(*fetched);
        EXPECT_EQ((*fetched)->text, why);
    }
    ReportMessages messages;
    const auto lost = loadMessagesFor(changeByJob(), installation, fake.dialogs, kept, messages);
    ASSERT_TRUE(lost);
    EXPECT_EQ(lost->text, why);
    for (const char* name : {"CommonHeaders.dat", "SkipList.dat", "BadSectors.dat", "Errors.dat"})
        EXPECT_EQ(folder.read(std::string("local/Settings/") + name), "new\r\n");
}

TEST_F(NotedStepsTest, RuleListsThatAJobFetchesAreNoted) {
    for (const char* name : {"CommonHeaders.dat", "SkipList.dat", "BadSectors.dat"})
        folder.write(std::string("share/Settings/") + name, "new\r\n");
    ASSERT_TRUE(fetchCommonHeaders(installation.paths(), kept));
    ASSERT_TRUE(fetchSkipList(installation.paths(), kept));
    ASSERT_TRUE(fetchSectorMarkers(installation.paths(), kept));
    ASSERT_EQ(notes().size(), 3U);
    EXPECT_EQ(notes()[0].files.front().file, "Settings/BadSectors.dat");
    EXPECT_EQ(notes()[1].files.front().file, "Settings/SkipList.dat");
    EXPECT_EQ(notes()[2].files.front().file, "Settings/CommonHeaders.dat");
}

TEST_F(NotedStepsTest, AStepThatReplacesManyFilesIsNotedByWhatBecameDifferent) {
    folder.write("local/Database/same.dat", "same");
    folder.write("local/Database/gone.dat", "gone");
    folder.write("local/Database/other.dat", "before");
    NotedDatabase noted(installation.paths().localSettings, changeBy("Setup Wizard"));
    ASSERT_TRUE(removeFile(folder / "local/Database/gone.dat"));
    folder.write("local/Database/other.dat", "after");
    folder.write("local/Settings/SkipList.dat", "tmp");
    folder.write("local/Settings/BadSectors.dat", "bad");
    noted.finish();
    ASSERT_EQ(notes().size(), 1U);
    EXPECT_EQ(notes().front().screen, "Setup Wizard");
    EXPECT_THAT(notes().front().files,
                testing::UnorderedElementsAre(FileChange{"Database/gone.dat", "gone", std::nullopt},
                                              FileChange{"Database/other.dat", "before", "after"},
                                              FileChange{"Settings/SkipList.dat", std::nullopt, "tmp"},
                                              FileChange{"Settings/BadSectors.dat", std::nullopt, "bad"}));
}

}  // namespace
}  // namespace quillon::test
