// SPDX-License-Identifier: MIT
#include "dbcheck/samples.h"

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace quillon {
namespace {

using test::TempFolder;

TEST(Samples, HeadsAreFoldedAndPaddedWithBlanks) {
    TempFolder folder;
    folder.write("png/A.PNG", "\x89PNG");
    folder.write("index.tsv", "path\text\ttrue_size\tsource\npng/A.PNG\tPNG\t4096\tmade\n");
    const auto samples = readSamples(folder.path(), "index.tsv");
    ASSERT_TRUE(samples) << samples.error().text;
    ASSERT_EQ(samples->size(), 1U);
    const auto& sample = samples->front();
    EXPECT_EQ(sample.extension, "png");
    EXPECT_EQ(sample.trueSize, 4096U);
    EXPECT_EQ(std::string(sample.folded.data(), 6), "\x89png  ");
    EXPECT_EQ(sample.folded.back(), ' ');
}

TEST(Samples, FilesBelow512BytesAreTooSmall) {
    Sample sample;
    sample.trueSize = 511;
    EXPECT_TRUE(isTooSmall(sample));
    sample.trueSize = 512;
    EXPECT_FALSE(isTooSmall(sample));
}

TEST(Samples, WhatCannotBeReadIsAFailure) {
    TempFolder folder;
    EXPECT_FALSE(readSamples(folder.path(), "index.tsv"));
    folder.write("index.tsv", "path\text\ttrue_size\na.png\tpng\tbig\n");
    EXPECT_FALSE(readSamples(folder.path(), "index.tsv"));
    folder.write("index.tsv", "path\text\ttrue_size\na.png\tpng\t600\n");
    EXPECT_FALSE(readSamples(folder.path(), "index.tsv")) << "the head itself is missing";
    folder.write("index.tsv", "path\text\na.png\tpng\n");
    EXPECT_FALSE(readSamples(folder.path(), "index.tsv")) << "no column of sizes";
}

}  // namespace
}  // namespace quillon
