// SPDX-License-Identifier: MIT
#include "answers/overview/treemap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

#include "answers/overview/bar_parts.h"

namespace quillon::test {

namespace {

double areaOf(const MapRect& rect) {
    return rect.width * rect.height;
}

double overlap(const MapRect& a, const MapRect& b) {
    const double width = std::min(a.left + a.width, b.left + b.width) - std::max(a.left, b.left);
    const double height = std::min(a.top + a.height, b.top + b.height) - std::max(a.top, b.top);
    return width > 0 && height > 0 ? width * height : 0;
}

}  // namespace

TEST(Treemap, OneWeightFillsTheRoom) {
    const std::vector<double> weights = {7};
    EXPECT_EQ(squarified(weights, {1, 2, 30, 40}), (std::vector<MapRect>{{1, 2, 30, 40}}));
}

// The example of the layout's inventors: a room of 6 by 4.
TEST(Treemap, TheFirstColumnHoldsTwoTilesOfSix) {
    const std::vector<double> weights = {6, 6, 4, 3, 2, 2, 1};
    const auto tiles = squarified(weights, {0, 0, 6, 4});
    ASSERT_EQ(tiles.size(), 7U);
    EXPECT_EQ(tiles[0], (MapRect{0, 0, 3, 2}));
    EXPECT_EQ(tiles[1], (MapRect{0, 2, 3, 2}));
    EXPECT_NEAR(tiles[2].left, 3, 1e-9);
    EXPECT_NEAR(tiles[2].top, 0, 1e-9);
    EXPECT_NEAR(tiles[2].height, 7.0 / 3, 1e-9);
}

TEST(Treemap, AreasAreInProportionAndNothingOverlaps) {
    std::mt19937 random(17);
    for (int round = 0; round < 50; ++round) {
        std::vector<double> weights(1 + random() % 60);
        for (double& weight : weights) weight = 1 + static_cast<double>(random() % 100'000);
        std::ranges::sort(weights, std::ranges::greater());
        const double total = std::accumulate(weights.begin(), weights.end(), 0.0);
        const MapRect room{5, 5, 800, 300};
        const auto tiles = squarified(weights, room);
        for (std::size_t i = 0; i < tiles.size(); ++i) {
            EXPECT_NEAR(areaOf(tiles[i]), weights[i] / total * areaOf(room), 1e-6 * areaOf(room)) << i;
            EXPECT_GE(tiles[i].left, room.left - 1e-6);
            EXPECT_LE(tiles[i].top + tiles[i].height, room.top + room.height + 1e-6);
            for (std::size_t j = 0; j < i; ++j) EXPECT_LT(overlap(tiles[i], tiles[j]), 1e-3) << i << " " << j;
        }
    }
}

TEST(Treemap, WeightsOfNothingGetNoRoom) {
    const std::vector<double> weights = {4, 0, -1};
    const auto tiles = squarified(weights, {0, 0, 10, 10});
    ASSERT_EQ(tiles.size(), 3U);
    EXPECT_EQ(areaOf(tiles[0]), 100);
    EXPECT_EQ(areaOf(tiles[1]), 0);
    EXPECT_EQ(areaOf(tiles[2]), 0);
    EXPECT_TRUE(squarified({}, {0, 0, 10, 10}).empty());
}

TEST(Treemap, KeysGoToTheTileOnThatSide) {
    const std::vector<MapRect> tiles = {{0, 0, 50, 100}, {50, 0, 50, 50}, {50, 50, 50, 50}};
    EXPECT_EQ(nextTile(tiles, 1, MapKey::Left), 0U);
    EXPECT_EQ(nextTile(tiles, 1, MapKey::Down), 2U);
    EXPECT_EQ(nextTile(tiles, 2, MapKey::Up), 1U);
    EXPECT_EQ(nextTile(tiles, 2, MapKey::Right), 2U) << "nothing lies there";
}

TEST(BarParts, OneAmongAMillionIsSeen) {
    ByGrade<std::int64_t> counts;
    counts[Grade::Good] = 1'000'000;
    counts[Grade::Corrupt] = 1;
    const auto parts = barParts(counts, 100);
    EXPECT_DOUBLE_EQ(parts[Grade::Corrupt], kLeastPart);
    EXPECT_DOUBLE_EQ(parts[Grade::Good], 100 - kLeastPart);
    EXPECT_EQ(parts[Grade::Unknown], 0);
}

}  // namespace quillon::test
