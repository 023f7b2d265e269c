// SPDX-License-Identifier: MIT
// Questions on single paths, and where a path leads.
#include "platform/folders.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace quillon {
namespace {

using test::TempFolder;

TEST(FoldersTest, OnlyAFileOfBytesIsRegularAlsoBehindALink) {
    const TempFolder temp;
    const auto file = temp.write("file", "1");
    ASSERT_TRUE(createLink(file, temp / "link"));
    ASSERT_TRUE(createLink(temp / "none", temp / "broken"));
    EXPECT_TRUE(isRegularFile(file));
    EXPECT_TRUE(isRegularFile(temp / "link"));
    for (const NativePath& other : {temp.path(), temp / "none", temp / "broken", NativePath("/dev/null"), NativePath()})
        EXPECT_FALSE(isRegularFile(other)) << other;
}

TEST(FoldersTest, ALinkIsOneWhetherItLeadsAnywhereOrNot) {
    const TempFolder temp;
    const auto file = temp.write("file", "1");
    ASSERT_TRUE(createLink(file, temp / "link"));
    ASSERT_TRUE(createLink(temp / "none", temp / "broken"));
    EXPECT_TRUE(isLink(temp / "link"));
    EXPECT_TRUE(isLink(temp / "broken"));
    for (const NativePath& other : {file, temp.path(), temp / "none"}) EXPECT_FALSE(isLink(other)) << other;
}

TEST(FoldersTest, ALinkTakesNoNameThatIsTaken) {
    const TempFolder temp;
    const auto file = temp.write("file", "1");
    const auto made = createLink(temp / "none", file);
    ASSERT_FALSE(made);
    EXPECT_NE(made.error().text.find(file.native()), std::string::npos) << made.error().text;
    EXPECT_EQ(temp.read("file"), "1");
}

TEST(FoldersTest, AnAbsolutePathIsTakenByItsWords) {
    const TempFolder temp;
    EXPECT_EQ(absolutePath("/a/./b/../c").value(), "/a/c");
    EXPECT_EQ(absolutePath("a/../b").value(), std::filesystem::current_path() / "b");
    EXPECT_FALSE(absolutePath(""));
}

TEST(FoldersTest, TheWayUpBehindALinkIsTheSystemsAndOtherLinksStay) {
    const TempFolder temp;
    const NativePath root = std::filesystem::canonical(temp.path());
    std::filesystem::create_directories(root / "one/deep");
    ASSERT_TRUE(createLink(root / "one/deep", root / "way"));
    EXPECT_EQ(pathFromRoot(root / "way/../x").value(), root / "one/x");
    EXPECT_EQ(pathFromRoot(root / "way/./x").value(), root / "way/x");
    EXPECT_EQ(pathFromRoot(root / "none/../x").value(), root / "x");
    EXPECT_EQ(pathFromRoot("a/b").value(), std::filesystem::current_path() / "a/b");
    EXPECT_FALSE(pathFromRoot(""));
}

TEST(FoldersTest, AResolvedPathGoesThroughLinksAndKeepsWhatDoesNotExist) {
    const TempFolder temp;
    ASSERT_TRUE(createFolder(temp / "folder"));
    ASSERT_TRUE(createLink(temp / "folder", temp / "link"));
    const NativePath root = std::filesystem::canonical(temp.path());
    EXPECT_EQ(resolvedPath(temp / "link" / "none" / "file").value(), root / "folder" / "none" / "file");
}

TEST(FoldersTest, AResolvedPathThatCannotBeAskedForIsAFailure) {
    const TempFolder temp;
    ASSERT_TRUE(createLink("loop", temp / "loop"));
    const auto resolved = resolvedPath(temp / "loop" / "file");
    ASSERT_FALSE(resolved);
    EXPECT_NE(resolved.error().text.find("loop"), std::string::npos) << resolved.error().text;
    EXPECT_EQ(realPath(temp / "loop" / ".." / "file"), temp / "file");
}

TEST(FoldersTest, AFileMadeNowIsNotOlderThanTheClockThatGivesFilesTheirTimes) {
    const TempFolder temp;
    const FileTime before = fileTimeNow();
    const auto made = modificationTime(temp.write("file", "1")).value();
    const FileTime after = fileTimeNow();
    EXPECT_LE(before.seconds, made.seconds + 1);  // a file's time comes from the last tick
    EXPECT_LE(made, after);
    EXPECT_LT(after.nanoseconds, 1'000'000'000U);
}

}  // namespace
}  // namespace quillon
