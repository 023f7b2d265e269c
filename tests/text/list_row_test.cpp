// SPDX-License-Identifier: MIT
#include "text/list_row.h"

#include <vector>

#include <gtest/gtest.h>

#include "text/fields.h"

namespace quillon {
namespace {

using Columns = std::vector<std::u16string_view>;

constexpr const char16_t* kGraded = u"/s/a.txt,15/11/2026, 600, 32;Ab9x,Header OK";

Columns named(const ListRow& row) {
    Columns columns;
    for (std::size_t i = 0; i < static_cast<std::size_t>(ListColumn::Count); ++i)
        columns.push_back(row[static_cast<ListColumn>(i)]);
    return columns;
}

TEST(ListRow, ColumnsHaveNames) {
    const ListRow row(kGraded);
    EXPECT_EQ(row[ListColumn::Path], u"/s/a.txt");
    EXPECT_EQ(row[ListColumn::Modified], u"15/11/2026");
    EXPECT_EQ(row[ListColumn::Size], u" 600");
    EXPECT_EQ(row[ListColumn::Attributes], u" 32;Ab9x");
    EXPECT_EQ(row[ListColumn::Result], u"Header OK");
    EXPECT_EQ(row.line(), kGraded);
}

TEST(ListRow, TheTokenIsReplacedWithoutTouchingAnythingElse) {
    ListRow row(kGraded);
    EXPECT_EQ(row.token(), u"Ab9x");
    row.replaceToken(u"longer");
    EXPECT_EQ(row.line(), u"/s/a.txt,15/11/2026, 600, 32;longer,Header OK");
    EXPECT_EQ(row[ListColumn::Result], u"Header OK");
    EXPECT_TRUE(row.isGraded());
    for (const char16_t* line : {u"/s/a.txt", u"", u"/s/a.txt,x, 1, 32,Header OK"}) {
        row.assign(line);
        row.replaceToken(u"none");
        EXPECT_EQ(row.line(), line);
        EXPECT_EQ(row.token(), u"");
    }
}

TEST(ListRow, EveryLineSplitsAtEveryComma) {
    ListRow row;
    for (const std::u16string_view line :
         {u"", u"a", u",", u"a,", u",b", u"a,b,c,d", u"a,b,c,d,", u"a,b,c,d,e", u"a,b,c,d,e,", u"a,b,c,d,e,f",
          u",,,,,,,,", u"a,b,c,d,e,f,g,h", u"a,b", u""}) {
        row.assign(line);
        const auto plain = splitFields(line);
        EXPECT_EQ(row.columns(), plain.size());
        EXPECT_EQ(row.isGraded(), plain.size() == 5);
        Columns expected(plain.begin(),
                         plain.begin() + static_cast<std::ptrdiff_t>(std::min<std::size_t>(plain.size(), 5)));
        expected.resize(5);
        EXPECT_EQ(named(row), expected) << plain.size() << " columns";
        EXPECT_EQ(row.line(), line);
    }
}

TEST(ListRow, AColumnThatIsNotThereIsEmpty) {
    const ListRow row(u"/s/a.txt,15/11/2026");
    EXPECT_TRUE(row.has(ListColumn::Modified));
    EXPECT_FALSE(row.has(ListColumn::Size));
    EXPECT_EQ(row[ListColumn::Size], u"");
    EXPECT_EQ(row.size(), std::nullopt);
    EXPECT_EQ(row.attributes(), std::nullopt);
}

TEST(ListRow, SizeAndAttributesAreReadLeniently) {
    const auto size = [](const std::u16string& text) { return ListRow(u",," + text).size(); };
    EXPECT_EQ(size(u" 600"), 600);
    EXPECT_EQ(size(u" 5 1 2bytes"), 512);
    EXPECT_EQ(size(u"nonsense"), 0);
    EXPECT_EQ(size(u""), 0);
    EXPECT_EQ(size(u"0.00004"), 0) << "four decimals are held";
    EXPECT_EQ(size(u"-600"), -600);
    const auto attributes = [](const std::u16string& text) { return ListRow(u",,," + text).attributes(); };
    EXPECT_EQ(attributes(u" 32;99999"), 32) << "the token is none of them";
    EXPECT_EQ(attributes(u"99999"), 99999) << "no token: the whole column";
}

TEST(ListRow, PathAndExtensionAreThoseOfTheDisk) {
    ListRow row(u"/s/x.y/n.a>b,,,");
    EXPECT_EQ(row.nativePath(), "/s/x.y/n.a,b");
    EXPECT_EQ(row.extension(), u"a,b");
    row.assign(u"C:\\x.y\\caf\xDCE9.TxT,,,");
    EXPECT_EQ(row.nativePath(), "C:\\x.y\\caf\xE9.TxT");
    EXPECT_EQ(row.extension(), u"TxT");
    row.assign(u"/x.y/z");
    EXPECT_EQ(row.extension(), u"");
    row.assign(u"");
    EXPECT_EQ(row.nativePath(), "");
    EXPECT_EQ(row.extension(), u"");
}

TEST(ListRow, NothingOfAnEarlierLineStays) {
    ListRow row(kGraded);
    EXPECT_FALSE(row.extension().empty());
    EXPECT_FALSE(row.nativePath().empty());
    EXPECT_EQ(row.size(), 600);
    EXPECT_EQ(row.attributes(), 32);
    row.assign(u"/s/b.doc,, 7, 1;x");
    EXPECT_EQ(row.extension(), u"doc");
    EXPECT_EQ(row.nativePath(), "/s/b.doc");
    EXPECT_EQ(row.size(), 7);
    EXPECT_EQ(row.attributes(), 1);
    row.assign(u"/s/c");
    EXPECT_EQ(row.size(), std::nullopt);
    EXPECT_EQ(row.attributes(), std::nullopt);
}

TEST(ListRow, AFoundFileIsARowOfFourColumns) {
    ListRow row(kGraded);
    row.beginFile(u"/s/x>y/", "a,b.txt");
    EXPECT_EQ(row[ListColumn::Path], u"/s/x>y/a>b.txt");
    row.addFile({u"15/11/2026", 600, 33, u"Ab9x"});
    EXPECT_EQ(row.line(), u"/s/x>y/a>b.txt,15/11/2026, 600, 33;Ab9x");
    EXPECT_EQ(row.columns(), 4U);
    EXPECT_EQ(row.size(), 600);
    EXPECT_EQ(row.attributes(), 33);
    EXPECT_EQ(row.nativePath(), "/s/x,y/a,b.txt");
}

TEST(ListRow, AnAddedColumnStandsBehindTheLastWhateverThereIs) {
    const auto added = [](std::u16string_view line) {
        ListRow row(line);
        row.add(u"Header OK");
        EXPECT_EQ(row.columns(), splitFields(row.line()).size()) << row.columns();
        return std::u16string(row.line());
    };
    EXPECT_EQ(added(u"/s/a,,,"), u"/s/a,,,,Header OK");
    EXPECT_EQ(added(u""), u",Header OK");
    EXPECT_EQ(added(u"nocomma"), u"nocomma,Header OK");
    EXPECT_EQ(added(u"a,b,c,d,e,f"), u"a,b,c,d,e,f,Header OK");
    ListRow row(u"/s/a,,, 32;Ab9x");
    row.add(u"one, two");
    EXPECT_EQ(row.columns(), 6U) << "a text with a comma is two columns, as a reader will find";
    EXPECT_EQ(row[ListColumn::Result], u"one");
}

TEST(ListRow, AReplacedResultLeavesTheOtherColumns) {
    ListRow row(kGraded);
    row.replaceResult(u"Header Corrupt");
    EXPECT_EQ(row.line(), u"/s/a.txt,15/11/2026, 600, 32;Ab9x,Header Corrupt");
    EXPECT_TRUE(row.isGraded());
    row.replaceResult(u"");
    EXPECT_EQ(row.line(), u"/s/a.txt,15/11/2026, 600, 32;Ab9x,");
    EXPECT_TRUE(row.isGraded());
    row.assign(u"a,b,c,d,e,f");
    row.replaceResult(u"X");
    EXPECT_EQ(row.line(), u"a,b,c,d,X,f");
    EXPECT_EQ(row.columns(), 6U);
}

}  // namespace
}  // namespace quillon
