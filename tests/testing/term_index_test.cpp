// SPDX-License-Identifier: MIT
#include "testing/term_index.h"

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace quillon::test {

namespace {

CompiledTerm term(const std::string& line) {
    return CompiledTerm::fromTermFileLine(line);
}

HeaderBytes headOf(std::string_view bytes) {
    HeaderBytes head;
    head.fill(' ');
    std::copy_n(bytes.begin(), std::min(bytes.size(), head.size()), head.begin());
    foldHeader(head);
    return head;
}

TEST(TermIndexTest, OnlyLongTermsOfDifferentBytesTell) {
    EXPECT_TRUE(isTelling(term("1,25504446,H")));
    EXPECT_FALSE(isTelling(term("1,FFD8FF,H"))) << "three bytes";
    EXPECT_FALSE(isTelling(term("1,00000000,H"))) << "of one byte";
    EXPECT_FALSE(isTelling(term("1,4D4D004D,H"))) << "of two different bytes";
    EXPECT_FALSE(isTelling(term("0,%PDF-1.,T"))) << "anywhere, seven bytes";
    EXPECT_TRUE(isTelling(term("0,%PDF-1.4,T")));
    EXPECT_FALSE(isTelling(term("510,abcd,T"))) << "does not fit";
    EXPECT_FALSE(isTelling(term("")));
}

TEST(TermIndexTest, TheLongestTermThatFitsGivesTheExtensions) {
    TermIndex index;
    index.add("zip", {term("1,504B0304,H")});
    index.add("docx", {term("1,504B03041400,H"), term("31,[Content,T")});
    index.add("xlsx", {term("31,[Content,T")});
    const auto match =
        index.find(headOf(std::string("PK\3\4\x14\0", 6) + std::string(24, 'x') + "[Content_Types].xml"));
    EXPECT_EQ(match.length, 8U);
    EXPECT_EQ(match.extensions, (std::vector<std::string>{"docx", "xlsx"}));
    EXPECT_EQ(index.find(headOf("PK\3\4x")).extensions, std::vector<std::string>{"zip"});
    EXPECT_EQ(index.find(headOf("nothing")).length, 0U);
}

TEST(TermIndexTest, ATermThatMayStandAnywhereIsFoundAnywhere) {
    TermIndex index;
    index.add("mkv", {term("0,matroska,T")});
    EXPECT_EQ(index.find(headOf("xxxMATROSKAyyy")).extensions, std::vector<std::string>{"mkv"});
    EXPECT_EQ(index.find(headOf(std::string(504, 'x') + "matroska")).extensions, std::vector<std::string>{"mkv"});
    EXPECT_EQ(index.find(headOf(std::string(505, 'x') + "matrosk")).length, 0U);
}

TEST(TermIndexTest, AFolderGivesTheTermsOfItsFiles) {
    const TempFolder folder;
    folder.write("pdf.dat", "1,25504446,H\r\n");
    folder.write("RTF.DAT", "1,{\\rtf,T\r\n");
    folder.write("notes.txt", "1,abcdefgh,T\r\n");
    const auto index = TermIndex::ofFolder(folder.path());
    EXPECT_EQ(index.size(), 2U);
    EXPECT_EQ(index.find(headOf("%PDF-1.7")).extensions, std::vector<std::string>{"pdf"});
    EXPECT_EQ(index.find(headOf("{\\rtf1")).extensions, std::vector<std::string>{"rtf"})
        << "extensions are lower-cased";
    EXPECT_EQ(TermIndex::ofFolder(folder / "none").size(), 0U);
}

}  // namespace

}  // namespace quillon::test
