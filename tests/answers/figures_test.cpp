// SPDX-License-Identifier: MIT
#include "answers/figures.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "answers/figures_text.h"

namespace quillon::test {

namespace {

Figures sample() {
    Figures figures;
    count(figures, {Grade::Good, {}, 3000, false}, 3);
    count(figures, {Grade::Good, {}, 1000, true});
    count(figures, {Grade::CommonHeader, Reason::OtherFormat, 500, false});
    count(figures, {Grade::Corrupt, Reason::ZeroFilled, 700, false});
    count(figures, {Grade::Unknown, {}, 50, false});
    count(figures, {{}, {}, 9, false});
    return figures;
}

TEST(FiguresTest, EachFileCountsOnceUnderItsGrade) {
    const Figures figures = sample();
    EXPECT_EQ(figures.files, 8);
    EXPECT_EQ(figures.bytes, 5259);
    EXPECT_EQ(figures.grades[Grade::Good], 4);
    EXPECT_EQ(figures.notTested, 1);
    EXPECT_EQ(figures.doubtful, 1);
    EXPECT_EQ(figures.reasons[static_cast<std::size_t>(Reason::ZeroFilled)], 1);
}

TEST(FiguresTest, SumsAreTheSums) {
    Figures twice = sample();
    twice += sample();
    EXPECT_EQ(twice.files, 16);
    EXPECT_EQ(twice.bytes, 2 * 5259);
    EXPECT_EQ(twice.grades[Grade::Good], 8);
    EXPECT_EQ(twice.doubtful, 2);
}

TEST(FiguresTest, QualityIsGoodAndCommonOfWhatCouldBeJudged) {
    EXPECT_EQ(judged(sample()), 6);
    EXPECT_DOUBLE_EQ(quality(sample()).value(), 5.0 / 6.0);
    EXPECT_FALSE(quality(Figures{})) << "nothing was judged";
}

TEST(FiguresTest, WholeAreTheRecoveredOnesThatHoldNoUnreadSectorsAsFarAsKnown) {
    Figures figures = sample();
    EXPECT_FALSE(wholeQuality(figures)) << "no file was looked at";
    countSectors(figures, Grade::Good, 3, 1, 188 * 1024);
    EXPECT_DOUBLE_EQ(wholeQuality(figures).value(), 4.0 / 6.0);
    countSectors(figures, Grade::Corrupt, 1, 1, 1024);
    EXPECT_DOUBLE_EQ(wholeQuality(figures).value(), 4.0 / 6.0) << "it was not among the recovered ones";
    EXPECT_DOUBLE_EQ(quality(figures).value(), 5.0 / 6.0) << "the quality stays";
    EXPECT_EQ(unreadSectorsText(figures), "2 files of 4 hold unread sectors, 189.0 Kb in all");
    Figures twice = figures;
    twice += figures;
    EXPECT_EQ(twice.hurt, 4);
    EXPECT_EQ(twice.hurtRecovered, 2);
    EXPECT_EQ(twice.unreadBytes, 2 * 189 * 1024);
}

TEST(FiguresTextTest, UnreadSectorsAreToldWhereFilesWereLookedAt) {
    Figures figures = sample();
    EXPECT_EQ(summaryText(figures, true, TerminalColours::None).find("Whole"), std::string::npos);
    EXPECT_TRUE(nlohmann::json::parse(summaryJson(figures, true))["whole"].is_null());
    countSectors(figures, Grade::Good, 3, 1, 512);
    EXPECT_NE(
        summaryText(figures, true, TerminalColours::None)
            .find("Whole    66.67% good and whole as far as known: 1 file of 3 holds unread sectors, 512 Bytes in "
                  "all\n"),
        std::string::npos)
        << summaryText(figures, true, TerminalColours::None);
    const auto json = nlohmann::json::parse(summaryJson(figures, true));
    EXPECT_EQ(json["whole"], 66.67);
    EXPECT_EQ(json["sectors-known"], 3);
    EXPECT_EQ(json["unread-sector-files"], 1);
    EXPECT_EQ(json["unread-sector-bytes"], 512);
}

TEST(FiguresTextTest, JsonHasANumberForEachGradeAndReason) {
    const auto json = nlohmann::json::parse(summaryJson(sample(), true));
    EXPECT_EQ(json["files"], 8);
    EXPECT_EQ(json["bytes"], 5259);
    EXPECT_DOUBLE_EQ(json["quality"], 83.33);
    for (const auto& row : kGrades.values) EXPECT_TRUE(json[row.name.value].is_number()) << row.name.value;
    for (const auto& row : kReasons) EXPECT_TRUE(json[row.name].is_number()) << row.name;
    EXPECT_EQ(json["common-header"], 1);
    EXPECT_EQ(json["zero-filled"], 1);
    EXPECT_EQ(nlohmann::json::parse(summaryJson({}, true))["quality"], nullptr);
}

TEST(FiguresTextTest, ATableIsAListOfObjects) {
    const auto json = nlohmann::json::parse(tableJson("folder", {{"", sample()}, {"bad\xFF", sample()}}));
    ASSERT_EQ(json.size(), 2U);
    EXPECT_EQ(json[0]["folder"], "");
    EXPECT_EQ(json[1]["folder"], "bad\\xFF");
    EXPECT_EQ(json[1]["good"], 4);
}

TEST(FiguresTextTest, TheSummaryNeverTellsTheQualityWithoutItsBase) {
    const auto text = summaryText(sample(), true, TerminalColours::None);
    EXPECT_NE(text.find("83.33% of the 6 files that could be judged; 2 could not"), text.npos) << text;
    EXPECT_NE(text.find("4, 1 of them doubtful"), text.npos) << text;
    EXPECT_EQ(text.find('\x1b'), text.npos) << "colours were not asked for";
    EXPECT_NE(summaryText(sample(), true, TerminalColours::Some).find("\x1b[42m"), text.npos);
    EXPECT_NE(summaryText(sample(), false, TerminalColours::None).find("Reasons  unknown"), text.npos);
}

TEST(FiguresTextTest, TheRowsOfATableStandBelowEachOther) {
    const auto text =
        tableText("extension", {{"jpg", sample()}, {"a long extension", sample()}}, TerminalColours::None);
    const auto line = [&](int number) {
        std::size_t from = 0;
        for (; number > 0; --number) from = text.find('\n', from) + 1;
        return text.substr(from, text.find('\n', from) - from);
    };
    EXPECT_EQ(line(1).find("83.33%"), line(2).find("83.33%"));
    EXPECT_EQ(line(1).size(), line(2).size());
    EXPECT_EQ(tableText("x", {{"new\nline", {}}}, TerminalColours::None).find("new\nline"), std::string::npos);
}

}  // namespace

}  // namespace quillon::test
