// SPDX-License-Identifier: MIT
// The last step of copies: none has its name before its bytes were brought to the medium.
#include "ahead/copy_settling.h"

#include <cerrno>
#include <filesystem>

#include <gtest/gtest.h>

#include "support/failing_files.h"
#include "support/posix_files.h"
#include "support/temp_folder.h"

namespace quillon {
namespace {

using test::FailingFiles;
using test::namesIn;
using test::TempFolder;

bool goOn(std::uint64_t /*done*/, std::uint64_t /*total*/) {
    return true;
}

class CopySettlingTest : public testing::Test {
protected:
    void SetUp() override { std::filesystem::create_directory(temp / "to"); }

    [[nodiscard]] NativePath target(const std::string& name) const { return temp / "to" / name; }

    PreparedCopy prepared(const std::string& name) {
        FileCopier copier;
        auto copy = copier.prepare(temp.write("from/" + name, name).native(), target(name).native(), 1000, goOn);
        EXPECT_TRUE(copy);
        return *std::move(copy);
    }
    void add(CopySettling& settling, const std::string& name) {
        while (!settling.roomWithin(std::chrono::milliseconds(10))) {
        }
        settling.add(++number, (temp / "from" / name).native(), prepared(name));
    }
    // What came of each copy, in order: its number, and an error's text behind it.
    static std::string endOf(CopySettling& settling) {
        settling.close();
        while (!settling.endsWithin(std::chrono::milliseconds(10))) {
        }
        std::string text;
        for (const auto& copy : settling.takeEnded())
            text += std::to_string(copy.number) + (copy.result ? " " : " (" + copy.result.error().error.cause + ") ");
        return text;
    }

