// SPDX-License-Identifier: MIT
#include "testing/common_list.h"

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace quillon::test {

namespace {

TEST(CommonListTest, ALineGivesPositionTermTypeAndDescription) {
    const TempFolder folder;
    folder.write("CommonHeaders.dat", "0,PK,T,  Zip archive\r\n3,4D5A,H,Program,more\r\n");
    CommonList list;
    ASSERT_TRUE(list.load(folder / "CommonHeaders.dat"));
    ASSERT_EQ(list.records().size(), 2U);
    EXPECT_TRUE(list.records()[0].anywhere);
    EXPECT_EQ(list.records()[0].description, u"Zip archive") << "leading blanks are cut";
    EXPECT_FALSE(list.records()[1].anywhere);
    EXPECT_EQ(list.records()[1].description, u"Program");
}

TEST(CommonListTest, ShortRecordsHaveNoDescription) {
    CommonList list;
    list.assign({"1,PK,T", "1,504B", "nocomma", ""});
    ASSERT_EQ(list.records().size(), 4U) << "every line is a record";
    for (const auto& record : list.records()) EXPECT_EQ(record.description, std::nullopt);
}

TEST(CommonListTest, ADescriptionIsPageText) {
    CommonList list;
    list.assign({"1,PK,T,caf\xE9 \x80"});
    EXPECT_EQ(list.records()[0].description, u"caf\u00E9 \u20AC");
}

TEST(CommonListTest, AFileWithoutLinesAndAMissingFileLeaveTheListAsItWas) {
    const TempFolder folder;
    CommonList list;
    list.assign({"1,PK,T,Zip"});
    folder.write("CommonHeaders.dat", "");
    EXPECT_TRUE(list.load(folder / "CommonHeaders.dat"));
    EXPECT_EQ(list.records().size(), 1U);
    EXPECT_FALSE(list.load(folder / "missing.dat"));
    EXPECT_EQ(list.records().size(), 1U);
}

TEST(CommonListTest, ALoadReplacesTheListOfTheLastJob) {
    CommonList list;
    list.assign({"1,PK,T,Zip", "1,MZ,T,Program"});
    list.assign({"0,GIF8,T,Picture"});
    ASSERT_EQ(list.records().size(), 1U);
    EXPECT_EQ(list.records()[0].description, u"Picture");
}

}  // namespace

}  // namespace quillon::test
