// SPDX-License-Identifier: MIT
#include "platform/volume.h"

#include <gtest/gtest.h>

namespace quillon {
namespace {

TEST(VolumeTest, TheKindOfAFileSystemIsAsTheSystemCallsIt) {
    EXPECT_EQ(volumeOf("/proc").fileSystem, "proc");
    EXPECT_EQ(volumeOf("/proc").uuid, "");
}

TEST(VolumeTest, WhatIsNotThereLiesOnNoVolume) {
    EXPECT_EQ(volumeOf("/no such folder"), Volume());
}

}  // namespace
}  // namespace quillon
