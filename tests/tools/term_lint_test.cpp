// SPDX-License-Identifier: MIT
#include "dbcheck/term_lint.h"

#include <gtest/gtest.h>

namespace quillon {
namespace {

Problems lintOf(std::string_view bytes, std::size_t fieldCount = 3) {
    Problems problems;
    lintTerms("Database/x.dat", bytes, fieldCount, problems);
    return problems;
}

// The text of the one problem; what else there is shows in its place.
std::string onlyProblem(std::string_view bytes, std::size_t fieldCount = 3) {
    const auto problems = lintOf(bytes, fieldCount);
    if (problems.size() == 1)
        return std::to_string(problems[0].line) + ": " + problems[0].text;
    std::string all = std::to_string(problems.size()) + " problems";
    for (const auto& problem : problems) all += "; " + problem.text;
    return all;
}

TEST(TermLint, RecordsAsTheEditorsWriteThemAreClean) {
    EXPECT_TRUE(lintOf("1,89504E47,H\r\n0,%PDF-,T\r\n511,55AA,H\r\n").empty());
}

TEST(TermLint, CommonHeadersHaveAFourthField) {
    EXPECT_TRUE(lintOf("1,89504E47,H,PNG picture\r\n", 4).empty());
    EXPECT_EQ(onlyProblem("1,89504E47,H\r\n", 4), "1: 3 fields instead of 4");
    EXPECT_EQ(onlyProblem("1,89504E47,H, PNG\r\n", 4), "1: the name of the file type is empty or has blanks around it");
}

TEST(TermLint, EachSlipIsFoundOnce) {
    struct Case {
        const char* bytes;
        const char* problem;
    };
    const Case cases[] = {
        {"", "0: the file has no records"},
        {"1,4D5A,H\n", "1: the line does not end in carriage return and line feed"},
        {"1,4D5A,H", "1: the line does not end in carriage return and line feed"},
        {"1,4D5A,H\r\n\r\n", "2: the line is empty"},
        {"\xEF\xBB\xBF"
         "1,4D5A,H\r\n",
         "2 problems; a byte-order mark stands at the start; "
         "the offset is not a whole number from 0 to 512"},
        {"1,4D5A\r\n", "1: 2 fields instead of 3"},
        {"1,a,b,T\r\n", "1: 4 fields instead of 3"},
        {"x,4D5A,H\r\n", "1: the offset is not a whole number from 0 to 512"},
        {" 1,4D5A,H\r\n", "1: the offset is not a whole number from 0 to 512"},
        {"01,4D5A,H\r\n", "1: the offset is not a whole number from 0 to 512"},
        {"-1,4D5A,H\r\n", "1: the offset is not a whole number from 0 to 512"},
        {"513,4D5A,H\r\n", "1: the offset is not a whole number from 0 to 512"},
        {"1,4D5A,h\r\n", "1: the type is neither H nor T"},
        {"1,4D5A, H\r\n", "1: the type is neither H nor T"},
        {"1,,T\r\n", "1: the term is empty and fits every file"},
        {"1,4d5a,H\r\n", "1: a hexadecimal term holds the digits 0-9 and A-F in upper case, and nothing else"},
        {"1,4D 5A,H\r\n", "1: a hexadecimal term holds the digits 0-9 and A-F in upper case, and nothing else"},
        {"1,4D5,H\r\n", "1: a hexadecimal term has its digits in pairs"},
        {"1,RIFF ,T\r\n", "1: blanks at the end of a text term are lost in an editor: give it in hexadecimal"},
        {"1,a\tb,T\r\n", "1: a text term holds a control character"},
        {"1,4D,H\r\n", "1: the term has 1 bytes, at least 2 tell"},
        {"0,abc,T\r\n", "1: the term has 3 bytes, at least 4 tell"},
        {"1,00000000,H\r\n", "1: the term is all 00, as an empty sector is"},
        {"7,FFFF,H\r\n", "1: the term is all FF, as an empty sector is"},
        {"512,4D5A,H\r\n", "1: the term reaches beyond the first 512 bytes and never fits"},
    };
    for (const auto& one : cases) EXPECT_EQ(onlyProblem(one.bytes), one.problem) << one.bytes;
}

TEST(TermLint, ADuplicateIsFoundWhateverItsWriting) {
    EXPECT_EQ(onlyProblem("1,4D5A,H\r\n1,mz,T\r\n"), "2: the same record stands in line 1");
}

TEST(TermLint, ARecordBehindAMoreGeneralOneIsNeverReached) {
    const char* const hidden[] = {
        "1,GIF8,T\r\n1,GIF89a,T\r\n",     // a longer term at the same place
        "0,<svg,T\r\n1,<svg ns,T\r\n",    // anywhere holds for a fixed place too
        "0,<svg,T\r\n0,x<svg,T\r\n",      // and for a longer term anywhere
        "5,ftyp,T\r\n3,xxftypisom,T\r\n"  // a piece of a term that begins earlier
    };
    for (const char* const bytes : hidden)
        EXPECT_EQ(onlyProblem(bytes), "2: never reached: line 1 fits whatever this one fits") << bytes;
}

TEST(TermLint, ASpecificRecordMayStandBeforeAGeneralOne) {
    EXPECT_TRUE(lintOf("1,GIF89a,T\r\n1,GIF8,T\r\n1,<svg,T\r\n0,<svg,T\r\n").empty());
}

TEST(TermLint, RecordsAtOtherPlacesDoNotCoverEachOther) {
    EXPECT_TRUE(lintOf("5,ftyp,T\r\n9,ftyp,T\r\n1,xxxftyp,T\r\n").empty());
}

}  // namespace
}  // namespace quillon
