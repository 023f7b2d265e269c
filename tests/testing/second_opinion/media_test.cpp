// SPDX-License-Identifier: MIT
#include "testing/second_opinion/made_head.h"

namespace quillon::test {

namespace {

using namespace std::string_view_literals;

MadeHead film() {
    return MadeHead().be32(0, 24).text(4, "ftypisom");
}

TEST(IsoMediaTest, BoxesAreWalkedAsFarAsTheHeadGoes) {
    expectNeeds(film().be32(24, 5000).text(28, "moov"), 5024);
    expectNeeds(film().be32(24, 8).text(28, "moov").be32(32, 1).text(36, "mdat").be64(40, 5000000000), 5000000032);
}

TEST(IsoMediaTest, MediaWithoutTheirIndexAreTold) {
    const auto head = film().be32(24, 5000).text(28, "mdat");
    expectKind(head, 5024, DoubtKind::NoIndex);
    EXPECT_FALSE(opinionOn(head, 9000)) << "the index follows";
    expectKind(film().text(28, "mdat"), 9000, DoubtKind::NoIndex);
    EXPECT_FALSE(opinionOn(film().be32(24, 100).text(28, "moov").text(128, "mdat"), 9000)) << "the index stands ahead";
    EXPECT_FALSE(opinionOn(
        MadeHead().be32(0, 24).text(4, "styp").be32(24, 90).text(28, "moof").be32(114, 300).text(118, "mdat"), 414));
    expectKind(film(), 24, DoubtKind::EmptyContainer);
}

TEST(IsoMediaTest, AStillPictureTellsWhereItsItemsLie) {
    auto head = MadeHead().be32(0, 24).text(4, "ftypavif").be32(24, 200).text(28, "meta").be32(36, 33).text(40, "hdlr");
    head.be32(69, 40).text(73, "iloc").hex(81, "4400").be16(83, 1).be16(85, 1).be16(89, 1).be32(91, 224).be32(95, 5000);
    expectNeeds(head, 5224);
}

TEST(IsoMediaTest, ATextThatBeginsAlikeIsNoFilm) {
    EXPECT_FALSE(opinionOn(MadeHead().text(0, "The free world"), 600));
    EXPECT_FALSE(opinionOn(MadeHead().text(0, "all skip the rest"), 600));
}

TEST(IsoMediaTest, OtherContainersOfBoxesEndWithThem) {
    EXPECT_FALSE(opinionOn(
        MadeHead().be32(0, 12).text(4, "jP  \r\n\x87\n").be32(12, 20).text(16, "ftypjp2 ").text(36, "jp2c"), 9999));
}

TEST(MatroskaTest, ALiveStreamIsNoDoubt) {
    EXPECT_FALSE(opinionOn(MadeHead().hex(0, "1A45DFA38018538067").hex(5, "1853806701FFFFFFFFFFFFFF"), 600));
}

TEST(AsfTest, ABroadcastIsNoDoubt) {
    auto head = MadeHead().hex(0, "3026B2758E66CF11A6D900AA0062CE6C").le64(16, 300);
    head.hex(30, "A1DCAB8C47A9CF118EE400C00C205365").le64(46, 104).le64(70, 99999).le32(118, 1);
    head.le64(86, 30).le32(122, 3200).le32(126, 3200);
    EXPECT_FALSE(opinionOn(head, 600));
    expectNeeds(head.le32(118, 2), 350 + 30 * 3200);
}

TEST(AsfTest, AHeadThatLostItsTagsIsNoDoubt) {
    auto head = MadeHead().hex(0, "3026B2758E66CF11A6D900AA0062CE6C").le64(16, 300);
    head.hex(30, "A1DCAB8C47A9CF118EE400C00C205365")
        .le64(46, 104)
        .le64(70, 99999)
        .le64(86, 30)
        .le32(122, 3200)
        .le32(126, 3200);
    EXPECT_FALSE(opinionOn(head, 350 + 30 * 3200)) << "the length of the file is that of the time before";
}

TEST(FlashVideoTest, TheFilmTellsItsOwnLength) {
    auto head = MadeHead().text(0, "FLV\1\5").be32(5, 9).hex(13, "12").big(14, 3, 300);
    head.text(40,
              "\0\x08"
              "filesize\0"sv)
        .hex(51, "40F8694000000000");  // 99988 as a double
    expectNeeds(head, 99988, 4096);
}

TEST(TransportStreamTest, TheLastPacketMustBeWhole) {
    const auto head = MadeHead().text(0, "G").text(188, "G").text(376, "G");
    EXPECT_FALSE(opinionOn(head, 188 * 100));
    expectKind(head, 188 * 100 - 1, DoubtKind::Cut);
    const auto timed = MadeHead().text(4, "G").text(196, "G").text(388, "G");
    EXPECT_FALSE(opinionOn(timed, 192 * 100));
    expectKind(timed, 192 * 100 - 1, DoubtKind::Cut);
    EXPECT_FALSE(opinionOn(MadeHead().text(0, "Good"), 601));
}

TEST(DvdVideoTest, ATitleConsistsOfPacks) {
    const auto head = MadeHead().hex(0, "000001BA44").hex(14, "000001BB").hex(38, "000001BF03D4");
    EXPECT_FALSE(opinionOn(head, 2048 * 9));
    expectKind(head, 2048 * 9 - 5, DoubtKind::Cut);
    EXPECT_FALSE(opinionOn(MadeHead().hex(0, "000001BA44"), 601));
}

TEST(Layer3Test, TheNoteInTheFirstFrameTellsTheLength) {
    expectNeeds(MadeHead().hex(0, "FFFB9064").text(36, "Xing").be32(40, 3).be32(48, 50000), 50000, 16384);
    expectNeeds(
        MadeHead().text(0, "ID3\3").hex(9, "14").hex(30, "FFFB90C4").text(51, "Info").be32(55, 2).be32(59, 50000),
        50030, 16384);
    EXPECT_FALSE(opinionOn(MadeHead().hex(0, "FFFB9064"), 600));
    EXPECT_FALSE(opinionOn(MadeHead().text(0, "ID3\3").hex(6, "FF"), 600)) << "a length that none is";
}

TEST(OggTest, TheFirstPageHoldsItsSum) {
    auto head =
        MadeHead().text(0, "OggS\0\2"sv).hex(26, "011E").text(28, "\1vorbis").text(58, "OggS").hex(84, "02FFFF");
    head.le32(22, oggSumOf(head.bytes().substr(0, 58)));
    expectNeeds(head, 58 + 29 + 510);
    expectKind(head.text(29, "V"), 9999, DoubtKind::Inconsistent);
}

TEST(SoundTest, UnknownLengthsAreNoDoubt) {
    EXPECT_FALSE(opinionOn(MadeHead().text(0, ".snd").be32(4, 24).be32(8, 0xFFFFFFFF), 600));
    EXPECT_FALSE(opinionOn(MadeHead().text(0, "caff\0\1"sv).text(8, "data").be64(12, ~0ULL), 600));
    for (const std::uint64_t length : {std::uint64_t{0}, ~std::uint64_t{0}, std::uint64_t{1} << 63}) {
        SCOPED_TRACE(length);
        EXPECT_FALSE(opinionOn(MadeHead().text(0, "riff").hex(4, "2E91CF11A5D628DB04C10000").le64(16, length), 600));
        EXPECT_FALSE(opinionOn(MadeHead().text(0, "RF64\xFF\xFF\xFF\xFFWAVEds64").le64(20, length), 600));
        EXPECT_FALSE(opinionOn(MadeHead().text(0, "FRM8").be64(4, length).text(12, "DSD "), 600));
        EXPECT_FALSE(opinionOn(MadeHead().text(0, "DSD ").le64(4, 28).le64(12, length), 600));
    }
    expectKind(MadeHead().text(0, "MThd").be32(4, 6), 600, DoubtKind::EmptyContainer);
}

}  // namespace

}  // namespace quillon::test
