// SPDX-License-Identifier: MIT
#include "programs/message_stream.h"

#include <vector>

#include <gtest/gtest.h>

namespace quillon::test {

namespace {

TEST(MessageStreamTest, WritesWholeLinesAndWhatIsFlushed) {
    std::vector<std::string> writes;
    MessageStream stream([&writes](std::string_view text) {
        writes.emplace_back(text);
        return true;
    });
    stream << "a " << 1 << '\n' << "question: " << std::flush << "end\n";
    EXPECT_EQ(writes, (std::vector<std::string>{"a 1\n", "question: ", "end\n"}));
    EXPECT_EQ(stream.lost(), 0);
}

TEST(MessageStreamTest, WhatCannotBeWrittenIsCountedAndTheNextLineIsTriedAgain) {
    bool works = false;
    std::string written;
    MessageStream stream([&](std::string_view text) {
        written += works ? text : "";
        return works;
    });
    stream << "one\n"
           << "two\n";
    works = true;
    stream << "three\n";
    EXPECT_TRUE(stream);
    EXPECT_EQ(written, "three\n");
    EXPECT_EQ(stream.lost(), 2);
}

}  // namespace

}  // namespace quillon::test
