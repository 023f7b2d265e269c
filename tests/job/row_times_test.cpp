// SPDX-License-Identifier: MIT
#include "job/row_times.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace quillon {
namespace {

TEST(RowTimesTest, TimesComeBackInOrder) {
    const test::TempFolder folder;
    auto times = RowTimes::create(folder.path());
    ASSERT_TRUE(times);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path())) << "the file has no name";
    for (int i = 0; i < 10'000; ++i) ASSERT_TRUE(times->add("/s/" + std::to_string(i), i * 7));
    for (int i = 0; i < 10'000; ++i) ASSERT_EQ(times->of("/s/" + std::to_string(i)), i * 7);
    EXPECT_FALSE(times->of("/s/more"));
}

TEST(RowTimesTest, ARowThatWasNotAddedHasNoTimeAndTakesNoneAway) {
    const test::TempFolder folder;
    auto times = RowTimes::create(folder.path());
    ASSERT_TRUE(times && times->add("/s/a", 1) && times->add("/s/b", 2));
    EXPECT_EQ(times->of("/s/a"), 1);
    EXPECT_FALSE(times->of("/s/between"));
    EXPECT_EQ(times->of("/s/b"), 2);
}

TEST(RowTimesTest, AFolderThatCannotBeWrittenIsAFailure) {
    EXPECT_FALSE(RowTimes::create("/proc/self"));
}

}  // namespace
}  // namespace quillon
