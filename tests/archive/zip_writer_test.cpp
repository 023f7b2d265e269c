// SPDX-License-Identifier: MIT
#include "archive/zip_writer.h"

#include <algorithm>
#include <filesystem>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "archive/zip_reader.h"
#include "platform/folders.h"
#include "support/fake_surroundings.h"
#include "support/temp_folder.h"

namespace quillon::test {
namespace {

using testing::ElementsAre;

class ZipWriterTest : public testing::Test {
protected:
    NativePath archive() const { return folder_ / "1234.zip"; }
    std::vector<bool> equal(const ZipWriter& writer, const ZipOptions& options = {}) const {
        return equalToFiles(archive(), writer.inputs(), options);
    }

    TempFolder folder_;
};

TEST_F(ZipWriterTest, TheArchiveHoldsTheFilesByteForByte) {
    ZipWriter writer(archive(), {});
    ASSERT_TRUE(writer.add(folder_.write("a.csv", "row\n"), "a.csv").has_value());
    ASSERT_TRUE(writer.add(folder_.write("empty.csv", ""), "empty.csv").has_value());
    ASSERT_TRUE(writer.add(folder_.write("big.csv", std::string(300'000, 'x')), "sub/big.csv").has_value());
    EXPECT_FALSE(pathExists(archive()));
    ASSERT_TRUE(writer.finish().has_value());
    EXPECT_THAT(*listArchive(archive()), ElementsAre("a.csv", "empty.csv", "sub/big.csv"));
    EXPECT_THAT(equal(writer), ElementsAre(true, true, true));
    EXPECT_EQ(listEntries(folder_.path())->size(), 4U);
}

TEST_F(ZipWriterTest, TheComparisonFindsEveryDifference) {
    ZipWriter writer(archive(), {});
    for (const char* name : {"longer.csv", "shorter.csv", "other.csv", "gone.csv"})
        ASSERT_TRUE(writer.add(folder_.write(name, "row"), name).has_value());
    ASSERT_TRUE(writer.finish().has_value());
    folder_.write("longer.csv", "row2");
    folder_.write("shorter.csv", "ro");
    folder_.write("other.csv", "r0w");
    std::filesystem::remove(folder_ / "gone.csv");
    EXPECT_THAT(equal(writer), ElementsAre(false, false, false, false));
    std::filesystem::remove(archive());
    EXPECT_THAT(equal(writer), ElementsAre(false, false, false, false));
}

TEST_F(ZipWriterTest, APasswordEncryptsAndIsNeededToReadBack) {
    ZipOptions options;
    options.password =
        "s\xC3\xA9"
        "cret";
    ZipWriter writer(archive(), options);
    ASSERT_TRUE(writer.add(folder_.write("a.csv", "row that can be found"), "a.csv").has_value());
    ASSERT_TRUE(writer.finish().has_value());
    EXPECT_EQ(folder_.read("1234.zip").find("row that"), std::string::npos);
    EXPECT_THAT(equal(writer), ElementsAre(false));
    EXPECT_THAT(equal(writer, options), ElementsAre(true));
    options.password = "wrong";
    EXPECT_THAT(equal(writer, options), ElementsAre(false));
}

TEST_F(ZipWriterTest, ASecondFileOfOneNameGetsANumber) {
    ZipWriter writer(archive(), {});
    ASSERT_TRUE(writer.add(folder_.write("x/a.csv", "1"), "a.csv").has_value());
    ASSERT_TRUE(writer.add(folder_.write("y/a.csv", "2"), "a.csv").has_value());
    ASSERT_TRUE(writer.add(folder_.write("z/a.csv", "3"), "a.csv").has_value());
    ASSERT_TRUE(writer.finish().has_value());
    EXPECT_THAT(*listArchive(archive()), ElementsAre("a.csv", "a (2).csv", "a (3).csv"));
    EXPECT_THAT(equal(writer), ElementsAre(true, true, true));
}

TEST_F(ZipWriterTest, NamesOfAnyBytesAreStored) {
    ZipWriter writer(archive(), {});
    ASSERT_TRUE(writer.add(folder_.write("\xFF.csv", "1"), "\xFF.csv").has_value());
    ASSERT_TRUE(writer.add(folder_.write("\xC3\x84.csv", "2"), "\xC3\x84.csv").has_value());
    ASSERT_TRUE(writer.finish().has_value());
    EXPECT_THAT(equal(writer), ElementsAre(true, true));
}

TEST_F(ZipWriterTest, NoNameLeadsOutOfAFolderOrHoldsAControlCharacter) {
    ZipWriter writer(archive(), {});
    for (const char* name : {"..\\..\\evil.csv", "\x1B[31m\xC3\x84.csv", "a\nb.csv", "a\tb.csv"})
        ASSERT_TRUE(writer.add(folder_.write(name, name), name).has_value()) << name;
    ASSERT_TRUE(writer.finish().has_value());
    EXPECT_THAT(*listArchive(archive()), ElementsAre(".._.._evil.csv", "_[31m\xC3\x84.csv", "a_b.csv", "a_b (2).csv"));
    EXPECT_THAT(equal(writer), ElementsAre(true, true, true, true));
    EXPECT_TRUE(extractArchive(archive(), folder_ / "out").has_value());
}

TEST_F(ZipWriterTest, AFileThatCannotBeTakenIsAFailureAndTheOthersStay) {
    ZipWriter writer(archive(), {});
    ASSERT_TRUE(writer.add(folder_.write("a.csv", "1"), "a.csv").has_value());
    EXPECT_EQ(writer.add(folder_ / "missing.csv", "missing.csv").error().kind, ErrorKind::NotFound);
    EXPECT_EQ(writer.add(folder_.path(), "folder").error().kind, ErrorKind::PermissionDenied);
    ASSERT_TRUE(writer.finish().has_value());
    EXPECT_THAT(*listArchive(archive()), ElementsAre("a.csv"));
}

TEST_F(ZipWriterTest, WithoutFilesThereIsNoArchive) {
    ZipWriter writer(archive(), {});
    EXPECT_TRUE(writer.finish().has_value());
    EXPECT_TRUE(std::filesystem::is_empty(folder_.path()));
}

TEST_F(ZipWriterTest, AFileThatVanishesBeforeTheWriteLeavesNoArchive) {
    folder_.write("1234.zip", "old archive");
    {
        ZipWriter writer(archive(), {});
        ASSERT_TRUE(writer.add(folder_.write("a.csv", "1"), "a.csv").has_value());
        ASSERT_TRUE(writer.add(folder_.write("b.csv", "2"), "b.csv").has_value());
        std::filesystem::remove(folder_ / "b.csv");
        EXPECT_FALSE(writer.finish().has_value());
    }
    EXPECT_EQ(folder_.read("1234.zip"), "old archive");
    EXPECT_EQ(listEntries(folder_.path())->size(), 2U);
}

TEST_F(ZipWriterTest, AMissingFolderIsAFailure) {
    ZipWriter writer(folder_ / "missing/1234.zip", {});
    const auto added = writer.add(folder_.write("a.csv", "1"), "a.csv");
    EXPECT_FALSE(added && writer.finish());
}

TEST_F(ZipWriterTest, AnArchiveUnderTheNameIsKeptWhenItIsReplaced) {
    Installation installation(folder_ / "app");
    installation.settings.localPath.assign(pageFromPath(folder_.path()));
    installation.refreshPathVariables();
    const FakeClock clock;
    KeptFiles kept(installation, clock);
    folder_.write("1234.zip", "old archive");
    ZipOptions options;
    options.kept = &kept;
    ZipWriter writer(archive(), options);
    ASSERT_TRUE(writer.add(folder_.write("a.csv", "1"), "a.csv").has_value());
    ASSERT_TRUE(writer.finish().has_value());
    EXPECT_EQ(folder_.read("Kept/2026-11-15 10.20.30/1234.zip"), "old archive");
    EXPECT_THAT(equal(writer), ElementsAre(true));
}

TEST_F(ZipWriterTest, ProgressRunsToOneHundredAndTheEventLoopIsTurned) {
    std::vector<double> seen;
    CountingLoop loop;
    ZipOptions options;
    options.loop = &loop;
    options.progress = [&seen](double percent) { seen.push_back(percent); };
    ZipWriter writer(archive(), options);
    std::mt19937 random(1);
    std::string bytes(1'000'000, '\0');  // such as no packer makes smaller
    std::generate(bytes.begin(), bytes.end(), [&random] { return static_cast<char>(random()); });
    ASSERT_TRUE(writer.add(folder_.write("a.csv", bytes), "a.csv").has_value());
    ASSERT_TRUE(writer.finish().has_value());
    ASSERT_FALSE(seen.empty());
    EXPECT_DOUBLE_EQ(seen.back(), 100.0);
    EXPECT_TRUE(std::is_sorted(seen.begin(), seen.end()));
    EXPECT_GT(loop.turns, 50);
}

// One large list behind many small ones: the bar goes by bytes.
TEST_F(ZipWriterTest, ProgressIsThatOfTheBytesOfAllFiles) {
    std::vector<double> percents;
    ZipOptions options;
    options.progress = [&percents](double percent) { percents.push_back(percent); };
    ZipWriter writer(archive(), options);
    for (int i = 0; i < 9; ++i) {
        const std::string name = std::to_string(i) + ".csv";
        ASSERT_TRUE(writer.add(folder_.write(name, "row"), name));
    }
    std::mt19937 random(1);
    std::string large(4'000'000, '\0');  // such as no packer makes smaller: steps are those of what is written
    std::generate(large.begin(), large.end(), [&random] { return static_cast<char>(random()); });
    ASSERT_TRUE(writer.add(folder_.write("large.csv", large), "large.csv"));
    ASSERT_TRUE(writer.finish());
    EXPECT_TRUE(std::ranges::is_sorted(percents));
    const auto between = std::ranges::count_if(percents, [](double percent) { return percent > 1 && percent < 90; });
    EXPECT_GT(between, 10) << "nearly all steps are those of the large file";
}

// The two bits in which the format tells how hard the packer tried: both off for the middle levels.
TEST_F(ZipWriterTest, FilesArePackedWithTheMiddleEffort) {
    ZipWriter writer(archive(), {});
    ASSERT_TRUE(writer.add(folder_.write("a.csv", std::string(10'000, 'x')), "a.csv"));
    ASSERT_TRUE(writer.finish());
    const std::string bytes = folder_.read("1234.zip");
    ASSERT_EQ(bytes.substr(0, 4), "PK\x03\x04");
    EXPECT_EQ(bytes[8], 8) << "deflated";
    EXPECT_EQ(bytes[6] & 0x06, 0);
}

TEST_F(ZipWriterTest, ACancelledArchiveLeavesNothing) {
    ZipOptions options;
    options.cancelled = [] { return true; };
    {
        ZipWriter writer(archive(), options);
        ASSERT_TRUE(writer.add(folder_.write("a.csv", std::string(4'000'000, 'x')), "a.csv"));
        EXPECT_FALSE(writer.finish());
    }
    EXPECT_THAT(*listEntries(folder_.path()), ElementsAre("a.csv"));
}

}  // namespace
}  // namespace quillon::test
