// SPDX-License-Identifier: MIT
// Numbers as text: the forms of screens and files, and the lenient readings.
#include "text/numbers.h"

#include <array>
#include <limits>
#include <utility>

#include <gtest/gtest.h>

namespace quillon {
namespace {

constexpr auto kLeast = std::numeric_limits<std::int32_t>::min();
constexpr auto kMost = std::numeric_limits<std::int32_t>::max();

TEST(Numbers, APlainNumberHasABlankAheadUnlessItIsNegative) {
    EXPECT_EQ(plainNumber(1234), " 1234");
    EXPECT_EQ(plainNumber(0), " 0");
    EXPECT_EQ(plainNumber(-5), "-5");
    EXPECT_EQ(plainNumber(std::numeric_limits<std::int64_t>::max()), " 9223372036854775807");
    EXPECT_EQ(plainNumber(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
}

TEST(Numbers, APlainNumberIsAppendedToARow) {
    std::u16string row = u"a.txt,15/11/2026,";
    appendPlainNumber(row, 1234);
    row += u",";
    appendPlainNumber(row, 0);
    appendPlainNumber(row, std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(row, u"a.txt,15/11/2026, 1234, 0 18446744073709551615");
}

TEST(Numbers, CountsAreGroupedByThrees) {
    const std::array<std::pair<std::int64_t, const char*>, 11> table = {{
        {0, "0"},
        {7, "7"},
        {999, "999"},
        {1000, "1,000"},
        {12345, "12,345"},
        {999999, "999,999"},
        {1000000, "1,000,000"},
        {1234567, "1,234,567"},
        {-999, "-999"},
        {-1000, "-1,000"},
        {std::numeric_limits<std::int64_t>::min(), "-9,223,372,036,854,775,808"},
    }};
    for (const auto& [number, text] : table) EXPECT_EQ(grouped(number), text);
}

TEST(Numbers, OneDecimalIsGroupedAndRounded) {
    const std::array<std::pair<double, const char*>, 9> table = {{
        {0.0, "0.0"},
        {1234.56, "1,234.6"},
        {999.94, "999.9"},
        {999.95, "1,000.0"},
        {9.96, "10.0"},
        {1234567.0, "1,234,567.0"},
        {-1234.56, "-1,234.6"},
        {1.25, "1.3"},
        {1.35, "1.4"},
    }};
    for (const auto& [number, text] : table) EXPECT_EQ(groupedOneDecimal(number), text) << number;
}

TEST(Numbers, APercentageIsTheFractionTimesAHundred) {
    const std::array<std::pair<double, const char*>, 11> table = {{
        {0.75, "75.00%"},
        {15.0 / 25.0, "60.00%"},
        {0.0, "0.00%"},
        {1.0, "100.00%"},
        {2.0 / 3.0, "66.67%"},
        {1.0 / 3.0, "33.33%"},
        {0.99999, "100.00%"},
        {12.5, "1250.00%"},
        {1.0 / 32.0, "3.13%"},  // 3.125: a half goes up, as in every number pattern
        {0.00125, "0.13%"},
        {0.00005, "0.01%"},
    }};
    for (const auto& [fraction, text] : table) EXPECT_EQ(percent(fraction), text) << fraction;
}

TEST(Numbers, SizesChangeTheirUnitJustAboveEachBoundary) {
    constexpr std::uint64_t kilo = 1024;
    constexpr std::uint64_t mega = kilo * kilo;
    constexpr std::uint64_t giga = mega * kilo;
    constexpr std::uint64_t tera = giga * kilo;
    const std::array<std::pair<std::uint64_t, const char*>, 16> table = {{
        {0, "0 Bytes"},
        {1, "1 Bytes"},
        {999, "999 Bytes"},
        {kilo, "1,024 Bytes"},
        {kilo + 1, "1.0 Kb"},
        {1280, "1.3 Kb"},
        {1536, "1.5 Kb"},
        {mega, "1,024.0 Kb"},
        {mega + 1, "1.0 Mb"},
        {giga, "1,024.0 Mb"},
        {giga + 1, "1.0 Gb"},
        {tera, "1,024.0 Gb"},
        {tera + 1, "1.0 Tb"},
        {tera * 3 / 2, "1.5 Tb"},
        {tera * 2048, "2,048.0 Tb"},
        {std::numeric_limits<std::uint64_t>::max(), "16,777,216.0 Tb"},
    }};
    for (const auto& [bytes, text] : table) EXPECT_EQ(sizeText(bytes), text) << bytes;
}

TEST(Numbers, WhatIsNotFiniteShowsAsZero) {
    EXPECT_EQ(groupedOneDecimal(std::numeric_limits<double>::infinity()), "0.0");
    EXPECT_EQ(percent(std::numeric_limits<double>::quiet_NaN()), "0.00%");
}

TEST(Numbers, AHalfIsThatOfTheDecimalNumber) {
    EXPECT_EQ(percent(0.00285), "0.29%");  // no double is 0.285: the nearest one lies a little below
    EXPECT_EQ(groupedOneDecimal(0.35), "0.4");
    EXPECT_EQ(groupedOneDecimal(-0.04), "0.0");
}

struct Reading {
    const char* text;
    double value;
};

constexpr std::array<Reading, 31> kReadings = {{
    {"", 0},
    {" ", 0},
    {"0", 0},
    {" 0", 0},
    {" 1234", 1234},
    {" 32;Ab9x", 32},
    {" 12;x", 12},
    {"12,5", 12},
    {"12abc", 12},
    {"abc", 0},
    {"-3", -3},
    {" - 3", -3},
    {"+7", 7},
    {"1 234", 1234},
    {"12 ;", 12},
    {"3.75", 3.75},
    {".5", 0.5},
    {"-.5x", -0.5},
    {"1.2.3", 1.2},
    {"1e3", 1000},
    {"1E+2", 100},
    {"25e-2", 0.25},
    {"1e", 1},
    {"1e+", 1},
    {"e5", 0},
    {"-", 0},
    {"+-5", 0},
    {".", 0},
    {"--5", 0},
    {"12345678901234567", 12345678901234567.0},
    {"18446744073709551615", 18446744073709551615.0},
}};

TEST(Numbers, ANumericPrefixEndsAtTheFirstCharacterThatCannotContinueIt) {
    for (const auto& [text, value] : kReadings) {
        EXPECT_DOUBLE_EQ(numericPrefix(std::string_view(text)), value) << '"' << text << '"';
        const std::string narrow = text;
        const std::u16string wide(narrow.begin(), narrow.end());
        EXPECT_DOUBLE_EQ(numericPrefix(std::u16string_view(wide)), value) << '"' << text << '"';
    }
}

TEST(Numbers, ADigitOfAnotherScriptEndsANumber) {
    EXPECT_EQ(numericPrefix(std::u16string_view(u"12\u0663")), 12);
    EXPECT_EQ(numericPrefix(std::string_view("12\xB2")), 12);
}

TEST(Numbers, ANumberTooLargeIsLargeAndNotZero) {
    EXPECT_GT(numericPrefix(std::string_view("1e400")), 1e300);
    EXPECT_LT(numericPrefix(std::string_view("-1e400")), -1e300);
    EXPECT_EQ(numericPrefix(std::string_view("1e-400")), 0);
    EXPECT_EQ(roundedNumber(numericPrefix(std::string_view("1e400"))), kMost);
}

TEST(Numbers, ATextBoxIsReadByItsLeadingDigits) {
    const std::array<std::pair<const char*, std::int32_t>, 11> table = {{
        {"3000", 3000},
        {" 3000 rows", 3000},
        {"3.9", 3},
        {"-2.7", -2},
        {"abc", 0},
        {"", 0},
        {"2147483647", kMost},
        {"2147483648", kMost},
        {"99999999999999999999", kMost},
        {"-2147483648", kLeast},
        {"-99999999999", kLeast},
    }};
    for (const auto& [text, value] : table) EXPECT_EQ(leadingNumber(text), value) << '"' << text << '"';
}

TEST(Numbers, HalvesRoundToTheEvenNumber) {
    const std::array<std::pair<double, std::int32_t>, 12> table = {{
        {0.5, 0},
        {1.5, 2},
        {2.5, 2},
        {3.5, 4},
        {-0.5, 0},
        {-1.5, -2},
        {-2.5, -2},
        {2.4999, 2},
        {2.5001, 3},
        {2147483646.5, 2147483646},
        {1e30, kMost},
        {-1e30, kLeast},
    }};
    for (const auto& [number, rounded] : table) EXPECT_EQ(roundedNumber(number), rounded) << number;
    EXPECT_EQ(roundedNumber(std::numeric_limits<double>::quiet_NaN()), 0);
    EXPECT_EQ(roundedNumber(std::numeric_limits<double>::infinity()), kMost);
}

}  // namespace
}  // namespace quillon
