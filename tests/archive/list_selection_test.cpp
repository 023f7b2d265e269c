// SPDX-License-Identifier: MIT
#include "archive/list_selection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace quillon::test {
namespace {

using testing::ElementsAre;

TEST(ListSelectionTest, TheMaskFollowsSeparatorAndBox) {
    struct Case {
        const char* job;
        bool ignore;
        const char* mask;
    };
    const Case cases[] = {
        {"1234", false, "1234.csv"},
        {"1234-Partition 1", false, "1234-*.csv"},
        {"1234", true, "1234*.csv"},
        {"1234-Partition 1", true, "1234*.csv"},
        {"1234-A-B", false, "1234-*.csv"},
        {"1234-A-B", true, "1234*.csv"},
        {"-A", false, "-*.csv"},
        {"-A", true, "*.csv"},
        {"", false, ".csv"},
        {"", true, "*.csv"},
        {"J\xC3\xB6-A", false, "J\xC3\xB6-*.csv"},
    };
    for (const auto& c : cases) EXPECT_EQ(listMask(c.job, "-", c.ignore), c.mask) << c.job;
}

TEST(ListSelectionTest, AnEmptySeparatorIsFoundAtTheFirstCharacter) {
    EXPECT_EQ(listMask("1234", "", false), "1*.csv");
    EXPECT_EQ(listMask("1234", "", true), "*.csv");
    EXPECT_EQ(listMask("", "", false), ".csv");
}

TEST(ListSelectionTest, TheArchiveIsNamedBeforeTheLastSeparator) {
    EXPECT_EQ(archiveBaseName("1234", "-"), "1234");
    EXPECT_EQ(archiveBaseName("1234-Partition 1", "-"), "1234");
    EXPECT_EQ(archiveBaseName("1234-A-B", "-"), "1234-A");
    EXPECT_EQ(archiveBaseName("-A", "-"), "");
    EXPECT_EQ(archiveBaseName("1234xA", "X"), "1234xA");
    EXPECT_EQ(archiveBaseName("J\xC3\xB6-A", "-"), "J\xC3\xB6");
    EXPECT_EQ(archiveBaseName("", "-"), "");
}

TEST(ListSelectionTest, AnEmptySeparatorCutsTheLastCharacter) {
    EXPECT_EQ(archiveBaseName("1234", ""), "123");
}

TEST(ListSelectionTest, ListsOfAllPartitionsAreFound) {
    const TempFolder folder;
    for (const char* name : {"1234-A.csv", "1234-B.CSV", "1234.csv", "12345.csv", "1234-A.zip", "1234-A.csv.bak"})
        folder.write(name, "");
    EXPECT_THAT(findLists(folder.path(), "1234-A", "-", false),
                ElementsAre(folder / "1234-A.csv", folder / "1234-B.CSV"));
    EXPECT_THAT(findLists(folder.path(), "1234-A", "-", true),
                ElementsAre(folder / "1234-A.csv", folder / "1234-B.CSV", folder / "1234.csv", folder / "12345.csv"));
    EXPECT_THAT(findLists(folder.path(), "1234", "-", false), ElementsAre(folder / "1234.csv"));
}

TEST(ListSelectionTest, WithoutAHitTheListsThatBeginWithTheJobIdAreTaken) {
    const TempFolder folder;
    folder.write("77 old.csv", "");
    EXPECT_THAT(findLists(folder.path(), "77", "-", false), ElementsAre(folder / "77 old.csv"));
    EXPECT_TRUE(findLists(folder.path(), "78", "-", false).empty());
}

TEST(ListSelectionTest, AnEmptyJobIdIsSearchedWithAnEmptyName) {
    const TempFolder folder;
    folder.write("a.csv", "");
    folder.write("b.csv", "");
    EXPECT_EQ(findLists(folder.path(), "", "-", false).size(), 2U);
}

}  // namespace
}  // namespace quillon::test
