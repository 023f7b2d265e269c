// SPDX-License-Identifier: MIT
// Files of a source: what is opened, what is refused without waiting, and that no byte of another file is ever seen.
#include "platform/source_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "support/posix_files.h"
#include "support/temp_folder.h"

namespace quillon {
namespace {

using test::TempFolder;

std::string headOf(SourceFiles& sources, const NativePath& path) {
    HeaderBytes head;
    head.fill('#');
    const auto read = sources.readHead(path.native(), head);
    EXPECT_TRUE(read) << read.error().text;
    return {head.data(), head.size()};
}

std::string withBlanks(std::string bytes) {
    bytes.resize(512, ' ');
    return bytes;
}

TEST(SourceFilesTest, TheFirst512BytesAreRead) {
    const TempFolder temp;
    std::string bytes;
    for (int i = 0; i < 600; ++i) bytes.push_back(static_cast<char>(static_cast<unsigned char>(i)));
    SourceFiles sources;
    EXPECT_EQ(headOf(sources, temp.write("a", bytes)), bytes.substr(0, 512));
    EXPECT_EQ(headOf(sources, temp.write("b", bytes.substr(0, 512))), bytes.substr(0, 512));
}

TEST(SourceFilesTest, ShortFilesLeaveBlanks) {
    const TempFolder temp;
    SourceFiles sources;
    for (const std::size_t length : {0U, 1U, 100U, 511U})
        EXPECT_EQ(headOf(sources, temp.write("a", std::string(length, 'x'))), withBlanks(std::string(length, 'x')))
            << length;
}

TEST(SourceFilesTest, BytesOfTheFileBeforeNeverShineThrough) {
    const TempFolder temp;
    temp.write("long", std::string(512, 'L'));
    temp.write("short", "S");
    SourceFiles sources;
    HeaderBytes head;
    ASSERT_TRUE(sources.readHead((temp / "long").native(), head));
    ASSERT_TRUE(sources.readHead((temp / "short").native(), head));
    EXPECT_EQ(std::string(head.data(), head.size()), withBlanks("S"));
    ASSERT_TRUE(sources.readHead((temp / "long").native(), head));
    EXPECT_FALSE(sources.readHead((temp / "none").native(), head));
    EXPECT_EQ(std::string(head.data(), head.size()), withBlanks("")) << "a failure leaves blanks as well";
}

TEST(SourceFilesTest, EveryKindButRegularFilesIsRefusedWithoutWaiting) {
    const TempFolder temp;
    temp.write("file", "bytes");
    temp.write("folder/x", "");
    std::filesystem::create_symlink(temp / "file", temp / "link");
    std::filesystem::create_symlink("loop", temp / "loop");
    test::makeFifo(temp / "fifo");
    EXPECT_TRUE(test::makeSocket(temp / "socket"));
    SourceFiles sources;
    HeaderBytes head;
    for (const NativePath& path : {temp / "folder", temp / "link", temp / "loop", temp / "fifo", temp / "socket",
                                   NativePath("/dev/null"), NativePath("/dev/zero")}) {
        const auto read = sources.readHead(path.native(), head);
        ASSERT_FALSE(read) << path;
        EXPECT_EQ(read.error().kind, ErrorKind::PermissionDenied) << path << ": " << read.error().text;
        EXPECT_FALSE(sources.open(path.native())) << path;
    }
}

TEST(SourceFilesTest, AFifoWithAWriterIsRefusedAsWell) {
    const TempFolder temp;
    test::makeFifo(temp / "fifo");
    const int writer = ::open((temp / "fifo").c_str(), O_RDWR | O_NONBLOCK);
    ASSERT_EQ(::write(writer, "bytes", 5), 5);
    SourceFiles sources;
    EXPECT_FALSE(sources.open((temp / "fifo").native()));
    ::close(writer);
}

TEST(SourceFilesTest, NamesThatCannotBeOpenedSaySo) {
    const TempFolder temp;
    temp.write("a", "");
    SourceFiles sources;
    const auto numberOf = [&sources](const std::string& path) {
        const auto opened = sources.open(path);
        return opened ? 0 : opened.error().number();
    };
    EXPECT_EQ(numberOf((temp / "none").native()), 53);
    EXPECT_EQ(numberOf((temp / "none/below").native()), 53);
    EXPECT_EQ(numberOf((temp / "a/").native()), 53);
    EXPECT_EQ(numberOf(""), 53);
    EXPECT_EQ(numberOf((temp / std::string(256, 'x')).native()), 52);
    EXPECT_EQ(numberOf(temp.path().native() + std::string("/a\0b", 4)), 52);
    EXPECT_EQ(numberOf((temp / "a/below").native()), 75);
    EXPECT_EQ(numberOf((temp / "a").native()), 0);
}

TEST(SourceFilesTest, AnUnreadableFileOrFolderIsPermissionDenied) {
    const TempFolder temp;
    temp.write("file", "");
    temp.write("shut/a", "");
    std::filesystem::permissions(temp / "file", std::filesystem::perms::none);
    std::filesystem::permissions(temp / "shut", std::filesystem::perms::none);
    EXPECT_TRUE(test::asOrdinaryUser(temp.path(), [&temp] {
        SourceFiles sources;
        const auto file = sources.open((temp / "file").native());
        const auto below = sources.open((temp / "shut/a").native());
        return !file && !below && file.error().number() == 70 && below.error().number() == 70;
    }));
}

TEST(SourceFilesTest, AFileInAFolderThatMayOnlyBeEnteredIsRead) {
    const TempFolder temp;
    temp.write("entered/a", "bytes");
    std::filesystem::permissions(temp / "entered", std::filesystem::perms(0111));
    EXPECT_TRUE(test::asOrdinaryUser(temp.path(), [&temp] {
        SourceFiles sources;
        return sources.open((temp / "entered/a").native()).has_value();
    }));
}

TEST(SourceFilesTest, NamesOfAnyBytesAreOpenedAsTheyStand) {
    const TempFolder temp;
    SourceFiles sources;
    for (const std::string name : {"a,b", "a>b", "a\nb", "a\\b", "\xFF\xFE", " leading", "-rf", "caf\xC3\xA9"}) {
        temp.write(name, name);
        EXPECT_EQ(headOf(sources, temp / name), withBlanks(name));
    }
    const std::string longest(255, 'n');
    temp.write(longest, "x");
    EXPECT_EQ(headOf(sources, temp / longest), withBlanks("x"));
}

TEST(SourceFilesTest, PathsLongerThanTheSystemTakesAreRead) {
    const TempFolder temp;
    const auto deep = test::makeDeepFolder(temp.path());
    test::writeDeep(deep / "a.txt", "deep bytes");
    SourceFiles sources;
    EXPECT_EQ(headOf(sources, deep / "a.txt"), withBlanks("deep bytes"));
}

TEST(SourceFilesTest, AFileOfTheCurrentFolderNeedsNoSeparator) {
    SourceFiles sources;
    HeaderBytes head;
    const auto read = sources.readHead("no such file here", head);
    ASSERT_FALSE(read);
    EXPECT_EQ(read.error().number(), 53);
}

TEST(SourceFilesTest, FoldersAreChangedBetweenFiles) {
    const TempFolder temp;
    temp.write("a/x", "in a");
    temp.write("b/x", "in b");
    SourceFiles sources;
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(headOf(sources, temp / "a/x"), withBlanks("in a"));
        EXPECT_EQ(headOf(sources, temp / "b/x"), withBlanks("in b"));
    }
    sources.closeFolder();
    EXPECT_EQ(headOf(sources, temp / "a/x"), withBlanks("in a"));
}

TEST(SourceFilesTest, AccessTimesOfOwnFilesStay) {
    const TempFolder temp;
    if (!test::volumeKeepsAccessTimes(temp.path()))
        GTEST_SKIP() << "this volume keeps no access times";
    temp.write("a", "bytes");
    test::setTimes(temp / "a", 1000000000, 1100000000);
    SourceFiles sources;
    headOf(sources, temp / "a");
    EXPECT_EQ(test::statOf(temp / "a").st_atim.tv_sec, 1000000000);
}

TEST(SourceFilesTest, AccessTimesOfOwnFilesStayAlsoBehindAFileOfAnotherOwner) {
    const TempFolder temp;
    if (::geteuid() != 0 || !test::volumeKeepsAccessTimes(temp.path()))
        GTEST_SKIP() << "needs root and a volume with access times";
    temp.write("theirs", "bytes");
    temp.write("own", "bytes");
    ASSERT_EQ(::chown((temp / "own").c_str(), 65534, 65534), 0);
    test::setTimes(temp / "own", 1000000000, 1100000000);
    EXPECT_TRUE(test::asOrdinaryUser(temp.path(), [&temp] {
        SourceFiles sources;
        HeaderBytes head;
        return sources.readHead((temp / "theirs").native(), head) && sources.readHead((temp / "own").native(), head);
    }));
    EXPECT_EQ(test::statOf(temp / "own").st_atim.tv_sec, 1000000000);
}

}  // namespace
}  // namespace quillon
