// SPDX-License-Identifier: MIT
#include "platform/file_extents.h"

#include <map>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "support/temp_folder.h"

namespace quillon {
namespace {

TEST(FileExtentsTest, BlocksThatFollowEachOtherAreOneExtent) {
    const std::map<std::uint32_t, std::uint32_t> blocks = {{0, 100}, {1, 101}, {2, 7}, {3, 0}, {4, 8}};
    const auto extents = extentsByBlocks(
        4 * 512 + 1, 512, [&](std::uint32_t block) -> Result<std::uint32_t> { return blocks.at(block); });
    ASSERT_TRUE(extents) << extents.error().text;
    EXPECT_EQ(*extents,
              (std::vector<FileExtent>{
                  {0, 51'200, 1024}, {1024, 3584, 512}, {1536, 0, 512, ExtentKind::Unknown}, {2048, 4096, 512}}));
}

// A driver that cannot tell answers as it does for a hole: compressed files must not look unhurt.
TEST(FileExtentsTest, AFileOfWhichNoBlockIsToldHasNoKnownPlace) {
    const auto extents = extentsByBlocks(1024, 512, [](std::uint32_t) -> Result<std::uint32_t> { return 0; });
    ASSERT_TRUE(extents);
    EXPECT_EQ(*extents, (std::vector<FileExtent>{{0, 0, 1024, ExtentKind::Unknown}}));
}

TEST(FileExtentsTest, ABlockWhoseNumberDoesNotFitIsTold) {
    const auto extents = extentsByBlocks(1024, 512, [](std::uint32_t block) -> Result<std::uint32_t> {
        if (block == 1)
            return failure(ErrorKind::PathAccess, "too large");
        return 5;
    });
    ASSERT_FALSE(extents);
    EXPECT_EQ(extents.error().text, "too large");
    const auto many =
        extentsByBlocks(std::uint64_t{1} << 60U, 512, [](std::uint32_t) -> Result<std::uint32_t> { return 1; });
    EXPECT_EQ(many.error().kind, ErrorKind::InvalidArgument);
}

TEST(FileExtentsTest, AnEmptyFileHasNoExtents) {
    const auto extents = extentsByBlocks(0, 512, [](std::uint32_t) -> Result<std::uint32_t> { return 1; });
    ASSERT_TRUE(extents);
    EXPECT_TRUE(extents->empty());
}

TEST(FileExtentsTest, OnlyRegularFilesAreLookedAt) {
    const test::TempFolder folder;
    SystemPlaces places;
    EXPECT_EQ(places.placesOf((folder / "gone").native()).error().kind, ErrorKind::NotFound);
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(places.placesOf((folder / "pipe").native()).error().kind, ErrorKind::PermissionDenied);
}

}  // namespace
}  // namespace quillon
