// SPDX-License-Identifier: MIT
// What a command answers to boxes: by its option, by a person at the terminal, or cautiously.
#include "programs/command_dialogs.h"

#include <sstream>

#include <gtest/gtest.h>

#include "app/installation.h"
#include "programs/job_command.h"
#include "support/temp_folder.h"

namespace quillon::test {
namespace {

namespace fs = std::filesystem;

const MessageBox kOrdinary{"Overwrite file", "Are you sure?", BoxStyle::Question, BoxButtons::YesNo};
const MessageBox kOwn{"No Database", "Go on?", BoxStyle::Question, BoxButtons::YesNoCancel, true};

TEST(CommandDialogsTest, AYesGivenAheadIsNoAnswerToWhatNeedsItsOwn) {
    std::istringstream in;
    std::ostringstream err;
    CommandDialogs dialogs(in, err, {.alwaysYes = true});
    EXPECT_EQ(dialogs.show(kOrdinary), BoxAnswer::Yes);
    EXPECT_EQ(dialogs.unasked(), "");
    EXPECT_EQ(dialogs.show(kOwn), BoxAnswer::Cancel);
    EXPECT_EQ(dialogs.unasked(), "Go on?");
    EXPECT_TRUE(dialogs.unaskedNeedsOwnAnswer());
}

TEST(CommandDialogsTest, AtATerminalAPersonAnswersItAllTheSame) {
    std::istringstream in("y\n");
    std::ostringstream err;
    CommandDialogs dialogs(in, err, {.alwaysYes = true, .terminal = true});
    EXPECT_EQ(dialogs.show(kOwn), BoxAnswer::Yes);
    EXPECT_NE(err.str().find("y = Yes, n = No, c = Cancel"), std::string::npos);
}

// A job whose settings name a share that is an empty folder, as one that is not mounted is.
class GoneShareTest : public testing::Test {
protected:
    GoneShareTest() {
        for (const char* name : {"app", "source", "share", "local/Database", "local/Settings", "zips"})
            fs::create_directories(folder / name);
        Installation installation(folder / "app");
        AppSettings& settings = installation.settings;
        settings.runHeaderTest = settings.useCommonHeaders = settings.useSharedDb = 1;
        settings.localPath.assign(pageFromPath(folder / "local"));
        settings.zipPath.assign(pageFromPath(folder / "zips"));
        settings.sharedPath.assign(pageFromPath(folder / "share"));
        EXPECT_TRUE(installation.saveSettingsRecord());
        folder.write("local/Database/abc.dat", "1,MZ,T\r\n");
    }

    int job(const std::vector<std::string>& more, bool canAsk = false) {
        std::vector<std::string> arguments = {
            "--job", "1234", "--source", (folder / "source").native(), "--app", (folder / "app").native()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        out.str("");
        err.str("");
        return runJobCommand(arguments, {in, out, err, canAsk, false, [] { return 0; }});
    }
    [[nodiscard]] bool told(const std::string& text) const { return err.str().find(text) != std::string::npos; }

    TempFolder folder;
    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;
};

TEST_F(GoneShareTest, TheJobEndsAndSaysWhatYesDoesNotAnswer) {
    EXPECT_EQ(job({"--yes"}), 1);
    EXPECT_TRUE(told("The shared database looks empty (")) << err.str();
    EXPECT_TRUE(told("): 1 term files of this computer are about to move to Kept. Is the share mounted?\n"));
    EXPECT_TRUE(
        told("No Database: Unable to find shared database. Do you want to continue the check with the local "
             "copy?\n  answered No, as nobody can be asked\n"));
    EXPECT_TRUE(told("the job ended without a list; answer at a terminal, as --yes does not: Unable to find shared"));
}

TEST_F(GoneShareTest, AQuietJobSaysAllTheSameThatTermFilesAreAboutToGo) {
    EXPECT_EQ(job({"--yes", "--quiet"}), 1);
    EXPECT_TRUE(told("): 1 term files of this computer are about to move to Kept. Is the share mounted?\n"))
        << err.str();
    EXPECT_FALSE(told("Copying ext database from network drive")) << "no warning, no row: " << err.str();
}

TEST_F(GoneShareTest, APersonAtTheTerminalMayGoOn) {
    in.str("y\ny\n");
    EXPECT_EQ(job({"--yes"}, true), 0) << err.str();
    EXPECT_TRUE(told("Unable to find local database. Do you want to disable the file quality testing?\n  y = Yes"));
}

TEST_F(GoneShareTest, WithoutTestingNoDatabaseIsAskedFor) {
    EXPECT_EQ(job({"--yes", "--no-test"}), 0) << err.str();
    EXPECT_TRUE(fs::exists(folder / "local/Database/abc.dat"));
}

}  // namespace
}  // namespace quillon::test
