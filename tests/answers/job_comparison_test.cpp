// SPDX-License-Identifier: MIT
#include "answers/job_comparison.h"

#include <random>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "answers/memory_answers.h"
#include "answers/walk_order.h"

namespace quillon::test {

namespace {

using testing::ElementsAre;

class JobComparisonTest : public testing::Test {
protected:
    // "<change> <path>" of all that is not the same.
    std::vector<std::string> compare(const std::string& stripFirst = {}, const std::string& stripSecond = {}) {
        std::vector<std::string> told;
        first.at = second.at = 0;
        const auto result = compareJobs({first, second, stripFirst, stripSecond}, [&](const ChangedFile& file) {
            if (file.change != Change::Same)
                told.push_back(kChangeNames[static_cast<std::size_t>(file.change)] + (" " + file.path) +
                               (file.before.empty() ? "" : " from " + file.before));
        });
        EXPECT_TRUE(result);
        counts = result.value_or(ChangeCounts{});
        return told;
    }
    [[nodiscard]] std::int64_t counted(Change change) const { return counts[static_cast<std::size_t>(change)]; }

    MemoryAnswers first;
    MemoryAnswers second;
    ChangeCounts counts{};
};

TEST_F(JobComparisonTest, EachKindOfChange) {
    first.add("same.jpg", Grade::Good);
    first.add("better.jpg", Grade::Corrupt);
    first.add("worse.jpg", Grade::Good);
    first.add("lost.jpg", Grade::Good);
    second.add("better.jpg", Grade::Good);
    second.add("gained.jpg", Grade::Good, 5);
    second.add("same.jpg", Grade::Good);
    second.add("worse.jpg", Grade::Corrupt);
    EXPECT_THAT(compare(), ElementsAre("better better.jpg", "gained gained.jpg", "worse worse.jpg", "lost lost.jpg"));
    EXPECT_EQ(counted(Change::Same), 1);
}

TEST_F(JobComparisonTest, AFileOfTheSameSizeAndHeadHasMoved) {
    first.heads[first.add("a/one.jpg", Grade::Good).id] = 42;
    second.heads[second.add("b/two.jpg", Grade::Good).id] = 42;
    EXPECT_THAT(compare(), ElementsAre("moved b/two.jpg from a/one.jpg"));
    second.heads[1] = 43;
    EXPECT_THAT(compare(), ElementsAre("gained b/two.jpg", "lost a/one.jpg")) << "another head";
}

TEST_F(JobComparisonTest, WithoutHeadsTheNameTellsWhatMoved) {
    first.add("a/one.jpg", Grade::Good);
    second.add("b/one.jpg", Grade::Good);
    second.add("b/two.jpg", Grade::Good);
    EXPECT_THAT(compare(), ElementsAre("moved b/one.jpg from a/one.jpg", "gained b/two.jpg"));
}

TEST_F(JobComparisonTest, FoldersCanBeCutOff) {
    first.add("disk1/a.jpg", Grade::Good);
    first.add("notes.txt", Grade::Good);
    second.add("a.jpg", Grade::Good);
    EXPECT_THAT(compare("disk1"), ElementsAre());
    EXPECT_EQ(counted(Change::Same), 1);
}

TEST_F(JobComparisonTest, ChangesComeByPathWhateverTheOrderOfTheWalk) {
    for (const char* path : {"z/1", "z/2", "a/1", "a/2", "lost/b", "lost/a"}) first.add(path, Grade::Good);
    for (const char* path : {"new/b", "z/2", "z/1", "a/2", "a/1", "new/a"}) second.add(path, Grade::Corrupt, 7);
    EXPECT_THAT(compare(), ElementsAre("worse a/1", "worse a/2", "gained new/a", "gained new/b", "worse z/1",
                                       "worse z/2", "lost lost/a", "lost lost/b"));
}

TEST_F(JobComparisonTest, OfSeveralRowsWithOnePathTheLastOneCounts) {
    first.add("a", Grade::Good);
    first.add("a", Grade::Corrupt);
    second.add("a", Grade::Good);
    second.add("a", Grade::Corrupt);
    second.add("b", Grade::Good, 5);
    second.add("b", Grade::Corrupt, 6);
    EXPECT_THAT(compare(), ElementsAre("gained b"));
    EXPECT_EQ(counted(Change::Same), 1);
}

TEST_F(JobComparisonTest, OfEqualFilesEachMovesOnce) {
    for (const char* path : {"a/one", "b/one", "c/one"}) first.add(path, Grade::Good);
    for (const char* path : {"x/one", "y/one"}) second.add(path, Grade::Good);
    EXPECT_THAT(compare(), ElementsAre("moved x/one from c/one", "moved y/one from b/one", "lost a/one"));
}

TEST_F(JobComparisonTest, AFolderThatOnlyBeginsAlikeIsNotCutOff) {
    first.add("disk1/sub/a", Grade::Good);
    first.add("disk10/b", Grade::Good);
    second.add("sub/a", Grade::Good);
    EXPECT_THAT(compare("disk1"), ElementsAre());
    EXPECT_EQ(counted(Change::Same), 1);
}

TEST_F(JobComparisonTest, AJobIsTheSameAsItself) {
    for (int i = 0; i < 100; ++i) {
        first.add("f" + std::to_string(i), Grade::Unknown, i);
        second.add("f" + std::to_string(i), Grade::Unknown, i);
    }
    EXPECT_THAT(compare(), ElementsAre());
    EXPECT_EQ(counted(Change::Same), 100);
}

// Some hundred files of a tree, in the order of a walk. Names hold what sorts on either side of "/".
void addTree(MemoryAnswers& job, std::mt19937& random) {
    static const std::vector<std::string> kNames = {"a", "a b", "a-", "a.d", "a0", "b", "B", "caf\xC3\xA9", "\xFF"};
    const auto below = [&random](std::size_t limit) { return random() % limit; };
    std::set<std::string> paths;
    for (int i = 0; i < 500; ++i) {
        std::string path;
        for (std::size_t depth = below(4); depth > 0; --depth) path += kNames[below(kNames.size())] + "/";
        paths.insert(path + kNames[below(kNames.size())] + std::to_string(below(4)));
    }
    std::vector<std::string> sorted(paths.begin(), paths.end());
    std::ranges::sort(sorted, [](const auto& a, const auto& b) { return filesInWalkOrder(a, b) < 0; });
    for (const auto& path : sorted) {
        const auto size = static_cast<std::int64_t>(500 + below(3));
        const EvidenceRow& row = job.add(path, below(2) == 0 ? Grade::Good : Grade::Corrupt, size);
        if (below(3) > 0)
            job.heads[row.id] = below(20);
    }
}

TEST_F(JobComparisonTest, TheOrderOfTheRowsMakesNoDifference) {
    for (unsigned seed = 0; seed < 20; ++seed) {
        std::mt19937 random(seed);
        first = second = {};
        addTree(first, random);
        addTree(second, random);
        std::set<std::string> before;
        std::set<std::string> now;
        for (const auto& file : first.files) before.insert(file.path());
        for (const auto& file : second.files) now.insert(file.path());
        const auto inOrder = compare();
        const auto countsInOrder = counts;
        const auto both = std::ranges::count_if(before, [&](const std::string& path) { return now.contains(path); });
        EXPECT_EQ(counted(Change::Same) + counted(Change::Better) + counted(Change::Worse), both) << seed;
        EXPECT_EQ(counted(Change::Gained) + counted(Change::Moved), static_cast<std::int64_t>(now.size()) - both);
        EXPECT_EQ(counted(Change::Lost) + counted(Change::Moved), static_cast<std::int64_t>(before.size()) - both);
        std::ranges::shuffle(seed % 2 == 0 ? first.files : second.files, random);
        EXPECT_EQ(compare(), inOrder) << seed;
        EXPECT_EQ(counts, countsInOrder) << seed;
    }
}

}  // namespace

}  // namespace quillon::test
