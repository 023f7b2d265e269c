// SPDX-License-Identifier: MIT
#include "testing/record_merge.h"

#include <algorithm>
#include <map>
#include <random>

#include <gtest/gtest.h>

using namespace quillon;

namespace {

// One letter for each record.
Records list(std::string_view letters) {
    Records records;
    for (const char letter : letters) records.emplace_back(1, letter);
    return records;
}

std::string letters(const Records& records) {
    std::string all;
    for (const auto& record : records) all += record;
    return all;
}

struct Case {
    const char* fact;
    const char* base;
    const char* ours;
    const char* theirs;
    const char* merged;
};

TEST(RecordMerge, WhatOneSideAloneDidStands) {
    const Case cases[] = {
        {"nobody did anything", "abc", "abc", "abc", "abc"},
        {"theirs, then ours", "abc", "abcx", "abcy", "abcyx"},
        {"each adds two", "a", "axz", "ayw", "aywxz"},
        {"an empty list that both begin", "", "x", "y", "yx"},
        {"one deletes, the other touches nothing", "abc", "ac", "abc", "ac"},
        {"one deletes, the other adds", "abc", "ac", "abcx", "acx"},
        {"they delete, we add", "abc", "abcx", "bc", "bcx"},
        {"each deletes another one", "abc", "bc", "ab", "b"},
        {"both delete the same one", "abc", "ac", "ac", "ac"},
        {"we delete all, they add", "abc", "", "abcx", "x"},
        {"both add the same one", "abc", "abcx", "abcx", "abcx"},
        {"both add the same one and one more each", "a", "axy", "axz", "axzy"},
        {"we change one in its place", "abc", "aXc", "abcz", "aXcz"},
        {"they change one in its place", "abc", "abcz", "aXc", "aXcz"},
        {"each changes another one", "abc", "Xbc", "abY", "XbY"},
        {"both change one to the same", "abc", "aXc", "aXcz", "aXcz"},
        {"we move, they add", "abc", "cab", "abcx", "cabx"},
        {"they move, we add", "abc", "abcx", "cab", "cabx"},
        {"both move alike", "abc", "cab", "cab", "cab"},
        {"we move one that they deleted", "abc", "cab", "ab", "ab"},
        {"we put a new one on top", "abc", "xabc", "abcy", "xabcy"},
        {"both put a new one on top", "abc", "xabc", "yabc", "yxabc"},
        {"an equal record is one more", "ab", "aba", "abx", "abxa"},
        {"of two equal records one goes", "aba", "ab", "abax", "abx"},
        {"both take the same one of two equal records", "aab", "ab", "abx", "abx"},
        {"both add an equal record", "a", "aa", "aa", "aa"},
    };
    for (const Case& one : cases) {
        const auto merged = mergeRecords(list(one.base), list(one.ours), list(one.theirs));
        EXPECT_EQ(letters(merged.records), one.merged) << one.fact;
        EXPECT_TRUE(merged.conflicts.empty()) << one.fact;
    }
}

struct Dispute {
    const char* fact;
    const char* base;
    const char* ours;
    const char* theirs;
    RecordConflict conflict;
    const char* takenOurs;
    const char* takenTheirs;
};

TEST(RecordMerge, WhatBothDidInTwoWaysIsAConflict) {
    const Dispute cases[] = {
        {"one record changed in two ways", "abc", "aXc", "aYc", {"b", "X", "Y"}, "aXc", "aYc"},
        {"changed by us, deleted by them", "abc", "aXc", "ac", {"b", "X", ""}, "aXc", "ac"},
        {"deleted by us, changed by them", "abc", "ac", "aYc", {"b", "", "Y"}, "ac", "aYc"},
        {"two different moves", "abc", "cab", "bca", {"", "", ""}, "cab", "bca"},
        {"two moves, and new records of both", "abc", "cabx", "bcay", {"", "", ""}, "cabyx", "bcayx"},
    };
    for (const Dispute& one : cases) {
        const Records base = list(one.base);
        const Records ours = list(one.ours);
        const Records theirs = list(one.theirs);
        const auto told = mergeRecords(base, ours, theirs);
        EXPECT_EQ(told.conflicts, std::vector<RecordConflict>{one.conflict}) << one.fact;
        EXPECT_EQ(letters(told.records), one.takenTheirs) << one.fact;
        const auto taken = mergeRecords(base, ours, theirs, MergeChoice::Theirs);
        EXPECT_EQ(letters(taken.records), one.takenTheirs) << one.fact;
        Records mine = mergeRecords(base, ours, theirs, MergeChoice::Ours).records;
        // The new ones of both stand, in whichever order.
        EXPECT_TRUE(std::ranges::is_permutation(mine, list(one.takenOurs))) << one.fact << ": " << letters(mine);
        EXPECT_EQ(letters(mine).substr(0, 1), std::string(one.takenOurs).substr(0, 1)) << one.fact;
    }
}

TEST(RecordMerge, EveryRecordThatEitherAddedIsThereOnceAndInItsOrder) {
    std::mt19937 random(7);
    for (int round = 0; round < 500; ++round) {
        Records base;
        for (std::size_t i = random() % 6; i > 0; --i) base.push_back(std::to_string(random() % 4));
        Records ours = base;
        Records theirs = base;
        for (int i = 0; i < 5; ++i) {
            Records& side = random() % 2 == 0 ? ours : theirs;
            const bool mine = &side == &ours;
            side.insert(side.begin() + static_cast<std::ptrdiff_t>(random() % (side.size() + 1)),
                        (mine ? "o" : "t") + std::to_string(i));
        }
        const auto merged = mergeRecords(base, ours, theirs);
        ASSERT_TRUE(merged.conflicts.empty()) << round;
        std::map<std::string, int> wanted;
        for (const auto& record : ours) ++wanted[record];
        for (const auto& record : theirs) wanted[record] += record.front() == 't' ? 1 : 0;
        std::map<std::string, int> found;
        for (const auto& record : merged.records) ++found[record];
        ASSERT_EQ(found, wanted) << round;
        Records oursAgain = merged.records;
        std::erase_if(oursAgain, [](const std::string& record) { return record.front() == 't'; });
        Records theirsAgain = merged.records;
        std::erase_if(theirsAgain, [](const std::string& record) { return record.front() == 'o'; });
        EXPECT_EQ(oursAgain, ours) << round;
        EXPECT_EQ(theirsAgain, theirs) << round;
    }
}

TEST(RecordMerge, OfPlacesEachIsMergedByItself) {
    const auto merged = mergePlaces(list("abc"), list("Xbc"), list("abY"));
    EXPECT_EQ(letters(merged.records), "XbY");
    EXPECT_TRUE(merged.conflicts.empty());
    const auto disputed = mergePlaces(list("abc"), list("Xbc"), list("YbZ"));
    EXPECT_EQ(disputed.conflicts, (std::vector<RecordConflict>{{"a", "X", "Y"}}));
    EXPECT_EQ(letters(disputed.records), "YbZ");
    EXPECT_EQ(letters(mergePlaces(list("abc"), list("Xbc"), list("YbZ"), MergeChoice::Ours).records), "XbZ");
    EXPECT_EQ(letters(mergePlaces(list("a"), list("a"), list("ab")).records), "ab");
}

}  // namespace
