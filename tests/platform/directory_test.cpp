// SPDX-License-Identifier: MIT
// A folder held open: what it lists, describes and opens, whatever the length of its path.
#include "platform/directory.h"

#include <algorithm>
#include <utility>

#include <gtest/gtest.h>
#include <unistd.h>

#include "support/posix_files.h"
#include "support/temp_folder.h"

namespace quillon {
namespace {

using test::TempFolder;

std::vector<std::string> sorted(EntryNames& names) {
    names.sort();
    std::vector<std::string> out;
    for (std::size_t i = 0; i < names.size(); ++i) out.emplace_back(names[i]);
    return out;
}

using Names = std::vector<std::string>;

TEST(DirectoryTest, AccessTimesOfListedFoldersStay) {
    const TempFolder temp;
    temp.write("sub/inside", "");
    test::setTimes(temp / "sub", 1000000000, 1100000000);
    test::setTimes(temp.path(), 1000000000, 1100000000);
    EntryNames files;
    EntryNames folders;
    const auto folder = Directory::open(temp.path());
    const auto sub = folder->openFolder("sub");
    ASSERT_TRUE(folder->list(files, folders));
    ASSERT_TRUE(sub->list(files, folders));
    EXPECT_EQ(test::statOf(temp.path()).st_atim.tv_sec, 1000000000);
    EXPECT_EQ(test::statOf(temp / "sub").st_atim.tv_sec, 1000000000);
}

TEST(DirectoryTest, FoldersOfAnotherOwnerAreListedAllTheSame) {
    const TempFolder temp;
    if (::geteuid() != 0)
        GTEST_SKIP() << "needs root";
    temp.write("sub/inside", "");
    EXPECT_TRUE(test::asOrdinaryUser(temp.path(), [&temp] {
        EntryNames files;
        EntryNames folders;
        const auto folder = Directory::open(temp.path());
        const auto sub = folder ? folder->openFolder("sub") : Directory::open("/nowhere");
        return sub && sub->list(files, folders) && files.size() == 1;
    }));
}

TEST(DirectoryTest, ListsRegularFilesAndFoldersAndNothingElse) {
    const TempFolder temp;
    for (const char* name : {"b", "a", "Z", ".hidden", "\xFF", "sub/inside", "empty/x"}) temp.write(name, "");
    std::filesystem::create_symlink(temp / "a", temp / "link");
    std::filesystem::create_symlink(temp / "sub", temp / "folder link");
    std::filesystem::create_symlink(temp.path(), temp / "loop");
    test::makeFifo(temp / "fifo");
    EXPECT_TRUE(test::makeSocket(temp / "socket"));
    const auto folder = Directory::open(temp.path());
    ASSERT_TRUE(folder);
    EntryNames files;
    EntryNames folders;
    ASSERT_TRUE(folder->list(files, folders));
    EXPECT_EQ(sorted(files), (Names{".hidden", "Z", "a", "b", "\xFF"}));
    EXPECT_EQ(sorted(folders), (Names{"empty", "sub"}));
    ASSERT_TRUE(folder->list(files, folders)) << "a second listing starts anew";
    EXPECT_EQ(files.size(), 5U);
}

TEST(EntryNamesTest, SortsManyNamesPieceByPiece) {
    for (const std::size_t count : {0UL, 1UL, 2048UL, 2049UL, 5000UL, 20000UL}) {
        EntryNames names;
        Names expected;
        for (std::size_t i = 0; i < count; ++i) {
            expected.push_back("name " + std::to_string(i * 7919 % 20011));
            names.add(expected.back());
        }
        std::sort(expected.begin(), expected.end());
        int pauses = 0;
        names.sort([&pauses] { ++pauses; });
        EXPECT_EQ(pauses > 0, count > EntryNames::kPauseEvery) << count;
        EXPECT_EQ(sorted(names), expected) << count;
    }
}

TEST(DirectoryTest, ListsAFolderOfManyFilesWhole) {
    const TempFolder temp;
    Names expected;
    for (int i = 0; i < 3000; ++i) {
        expected.push_back("a file of a rather long name, so that one buffer does not do " + std::to_string(i));
        temp.write(expected.back(), "");
    }
    std::sort(expected.begin(), expected.end());
    EntryNames files;
    EntryNames folders;
    int pauses = 0;
    ASSERT_TRUE(Directory::open(temp.path()).value().list(files, folders, [&pauses] { ++pauses; }));
    EXPECT_EQ(pauses, 1) << "a screen that waits for a large folder stays alive";
    EXPECT_EQ(sorted(files), expected);
    EXPECT_TRUE(folders.empty());
    files.release();
    EXPECT_TRUE(files.empty());
}

TEST(DirectoryTest, DescribesWithoutFollowingLinks) {
    const TempFolder temp;
    const auto path = temp.write("a", "12345");
    test::setTimes(path, 1000000000, 1100000000, 123456700);
    std::filesystem::permissions(path, std::filesystem::perms(0440));
    std::filesystem::create_symlink(path, temp / "link");
    const Directory folder = Directory::open(temp.path()).value();
    const EntryInfo info = folder.describe("a").value();
    EXPECT_TRUE(info.regular);
    EXPECT_EQ(info.size, 5U);
    EXPECT_EQ(info.modified, (FileTime{1100000000, 123456700}));
    EXPECT_EQ(info.mode & 07777U, 0440U);
    EXPECT_EQ(info.device, test::statOf(path).st_dev);
    EXPECT_FALSE(folder.describe("link").value().regular);
    const auto missing = folder.describe("none");
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error().kind, ErrorKind::NotFound);
}

TEST(DirectoryTest, ASubfolderIsOpenedAndALinkRefused) {
    const TempFolder temp;
    temp.write("sub/a", "");
    std::filesystem::create_symlink("sub", temp / "link");
    const Directory folder = Directory::open(temp.path()).value();
    EXPECT_TRUE(folder.openFolder("sub"));
    EXPECT_FALSE(folder.openFolder("link"));
    EXPECT_FALSE(folder.openFolder("none"));
    EXPECT_FALSE(folder.openFolder(std::string(300, 'x')));
    EXPECT_TRUE(folder.lookUpFolder("link"));
    EXPECT_TRUE(Directory::open(temp / "link")) << "a source may be named by a link";
}

TEST(DirectoryTest, AFileIsNoFolder) {
    const TempFolder temp;
    temp.write("a", "");
    test::makeFifo(temp / "fifo");
    EXPECT_FALSE(Directory::open(temp / "a"));
    EXPECT_FALSE(Directory::open(temp / "fifo"));
    EXPECT_FALSE(Directory::open(temp / "none"));
    EXPECT_FALSE(Directory::open(""));
    EXPECT_FALSE(Directory::open(temp.path().native() + std::string("\0x", 2)));
}

TEST(DirectoryTest, AFolderThatCanBeReadButNotEnteredSaysSo) {
    const TempFolder temp;
    temp.write("listed/a", "");
    temp.write("entered/a", "");
    std::filesystem::permissions(temp / "listed", std::filesystem::perms(0444));
    std::filesystem::permissions(temp / "entered", std::filesystem::perms(0111));
    EXPECT_TRUE(test::asOrdinaryUser(temp.path(), [&temp] {
        const auto listed = Directory::open(temp / "listed");
        EntryNames files;
        EntryNames folders;
        const bool readable = listed && listed->list(files, folders) && files.size() == 1;
        return readable && !listed->canBeEntered() && !Directory::open(temp / "entered") &&
               Directory::openToLookUp(temp / "entered").value().canBeEntered();
    }));
    EXPECT_TRUE(Directory::open(temp.path()).value().canBeEntered());
}

TEST(DirectoryTest, AnUnreadableFolderIsPermissionDenied) {
    const TempFolder temp;
    temp.write("shut/a", "");
    std::filesystem::permissions(temp / "shut", std::filesystem::perms::none);
    EXPECT_TRUE(test::asOrdinaryUser(temp.path(), [&temp] {
        const auto folder = Directory::open(temp / "shut");
        return !folder && folder.error().kind == ErrorKind::PermissionDenied;
    }));
}

TEST(DirectoryTest, CreatesASubfolderOrTakesTheOneThatIsThere) {
    const TempFolder temp;
    const Directory folder = Directory::openToLookUp(temp.path()).value();
    ASSERT_TRUE(folder.createFolder("sub"));
    EXPECT_TRUE(folder.createFolder("sub"));
    EXPECT_TRUE(std::filesystem::is_directory(temp / "sub"));
    EXPECT_FALSE(folder.createFolder(std::string(300, 'x')));
}

TEST(DirectoryTest, PathsLongerThanTheSystemTakesAreOpenedPieceByPiece) {
    const TempFolder temp;
    const auto deep = test::makeDeepFolder(temp.path());
    test::writeDeep(deep / "a.txt", "bytes");
    for (const auto& path : {deep, NativePath(deep.native() + "/")}) {
        const auto folder = Directory::open(path);
        ASSERT_TRUE(folder) << folder.error().text;
        EntryNames files;
        EntryNames folders;
        ASSERT_TRUE(folder->list(files, folders));
        EXPECT_EQ(sorted(files), Names{"a.txt"});
        EXPECT_EQ(folder->describe("a.txt").value().size, 5U);
        EXPECT_TRUE(folder->canBeEntered());
    }
    EXPECT_TRUE(Directory::openToLookUp(deep));
    EXPECT_FALSE(Directory::open(deep / "none"));
}

TEST(DirectoryTest, AMovedHandleIsHeldOnce) {
    const TempFolder temp;
    Directory first = Directory::open(temp.path()).value();
    Directory second = std::move(first);
    EXPECT_FALSE(first.isOpen());  // NOLINT(bugprone-use-after-move): this is what is tested
    EXPECT_TRUE(second.isOpen());
    second = Directory::open("/").value();
    EXPECT_TRUE(second.isOpen());
    second.close();
    second.close();
    EXPECT_FALSE(second.isOpen());
}

}  // namespace
}  // namespace quillon
