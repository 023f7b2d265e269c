// SPDX-License-Identifier: MIT
#include "text/check_sum_line.h"

#include <gtest/gtest.h>

namespace quillon {
namespace {

const std::string kDigest(64, 'a');

TEST(CheckSumLine, OddNamesAreWrittenAsSha256sumWritesThem) {
    const std::pair<std::string, std::string> cases[] = {
        {"a b.txt", kDigest + "  a b.txt\n"},
        {"new\nline", "\\" + kDigest + "  new\\nline\n"},
        {"back\\slash", "\\" + kDigest + "  back\\\\slash\n"},
        {"cr\r", "\\" + kDigest + "  cr\\r\n"},
        {" blank ", kDigest + "   blank \n"},
        {"\xFF\xFE*", kDigest + "  \xFF\xFE*\n"},
        {"-", kDigest + "  ./-\n"},
    };
    for (const auto& [name, line] : cases) {
        EXPECT_EQ(checkSumLine(kDigest, name), line) << name;
        const auto read = readCheckSumLine(line.substr(0, line.size() - 1));
        ASSERT_TRUE(read) << name;
        EXPECT_EQ(read->digest, kDigest) << name;
        EXPECT_EQ(read->name, name == "-" ? "./-" : name) << name;
    }
}

TEST(CheckSumLine, TheBinaryMarkAndCapitalsAreRead) {
    EXPECT_EQ(readCheckSumLine(std::string(64, 'A') + " *a"), (CheckSum{kDigest, "a"}));
}

TEST(CheckSumLine, WhatIsNoCheckSumIsNone) {
    for (const std::string& line :
         {std::string(), std::string("# remark"), kDigest, kDigest + "  ", kDigest + " a", std::string(64, 'g') + "  a",
          "\\" + kDigest + "  a\\x", "\\" + kDigest + "  a\\", kDigest.substr(1) + "  a", " " + kDigest + "  a"})
        EXPECT_EQ(readCheckSumLine(line), std::nullopt) << line;
}

}  // namespace
}  // namespace quillon
