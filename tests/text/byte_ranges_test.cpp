// SPDX-License-Identifier: MIT
#include "text/byte_ranges.h"

#include <gtest/gtest.h>

namespace quillon {
namespace {

TEST(ByteRangesTest, RangesThatOverlapOrTouchBecomeOne) {
    ByteRanges ranges = {{512, 1024}, {4096, 4096}, {0, 512}, {2048, 3072}, {2560, 2600}};
    putInOrder(ranges);
    EXPECT_EQ(ranges, (ByteRanges{{0, 1024}, {2048, 3072}}));
    EXPECT_EQ(bytesIn(ranges), 2048U);
}

TEST(ByteRangesTest, APartIsWhatLiesInBoth) {
    const ByteRanges ranges = {{100, 200}, {300, 400}};
    EXPECT_EQ(partsIn(ranges, {150, 350}), (ByteRanges{{150, 200}, {300, 350}}));
    EXPECT_EQ(partsIn(ranges, {200, 300}), ByteRanges{});
    EXPECT_EQ(partsIn(ranges, {0, 1000}), ranges);
    EXPECT_EQ(partsIn({}, {0, 1000}), ByteRanges{});
}

TEST(ByteRangesTest, TheTextHasBeginningAndLengthAndTellsThatThereAreMore) {
    const ByteRanges ranges = {{0, 512}, {8192, 9216}, {5'000'000'000'000, 5'000'000'000'001}};
    EXPECT_EQ(rangesText(ranges, 3), "0+512,8192+1024,5000000000000+1");
    EXPECT_EQ(rangesText(ranges, 2), "0+512,8192+1024,...");
    EXPECT_EQ(rangesText({}, 2), "");
}

}  // namespace
}  // namespace quillon
