// SPDX-License-Identifier: MIT
#include "app/gathered_rows.h"

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace quillon::test {

namespace {

// Some times what is written together.
constexpr int kRows = 20000;

std::u16string rowText(int number) {
    const std::string digits = std::to_string(number);
    return u"/s/\u00e4 " + std::u16string(digits.begin(), digits.end()) + u".jpg,15.11.2026,600,32;1234,Good";
}

TEST(GatheredRowsTest, TheListIsThatOfAWriterThatWritesEachRow) {
    TempFolder folder;
    for (const auto encoding : {ListEncoding::Utf16, ListEncoding::Utf16WithMark, ListEncoding::Page}) {
        auto each = ListWriter::create(folder / "each.csv", encoding);
        auto file = File::create(folder / "gathered.csv");
        ASSERT_TRUE(each && file);
        GatheredRows gathered(std::move(*file), encoding);
        for (int i = 0; i < kRows; ++i) {
            const ListRow row(rowText(i));
            ASSERT_TRUE(each->write(row) && gathered.write(row));
        }
        ASSERT_TRUE(each->close() && gathered.sync() && gathered.close());
        EXPECT_EQ(folder.read("gathered.csv"), folder.read("each.csv"));
    }
}

TEST(GatheredRowsTest, AListWithoutRowsHasItsMark) {
    TempFolder folder;
    auto file = File::create(folder / "empty.csv");
    ASSERT_TRUE(file);
    GatheredRows gathered(std::move(*file), ListEncoding::Utf16WithMark);
    ASSERT_TRUE(gathered.sync() && gathered.close());
    EXPECT_EQ(folder.read("empty.csv"), "\xFF\xFE");
}

}  // namespace

}  // namespace quillon::test
