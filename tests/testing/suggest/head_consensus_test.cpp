// SPDX-License-Identifier: MIT
#include "testing/suggest/head_consensus.h"

#include <gtest/gtest.h>

namespace quillon::test {
namespace {

HeadConsensus of(const std::vector<std::string>& heads) {
    HeadCounter counter;
    for (const auto& head : heads) counter.add(head);
    return counter.result();
}

TEST(HeadConsensusTest, PlacesWhereAllFilesAgreeAreShared) {
    const auto found = of({"PK\x03xAAq", "PK\x03yAAq", "PK\x03xAAr"});
    EXPECT_EQ(found.files, 3U);
    EXPECT_EQ(sharedRuns(found), (std::vector<SharedRun>{{0, 3}, {4, 2}}));
    EXPECT_EQ(found.places[3].byte, 'x');
    EXPECT_EQ(found.places[3].files, 2U);
    EXPECT_FALSE(found.isShared(99));
}

TEST(HeadConsensusTest, BehindTheEndOfTheShortestFileNothingIsShared) {
    const auto found = of({"QLX!long", "QLX!"});
    EXPECT_EQ(found.places.size(), 8U);
    EXPECT_EQ(sharedRuns(found), (std::vector<SharedRun>{{0, 4}}));
}

TEST(HeadConsensusTest, OfTwoEquallyFrequentBytesTheLowerOneIsTold) {
    EXPECT_EQ(of({"b", "a"}).places[0].byte, 'a');
}

TEST(HeadConsensusTest, OneFileAloneSharesNothing) {
    EXPECT_TRUE(sharedRuns(of({"QLX!"})).empty());
    EXPECT_EQ(consensusText(of({"QLX!"})), "One file: nothing to compare it with");
    EXPECT_EQ(consensusText(of({})), "");
}

TEST(HeadConsensusTest, TheTextCountsFilesAndBytesAndNamesPositionsFromOne) {
    EXPECT_EQ(consensusText(of({"ABxC", "ABxD", "AByC"})), "All 3 files share 2 of 4 bytes: 1-2");
    EXPECT_EQ(consensusText(of({"aAxB", "bAyB"})), "All 2 files share 2 of 4 bytes: 2, 4");
    EXPECT_EQ(consensusText(of({"a", "b"})), "These 2 files share no byte");
    EXPECT_EQ(consensusText(of({"1a2b3c4d5e6f7g", "1h2i3j4k5l6m7n"})),
              "All 2 files share 7 of 14 bytes: 1, 3, 5, 7, 9, 11, ...");
    EXPECT_EQ(placeText(of({"MZ", "Mz"}), 0), "Byte 1: 4D in all 2 files");
    EXPECT_EQ(placeText(of({"MZ", "Mz"}), 1), "Byte 2: 5A in 1 of 2 files");
    EXPECT_EQ(placeText(of({"MZ"}), 2), "");
    EXPECT_EQ(placeText(of({"MZ"}), -1), "");
}

TEST(HeadConsensusTest, MarksComeInTurnAndAreNoFillsAndNoSingleBytes) {
    const auto found = of({"ABaX0000bCDE", "ABcX0000dCDE"});
    EXPECT_EQ(nextMark(found, -1), (SharedRun{0, 2}));
    EXPECT_EQ(nextMark(found, 0), (SharedRun{3, 5}));
    EXPECT_EQ(nextMark(found, 3), (SharedRun{9, 3}));
    EXPECT_EQ(nextMark(found, 9), (SharedRun{0, 2}));
    EXPECT_EQ(nextMark(of({"a0000b", "c0000d"}), -1), std::nullopt);
    EXPECT_EQ(nextMark(of({"aXb", "cXd"}), -1), std::nullopt);
}

}  // namespace
}  // namespace quillon::test
