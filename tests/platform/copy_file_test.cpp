// SPDX-License-Identifier: MIT
// Copies: equal bytes, times, mode and holes; complete or absent; an older target survives every failure.
#include "platform/copy_file.h"

#include <algorithm>
#include <random>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/folders.h"
#include "platform/whole_file.h"
#include "support/posix_files.h"
#include "support/temp_folder.h"

namespace quillon {
namespace {

using test::namesIn;
using test::statOf;
using test::TempFolder;

bool goOn(std::uint64_t /*done*/, std::uint64_t /*total*/) {
    return true;
}

std::string randomBytes(std::size_t size) {
    std::mt19937_64 random(size);
    std::string bytes(size, '\0');
    for (char& c : bytes) c = static_cast<char>(static_cast<unsigned char>(random() >> 24U));
    return bytes;
}

class CopyTest : public testing::Test {
protected:
    CopyTest() {
        std::filesystem::create_directory(temp / "from");
        std::filesystem::create_directory(temp / "to");
    }
    [[nodiscard]] tl::expected<void, CopyError> copy(const std::string& from, const std::string& to,
                                                     const CopyProgress& progress = goOn) {
        return copier.copy((temp / from).native(), (temp / to).native(), progress);
    }

    TempFolder temp;
    FileCopier copier;
};

TEST_F(CopyTest, BytesOfEveryLengthAreEqual) {
    for (const std::size_t length : {0U, 1U, 4095U, 4096U, 262144U, 262145U, 3000000U}) {
        const std::string bytes = randomBytes(length);
        temp.write("from/a", bytes);
        ASSERT_TRUE(copy("from/a", "to/a")) << length;
        EXPECT_EQ(temp.read("to/a"), bytes) << length;
    }
    EXPECT_EQ(namesIn(temp / "to"), "a");
}

TEST_F(CopyTest, TimesAndModeAreThoseOfTheSource) {
    for (const unsigned mode : {0644U, 0400U, 0755U, 0600U}) {
        const auto path = temp.write("from/a", "bytes");
        test::setTimes(path, 1000000000, 1100000000, 123456700);
        std::filesystem::permissions(path, std::filesystem::perms(mode));
        ASSERT_TRUE(copy("from/a", "to/a"));
        const auto info = statOf(temp / "to/a");
        EXPECT_EQ(info.st_mode & 07777U, mode);
        EXPECT_EQ(info.st_mtim.tv_sec, 1100000000);
        EXPECT_EQ(info.st_mtim.tv_nsec, 123456700);
        EXPECT_EQ(info.st_atim.tv_sec, 1000000000);
        std::filesystem::remove(path);
    }
}

void writeAt(const NativePath& path, off_t offset, const std::string& bytes) {
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT, 0644);
    EXPECT_EQ(::pwrite(file, bytes.data(), bytes.size(), offset), static_cast<ssize_t>(bytes.size()));
    ::close(file);
}

TEST_F(CopyTest, HolesStayHolesWhereverTheyLie) {
    constexpr off_t mega = 1024L * 1024;
    temp.write("from/a", "");
    writeAt(temp / "from/a", 8 * mega, randomBytes(65536));  // a hole ahead of the data, between, and behind
    writeAt(temp / "from/a", 20 * mega, randomBytes(65536));
    std::filesystem::resize_file(temp / "from/a", 40 * mega);
    const auto source = statOf(temp / "from/a");
    if (source.st_blocks * 512 > 10 * mega)
        GTEST_SKIP() << "the volume of the temporary folder has no holes";
    ASSERT_TRUE(copy("from/a", "to/a"));
    const auto target = statOf(temp / "to/a");
    EXPECT_EQ(target.st_size, 40 * mega);
    EXPECT_LE(target.st_blocks, source.st_blocks + 64);
    EXPECT_EQ(readWholeFile(temp / "to/a").value(), readWholeFile(temp / "from/a").value());
}

TEST_F(CopyTest, AFileThatIsAllHoleKeepsItsLength) {
    temp.write("from/a", "");
    std::filesystem::resize_file(temp / "from/a", 5000000);
    ASSERT_TRUE(copy("from/a", "to/a"));
    EXPECT_EQ(temp.read("to/a"), std::string(5000000, '\0'));
}

TEST_F(CopyTest, AnExistingTargetIsReplacedWhole) {
    temp.write("from/a", "new");
    temp.write("to/a", "an older and longer target");
    ASSERT_TRUE(copy("from/a", "to/a"));
    EXPECT_EQ(temp.read("to/a"), "new");
}

TEST_F(CopyTest, ProgressStartsAtZeroAndEndsAtTheLength) {
    temp.write("from/a", randomBytes(20UL * 1024 * 1024));
    std::vector<std::uint64_t> seen;
    ASSERT_TRUE(copy("from/a", "to/a", [&seen](std::uint64_t done, std::uint64_t total) {
        EXPECT_EQ(total, 20U * 1024 * 1024);
        seen.push_back(done);
        return true;
    }));
    ASSERT_GE(seen.size(), 3U) << "a large file is copied in pieces, so that a cancel is seen soon";
    EXPECT_EQ(seen.front(), 0U);
    EXPECT_EQ(seen.back(), 20U * 1024 * 1024);
    EXPECT_TRUE(std::is_sorted(seen.begin(), seen.end()));
}

TEST_F(CopyTest, ACancelMidFileLeavesTheOlderTargetAndNothingElse) {
    temp.write("from/a", randomBytes(20UL * 1024 * 1024));
    temp.write("to/a", "older target");
    int calls = 0;
    const auto copied = copy("from/a", "to/a", [&calls](std::uint64_t, std::uint64_t) { return ++calls < 2; });
    ASSERT_FALSE(copied);
    EXPECT_EQ(copied.error().side, CopySide::Cancelled);
    EXPECT_EQ(copied.error().text(), "cancelled");
    EXPECT_EQ(temp.read("to/a"), "older target");
    EXPECT_EQ(namesIn(temp / "to"), "a");
}

TEST_F(CopyTest, ACancelAtTheStartLeavesNothing) {
    temp.write("from/a", "bytes");
    EXPECT_FALSE(copy("from/a", "to/a", [](std::uint64_t, std::uint64_t) { return false; }));
    EXPECT_EQ(namesIn(temp / "to"), "");
}

TEST_F(CopyTest, AFailureNamesItsSideAndTheOlderTargetSurvives) {
    temp.write("to/a", "older target");
    const auto missing = copy("from/none", "to/a");
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error().side, CopySide::Source);
    EXPECT_EQ(missing.error().text().rfind("source: ", 0), 0U);

