// SPDX-License-Identifier: MIT
#include "sectors/map_join.h"

#include <gtest/gtest.h>

namespace quillon {
namespace {

constexpr std::uint64_t kDisk = 0x100000;
constexpr std::uint64_t kBegin = 0x10000;  // of the file system on the disk

FileSystemPlace onPartition(const std::string& kind = "ext4") {
    return {42, kind, "rw", 4096, {{"/dev/sdx1", 0x80000, 0}, {"/dev/sdx", kDisk, kBegin}}};
}

RescueMap mapOf(ByteRanges missing, std::uint64_t end = kDisk) {
    return {std::move(missing), end};
}

std::string whyNot(const FileSystemPlace& system, const RescueMap& map, std::optional<std::uint64_t> offset = {}) {
    const auto place = placeOnMap(system, map, offset);
    EXPECT_FALSE(place);
    return place ? std::string() : place.error().text;
}

TEST(MapPlaceTest, TheDeviceIsTheOneThatEndsWhereTheMapEnds) {
    const auto disk = placeOnMap(onPartition(), mapOf({}), std::nullopt);
    ASSERT_TRUE(disk) << disk.error().text;
    EXPECT_EQ(disk->device, "/dev/sdx");
    EXPECT_EQ(disk->offset, kBegin);
    EXPECT_EQ(disk->bytes, 0x80000U);
    EXPECT_EQ(disk->sectorBytes, 4096U);
    const auto partition = placeOnMap(onPartition(), mapOf({}, 0x80000), std::nullopt);
    ASSERT_TRUE(partition) << partition.error().text;
    EXPECT_EQ(partition->device, "/dev/sdx1");
    EXPECT_EQ(partition->offset, 0U);
}

TEST(MapPlaceTest, AMapOfAnotherEndIsRefused) {
    EXPECT_NE(whyNot(onPartition(), mapOf({}, kDisk + 512)).find("another device"), std::string::npos);
    EXPECT_NE(whyNot(onPartition(), mapOf({}, kDisk + 512), kBegin).find("another device"), std::string::npos);
    EXPECT_NE(whyNot(onPartition(), mapOf({}), 0).find("another device"), std::string::npos);
}

TEST(MapPlaceTest, AnOffsetOfNoKnownDeviceIsTakenAsToldWhereTheFileSystemHasRoom) {
    const auto place = placeOnMap(onPartition(), mapOf({}), 0x20000);
    ASSERT_TRUE(place) << place.error().text;
    EXPECT_EQ(place->offset, 0x20000U);
    EXPECT_NE(whyNot(onPartition(), mapOf({}), 0x80001).find("behind the map's end"), std::string::npos);
}

TEST(MapPlaceTest, WhatLiesOnNoPlaceOfADiskIsRefusedWithTheReason) {
    EXPECT_NE(whyNot(onPartition("btrfs"), mapOf({})).find("btrfs"), std::string::npos);
    EXPECT_NE(whyNot(onPartition("zfs"), mapOf({})).find("does not tell places"), std::string::npos);
    FileSystemPlace share{42, "cifs", "rw", 512, {}};
    EXPECT_NE(whyNot(share, mapOf({})).find("lies on no device"), std::string::npos);
    FileSystemPlace twoDevices = onPartition("xfs");
    twoDevices.options = "rw,rtdev=/dev/sdy,noquota";
    EXPECT_NE(whyNot(twoDevices, mapOf({})).find("second device"), std::string::npos);
}

class MapJoinTest : public testing::Test {
protected:
    static MappedFile look(const FilePlaces& file, const ByteRanges& missing) {
        return MapJoin(mapOf(missing), {"/dev/sdx", kBegin, 0x80000, 512}).look(file);
    }
};

TEST_F(MapJoinTest, MissingAreasBecomeRangesOfTheFile) {
    const FilePlaces file{0x3000, 42, {{0, 0x5000, 0x1000}, {0x1000, 0x2000, 0x2000}}};
    const auto found = look(file, {{kBegin + 0x3E00, kBegin + 0x5200}});
    EXPECT_EQ(found.unread, (ByteRanges{{0, 0x200}, {0x2E00, 0x3000}}));
    EXPECT_EQ(found.onDevice, (ByteRanges{{kBegin + 0x5000, kBegin + 0x5200}, {kBegin + 0x3E00, kBegin + 0x4000}}));
    EXPECT_TRUE(found.isPlaced());
}

TEST_F(MapJoinTest, TheSlackBehindAFilesEndNamesNoFile) {
    const FilePlaces file{0x1100, 42, {{0, 0x5000, 0x2000}}};
    EXPECT_EQ(look(file, {{kBegin + 0x6200, kBegin + 0x7000}}).unread, ByteRanges{});
    EXPECT_EQ(look(file, {{kBegin + 0x6000, kBegin + 0x7000}}).unread, (ByteRanges{{0x1000, 0x1100}}));
    // Room that was kept behind the end.
    const FilePlaces kept{0x1000, 42, {{0, 0x5000, 0x1000}, {0x1000, 0x6000, 0x1000}}};
    EXPECT_EQ(look(kept, {{kBegin + 0x6000, kBegin + 0x7000}}).unread, ByteRanges{});
}

TEST_F(MapJoinTest, UnwrittenRoomReadsAsZerosAndIsNotUnread) {
    const FilePlaces file{0x2000, 42, {{0, 0x5000, 0x2000, ExtentKind::Unwritten}}};
    const auto found = look(file, {{0, kDisk}});
    EXPECT_EQ(found.unread, ByteRanges{});
    EXPECT_TRUE(found.isPlaced());
}

TEST_F(MapJoinTest, WhatHasNoPlaceOfItsOwnGivesNoRangesAndIsTold) {
    for (const ExtentKind kind : {ExtentKind::Inline, ExtentKind::Encoded, ExtentKind::Unknown}) {
        const FilePlaces file{0x80, 42, {{0, 0x5000, 0x1000, kind}}};
        const auto found = look(file, {{0, kDisk}});
        EXPECT_EQ(found.unread, ByteRanges{});
        EXPECT_FALSE(found.isPlaced());
        EXPECT_EQ(found.of(kind), 0x80U);
    }
}

TEST_F(MapJoinTest, ASparseFileHasNothingInItsHoles) {
    const FilePlaces file{6'000'000'000'000, 42, {{5'000'000'000'000, 0x5000, 0x1000}}};
    EXPECT_EQ(look(file, {{0, kDisk}}).unread, (ByteRanges{{5'000'000'000'000, 5'000'000'004'096}}));
    EXPECT_EQ(look({1 << 20, 42, {}}, {{0, kDisk}}).unread, ByteRanges{});
}

TEST_F(MapJoinTest, NothingIsKnownToBeReadBehindTheMapsEnd) {
    const FilePlaces file{0x1000, 42, {{0, kDisk, 0x1000}}};
    EXPECT_EQ(look(file, {}).unread, (ByteRanges{{0, 0x1000}}));
    const FilePlaces hostile{0x1000, 42, {{0, ~std::uint64_t{0} - 0x100, ~std::uint64_t{0}}}};
    EXPECT_LE(bytesIn(look(hostile, {}).unread), 0x1000U);
}

TEST_F(MapJoinTest, WhatNoFileClaimsIsCountedOnce) {
    MapJoin join(mapOf({{0, 0x100}, {kBegin, kBegin + 0x1000}, {kBegin + 0x5000, kBegin + 0x6000}}),
                 {"/dev/sdx", kBegin, 0x80000, 512});
    EXPECT_EQ(join.unclaimed(), 0x2000U);
    const FilePlaces file{0x100, 42, {{0, 0x5000, 0x1000}}};
    for (int name = 0; name < 2; ++name) EXPECT_EQ(join.look(file).unread.size(), 1U);  // two names of the same bytes
    EXPECT_EQ(join.unclaimed(), 0x1000U);
}

TEST_F(MapJoinTest, AHundredThousandFilesMeetTenThousandAreas) {
    constexpr std::uint64_t kLarge = std::uint64_t{1} << 40U;
    ByteRanges missing;
    for (std::uint64_t i = 0; i < 10'000; ++i) missing.push_back({i * 0x1000000, i * 0x1000000 + 0x200});
    MapJoin join(mapOf(missing, kLarge), {"/dev/sdx", 0, kLarge, 512});
    std::size_t hurt = 0;
    for (std::uint64_t i = 0; i < 100'000; ++i)
        hurt += join.look({0x1000, 42, {{0, i * 0x100000, 0x1000}}}).unread.empty() ? 0 : 1;
    EXPECT_EQ(hurt, 6250U);
}

}  // namespace
}  // namespace quillon
