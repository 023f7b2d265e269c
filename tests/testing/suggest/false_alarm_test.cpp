// SPDX-License-Identifier: MIT
#include "testing/suggest/false_alarm.h"

#include <gtest/gtest.h>

using namespace quillon;

namespace {

HeaderBytes head(std::string_view bytes) {
    HeaderBytes all{};
    std::ranges::copy(bytes, all.begin());
    foldHeader(all);
    return all;
}

HeaderTerm term(const char* offset, const char* text, const char* type = "T") {
    return {{offset}, {text}, {type}};
}

// Two good docx, one good zip, one bad zip, one good jpg.
BenchHeads bench() {
    BenchHeads all;
    all.extensions = {"docx", "zip", "jpg"};
    all.jobs = {"1"};
    const auto add = [&](std::string_view bytes, std::uint32_t extension, bool good) {
        all.heads.push_back(head(bytes));
        all.kinds.push_back({extension, 0, good});
    };
    add("PK\x03\x04word", 0, true);
    add("PK\x03\x04word2", 0, true);
    add("PK\x03\x04x", 1, true);
    add("PK\x03\x04", 1, false);
    add("\xFF\xD8PK", 2, true);
    return all;
}

TEST(FalseAlarm, ATermAnywhereIsFoundAtBothEndsAndAmongBytesOfItsOwn) {
    BenchHeads all;
    all.extensions = {"docx"};
    all.jobs = {"1"};
    const std::string zeros(kHeaderBytes - 4, '\0');
    for (const std::string& bytes :
         {zeros + std::string("\0\0AB", 4), std::string("\0\0AB", 4) + zeros, std::string("AB"),
          std::string("xx\0\0A\0\0ABx", 10), zeros + "ABAB", zeros + std::string("x\0\0A", 4)}) {
        all.heads.push_back(head(bytes.substr(0, kHeaderBytes)));
        all.kinds.push_back({0, 0, true});
    }
    EXPECT_EQ(judgeTerm(term("0", "00004142", "H"), "zip", all, {}, {}, -1).hits, 4U);
    EXPECT_EQ(judgeTerm(term("0", "4142", "H"), "zip", all, {}, {}, -1).hits, 5U);
    EXPECT_EQ(judgeTerm(term("0", "414243", "H"), "zip", all, {}, {}, -1).hits, 0U);
}

TEST(FalseAlarm, CountsGoodFilesOfOtherExtensions) {
    const auto alarm = judgeTerm(term("1", "504B0304", "H"), "zip", bench(), {head("pk\x03\x04"), head("abc")}, {}, -1);
    EXPECT_EQ(alarm.length, 4U);
    EXPECT_EQ(alarm.hits, 2U);
    EXPECT_EQ(alarm.good, 3U) << "neither the zip files nor the bad ones";
    EXPECT_EQ(alarm.kinds, "2 docx");
    EXPECT_EQ(alarm.listedHits, 1U) << "letters fold";
    EXPECT_EQ(alarm.listed, 2U);
    EXPECT_TRUE(alarm.warnings.empty());
    EXPECT_EQ(falseAlarmText(alarm), "4 bytes; 1 of 2 listed files; 2 of 3 good files of other extensions: 2 docx");
}

TEST(FalseAlarm, WithoutAnExtensionEveryGoodFileCounts) {
    EXPECT_EQ(judgeTerm(term("1", "PK"), "", bench(), {}, {}, -1).good, 4U);
}

TEST(FalseAlarm, WarnsWithTheReason) {
    const std::vector<HeaderTerm> rows{term("1", "504B", "H"), term("0", "word"), term("9", "abcd")};
    struct Case {
        HeaderTerm term;
        int ownRow;
        std::vector<std::string> warnings;
    };
    const Case cases[] = {
        {term("5", "ab"), -1, {"Too short: other files have it by chance"}},
        {term("5", "abc"), -1, {}},
        {term("0", "abcde"), -1, {"Too short to stand anywhere: other files have it by chance"}},
        {term("0", "abcdef"), -1, {}},
        {term("5", "00000000", "H"), -1, {"One byte again and again: fills and empty places look like it"}},
        {term("1", "504B0304", "H"), -1, {"Already covered by 1, 504B"}},
        {term("1", "504B0304", "H"), 0, {}},
        {term("3", "a WORD here"), -1, {"Already covered by 0, word"}},
        {term("8", "xabcd"), -1, {"Already covered by 9, abcd"}},
        {term("9", "abcd"), -1, {"It is there already: 9, abcd"}},
        {term("9", "abcd"), 2, {}},
        {term("9", "abc"), -1, {}},
    };
    for (const auto& one : cases)
        EXPECT_EQ(judgeTerm(one.term, "x", {}, {}, rows, one.ownRow).warnings, one.warnings)
            << one.term.offset.bytes << " " << one.term.term.bytes;
}

TEST(FalseAlarm, NoTermIsNothingToTell) {
    EXPECT_EQ(falseAlarmText(judgeTerm(term("1", ""), "x", bench(), {}, {}, -1)), "");
}

TEST(FalseAlarm, TellsThatNothingIsKnown) {
    EXPECT_EQ(falseAlarmText(judgeTerm(term("1", "ab"), "x", {}, {}, {}, -1)),
              "Too short: other files have it by chance. 2 bytes; no good files of other extensions are known");
}

}  // namespace