    temp.write("from/a", "bytes");
    const auto nowhere = copy("from/a", "no such folder/a");
    ASSERT_FALSE(nowhere);
    EXPECT_EQ(nowhere.error().side, CopySide::Target);
    EXPECT_EQ(nowhere.error().text().rfind("target: ", 0), 0U);

    temp.write("to/folder/x", "");
    const auto folder = copy("from/a", "to/folder");
    ASSERT_FALSE(folder);
    EXPECT_EQ(folder.error().side, CopySide::Target);
    EXPECT_EQ(temp.read("to/a"), "older target");
    EXPECT_EQ(namesIn(temp / "to"), "a folder");
}

TEST_F(CopyTest, OnlyRegularFilesAreCopied) {
    test::makeFifo(temp / "from/fifo");
    temp.write("from/a", "bytes");
    std::filesystem::create_symlink("a", temp / "from/link");
    EXPECT_FALSE(copy("from/fifo", "to/fifo"));
    EXPECT_FALSE(copy("from/link", "to/link"));
    EXPECT_FALSE(copy("from", "to/folder"));
    EXPECT_EQ(namesIn(temp / "to"), "");
}

TEST_F(CopyTest, AnUnreadableSourceLeavesTheOlderTarget) {
    temp.write("from/a", "bytes");
    temp.write("to/a", "older target");
    std::filesystem::permissions(temp / "from/a", std::filesystem::perms::none);
    std::filesystem::permissions(temp / "to", std::filesystem::perms::all);
    EXPECT_TRUE(test::asOrdinaryUser(temp.path(), [this] {
        const auto copied = copy("from/a", "to/a");
        return !copied && copied.error().side == CopySide::Source;
    }));
    EXPECT_EQ(temp.read("to/a"), "older target");
}

