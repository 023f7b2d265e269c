// SPDX-License-Identifier: MIT
// The messenger's log: bounded, for its user alone, and nothing in it is torn.
#include "messaging/alert_log.h"

#include <gtest/gtest.h>

#include "support/failing_files.h"
#include "support/posix_files.h"
#include "support/temp_folder.h"

namespace quillon {
namespace {

class AlertLogTest : public testing::Test {
protected:
    test::TempFolder temp;
    AlertLog log{temp / "alerts.log", 100};
};

TEST_F(AlertLogTest, ANewLogIsForItsUserAlone) {
    ASSERT_TRUE(log.open());
    EXPECT_EQ(temp.read("alerts.log"), "");
    EXPECT_EQ(test::statOf(temp / "alerts.log").st_mode & 0777U, 0600U);
}

TEST_F(AlertLogTest, AFullLogIsPutAsideAndOnlyOneOlderStays) {
    const auto record = [](char letter) { return std::string(39, letter) + "\n"; };
    for (const char letter : {'a', 'b', 'c', 'd', 'e'}) ASSERT_TRUE(log.add(record(letter)));
    EXPECT_EQ(temp.read("alerts.log"), record('e'));
    EXPECT_EQ(temp.read("alerts.log.1"), record('c') + record('d'));
    EXPECT_EQ(test::statOf(temp / "alerts.log").st_mode & 0777U, 0600U);
}

TEST_F(AlertLogTest, ARecordAboveTheBoundStandsAlone) {
    ASSERT_TRUE(log.add(std::string(150, 'x')));
    EXPECT_EQ(temp.read("alerts.log").size(), 150U);
    ASSERT_TRUE(log.add("next"));
    EXPECT_EQ(temp.read("alerts.log"), "next");
}

TEST_F(AlertLogTest, ARecordThatDoesNotFitOnTheDiskLeavesTheOthersWhole) {
    ASSERT_TRUE(log.add("one\n"));
    {
        test::FailingFiles disk;
        disk.failAt(1, {.number = ENOSPC, .shortWrite = true}, "write");
        EXPECT_FALSE(log.add("two\n"));
    }
    EXPECT_EQ(temp.read("alerts.log"), "one\n");
}

}  // namespace
}  // namespace quillon
