// SPDX-License-Identifier: MIT
#include "testing/header_term.h"

#include "testing/testing_fixture.h"

namespace quillon::test {

namespace {

HeaderBytes headerOf(std::string_view bytes) {
    HeaderBytes head;
    head.fill(' ');
    std::copy_n(bytes.begin(), std::min(bytes.size(), head.size()), head.begin());
    foldHeader(head);
    return head;
}

MatchResult match(const std::string& line, std::string_view bytes) {
    return CompiledTerm::fromTermFileLine(line).match(headerOf(bytes));
}

TEST(HexToTextTest, PairsBecomeOneCharacterEach) {
    EXPECT_EQ(hexToText(""), "");
    EXPECT_EQ(hexToText("4D5A"), "MZ");
    EXPECT_EQ(hexToText("4d5a"), "MZ");
    EXPECT_EQ(hexToText("FFd8"), "\xFF\xD8");
}

TEST(HexToTextTest, APairOfZeroesIsACharacterOfValueZero) {
    EXPECT_EQ(hexToText("4D005A"), std::string("M\0Z", 3));
}

TEST(HexToTextTest, AnOddLastDigitIsACharacterOfItsOwn) {
    EXPECT_EQ(hexToText("415"), "A\x05");
    EXPECT_EQ(hexToText("F"), "\x0F");
}

TEST(HexToTextTest, WhatIsNotHexadecimalIsACharacterOfValueZero) {
    EXPECT_EQ(hexToText("4G"), std::string("\0", 1));
    EXPECT_EQ(hexToText("zz41G"), std::string("\0A\0", 3));
    EXPECT_EQ(hexToText(" 4"), std::string("\0", 1));
}

TEST(HexToTextTest, EveryByteComesBack) {
    for (int byte = 0; byte < 256; ++byte) {
        constexpr const char* digits = "0123456789ABCDEF";
        const std::string hex{digits[byte / 16], digits[byte % 16]};
        EXPECT_EQ(hexToText(hex), std::string(1, static_cast<char>(byte))) << hex;
    }
}

TEST(TermMatchTest, AnswersAreYesOrNo) {
    EXPECT_EQ(match("1,MZ,T", "MZ"), MatchResult::Yes);
    EXPECT_EQ(match("2,MZ,T", "MZ"), MatchResult::No);
    EXPECT_EQ(match("2,MZ,T", "xMZ"), MatchResult::Yes);
}

TEST(TermMatchTest, ATextTermMatchesInEitherCase) {
    EXPECT_EQ(match("1,MZ,T", "mz"), MatchResult::Yes);
    EXPECT_EQ(match("1,mz,T", "MZ"), MatchResult::Yes);
}

TEST(TermMatchTest, AHexadecimalTermMatchesInEitherCaseToo) {
    EXPECT_EQ(match("1,4D5A,H", "mz"), MatchResult::Yes);
    EXPECT_EQ(match("1,41,H", "\x61"), MatchResult::Yes);
    EXPECT_EQ(match("1,C4,H", "\xE4"), MatchResult::Yes) << "the high letters of the page fold as well";
    EXPECT_EQ(match("1,8A,H", "\x9A"), MatchResult::Yes);
    EXPECT_EQ(match("1,D7,H", "\xF7"), MatchResult::No) << "signs are no letters";
    EXPECT_EQ(match("1,DF,H", "\xFF"), MatchResult::No);
}

TEST(TermMatchTest, OnlyTheFieldTypeDecidesWhetherATermIsHexadecimal) {
    EXPECT_EQ(match("1,4D5A,T", "4D5A"), MatchResult::Yes) << "a text term that looks hexadecimal stays text";
    EXPECT_EQ(match("1,4D5A,T", "MZ"), MatchResult::No);
    for (const char* type : {"h", "HEX", " H", "H ", "", "t", "x"}) {
        EXPECT_EQ(match(std::string("1,4D5A,") + type, "MZ"), MatchResult::No) << type;
        EXPECT_EQ(match(std::string("1,4D5A,") + type, "4d5a"), MatchResult::Yes) << type;
    }
}

TEST(TermMatchTest, AZeroByteIsACharacterLikeAnyOther) {
    const std::string head("\0\0MZ", 4);
    EXPECT_EQ(match("3,MZ,T", head), MatchResult::Yes);
    EXPECT_EQ(match("1,00004D,H", head), MatchResult::Yes);
    EXPECT_EQ(match("1,0020,H", head), MatchResult::No) << "a blank is no zero byte";
}

TEST(TermMatchTest, PositionZeroIsAnywhereUpToCharacter512) {
    const std::string atEnd = std::string(511, '.') + "Q";
    EXPECT_EQ(match("0,q,T", atEnd), MatchResult::Yes);
    EXPECT_EQ(match("0,.q,T", atEnd), MatchResult::Yes);
    EXPECT_EQ(match("0,qq,T", atEnd + "Q"), MatchResult::No) << "it would need character 513";
    EXPECT_EQ(match("0," + std::string(512, '.') + ",T", std::string(512, '.')), MatchResult::Yes);
    EXPECT_EQ(match("0," + std::string(513, '.') + ",T", std::string(600, '.')), MatchResult::No);
}

TEST(TermMatchTest, AnOffsetOf512MatchesAOneCharacterTermOnly) {
    const std::string atEnd = std::string(511, '.') + "Q";
    EXPECT_EQ(match("512,Q,T", atEnd), MatchResult::Yes);
    EXPECT_EQ(match("512,QR,T", atEnd + "R"), MatchResult::No);
    EXPECT_EQ(match("513,R,T", atEnd + "R"), MatchResult::No) << "an offset of 513 or more never matches";
    EXPECT_EQ(match("1000000,R,T", atEnd), MatchResult::No);
    EXPECT_EQ(match("99999999999999999999,R,T", atEnd), MatchResult::No);
    EXPECT_EQ(match("1e300,R,T", atEnd), MatchResult::No);
}

TEST(TermMatchTest, AnEmptyTermMatchesAtZeroAndFrom1To513) {
    EXPECT_EQ(match("0,,T", "x"), MatchResult::Yes);
    EXPECT_EQ(match("0,,H", "x"), MatchResult::Yes);
    for (int position = 1; position <= 513; ++position)
        EXPECT_EQ(match(std::to_string(position) + ",,T", "x"), MatchResult::Yes) << position;
    EXPECT_EQ(match("514,,T", "x"), MatchResult::No);
}

TEST(TermMatchTest, APositionBelowOneGivesTheSearchUp) {
    for (const char* position : {"-1", "-0.6", "0.5", "0.2", "-1e300"})
        EXPECT_EQ(match(std::string(position) + ",MZ,T", "MZ"), MatchResult::GivenUp) << position;
    EXPECT_EQ(match("-0,MZ,T", "xxMZ"), MatchResult::Yes) << "minus zero is zero";
}

TEST(TermMatchTest, FieldsBehindTheTypeAreIgnored) {
    EXPECT_EQ(match("1,MZ,T,more,and more", "MZ"), MatchResult::Yes);
    EXPECT_EQ(match("1,4D5A,H,T", "MZ"), MatchResult::Yes);
}

TEST(TermMatchTest, BlanksAroundATermBelongToIt) {
    EXPECT_EQ(match("1, MZ,T", "MZ"), MatchResult::No);
    EXPECT_EQ(match("1, MZ,T", " MZ"), MatchResult::Yes);
}

TEST(TermMatchTest, APartMatchesAsTheTermSearchGivesIt) {
    EXPECT_EQ(CompiledTerm::fromParts(1, "4D5A", true).match(headerOf("mz")), MatchResult::Yes);
    EXPECT_EQ(CompiledTerm::fromParts(0, "Z", false).match(headerOf("mz")), MatchResult::Yes);
    EXPECT_TRUE(CompiledTerm::fromParts(0, "Z", false).isAnywhere());
    EXPECT_FALSE(CompiledTerm::fromParts(1, "Z", false).isAnywhere());
}

}  // namespace

}  // namespace quillon::test
