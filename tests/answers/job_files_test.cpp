// SPDX-License-Identifier: MIT
#include "answers/job_files.h"

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace quillon::test {

namespace {

class JobFilesTest : public testing::Test {
protected:
    JobFilesTest() {
        for (const char* name : {"1234.csv", "1234.sqlite", "1234-Partition 1.csv", "12345.csv", "1234-.csv",
                                 "1234x.csv", "other.sqlite", "notes.txt"})
            folder.write(name, "x");
    }
    [[nodiscard]] NativePath at(const char* name) const { return folder / name; }
    TempFolder folder;
};

TEST_F(JobFilesTest, AnIdNamesListAndEvidenceOfTheFolder) {
    const auto job = findJob(folder.path(), "1234");
    ASSERT_TRUE(job);
    EXPECT_EQ(job->id, "1234");
    EXPECT_EQ(job->list, at("1234.csv"));
    EXPECT_EQ(job->evidence, at("1234.sqlite"));
    EXPECT_TRUE(findJob(folder.path(), "12345")->evidence.empty()) << "an old list";
    EXPECT_TRUE(findJob(folder.path(), "other")->list.empty());
}

TEST_F(JobFilesTest, APathOfEitherNamesBoth) {
    const auto byList = findJob({}, at("1234.csv").native());
    ASSERT_TRUE(byList);
    EXPECT_EQ(byList->evidence, at("1234.sqlite"));
    EXPECT_EQ(findJob({}, at("1234.sqlite").native())->list, at("1234.csv"));
}

TEST_F(JobFilesTest, WhatIsNotThereIsTold) {
    for (const auto& name : {std::string("99"), at("99.csv").native(), at("notes.txt").native(), std::string()}) {
        const auto job = findJob(folder.path(), name);
        ASSERT_FALSE(job) << name;
        EXPECT_EQ(job.error().kind, ErrorKind::NotFound);
    }
}

TEST_F(JobFilesTest, ACaseIsItsIdAloneOrWithTheSeparatorBehindIt) {
    const auto jobs = findCase(folder.path(), "-", "1234");
    ASSERT_TRUE(jobs);
    ASSERT_EQ(jobs->size(), 2U);
    EXPECT_EQ((*jobs)[0].id, "1234");
    EXPECT_EQ((*jobs)[1].id, "1234-Partition 1");
    EXPECT_FALSE(findCase(folder.path(), "-", "123"));
}

TEST_F(JobFilesTest, AJobBelongsToTheCasesThatItsIdBeginsWith) {
    for (const char* name : {"9.csv", "9-a.csv", "9-a-1.csv", "9-a-2.sqlite", "9-b.csv", "8-a-1.csv", "8-a-2.csv"})
        folder.write(name, "x");
    const auto told = [this](const char* id) {
        std::vector<std::string> all;
        for (const auto& found : casesOf(folder.path(), "-", id))
            all.push_back(found.id + " " + std::to_string(found.jobs.size()));
        return all;
    };
    using Cases = std::vector<std::string>;
    EXPECT_EQ(told("9-a-1"), (Cases{"9-a 3", "9 5"}));
    EXPECT_EQ(told("9"), Cases{"9 5"});
    EXPECT_EQ(told("8-a-2"), Cases{"8-a 2"}) << "8 has the same jobs";
    EXPECT_EQ(told("12345"), Cases{}) << "it is alone";
    EXPECT_EQ(told("1234-Partition 1"), Cases{"1234 2"});
}

}  // namespace

}  // namespace quillon::test
