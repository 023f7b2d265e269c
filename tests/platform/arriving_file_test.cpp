// SPDX-License-Identifier: MIT
// Files that get their names when they are whole, in each way that a volume may allow.
#include "platform/arriving_file.h"

#include <ostream>

#include <unistd.h>

#include <gtest/gtest.h>

#include "support/posix_files.h"
#include "support/temp_folder.h"

namespace quillon {

void PrintTo(Naming naming, std::ostream* out) {
    *out << (naming == Naming::LinkHandle ? "LinkHandle" : naming == Naming::LinkProc ? "LinkProc" : "Rename");
}

namespace {

using test::namesIn;
using test::statOf;
using test::TempFolder;

void put(const ArrivingFile& file, std::string_view bytes) {
    EXPECT_EQ(::write(file.handle(), bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
}

class ArrivingFileTest : public testing::TestWithParam<Naming> {
protected:
    void SetUp() override {
        std::filesystem::create_directory(temp / "to");
        auto opened = Directory::openToLookUp(temp / "to");
        ASSERT_TRUE(opened);
        folder = std::make_shared<const Directory>(std::move(*opened));
        if (auto file = begin("probe"); !file || !file->arrive())
            GTEST_SKIP() << "not allowed on the volume of the temporary folder, or not to this user";
        std::filesystem::remove(temp / "to/probe");
    }
    [[nodiscard]] Result<ArrivingFile> begin(const std::string& name) {
        path = (temp / "to" / name).native();
        return ArrivingFile::begin(folder, path, GetParam(), 0600);
    }

    TempFolder temp;
    std::shared_ptr<const Directory> folder;
    std::string path;
};

TEST_P(ArrivingFileTest, IsThereUnderItsNameWhenItArrives) {
    auto file = begin("a");
    ASSERT_TRUE(file);
    put(*file, "bytes");
    EXPECT_FALSE(std::filesystem::exists(temp / "to/a"));
    ASSERT_TRUE(file->arrive());
    EXPECT_EQ(temp.read("to/a"), "bytes");
    EXPECT_EQ(namesIn(temp / "to"), "a");
}

TEST_P(ArrivingFileTest, ReplacesAnOlderFileAsAWhole) {
    temp.write("to/a", "an older and longer file");
    auto file = begin("a");
    ASSERT_TRUE(file);
    put(*file, "new");
    EXPECT_EQ(temp.read("to/a"), "an older and longer file");
    ASSERT_TRUE(file->arrive());
    EXPECT_EQ(temp.read("to/a"), "new");
    EXPECT_EQ(namesIn(temp / "to"), "a");
}

TEST_P(ArrivingFileTest, LeavesNothingWhenItIsLetGo) {
    temp.write("to/a", "older");
    {
        auto file = begin("a");
        ASSERT_TRUE(file);
        put(*file, "new");
    }
    EXPECT_EQ(temp.read("to/a"), "older");
    EXPECT_EQ(namesIn(temp / "to"), "a");
}

TEST_P(ArrivingFileTest, LeavesNothingWhereItCannotArrive) {
    temp.write("to/a/in the way", "");
    const auto arrive = [this](const std::string& name) {
        auto file = begin(name);
        EXPECT_TRUE(file);
        put(*file, "new");
        return file->arrive();
    };
    EXPECT_FALSE(arrive("a"));
    const auto tooLong = arrive(std::string(256, 'n'));
    ASSERT_FALSE(tooLong);
    EXPECT_EQ(tooLong.error().kind, ErrorKind::BadName);
    EXPECT_EQ(namesIn(temp / "to"), "a");
    EXPECT_EQ(namesIn(temp / "to/a"), "in the way");
}

TEST_P(ArrivingFileTest, HasTheModeItWasBegunWithLessTheMask) {
    const auto old = ::umask(027);
    path = (temp / "to/a").native();
    auto file = ArrivingFile::begin(folder, path, GetParam(), 0666);
    ::umask(old);
    ASSERT_TRUE(file);
    ASSERT_TRUE(file->arrive());
    EXPECT_EQ(statOf(temp / "to/a").st_mode & 07777U, 0640U);
}

INSTANTIATE_TEST_SUITE_P(EveryNaming, ArrivingFileTest,
                         testing::Values(Naming::LinkHandle, Naming::LinkProc, Naming::Rename));

TEST(ArrivalFolder, FindsTheFolderOfEachFile) {
    const TempFolder temp;
    temp.write("one/x", "");
    temp.write("two/x", "");
    ArrivalFolder folder;
    for (const char* name : {"one/a", "one/b", "two/a", "one/c"}) {
        const std::string path = (temp / name).native();
        auto file = folder.begin(path, 0600);
        ASSERT_TRUE(file);
        put(*file, name);
        ASSERT_TRUE(file->arrive());
        EXPECT_EQ(temp.read(name), name);
    }
    EXPECT_EQ(namesIn(temp / "one"), "a b c x");
    EXPECT_EQ(namesIn(temp / "two"), "a x");
}

TEST(ArrivalFolder, AFolderThatWasMadeAnewIsFoundWhenItIsForgotten) {
    const TempFolder temp;
    const std::string path = (temp / "to/a").native();
    const auto arrive = [&path](ArrivalFolder& folder) {
        return folder.begin(path, 0600).and_then([](ArrivingFile file) { return file.arrive(); });
    };
    ArrivalFolder folder;
    EXPECT_FALSE(folder.forgetRemoved());
    std::filesystem::create_directory(temp / "to");
    ASSERT_TRUE(arrive(folder));
    EXPECT_FALSE(folder.forgetRemoved());
    std::filesystem::remove_all(temp / "to");
    std::filesystem::create_directory(temp / "to");
    ASSERT_FALSE(arrive(folder));
    EXPECT_TRUE(folder.forgetRemoved());
    ASSERT_TRUE(arrive(folder));
    EXPECT_EQ(namesIn(temp / "to"), "a");
}

TEST(ArrivalFolder, AMissingFolderAndANameWithAZeroByteAreFailures) {
    const TempFolder temp;
    ArrivalFolder folder;
    EXPECT_EQ(folder.begin((temp / "none/a").native(), 0600).error().kind, ErrorKind::NotFound);
    EXPECT_EQ(folder.begin(std::string("/a\0b", 4), 0600).error().kind, ErrorKind::BadName);
}

}  // namespace
}  // namespace quillon
