// SPDX-License-Identifier: MIT
#include "healthy_heads.h"

#include <algorithm>
#include <iterator>

#include "testing/header_term.h"
#include "text/page_text.h"

namespace quillon::test {

namespace {

struct Piece {
    std::size_t offset;  // counted from 0
    std::string bytes;
};

struct Head {
    const char* extension;
    const char* variant;
    std::vector<Piece> pieces;
};

std::string x(std::string_view hex) {
    return hexToText(hex);
}

std::string wide(std::string_view text) {
    std::string bytes;
    for (const char c : text) bytes += {c, '\0'};
    return bytes;
}

// A zip file's first member: its name begins at offset 30.
std::vector<Piece> zipOf(const std::string& name, const std::string& content = {}) {
    std::string lengths{static_cast<char>(name.size()), '\0', '\0', '\0'};
    return {{0, x("504B03041400000008000000210000000000AA000000BB000000") + lengths + name + content}};
}

// The usual office writer's first member, whose time is the first one that a zip file can tell.
std::vector<Piece> officePackage() {
    return {{0, x("504B0304140006000800000021007C6C98166C010000A005000013000802") + "[Content_Types].xml"}};
}

// A package that begins with its kind, stored as it is: the check sum is the kind's.
std::vector<Piece> package(std::string_view checkSum, const std::string& kind) {
    const std::string length{static_cast<char>(kind.size()), '\0', '\0', '\0'};
    return {{0, x("504B03041400000800005347DA54") + x(checkSum) + length + length + x("08000000") + "mimetype" + kind}};
}

// The same of a writer that tells check sum and lengths behind the member.
std::vector<Piece> streamedPackage(const std::string& kind) {
    return {{0, x("504B03041400080800005347DA5400000000000000000000000008000000") + "mimetype" + kind}};
}

// A file of boxes: its first box tells the brand.
std::vector<Piece> brand(const std::string& name, const std::string& compatible = "mp42") {
    return {{0, x("00000018") + "ftyp" + name + x("00000000") + compatible + "isom"}};
}

std::vector<Piece> riff(const std::string& kind) {
    return {{0, "RIFF" + x("24A00F00") + kind}};
}

std::vector<Piece> ogg(const std::string& codec) {
    return {{0, "OggS" + x("0002000000000000000011223344000000005566778801") + x("1E") + codec}};
}

std::vector<Piece> start(std::string_view hex) {
    return {{0, x(hex)}};
}

std::vector<Piece> text(const std::string& all) {
    return {{0, all}};
}

constexpr const char* kCompound = "D0CF11E0A1B11AE1000000000000000000000000000000003E000300FEFF0900";
constexpr const char* kProgram = "4D5A90000300000004000000FFFF0000B800000000000000";
constexpr const char* kAsf = "3026B2758E66CF11A6D900AA0062CE6C";

std::vector<Head> pictures() {
    return {
        {"jpg", "JFIF", {{0, x("FFD8FFE000104A46494600010101")}}},
        {"jpg", "Exif", {{0, x("FFD8FFE1A0B04578696600004D4D002A")}}},
        {"jpeg", "without a marker segment of its own", start("FFD8FFDB0043000503")},
        {"png", "plain", start("89504E470D0A1A0A0000000D49484452")},
        {"gif", "89a", text("GIF89a")},
        {"gif", "87a", text("GIF87a")},
        {"bmp", "24 bits", start("424D36100E0000000000360000002800000080020000")},
        {"bmp", "16 colours", start("424D76020000000000007600000028000000")},
        {"bmp", "version 5", start("424D8A7B0C00000000008A0000007C00000000040000")},
        {"bmp", "OS/2",
         start("424D1A0300000000000"
               "01A0000000C00000020002000")},
        {"tif", "Intel", start("49492A00080000000E00")},
        {"tif", "Motorola", start("4D4D002A00000008")},
        {"tif", "big", start("49492B00080000001000000000000000")},
        {"ico", "one picture", start("00000100010010100000010020006804")},
        {"cur", "one picture", start("00000200010020200000000000")},
        {"webp", "lossy", riff("WEBPVP8 ")},
        {"psd", "plain", start("3842505300010000000000000003")},
        {"psb", "large", start("3842505300020000000000000003")},
        {"heic", "telephone", brand("heic", "mif1")},
        {"avif", "picture", brand("avif", "mif1")},
        {"jp2", "boxed", start("0000000C6A5020200D0A870A0000001466747970")},
        {"j2k", "codestream", start("FF4FFF51002F0000")},
        {"jxl", "codestream", start("FF0A7A0F")},
        {"jxl", "boxed", start("0000000C4A584C200D0A870A")},
        {"cr2", "raw", start("49492A00100000004352020000000000")},
        {"cr3", "raw", brand("crx ", "crx ")},
        {"nef", "raw", start("4D4D002A00000008001A00FE00040000")},
        {"arw", "raw", start("49492A000800000012000301030001")},
        {"dng", "raw", start("49492A00080000002C00FE0004000100")},
        {"orf", "raw", start("4949524F08000000")},
        {"rw2", "raw", start("49495500180000008866")},
        {"raf", "raw", text("FUJIFILMCCD-RAW 0201FF")},
    };
}

std::vector<Head> designs() {
    return {
        {"svg", "with a comment", text("<?xml version=\"1.0\"?>\n<!-- made by hand -->\n<svg xmlns=")},
        {"svg", "bare", text("<svg width=\"10\" height=\"10\">")},
        {"eps", "plain", text("%!PS-Adobe-3.0 EPSF-3.0\n")},
        {"eps", "with preview", start("C5D0D3C61E000000")},
        {"pdf", "plain", text("%PDF-1.7\n")},
        {"pdf", "behind a printer line", {{0, "\x1B%-12345X\r\n%PDF-1.4\n"}}},
        {"emf", "plain", {{0, x("010000006C000000")}, {40, x("20454D4600000100")}}},
        {"wmf", "placeable", start("D7CDC69A00000000")},
        {"tga", "true colour", start("00000200000000000000000040014001")},
        {"pcx", "256 colours", start("0A05010800000000")},
        {"xcf", "plain", text("gimp xcf v011")},
        {"indd", "plain", start("0606EDF5D81D46E5BD31EFE7FE74B71D")},
        {"exr", "plain", start("762F310102000000")},
        {"icc", "plain", {{36, "acspMSFT"}}},
    };
}

std::vector<Head> filmAndSound() {
    return {
        {"mp4", "isom", brand("isom")},
        {"mp4", "mp42", brand("mp42")},
        {"mov", "with a type", brand("qt  ", "qt  ")},
        {"mov", "old, beginning with the film's head", {{0, x("0004A1B3") + "moov"}}},
        {"3gp", "telephone", brand("3gp5", "3gp4")},
        {"m4a", "sound", brand("M4A ")},
        {"avi", "plain", riff("AVI LIST")},
        {"wav", "plain", riff("WAVEfmt ")},
        {"wav", "with a padding chunk", riff("WAVEJUNK")},
        {"wmv", "plain", start(kAsf)},
        {"wma", "plain", start(kAsf)},
        {"mkv", "plain",
         start("1A45DFA3A342868101428288"
               "6D6174726F736B61")},
        {"webm", "plain", start("1A45DFA39F4286810142F7810142F2810442F381084282847765626D")},
        {"flv", "plain", start("464C5601050000000900")},
        {"mpg", "programme stream", start("000001BA44000400")},
        {"mpg", "video stream", start("000001B316012013")},
        {"m2ts", "camcorder", {{0, x("00000000474000100000")}, {192, x("0000000047410030")}}},
        {"rm", "plain", start("2E524D4600000012")},
        {"ogg", "vorbis", ogg(x("01") + "vorbis")},
        {"opus", "plain", ogg("OpusHead")},
        {"ogv", "theora", ogg(x("80") + "theora")},
        {"mp3", "tag", {{0, "ID3" + x("03000000")}}},
        {"mp3", "frame", start("FFFB9064000F")},
        {"mp3", "frame with a check sum", start("FFFA9040")},
        {"aac", "frame", start("FFF15080")},
        {"flac", "plain", {{0, "fLaC" + x("00000022")}}},
        {"ape", "plain", {{0, "MAC " + x("960F")}}},
        {"aiff", "plain", {{0, "FORM" + x("00012345") + "AIFFCOMM"}}},
        {"amr", "plain", text("#!AMR\n")},
        {"mid", "plain", {{0, "MThd" + x("00000006")}}},
        {"swf", "compressed", {{0, "CWS" + x("0A")}}},
        {"vob", "plain", start("000001BA44000401")},
        {"ifo", "plain", text("DVDVIDEO-VMG")},
        {"srt", "plain", text("1\r\n00:00:01,000 --> 00:00:02,000\r\n")},
    };
}

std::vector<Head> office() {
    return {
        {"doc", "compound", start(kCompound)},
        {"doc", "rich text", text("{\\rtf1\\ansi")},
        {"xls", "compound", start(kCompound)},
        {"ppt", "compound", start(kCompound)},
        {"msg", "compound", start(kCompound)},
        {"docx", "plain", officePackage()},
        {"docx", "of another program", zipOf("[Content_Types].xml")},
        {"docx", "parts in another order", zipOf("word/document.xml")},
        {"docx", "with a password", start(kCompound)},
        {"xlsx", "plain", officePackage()},
        {"xlsx", "of another program", zipOf("[Content_Types].xml")},
        {"xlsx", "parts in another order", zipOf("xl/workbook.xml")},
        {"pptx", "plain", officePackage()},
        {"odt", "plain", package("5EC6320C", "application/vnd.oasis.opendocument.text")},
        {"odt", "streamed", streamedPackage("application/vnd.oasis.opendocument.text")},
        {"odt", "with a deflated kind",
         package("5EC6320C", x("4B2C28C8C94C4E2CC9CCCFD32FCB4BD1CB4F2CCE2CD6CB2F48CD4BC94F2ECD4DCD2BD12B49AD280100"))},
        {"ods", "plain", package("856C398A", "application/vnd.oasis.opendocument.spreadsheet")},
        {"epub", "plain", package("6F61AB2C", "application/epub+zip")},
        {"epub", "streamed", streamedPackage("application/epub+zip")},
        {"rtf", "plain", text("{\\rtf1\\ansi\\ansicpg1252")},
        {"wpd", "plain", start("FF57504360050000")},
        {"pst", "plain", start("2142444E5B3F4A51534D")},
        {"dbx", "plain", start("CFAD12FEC5FD746F")},
        {"eml", "from a server", text("Return-Path: <a@example.org>\r\nReceived: from mail")},
        {"eml", "from a program", text("From: A <a@example.org>\r\nTo: B\r\nMIME-Version: 1.0\r\n")},
        {"mbox", "plain", text("From a@example.org Mon Jan  1 10:00:00 2024\n")},
        {"vcf", "plain", text("BEGIN:VCARD\r\nVERSION:3.0\r\n")},
        {"ics", "plain", text("BEGIN:VCALENDAR\r\n")},
        {"mdb", "plain", {{0, x("00010000") + "Standard Jet DB"}}},
        {"accdb", "plain", {{0, x("00010000") + "Standard ACE DB"}}},
        {"sqlite", "plain", {{0, "SQLite format 3" + x("00")}}},
        {"dbf",
         "plain",
         {{0, x("037C0510") + x("0A000000610020000000000000000000000000000000000000000000") + "NAME" +
                  x("00000000000000") + "C" + x("01000000")}}},
        {"kdbx", "plain", start("03D9A29A67FB4BB5")},
        {"one", "plain", start("E4525C7B8CD8A74DAEB15378D02996D3")},
        {"mobi", "plain", {{60, "BOOKMOBI"}}},
        {"qif", "plain", text("!Type:Bank\nD1/1'24\n")},
        {"pem", "plain", text("-----BEGIN CERTIFICATE-----\n")},
        {"p12", "plain", start("30820A3102010330820")},
    };
}

std::vector<Head> archives() {
    return {
        {"zip", "plain", zipOf("photo.jpg")},
        {"zip", "empty", start("504B0506000000000000")},
        {"jar", "plain", zipOf("META-INF/MANIFEST.MF")},
        {"apk", "plain", zipOf("AndroidManifest.xml")},
        {"7z", "plain", start("377ABCAF271C0004")},
        {"rar", "version 5", start("526172211A070100")},
        {"rar", "version 4", start("526172211A0700CF")},
        {"gz", "plain", start("1F8B080800000000")},
        {"bz2", "plain", {{0, "BZh9" + x("314159265359")}}},
        {"xz", "plain", start("FD377A585A000004")},
        {"tar", "GNU", {{257, "ustar  " + x("00")}}},
        {"tar", "POSIX", {{257, "ustar" + x("00") + "00"}}},
        {"cab", "plain", start("4D53434600000000")},
        {"vmdk", "sparse", {{0, "KDMV" + x("01000000")}}},
        {"vmdk", "descriptor", text("# Disk DescriptorFile\nversion=1\n")},
        {"vhd", "dynamic", text("conectix")},
        {"vhd", "fixed, beginning with a disk's first sector", {{510, x("55AA")}}},
        {"vdi", "plain", {{0, "<<< Oracle VM VirtualBox Disk Image >>>\n"}, {64, x("7F10DABE")}}},
        {"e01", "plain", start("455646090D0AFF0001")},
    };
}

std::vector<Head> programsAndPages() {
    return {
        {"exe", "plain", start(kProgram)},
        {"dll", "plain", start(kProgram)},
        {"so", "plain", start("7F454C4602010100")},
        {"class", "plain", start("CAFEBABE00000034")},
        {"lnk", "plain", start("4C0000000114020000000000C000000000000046")},
        {"reg", "UTF-16", {{0, x("FFFE") + wide("Windows Registry Editor Version 5.00")}}},
        {"evtx", "plain", {{0, "ElfFile" + x("00")}}},
        {"ttf", "plain", start("000100000012010000040020")},
        {"otf", "plain", text("OTTO")},
        {"woff2", "plain", text("wOF2")},
        {"html", "page", text("<!DOCTYPE html>\n<html lang=\"en\">\n")},
        {"html", "page without a declaration", text("\r\n\r\n<HTML>\r\n<HEAD>\r\n")},
        {"xml", "plain", text("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a/>")},
        {"php", "plain", text("<?php\nnamespace A;\n")},
        {"gpx", "plain", text("<?xml version=\"1.0\"?>\n<gpx version=\"1.1\">")},
        {"kml", "plain", text("<?xml version=\"1.0\"?>\n<kml xmlns=\"http://www.opengis.net/kml/2.2\">")},
        {"plist", "binary", text("bplist00")},
        {"plist", "XML", text("<?xml version=\"1.0\"?>\n<!DOCTYPE plist PUBLIC")},
    };
}

std::vector<Head> modelsAndData() {
    return {
        {"dwg", "2018", text("AC1032")},
        {"dwg", "2000", text("AC1015")},
        {"dxf", "text", text("  0\r\nSECTION\r\n  2\r\nHEADER\r\n")},
        {"step", "plain", text("ISO-10303-21;\nHEADER;\n")},
        {"skp", "plain", {{0, x("FFFEFF0E") + wide("SketchUp Model")}}},
        {"blend", "plain", text("BLENDER-v300")},
        {"sldprt", "compound", start(kCompound)},
        {"torrent", "plain", text("d8:announce35:http://tracker.example.org")},
        {"pcap", "plain", start("D4C3B2A102000400")},
        {"ab", "plain", text("ANDROID BACKUP\n5\n1\nnone\n")},
        {"dcm", "plain", {{128, "DICM"}}},
        {"fits", "plain", text("SIMPLE  =                    T")},
        {"hdf5", "plain", start("894844460D0A1A0A")},
        {"shp", "plain", start("0000270A0000000000000000")},
    };
}

Sample sampleOf(const Head& head) {
    Sample sample = headOf(head.extension, head.variant, {});
    for (const auto& piece : head.pieces) {
        auto bytes = piece.bytes;
        lowerPageInPlace(bytes);
        std::copy(bytes.begin(), bytes.end(), sample.folded.begin() + static_cast<std::ptrdiff_t>(piece.offset));
    }
    return sample;
}

}  // namespace

Sample headOf(const std::string& extension, const std::string& variant, const std::string& bytes) {
    Sample sample;
    sample.path = extension + " (" + variant + ")";
    sample.extension = extension;
    sample.trueSize = 4096;
    unsigned noise = 12345;
    for (char& c : sample.folded) {
        noise = noise * 1103515245U + 12345U;
        c = static_cast<char>((noise >> 16) & 0xFFU);
    }
    std::copy(bytes.begin(), bytes.end(), sample.folded.begin());
    foldHeader(sample.folded);
    return sample;
}

std::vector<Sample> healthyHeads() {
    std::vector<Sample> samples;
    for (const auto& heads :
         {pictures(), designs(), filmAndSound(), office(), archives(), programsAndPages(), modelsAndData()})
        std::transform(heads.begin(), heads.end(), std::back_inserter(samples), sampleOf);
    return samples;
}

}  // namespace quillon::test
