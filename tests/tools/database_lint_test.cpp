// SPDX-License-Identifier: MIT
#include "dbcheck/database_lint.h"

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace quillon {
namespace {

using test::TempFolder;

Problems lintOf(const TempFolder& folder) {
    const auto database = readHeaderDatabase(folder.path());
    EXPECT_TRUE(database) << (database ? "" : database.error().text);
    return database ? lintDatabase(folder.path(), *database) : Problems{};
}

TEST(DatabaseLint, AFolderWithTermFilesAloneIsClean) {
    TempFolder folder;
    folder.write("Database/png.dat", "1,89504E47,H\r\n");
    EXPECT_EQ(lintOf(folder), Problems{});
}

TEST(DatabaseLint, NamesOfTermFilesAreExtensionsInLowerCase) {
    TempFolder folder;
    folder.write("Database/PNG.dat", "1,89504E47,H\r\n");
    folder.write("Database/notes.txt", "1,89504E47,H\r\n");
    const Problems expected{{"Database/PNG.dat", 0, "the name is not in lower case"},
                            {"Database/notes.txt", 0, "the name is not an extension and .dat"}};
    EXPECT_EQ(lintOf(folder), expected);
}

TEST(DatabaseLint, ProblemsNameFileAndLine) {
    TempFolder folder;
    folder.write("Database/png.dat", "1,89504E47,H\r\n1,89504E47,H\r\n");
    folder.write("Settings/CommonHeaders.dat", "1,89504E47,H\r\n");
    const Problems expected{{"Database/png.dat", 2, "the same record stands in line 1"},
                            {"Settings/CommonHeaders.dat", 1, "3 fields instead of 4"}};
    EXPECT_EQ(lintOf(folder), expected);
}

TEST(DatabaseLint, EachBadSectorMarkerMarksAndHasAName) {
    TempFolder folder;
    folder.write("Database/png.dat", "1,89504E47,H\r\n");
    folder.write("Settings/BadSectors.dat", "0,BAD SECTOR,T,R,words\r\n1,BAD,T,O,short\r\n0,F6,H,R,\r\n");
    const Problems expected{{"Settings/BadSectors.dat", 2, "the line marks nothing"},
                            {"Settings/BadSectors.dat", 3, "the marker has no name"}};
    EXPECT_EQ(lintOf(folder), expected);
}

TEST(DatabaseLint, SkipTermsAreLowerCaseTextWithClosedBrackets) {
    struct Case {
        const char* line;
        const char* problem;
    };
    const Case cases[] = {
        {"\\Thumbs.db", "the pattern is not in lower case"},
        {"\\a[b", "a bracket is open: no pattern from here on is compared"},
        {"*", "the pattern holds hardly any text and fits nearly every path"},
        {"\\a", "the pattern holds hardly any text and fits nearly every path"},
        {"\\cache, old\\", "a comma of a path is compared as >"},
    };
    for (const auto& one : cases) {
        Problems problems;
        lintSkipList("s", std::string(one.line) + "\r\n", problems);
        ASSERT_EQ(problems.size(), 1U) << one.line;
        EXPECT_EQ(problems[0].text, one.problem);
    }
    Problems none;
    lintSkipList("s", "\\thumbs.db\r\n\\$recycle.bin\\*\\$i\r\n", none);
    EXPECT_TRUE(none.empty());
}

TEST(DatabaseLint, ThereAreTenReportMessages) {
    Problems problems;
    lintReportMessages("e", "1\r\n2\r\n3\r\n4\r\n5\r\n6\r\n7\r\n8\r\n9\r\n", problems);
    ASSERT_EQ(problems.size(), 1U);
    EXPECT_EQ(problems[0].text, "9 lines instead of 10");
}

TEST(DatabaseLint, FamiliesAndKindsNameExtensionsThatHaveATermFile) {
    TempFolder folder;
    folder.write("Database/png.dat", "1,89504E47,H\r\n");
    folder.write("Database/gif.dat", "1,GIF8,T\r\n");
    folder.write("families.tsv",
                 "family\treason\textensions\talso accepts\nPNG\tone format\tpng apng\tmng\nx\t\tgif\t\n");
    folder.write("extensions.tsv", "extension\tkind\npng\tPNG picture\nbmp\tbitmap\n");
    const Problems expected{{"families.tsv", 2, "apng has no term file"},
                            {"families.tsv", 3, "a family has a name and a reason"},
                            {"extensions.tsv", 0, "bmp has no term file"},
                            {"extensions.tsv", 0, "gif is not named"}};
    EXPECT_EQ(lintOf(folder), expected);
}

// A term at any place also fits a file that was put together wrongly.
TEST(DatabaseLint, EveryExtensionWithRecordsAtPosition0HasAReason) {
    TempFolder folder;
    folder.write("Database/png.dat", "1,89504E47,H\r\n");
    folder.write("Database/svg.dat", "1,<?xml,T\r\n0,<svg,T\r\n");
    folder.write("Database/eml.dat", "0,Received:,T\r\n");
    folder.write("Settings/CommonHeaders.dat", "0,<html,T,HTML page\r\n");
    EXPECT_EQ(lintOf(folder), Problems{}) << "without a table nobody asks";
    folder.write("anywhere.tsv", "reason\textensions\ncomments of any length may stand first\tsvg png\n\teml\n");
    const Problems expected{{"anywhere.tsv", 2, "png has no record at position 0"},
                            {"anywhere.tsv", 3, "there is no reason"},
                            {"anywhere.tsv", 0, "no reason why CommonHeaders has records at position 0"}};
    EXPECT_EQ(lintOf(folder), expected);
    folder.write("anywhere.tsv", "reason\textensions\ncomments of any length may stand first\tsvg eml CommonHeaders\n");
    EXPECT_EQ(lintOf(folder), Problems{});
}

}  // namespace
}  // namespace quillon
