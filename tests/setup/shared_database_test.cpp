// SPDX-License-Identifier: MIT
#include "setup/shared_database.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/progress_relay.h"
#include "platform/folders.h"
#include "setup/setup_folders.h"

namespace quillon::test {
namespace {

using testing::ElementsAre;

class SharedDatabaseTest : public testing::Test, public SetupFolders {
protected:
    void setTime(const std::string& name, FileTime time) const {
        ASSERT_TRUE(setModificationTime(folder / name, time).has_value());
    }
    [[nodiscard]] FileTime timeOf(const std::string& name) const { return modificationTime(folder / name).value(); }
    OrphanCounts deleteOrphans() { return moveOrphansAway(findOrphans(), installation.paths(), kept); }
    OrphanTermFiles findOrphans() { return findOrphanTermFiles(installation.paths(), progress); }
    RefreshCounts refresh() {
        return copyChangedTermFiles(databaseFiles(installation.paths().sharedDatabase), installation.paths(), kept,
                                    progress);
    }
    bool exists(const std::string& name) const { return pathExists(folder / name); }
};

TEST_F(SharedDatabaseTest, LocalFilesWithoutASharedCounterpartAreMovedUnderKept) {
    folder.write("local/Database/jpg.dat", "both");
    folder.write("share/Database/jpg.dat", "both");
    folder.write("local/Database/old.dat", "orphan");
    const auto orphans = findOrphans();
    EXPECT_EQ(orphans.looked, 2U);
    EXPECT_FALSE(orphans.shareLooksEmpty);
    EXPECT_TRUE(exists("local/Database/old.dat")) << "what is found is not moved yet";
    const auto counts = moveOrphansAway(orphans, installation.paths(), kept);
    EXPECT_EQ(counts.removed, 1U);
    EXPECT_EQ(counts.failed, 0U);
    EXPECT_TRUE(exists("local/Database/jpg.dat"));
    EXPECT_FALSE(exists("local/Database/old.dat"));
    EXPECT_EQ(folder.read(keptName("Database/old.dat")), "orphan");
    EXPECT_THAT(progress.texts, ElementsAre("Comparing databases...."));
    EXPECT_THAT(progress.maxima, ElementsAre(2));
    EXPECT_THAT(progress.values, ElementsAre(1, 2));
}

TEST_F(SharedDatabaseTest, NamesAreComparedWithoutCase) {
    folder.write("local/Database/jpg.dat", "1");
    folder.write("share/Database/JPG.DAT", "1");
    EXPECT_EQ(deleteOrphans().removed, 0U);
    EXPECT_TRUE(exists("local/Database/jpg.dat"));
}

TEST_F(SharedDatabaseTest, WithTheShareGoneEveryLocalFileIsMovedUnderKept) {
    folder.write("local/Database/jpg.dat", "1");
    folder.write("local/Database/png.dat", "2");
    std::filesystem::remove_all(folder / "share");
    EXPECT_EQ(deleteOrphans().removed, 2U);
    EXPECT_TRUE(databaseFiles(folder / "local/Database").empty());
    EXPECT_EQ(folder.read(keptName("Database/jpg.dat")), "1");
    EXPECT_EQ(folder.read(keptName("Database/png.dat")), "2");
}

TEST_F(SharedDatabaseTest, AShareThatLooksEmptyIsToldFromOneThatHasFiles) {
    folder.write("local/Database/jpg.dat", "1");
    EXPECT_TRUE(findOrphans().shareLooksEmpty);
    folder.write("share/Database/png.dat", "2");
    EXPECT_FALSE(findOrphans().shareLooksEmpty);
    std::filesystem::remove_all(folder / "share");
    EXPECT_TRUE(findOrphans().shareLooksEmpty);
}

TEST_F(SharedDatabaseTest, AFileThatCannotBeKeptStaysWhereItIs) {
    folder.write("local/Database/old.dat", "orphan");
    folder.write("local/Kept", "a file in the way of the folder");
    const auto counts = deleteOrphans();
    EXPECT_EQ(counts.failed, 1U);
    EXPECT_EQ(folder.read("local/Database/old.dat"), "orphan");
}

TEST_F(SharedDatabaseTest, AnEmptyLocalDatabaseHasNoOrphans) {
    const auto orphans = findOrphans();
    EXPECT_EQ(orphans.looked, 0U);
    EXPECT_TRUE(orphans.names.empty());
    EXPECT_THAT(progress.maxima, ElementsAre(0));
}

TEST_F(SharedDatabaseTest, ASharedFileWithAnotherTimeWinsWhicheverIsNewer) {
    folder.write("share/Database/jpg.dat", "shared");
    folder.write("local/Database/jpg.dat", "local");
    for (const std::int64_t localTime : {1'000'000'000, 2'000'000'000}) {
        folder.write("local/Database/jpg.dat", "local");
        setTime("share/Database/jpg.dat", {1'500'000'000, 123'456'789});
        setTime("local/Database/jpg.dat", {localTime, 0});
        EXPECT_EQ(refresh().copied, 1U);
        EXPECT_EQ(folder.read("local/Database/jpg.dat"), "shared");
        EXPECT_EQ(timeOf("local/Database/jpg.dat"), timeOf("share/Database/jpg.dat"));
    }
    EXPECT_EQ(folder.read(keptName("Database/jpg.dat")), "local");
}

TEST_F(SharedDatabaseTest, AnUnchangedDatabaseIsCopiedOnceAndNeverAgain) {
    folder.write("share/Database/jpg.dat", "1");
    folder.write("share/Database/png.dat", "2");
    setTime("share/Database/jpg.dat", {1'500'000'001, 123'456'789});
    EXPECT_EQ(refresh().copied, 2U);
    const auto before = fileStamp(folder / "local/Database/jpg.dat").value();
    const auto again = refresh();
    EXPECT_EQ(again.copied, 0U);
    EXPECT_EQ(again.unchanged, 2U);
    EXPECT_EQ(fileStamp(folder / "local/Database/jpg.dat").value(), before);
}

TEST_F(SharedDatabaseTest, SameTimeIsNotCopiedEvenWithOtherBytes) {
    folder.write("share/Database/jpg.dat", "shared");
    folder.write("local/Database/jpg.dat", "local");
    setTime("share/Database/jpg.dat", {1'500'000'000, 0});
    setTime("local/Database/jpg.dat", {1'500'000'000, 0});
    EXPECT_EQ(refresh().unchanged, 1U);
    EXPECT_EQ(folder.read("local/Database/jpg.dat"), "local");
}

TEST_F(SharedDatabaseTest, AnEditWithinTheSameSecondIsSeen) {
    folder.write("share/Database/jpg.dat", "second");
    folder.write("local/Database/jpg.dat", "first");
    setTime("share/Database/jpg.dat", {1'500'000'000, 700});
    setTime("local/Database/jpg.dat", {1'500'000'000, 0});
    EXPECT_EQ(refresh().copied, 1U);
    EXPECT_EQ(folder.read("local/Database/jpg.dat"), "second");
    EXPECT_EQ(listEntries(folder / "local/Database")->size(), 1U);
}

TEST_F(SharedDatabaseTest, EqualBytesUnderAnotherTimeAreNotKept) {
    folder.write("share/Database/jpg.dat", "same");
    folder.write("local/Database/jpg.dat", "same");
    setTime("local/Database/jpg.dat", {1'000'000'000, 0});
    EXPECT_EQ(refresh().copied, 1U);
    EXPECT_FALSE(exists("local/Kept"));
    EXPECT_EQ(timeOf("local/Database/jpg.dat"), timeOf("share/Database/jpg.dat"));
}

TEST_F(SharedDatabaseTest, ASharedNameInAnotherCaseGoesOverTheLocalFile) {
    folder.write("share/Database/JPG.DAT", "shared");
    folder.write("local/Database/Jpg.dat", "local");
    setTime("local/Database/Jpg.dat", {1'000'000'000, 0});
    EXPECT_EQ(refresh().copied, 1U);
    EXPECT_THAT(databaseFiles(folder / "local/Database"), ElementsAre("Jpg.dat"));
    EXPECT_EQ(folder.read("local/Database/Jpg.dat"), "shared");
}

TEST_F(SharedDatabaseTest, ANewSharedFileGetsALowerCaseName) {
    folder.write("share/Database/PNG.DAT", "shared");
    EXPECT_EQ(refresh().copied, 1U);
    EXPECT_THAT(databaseFiles(folder / "local/Database"), ElementsAre("png.dat"));
}

TEST_F(SharedDatabaseTest, OfTwoSharedSpellingsTheLowerCaseOneCounts) {
    folder.write("share/Database/JPG.dat", "upper");
    folder.write("share/Database/jpg.dat", "lower");
    EXPECT_EQ(refresh().copied, 1U);
    EXPECT_EQ(folder.read("local/Database/jpg.dat"), "lower");
    EXPECT_EQ(refresh().copied, 0U);
}

TEST_F(SharedDatabaseTest, TheBarFollowsTheFileNumber) {
    folder.write("share/Database/jpg.dat", "1");
    folder.write("share/Database/png.dat", "2");
    refresh();
    EXPECT_THAT(progress.maxima, ElementsAre(2));
    EXPECT_THAT(progress.values, ElementsAre(0, 1, 2));
}

TEST_F(SharedDatabaseTest, ARefreshThatIsNotWantedAnyMoreEndsAtTheNextFile) {
    folder.write("share/Database/jpg.dat", "1");
    ProgressRelay relay;
    relay.cancel();
    EXPECT_EQ(copyChangedTermFiles({"jpg.dat"}, installation.paths(), kept, relay).copied, 0U);
    EXPECT_FALSE(pathExists(folder / "local/Database/jpg.dat"));
}

TEST_F(SharedDatabaseTest, WithoutNamesTheBarIsLeftAlone) {
    refresh();
    EXPECT_TRUE(progress.maxima.empty());
    EXPECT_TRUE(progress.values.empty());
}

TEST_F(SharedDatabaseTest, LocalNamesGoThroughTheRefreshUnharmedWhenTheShareIsGone) {
    folder.write("local/Database/jpg.dat", "local");
    std::filesystem::remove_all(folder / "share");
    const auto counts =
        copyChangedTermFiles(databaseFiles(folder / "local/Database"), installation.paths(), kept, progress);
    EXPECT_EQ(counts.missing, 1U);
    EXPECT_EQ(folder.read("local/Database/jpg.dat"), "local");
}

TEST_F(SharedDatabaseTest, ACopyThatCannotKeepTheOldBytesIsNotMade) {
    folder.write("share/Database/jpg.dat", "shared");
    folder.write("local/Database/jpg.dat", "local");
    setTime("local/Database/jpg.dat", {1'000'000'000, 0});
    folder.write("local/Kept", "a file in the way of the folder");
    EXPECT_EQ(refresh().failed, 1U);
    EXPECT_EQ(folder.read("local/Database/jpg.dat"), "local");
    EXPECT_EQ(timeOf("local/Database/jpg.dat"), (FileTime{1'000'000'000, 0}));
}

TEST_F(SharedDatabaseTest, CommonHeadersAreFetchedFromTheShare) {
    folder.write("local/Settings/CommonHeaders.dat", "local");
    EXPECT_TRUE(fetchCommonHeaders(installation.paths(), kept));
    EXPECT_EQ(folder.read("local/Settings/CommonHeaders.dat"), "local");
    folder.write("share/Settings/CommonHeaders.dat", "shared");
    EXPECT_TRUE(fetchCommonHeaders(installation.paths(), kept));
    EXPECT_EQ(folder.read("local/Settings/CommonHeaders.dat"), "shared");
    EXPECT_EQ(folder.read(keptName("Settings/CommonHeaders.dat")), "local");
}

TEST_F(SharedDatabaseTest, CommonHeadersAreFetchedWithSharingOff) {
    installation.settings.useSharedDb = 0;
    installation.refreshPathVariables();
    folder.write("share/Settings/CommonHeaders.dat", "shared");
    EXPECT_TRUE(fetchCommonHeaders(installation.paths(), kept));
    EXPECT_EQ(folder.read("local/Settings/CommonHeaders.dat"), "shared");
}

TEST_F(SharedDatabaseTest, WithoutRootsThereAreNoCommonHeaders) {
    Installation empty(folder / "app");
    KeptFiles none(empty, fake.clock);
    EXPECT_TRUE(fetchCommonHeaders(empty.paths(), none));
    EXPECT_FALSE(pathExists("Settings"));
}

}  // namespace
}  // namespace quillon::test
