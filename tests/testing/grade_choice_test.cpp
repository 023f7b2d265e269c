// SPDX-License-Identifier: MIT
#include "testing/grade_choice.h"

#include <gtest/gtest.h>

namespace quillon::test {

TEST(GradeChoiceTest, NamesComeBackAndUnknownOnesArePassedOver) {
    const std::vector<Grade> grades = {Grade::Good, Grade::CommonHeader};
    EXPECT_EQ(namesOfGrades(grades), "good,common-header");
    EXPECT_EQ(gradesNamed("good,common-header"), grades);
    EXPECT_EQ(gradesNamed("good,,splendid,common-header"), grades);
    EXPECT_EQ(namesOfGrades({}), "");
    EXPECT_TRUE(gradesNamed("").empty());
}

TEST(GradeChoiceTest, TicksStandInTheOrderOfTheScoreBoardAndAllOfThemAreNoChoice) {
    EXPECT_EQ(ticksOf({}), std::vector<bool>(kGradeCount, true));
    EXPECT_TRUE(gradesOfTicks(ticksOf({})).empty());
    const std::vector<Grade> grades = {Grade::CommonHeader, Grade::Corrupt};
    EXPECT_EQ(gradesOfTicks(ticksOf(grades)), grades);
    EXPECT_EQ(ticksOf(grades)[1], true);
}

TEST(GradeChoiceTest, TheCountIsTold) {
    EXPECT_EQ(countOfGrades({}), "all");
    EXPECT_EQ(countOfGrades({Grade::Good, Grade::Corrupt, Grade::Unknown}), "3 of 10");
}

}  // namespace quillon::test
