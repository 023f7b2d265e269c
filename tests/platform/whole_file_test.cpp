// SPDX-License-Identifier: MIT
// The one whole-file writer, and reading and appending as a whole.
#include "platform/whole_file.h"

#include <cerrno>
#include <set>

#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/folders.h"
#include "support/failing_files.h"
#include "support/posix_files.h"
#include "support/temp_folder.h"

namespace quillon {
namespace {

using test::namesIn;
using test::statOf;
using test::TempFolder;

const std::string kBytes("\0new\r\nbytes\xFF", 12);

TEST(WholeFile, ASaveMakesAMissingFileAndReplacesAnOldOne) {
    const TempFolder temp;
    ASSERT_TRUE(saveWholeFile(temp / "a.dat", kBytes));
    EXPECT_EQ(temp.read("a.dat"), kBytes);
    ASSERT_TRUE(saveWholeFile(temp / "a.dat", "short"));
    EXPECT_EQ(temp.read("a.dat"), "short");
    ASSERT_TRUE(saveWholeFile(temp / "a.dat", ""));
    EXPECT_EQ(temp.read("a.dat"), "");
    EXPECT_EQ(namesIn(temp.path()), "a.dat");
}

TEST(WholeFile, ASaveOfManyBytesIsWhole) {
    const TempFolder temp;
    std::string bytes;
    for (int i = 0; bytes.size() < 3000000; ++i) bytes += std::to_string(i) + ",";
    ASSERT_TRUE(saveWholeFile(temp / "a.dat", bytes));
    EXPECT_EQ(readWholeFile(temp / "a.dat").value(), bytes);
}

TEST(WholeFile, TheTargetKeepsItsMode) {
    const TempFolder temp;
    for (const unsigned mode : {0600U, 0640U, 0666U, 0444U}) {
        const auto path = temp.write("a.dat", "old");
        ASSERT_EQ(::chmod(path.c_str(), mode), 0);
        ASSERT_TRUE(saveWholeFile(path, "new"));
        EXPECT_EQ(statOf(path).st_mode & 07777U, mode);
    }
}

TEST(WholeFile, ALinkIsFollowedAndStays) {
    const TempFolder temp;
    temp.write("real/a.dat", "old");
    std::filesystem::create_symlink("real/a.dat", temp / "link.dat");
    ASSERT_TRUE(saveWholeFile(temp / "link.dat", "new"));
    EXPECT_TRUE(std::filesystem::is_symlink(temp / "link.dat"));
    EXPECT_EQ(temp.read("real/a.dat"), "new");
    EXPECT_EQ(namesIn(temp.path()), "link.dat real");
    EXPECT_EQ(namesIn(temp / "real"), "a.dat");
}

TEST(WholeFile, AReaderOfTheOldFileKeepsTheOldBytes) {
    const TempFolder temp;
    auto reader = File::openForReading(temp.write("a.dat", "old bytes"));
    ASSERT_TRUE(reader);
    ASSERT_TRUE(saveWholeFile(temp / "a.dat", "new"));
    std::array<std::byte, 32> buffer;
    ASSERT_EQ(reader->read(buffer).value(), 9U);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(buffer.data()), 9), "old bytes");
}

TEST(WholeFile, OnFailureTheOldFileIsWholeAndNothingElseIsLeft) {
    const TempFolder temp;
    temp.write("folder/a.dat", "old");
    EXPECT_FALSE(saveWholeFile(temp / "missing/a.dat", "new"));
    EXPECT_FALSE(saveWholeFile(temp / "folder", "new"));
    EXPECT_FALSE(saveWholeFile(temp / "folder/a.dat/b", "new"));
    EXPECT_FALSE(saveWholeFile("", "new"));
    EXPECT_FALSE(saveWholeFile(temp.path() / std::string("a\0b", 3), "new"));
    EXPECT_EQ(temp.read("folder/a.dat"), "old");
    EXPECT_EQ(namesIn(temp.path()), "folder");
    EXPECT_EQ(namesIn(temp / "folder"), "a.dat");
}

TEST(WholeFile, AFailureNamesTheFileThatWasToBeSaved) {
    const TempFolder temp;
    const auto saved = saveWholeFile(temp / "missing/a.dat", "new");
    ASSERT_FALSE(saved);
    EXPECT_EQ(saved.error().kind, ErrorKind::NotFound);
    EXPECT_NE(saved.error().text.find("missing/a.dat cannot be saved"), std::string::npos) << saved.error().text;
}

TEST(WholeFile, AFullDiskIsToldOfTheFileThatWasToBeSaved) {
    const TempFolder temp;
    const auto path = temp.write("a.dat", "old");
    for (const char* call : {"write", "sync", "close", "open"}) {
        test::FailingFiles files;
        files.refuse(call, ENOSPC);
        const auto saved = saveWholeFile(path, "new");
        ASSERT_FALSE(saved) << call;
        EXPECT_EQ(saved.error().text, path.native() + " cannot be saved: No space left on device") << call;
    }
}

