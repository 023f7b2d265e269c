// SPDX-License-Identifier: MIT
// The 8-bit page: every byte survives, letters fold one for one, and what the page lacks becomes a question mark.
#include "text/page_text.h"

#include <array>
#include <set>
#include <utility>

#include <gtest/gtest.h>

namespace quillon {
namespace {

std::string allBytes() {
    std::string bytes;
    for (unsigned i = 0; i < 256; ++i) bytes.push_back(static_cast<char>(static_cast<unsigned char>(i)));
    return bytes;
}

TEST(PageText, EveryByteSurvivesTheWayThroughUtf16) {
    const PageText page{allBytes()};
    const std::u16string text = toUtf16(page);
    EXPECT_EQ(text.size(), 256U);
    EXPECT_EQ(toPage(text), page);
}

TEST(PageText, EveryByteSurvivesTheWayThroughUtf8) {
    const PageText page{allBytes()};
    EXPECT_EQ(toPage(toUtf8(page)), page);
}

TEST(PageText, EveryByteHasACharacterOfItsOwn) {
    std::set<char16_t> characters;
    for (unsigned i = 0; i < 256; ++i) characters.insert(pageToUnicode(static_cast<unsigned char>(i)));
    EXPECT_EQ(characters.size(), 256U);
}

TEST(PageText, BytesStandForTheCharactersOfThePage) {
    const std::array<std::pair<unsigned, char16_t>, 14> known = {{
        {0x00, 0x0000},
        {0x41, u'A'},
        {0x7F, 0x007F},
        {0x80, u'\u20AC'},
        {0x81, 0x0081},
        {0x85, u'\u2026'},
        {0x8A, u'\u0160'},
        {0x92, u'\u2019'},
        {0x99, u'\u2122'},
        {0x9F, u'\u0178'},
        {0xA0, u'\u00A0'},
        {0xC4, u'\u00C4'},
        {0xE9, u'\u00E9'},
        {0xFF, u'\u00FF'},
    }};
    for (const auto& [byte, character] : known) {
        EXPECT_EQ(pageToUnicode(static_cast<unsigned char>(byte)), character) << std::hex << byte;
    }
}

TEST(PageText, TheFiveOpenBytesStandForTheirOwnNumber) {
    for (const unsigned byte : {0x81U, 0x8DU, 0x8FU, 0x90U, 0x9DU})
        EXPECT_EQ(pageToUnicode(static_cast<unsigned char>(byte)), byte);
}

TEST(PageText, ACharacterOutsideThePageBecomesAQuestionMark) {
    const std::array<std::pair<const char*, const char*>, 6> cases = {{
        {"\xC4\x80", "?"},             // Latin letter with macron
        {"a\xD0\x96z", "a?z"},         // Cyrillic
        {"\xF0\x9F\x98\x80", "?"},     // outside the basic plane: one character, one mark
        {"caf\xC3\xA9", "caf\xE9"},    // on the page
        {"\xE2\x82\xAC 5", "\x80 5"},  // euro sign
        {"\xC2\x80", "?"},             // the control character 80 is not on the page: its byte is the euro sign
    }};
    for (const auto& [utf8, page] : cases) EXPECT_EQ(toPage(std::string_view(utf8)).bytes, page) << utf8;
    EXPECT_EQ(toPage(std::u16string_view(u"\U0001F600!")).bytes, "?!");
}

TEST(PageText, AByteThatIsNoUtf8BecomesAQuestionMark) {
    EXPECT_EQ(toPage(std::string_view("a\xFFz")).bytes, "a?z");
    EXPECT_EQ(toPage(std::string_view("a\xC3")).bytes, "a?");
}

TEST(PageText, ALoneSurrogateBecomesAQuestionMark) {
    constexpr std::array<char16_t, 3> text = {u'a', 0xDCFF, 0xD800};
    EXPECT_EQ(toPage(std::u16string_view(text.data(), text.size())).bytes, "a??");
}

// The letters that have a lower-case form, written as pairs; every other byte must stay as it is.
TEST(PageText, LowerCasingFoldsTheLettersAndNothingElse) {
    std::array<unsigned char, 256> expected{};
    for (unsigned i = 0; i < 256; ++i) expected[i] = static_cast<unsigned char>(i);
    for (unsigned char c = 'A'; c <= 'Z'; ++c) expected[c] = static_cast<unsigned char>(c - 'A' + 'a');
    const std::string upper =
        "\xC0\xC1\xC2\xC3\xC4\xC5\xC6\xC7\xC8\xC9\xCA\xCB\xCC\xCD\xCE\xCF\xD0\xD1\xD2\xD3\xD4\xD5\xD6"
        "\xD8\xD9\xDA\xDB\xDC\xDD\xDE\x8A\x8C\x8E\x9F";
    const std::string lower =
        "\xE0\xE1\xE2\xE3\xE4\xE5\xE6\xE7\xE8\xE9\xEA\xEB\xEC\xED\xEE\xEF\xF0\xF1\xF2\xF3\xF4\xF5\xF6"
        "\xF8\xF9\xFA\xFB\xFC\xFD\xFE\x9A\x9C\x9E\xFF";
    ASSERT_EQ(upper.size(), lower.size());
    for (std::size_t i = 0; i < upper.size(); ++i)
        expected[static_cast<unsigned char>(upper[i])] = static_cast<unsigned char>(lower[i]);
    for (unsigned i = 0; i < 256; ++i)
        EXPECT_EQ(pageLower(static_cast<unsigned char>(i)), expected[i]) << std::hex << i;
}

TEST(PageText, ARunOfAnyLengthIsLoweredByteByByte) {
    std::string all;
    for (int i = 0; i < 256; ++i) all.push_back(static_cast<char>(i));
    for (std::size_t length = 0; length <= all.size(); ++length) {
        std::string run = all.substr(all.size() - length);
        std::string expected = run;
        for (char& c : expected) c = static_cast<char>(pageLower(static_cast<unsigned char>(c)));
        lowerPageInPlace(run);
        EXPECT_EQ(run, expected) << length;
    }
}

TEST(PageText, LowerCasingKeepsLengthAndZeroBytes) {
    const PageText text{std::string("A\0B\xC4", 4)};
    EXPECT_EQ(lowered(text).bytes, std::string("a\0b\xE4", 4));
    std::string bytes = "MZ\x90";
    lowerPageInPlace(bytes);
    EXPECT_EQ(bytes, "mz\x90");
}

}  // namespace
}  // namespace quillon
