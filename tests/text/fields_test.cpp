// SPDX-License-Identifier: MIT
// Comma fields, blanks and lines.
#include "text/fields.h"

#include <gtest/gtest.h>

namespace quillon {
namespace {

using Views = std::vector<std::string_view>;

TEST(FindAscii, AByteOfAnotherCharacterIsNoHit) {
    // U+2C0A, U+0A2C and U+2C2C hold the bytes of "," and of a line feed.
    const std::u16string text = u"\x2C0A\x0A2C\x2C2C,x\n,";
    EXPECT_EQ(findAscii(text, u','), 3U);
    EXPECT_EQ(findAscii(text, u',', 4), 6U);
    EXPECT_EQ(findAscii(text, u'\n'), 5U);
    EXPECT_EQ(findAscii(text, u',', 7), std::u16string_view::npos);
    EXPECT_EQ(findAscii(text, u',', 8), std::u16string_view::npos) << "behind the end";
    EXPECT_EQ(findAscii(std::u16string_view(), u','), std::u16string_view::npos);
    EXPECT_EQ(findAscii(text, u'z'), std::u16string_view::npos);
}

TEST(Fields, NSeparatorsGiveOneFieldMore) {
    EXPECT_EQ(splitFields("a,b,c"), (Views{"a", "b", "c"}));
    EXPECT_EQ(splitFields("a"), (Views{"a"}));
    EXPECT_EQ(splitFields(","), (Views{"", ""}));
    EXPECT_EQ(splitFields("a,,b,"), (Views{"a", "", "b", ""}));
    EXPECT_EQ(splitFields(" a , b "), (Views{" a ", " b "}));
}

TEST(Fields, AnEmptyTextHasNoField) {
    EXPECT_TRUE(splitFields("").empty());
    EXPECT_TRUE(splitFields(u"").empty());
}

TEST(Fields, QuotesHaveNoMeaning) {
    EXPECT_EQ(splitFields("\"a,b\""), (Views{"\"a", "b\""}));
}

TEST(Fields, AnotherSeparatorSplitsAsWell) {
    EXPECT_EQ(splitFields(" 32;Ab9x", ';'), (Views{" 32", "Ab9x"}));
    EXPECT_EQ(splitFields(u" 32;Ab9x", u';').front(), u" 32");
}

TEST(Fields, SplittingIntoAVectorReplacesIt) {
    Views fields = {"old", "old", "old"};
    splitInto(fields, std::string_view("a,b"), ',');
    EXPECT_EQ(fields, (Views{"a", "b"}));
    splitInto(fields, std::string_view(), ',');
    EXPECT_TRUE(fields.empty());
}

TEST(Fields, BlanksAreCutWhereAsked) {
    EXPECT_EQ(trimLeft("  a b  "), "a b  ");
    EXPECT_EQ(trimRight("  a b  "), "  a b");
    EXPECT_EQ(trim("  a b  "), "a b");
    EXPECT_EQ(trim("   "), "");
    EXPECT_EQ(trim(""), "");
    EXPECT_EQ(trimLeft(u"  a "), u"a ");
    EXPECT_EQ(trimRight(u"  a "), u"  a");
    EXPECT_EQ(trim(u" a "), u"a");
}

TEST(Fields, OnlyTheBlankItselfIsCut) {
    EXPECT_EQ(trim("\ta\r\n"), "\ta\r\n");
    EXPECT_EQ(trim(u"\u00A0a\u3000"), u"\u00A0a\u3000");
    EXPECT_EQ(trim(std::string_view("\0a\0", 3)), std::string_view("\0a\0", 3));
}

TEST(Fields, LinesEndAtEitherSignOrBoth) {
    EXPECT_EQ(splitLines("a\r\nb\r\n"), (Views{"a", "b"}));
    EXPECT_EQ(splitLines("a\nb"), (Views{"a", "b"}));
    EXPECT_EQ(splitLines("a\rb\r"), (Views{"a", "b"}));
    EXPECT_EQ(splitLines("a\r\rb"), (Views{"a", "", "b"}));
    EXPECT_EQ(splitLines("a\n\rb"), (Views{"a", "", "b"}));
}

TEST(Fields, AnEmptyLineIsALineAndTheEndOfTheFileIsNone) {
    EXPECT_TRUE(splitLines("").empty());
    EXPECT_EQ(splitLines("\r\n"), (Views{""}));
    EXPECT_EQ(splitLines("a\r\n\r\nb\r\n"), (Views{"a", "", "b"}));
    EXPECT_EQ(splitLines("\n\n"), (Views{"", ""}));
}

TEST(Fields, AZeroByteEndsNoLine) {
    EXPECT_EQ(splitLines(std::string_view("a\0b\r\n", 5)), (Views{std::string_view("a\0b", 3)}));
}

TEST(Fields, EveryOccurrenceIsReplacedOnce) {
    EXPECT_EQ(replacedAll("a>b>c", ">", ","), "a,b,c");
    EXPECT_EQ(replacedAll("aaa", "a", "aa"), "aaaaaa");
    EXPECT_EQ(replacedAll("none", ">", ","), "none");
    EXPECT_EQ(replacedAll("////", "//", "/"), "//");
    EXPECT_EQ(replacedAll("", "a", "b"), "");
    EXPECT_EQ(replacedAll("nothing to look for", "", "x"), "nothing to look for");
}

}  // namespace
}  // namespace quillon
