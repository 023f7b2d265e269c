// SPDX-License-Identifier: MIT
// Formats whose head tells how long the file is, one head each: whole with that many bytes, cut with fewer.
#include "testing/second_opinion/made_head.h"

namespace quillon::test {

namespace {

using namespace std::string_view_literals;

constexpr std::uint64_t kLength = 123456;

struct Case {
    const char* format;
    MadeHead head;
    std::uint64_t needed = kLength;
    std::uint64_t slack = 0;
};

std::vector<Case> containersAndPictures() {
    return {
        {"RIFF", MadeHead().text(0, "RIFF").le32(4, kLength - 8).text(8, "WAVE"), kLength, 9},
        {"RIFF", MadeHead().text(0, "RIFX").be32(4, kLength - 8).text(8, "WAVE"), kLength, 9},
        {"RF64", MadeHead().text(0, "RF64\xFF\xFF\xFF\xFFWAVEds64").le64(20, kLength - 8), kLength, 9},
        {"IFF", MadeHead().text(0, "FORM").be32(4, kLength - 8).text(8, "AIFF"), kLength, 9},
        {"DjVu", MadeHead().text(0, "AT&TFORM").be32(8, kLength - 12), kLength, 9},
        {"DSDIFF", MadeHead().text(0, "FRM8").be64(4, kLength - 12).text(12, "DSD "), kLength, 9},
        {"DSF", MadeHead().text(0, "DSD ").le64(4, 28).le64(12, kLength)},
        {"Wave64", MadeHead().text(0, "riff").hex(4, "2E91CF11A5D628DB04C10000").le64(16, kLength), kLength, 9},
        {"icon", MadeHead().hex(0, "000001000100").le32(14, kLength - 22).le32(18, 22), kLength, 128},
        {"Apple icon", MadeHead().text(0, "icns").be32(4, kLength)},
        {"Sun raster", MadeHead().hex(0, "59A66A95").be32(12, 24).be32(16, kLength - 32).be32(20, 1)},
        {"enhanced metafile", MadeHead().le32(0, 1).text(40, " EMF").le32(48, kLength)},
        {"metafile", MadeHead().hex(0, "D7CDC69A").le16(22, 1).le16(24, 9).le32(28, kLength / 2), kLength, 64},
        {"metafile", MadeHead().hex(0, "010009000003").le32(6, kLength / 2), kLength, 64},
        {"colour profile", MadeHead().be32(0, kLength).text(36, "acsp"), kLength, 3},
        {"RAF",
         MadeHead().text(0, "FUJIFILMCCD-RAW ").be32(84, 148).be32(88, 99).be32(100, 456).be32(104, kLength - 456)},
        {"MRW", MadeHead().text(0, "\0MRM"sv).be32(4, kLength - 9)},
        {"Photoshop", MadeHead().text(0, "8BPS").be16(4, 1).be16(12, 3).be16(22, 8).be32(30, kLength - 40)},
        {"DPX", MadeHead().text(0, "SDPX").be32(4, 8192).be32(16, kLength)},
        {"JPEG 2000", MadeHead().hex(0, "FF4FFF510004").hex(8, "FF90000A").be32(14, kLength - 10)},
    };
}

std::vector<Case> filmsAndSounds() {
    const auto asf = MadeHead().hex(0, "3026B2758E66CF11A6D900AA0062CE6C").le64(16, 5000);
    auto properties = asf;
    properties.hex(30, "A1DCAB8C47A9CF118EE400C00C205365")
        .le64(46, 104)
        .le64(70, kLength)
        .le64(86, 50)
        .le32(122, 3200)
        .le32(126, 3200);
    return {
        {"Matroska",
         MadeHead().hex(0, "1A45DFA38118538067").hex(4, "80").hex(5, "18538067").hex(9, "10").big(10, 3, kLength - 13)},
        {"ASF", properties},
        {"ASF", asf, 5050},
        {"MXF", MadeHead().hex(0, "060E2B34020501010D0102010102040083000078").be64(44, kLength - 20)},
        {"RealMedia", MadeHead().text(0, ".RMF").be32(4, 18).text(18, "PROP").be32(56, kLength - 18).be32(60, 500)},
        {"FLIC", MadeHead().le32(0, kLength).hex(4, "12AF").le16(12, 8).hex(132, "FAF1")},
        {"DVD information", MadeHead().text(0, "DVDVIDEO-VTS").be32(28, 59), 60 * 2048},
        {"Sun sound", MadeHead().text(0, ".snd").be32(4, 24).be32(8, kLength - 24), kLength, 64},
        {"CAF", MadeHead().text(0, "caff\0\1"sv).text(8, "data").be64(12, kLength - 20)},
        {"MIDI", MadeHead().text(0, "MThd").be32(4, 6).be16(10, 1).text(14, "MTrk").be32(18, kLength - 22)},
        {"Monkey's Audio", MadeHead().text(0, "MAC ").le16(4, 3990).le32(8, 52).le32(12, 24).le64(24, kLength - 76)},
        {"WavPack", MadeHead().text(0, "wvpk").le32(4, kLength - 8)},
        {"voice file",
         MadeHead().text(0, "Creative Voice File\x1A").le16(20, 26).hex(26, "01").little(27, 3, kLength - 30)},
        {"FLAC", MadeHead().text(0, "fLaC").hex(4, "80").big(5, 3, kLength - 8)},
        {"ID3, MP3", MadeHead().text(0, "ID3\4").hex(6, "00074436"), 10 + 7 * 16384 + 0x44 * 128 + 0x36},
    };
}

std::vector<Case> archivesAndDocuments() {
    return {
        {"cabinet", MadeHead().text(0, "MSCF").le32(8, kLength).le16(28, 1)},
        {"ar", MadeHead().text(0, "!<arch>\n").text(56, "123388    `\n"), kLength},
        {"xar", MadeHead().text(0, "xar!").be16(4, 28).be64(8, kLength - 28)},
        {"gzip", MadeHead().hex(0, "1F8B0804").le16(10, 6).text(12, "BC\2\0"sv).le16(16, 999), 1000},
        {"mail store", MadeHead().text(0, "!BDN").text(8, "SM").le16(10, 23).le64(184, kLength)},
        {"mail store", MadeHead().text(0, "!BDN").text(8, "SM").le16(10, 14).le32(168, kLength)},
        {"Express mail", MadeHead().hex(0, "CFAD12FEC5FD746F").le32(124, kLength)},
        {"PostScript", MadeHead().hex(0, "C5D0D3C6").le32(4, 30).le32(8, 100).le32(20, 130).le32(24, kLength - 130)},
        {"DICOM", MadeHead().text(128, "DICM").hex(132, "02000000").text(136, "UL").le32(140, kLength - 144)},
        {"mobile book", MadeHead().text(60, "BOOKMOBI").be16(76, 2).be32(78, 94).be32(86, kLength)},
        {"shapefile", MadeHead().be32(0, 9994).be32(24, kLength / 2).le32(28, 1000)},
        {"dBASE", MadeHead().hex(0, "035F0102").le32(4, 10).le16(8, 65).le16(10, 12).text(32, "NAME").text(43, "C"),
         185},
        {"web font", MadeHead().text(0, "wOF2").be32(8, kLength)},
        {"web font", MadeHead().text(0, "wOFF").be32(8, kLength)},
        {"embedded font", MadeHead().le32(0, kLength).le32(8, 0x20001).text(34, "LP")},
        {"old event log", MadeHead().le32(0, 48).text(4, "LfLe").le32(16, 48).le32(20, kLength)},
        {"WinHelp", MadeHead().hex(0, "3F5F0300").le32(12, kLength)},
        {"HTML help", MadeHead().text(0, "ITSF").le32(4, 3).le64(56, 96).le64(104, kLength), kLength, 64},
        {"OneNote", MadeHead().hex(0, "E4525C7B8CD8A74D").hex(48, "3FDD9A101B91F549").le64(196, kLength)},
        {"minidump", MadeHead().text(0, "MDMP").le32(8, 1).le32(12, 32).le32(36, 456).le32(40, kLength - 456)},
        {"link", MadeHead().hex(0, "4C000000011402").le32(20, 3).le16(76, 100).le32(178, kLength - 178)},
    };
}

std::vector<Case> programsDisksAndModels() {
    return {
        {"DEX", MadeHead().text(0, "dex\n035").le32(32, kLength)},
        {"Flash", MadeHead().text(0, "FWS\7").le32(4, kLength)},
        {"fat program, class", MadeHead().hex(0, "CAFEBABE").be32(4, 1).be32(16, 4096).be32(20, kLength - 4096)},
        {"VHDX", MadeHead().text(0, "vhdxfile"), 320 * 1024},
        {"VMDK", MadeHead().text(0, "KDMV").le32(4, 1).le64(64, 128), 65536},
        {"QCOW2", MadeHead().text(0, "QFI\xFB").be32(4, 3).be32(36, 8).be64(40, kLength - 64).be64(48, 65536)},
        {"VDI", MadeHead().hex(64, "7F10DABE01000100").le32(344, 2097152).le32(376, 1048576).le32(388, 3), 5 * 1048576},
        {"Windows image", MadeHead().text(0, "MSWIM\0\0\0"sv).le64(48, 100).le64(56, kLength - 100)},
        {"Squashfs", MadeHead().text(0, "hsqs").le16(28, 4).le64(40, kLength)},
        {"glTF", MadeHead().text(0, "glTF").le32(4, 2).le32(8, kLength)},
        {"3D Studio", MadeHead().text(0, "MM").le32(2, kLength).le16(6, 2)},
        {"HDF5", MadeHead().hex(0, "894844460D0A1A0A").hex(8, "0000000000080800").le64(40, kLength)},
        {"HDF5", MadeHead().hex(0, "894844460D0A1A0A").hex(8, "020808").le64(28, kLength)},
        {"LAS", MadeHead().text(0, "LASF").hex(25, "02").le32(96, 227).le16(105, 20).le32(107, 5), 327},
        {"E57", MadeHead().text(0, "ASTM-E57").le64(16, kLength)},
        {"GRIB", MadeHead().text(0, "GRIB").hex(7, "02").be64(8, kLength)},
        {"GRIB", MadeHead().text(0, "GRIB").big(4, 3, kLength).hex(7, "01")},
        {"BUFR", MadeHead().text(0, "BUFR").big(4, 3, kLength).hex(7, "04")},
        {"WAD", MadeHead().text(0, "IWAD").le32(4, 10).le32(8, kLength - 160)},
        {"drawing", MadeHead().text(0, "AC1015").le32(21, 3).le32(35, 999).le32(39, kLength - 999)},
    };
}

void expectLengths(const std::vector<Case>& cases) {
    for (const auto& one : cases) {
        SCOPED_TRACE(one.format);
        EXPECT_EQ(secondOpinionFormat(one.head.bytes()), one.format);
        expectNeeds(one.head, one.needed, one.slack);
    }
}

TEST(DeclaredLengthTest, ContainersAndPicturesAreCutBelowIt) {
    expectLengths(containersAndPictures());
}

TEST(DeclaredLengthTest, FilmsAndSoundsAreCutBelowIt) {
    expectLengths(filmsAndSounds());
}

TEST(DeclaredLengthTest, ArchivesAndDocumentsAreCutBelowIt) {
    expectLengths(archivesAndDocuments());
}

TEST(DeclaredLengthTest, ProgramsDisksAndModelsAreCutBelowIt) {
    expectLengths(programsDisksAndModels());
}

}  // namespace

}  // namespace quillon::test
