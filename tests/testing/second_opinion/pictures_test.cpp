// SPDX-License-Identifier: MIT
#include "testing/second_opinion/made_head.h"

namespace quillon::test {

namespace {

using namespace std::string_view_literals;

// 100 by 50 pixels of 24 bits: rows of 300 bytes, no filling needed.
MadeHead bitmap() {
    return MadeHead().text(0, "BM").le32(10, 54).le32(14, 40).le32(18, 100).le32(22, 50).le16(26, 1).le16(28, 24);
}

TEST(BitmapTest, ThePixelsTellTheLength) {
    expectNeeds(bitmap(), 54 + 15000, 3);
    expectNeeds(bitmap().le32(18, 99), 54 + 15000, 3);
    expectNeeds(bitmap().le32(22, 0xFFFFFFFF - 49), 54 + 15000, 3);
    expectNeeds(MadeHead().text(0, "BM").le32(10, 26).le32(14, 12).le16(18, 8).le16(20, 2).le16(22, 1).le16(24, 1), 34,
                3);
}

TEST(BitmapTest, ALengthOfTheFileThatIsWrongIsNoDoubt) {
    EXPECT_FALSE(opinionOn(bitmap().le32(2, 0xFFFFFFFF), 15054));
    EXPECT_FALSE(opinionOn(bitmap().le32(2, 0), 15054));
}

TEST(BitmapTest, PackedPixelsTellTheirOwnLength) {
    const auto packed = bitmap().le16(28, 8).le32(30, 1).le32(34, 700);
    expectNeeds(packed, 754);
    EXPECT_FALSE(opinionOn(bitmap().le16(28, 8).le32(30, 1), 600)) << "a length of zero is unknown";
}

TEST(BitmapTest, ATextThatBeginsAlikeIsNoBitmap) {
    EXPECT_FALSE(
        opinionOn(MadeHead().text(0, "BMW and other cars, a list of all models that were built until today"), 600));
}

TEST(IconTest, OtherFilesThatBeginAlikeAreNoIcons) {
    EXPECT_FALSE(opinionOn(MadeHead().hex(0, "000001000100").le32(14, 99999).le32(18, 38), 600));
}

MadeHead png() {
    return MadeHead()
        .hex(0, "89504E470D0A1A0A")
        .be32(8, 13)
        .text(12, "IHDR")
        .be32(16, 20)
        .be32(20, 10)
        .hex(24, "0802")
        .sumBig(29, 12, 17);
}

TEST(PngTest, ChunksAreWalkedAsFarAsTheHeadGoes) {
    expectNeeds(png().be32(33, 9).text(37, "pHYs").be32(54, 5000).text(58, "IDAT"), 54 + 12 + 5000 + 12);
    expectNeeds(png().be32(33, 100).text(37, "IDAT").be32(145, 0).text(149, "IEND"), 157);
}

TEST(PngTest, AHeaderThatContradictsItselfIsInconsistent) {
    expectKind(png().be32(16, 21), 9999, DoubtKind::Inconsistent);
    expectKind(png().be32(16, 0).sumBig(29, 12, 17), 9999, DoubtKind::Inconsistent);
    expectKind(png().text(12, "IDAT"), 9999, DoubtKind::Inconsistent);
    expectKind(png().be32(33, 9).hex(37, "00010203"), 9999, DoubtKind::Inconsistent);
}

TEST(PngTest, TheTelephonesVariantBeginsWithAnotherChunk) {
    const auto head = MadeHead().hex(0, "89504E470D0A1A0A").be32(8, 4).text(12, "CgBI").be32(24, 13).text(28, "IHDR");
    EXPECT_FALSE(opinionOn(MadeHead(head).be32(49, 999).text(53, "IDAT"), 9999));
}

TEST(PngTest, AnimatedPicturesHaveTheSameChunks) {
    expectNeeds(MadeHead().hex(0, "8A4D4E470D0A1A0A").be32(8, 28).text(12, "MHDR").be32(48, 7000).text(52, "IDAT"),
                7072);
}

TEST(JpegTest, SegmentsAreWalkedToTheFirstScan) {
    expectNeeds(MadeHead().hex(0, "FFD8FFE00010").hex(20, "FFE15000"), 20 + 2 + 0x5000 + 2);
    const auto scan = MadeHead().hex(0, "FFD8FFDB0043").hex(71, "FFFFFFC40020").hex(107, "FFDA000C");
    EXPECT_FALSE(opinionOn(scan, 600)) << "filling bytes are allowed, and nobody knows how long a scan is";
}

TEST(JpegTest, ABrokenChainIsInconsistent) {
    expectKind(MadeHead().hex(0, "FFD8FFE00010").hex(20, "00E10008"), 9999, DoubtKind::Inconsistent);
    expectKind(MadeHead().hex(0, "FFD8FFE00001"), 9999, DoubtKind::Inconsistent);
    expectKind(MadeHead().hex(0, "FFD8FFD9"), 9999, DoubtKind::EmptyContainer);
}

TEST(GifTest, ColourTableAndExtensionsMustBeThere) {
    expectNeeds(MadeHead().text(0, "GIF89a").hex(10, "F7"), 13 + 768 + 1);
    EXPECT_FALSE(opinionOn(MadeHead().text(0, "GIF89a").hex(10, "80").hex(19, "21F9040000000000").hex(27, "2C"), 600));
    expectKind(MadeHead().text(0, "GIF89a").hex(13, "3B"), 600, DoubtKind::EmptyContainer);
}

MadeHead tiff() {
    return MadeHead().hex(0, "49492A00").le32(4, 8).le16(8, 2);
}

TEST(TiffTest, TheFirstDirectoryLiesInsideTheFile) {
    expectNeeds(MadeHead().hex(0, "49492A00").le32(4, 100000), 100014);
    expectNeeds(MadeHead().hex(0, "4D4D002A").be32(4, 100000), 100014);
    expectNeeds(MadeHead().hex(0, "49492B0008000000").le64(8, 100000), 100028);
    expectNeeds(MadeHead().text(0, "IIRO").le32(4, 100000), 100014);
    expectNeeds(tiff().le16(8, 400), 8 + 2 + 400 * 12);
}

TEST(TiffTest, StripsTellTheLengthWhereTheyStandInTheHead) {
    const auto one = tiff()
                         .le16(8, 3)
                         .hex(10, "030103000100000005")
                         .hex(22, "110104000100")
                         .le32(30, 1000)
                         .hex(34, "170104000100")
                         .le32(42, 5000);
    expectNeeds(one, 6000);
    // Two strips: their places and lengths stand in lists.
    const auto two = tiff().hex(10, "110104000200").le32(18, 100).hex(22, "170104000200").le32(30, 108);
    expectNeeds(MadeHead(two).le32(100, 500).le32(104, 2000).le32(108, 1500).le32(112, 700), 2700);
    expectNeeds(tiff().hex(10, "110104000900").le32(18, 7000).hex(22, "170104000900").le32(30, 8000), 8036);
}

TEST(TiffTest, RowsOfAPlainStripLimitItsLength) {
    // 40 by 30 pixels of 8 bits in a strip that claims 5000 bytes.
    const auto head = MadeHead()
                          .hex(0, "49492A00")
                          .le32(4, 8)
                          .le16(8, 6)
                          .hex(10, "0001040001000000")
                          .le32(18, 40)
                          .hex(22, "0101040001000000")
                          .le32(30, 30)
                          .hex(34, "020103000100000008")
                          .hex(46, "030103000100000001");
    const auto whole = MadeHead(head).hex(58, "110104000100").le32(66, 1000).hex(70, "170104000100").le32(78, 5000);
    expectNeeds(whole, 2200);
    expectNeeds(MadeHead(whole).hex(54, "05"), 6000);
}

TEST(TiffTest, NumbersThatMeanUnknownAreNoDoubt) {
    EXPECT_FALSE(
        opinionOn(tiff().hex(10, "110104000100").le32(18, 0xFFFFFFFF).hex(22, "170104000100").le32(30, 5), 600));
    EXPECT_FALSE(opinionOn(MadeHead().hex(0, "49492A0000000000"), 600));
}

TEST(RiffTest, StreamsThatNobodyCompletedAreNoCut) {
    for (const std::uint64_t length : {0U, 0xFFFFFFFFU, 0x7FFFFFFFU, 0x80000024U})
        EXPECT_FALSE(opinionOn(MadeHead().text(0, "RIFF").le32(4, length).text(8, "WAVE"), 100000)) << length;
    EXPECT_FALSE(opinionOn(MadeHead().text(0, "RF64").text(12, "ds64").le64(20, ~0ULL), 100000));
    expectKind(MadeHead().text(0, "RIFF").text(8, "AVI "), 100000, DoubtKind::NoIndex);
}

TEST(RiffTest, OnlyAStillPictureEndsWithItsContainer) {
    expectKind(MadeHead().text(0, "RIFF").le32(4, 1000).text(8, "WEBP"), 2000, DoubtKind::Longer);
    EXPECT_FALSE(opinionOn(MadeHead().text(0, "RIFF").le32(4, 1000).text(8, "AVI "), 2000));
}

TEST(RiffTest, ATextThatBeginsAlikeIsNoContainer) {
    EXPECT_FALSE(opinionOn(MadeHead().text(0, "RIFF means a short tune, played again"), 600));
    EXPECT_FALSE(opinionOn(MadeHead().text(0, "FORM 10-K of the year before, a text"), 600));
}

}  // namespace

}  // namespace quillon::test
