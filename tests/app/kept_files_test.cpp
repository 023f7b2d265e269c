// SPDX-License-Identifier: MIT
// Old bytes under Kept: where they go, that they are all there, and that nothing is lost on the way.
#include "app/kept_files.h"

#include <gtest/gtest.h>

#include "app/app_fixture.h"
#include "platform/folders.h"
#include "support/fake_surroundings.h"

namespace quillon {
namespace {

class KeptFilesTest : public test::AppFixture {
protected:
    KeptFilesTest() {
        usePaths();
        makeFolder("local");
    }

    test::FakeClock clock;  // stands at 15 November 2026, 10:20:30
    KeptFiles kept{installation, clock};
};

const std::string kBytes("\0all\r\nbytes\xFF", 12);

TEST_F(KeptFilesTest, AFileOfTheLocalRootKeepsItsPlaceBelowIt) {
    const auto file = temp.write("local/Database/jpg.dat", kBytes);
    const auto place = kept.moveAway(file);
    ASSERT_TRUE(place) << place.error().text;
    EXPECT_EQ(*place, temp / "local/Kept/2026-11-15 10.20.30/Database/jpg.dat");
    EXPECT_EQ(temp.read("local/Kept/2026-11-15 10.20.30/Database/jpg.dat"), kBytes);
    EXPECT_FALSE(pathExists(file));
}

TEST_F(KeptFilesTest, AFileFromElsewhereGoesByItsName) {
    const auto place = kept.moveAway(temp.write("elsewhere/deep/7.csv", kBytes));
    ASSERT_TRUE(place);
    EXPECT_EQ(*place, temp / "local/Kept/2026-11-15 10.20.30/7.csv");
}

TEST_F(KeptFilesTest, AFolderWhoseNameBeginsLikeTheLocalRootIsElsewhere) {
    const auto place = kept.moveAway(temp.write("local2/7.csv", kBytes));
    ASSERT_TRUE(place);
    EXPECT_EQ(*place, temp / "local/Kept/2026-11-15 10.20.30/7.csv");
}

TEST_F(KeptFilesTest, ALocalRootWrittenWithASeparatorAtItsEndIsTheSameFolder) {
    installation.settings.localPath.assign(pageFromPath(temp.path().native() + "/local/"));
    installation.refreshPathVariables();
    const auto place = kept.moveAway(temp.write("local/Database/jpg.dat", kBytes));
    ASSERT_TRUE(place);
    EXPECT_TRUE(exists("local/Kept/2026-11-15 10.20.30/Database/jpg.dat"));
}

TEST_F(KeptFilesTest, TwoFilesOfOneNameWithinOneSecondAreBothKept) {
    ASSERT_TRUE(kept.moveAway(temp.write("local/7.csv", "first")));
    ASSERT_TRUE(kept.moveAway(temp.write("local/7.csv", "second")));
    ASSERT_TRUE(kept.copyAway(temp.write("local/7.csv", "third")));
    EXPECT_EQ(temp.read("local/Kept/2026-11-15 10.20.30/7.csv"), "first");
    EXPECT_EQ(temp.read("local/Kept/2026-11-15 10.20.30/7.csv (2)"), "second");
    EXPECT_EQ(temp.read("local/Kept/2026-11-15 10.20.30/7.csv (3)"), "third");
}

TEST_F(KeptFilesTest, OneRescueIsOneFolderHoweverLongItTakes) {
    KeptFiles rescue(installation, clock, KeptBy::Rescue);
    for (const char* name : {"local/Database/a.dat", "local/Database/b.dat", "local/Settings/c.dat"}) {
        ASSERT_TRUE(rescue.moveAway(temp.write(name, kBytes)));
        ++clock.time.second;
    }
    ASSERT_TRUE(rescue.copyAway(temp.write("local/7.csv", kBytes)));
    EXPECT_EQ(listEntries(temp / "local/Kept")->size(), 1U);
    EXPECT_TRUE(exists("local/Kept/2026-11-15 10.20.30/7.csv")) << "that of the first file";
    ASSERT_TRUE(kept.moveAway(temp.write("local/7.csv", kBytes)));
    EXPECT_EQ(listEntries(temp / "local/Kept")->size(), 2U) << "what stands by itself has its own";
}

TEST_F(KeptFilesTest, ACopyLeavesTheFileAlone) {
    const auto file = temp.write("local/7.csv", kBytes);
    ASSERT_TRUE(setModificationTime(file, {1000000000, 500}));
    const auto place = kept.copyAway(file);
    ASSERT_TRUE(place);
    ASSERT_TRUE(place->has_value());
    EXPECT_EQ(temp.read("local/7.csv"), kBytes);
    EXPECT_EQ(temp.read("local/Kept/2026-11-15 10.20.30/7.csv"), kBytes);
    EXPECT_EQ(modificationTime(**place).value().seconds, 1000000000);
}

TEST_F(KeptFilesTest, ALargeFileIsCopiedWhole) {
    std::string bytes;
    for (int i = 0; bytes.size() < 300000; ++i) bytes += std::to_string(i) + "\r\n";
    bytes.resize(2UL * 65536);  // the end falls on the end of a piece
    const auto place = kept.copyAway(temp.write("local/7.csv", bytes));
    ASSERT_TRUE(place);
    EXPECT_EQ(temp.read("local/Kept/2026-11-15 10.20.30/7.csv"), bytes);
}

TEST_F(KeptFilesTest, ACopyOfAMissingFileIsASuccessWithoutAPlace) {
    const auto place = kept.copyAway(temp / "local/none.csv");
    ASSERT_TRUE(place);
    EXPECT_FALSE(place->has_value());
    EXPECT_FALSE(exists("local/Kept"));
}

TEST_F(KeptFilesTest, MovingAMissingFileIsNotFound) {
    const auto place = kept.moveAway(temp / "local/none.csv");
    ASSERT_FALSE(place);
    EXPECT_EQ(place.error().kind, ErrorKind::NotFound);
}

TEST_F(KeptFilesTest, OnFailureTheFileIsWhereItWas) {
    temp.write("local/Kept", "a file stands where the folder belongs");
    const auto file = temp.write("local/7.csv", kBytes);
    EXPECT_FALSE(kept.moveAway(file));
    EXPECT_FALSE(kept.copyAway(file));
    EXPECT_EQ(temp.read("local/7.csv"), kBytes);
}

TEST_F(KeptFilesTest, WithoutALocalRootTheFilesOwnFolderTakesItsPlace) {
    Installation bare(temp / "app");
    bare.refreshPathVariables();
    KeptFiles keptOfBare(bare, clock);
    const auto place = keptOfBare.moveAway(temp.write("app/old.csv", kBytes));
    ASSERT_TRUE(place);
    EXPECT_EQ(*place, temp / "app/Kept/2026-11-15 10.20.30/old.csv");
}

TEST_F(KeptFilesTest, AFileOfAnotherVolumeIsMovedByteForByte) {
    // The memory file system, where it is another volume than the temporary folder.
    std::error_code error;
    const NativePath volume = "/dev/shm";
    if (!std::filesystem::is_directory(volume, error))
        GTEST_SKIP() << "no /dev/shm on this machine";
    const NativePath file = volume / ("quillon-kept-test-" + temp.path().filename().native());
    {
        std::FILE* stream = std::fopen(file.c_str(), "wb");
        if (stream == nullptr)
            GTEST_SKIP() << "/dev/shm cannot be written";
        std::fwrite(kBytes.data(), 1, kBytes.size(), stream);
        std::fclose(stream);
    }
    const auto place = kept.moveAway(file);
    const bool gone = !std::filesystem::exists(file);
    std::filesystem::remove(file, error);
    ASSERT_TRUE(place) << place.error().text;
    EXPECT_TRUE(gone);
    EXPECT_EQ(temp.read("local/Kept/2026-11-15 10.20.30/" + file.filename().native()), kBytes);
}

}  // namespace
}  // namespace quillon
