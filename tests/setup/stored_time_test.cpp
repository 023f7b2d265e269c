// SPDX-License-Identifier: MIT
#include "setup/stored_time.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "platform/folders.h"
#include "support/temp_folder.h"

namespace quillon::test {
namespace {

std::optional<FileTime> inSteps(FileTime time, std::uint32_t nanoseconds) {
    return FileTime{time.seconds, time.nanoseconds / nanoseconds * nanoseconds};
}
std::optional<FileTime> evenSeconds(FileTime time) {
    return FileTime{time.seconds / 2 * 2, 0};
}

TEST(StoredTimeTest, TheStepsOfAVolumeMakeNoDifference) {
    const FileTime original{1'000'001, 123'456'789};
    const StoreTime exact = [](FileTime time) { return inSteps(time, 1); };
    const StoreTime share = [](FileTime time) { return inSteps(time, 100); };
    EXPECT_TRUE(isSameStoredTime(original, original, exact));
    EXPECT_TRUE(isSameStoredTime({1'000'001, 123'456'700}, original, share));
    EXPECT_TRUE(isSameStoredTime({1'000'000, 0}, original, evenSeconds));
}

TEST(StoredTimeTest, AnotherTimeWithinTheStepsOfAFinerVolumeIsADifference) {
    const FileTime original{1'000'001, 123'456'789};
    const StoreTime exact = [](FileTime time) { return inSteps(time, 1); };
    EXPECT_FALSE(isSameStoredTime({1'000'001, 123'456'700}, original, exact));
    EXPECT_FALSE(isSameStoredTime({1'000'000, 0}, original, exact));
    EXPECT_FALSE(isSameStoredTime({999'998, 0}, original, evenSeconds));
}

TEST(StoredTimeTest, TheVolumeIsAskedOnlyAboutCloseTimes) {
    const StoreTime never = [](FileTime) -> std::optional<FileTime> {
        ADD_FAILURE() << "asked";
        return std::nullopt;
    };
    EXPECT_TRUE(isSameStoredTime({5, 5}, {5, 5}, never));
    EXPECT_FALSE(isSameStoredTime({5, 5}, {500, 5}, never));
    EXPECT_FALSE(isSameStoredTime({5, 5}, {6, 5}, [](FileTime) { return std::optional<FileTime>(); }));
}

TEST(StoredTimeTest, TheProbeReadsBackWhatTheVolumeMadeOfATimeAndLeavesNothing) {
    const TempFolder folder;
    const NativePath file = folder.write("jpg.dat", "1");
    const FileTime time{1'600'000'001, 123'456'789};
    ASSERT_TRUE(setModificationTime(file, time).has_value());
    {
        TimeProbe probe(folder.path());
        EXPECT_EQ(probe.store(time), modificationTime(file).value());
        EXPECT_EQ(probe.store({1'600'000'000, 0}), (FileTime{1'600'000'000, 0}));
        EXPECT_EQ(listFiles(folder.path())->size(), 1U);
    }
    EXPECT_EQ(listEntries(folder.path())->size(), 1U);
}

TEST(StoredTimeTest, AFolderThatIsNotThereHasNoProbe) {
    const TempFolder folder;
    TimeProbe probe(folder / "missing");
    EXPECT_FALSE(probe.store({5, 5}).has_value());
    EXPECT_FALSE(probe.store({5, 5}).has_value());
}

}  // namespace
}  // namespace quillon::test
