// SPDX-License-Identifier: MIT
// Pieces handed over to a thread: all of them, in their order, in batches.
#include "ahead/batches_beside.h"

#include <latch>

#include <gtest/gtest.h>

namespace quillon {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kLong{60'000};
constexpr std::size_t kFull = 4;

using Numbers = std::vector<int>;

class BatchesBesideTest : public testing::Test {
protected:
    BatchesBeside<Numbers>::Work work() {
        return [this](Numbers& batch) {
            mayWork.wait();
            sizes.push_back(batch.size());
            numbers.insert(numbers.end(), batch.begin(), batch.end());
        };
    }
    static bool add(BatchesBeside<Numbers>& batches, int number) {
        return batches.add([number](Numbers& batch) {
            batch.push_back(number);
            return batch.size() == kFull;
        });
    }

    std::latch mayWork{1};
    std::vector<std::size_t> sizes;
    Numbers numbers;
};

TEST_F(BatchesBesideTest, AllPiecesComeInTheirOrderAndAnEmptyBatchIsTheLast) {
    mayWork.count_down();
    Numbers expected;
    {
        BatchesBeside<Numbers> batches(1000, kLong, work());
        ASSERT_TRUE(batches.start());
        for (int i = 0; i < 30; ++i) {
            ASSERT_TRUE(add(batches, i));
            expected.push_back(i);
        }
        batches.close();
        ASSERT_TRUE(batches.endsWithin(kLong));
    }
    EXPECT_EQ(numbers, expected);
    ASSERT_FALSE(sizes.empty());
    EXPECT_EQ(sizes.back(), 0U);
}

TEST_F(BatchesBesideTest, ABatchThatIsNotFullGoesWhenNothingComesForAWhile) {
    mayWork.count_down();
    std::latch came(1);
    BatchesBeside<Numbers> batches(1000, milliseconds(1), [&came](Numbers& batch) {
        if (!batch.empty())
            came.count_down();
    });
    ASSERT_TRUE(batches.start());
    ASSERT_TRUE(add(batches, 1));
    came.wait();
}

TEST_F(BatchesBesideTest, NoMoreWaitThanMay) {
    std::latch begun(1);
    BatchesBeside<Numbers> batches(2, kLong, [&](Numbers& batch) {
        if (!begun.try_wait())
            begun.count_down();
        work()(batch);
    });
    ASSERT_TRUE(batches.start());
    const int inWork = static_cast<int>(kFull);
    for (int i = 0; i < inWork; ++i) ASSERT_TRUE(add(batches, i));
    begun.wait();
    int waiting = 0;
    while (add(batches, inWork + waiting)) ++waiting;
    EXPECT_EQ(waiting, 2 * static_cast<int>(kFull));
    EXPECT_FALSE(batches.roomWithin(milliseconds(0)));
    mayWork.count_down();
    EXPECT_TRUE(batches.roomWithin(kLong));
    EXPECT_TRUE(add(batches, inWork + waiting));
}

}  // namespace
}  // namespace quillon
