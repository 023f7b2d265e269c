// SPDX-License-Identifier: MIT
#include "text/json_text.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace quillon::test {

namespace {

TEST(JsonTextTest, WhatHidesOrTurnsTextIsAnEscapeAndReadsAsItself) {
    const nlohmann::ordered_json json = {{"name", "invoice\u202Efdp.exe"}, {"line\u2028", "caf\u00E9 \U000E0041"}};
    const std::string text = jsonText(json, -1);
    EXPECT_EQ(text, R"({"name":"invoice\u202efdp.exe","line\u2028":"café \udb40\udc41"})");
    EXPECT_EQ(nlohmann::ordered_json::parse(text), json);
}

// A terminal takes U+009B for the beginning of a command.
TEST(JsonTextTest, ControlCharactersAreEscapesAndReadAsThemselves) {
    const nlohmann::ordered_json json = {{"a\x1B\x7F", "\u0080\u009B2J\u009F\u00A0"}};
    const std::string text = jsonText(json, -1);
    EXPECT_EQ(text, "{\"a\\u001b\\u007f\":\"\\u0080\\u009b2J\\u009f\u00A0\"}");
    EXPECT_EQ(nlohmann::ordered_json::parse(text), json);
    EXPECT_EQ(jsonText("\x7F"), "\"\\u007f\"");
}

TEST(JsonTextTest, BytesThatAreNoTextBecomeTheReplacement) {
    EXPECT_EQ(jsonText({{"a", "\xFF"}}), "{\n  \"a\": \"\xEF\xBF\xBD\"\n}");
    EXPECT_EQ(jsonText(nlohmann::ordered_json::array()), "[]");
}

}  // namespace

}  // namespace quillon::test
