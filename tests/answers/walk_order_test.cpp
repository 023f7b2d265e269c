// SPDX-License-Identifier: MIT
#include "answers/walk_order.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace quillon::test {

namespace {

using Paths = std::vector<std::string>;

template <typename Order>
Paths sorted(Paths paths, Order order) {
    std::ranges::sort(paths, std::ranges::greater());
    std::ranges::stable_sort(paths, [&](const auto& a, const auto& b) { return order(a, b) < 0; });
    return paths;
}

TEST(WalkOrder, FilesOfAFolderComeBeforeItsSubfolders) {
    const Paths walk = {"/s/a",    "/s/z",    "/s/\xff",      "/s/A/z",       "/s/a-b/x", "/s/a.b/x",
                        "/s/ab/1", "/s/ab/2", "/s/ab/c/deep", "/s/ab/d/deep", "/s/b/x",   "/s/\xc3\xa9/x"};
    EXPECT_EQ(sorted(walk, filesInWalkOrder), walk);
    EXPECT_TRUE(filesInWalkOrder("a/b", "a/b") == 0);
}

TEST(WalkOrder, AFolderComesBeforeWhatIsBelowIt) {
    const Paths walk = {"", "a", "a/b", "a/b/c", "a-b", "a.b", "ab", "b", "b/a"};
    Paths expected = {"", "a", "a/b", "a/b/c", "a-b", "a.b", "ab", "b", "b/a"};
    EXPECT_EQ(sorted(walk, foldersInWalkOrder), expected);
    EXPECT_TRUE(foldersInWalkOrder("a/b", "a/b") == 0);
}

}  // namespace

}  // namespace quillon::test
