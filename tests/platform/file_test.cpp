// SPDX-License-Identifier: MIT
// Open files and the questions on whole paths.
#include "platform/file.h"

#include <array>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/folders.h"
#include "support/posix_files.h"
#include "support/temp_folder.h"

namespace quillon {
namespace {

using test::TempFolder;

std::string_view textOf(const std::array<std::byte, 8>& buffer, std::size_t count) {
    return {reinterpret_cast<const char*>(buffer.data()), count};
}

TEST(FileTest, ReadsInPiecesUntilTheEnd) {
    const TempFolder temp;
    auto file = File::openForReading(temp.write("a", "0123456789"));
    ASSERT_TRUE(file);
    EXPECT_EQ(file->size().value(), 10U);
    std::array<std::byte, 8> buffer;
    EXPECT_EQ(textOf(buffer, file->read(buffer).value()), "01234567");
    EXPECT_EQ(textOf(buffer, file->read(buffer).value()), "89");
    EXPECT_EQ(file->read(buffer).value(), 0U);
    ASSERT_TRUE(file->seek(5));
    EXPECT_EQ(textOf(buffer, file->read(buffer).value()), "56789");
}

TEST(FileTest, CreateEmptiesAndCreateNewRefusesAnExistingFile) {
    const TempFolder temp;
    const auto path = temp.write("a", "old bytes");
    EXPECT_FALSE(File::createNew(path));
    EXPECT_EQ(temp.read("a"), "old bytes");
    auto file = File::create(path);
    ASSERT_TRUE(file);
    ASSERT_TRUE(file->write("new"));
    ASSERT_TRUE(file->close());
    EXPECT_EQ(temp.read("a"), "new");
}

TEST(FileTest, ChangingKeepsTheBytesThatAreNotWritten) {
    const TempFolder temp;
    EXPECT_FALSE(File::openForChanging(temp / "none"));
    auto file = File::openForChanging(temp.write("a", "0123456789"));
    ASSERT_TRUE(file);
    ASSERT_TRUE(file->write("abc"));
    EXPECT_EQ(temp.read("a"), "abc3456789");
    ASSERT_TRUE(file->truncate(5));
    ASSERT_TRUE(file->write("z"));
    EXPECT_EQ(temp.read("a"), "abc34z");
}

TEST(FileTest, CreateNewNeverGoesThroughALink) {
    const TempFolder temp;
    std::filesystem::create_symlink(temp / "elsewhere", temp / "link");
    EXPECT_FALSE(File::createNew(temp / "link"));
    EXPECT_FALSE(pathExists(temp / "elsewhere"));
}

TEST(FileTest, AZeroByteOrAnEmptyNameIsABadName) {
    const TempFolder temp;
    temp.write("a", "kept");
    for (const auto& path : {NativePath(), temp.path() / std::string("a\0b", 3)}) {
        const auto file = File::create(path);
        ASSERT_FALSE(file);
        EXPECT_EQ(file.error().number(), 52);
    }
    EXPECT_EQ(temp.read("a"), "kept");
}

TEST(FileTest, AMovedFileIsOpenOnceAndASecondCloseIsASuccess) {
    const TempFolder temp;
    auto first = File::create(temp / "a");
    ASSERT_TRUE(first);
    File second = std::move(*first);
    EXPECT_TRUE(second.isOpen());
    EXPECT_FALSE(first->isOpen());
    EXPECT_TRUE(second.close());
    EXPECT_TRUE(second.close());
    EXPECT_FALSE(second.isOpen());
}

TEST(FileTest, FilesAreClosedInOtherPrograms) {
    const TempFolder temp;
    const auto file = File::create(temp / "a");
    ASSERT_TRUE(file);
    int found = 0;
    for (int descriptor = 3; descriptor < 64; ++descriptor) {
        std::error_code error;
        const auto target = std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(descriptor), error);
        if (error || target != temp / "a")
            continue;
        ++found;
        EXPECT_NE(::fcntl(descriptor, F_GETFD) & FD_CLOEXEC, 0);
    }
    EXPECT_EQ(found, 1);
}

TEST(FileTest, FailuresHaveTheNumbersThatHandlersKnow) {
    EXPECT_EQ(errorNumber(ErrorKind::InvalidArgument), 5);
    EXPECT_EQ(errorNumber(ErrorKind::Subscript), 9);
    EXPECT_EQ(errorNumber(ErrorKind::BadName), 52);
    EXPECT_EQ(errorNumber(ErrorKind::NotFound), 53);
    EXPECT_EQ(errorNumber(ErrorKind::PermissionDenied), 70);
    EXPECT_EQ(errorNumber(ErrorKind::PathAccess), 75);
    EXPECT_EQ(errorNumber(ErrorKind::AddressInUse), 10048);
}

TEST(FoldersTest, AnythingThatIsThereExistsAndAnEmptyPathDoesNot) {
    const TempFolder temp;
    temp.write("file", "");
    std::filesystem::create_symlink(temp / "file", temp / "link");
    std::filesystem::create_symlink(temp / "none", temp / "dangling");
    EXPECT_TRUE(pathExists(temp.path()));
    EXPECT_TRUE(pathExists(temp / "file"));
    EXPECT_TRUE(pathExists(temp / "link"));
    EXPECT_FALSE(pathExists(temp / "dangling"));
    EXPECT_FALSE(pathExists(temp / "none"));
    EXPECT_FALSE(pathExists(""));
    EXPECT_FALSE(pathExists(temp.path() / std::string("file\0x", 6)));
    EXPECT_TRUE(isFolder(temp.path()));
    EXPECT_FALSE(isFolder(temp / "file"));
}

TEST(FoldersTest, ListsTheRegularFilesSortedByBytes) {
    const TempFolder temp;
    for (const char* name : {"b", "a", "Z", ".hidden", "\xFF", "sub/inside"}) temp.write(name, "");
    std::filesystem::create_symlink(temp / "a", temp / "link");
    std::filesystem::create_symlink(temp / "sub", temp / "folder link");
    std::filesystem::create_symlink(temp / "none", temp / "dangling");
    test::makeFifo(temp / "fifo");
    EXPECT_EQ(listFiles(temp.path()).value(), (std::vector<std::string>{".hidden", "Z", "a", "b", "link", "\xFF"}));
    EXPECT_EQ(listEntries(temp.path()).value().size(), 10U);
    EXPECT_FALSE(listFiles(temp / "none"));
    EXPECT_FALSE(listFiles(temp / "a"));
}

TEST(FoldersTest, AStampTellsEveryChangeOfAFile) {
    const TempFolder temp;
    const auto path = temp.write("a", "one");
    const FileStamp before = fileStamp(path).value();
    EXPECT_EQ(before, fileStamp(path).value());
    EXPECT_EQ(before.size, 3U);
    ASSERT_TRUE(setModificationTime(path, {1000000000, 5}));
    EXPECT_NE(before, fileStamp(path).value());
    EXPECT_EQ(modificationTime(path).value(), (FileTime{1000000000, 5}));
    EXPECT_FALSE(fileStamp(temp / "none"));
    EXPECT_EQ(fileSize(path).value(), 3U);
}

TEST(FoldersTest, CreatesRemovesAndRenames) {
    const TempFolder temp;
    ASSERT_TRUE(createFolder(temp / "sub"));
    EXPECT_TRUE(createFolder(temp / "sub")) << "it exists already";
    EXPECT_FALSE(createFolder(temp / "none/below"));
    const auto file = temp.write("file", "bytes");
    EXPECT_FALSE(createFolder(file)) << "a file is no folder";
    temp.write("other", "replaced");
    ASSERT_TRUE(renameFile(file, temp / "other"));
    EXPECT_EQ(temp.read("other"), "bytes");
    ASSERT_TRUE(removeFile(temp / "other"));
    const auto again = removeFile(temp / "other");
    ASSERT_FALSE(again);
    EXPECT_EQ(again.error().kind, ErrorKind::NotFound);
}

TEST(FoldersTest, TypedTextNeverLeadsOutOfItsFolder) {
    for (const char* good : {"a", "jpg", "a b", "...", "..a", "caf\xC3\xA9", "-"})
        EXPECT_TRUE(isFileName(good)) << good;
    for (const char* bad : {"", ".", "..", "a/b", "/", "../a", "a\\b", "..\\a"}) EXPECT_FALSE(isFileName(bad)) << bad;
    EXPECT_FALSE(isFileName(std::string_view("a\0b", 3)));
    EXPECT_TRUE(isFileName(std::string(255, 'x')));
    EXPECT_FALSE(isFileName(std::string(256, 'x')));
    EXPECT_EQ(childPath("/data", "jpg.dat").value(), "/data/jpg.dat");
    const auto refused = childPath("/data", "../jpg.dat");
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error().number(), 52);
}

TEST(FoldersTest, TheProgramFolderHoldsTheProgram) {
    EXPECT_TRUE(isFolder(programFolder()));
    EXPECT_TRUE(pathExists(programFolder() / "quillon_tests_platform"));
}

}  // namespace
}  // namespace quillon
