// SPDX-License-Identifier: MIT
#include "testing/grade.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

namespace quillon::test {

namespace {

TEST(GradeTest, NamesForEvidenceAndScriptsAreThese) {
    const ByGrade<std::string> expected{{"good", "corrupt", "no-extension", "unknown", "encrypted", "access-error",
                                         "too-small", "zero-bytes", "invalid-name", "common-header"}};
    for (const GradeRow& row : kGrades.values) EXPECT_EQ(row.name.value, expected[row.grade]);
}

TEST(GradeTest, WhatTellsGradesApartIsGivenOnce) {
    std::set<std::string> texts;
    std::set<std::uint32_t> colours;
    for (const GradeRow& row : kGrades.values) {
        for (const char* text : {row.board.captionControl.value, row.board.countControl.value, row.board.caption.value})
            EXPECT_TRUE(texts.insert(text).second) << text;
        EXPECT_TRUE(texts.insert(std::string("key ") + row.jsonKey.value).second) << row.jsonKey;
        EXPECT_TRUE(texts.insert(std::string("name ") + row.name.value).second) << row.name;
        EXPECT_TRUE(texts.insert(std::string("part ") + row.bar.name.value).second) << row.bar.name;
        EXPECT_TRUE(colours.insert(row.bar.colour).second) << row.name;
    }
}

}  // namespace

}  // namespace quillon::test
