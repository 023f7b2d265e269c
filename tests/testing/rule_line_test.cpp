// SPDX-License-Identifier: MIT
#include "testing/rule_line.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "support/failing_files.h"
#include "support/temp_folder.h"

namespace quillon {
namespace {

constexpr const char* kList = "CommonHeaders.dat";

Result<void> append(const test::TempFolder& folder) {
    return appendRuleLine(folder.path(), kList, PageText{"5,NEW,T,y"});
}

TEST(RuleLine, OneThatDoesNotReachTheMediumIsTakenBack) {
    for (const char* old : {"0,a,T,x\r\n", "0,a,T,x", ""}) {
        test::TempFolder folder;
        folder.write(kList, old);
        {
            test::FailingFiles disk;
            disk.failAt(1, {}, "sync");
            EXPECT_FALSE(append(folder));
            EXPECT_TRUE(disk.met());
        }
        EXPECT_EQ(folder.read(kList), old);
        EXPECT_TRUE(append(folder));
        EXPECT_EQ(folder.read(kList), std::string(old).substr(0, 7) + (*old == '\0' ? "" : "\r\n") + "5,NEW,T,y\r\n");
    }
}

TEST(RuleLine, AListThatWasMadeForItGoesWithIt) {
    test::TempFolder folder;
    {
        test::FailingFiles disk;
        disk.failAt(1, {}, "sync");
        EXPECT_FALSE(append(folder));
    }
    EXPECT_FALSE(std::filesystem::exists(folder / kList));
}

}  // namespace
}  // namespace quillon
