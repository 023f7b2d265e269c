// SPDX-License-Identifier: MIT
// Steps through UTF-8 and UTF-16, and the lower-casing of single characters.
#include "text/unicode.h"

#include <array>

#include <gtest/gtest.h>

namespace quillon {
namespace {

TEST(Unicode, EveryCharacterSurvivesUtf8) {
    for (char32_t character = 0; character <= 0x10FFFF; ++character) {
        if (character == 0xD800)
            character = 0xE000;
        std::string bytes;
        appendUtf8(bytes, character);
        std::size_t index = 0;
        const auto back = nextUtf8(bytes, index);
        ASSERT_TRUE(back) << std::hex << static_cast<unsigned>(character);
        ASSERT_EQ(*back, character);
        ASSERT_EQ(index, bytes.size());
    }
}

TEST(Unicode, EveryCharacterSurvivesUtf16) {
    for (char32_t character = 0; character <= 0x10FFFF; ++character) {
        std::u16string units;
        appendUtf16(units, character);
        std::size_t index = 0;
        ASSERT_EQ(nextUtf16(units, index), character);
        ASSERT_EQ(index, units.size());
    }
}

TEST(Unicode, AnInvalidByteGivesNoValueAndMovesByOne) {
    const std::array<std::string_view, 13> bad = {
        "\x80",
        "\xBF",
        "\xC0\x80",
        "\xC1\xBF",
        "\xC3",
        "\xC3(",
        "\xE0\x9F\xBF",
        "\xED\xA0\x80",
        "\xED\xBF\xBF",
        "\xF0\x8F\xBF\xBF",
        "\xF4\x90\x80\x80",
        "\xF5\x80\x80",
        "\xE2\x82",
    };
    for (const auto text : bad) {
        std::size_t index = 0;
        EXPECT_FALSE(nextUtf8(text, index)) << text;
        EXPECT_EQ(index, 1U) << text;
    }
}

TEST(Unicode, InvalidBytesAndLoneSurrogatesBecomeTheReplacementCharacter) {
    EXPECT_EQ(utf8ToUtf16("a\xFFz"), u"a\uFFFDz");
    constexpr std::array<char16_t, 4> lone = {u'a', 0xDC00, 0xD800, u'z'};
    EXPECT_EQ(utf16ToUtf8({lone.data(), lone.size()}), "a\xEF\xBF\xBD\xEF\xBF\xBDz");
    EXPECT_EQ(utf16ToUtf8(u"\U0001F600"), "\xF0\x9F\x98\x80");
}

TEST(Unicode, LowerCasingFoldsLettersOfEveryScript) {
    EXPECT_EQ(lowered(u"ABC-xyz 123"), u"abc-xyz 123");
    EXPECT_EQ(lowered(u"\u00C4\u00D6\u00DC\u00DF"), u"\u00E4\u00F6\u00FC\u00DF");
    EXPECT_EQ(lowered(u"\u0416\u03A9"), u"\u0436\u03C9");
    const std::u16string noLetters = {u'\u65E5', 0xDCFF};
    EXPECT_EQ(lowered(noLetters), noLetters);
}

TEST(Unicode, LowerCasingTwiceChangesNothingMore) {
    for (unsigned i = 0; i < 0x10000; ++i) {
        const char16_t once = lowerUnit(static_cast<char16_t>(i));
        ASSERT_EQ(lowerUnit(once), once) << std::hex << i;
    }
}

TEST(Unicode, CharactersOutsideTheBasicPlaneKeepTheirCase) {
    EXPECT_EQ(lowered(u"\U00010400"), u"\U00010400");
}

}  // namespace
}  // namespace quillon
