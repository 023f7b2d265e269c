// SPDX-License-Identifier: MIT
#include "answers/forget_evidence.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace quillon::test {

namespace {

TEST(ForgetEvidenceTest, EveryCopyGoesAndTheListsStay) {
    const TempFolder folder;
    for (const char* moment : {"Kept/2026-01-01 10.00.00", "Kept/2026-01-02 10.00.00"})
        std::filesystem::create_directories(folder / moment);
    for (const char* name : {"1234.csv", "1234.sqlite", "1234.sqlite-journal", "12345.sqlite",
                             "Kept/2026-01-01 10.00.00/1234.sqlite", "Kept/2026-01-01 10.00.00/1234.sqlite (2)",
                             "Kept/2026-01-01 10.00.00/1234.csv", "Kept/2026-01-02 10.00.00/12345.sqlite"})
        folder.write(name, "x");
    const auto removed = forgetEvidence(folder.path(), findJob(folder.path(), "1234").value());
    ASSERT_TRUE(removed);
    EXPECT_EQ(*removed, 4U);
    for (const char* name :
         {"1234.csv", "12345.sqlite", "Kept/2026-01-01 10.00.00/1234.csv", "Kept/2026-01-02 10.00.00/12345.sqlite"})
        EXPECT_TRUE(std::filesystem::exists(folder / name)) << name;
    EXPECT_FALSE(std::filesystem::exists(folder / "1234.sqlite"));
    EXPECT_EQ(forgetEvidence(folder.path(), {"1234", {}, {}}).value(), 0U);
}

TEST(ForgetEvidenceTest, WhatAJobThatGoesOnHasSetAsideGoesToo) {
    const TempFolder folder;
    for (const char* name : {"1234.csv", "1234.sqlite", "1234.sqlite-earlier", "1234.earlier.sqlite"})
        folder.write(name, "x");
    EXPECT_EQ(forgetEvidence(folder.path(), findJob(folder.path(), "1234").value()).value(), 2U);
    EXPECT_FALSE(std::filesystem::exists(folder / "1234.sqlite-earlier"));
    EXPECT_TRUE(std::filesystem::exists(folder / "1234.earlier.sqlite")) << "that of another job";
}

}  // namespace

}  // namespace quillon::test
