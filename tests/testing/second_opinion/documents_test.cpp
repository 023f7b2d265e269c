// SPDX-License-Identifier: MIT
#include "testing/second_opinion/made_head.h"

namespace quillon::test {

namespace {

using namespace std::string_view_literals;

MadeHead compound() {
    return MadeHead()
        .hex(0, "D0CF11E0A1B11AE1")
        .le16(26, 3)
        .le16(28, 0xFFFE)
        .le16(30, 9)
        .le32(44, 1)
        .le32(48, 40)
        .le32(76, 39);
}

TEST(CompoundFileTest, NamedSectorsMustBeThere) {
    expectNeeds(compound(), 42 * 512, 511);
    expectNeeds(compound().le32(60, 90).le32(64, 1), 92 * 512, 511);
    expectNeeds(compound().le16(26, 4).le16(30, 12), 42 * 4096, 4095);
}

TEST(CompoundFileTest, MarksAndSpareTablesAreNoSectors) {
    EXPECT_FALSE(opinionOn(compound().le32(60, 0xFFFFFFFE).le32(64, 1), 42 * 512));
    EXPECT_FALSE(opinionOn(compound().le32(44, 2).le32(80, 0xFFFFFFFF), 42 * 512)) << "a table made ahead";
    expectKind(compound().le16(28, 0xFEFF), 99999, DoubtKind::Inconsistent);
}

MadeHead pdf(std::string_view dictionary) {
    return MadeHead().text(0, "%PDF-1.5\n%\xE2\xE3\n12 0 obj\n" + std::string(dictionary) + "\nendobj\n");
}

TEST(PdfTest, OnlyALinearisedDocumentTellsItsLength) {
    expectNeeds(pdf("<</Linearized 1/L 50000/O 14>>"), 50000, 16);
    expectNeeds(pdf("<< /Linearized 1 /O 14 /L   50000 >>"), 50000, 16);
    EXPECT_FALSE(opinionOn(pdf("<</Linearized 1/L 50000>>"), 70000)) << "changed later";
    EXPECT_FALSE(opinionOn(pdf("<</Length 50000>>"), 600));
    EXPECT_FALSE(opinionOn(pdf("<</Type/Catalog>>\nendobj\n13 0 obj\n<</Linearized 1/L 50000>>"), 600))
        << "left over in a document that was written anew";
}

TEST(SqliteTest, PagesTellTheLength) {
    const auto head = MadeHead().text(0, "SQLite format 3").be16(16, 4096).be32(24, 7).be32(28, 10).be32(92, 7);
    expectNeeds(head, 40960);
    EXPECT_FALSE(opinionOn(MadeHead(head).be32(92, 6), 4096)) << "an older writer left the count alone";
    expectKind(MadeHead(head).be32(92, 6), 4100, DoubtKind::Cut);
    expectKind(MadeHead(head).be16(16, 4000), 40960, DoubtKind::Inconsistent);
    expectNeeds(MadeHead(head).be16(16, 1), 655360);
}

TEST(PagedDatabaseTest, TheLastPageMustBeWhole) {
    const auto access = MadeHead().hex(0, "00010000").text(4, "Standard ACE DB").hex(20, "02");
    EXPECT_FALSE(opinionOn(access, 4096 * 50));
    expectKind(access, 4096 * 50 + 2048, DoubtKind::Cut);
    EXPECT_FALSE(opinionOn(MadeHead().hex(0, "00010000").text(4, "Standard Jet DB"), 4096 * 50 + 2048));
    const auto stored = MadeHead().hex(4, "EFCDAB89").le32(236, 8192);
    EXPECT_FALSE(opinionOn(stored, 8192 * 50));
    expectKind(stored, 8192 * 50 + 4096, DoubtKind::Cut);
}

TEST(DbaseTest, WhatHasNoFieldsIsNoTable) {
    EXPECT_FALSE(opinionOn(
        MadeHead().hex(0, "035F0D02").le32(4, 10000).le16(8, 65).le16(10, 12).text(32, "NAME").text(43, "C"), 600));
    EXPECT_FALSE(opinionOn(MadeHead().hex(0, "03").text(1, "any other text that begins with this byte"), 600));
}

MadeHead font(std::string_view tags) {
    auto head = MadeHead().hex(0, "00010000").be16(4, tags.size() / 4);
    for (std::size_t i = 0; i < tags.size() / 4; ++i)
        head.text(12 + 16 * i, tags.substr(4 * i, 4)).be32(20 + 16 * i, 1000 * (i + 1)).be32(24 + 16 * i, 1000);
    return head;
}

TEST(FontTest, TablesTellTheLength) {
    expectNeeds(font("cmapglyfhead"), 4000);
    EXPECT_FALSE(opinionOn(font("abcdefghijkl"), 600)) << "no tables of a font";
    auto collection = MadeHead().text(0, "ttcf").be32(8, 1).be32(12, 100).be16(104, 2);
    collection.text(112, "cmap").be32(120, 1000).be32(124, 9).text(128, "head").be32(136, 4000).be32(140, 54);
    expectNeeds(collection, 4054);
}

TEST(FontTest, AWebFontEndsWhereItSays) {
    expectKind(MadeHead().text(0, "wOFF").be32(8, 1000), 1004, DoubtKind::Longer);
    EXPECT_FALSE(opinionOn(MadeHead().text(0, "wOFF").be32(8, 1000), 1003));
}

TEST(BookTest, ABookWithoutRecordsIsEmpty) {
    expectKind(MadeHead().text(60, "BOOKMOBI"), 600, DoubtKind::EmptyContainer);
}

}  // namespace

}  // namespace quillon::test
