// SPDX-License-Identifier: MIT
#include "job/check_sum_file.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "support/failing_files.h"
#include "support/posix_files.h"
#include "support/temp_folder.h"

namespace quillon {
namespace {

using test::TempFolder;

Sha256Digest digestOf(std::string_view bytes) {
    Sha256 hash;
    hash.add(bytes);
    return hash.finish();
}

std::string lineOf(const std::string& name, std::string_view bytes) {
    return checkSumLine(hexText(digestOf(bytes)), name);
}

class CheckSumFileTest : public testing::Test {
protected:
    [[nodiscard]] NativePath path() const { return temp / "1.sha256"; }
    // A list that takes over "b", and "a" for which nothing is told any more.
    [[nodiscard]] bool write() const {
        auto file = CheckSumFile::begin({path()});
        if (!file)
            return false;
        file->drop("a");
        return file->add("b", digestOf("new")).and_then([&] { return file->finish(); }).has_value();
    }

    TempFolder temp;
};

TEST_F(CheckSumFileTest, LinesOfFilesThatNobodyCopiedNowStay) {
    temp.write("1.sha256", "# remark\n" + lineOf("a", "1") + lineOf("b", "old") + lineOf("odd\nname", "3"));
    ASSERT_TRUE(write());
    EXPECT_EQ(temp.read("1.sha256"), lineOf("b", "new") + lineOf("odd\nname", "3"));
}

TEST_F(CheckSumFileTest, AListWithoutALineGoes) {
    temp.write("1.sha256", lineOf("a", "1"));
    auto file = CheckSumFile::begin({path()});
    ASSERT_TRUE(file);
    file->drop("a");
    ASSERT_TRUE(file->finish());
    EXPECT_FALSE(std::filesystem::exists(path()));
}

TEST_F(CheckSumFileTest, OneThatIsLetGoLeavesTheOlderOne) {
    temp.write("1.sha256", lineOf("a", "1"));
    {
        auto file = CheckSumFile::begin({path()});
        ASSERT_TRUE(file && file->add("b", digestOf("2")));
    }
    EXPECT_EQ(temp.read("1.sha256"), lineOf("a", "1"));
    EXPECT_EQ(test::namesIn(temp.path()), "1.sha256");
}

TEST_F(CheckSumFileTest, OnADiskThatFailsTheOldListOrTheNewOneStands) {
    const std::string old = lineOf("a", "1") + lineOf("b", "old");
    const auto stands = [this](const std::string& bytes) { return temp.read("1.sha256") == bytes; };
    test::disturbEveryCall({.name = "check sums",
                            .prepare =
                                [&] {
                                    for (const auto& entry : std::filesystem::directory_iterator(temp.path()))
                                        std::filesystem::remove(entry.path());
                                    temp.write("1.sha256", old);
                                },
                            .run = [this] { return write(); },
                            .isOld = [&] { return stands(old); },
                            .isNew = [&] { return stands(lineOf("b", "new")); },
                            .leftover =
                                [this] {
                                    const auto names = test::namesIn(temp.path());
                                    return names == "1.sha256" ? std::string() : names;
                                }});
}

TEST_F(CheckSumFileTest, WhatIsNoListIsAFailureAndStays) {
    const std::string noise(200'000, 'x');
    temp.write("1.sha256", noise);
    EXPECT_FALSE(write());
    EXPECT_EQ(temp.read("1.sha256"), noise);
}

TEST_F(CheckSumFileTest, LinesOfAnyLengthAndALastOneWithoutItsEndAreRead) {
    std::string text;
    for (int i = 0; i < 3000; ++i) text += lineOf(std::string(static_cast<std::size_t>(i % 200) + 1, 'n'), "x");
    text.pop_back();
    temp.write("1.sha256", text + "\nnonsense\n" + lineOf("last", "y"));
    auto reader = CheckSumReader::open(path());
    ASSERT_TRUE(reader);
    int lines = 0;
    std::string last;
    while (true) {
        const auto sum = reader->next();
        ASSERT_TRUE(sum);
        if (!*sum)
            break;
        ++lines;
        last = (*sum)->name;
    }
    EXPECT_EQ(lines, 3001);
    EXPECT_EQ(last, "last");
    EXPECT_EQ(reader->unread(), 1);
}

}  // namespace
}  // namespace quillon
