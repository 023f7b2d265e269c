// SPDX-License-Identifier: MIT
#include "testing/second_opinion/made_head.h"

namespace quillon::test {

namespace {

using namespace std::string_view_literals;

// A member "a.txt" of this packed length, and what belongs to it in the directory with the end record.
constexpr std::uint64_t kBehind = 46 + 5 + 22;

MadeHead zip(std::uint64_t packed) {
    return MadeHead().hex(0, "504B0304").le32(18, packed).le16(26, 5).text(30, "a.txt");
}

TEST(ZipTest, TheFirstMemberAndItsDirectoryMustBeThere) {
    expectNeeds(zip(5000), 35 + 5000 + kBehind);
    expectNeeds(zip(100).hex(135, "504B0304").le32(153, 900).le16(161, 7), 135 + 37 + 900 + kBehind + 53);
}

TEST(ZipTest, ALengthThatFollowsTheDataIsUnknown) {
    expectNeeds(zip(0).le16(6, 8), 35 + 12 + kBehind);
}

TEST(ZipTest, LargeMembersHaveTheirLengthInTheExtraField) {
    expectNeeds(zip(0xFFFFFFFF).le16(28, 20).le16(35, 1).le16(37, 16).le64(47, 5000000000), 55 + 5000000000 + kBehind);
    EXPECT_FALSE(opinionOn(zip(0xFFFFFFFF), 600)) << "without the field nobody knows";
}

TEST(ZipTest, AnArchiveWithoutMembersIsEmpty) {
    expectKind(MadeHead().hex(0, "504B0506"), 22, DoubtKind::EmptyContainer);
    EXPECT_FALSE(opinionOn(MadeHead().hex(0, "504B0506").le16(10, 3), 22)) << "the last part of a split archive";
    EXPECT_FALSE(opinionOn(MadeHead().hex(0, "504B0708504B0304"), 600)) << "the first part of one";
}

MadeHead sevenZip(std::uint64_t place, std::uint64_t length) {
    return MadeHead().hex(0, "377ABCAF271C0004").le64(12, place).le64(20, length).le32(28, 7).sumLittle(8, 12, 20);
}

TEST(SevenZipTest, TheEndHeaderIsTheEnd) {
    expectNeeds(sevenZip(5000, 100), 5132);
    expectKind(sevenZip(5000, 100), 5133, DoubtKind::Longer);
    expectKind(sevenZip(5000, 100).le64(12, 6000), 9999, DoubtKind::Inconsistent);
    expectKind(sevenZip(0, 0), 32, DoubtKind::EmptyContainer);
    expectKind(MadeHead().hex(0, "377ABCAF271C0004"), 32, DoubtKind::NoIndex);
}

TEST(SevenZipTest, APlaceNearTheLargestNumberDoesNotOverflow) {
    const auto doubt = opinionOn(sevenZip(~0ULL, ~0ULL), 9999);
    ASSERT_TRUE(doubt);
    EXPECT_EQ(doubt->needed, kLargestSize);
}

TEST(CabinetTest, ACabinetWithoutFilesIsEmpty) {
    expectKind(MadeHead().text(0, "MSCF").le32(8, 600), 600, DoubtKind::EmptyContainer);
}

MadeHead rar5() {
    MadeHead head;
    head.hex(0, "526172211A070100").hex(12, "03010000").sumLittle(8, 12, 4);
    // A file of 5000 packed bytes: kind 2, flags 2, length of the data A7 88 00 would be 5000 with three bytes.
    return head.hex(20, "040202").hex(23, "8827").sumLittle(16, 20, 5);
}

TEST(RarTest, MembersAreWalkedAndTheirSumsHeld) {
    expectNeeds(rar5(), 25 + 5000 + 7);
    expectKind(rar5().hex(21, "03"), 9999, DoubtKind::Inconsistent);
    auto old = MadeHead().hex(0, "526172211A0700").hex(9, "730000").le16(12, 13);
    old.le16(7, crc32Of(std::string_view(old.bytes()).substr(9, 11)) & 0xFFFFU);
    old.hex(22, "7400800020").hex(23, "0080").le16(25, 32).le32(27, 5000);
    old.le16(20, crc32Of(std::string_view(old.bytes()).substr(22, 30)) & 0xFFFFU);
    expectNeeds(old, 20 + 32 + 5000);
    expectKind(old.le32(27, 6000), 9999, DoubtKind::Inconsistent);
}

TEST(ArjTest, MembersAreWalkedAndTheirSumsHeld) {
    auto head = MadeHead().hex(0, "60EA").le16(2, 30).hex(10, "02").sumLittle(34, 4, 30);
    head.hex(40, "60EA").le16(42, 30).le32(56, 5000).sumLittle(74, 44, 30);
    expectNeeds(head, 80 + 5000 + 4);
    expectKind(head.le32(56, 6000), 9999, DoubtKind::Inconsistent);
    EXPECT_FALSE(opinionOn(MadeHead().hex(0, "60EA").le16(2, 30), 600)) << "two bytes are no mark";
}

TEST(LhaTest, TheFirstMemberMustBeThere) {
    auto head = MadeHead().hex(0, "16").text(2, "-lh5-").le32(7, 5000);
    std::uint64_t sum = 0;
    for (const char c : head.bytes().substr(2, 0x16)) sum += static_cast<unsigned char>(c);
    expectNeeds(head.little(1, 1, sum & 0xFFU), 0x18 + 5000);
    expectKind(head.hex(1, "00"), 9999, DoubtKind::Inconsistent);
    expectNeeds(MadeHead().le16(0, 60).text(2, "-lh5-").le32(7, 5000).hex(20, "02"), 5060);
}

MadeHead tar(std::string_view length, char kind) {
    auto head = MadeHead().text(0, "name").text(124, length).text(156, std::string(1, kind)).text(257, "ustar");
    std::uint64_t sum = 8 * ' ';
    for (const char c : head.bytes()) sum += static_cast<unsigned char>(c);
    std::string octal;
    for (int i = 0; i < 6; ++i, sum /= 8) octal.insert(octal.begin(), static_cast<char>('0' + sum % 8));
    return head.text(148, octal);
}

TEST(TarTest, TheFirstMemberMustBeThere) {
    expectNeeds(tar("00000011610 ", '0'), 512 + 5000);
    EXPECT_FALSE(opinionOn(tar("00000011610 ", '2'), 1024)) << "a link has no content";
    EXPECT_FALSE(opinionOn(tar("\x80\x00\x01\x02", '0'), 1024)) << "a binary number is left alone";
    expectKind(tar("00000011610 ", '0').text(0, "NAME"), 99999, DoubtKind::Inconsistent);
}

TEST(PackedStreamTest, HeadersHoldTheirSums) {
    const auto xz = MadeHead().hex(0, "FD377A585A000004").sumLittle(8, 6, 2);
    EXPECT_FALSE(opinionOn(xz, 4000));
    expectKind(xz, 4001, DoubtKind::Cut);
    expectKind(MadeHead(xz).hex(7, "05"), 4000, DoubtKind::Inconsistent);
    EXPECT_FALSE(opinionOn(MadeHead().text(0, "BZh91AY&SY"), 600));
    expectKind(MadeHead().text(0, "BZh9").hex(4, "177245385090"), 14, DoubtKind::EmptyContainer);
    expectKind(MadeHead().text(0, "BZh9xxxxxx"), 600, DoubtKind::Inconsistent);
}

TEST(PackedStreamTest, BlocksAreWalked) {
    auto lz4 = MadeHead().hex(0, "04224D186070").le32(7, 0x80000000U + 5000);
    lz4.little(6, 1, shortXxHashOf("\x60\x70") >> 8U & 0xFFU);
    expectNeeds(lz4, 7 + 4 + 5000 + 4);
    expectKind(lz4.hex(6, "00"), 99999, DoubtKind::Inconsistent);
    expectNeeds(MadeHead().hex(0, "28B52FFD0058").little(6, 3, 5000 << 3U | 1U), 9 + 5000);
    expectKind(MadeHead().hex(0, "28B52FFD005807"), 99999, DoubtKind::Inconsistent);
}

}  // namespace

}  // namespace quillon::test
