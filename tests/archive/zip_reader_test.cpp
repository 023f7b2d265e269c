// SPDX-License-Identifier: MIT
#include "archive/zip_reader.h"

#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "archive/zip_bytes.h"
#include "archive/zip_writer.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "support/fake_surroundings.h"
#include "support/temp_folder.h"

namespace quillon::test {
namespace {

using testing::HasSubstr;

class ZipReaderTest : public testing::Test {
protected:
    ZipReaderTest() { std::filesystem::create_directory(target()); }

    NativePath archive() const { return folder_ / "db.zip"; }
    NativePath target() const { return folder_ / "target"; }

    // Nothing but the archive and the target folder may stand beside it.
    void expectNothingOutside() const {
        for (const auto& entry : std::filesystem::directory_iterator(folder_.path()))
            EXPECT_TRUE(entry.path() == archive() || entry.path() == target()) << entry.path();
    }
    void expectRefused(const std::string& words) const {
        const auto result = extractArchive(archive(), target());
        ASSERT_FALSE(result.has_value());
        EXPECT_THAT(result.error().text, HasSubstr(words));
        EXPECT_TRUE(std::filesystem::is_empty(target()));
        expectNothingOutside();
    }

    TempFolder folder_;
};

TEST_F(ZipReaderTest, FilesLandBelowTheTargetFolder) {
    writeZip(archive(), {{"Database/", "", 0, true}, {"Database/jpg.dat", "1"}, {"Settings/SkipList.dat", "2"}});
    const auto result = extractArchive(archive(), target());
    ASSERT_TRUE(result.has_value()) << result.error().text;
    EXPECT_EQ(result->files.size(), 2U);
    EXPECT_EQ(folder_.read("target/Database/jpg.dat"), "1");
    EXPECT_EQ(folder_.read("target/Settings/SkipList.dat"), "2");
    expectNothingOutside();
}

TEST_F(ZipReaderTest, NamesOfAnyCaseLandUnderTheSpellingOfThePaths) {
    writeZip(archive(), {{"DATABASE/JPG.DAT", "1"},
                         {"settings/skiplist.dat", "2"},
                         {"settings/COMMONHEADERS.DAT", "3"},
                         {"Settings/errors.dat", "4"},
                         {"Settings/Other.TXT", "5"}});
    ASSERT_TRUE(extractArchive(archive(), target()).has_value());
    EXPECT_EQ(folder_.read("target/Database/jpg.dat"), "1");
    EXPECT_EQ(folder_.read("target/Settings/SkipList.dat"), "2");
    EXPECT_EQ(folder_.read("target/Settings/CommonHeaders.dat"), "3");
    EXPECT_EQ(folder_.read("target/Settings/Errors.dat"), "4");
    EXPECT_EQ(folder_.read("target/Settings/Other.TXT"), "5");
}

TEST_F(ZipReaderTest, NamesThatLeadOutAreRefusedAndNothingIsWritten) {
    const std::vector<std::string> names = {"../evil.dat",
                                            "/evil.dat",
                                            "Database/../../evil.dat",
                                            "..\\evil.dat",
                                            "C:\\evil",
                                            "C:evil.dat",
                                            "Database\\jpg.dat",
                                            "a//b",
                                            "./a",
                                            "Database/..",
                                            "a/./b",
                                            "//server/share/evil.dat",
                                            "a\nb",
                                            "jpg.dat:two",
                                            std::string(256, 'n')};
    for (const auto& name : names) {
        SCOPED_TRACE(name);
        writeZip(archive(), {{"Database/good.dat", "good"}, {name, "evil"}});
        expectRefused("not allowed");
    }
}

TEST_F(ZipReaderTest, ABadNameIsRefusedEvenOutsideTheMask) {
    writeZip(archive(), {{"Settings/SkipList.dat", "good"}, {"../evil.dat", "evil"}});
    ExtractOptions options;
    options.mask = "skiplist.dat";
    EXPECT_FALSE(extractArchive(archive(), target(), options).has_value());
}

TEST_F(ZipReaderTest, LinksAndDevicesAreRefused) {
    for (const unsigned mode : {0120777U, 0020666U, 0060660U, 0010644U, 0140777U}) {
        SCOPED_TRACE(mode);
        writeZip(archive(), {{"Database/good.dat", "good"}, {"Database/link", "/etc/passwd", mode}});
        expectRefused("holds a link");
    }
}

TEST_F(ZipReaderTest, NamesThatOccurTwiceAreRefused) {
    writeZip(archive(), {{"Database/jpg.dat", "1"}, {"database/JPG.dat", "2"}});
    expectRefused("a name twice");
    writeZip(archive(), {{"Database", "file"}, {"Database/jpg.dat", "2"}});
    expectRefused("a name twice");
    writeZip(archive(), {{"a/b", "file"}, {"A/B/", "", 0, true}});
    expectRefused("a name twice");
    writeZipRenamed(archive(), {{"Database/jpg.dat", "1"}, {"Database/jpX.dat", "2"}}, "jpX", "jpg");
    expectRefused("a name twice");
}

TEST_F(ZipReaderTest, ABombEndsAtTheLimitOfRealBytes) {
    writeZip(archive(),
             {{"Database/a.dat", std::string(3'000'000, '0')}, {"Database/b.dat", std::string(3'000'000, '0')}});
    ExtractOptions options;
    options.sizeLimit = 5'000'000;
    const auto result = extractArchive(archive(), target(), options);
    ASSERT_FALSE(result.has_value());
    EXPECT_THAT(result.error().text, HasSubstr("unpacks to more than 5000000 bytes"));
    EXPECT_TRUE(std::filesystem::is_empty(target()));
    options.sizeLimit = 6'000'000;
    EXPECT_TRUE(extractArchive(archive(), target(), options).has_value());
}

TEST_F(ZipReaderTest, ADamagedArchiveWritesNothing) {
    writeZip(archive(), {{"Database/good.dat", "good"}, {"Database/jpg.dat", "0,FFD8,H"}});
    const auto bytes = readWholeFile(archive());
    ASSERT_TRUE(bytes.has_value());
    ASSERT_TRUE(saveWholeFile(archive(), bytes->substr(0, bytes->size() / 2)).has_value());
    EXPECT_FALSE(extractArchive(archive(), target()).has_value());
    auto flipped = *bytes;
    flipped[flipped.find("0,FFD8,H")] = '9';  // stored as it stands; the checksum finds it
    ASSERT_TRUE(saveWholeFile(archive(), flipped).has_value());
    expectRefused("CRC");
}

TEST_F(ZipReaderTest, AnEncryptedArchiveIsRefused) {
    writeZip(archive(), {{"Database/jpg.dat", "1"}}, "secret");
    expectRefused("assword");
}

TEST_F(ZipReaderTest, AMissingArchiveIsNotFoundAndAnotherFileIsNone) {
    EXPECT_EQ(extractArchive(archive(), target()).error().kind, ErrorKind::NotFound);
    folder_.write("db.zip", "no archive at all");
    EXPECT_FALSE(extractArchive(archive(), target()).has_value());
    EXPECT_FALSE(listArchive(archive()).has_value());
}

TEST_F(ZipReaderTest, ALinkInTheTargetThatLeadsOutIsNotFollowed) {
    std::filesystem::create_directory(folder_ / "other");
    std::filesystem::create_directory_symlink(folder_ / "other", target() / "Database");
    writeZip(archive(), {{"Database/sub/jpg.dat", "1"}});
    const auto result = extractArchive(archive(), target());
    ASSERT_FALSE(result.has_value());
    EXPECT_THAT(result.error().text, HasSubstr("a link leads out"));
    EXPECT_TRUE(std::filesystem::is_empty(folder_ / "other"));
}

TEST_F(ZipReaderTest, TheMaskTakesFilesByTheirLastName) {
    writeZip(archive(), {{"Database/jpg.dat", "1"}, {"Settings/skiplist.DAT", "2"}});
    ExtractOptions options;
    options.mask = "SkipList.dat";
    options.useFolders = false;
    const auto result = extractArchive(archive(), target(), options);
    ASSERT_TRUE(result.has_value());
    EXPECT_THAT(result->files, testing::ElementsAre(target() / "SkipList.dat"));
    EXPECT_FALSE(pathExists(target() / "Database"));
}

TEST_F(ZipReaderTest, ReplacedBytesStandUnderKeptWhenTheyDiffer) {
    Installation installation(folder_ / "app");
    installation.settings.localPath.assign(pageFromPath(target()));
    installation.refreshPathVariables();
    const FakeClock clock;
    KeptFiles kept(installation, clock);
    folder_.write("target/Database/jpg.dat", "old");
    folder_.write("target/Database/PNG.DAT", "old png");
    folder_.write("target/Database/gif.dat", "same");
    writeZip(archive(), {{"Database/jpg.dat", "new"}, {"Database/png.dat", "new png"}, {"Database/gif.dat", "same"}});
    ExtractOptions options;
    options.kept = &kept;
    ASSERT_TRUE(extractArchive(archive(), target(), options).has_value());
    EXPECT_EQ(folder_.read("target/Database/jpg.dat"), "new");
    EXPECT_EQ(folder_.read("target/Database/png.dat"), "new png");
    EXPECT_FALSE(pathExists(target() / "Database/PNG.DAT"));
    const std::string moment = "target/Kept/2026-11-15 10.20.30/Database/";
    EXPECT_EQ(folder_.read(moment + "jpg.dat"), "old");
    EXPECT_EQ(folder_.read(moment + "PNG.DAT"), "old png");
    EXPECT_FALSE(pathExists(folder_ / (moment + "gif.dat")));
}

TEST_F(ZipReaderTest, ExistingFilesStayWhenTheyAreToBeKept) {
    folder_.write("target/Database/JPG.dat", "mine");
    writeZip(archive(), {{"Database/jpg.dat", "1"}, {"Database/png.dat", "2"}});
    ExtractOptions options;
    options.existing = ExistingFiles::Keep;
    const auto result = extractArchive(archive(), target(), options);
    ASSERT_TRUE(result.has_value());
    EXPECT_EQ(result->alreadyThere, 1U);
    EXPECT_EQ(folder_.read("target/Database/JPG.dat"), "mine");
    EXPECT_FALSE(pathExists(target() / "Database/jpg.dat"));
    EXPECT_EQ(folder_.read("target/Database/png.dat"), "2");
}

TEST_F(ZipReaderTest, AFileThatIsNotHeldInMemoryIsTheSame) {
    const std::string bytes(300'000, 'x');
    writeZip(archive(), {{"Database/jpg.dat", bytes}, {"small.dat", "1"}});
    folder_.write("target/Database/jpg.dat", "of the user");
    Installation installation(folder_ / "app");
    installation.settings.localPath.assign(pageFromPath(target()));
    installation.refreshPathVariables();
    const FakeClock clock;
    KeptFiles kept(installation, clock);
    ExtractOptions options;
    options.heldBytes = 1000;
    options.kept = &kept;
    const auto result = extractArchive(archive(), target(), options);
    ASSERT_TRUE(result.has_value()) << result.error().text;
    EXPECT_EQ(folder_.read("target/Database/jpg.dat"), bytes);
    EXPECT_EQ(folder_.read("target/small.dat"), "1");
    EXPECT_EQ(folder_.read("target/Kept/2026-11-15 10.20.30/Database/jpg.dat"), "of the user");
    EXPECT_EQ(listEntries(target())->size(), 3U) << "no temporary file stays";
}

// In KiB; the greatest since the last `forgetPeak`.
long peakMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:"))
            return std::stol(line.substr(6));
    }
    return 0;
}

bool forgetPeak() {
    std::ofstream refs("/proc/self/clear_refs");
    refs << 5 << std::flush;
    return refs.good();
}

TEST_F(ZipReaderTest, AHostileFileTakesNoMoreMemoryThanAnyOther) {
    constexpr std::uint64_t size = 160UL * 1024 * 1024;
    folder_.write("zeros", "");
    std::filesystem::resize_file(folder_ / "zeros", size);  // takes no room
    {
        ZipWriter writer(archive(), {});
        ASSERT_TRUE(writer.add(folder_ / "zeros", "Database/zeros.dat"));
        ASSERT_TRUE(writer.finish());
    }
    if (!forgetPeak())
        GTEST_SKIP() << "the system does not measure memory here";
    const long before = peakMemory();
    ASSERT_TRUE(extractArchive(archive(), target()).has_value());
    EXPECT_LT(peakMemory() - before, 64 * 1024);
    EXPECT_EQ(std::filesystem::file_size(target() / "Database/zeros.dat"), size);
}

TEST_F(ZipReaderTest, TheListHasEveryNameAsItStands) {
    writeZip(archive(), {{"Database/", "", 0, true}, {"DATABASE/jpg.dat", "1"}, {"../x", "2"}});
    const auto names = listArchive(archive());
    ASSERT_TRUE(names.has_value());
    EXPECT_THAT(*names, testing::ElementsAre("Database/", "DATABASE/jpg.dat", "../x"));
}

TEST_F(ZipReaderTest, ProgressCountsTheNamesTooAndEndsAtOneHundred) {
    writeZip(archive(), {{"a", "1"}, {"b", "2"}, {"c", "3"}, {"d", "4"}});
    std::vector<double> seen;
    std::vector<std::size_t> named;
    ExtractOptions options;
    options.progress = [&](double percent) {
        seen.push_back(percent);
        named.push_back(listFiles(target()).value_or(std::vector<std::string>{}).size());
    };
    ASSERT_TRUE(extractArchive(archive(), target(), options).has_value());
    EXPECT_THAT(seen, testing::ElementsAre(12.5, 25.0, 37.5, 50.0, 62.5, 75.0, 87.5, 100.0));
    EXPECT_THAT(named, testing::ElementsAre(0, 0, 0, 0, 1, 2, 3, 4));
    seen.clear();
    ASSERT_TRUE(extractArchive(archive(), target(), options).has_value());
    EXPECT_THAT(seen, testing::ElementsAre(25.0, 50.0, 75.0, 100.0)) << "a file that is replaced has both at once";
}

}  // namespace
}  // namespace quillon::test