TEST(WholeFile, AFolderThatMayNotBeWrittenKeepsItsFile) {
    const TempFolder temp;
    const auto path = temp.write("locked/a.dat", "old");
    std::filesystem::permissions(temp / "locked", std::filesystem::perms(0555));
    const bool refused = test::asOrdinaryUser(temp.path(), [&path] {
        const auto saved = saveWholeFile(path, "new");
        return !saved && saved.error().kind == ErrorKind::PermissionDenied;
    });
    EXPECT_TRUE(refused);
    EXPECT_EQ(temp.read("locked/a.dat"), "old");
}

// The folder above takes the temporary file; where it may not be written, the folder itself does.
TEST(WholeFile, TheTemporaryFileGoesWhereItMay) {
    const TempFolder temp;
    const auto path = temp.write("root/Database/jpg.dat", "old");
    ASSERT_TRUE(saveWholeFile(path, "new", TemporaryPlace::AboveFolder));
    EXPECT_EQ(temp.read("root/Database/jpg.dat"), "new");
    EXPECT_EQ(namesIn(temp / "root"), "Database");

    std::filesystem::permissions(temp / "root/Database", std::filesystem::perms::all);
    std::filesystem::permissions(path, std::filesystem::perms(0666));
    std::filesystem::permissions(temp / "root", std::filesystem::perms(0555));
    EXPECT_TRUE(test::asOrdinaryUser(
        temp.path(), [&path] { return saveWholeFile(path, "newer", TemporaryPlace::AboveFolder).has_value(); }));
    EXPECT_EQ(temp.read("root/Database/jpg.dat"), "newer");
    EXPECT_EQ(namesIn(temp / "root/Database"), "jpg.dat");
}

TEST(WholeFile, AFifoInThePlaceOfADataFileStopsNothing) {
    const TempFolder temp;
    test::makeFifo(temp / "fifo");
    EXPECT_FALSE(appendToFile(temp / "fifo", "row"));
    EXPECT_EQ(readWholeFile(temp / "fifo").value_or("failed"), "");
}

TEST(WholeFile, AMissingFileIsNotFound) {
    const TempFolder temp;
    const auto bytes = readWholeFile(temp / "none");
    ASSERT_FALSE(bytes);
    EXPECT_EQ(bytes.error().kind, ErrorKind::NotFound);
    EXPECT_EQ(bytes.error().number(), 53);
}

TEST(WholeFile, AFolderIsNoFile) {
    const TempFolder temp;
    EXPECT_FALSE(readWholeFile(temp.path()));
}

TEST(WholeFile, AFileOfAnyLengthUpToTheLimitIsReadWhole) {
    const TempFolder temp;
    for (const std::size_t length : {0U, 1U, 16383U, 16384U, 16385U, 32768U, 50000U}) {
        const std::string bytes(length, 'x');
        temp.write("a", bytes);
        EXPECT_EQ(readWholeFile(temp / "a", 50000).value_or("failed"), bytes) << length;
    }
    temp.write("a", std::string(50001, 'x'));
    EXPECT_FALSE(readWholeFile(temp / "a", 50000));
}

TEST(WholeFile, AppendingMakesTheFileAndAddsToIt) {
    const TempFolder temp;
    ASSERT_TRUE(appendToFile(temp / "log", "one\r\n"));
    ASSERT_TRUE(appendToFile(temp / "log", "two\r\n"));
    EXPECT_EQ(temp.read("log"), "one\r\ntwo\r\n");
}

TEST(WholeFile, AFullDeviceIsAFailureOfTheAppend) {
    if (::access("/dev/full", W_OK) != 0)
        GTEST_SKIP() << "no /dev/full on this machine";
    const auto appended = appendToFile("/dev/full", "row");
    ASSERT_FALSE(appended);
    EXPECT_EQ(appended.error().kind, ErrorKind::PathAccess);
}

TEST(WholeFile, TemporaryNamesDifferAndAreNeverListed) {
    const TempFolder temp;
    std::set<std::string> names;
    for (int i = 0; i < 1000; ++i) names.insert(temporaryName());
    EXPECT_EQ(names.size(), 1000U);
    for (const auto& name : names) {
        ASSERT_TRUE(isTemporaryName(name));
        ASSERT_TRUE(isFileName(name));
    }
    temp.write(*names.begin(), "in progress");
    temp.write("a.dat", "");
    EXPECT_EQ(listFiles(temp.path()).value(), std::vector<std::string>{"a.dat"});
    EXPECT_FALSE(isTemporaryName("a.dat"));
}

}  // namespace
}  // namespace quillon
