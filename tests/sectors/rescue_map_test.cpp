// SPDX-License-Identifier: MIT
#include "sectors/rescue_map.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace quillon {
namespace {

constexpr const char* kMap =
    "# Mapfile. Created by GNU ddrescue version 1.27\n"
    "# Command line: ddrescue -d /dev/sdc image mapfile\n"
    "# current_pos  current_status  current_pass\n"
    "0x00001000     ?               1\n"
    "#      pos        size  status\n"
    "0x00000000  0x00001000  +\n"
    "0x00001000  0x00000200  -\n"
    "0x00001200  0x00000200  /\n"
    "0x00001400  0x00000C00  *\n"
    "0x00002000  0x00001000  +\n"
    "0x00003000  0x00001000  ?\n";

TEST(RescueMapTest, FourStatesAreMissingAndOneIsNot) {
    const auto map = parseRescueMap(kMap);
    ASSERT_TRUE(map) << map.error().text;
    EXPECT_EQ(map->missing, (ByteRanges{{0x1000, 0x2000}, {0x3000, 0x4000}}));
    EXPECT_EQ(map->end, 0x4000U);
}

TEST(RescueMapTest, NumbersAreDecimalHexadecimalOrOctal) {
    const auto map = parseRescueMap("0 +\n0 01000 +\n512\t0x200 -\r\n1024 6000000000000 +  # read\n");
    ASSERT_TRUE(map) << map.error().text;
    EXPECT_EQ(map->missing, (ByteRanges{{512, 1024}}));
    EXPECT_EQ(map->end, 6'000'000'001'024U);
}

TEST(RescueMapTest, WhatNoLineSpeaksOfWasNotTried) {
    const auto map = parseRescueMap("0 F\n0x100 0x100 +\n0x300 0x100 +");
    ASSERT_TRUE(map) << map.error().text;
    EXPECT_EQ(map->missing, (ByteRanges{{0, 0x100}, {0x200, 0x300}}));
}

TEST(RescueMapTest, WhatIsNoMapIsRefusedWithItsLine) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "no area"},
        {"# only remarks\n", "no area"},
        {"0 +\n", "no area"},
        {"0 x\n0 512 +\n", "line 1"},
        {"0 +\n0 512\n", "line 2"},
        {"0 +\n0 512 +-\n", "line 2"},
        {"0 +\n0 512 F\n", "line 2"},
        {"0 +\n0 512 +\n\n256 512 -\n", "line 4"},
        {"0 +\n-1 512 +\n", "line 2"},
        {"0 +\n09 512 +\n", "line 2"},
        {"0 +\n0x 512 +\n", "line 2"},
        {"0 +\n0 0x8000000000000000 +\n", "line 2"},
        {"0 +\n0x7FFFFFFFFFFFFFFF 1 +\n", "line 2"},
        {"0 +\n99999999999999999999 1 +\n", "line 2"},
        {"PK\x03\x04", "line 1"},
    };
    for (const auto& [text, told] : cases) {
        const auto map = parseRescueMap(text);
        ASSERT_FALSE(map) << text;
        EXPECT_EQ(map.error().kind, ErrorKind::InvalidArgument) << text;
        EXPECT_NE(map.error().text.find(told), std::string::npos) << text << ": " << map.error().text;
    }
}

TEST(RescueMapTest, AMapOfAMillionLinesIsTakenWhole) {
    std::string text = "0 +\n";
    for (std::uint64_t i = 0; i < 1'000'000; ++i)
        text += fmt::format("0x{:08X}  0x00000200  {}\n", i * 512, i % 2 == 0 ? '+' : '-');
    const test::TempFolder folder;
    const auto map = readRescueMap(folder.write("map", text));
    ASSERT_TRUE(map) << map.error().text;
    EXPECT_EQ(map->missing.size(), 500'000U);
    EXPECT_EQ(bytesIn(map->missing), 256'000'000U);
}

TEST(RescueMapTest, AFailureNamesTheFile) {
    const test::TempFolder folder;
    const auto map = readRescueMap(folder.write("map", "none"));
    ASSERT_FALSE(map);
    EXPECT_NE(map.error().text.find((folder / "map").native()), std::string::npos);
    EXPECT_EQ(readRescueMap(folder / "gone").error().kind, ErrorKind::NotFound);
}

TEST(RescueMapTest, ADomainIsRoundedOutToSectorsAndHasNoGap) {
    const std::string text = domainMap({{0x1001, 0x1200}, {0x1FFF, 0x2000}, {0x8000, 0x8100}}, 0x8180, 0x1000);
    EXPECT_NE(text.find("0x00000000     +               1\n"), std::string::npos) << text;
    EXPECT_NE(text.find("0x00000000  0x00001000  ?\n"
                        "0x00001000  0x00001000  +\n"
                        "0x00002000  0x00006000  ?\n"
                        "0x00008000  0x00000180  +\n"),
              std::string::npos)
        << text;
    const auto map = parseRescueMap(text);
    ASSERT_TRUE(map);
    EXPECT_EQ(map->end, 0x8180U);
    EXPECT_EQ(map->missing, (ByteRanges{{0, 0x1000}, {0x2000, 0x8000}}));
}

TEST(RescueMapTest, ADomainOfNothingWantsNothing) {
    const auto map = parseRescueMap(domainMap({}, 0x8000, 512));
    ASSERT_TRUE(map);
    EXPECT_EQ(map->missing, (ByteRanges{{0, 0x8000}}));
}

TEST(RescueMapTest, AFailureNamesAFileThatTurnsTextAsItIs) {
    const test::TempFolder folder;
    const auto map =
        readRescueMap(folder.write("a\xE2\x80\xAE"
                                   "b.map",
                                   "no map"));
    ASSERT_FALSE(map);
    EXPECT_NE(map.error().text.find("/a<U+202E>b.map: "), std::string::npos) << map.error().text;
}

}  // namespace
}  // namespace quillon
