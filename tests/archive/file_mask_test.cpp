// SPDX-License-Identifier: MIT
#include "archive/file_mask.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace quillon::test {
namespace {

TEST(FileMaskTest, StarAndQuestionMarkAloneAreSpecial) {
    struct Case {
        const char* name;
        const char* mask;
        bool fits;
    };
    const Case cases[] = {
        {"1234-P1.csv", "1234-*.csv", true},
        {"1234.csv", "1234-*.csv", false},
        {"1234-P1.CSV", "1234-*.csv", true},
        {"noext", "*.*", true},
        {"a.b", "*.*", true},
        {"a1.csv", "a?.csv", true},
        {"a[1].csv", "a[1].csv", true},
        {"a1.csv", "a[1].csv", false},
        {"a#.csv", "a#.csv", true},
        {"a1.csv", "a#.csv", false},
        {"ab.csv", "a]*.csv", false},
        {"a]b.csv", "a]*.csv", true},
        {"x.csv.bak", "*.csv", false},
        {"\xC3\x84.csv", "\xC3\xA4*.csv", true},
    };
    for (const auto& c : cases) EXPECT_EQ(matchesFileMask(c.name, c.mask), c.fits) << c.name << " " << c.mask;
}

TEST(FileMaskTest, AFolderIsListedByBytesAndAMissingOneIsEmpty) {
    const TempFolder folder;
    folder.write("b.csv", "");
    folder.write("B.csv", "");
    folder.write("a.txt", "");
    folder.write("sub.csv/x", "");
    EXPECT_THAT(listByMask(folder.path(), "*.csv"), testing::ElementsAre("B.csv", "b.csv"));
    EXPECT_TRUE(listByMask(folder / "missing", "*.*").empty());
    EXPECT_TRUE(listByMask(NativePath(), "*.*").empty());
}

}  // namespace
}  // namespace quillon::test