    TempFolder temp;
    std::int64_t number = 0;
};

TEST_F(CopySettlingTest, NoCopyHasItsNameBeforeASync) {
    std::vector<std::string> names;
    FailingFiles disk;
    disk.ahead("syncVolume", [&] { names.push_back(namesIn(temp / "to")); });
    CopySettling settling({});
    add(settling, "a");
    add(settling, "b");
    EXPECT_EQ(namesIn(temp / "to"), "");
    EXPECT_EQ(endOf(settling), "1 2 ");
    EXPECT_EQ(names, (std::vector<std::string>{"", "a b"})) << "and counts as made behind a sync of its name";
    EXPECT_EQ(temp.read("to/b"), "b");
}

TEST_F(CopySettlingTest, WithoutSyncEachCopyHasItsNameAtOnce) {
    FailingFiles disk;
    int syncs = 0;
    disk.ahead("syncVolume", [&] { ++syncs; });
    CopySettling settling({.sync = false});
    add(settling, "a");
    EXPECT_EQ(namesIn(temp / "to"), "a");
    EXPECT_EQ(settling.takeEnded().size(), 1U);
    EXPECT_EQ(endOf(settling), "");
    EXPECT_EQ(syncs, 0);
}

TEST_F(CopySettlingTest, OfAVolumeThatIsNotWellTheBadFileAloneFails) {
    FailingFiles disk;
    disk.refuse("syncVolume", EIO);
    CopySettling settling({});
    add(settling, "a");
    add(settling, "b");
    add(settling, "c");
    disk.failAt(2, {EIO}, "sync");
    EXPECT_EQ(endOf(settling), "2 (Input/output error) 1 3 ");
    EXPECT_EQ(namesIn(temp / "to"), "a c");
}

TEST_F(CopySettlingTest, ANameThatDoesNotComeToTheMediumIsNoCopy) {
    FailingFiles disk;
    disk.refuse("syncVolume", ENOSYS);
    CopySettling settling({});
    add(settling, "a");
    disk.failAt(2, {EIO}, "sync");  // the folder
    EXPECT_EQ(endOf(settling), "1 (Input/output error) ");
}

TEST_F(CopySettlingTest, ATargetFolderThatWasMadeAnewIsFound) {
    for (const bool sync : {true, false}) {
        CopySettling settling({.sync = sync});
        PreparedCopy copy = prepared("a");
        std::filesystem::remove_all(temp / "to");
        std::filesystem::create_directory(temp / "to");
        settling.add(7, (temp / "from/a").native(), std::move(copy));
        EXPECT_EQ(endOf(settling), "7 ") << sync;
        EXPECT_EQ(namesIn(temp / "to"), "a") << sync;
    }
}

TEST_F(CopySettlingTest, ABitThatFlipsBehindACopyIsFoundWithItsPlace) {
    const std::string bytes(3'000'000, 'x');
    FailingFiles disk;
    disk.refuse("link", EPERM);  // a temporary name, by which the bytes can be reached
    disk.ahead("syncVolume", [this] {
        for (const auto& entry : std::filesystem::directory_iterator(temp / "to"))
            test::flipBit(entry.path(), 2'345'678);
    });
    CopySettling settling({.verify = true});
    FileCopier copier({.hash = true});
    auto copy = copier.prepare(temp.write("from/a", bytes).native(), target("a").native(), bytes.size(), goOn);
    ASSERT_TRUE(copy);
    settling.add(1, (temp / "from/a").native(), *std::move(copy));
    EXPECT_EQ(endOf(settling), "1 (what was read back is not what was written at byte 2,345,678) ");
    EXPECT_EQ(namesIn(temp / "to"), "") << "it never got its name";
}

TEST_F(CopySettlingTest, OfManySmallCopiesTheOneThatIsAnotherIsFound) {
    constexpr int kCopies = 60;  // of one batch with temporary names
    FailingFiles disk;
    disk.refuse("link", EPERM);
    disk.ahead("syncVolume", [this] {
        for (const auto& entry : std::filesystem::directory_iterator(temp / "to")) {
            if (std::filesystem::file_size(entry.path()) == 600 + 41)
                test::flipBit(entry.path(), 300);
        }
    });
    CopySettling settling({.verify = true});
    FileCopier copier({.hash = true});
    std::string expected;
    for (int i = 1; i <= kCopies; ++i) {
        const std::string name = std::to_string(i);
        const std::string bytes(600 + static_cast<std::size_t>(i), 'x');
        auto copy =
            copier.prepare(temp.write("from/" + name, bytes).native(), target(name).native(), bytes.size(), goOn);
        ASSERT_TRUE(copy);
        settling.add(i, (temp / "from" / name).native(), *std::move(copy));
        expected += i == 41 ? "" : name + " ";
    }
    EXPECT_EQ(endOf(settling), "41 (what was read back is not what was written at byte 300) " + expected);
    EXPECT_FALSE(std::filesystem::exists(target("41")));
}

TEST_F(CopySettlingTest, ACopyThatIsWhatWasReadIsProven) {
    CopySettling settling({.verify = true});
    FileCopier copier({.hash = true});
    for (const std::size_t size : {0UL, 1UL, 4095UL, 4096UL, 1'048'576UL, 1'048'577UL}) {
        const std::string bytes(size, 'x');
        auto copy =
            copier.prepare(temp.write("from/a", bytes).native(), target(std::to_string(size)).native(), size, goOn);
        ASSERT_TRUE(copy);
        settling.add(static_cast<std::int64_t>(size), (temp / "from/a").native(), *std::move(copy));
    }
    EXPECT_EQ(endOf(settling), "0 1 4095 4096 1048576 1048577 ");
}

TEST_F(CopySettlingTest, ManyCopiesKeepTheirOrder) {
    FailingFiles disk;
    disk.refuse("link", EPERM);  // temporary names: small batches
    std::string expected;
    CopySettling settling({});
    for (int i = 1; i <= 300; ++i) {
        add(settling, std::to_string(i));
        expected += std::to_string(i) + " ";
    }
    EXPECT_EQ(endOf(settling), expected);
    const auto there = std::distance(std::filesystem::directory_iterator(temp / "to"), {});
    EXPECT_EQ(there, 300) << "and no temporary name stays";
}

}  // namespace
}  // namespace quillon