TEST_F(CopyTest, NamesOfAnyBytesAndOfFullLengthAreCopied) {
    for (const auto& name : {std::string("a,b>c\n\r\\\xFF"), std::string(255, 'n'), std::string(" -")}) {
        temp.write("from/" + name, name);
        ASSERT_TRUE(copy("from/" + name, "to/" + name));
        EXPECT_EQ(temp.read("to/" + name), name);
    }
    EXPECT_FALSE(copier.copy((temp / "from/ -").native(), (temp.path() / std::string("to\0x/a", 6)).native(), goOn));
}

TEST_F(CopyTest, PathsLongerThanTheSystemTakesAreCopiedFromAndTo) {
    const auto from = test::makeDeepFolder(temp / "from");
    const auto to = test::makeDeepFolder(temp / "to");
    test::writeDeep(from / "a.txt", "deep bytes");
    test::writeDeep(from / "b.txt", "more");
    for (const char* name : {"a.txt", "b.txt"}) {
        const auto copied = copier.copy((from / name).native(), (to / name).native(), goOn);
        ASSERT_TRUE(copied) << copied.error().text();
    }
    EXPECT_EQ(test::readDeep(to / "a.txt"), "deep bytes");
    EXPECT_EQ(test::readDeep(to / "b.txt"), "more");
}

TEST_F(CopyTest, ATargetFolderThatWasMadeAnewIsFound) {
    temp.write("from/a", "bytes");
    temp.write("from/b", "bytes");
    ASSERT_TRUE(copy("from/a", "to/a"));
    std::filesystem::remove_all(temp / "to");
    std::filesystem::create_directory(temp / "to");
    ASSERT_TRUE(copy("from/b", "to/b"));
    EXPECT_EQ(namesIn(temp / "to"), "b");
}

TEST_F(CopyTest, ASourceThatShrinksUnderTheCopyIsNotLengthenedAgain) {
    temp.write("from/a", randomBytes(20UL * 1024 * 1024));
    const auto copied = copy("from/a", "to/a", [this](std::uint64_t done, std::uint64_t) {
        if (done > 0)
            std::filesystem::resize_file(temp / "from/a", 1000);
        return true;
    });
    ASSERT_TRUE(copied);
    EXPECT_LT(statOf(temp / "to/a").st_size, 20 * 1024 * 1024);
}

TEST_F(CopyTest, TheSourceIsLeftAsItWas) {
    const auto path = temp.write("from/a", "bytes");
    test::setTimes(path, 1000000000, 1100000000);
    const auto folderTime = modificationTime(temp / "from");
    ASSERT_TRUE(copy("from/a", "to/a"));
    EXPECT_EQ(statOf(path).st_mtim.tv_sec, 1100000000);
    EXPECT_EQ(statOf(path).st_atim.tv_sec, 1000000000);
    EXPECT_EQ(modificationTime(temp / "from").value(), folderTime.value());
}

TEST_F(CopyTest, ADataFileIsCopiedWithItsModificationTime) {
    const auto path = temp.write("from/jpg.dat", "0,FFD8,H\r\n");
    ASSERT_TRUE(setModificationTime(path, {1000000000, 123456700}));
    temp.write("to/jpg.dat", "older and longer than the new one");
    ASSERT_TRUE(copyDataFile(path, temp / "to/jpg.dat"));
    EXPECT_EQ(temp.read("to/jpg.dat"), "0,FFD8,H\r\n");
    EXPECT_EQ(modificationTime(temp / "to/jpg.dat").value(), modificationTime(path).value());
    EXPECT_FALSE(copyDataFile(temp / "from/none.dat", temp / "to/jpg.dat"));
    EXPECT_EQ(temp.read("to/jpg.dat"), "0,FFD8,H\r\n");
    EXPECT_EQ(namesIn(temp / "to"), "jpg.dat");
}

}  // namespace
}  // namespace quillon
