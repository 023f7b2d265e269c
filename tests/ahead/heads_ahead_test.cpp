// SPDX-License-Identifier: MIT
// Heads asked for ahead: what a disk holds up is left to threads, and every head is that of its own file all the same.
// Files of /proc stand for a volume whose answers have to be waited for: it is none of a disk.
#include "ahead/heads_ahead.h"

#include <filesystem>
#include <latch>

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace quillon {
namespace {

using std::chrono::milliseconds;
using test::TempFolder;

constexpr milliseconds kLong{60'000};

std::string textOf(const HeaderBytes& head) {
    return {head.data(), head.size()};
}

std::string withBlanks(std::string bytes) {
    bytes.resize(kHeaderBytes, ' ');
    return bytes;
}

// Takes the first head and forgets it.
Result<std::string> take(HeadsAhead& heads, const std::string& path) {
    EXPECT_TRUE(heads.firstArrives(kLong)) << path;
    HeaderBytes head;
    head.fill('#');
    const auto read = heads.readFirst(head);
    heads.dropFirst();
    if (!read)
        return failure(read.error());
    return textOf(head);
}

std::size_t openFiles() {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) ++count;
    return count;
}

// Gives the path as the head, but only when it may.
class HeldReader final : public HeadReader {
public:
    explicit HeldReader(std::latch& mayRead) : mayRead_(mayRead) {}
    Result<std::size_t> readHead(std::string_view nativePath, HeaderBytes& head) override {
        mayRead_.wait();
        head.fill(' ');
        std::copy(nativePath.begin(), nativePath.end(), head.begin());
        return nativePath.size();
    }

private:
    std::latch& mayRead_;
};

class HeadsAheadTest : public testing::TestWithParam<StandingStill> {
protected:
    TempFolder temp;
    HeadsAhead heads{GetParam()};
};

TEST_P(HeadsAheadTest, EveryHeadIsThatOfItsFile) {
    std::vector<std::string> paths;
    paths.reserve(150);
    for (int i = 0; i < 150; ++i)
        paths.push_back(temp.write(std::to_string(i % 7) + "/" + std::to_string(i), std::to_string(i)).native());
    std::size_t next = 0;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        for (; next < paths.size() && heads.asked() < 40; ++next) heads.ask(paths[next]);
        EXPECT_EQ(take(heads, paths[i]), withBlanks(std::to_string(i)));
    }
    EXPECT_EQ(heads.asked(), 0U);
}

TEST_P(HeadsAheadTest, AFileThatCannotBeOpenedIsAFailureOfItsOwn) {
    const auto good = temp.write("good", "G").native();
    const auto none = (temp / "none").native();
    heads.ask(none);
    heads.ask(good);
    heads.ask(temp.path().native());
    const auto missing = take(heads, none);
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error().kind, ErrorKind::NotFound);
    EXPECT_EQ(take(heads, good), withBlanks("G"));
    EXPECT_FALSE(take(heads, temp.path().native())) << "a folder is no file";
}

TEST_P(HeadsAheadTest, AHeadThatWasNotAskedForIsReadInLine) {
    const auto one = temp.write("one", "1").native();
    const auto two = temp.write("two", "2").native();
    HeaderBytes head;
    ASSERT_TRUE(heads.readHead(one, head));
    EXPECT_EQ(textOf(head), withBlanks("1"));
    heads.ask(one);
    ASSERT_TRUE(heads.readHead(two, head));
    EXPECT_EQ(textOf(head), withBlanks("2"));
    EXPECT_EQ(take(heads, one), withBlanks("1"));
}

TEST_P(HeadsAheadTest, AFileIsReadAsItIsWhenItIsAskedFor) {
    const auto path = temp.write("a", "before").native();
    heads.ask(path);
    EXPECT_TRUE(heads.firstArrives(kLong));
    temp.write("a", "behind");
    EXPECT_EQ(take(heads, path), withBlanks("before"));
}

TEST_P(HeadsAheadTest, NothingStaysOpenBehindARelease) {
    const std::size_t before = openFiles();
    heads.ask(temp.write("a", "A").native());
    heads.ask("/proc/version");
    heads.release();
    EXPECT_EQ(heads.asked(), 0U);
    EXPECT_EQ(openFiles(), before);
    heads.ask((temp / "a").native());
    EXPECT_EQ(take(heads, (temp / "a").native()), withBlanks("A")) << "it can be used again";
}

INSTANTIATE_TEST_SUITE_P(BothWaits, HeadsAheadTest, testing::Values(StandingStill::Allowed, StandingStill::Never),
                         [](const auto& waiting) {
                             return waiting.param == StandingStill::Never ? "FirstWaitNever" : "FirstWaitAllowed";
                         });

TEST(HeadsAhead, HeadsInMemoryAreNotWorthAskingAhead) {
    const TempFolder temp;
    const auto path = temp.write("a", "A").native();
    HeadsAhead heads(StandingStill::Never);
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(heads.worthAsking(), 1U);
        heads.ask(path);
        EXPECT_EQ(take(heads, path), withBlanks("A"));
    }
}

TEST(HeadsAhead, ASlowHeadMakesManyWorthAskingUntilTheRelease) {
    const TempFolder temp;
    const auto quick = temp.write("a", "A").native();
    std::latch mayRead(0);
    HeadsAhead heads(StandingStill::Never, [&] { return std::make_unique<HeldReader>(mayRead); });
    heads.ask(quick);
    heads.dropFirst();
    heads.ask("/proc/version");
    EXPECT_EQ(heads.worthAsking(), HeadsAhead::kMost);
    EXPECT_EQ(take(heads, "/proc/version"), withBlanks("/proc/version")) << "a thread read it";
    heads.release();
    EXPECT_EQ(heads.worthAsking(), 1U);
}

TEST(HeadsAhead, WhoAsksIsNeverHeldByAHeadThatHangs) {
    std::latch mayRead(1);
    HeadsAhead heads(StandingStill::Never, [&] { return std::make_unique<HeldReader>(mayRead); });
    std::vector<std::string> paths;
    for (std::size_t i = 0; i < HeadsAhead::kMost; ++i) paths.push_back("/proc/" + std::to_string(i));
    for (const auto& path : paths) heads.ask(path);
    EXPECT_FALSE(heads.firstArrives(milliseconds(0)));
    EXPECT_FALSE(heads.firstArrives(milliseconds(1)));
    mayRead.count_down();
    for (const auto& path : paths) EXPECT_EQ(take(heads, path), withBlanks(path));
}

}  // namespace
}  // namespace quillon
