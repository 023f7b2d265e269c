// SPDX-License-Identifier: MIT
#include "widgets/hex_layout.h"

#include <gtest/gtest.h>

namespace quillon {
namespace {

TEST(HexLayout, A512ByteBlockHas32Lines) {
    EXPECT_EQ(HexLayout(512).lines(), 32);
    EXPECT_EQ(HexLayout(0).lines(), 0);
    EXPECT_EQ(HexLayout(17).lines(), 2);
    EXPECT_EQ(HexLayout(17).bytesInLine(1), 1);
}

TEST(HexLayout, EveryByteIsHitWhereItIsPainted) {
    const HexLayout layout(40);
    for (int index = 0; index < 40; ++index) {
        for (const HexPane pane : {HexPane::Hex, HexPane::Text}) {
            const auto hit = layout.hit(layout.lineOf(index), layout.columnOf(index, pane));
            ASSERT_TRUE(hit.has_value()) << index;
            EXPECT_EQ(*hit, (HexHit{index, pane})) << index;
        }
        const auto second = layout.hit(layout.lineOf(index), layout.columnOf(index, HexPane::Hex) + 1);
        EXPECT_EQ(second, (HexHit{index, HexPane::Hex})) << index;
    }
}

TEST(HexLayout, OffsetColumnAndPlacesWithoutBytesHitNothing) {
    const HexLayout layout(20);
    EXPECT_FALSE(layout.hit(0, 0).has_value());
    EXPECT_FALSE(layout.hit(0, HexLayout::kTextStart - 1).has_value());
    EXPECT_FALSE(layout.hit(2, HexLayout::kHexStart).has_value());
    EXPECT_FALSE(layout.hit(-1, HexLayout::kHexStart).has_value());
}

TEST(HexLayout, APlaceBehindTheLastByteHitsTheLastByte) {
    EXPECT_EQ(HexLayout(20).hit(1, HexLayout::kTextStart + 12), (HexHit{19, HexPane::Text}));
}

TEST(HexLayout, KeysKeepTheCaretWithinTheBytes) {
    const HexLayout layout(40);
    struct Case {
        int caret;
        HexKey key;
        int expected;
    };
    const Case cases[] = {
        {0, HexKey::Left, 0},      {0, HexKey::Right, 1},     {39, HexKey::Right, 39}, {20, HexKey::Up, 4},
        {4, HexKey::Up, 4},        {4, HexKey::Down, 20},     {30, HexKey::Down, 30},  {20, HexKey::LineStart, 16},
        {20, HexKey::LineEnd, 31}, {35, HexKey::LineEnd, 39}, {20, HexKey::Start, 0},  {20, HexKey::End, 39},
        {38, HexKey::PageUp, 6},   {6, HexKey::PageDown, 38}, {20, HexKey::PageUp, 4}, {20, HexKey::PageDown, 39}};
    for (const Case& one : cases)
        EXPECT_EQ(layout.moved(one.caret, one.key, 2), one.expected)
            << one.caret << " key " << static_cast<int>(one.key);
}

TEST(HexLayout, WithoutBytesTheCaretStaysAtTheStart) {
    EXPECT_EQ(HexLayout(0).moved(0, HexKey::End, 1), 0);
}

TEST(HexLayout, ALineReadsOffsetDigitsAndCharacters) {
    const std::string bytes = std::string(16, '\0') + std::string("MZ\x90\0abc 0123456789", 18);
    EXPECT_EQ(hexLine(bytes, 1), "00000010  4D 5A 90 00 61 62 63 20  30 31 32 33 34 35 36 37  MZ..abc 01234567");
    EXPECT_EQ(hexLine(bytes, 2), "00000020  38 39                                             89");
}

TEST(HexLayout, OnlyPrintableCharactersShowInTheTextPane) {
    EXPECT_EQ(hexCharacter('A'), u'A');
    EXPECT_EQ(hexCharacter(0xE4), u'\u00E4');
    EXPECT_EQ(hexCharacter(0x80), u'\u20AC');
    for (const int byte : {0x00, 0x0A, 0x1F, 0x7F, 0x81, 0xA0, 0xAD})
        EXPECT_EQ(hexCharacter(static_cast<unsigned char>(byte)), u'.') << byte;
    EXPECT_EQ(hexPairs("MZ"), "4D 5A");
    EXPECT_EQ(hexPairs(""), "");
}

}  // namespace
}  // namespace quillon
