// SPDX-License-Identifier: MIT
#include "testing/second_opinion/made_head.h"

namespace quillon::test {

namespace {

using namespace std::string_view_literals;

MadeHead program() {
    auto head = MadeHead().text(0, "MZ").le32(60, 64).text(64, "PE").le16(70, 1).le16(84, 224).le16(88, 0x10B);
    return head.le32(312 + 16, 4096).le32(312 + 20, 8192);
}

TEST(WindowsProgramTest, SectionsAndSignatureMustBeThere) {
    expectNeeds(program(), 12288, 4096);
    expectNeeds(program().le32(216, 50000).le32(220, 6000), 56000);
    expectNeeds(program().le16(70, 200), 88 + 224 + 8000);
    EXPECT_FALSE(opinionOn(MadeHead().text(0, "MZ").le32(60, 999999), 600)) << "a program of DOS";
}

TEST(ElfTest, TheTableOfSectionsIsTheEnd) {
    expectNeeds(MadeHead().hex(0, "7F454C460201").le64(40, 50000).le16(58, 64).le16(60, 30), 51920);
    expectNeeds(MadeHead().hex(0, "7F454C460102").be32(32, 50000).be16(46, 40).be16(48, 30), 51200);
    expectNeeds(MadeHead()
                    .hex(0, "7F454C460201")
                    .le64(32, 51920)
                    .le64(40, 50000)
                    .le16(54, 56)
                    .le16(56, 3)
                    .le16(58, 64)
                    .le16(60, 30),
                52088);
    const auto stripped =
        MadeHead().hex(0, "7F454C460201").le64(32, 64).le16(54, 56).le16(56, 1).le64(72, 4096).le64(96, 9000);
    expectNeeds(stripped, 13096);
}

TEST(MachTest, SegmentsMustBeThere) {
    const auto wide = MadeHead().hex(0, "CFFAEDFE").le32(12, 2).le32(16, 1).le32(20, 72).le32(32, 25).le32(36, 72);
    expectNeeds(MadeHead(wide).le64(72, 4096).le64(80, 9000), 13096);
    EXPECT_FALSE(opinionOn(MadeHead(wide).le32(12, 10).le64(80, 9000), 600)) << "debug symbols tell of another file";
    expectNeeds(MadeHead()
                    .hex(0, "FEEDFACE")
                    .be32(12, 2)
                    .be32(16, 1)
                    .be32(20, 56)
                    .be32(28, 1)
                    .be32(32, 56)
                    .be32(60, 4096)
                    .be32(64, 9000),
                13096);
}

TEST(ClassTest, AVersionIsNoCountOfPrograms) {
    EXPECT_FALSE(opinionOn(MadeHead().hex(0, "CAFEBABE").be32(4, 52).be16(8, 20), 600));
    expectKind(MadeHead().hex(0, "CAFEBABE").be32(4, 52), 600, DoubtKind::Inconsistent);
}

TEST(DiskTest, ACopyOfTheFooterHoldsItsSum) {
    auto head = MadeHead().text(0, "conectix").be64(16, 512);
    std::uint32_t sum = 0;
    for (const char c : head.bytes()) sum += static_cast<unsigned char>(c);
    expectNeeds(head.be32(64, ~sum & 0xFFFFFFFFU), 2048);
    expectKind(head.be64(16, 1024), 99999, DoubtKind::Inconsistent);
}

MadeHead hive(std::uint64_t kind) {
    auto head = MadeHead().text(0, "regf").le32(28, kind).le32(40, 8192);
    return head.le32(508, 0x66676572U ^ kind ^ 8192U);
}

TEST(HiveTest, BinsMustBeThere) {
    expectNeeds(hive(0), 12288);
    EXPECT_FALSE(opinionOn(hive(6), 1024)) << "a log of a hive";
    expectKind(hive(0).le32(40, 4096), 99999, DoubtKind::Inconsistent);
}

TEST(EventLogTest, ChunksMustBeThere) {
    const auto head = MadeHead().text(0, "ElfFile").le16(42, 3).sumLittle(124, 0, 120);
    expectNeeds(head, 4096 + 3 * 65536);
    expectKind(MadeHead(head).le16(42, 2), 999999, DoubtKind::Inconsistent);
}

TEST(DrawingTest, TheHiddenHeaderTellsOfItsCopy) {
    // "AcFssFcAJMB" and, 52 bytes on, the place 20000, hidden by the sequence that begins 29 23 BE 84.
    auto head = MadeHead().text(0, "AC1018");
    std::uint32_t seed = 1;
    auto plain = MadeHead().text(0, "AcFssFcAJMB").le64(52, 20000).bytes().substr(0, 108);
    for (auto& byte : plain) {
        seed = seed * 0x343FDU + 0x269EC3U;
        byte = static_cast<char>(static_cast<unsigned char>(byte) ^ (seed >> 16U & 0xFFU));
    }
    expectNeeds(head.text(128, plain), 20108);
    EXPECT_FALSE(opinionOn(MadeHead().text(0, "AC1021"), 600));
}

}  // namespace

}  // namespace quillon::test
