// SPDX-License-Identifier: MIT
// Copies that are prepared before their turn: each is given out at its turn, whole, and has no name before.
#include "ahead/copies_ahead.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "support/posix_files.h"
#include "support/temp_folder.h"

namespace quillon {
namespace {

using test::namesIn;
using test::TempFolder;

bool goOn(std::uint64_t /*done*/, std::uint64_t /*total*/) {
    return true;
}

class CopiesAheadTest : public testing::TestWithParam<StandingStill> {
protected:
    void SetUp() override { std::filesystem::create_directory(temp / "to"); }

    void ask(const std::string& from, const std::string& to) {
        copies.ask((temp / "from" / from).native(), (temp / "to" / to).native());
    }
    tl::expected<void, CopyError> finish(const CopyProgress& progress = goOn) {
        while (!copies.firstEnds(std::chrono::milliseconds(10), progress)) {
        }
        return copies.takeFirst().and_then([](PreparedCopy copy) -> tl::expected<void, CopyError> {
            auto arrived = copy.file.arrive();
            if (!arrived)
                return tl::unexpected<CopyError>(CopyError{CopySide::Target, arrived.error()});
            return {};
        });
    }
    [[nodiscard]] bool isThere(const std::string& name) const { return std::filesystem::exists(temp / "to" / name); }

    TempFolder temp;
    CopiesAhead copies{GetParam()};
};

// Files of all sizes, one of them too large to be prepared.
std::string bytesOf(int number) {
    if (number == 70)
        return std::string(CopiesAhead::kLargest + 1, 'l');
    return std::string(static_cast<std::size_t>(number) * 300, static_cast<char>('a' + number % 26));
}

TEST_P(CopiesAheadTest, EveryFileAppearsWholeAtItsTurn) {
    const int count = 150;
    for (int i = 0; i < count; ++i) {
        const auto path = temp.write("from/" + std::to_string(i % 7) + "/" + std::to_string(i), bytesOf(i));
        test::setTimes(path, 1000000000, 1100000000 + i);
        std::filesystem::create_directory(temp / "to" / std::to_string(i % 7));
    }
    const auto name = [](int i) { return std::to_string(i % 7) + "/" + std::to_string(i); };
    int next = 0;
    for (int i = 0; i < count; ++i) {
        for (; next < count && copies.asked() < CopiesAhead::kMost; ++next) ask(name(next), name(next));
        EXPECT_FALSE(isThere(name(i)));
        ASSERT_TRUE(finish());
        EXPECT_EQ(temp.read("to/" + name(i)), bytesOf(i));
        EXPECT_EQ(test::statOf(temp / "to" / name(i)).st_mtim.tv_sec, 1100000000 + i);
    }
    EXPECT_EQ(copies.asked(), 0U);
}

TEST_P(CopiesAheadTest, NothingStaysOfCopiesWhoseTurnDidNotCome) {
    for (int i = 0; i < 50; ++i) {
        temp.write("from/" + std::to_string(i), bytesOf(i));
        ask(std::to_string(i), std::to_string(i));
    }
    ASSERT_TRUE(finish());
    copies.release();
    EXPECT_EQ(copies.asked(), 0U);
    EXPECT_EQ(namesIn(temp / "to"), "0");
    ask("7", "7");
    ASSERT_TRUE(finish()) << "it can be asked again";
    EXPECT_EQ(namesIn(temp / "to"), "0 7");
}

TEST_P(CopiesAheadTest, AFailureIsToldAtItsTurnAndHoldsNoOtherUp) {
    temp.write("from/a", "first");
    temp.write("from/b", "second");
    ask("a", "a");
    ask("none", "none");
    ask("b", "no such folder/b");
    ask("b", "b");
    EXPECT_TRUE(finish());
    const auto missing = finish();
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error().side, CopySide::Source);
    EXPECT_EQ(missing.error().error.kind, ErrorKind::NotFound);
    const auto nowhere = finish();
    ASSERT_FALSE(nowhere);
    EXPECT_EQ(nowhere.error().side, CopySide::Target);
    EXPECT_TRUE(finish());
    EXPECT_EQ(namesIn(temp / "to"), "a b");
}

TEST_P(CopiesAheadTest, ACancelledFileLeavesTheOlderTargetAndTheNextIsCopied) {
    temp.write("from/b", "small");
    for (const std::uint64_t size : {std::uint64_t{3}, CopiesAhead::kLargest + 1}) {
        temp.write("from/a", std::string(size, 'a'));
        temp.write("to/a", "older");
        ask("a", "a");
        ask("b", "b");
        const auto cancelled = finish([](std::uint64_t, std::uint64_t) { return false; });
        ASSERT_FALSE(cancelled) << size;
        EXPECT_EQ(cancelled.error().side, CopySide::Cancelled) << size;
        EXPECT_EQ(temp.read("to/a"), "older") << size;
        EXPECT_TRUE(finish()) << size;
        EXPECT_EQ(namesIn(temp / "to"), "a b") << size;
    }
}

TEST_P(CopiesAheadTest, OfTwoCopiesToOnePlaceTheLaterStands) {
    temp.write("from/a", "first");
    temp.write("from/b", "second");
    ask("a", "x");
    ask("b", "x");
    EXPECT_TRUE(finish());
    EXPECT_EQ(temp.read("to/x"), "first");
    EXPECT_TRUE(finish());
    EXPECT_EQ(temp.read("to/x"), "second");
    EXPECT_EQ(namesIn(temp / "to"), "x");
}

TEST_P(CopiesAheadTest, ProgressStartsAtZeroAndEndsAtTheLength) {
    temp.write("from/a", std::string(5000, 'a'));
    ask("a", "a");
    std::vector<std::uint64_t> seen;
    ASSERT_TRUE(finish([&seen](std::uint64_t done, std::uint64_t total) {
        EXPECT_EQ(total, 5000U);
        seen.push_back(done);
        return true;
    }));
    EXPECT_EQ(seen, (std::vector<std::uint64_t>{0, 5000}));
}

INSTANTIATE_TEST_SUITE_P(BothWays, CopiesAheadTest, testing::Values(StandingStill::Allowed, StandingStill::Never));

}  // namespace
}  // namespace quillon
