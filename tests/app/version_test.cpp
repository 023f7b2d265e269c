// SPDX-License-Identifier: MIT
// The version that the screens show is the one that the build names.
#include "app/version.h"

#include <gtest/gtest.h>

namespace quillon {
namespace {

TEST(Version, IsOneZeroZero) {
    const Version version = programVersion();
    EXPECT_EQ(version.major, 1);
    EXPECT_EQ(version.minor, 0);
    EXPECT_EQ(version.revision, 0);
}

}  // namespace
}  // namespace quillon
