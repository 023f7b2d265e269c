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

TEST(JsonTextTest, BytesThatAreNoTextBecomeTheReplacement) {
    EXPECT_EQ(jsonText({{"a", "\xFF"}}), "{\n  \"a\": \"\xEF\xBF\xBD\"\n}");
    EXPECT_EQ(jsonText(nlohmann::ordered_json::array()), "[]");
}

}  // namespace

}  // namespace quillon::test
