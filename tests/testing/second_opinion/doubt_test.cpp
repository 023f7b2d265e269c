// SPDX-License-Identifier: MIT
#include "testing/second_opinion/doubt.h"

#include "testing/second_opinion/made_head.h"

namespace quillon::test {

namespace {

constexpr std::uint64_t kBeyond = std::numeric_limits<std::uint64_t>::max();

TEST(BytesTest, NumbersOfBothOrdersAreRead) {
    constexpr std::string_view text("\x01\x02\x03\x04\x05\x06\x07\xF8", 8);
    const Bytes head(text);
    EXPECT_EQ(head.u8(7), 0xF8U);
    EXPECT_EQ(head.le16(0), 0x0201U);
    EXPECT_EQ(head.be16(0), 0x0102U);
    EXPECT_EQ(head.be24(1), 0x020304U);
    EXPECT_EQ(head.le32(4), 0xF8070605U);
    EXPECT_EQ(head.be32(4), 0x050607F8U);
    EXPECT_EQ(head.le64(0), 0xF807060504030201U);
    EXPECT_EQ(head.be64(0), 0x01020304050607F8U);
}

TEST(BytesTest, NothingIsReadBehindTheHead) {
    const Bytes head("12345678");
    EXPECT_EQ(head.le32(5), std::nullopt);
    EXPECT_EQ(head.be64(1), std::nullopt);
    EXPECT_EQ(head.u8(8), std::nullopt);
    EXPECT_EQ(head.le16(kBeyond), std::nullopt);
    EXPECT_EQ(head.le16(kBeyond - 1), std::nullopt);
    EXPECT_FALSE(head.holds(4, kBeyond));
    EXPECT_FALSE(head.has(6, "789"));
    EXPECT_EQ(head.part(6, 10), "78");
    EXPECT_EQ(head.part(9, 1), "");
    EXPECT_EQ(Bytes(std::string(600, 'x')).size(), 512U);
}

TEST(BytesTest, SumsAndProductsEndAtTheLargestSize) {
    EXPECT_EQ(plus(2, 3, 4), 9U);
    EXPECT_EQ(plus(2, Number()), std::nullopt);
    EXPECT_EQ(plus(kBeyond, 1), kLargestSize);
    EXPECT_EQ(plus(kLargestSize, kLargestSize), kLargestSize);
    EXPECT_EQ(times(3, 4), 12U);
    EXPECT_EQ(times(Number(), 4), std::nullopt);
    EXPECT_EQ(times(kBeyond, 0), 0U);
    EXPECT_EQ(times(std::uint64_t{1} << 40U, std::uint64_t{1} << 40U), kLargestSize);
    EXPECT_EQ(roundedUp(512, 512), 512U);
    EXPECT_EQ(roundedUp(513, 512), 1024U);
    EXPECT_EQ(roundedUp(kLargestSize, 512), kLargestSize);
}

TEST(DoubtTest, KindsHaveTheirNames) {
    EXPECT_EQ(doubtKindName(DoubtKind::Cut), "cut");
    EXPECT_EQ(doubtKindName(DoubtKind::Longer), "longer");
    EXPECT_EQ(doubtKindName(DoubtKind::Inconsistent), "inconsistent");
    EXPECT_EQ(doubtKindName(DoubtKind::EmptyContainer), "empty-container");
    EXPECT_EQ(doubtKindName(DoubtKind::NoIndex), "no-index");
}

TEST(DoubtTest, ACutTellsHowManyBytesAreMissing) {
    const auto doubt = needs(12345, 12000, "The header");
    ASSERT_TRUE(doubt);
    EXPECT_EQ(doubt->kind, DoubtKind::Cut);
    EXPECT_EQ(doubt->needed, 12345U);
    EXPECT_EQ(doubt->sentence,
              "The header asks for at least 12,345 bytes, the file has 12,000 bytes: 345 bytes missing.");
    EXPECT_EQ(needs(2, 1, "It")->sentence, "It asks for at least 2 bytes, the file has 1 byte: 1 byte missing.");
}

TEST(DoubtTest, WhatIsThereOrUnknownIsNoDoubt) {
    EXPECT_FALSE(needs(100, 100, "It"));
    EXPECT_FALSE(needs(Number(), 0, "It"));
    EXPECT_FALSE(needs(kBeyond, kLargestSize, "It"));
    EXPECT_EQ(needs(kBeyond, 5, "It")->needed, kLargestSize);
    EXPECT_FALSE(needs(109, 100, "It", 9));
    EXPECT_TRUE(needs(110, 100, "It", 9));
    EXPECT_FALSE(endsAt(100, 100, "It"));
    EXPECT_FALSE(endsAt(Number(), 100, "It"));
}

TEST(DoubtTest, DataBehindTheEndAreCounted) {
    const auto doubt = endsAt(1000, 1234, "The font");
    ASSERT_TRUE(doubt);
    EXPECT_EQ(doubt->kind, DoubtKind::Longer);
    EXPECT_EQ(doubt->sentence, "The font ends after 1,000 bytes, the file has 1,234 bytes: 234 bytes behind.");
    EXPECT_FALSE(endsAt(1000, 1003, "The font", 3));
}

TEST(DoubtTest, AUnitThatIsNotWholeIsACut) {
    EXPECT_FALSE(wholeUnits(4096, 8192, "The database"));
    const auto doubt = wholeUnits(4096, 8000, "The database");
    ASSERT_TRUE(doubt);
    EXPECT_EQ(doubt->needed, 8192U);
    EXPECT_EQ(doubt->sentence, "The database consists of units of 4,096 bytes: 192 bytes missing in the last one.");
}

TEST(CheckSumsTest, KnownTextsHaveTheirSums) {
    EXPECT_EQ(crc32Of("123456789"), 0xCBF43926U);
    EXPECT_EQ(shortXxHashOf(""), 0x02CC5D05U);
    EXPECT_EQ(shortXxHashOf("abc"), 0x32D153FFU);
}

}  // namespace

}  // namespace quillon::test
