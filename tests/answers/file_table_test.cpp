// SPDX-License-Identifier: MIT
#include "answers/file_table.h"

#include <gtest/gtest.h>

namespace quillon::test {
namespace {

EvidenceRow row(const std::string& name, std::int64_t id, const std::string& extension = "jpg") {
    EvidenceRow file;
    file.id = id;
    file.name = name;
    file.extension = extension;
    file.size = 10 * id;
    return file;
}

TEST(FileTableTest, AFileIsFoundByFolderAndName) {
    FileTable files;
    files.put("a", row("x.jpg", 1));
    files.put("b", row("x.jpg", 2, "gif"));
    files.put("", row("x.jpg", 3));
    ASSERT_EQ(files.size(), 3U);
    EXPECT_EQ(files.find("b", "x.jpg"), 1U);
    EXPECT_EQ(files.path(1), "b/x.jpg");
    EXPECT_EQ(files.extension(1), "gif");
    EXPECT_EQ(files.path(*files.find("", "x.jpg")), "x.jpg");
    EXPECT_EQ(files.find("c", "x.jpg"), std::nullopt);
    EXPECT_EQ(files.find("a", "y.jpg"), std::nullopt);
    EXPECT_EQ(FileTable().find("a", "x.jpg"), std::nullopt);
}

TEST(FileTableTest, OfOnePathTheLastFileCounts) {
    FileTable files;
    files.put("a", row("x", 1));
    EXPECT_EQ(files.put("a", row("x", 2)), 0U);
    ASSERT_EQ(files.size(), 1U);
    EXPECT_EQ(files[0].id, 2);
    EXPECT_EQ(files[0].size, 20);
}

TEST(FileTableTest, ManyFilesAreAllFoundAgain) {
    FileTable files;
    constexpr std::int64_t kFiles = 20'000;
    for (std::int64_t i = 0; i < kFiles; ++i) files.put("f" + std::to_string(i % 70), row(std::to_string(i), i));
    ASSERT_EQ(files.size(), static_cast<std::size_t>(kFiles));
    for (std::int64_t i = 0; i < kFiles; ++i) {
        const auto found = files.find("f" + std::to_string(i % 70), std::to_string(i));
        ASSERT_TRUE(found) << i;
        EXPECT_EQ(files[*found].id, i);
    }
}

}  // namespace
}  // namespace quillon::test
