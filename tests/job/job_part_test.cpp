// SPDX-License-Identifier: MIT
#include "job/job_part.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace quillon::test {

namespace {

TEST(JobPart, EveryFolderBelongsToOnePart) {
    for (const std::int64_t of : {1, 2, 3, 16, 1000}) {
        for (int folder = 0; folder < 300; ++folder) {
            const std::string path = folder == 0 ? "" : fmt::format("some/folder {}/\xff", folder);
            int owners = 0;
            for (std::int64_t number = 1; number <= of; ++number) owners += JobPart{number, of, {}}.has(path) ? 1 : 0;
            EXPECT_EQ(owners, 1) << path << " of " << of;
        }
    }
}

// A list that one computer makes today has to fit that of another next year.
TEST(JobPart, TheSharesAreTheSameForEver) {
    std::string owners;
    for (const char* path : {"", "a", "a/b", "DCIM/100", "\xc3\xa9", "\xff", "new\nline", "Documents and Settings/x"}) {
        for (std::int64_t number = 1; number <= 16; ++number) {
            if (JobPart{number, 16, {}}.has(path))
                owners += fmt::format("{} ", number);
        }
    }
    EXPECT_EQ(owners, "13 15 6 6 5 6 8 1 ");
}

TEST(JobPart, FoldersFallEvenly) {
    std::vector<int> folders(8);
    for (int folder = 0; folder < 8000; ++folder) {
        for (std::int64_t number = 1; number <= 8; ++number)
            folders[static_cast<std::size_t>(number - 1)] +=
                JobPart{number, 8, {}}.has(fmt::format("d{}", folder)) ? 1 : 0;
    }
    for (const int count : folders) EXPECT_NEAR(count, 1000, 150);
}

TEST(JobPart, OwnFoldersGoByThePathBelowTheSource) {
    for (const char* source : {"/mnt/source", "/mnt/source/", "/"}) {
        const std::string prefix = std::string(source).ends_with('/') ? source : std::string(source) + "/";
        const JobPart part{2, 3, {}};
        const OwnFolders folders(source, part);
        EXPECT_EQ(folders.hold(prefix), part.has(""));
        for (const char* path : {"a", "a/b", "x y/z"}) EXPECT_EQ(folders.hold(prefix + path + "/"), part.has(path));
    }
    EXPECT_TRUE(OwnFolders("/mnt", std::nullopt).hold("/mnt/a/"));
}

TEST(JobPart, APartIsListedBehindTheSeparator) {
    const auto part = partOf("1234", "3/16");
    ASSERT_TRUE(part);
    EXPECT_EQ(idOfPart(*part, "-"), "1234-Part 3");
    EXPECT_EQ(partText(*part), "3/16");
}

}  // namespace

}  // namespace quillon::test
