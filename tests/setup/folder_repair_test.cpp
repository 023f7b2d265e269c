// SPDX-License-Identifier: MIT
#include "setup/folder_repair.h"

#include <gtest/gtest.h>

#include "app/folder_structure.h"
#include "platform/folders.h"
#include "setup/setup_folders.h"

namespace quillon::test {
namespace {

class FolderRepairTest : public testing::Test, public SetupFolders {
protected:
    FolderRepairTest() { folder.write("app/settings.dat", "1"); }
    bool exists(const std::string& name) const { return pathExists(folder / name); }
    void expectFailureBox() {
        fake.dialogs.expectBox(
            "Error",
            "Unable to repair folder structure. Please check that network drives are mapped correcty, "
            "and that the shared drives are accessible.",
            BoxAnswer::Ok, BoxStyle::Warning);
    }
};

TEST_F(FolderRepairTest, EveryMissingFolderIsCreated) {
    std::filesystem::remove_all(folder / "local");
    std::filesystem::remove_all(folder / "share");
    repairFolders(installation, fake.surroundings);
    for (const char* name : {"local/Settings", "local/Database", "share/Database", "share/Settings"})
        EXPECT_TRUE(exists(name)) << name;
}

TEST_F(FolderRepairTest, TheArchiveFolderIsNotRepaired) {
    installation.settings.zipPath.assign(pageFromPath(folder / "file/zips"));
    installation.refreshPathVariables();
    folder.write("file", "in the way");
    expectFailureBox();
    repairFolders(installation, fake.surroundings);
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
        EXPECT_EQ(entry.path().native().find(' '), std::string::npos) << entry.path();
}

TEST_F(FolderRepairTest, AShareOutOfReachIsTold) {
    installation.settings.sharedPath.assign(pageFromPath(folder / "file/share"));
    installation.refreshPathVariables();
    folder.write("file", "in the way");
    expectFailureBox();
    repairFolders(installation, fake.surroundings);
}

}  // namespace
}  // namespace quillon::test
