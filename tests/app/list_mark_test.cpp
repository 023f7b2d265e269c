// SPDX-License-Identifier: MIT
// The mark of an unfinished list: where it stands, what it tells, and that it goes with its list.
#include "app/list_mark.h"

#include <gtest/gtest.h>

#include "platform/folders.h"
#include "support/temp_folder.h"

namespace quillon {
namespace {

class ListMark : public testing::Test {
protected:
    test::TempFolder temp;
    NativePath list = temp / "1234.csv";
};

TEST_F(ListMark, AListWithoutAMarkIsWhole) {
    temp.write("1234.csv", "rows");
    EXPECT_FALSE(isUnfinished(list));
    EXPECT_TRUE(markFinished(list)) << "a mark that is not there need not go";
}

TEST_F(ListMark, AMarkStandsBesideItsListAheadOfIt) {
    ASSERT_TRUE(markUnfinished(list));
    EXPECT_TRUE(isUnfinished(list));
    EXPECT_TRUE(pathExists(temp / "1234.csv.unfinished"));
    EXPECT_FALSE(pathExists(list));
    ASSERT_TRUE(markFinished(list));
    EXPECT_FALSE(pathExists(temp / "1234.csv.unfinished"));
}

TEST_F(ListMark, AListOfTheLongestNameHasAMark) {
    const NativePath longest = temp / (std::string(251, 'j') + ".csv");
    const NativePath other = temp / (std::string(250, 'j') + "k.csv");
    ASSERT_TRUE(markUnfinished(longest));
    EXPECT_TRUE(isUnfinished(longest));
    EXPECT_FALSE(isUnfinished(other));
}

TEST_F(ListMark, AMarkGoesAlongAndAStrangeOneGoes) {
    const NativePath copy = temp / "copy.csv";
    ASSERT_TRUE(markUnfinished(list));
    ASSERT_TRUE(copyMark(list, copy));
    EXPECT_TRUE(isUnfinished(copy));
    EXPECT_TRUE(isUnfinished(list));
    ASSERT_TRUE(markFinished(list));
    ASSERT_TRUE(copyMark(list, copy));
    EXPECT_FALSE(isUnfinished(copy));
}

TEST_F(ListMark, AMarkThatCannotBeMadeIsAFailure) {
    EXPECT_FALSE(markUnfinished(temp / "missing" / "1234.csv"));
}

TEST_F(ListMark, AFailureShowsAListThatTurnsTextAsItIs) {
    const auto marked = markUnfinished(temp / "missing" / "gpj\u202E.csv");
    ASSERT_FALSE(marked);
    EXPECT_EQ(marked.error().text, (temp / "missing").native() + "/gpj<U+202E>.csv: No such file or directory");
}

}  // namespace
}  // namespace quillon
