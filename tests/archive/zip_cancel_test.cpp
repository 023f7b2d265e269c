// SPDX-License-Identifier: MIT
// A run of "Zip" that is cancelled while it writes.
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "archive/zip_screen.h"
#include "platform/whole_file.h"

namespace quillon::test {
namespace {

class CancelledZipTest : public testing::Test, public ZipScreen {
protected:
    CancelledZipTest() {
        open();
        fake.loop.onTurn = [this](int) {
            if (lists.state.progressVisible)
                lists.cancel();
        };
    }
    ~CancelledZipTest() override {
        std::error_code error;
        std::filesystem::remove_all(otherVolume, error);
    }
    CancelledZipTest(const CancelledZipTest&) = delete;
    CancelledZipTest& operator=(const CancelledZipTest&) = delete;

    // The memory file system, where it is another volume than the temporary folder.
    const NativePath otherVolume = "/dev/shm/quillon-zip-test-" + folder.path().filename().native();
};

TEST_F(CancelledZipTest, TheOldArchiveComesBackToAnotherVolume) {
    std::error_code error;
    if (!std::filesystem::create_directory(otherVolume, error))
        GTEST_SKIP() << "/dev/shm cannot be written";
    installation.useZipPath(otherVolume);
    const NativePath archive = otherVolume / "1234.zip";
    std::ofstream(archive) << "old archive";
    expectOverwriteQuestion(BoxAnswer::Yes, archive.native());
    lists.zip();
    EXPECT_EQ(readWholeFile(archive), "old archive");
    EXPECT_FALSE(exists(kept("1234.zip")));
    EXPECT_EQ(lists.noticeLine(), "Cancelled: archive and lists are as they were");
    EXPECT_EQ(lists.state.rows.size(), 2U);
}

TEST_F(CancelledZipTest, AnArchiveThatHasComeMeanwhileStaysAndTheOldOneIsNamed) {
    folder.write("zips/1234.zip", "old archive");
    expectOverwriteQuestion(BoxAnswer::Yes);
    screen.onShow = [this] {
        if (lists.state.progressVisible)
            folder.write("zips/1234.zip", "another archive");
    };
    lists.zip();
    EXPECT_EQ(folder.read("zips/1234.zip"), "another archive");
    EXPECT_EQ(folder.read(kept("1234.zip")), "old archive");
    EXPECT_EQ(lists.noticeLine(), "Cancelled: the lists are as they were, and the old archive is " +
                                      path(kept("1234.zip")) + " (another one stands under its name)");
}

}  // namespace
}  // namespace quillon::test
