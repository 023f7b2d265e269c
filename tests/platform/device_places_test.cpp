// SPDX-License-Identifier: MIT
#include "platform/device_places.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace quillon {
namespace {

// The system's account of its devices, in a folder.
class DevicePlacesTest : public testing::Test {
protected:
    void describe(const std::string& number, const std::string& folder) const {
        std::filesystem::create_directories(system / "dev/block");
        std::filesystem::create_directories(system / folder);
        std::filesystem::create_symlink("../../" + folder, system / ("dev/block/" + number));
    }

    test::TempFolder system;
};

TEST_F(DevicePlacesTest, APartitionLiesOnItsDisk) {
    describe("8:0", "devices/pci/sda");
    describe("8:1", "devices/pci/sda/sda1");
    system.write("devices/pci/sda/size", "2000000\n");
    system.write("devices/pci/sda/queue/physical_block_size", "4096\n");
    system.write("devices/pci/sda/sda1/size", "1000000\n");
    system.write("devices/pci/sda/sda1/start", "2048\n");
    system.write("devices/pci/sda/sda1/partition", "1\n");
    EXPECT_EQ(devicesOf(system.path(), "8:1"),
              (std::vector<DevicePlace>{{"/dev/sda1", 512'000'000, 0}, {"/dev/sda", 1'024'000'000, 1'048'576}}));
    EXPECT_EQ(devicesOf(system.path(), "8:0"), (std::vector<DevicePlace>{{"/dev/sda", 1'024'000'000, 0}}));
    EXPECT_EQ(sectorBytesOf(system.path(), "8:1"), 4096U);
}

TEST_F(DevicePlacesTest, ALoopDeviceLiesInItsImage) {
    const auto image = system.write("disk image", std::string(10'000, 'x'));
    describe("7:0", "devices/virtual/block/loop0");
    describe("259:0", "devices/virtual/block/loop0/loop0p1");
    system.write("devices/virtual/block/loop0/size", "16\n");
    system.write("devices/virtual/block/loop0/loop/backing_file", image.native() + "\n");
    system.write("devices/virtual/block/loop0/loop/offset", "1024\n");
    system.write("devices/virtual/block/loop0/loop0p1/size", "8\n");
    system.write("devices/virtual/block/loop0/loop0p1/start", "4\n");
    system.write("devices/virtual/block/loop0/loop0p1/partition", "1\n");
    EXPECT_EQ(devicesOf(system.path(), "7:0"),
              (std::vector<DevicePlace>{{"/dev/loop0", 8192, 0}, {image.native(), 10'000, 1024}}));
    EXPECT_EQ(devicesOf(system.path(), "259:0"),
              (std::vector<DevicePlace>{
                  {"/dev/loop0p1", 4096, 0}, {"/dev/loop0", 8192, 2048}, {image.native(), 10'000, 3072}}));
}

TEST_F(DevicePlacesTest, WhatIsNoBlockDeviceHasNoPlace) {
    EXPECT_EQ(devicesOf(system.path(), "0:33"), std::vector<DevicePlace>{});
    EXPECT_EQ(sectorBytesOf(system.path(), "0:33"), 512U);
}

TEST_F(DevicePlacesTest, ANumberThatIsNoneIsNotTaken) {
    describe("8:0", "devices/pci/sda");
    system.write("devices/pci/sda/size", "many\n");
    system.write("devices/pci/sda/queue/physical_block_size", "1000\n");
    EXPECT_EQ(devicesOf(system.path(), "8:0"), std::vector<DevicePlace>{});
    EXPECT_EQ(sectorBytesOf(system.path(), "8:0"), 512U);
}

TEST_F(DevicePlacesTest, AFolderOfTheSystemItselfLiesOnNoDevice) {
    const auto place = fileSystemOf("/proc");
    ASSERT_TRUE(place) << place.error().text;
    EXPECT_EQ(place->kind, "proc");
    EXPECT_EQ(place->devices, std::vector<DevicePlace>{});
    EXPECT_EQ(fileSystemOf("/no such folder").error().kind, ErrorKind::NotFound);
}

}  // namespace
}  // namespace quillon
