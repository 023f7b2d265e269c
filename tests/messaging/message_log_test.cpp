// SPDX-License-Identifier: MIT
#include "messaging/message_log.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "platform/folders.h"
#include "support/fake_surroundings.h"
#include "support/temp_folder.h"

namespace quillon {
namespace {

class MessageLog : public testing::Test {
protected:
    MessageLog() {
        std::filesystem::create_directories(folder.path() / "app");
        installation.settings.localPath.assign(pageFromPath(folder.path() / "local"));
        installation.settings.sharedPath.assign(pageFromPath(folder.path() / "shared"));
        installation.refreshPathVariables();
    }
    void share() {
        installation.settings.useSharedDb = 1;
        installation.refreshPathVariables();
    }
    bool write(std::string text) {
        written = std::move(text);
        return writeMessageLog(written, installation, around.surroundings).has_value();
    }
    std::string localLog() const { return folder.read("local/Settings/Messaging logs/logs.dat"); }
    std::string sharedLog() const { return folder.read("shared/Settings/Messaging logs/logs.dat"); }

    test::TempFolder folder;
    test::FakeSurroundings around;
    Installation installation{folder.path() / "app"};
    std::string written;
};

TEST_F(MessageLog, ARecordIsDateTimeSemicolonTextAndALineEnd) {
    EXPECT_TRUE(write("a text"));
    EXPECT_EQ(localLog(), "15/11/2026 10:20:30;a text\r\n");
    EXPECT_EQ(written, "15/11/2026 10:20:30;a text");
}

TEST_F(MessageLog, RecordsAreAppended) {
    EXPECT_TRUE(write("one"));
    around.clock.time.second = 31;
    EXPECT_TRUE(write("two"));
    EXPECT_EQ(localLog(), "15/11/2026 10:20:30;one\r\n15/11/2026 10:20:31;two\r\n");
}

TEST_F(MessageLog, ALineEndInTheTextBecomesCharacter253) {
    EXPECT_TRUE(write("one\r\ntwo\r\n\r\nthree"));
    EXPECT_EQ(localLog(), "15/11/2026 10:20:30;one\xFDtwo\xFD\xFDthree\r\n");
    EXPECT_EQ(written, "15/11/2026 10:20:30;one\u00FDtwo\u00FD\u00FDthree");
}

TEST_F(MessageLog, ALoneCarriageReturnOrLineFeedCannotStartANewRecord) {
    EXPECT_TRUE(write("a\nb\rc"));
    EXPECT_EQ(localLog(),
              "15/11/2026 10:20:30;a\xFD"
              "b\xFD"
              "c\r\n");
}

TEST_F(MessageLog, WithoutSharingThereIsOneFileAndNoFolderOnTheShare) {
    EXPECT_TRUE(write("text"));
    EXPECT_FALSE(pathExists(folder.path() / "shared"));
}

TEST_F(MessageLog, WithSharingBothFilesAreWritten) {
    share();
    EXPECT_TRUE(write("text"));
    EXPECT_EQ(localLog(), "15/11/2026 10:20:30;text\r\n");
    EXPECT_EQ(sharedLog(), "15/11/2026 10:20:30;text\r\n");
}

TEST_F(MessageLog, AnUnreachableShareKeepsTheLocalRecord) {
    folder.write("shared", "a file where the share's folder should be");
    share();
    EXPECT_FALSE(write("text"));
    EXPECT_EQ(localLog(), "15/11/2026 10:20:30;text\r\n");
}

TEST_F(MessageLog, AFailureOfTheLocalFileSkipsTheSharedOne) {
    folder.write("local", "a file where the local folder should be");
    share();
    EXPECT_FALSE(write("text"));
    EXPECT_FALSE(pathExists(folder.path() / "shared/Settings/Messaging logs/logs.dat"));
    EXPECT_TRUE(pathExists(folder.path() / "shared/Settings/Messaging logs")) << "the share's folder is made first";
}

TEST_F(MessageLog, TheLocalFolderIsMadeAtEveryCall) {
    EXPECT_TRUE(write("one"));
    std::filesystem::remove_all(folder.path() / "local");
    EXPECT_TRUE(write("two"));
    EXPECT_EQ(localLog(), "15/11/2026 10:20:30;two\r\n");
    EXPECT_FALSE(pathExists(folder.path() / "app/Messageing Logs")) << "the folder that is asked for is never made";
}

TEST_F(MessageLog, TheMisspeltFolderInTheApplicationFolderStopsTheCreation) {
    std::filesystem::create_directories(folder.path() / "app/Messageing Logs");
    EXPECT_FALSE(write("text"));
    EXPECT_FALSE(pathExists(folder.path() / "local"));
}

TEST_F(MessageLog, WithoutALocalRootNothingIsWritten) {
    installation.settings = {};
    installation.refreshPathVariables();
    EXPECT_FALSE(write("text"));
}

}  // namespace
}  // namespace quillon
