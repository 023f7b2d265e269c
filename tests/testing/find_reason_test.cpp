// SPDX-License-Identifier: MIT
#include "testing/find_reason.h"

#include <gtest/gtest.h>

#include <random>

namespace quillon::test {

namespace {

class ReasonTest : public testing::Test {
protected:
    ReasonTest() {
        index.add("pdf", {CompiledTerm::fromTermFileLine("1,25504446,H")});
        index.add("png", png);
        for (const char* extension : {"a", "b", "c", "d", "e", "f", "g", "h"})
            index.add(extension, {CompiledTerm::fromTermFileLine("1,FAMILY,T")});
        common.assign({"1,5A4F4F20,H, Zoo archive", "1,00000000000000000000000000000000,H, Zeros"});
    }

    [[nodiscard]] FoundReason of(std::string_view bytes, const std::vector<CompiledTerm>* own) const {
        return findReason(bytes, markers, own, common, index);
    }
    [[nodiscard]] FoundReason ofPng(std::string_view bytes) const { return of(bytes, &png); }

    static std::string padded(std::string bytes) {
        std::mt19937 random(7);
        while (bytes.size() < kHeaderBytes) bytes.push_back(static_cast<char>(random() % 5));
        return bytes;
    }

    const std::string pngMark = "\x89PNG\r\n\x1A\n";
    std::vector<CompiledTerm> png{CompiledTerm::fromTermFileLine("1,89504E470D0A1A0A,H")};
    SectorMarkers markers;
    CommonList common;
    TermIndex index;
};

TEST_F(ReasonTest, ZerosAlone) {
    EXPECT_EQ(ofPng(std::string(512, '\0')), (FoundReason{Reason::ZeroFilled, ""}));
}

TEST_F(ReasonTest, AMarkerComesBeforeAllOtherReasons) {
    markers.assign({"0,BAD SECTOR,T,R,words", "1,MARK,T,O,mark"});
    std::string filled;
    while (filled.size() < 512) filled += "BAD SECTOR";
    EXPECT_EQ(ofPng(filled), (FoundReason{Reason::BadSector, "words"}));
    EXPECT_EQ(ofPng(padded("MARK" + pngMark)), (FoundReason{Reason::BadSector, "mark"}));
    EXPECT_EQ(ofPng(std::string(512, '\xF6')), (FoundReason{Reason::Fill, "F6"}));
}

TEST_F(ReasonTest, AFillTellsItsPattern) {
    EXPECT_EQ(ofPng(std::string(512, '\xF6')), (FoundReason{Reason::Fill, "F6"}));
    std::string marker;
    while (marker.size() < 512) marker += "BAD SECTOR";
    marker.resize(512);
    EXPECT_EQ(ofPng(marker), (FoundReason{Reason::Fill, "\"BAD SECTOR\""}));
    std::string lines;
    while (lines.size() < 512) lines += "BAD SECTOR\r\n";
    lines.resize(512);
    EXPECT_EQ(ofPng(lines), (FoundReason{Reason::Fill, "\"BAD SECTOR\""}));
    EXPECT_EQ(ofPng(std::string(512, ' ')), (FoundReason{Reason::Fill, "20"})) << "a blank alone reads as nothing";
}

TEST_F(ReasonTest, LeadingZerosTellWhereTheDataBegins) {
    EXPECT_EQ(ofPng(padded(std::string(16, '\0') + "DATA")),
              (FoundReason{Reason::LeadingZeros, "data from position 17"}));
    EXPECT_EQ(ofPng(padded(std::string(15, '\0') + "DATA")).reason, Reason::Structured);
    EXPECT_EQ(ofPng(std::string(511, '\0') + "x"), (FoundReason{Reason::LeadingZeros, "data from position 512"}));
    EXPECT_EQ(ofPng(padded(std::string(16, '\0') + pngMark)).reason, Reason::LeadingZeros) << "comes before shifted";
}

TEST_F(ReasonTest, AShiftedHeaderTellsByHowMuch) {
    EXPECT_EQ(ofPng(padded(std::string(100, 'x') + pngMark)),
              (FoundReason{Reason::Shifted, "its header stands 100 bytes too late"}));
    const std::vector<CompiledTerm> tar{CompiledTerm::fromTermFileLine("258,ustar,T")};
    EXPECT_EQ(of(padded(std::string(100, 'x') + "ustar"), &tar),
              (FoundReason{Reason::Shifted, "its header stands 157 bytes too early"}));
    const std::vector<CompiledTerm> exe{CompiledTerm::fromTermFileLine("1,MZ,T")};
    EXPECT_NE(of(padded("xxMZ"), &exe).reason, Reason::Shifted) << "two bytes stand somewhere in any data";
}

TEST_F(ReasonTest, AShiftComesBeforeAnotherFormat) {
    EXPECT_EQ(ofPng(padded("%PDF-1.4" + pngMark)).reason, Reason::Shifted);
}

TEST_F(ReasonTest, AnotherFormatIsNamed) {
    EXPECT_EQ(ofPng(padded("%PDF-1.4")), (FoundReason{Reason::OtherFormat, "as of pdf"}));
    EXPECT_EQ(ofPng(padded("ZOO 2.10")), (FoundReason{Reason::OtherFormat, "Zoo archive"}));
    EXPECT_EQ(ofPng(padded("family")), (FoundReason{Reason::OtherFormat, "as of a, b, c, d, e, f and 2 more"}));
    EXPECT_EQ(of(padded("%PDF-1.4"), nullptr).reason, Reason::OtherFormat) << "an extension without a term file";
}

TEST_F(ReasonTest, ACommonHeaderNamesItsFormatHoweverShortItIs) {
    common.assign({"1,FFD8FF,H, JPEG picture"});
    EXPECT_EQ(ofPng(padded("\xFF\xD8\xFF\xE0")), (FoundReason{Reason::OtherFormat, "JPEG picture"}));
}

TEST_F(ReasonTest, TextTellsItsEncoding) {
    EXPECT_EQ(ofPng("<html><body>404 Not Found</body></html>\r\n"), (FoundReason{Reason::Text, "ASCII"}));
}

TEST_F(ReasonTest, NoiseAndStructureAreWhatIsLeft) {
    std::mt19937 random(9);
    std::string noise(512, '\0');
    for (char& c : noise) c = static_cast<char>(random() & 0xFFU);
    EXPECT_EQ(ofPng(noise).reason, Reason::Noise);
    EXPECT_EQ(ofPng(padded("")).reason, Reason::Structured);
    EXPECT_EQ(ofPng("").reason, Reason::Structured) << "nothing could be read";
}

TEST(ReasonTableTest, EachReasonHasItsRow) {
    for (std::size_t i = 0; i < kReasonCount; ++i) EXPECT_EQ(kReasons[i].reason, static_cast<Reason>(i));
    EXPECT_STREQ(reasonRow(Reason::OtherFormat).name, "other-format");
}

}  // namespace

}  // namespace quillon::test
