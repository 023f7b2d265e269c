// SPDX-License-Identifier: MIT
// What becomes of a file's bytes on their way: holes, gaps, attributes and the hash.
#include "platform/copy_file.h"

#include <cerrno>
#include <fstream>

#include <sys/xattr.h>

#include <gtest/gtest.h>

#include "support/failing_files.h"
#include "support/posix_files.h"
#include "support/temp_folder.h"

namespace quillon {
namespace {

using test::FailingFiles;
using test::TempFolder;

class CopyTransferTest : public testing::Test {
protected:
    // The copy of "from" to "to", and what is known of it.
    tl::expected<CopyFacts, CopyError> copy(CopyManner manner) {
        FileCopier copier(manner);
        const auto goOn = [](std::uint64_t, std::uint64_t) { return true; };
        auto prepared = copier.prepare((temp / "from").native(), (temp / "to").native(), 1'000'000'000, goOn);
        if (!prepared)
            return tl::unexpected<CopyError>(prepared.error());
        EXPECT_TRUE(prepared->file.arrive());
        return prepared->facts;
    }
    static std::string hashOf(const std::string& bytes) {
        Sha256 hash;
        hash.add(bytes);
        return hexText(hash.finish());
    }
    TempFolder temp;
};

TEST_F(CopyTransferTest, TheHashIsThatOfTheBytesHolesIncluded) {
    const std::string path = temp.write("from", "begin").native();
    std::filesystem::resize_file(path, 3'000'000);
    std::ofstream(path, std::ios::in | std::ios::out).seekp(2'000'000) << "middle";
    const auto facts = copy({.hash = true});
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->size, 3'000'000U);
    EXPECT_EQ(hexText(*facts->hash), hashOf(temp.read("from")));
    EXPECT_EQ(temp.read("to"), temp.read("from"));
    EXPECT_LT(test::statOf(temp / "to").st_blocks * 512, 1'000'000) << "holes stay holes";
}

TEST_F(CopyTransferTest, WithoutSalvageAReadErrorIsTheSourcesWithItsPlace) {
    temp.write("from", std::string(600'000, 'x'));
    FailingFiles disk;
    disk.failAt(2, {EIO}, "read");
    const auto facts = copy({.hash = true});
    ASSERT_FALSE(facts);
    EXPECT_EQ(facts.error().text(), "source: " + (temp / "from").native() + ": Input/output error at byte 262,144");
    EXPECT_FALSE(std::filesystem::exists(temp / "to"));
}

TEST_F(CopyTransferTest, SalvageFillsWhatDoesNotComeWithZeros) {
    const std::string bytes(600'000, 'x');
    temp.write("from", bytes);
    FailingFiles disk;
    disk.failAt(2, {EIO, true}, "read");  // all behind the first piece
    const auto facts = copy({.hash = true, .salvage = true});
    ASSERT_TRUE(facts) << facts.error().text();
    const std::string salvaged = bytes.substr(0, 262'144) + std::string(600'000 - 262'144, '\0');
    EXPECT_EQ(facts->gaps, (ByteRanges{{262'144, 600'000}}));
    EXPECT_EQ(facts->size, 600'000U);
    EXPECT_EQ(temp.read("to"), salvaged);
    EXPECT_EQ(hexText(*facts->hash), hashOf(salvaged)) << "of the copy as it is";
}

TEST_F(CopyTransferTest, AGapIsNoLargerThanABlock) {
    std::string bytes(600'000, 'x');
    temp.write("from", bytes);
    FailingFiles disk;
    // The second piece fails, then the first block of it; the others come.
    int reads = 0;
    disk.ahead("read", [&] {
        if (++reads == 2)
            disk.failAt(1, {EIO}, "read");
        if (reads == 3)
            disk.failAt(1, {EIO}, "read");
    });
    const auto facts = copy({.hash = true, .salvage = true});
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->gaps, (ByteRanges{{262'144, 266'240}}));
    std::fill_n(bytes.begin() + 262'144, 4096, '\0');
    EXPECT_EQ(temp.read("to"), bytes);
}

// Writes down what passes by.
class RecordingWatch final : public ByteWatch {
public:
    explicit RecordingWatch(std::string& seen) : seen_(seen) {}
    void begin() override { seen_ += "begin"; }
    void add(std::string_view bytes) override { note("bytes", bytes.size()); }
    void addHole(std::uint64_t bytes) override { note("hole", bytes); }
    void addUnread(std::uint64_t bytes) override { note("unread", bytes); }
    ByteRanges end() override {
        seen_ += ", end";
        return {{1, 2}};
    }

private:
    void note(const char* what, std::uint64_t bytes) {
        seen_ += std::string(", ") + what + " " + std::to_string(bytes);
    }
    std::string& seen_;
};

TEST_F(CopyTransferTest, AWatchSeesBytesHolesAndGapsOfWhatIsHashed) {
    std::string seen;
    const ByteWatchMaker watch = [&seen] { return std::make_unique<RecordingWatch>(seen); };
    temp.write("from", std::string(300'000, 'x'));
    std::filesystem::resize_file(temp / "from", 3'000'000);
    FailingFiles disk;
    disk.failAt(2, {EIO, true}, "read");  // all behind the first piece
    const auto facts = copy({.hash = true, .salvage = true, .watch = watch});
    ASSERT_TRUE(facts) << facts.error().text();
    EXPECT_EQ(facts->unread, (ByteRanges{{1, 2}})) << "what the watch says";
    EXPECT_TRUE(seen.starts_with("begin, bytes 262144, unread 4096, unread ")) << seen;
    EXPECT_TRUE(seen.ends_with(", end")) << seen;
    EXPECT_NE(seen.find("hole "), std::string::npos) << seen;
}

TEST_F(CopyTransferTest, WithoutAHashNobodyWatches) {
    std::string seen;
    temp.write("from", "bytes");
    const auto facts = copy({.watch = [&seen] { return std::make_unique<RecordingWatch>(seen); }});
    ASSERT_TRUE(facts);
    EXPECT_FALSE(facts->unread);
    EXPECT_EQ(seen, "");
}

TEST_F(CopyTransferTest, AnErrorOfTheTargetIsNoGap) {
    temp.write("from", std::string(600'000, 'x'));
    FailingFiles disk;
    disk.failAt(2, {ENOSPC}, "write");
    const auto facts = copy({.hash = true, .salvage = true});
    ASSERT_FALSE(facts);
    EXPECT_EQ(facts.error().text(), "target: " + (temp / "to").native() + ": No space left on device at byte 262,144");
}

TEST_F(CopyTransferTest, AttributesOfTheUserGoAlong) {
    const auto from = temp.write("from", "bytes");
    if (::setxattr(from.c_str(), "user.quillon", "value", 5, 0) != 0)
        GTEST_SKIP() << "the volume knows no extended attributes";
    const auto facts = copy({.attributes = true});
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->lostAttributes, 0U);
    char value[8] = {};
    EXPECT_EQ(::getxattr((temp / "to").c_str(), "user.quillon", value, sizeof(value)), 5);
    EXPECT_STREQ(value, "value");
    FailingFiles disk;
    disk.refuse("setAttribute", ENOTSUP);
    const auto without = copy({.attributes = true});
    ASSERT_TRUE(without) << "a target that cannot have them gets the file all the same";
    EXPECT_EQ(without->lostAttributes, 1U);
}

}  // namespace
}  // namespace quillon
