// SPDX-License-Identifier: MIT
// What a share refuses is said with the folder and the reason, and the trial leaves nothing behind.
#include "setup/share_trial.h"

#include <cerrno>

#include <gtest/gtest.h>

#include "platform/folders.h"
#include "setup/setup_folders.h"
#include "support/failing_files.h"

namespace quillon::test {
namespace {

class ShareTrialTest : public testing::Test, public SetupFolders {
protected:
    [[nodiscard]] std::string refused() const { return whatShareRefuses(installation.paths()); }
    void expectNothingLeft() const {
        for (const char* name : {"share", "share/Database", "share/Settings"})
            EXPECT_EQ(listEntries(folder / name)->size(), std::string(name) == "share" ? 2U : 0U) << name;
    }
    [[nodiscard]] std::string both(const std::string& what) const {
        return (folder / "share/Database").native() + what + "; " + (folder / "share/Settings").native() + what;
    }
};

TEST_F(ShareTrialTest, AShareThatTakesAllRefusesNothing) {
    EXPECT_EQ(refused(), "");
    expectNothingLeft();
}

TEST_F(ShareTrialTest, FoldersThatAreNotThereAreNotTried) {
    std::filesystem::remove_all(folder / "share");
    EXPECT_EQ(refused(), "");
    installation.settings.sharedPath.assign(PageText{});
    installation.refreshPathVariables();
    EXPECT_EQ(refused(), "");
}

TEST_F(ShareTrialTest, EachRefusalIsNamed) {
    struct Case {
        const char* call;
        const char* text;
        bool leaves;
    };
    const Case cases[] = {{"open", ": no file can be made there (Permission denied)", false},
                          {"rename", ": no file can be replaced there (Permission denied)", false},
                          {"unlink", ": no file can be deleted there (Permission denied)", true}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.call);
        {
            FailingFiles files;
            files.refuse(c.call, EACCES);
            EXPECT_EQ(refused(), both(c.text));
            EXPECT_EQ(refused(), both(c.text));
            EXPECT_LE(listEntries(folder / "share/Database")->size(), 1U) << "however often it is tried";
        }
        if (!c.leaves)
            expectNothingLeft();
    }
    EXPECT_TRUE(listFiles(folder / "share/Database")->empty()) << "what cannot be deleted is in no listing";
}

TEST_F(ShareTrialTest, AFullShareIsToldAsFull) {
    FailingFiles files;
    files.refuse("write", ENOSPC);
    EXPECT_EQ(refused(), both(": no file can be made there (No space left on device)"));
}

}  // namespace
}  // namespace quillon::test
