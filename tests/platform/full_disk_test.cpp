// SPDX-License-Identifier: MIT
// A disk that is really full: a memory file system of a fixed size, mounted for this process alone. Where no such
// mount is allowed this program says so and counts as skipped.
#include <cstdio>
#include <fstream>
#include <iostream>
#include <string>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "app/kept_files.h"
#include "platform/copy_file.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "support/fake_surroundings.h"
#include "support/posix_files.h"
#include "support/temp_folder.h"

namespace quillon {
namespace {

using test::namesIn;
using test::TempFolder;

// A disk of 256 KiB and 24 files.
class FullDisk : public testing::Test {
protected:
    void SetUp() override {
        std::filesystem::create_directory(temp / "disk");
        ASSERT_EQ(::mount("none", (temp / "disk").c_str(), "tmpfs", 0, "size=256k,nr_inodes=24"), 0);
    }
    void TearDown() override { ::umount2((temp / "disk").c_str(), MNT_DETACH); }

    // Fills up what room there is.
    void fill() const {
        const int file = ::open((temp / "disk/filler").c_str(), O_WRONLY | O_CREAT, 0600);
        const std::string block(4096, 'f');
        while (::write(file, block.data(), block.size()) > 0) continue;
        ::close(file);
    }

    TempFolder temp;
};

TEST_F(FullDisk, ASaveThatDoesNotFitLeavesTheOldFile) {
    temp.write("disk/a.dat", "old bytes");
    const auto saved = saveWholeFile(temp / "disk/a.dat", std::string(300000, 'n'));
    ASSERT_FALSE(saved);
    EXPECT_NE(saved.error().text.find("No space left on device"), std::string::npos) << saved.error().text;
    EXPECT_EQ(temp.read("disk/a.dat"), "old bytes");
    EXPECT_EQ(namesIn(temp / "disk"), "a.dat");
}

TEST_F(FullDisk, ASaveOnAFullDiskLeavesTheOldFile) {
    temp.write("disk/a.dat", "old bytes");
    fill();
    EXPECT_FALSE(saveWholeFile(temp / "disk/a.dat", "new bytes"));
    EXPECT_EQ(temp.read("disk/a.dat"), "old bytes");
    std::filesystem::remove(temp / "disk/filler");
    EXPECT_TRUE(saveWholeFile(temp / "disk/a.dat", "new bytes"));
}

TEST_F(FullDisk, ADiskWithoutRoomForAnotherFileLeavesTheOldOne) {
    temp.write("disk/a.dat", "old bytes");
    for (int i = 0; i < 40; ++i) std::ofstream(temp / ("disk/" + std::to_string(i))) << "";
    EXPECT_FALSE(saveWholeFile(temp / "disk/a.dat", "new bytes"));
    EXPECT_EQ(temp.read("disk/a.dat"), "old bytes");
}

TEST_F(FullDisk, AnAppendThatDoesNotFitLeavesWholeRows) {
    const std::string row(1000, 'r');
    int rows = 0;
    while (appendToFile(temp / "disk/log", row)) ++rows;
    EXPECT_GT(rows, 200);
    EXPECT_EQ(fileSize(temp / "disk/log").value(), static_cast<std::uint64_t>(rows) * 1000);
}

TEST_F(FullDisk, ACopyThatDoesNotFitNamesTheTargetAndLeavesTheOlderOne) {
    temp.write("source", std::string(300000, 's'));
    temp.write("disk/a", "older target");
    FileCopier copier;
    const auto copied = copier.copy((temp / "source").native(), (temp / "disk/a").native(),
                                    [](std::uint64_t, std::uint64_t) { return true; });
    ASSERT_FALSE(copied);
    EXPECT_EQ(copied.error().side, CopySide::Target);
    EXPECT_EQ(temp.read("disk/a"), "older target");
    EXPECT_EQ(namesIn(temp / "disk"), "a");
}

TEST_F(FullDisk, AMoveUnderKeptOnAFullDiskLeavesTheFileWhereItWas) {
    std::filesystem::create_directory(temp / "app");
    Installation installation(temp / "app");
    installation.settings.localPath.assign(pageFromPath(temp / "disk"));
    installation.refreshPathVariables();
    const test::FakeClock clock;
    KeptFiles kept(installation, clock);
    const auto file = temp.write("7.csv", std::string(300000, 'k'));
    EXPECT_FALSE(kept.moveAway(file));
    EXPECT_FALSE(kept.copyAway(file));
    EXPECT_EQ(temp.read("7.csv"), std::string(300000, 'k'));
    EXPECT_EQ(namesIn(temp / "disk/Kept/2026-11-15 10.20.30"), "") << "a cut copy keeps nothing";
}

bool write(const char* path, const std::string& text) {
    const int file = ::open(path, O_WRONLY);
    const bool written = file >= 0 && ::write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    if (file >= 0)
        ::close(file);
    return written;
}

// Mounts of its own: as root, or as the root of a user name space.
bool enterOwnMounts() {
    const unsigned user = ::getuid();
    const unsigned group = ::getgid();
    if (::unshare(CLONE_NEWNS) != 0) {
        if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
            return false;
        if (!write("/proc/self/setgroups", "deny") ||
            !write("/proc/self/uid_map", "0 " + std::to_string(user) + " 1") ||
            !write("/proc/self/gid_map", "0 " + std::to_string(group) + " 1"))
            return false;
    }
    const TempFolder temp;
    const bool mounted = ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                         ::mount("none", temp.path().c_str(), "tmpfs", 0, "size=64k") == 0;
    if (mounted)
        ::umount2(temp.path().c_str(), MNT_DETACH);
    return mounted;
}

}  // namespace
}  // namespace quillon

int main(int count, char* arguments[]) {
    testing::InitGoogleTest(&count, arguments);
    constexpr int skipped = 77;
    if (!quillon::enterOwnMounts()) {
        std::cout << "Skipped: this user may not mount a disk of its own\n";
        return skipped;
    }
    return RUN_ALL_TESTS();
}
