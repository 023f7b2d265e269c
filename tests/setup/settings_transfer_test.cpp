// SPDX-License-Identifier: MIT
#include "setup/settings_transfer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/folders.h"
#include "setup/setup_folders.h"

namespace quillon::test {
namespace {

class SettingsTransferTest : public testing::Test, public SetupFolders {
protected:
    void expectExportFolder(std::optional<NativePath> answer) {
        fake.dialogs.expectFolder("Export settings to ...", std::move(answer));
    }
    void expectExported() {
        fake.dialogs.expectBox("Export OK", "Settings successfully exported.", BoxAnswer::Ok, BoxStyle::Information);
    }
    void expectPick(std::vector<NativePath> files) { fake.dialogs.expectFiles("Open", std::move(files)); }
    bool import() { return importSettings(installation, fake.dialogs); }
    bool exists(const std::string& name) const { return pathExists(folder / name); }
};

TEST_F(SettingsTransferTest, WithoutASettingsFileThereIsNothingToExport) {
    fake.dialogs.expectBox("No Settings", "There are no settigns to export.", BoxAnswer::Ok, BoxStyle::Warning);
    exportSettings(installation, fake.surroundings);
}

TEST_F(SettingsTransferTest, ExportNeedsASettingsFileAndWritesTheRecordInMemory) {
    folder.write("app/settings.dat", "older bytes");
    installation.settings.alertRecipient.assign(PageText{"DESK2"});
    expectExportFolder(folder / "share");
    expectExported();
    exportSettings(installation, fake.surroundings);
    EXPECT_EQ(folder.read("share/ZOV-Settings.dat"), encodeSettings(installation.settings));
    EXPECT_EQ(folder.read("share/ZOV-Settings.dat").size(), 3091U);
    EXPECT_EQ(folder.read("app/settings.dat"), "older bytes");
}

TEST_F(SettingsTransferTest, ACancelledExportEndsWithoutAWord) {
    folder.write("app/settings.dat", "1");
    expectExportFolder(std::nullopt);
    exportSettings(installation, fake.surroundings);
    EXPECT_FALSE(exists("share/ZOV-Settings.dat"));
}

TEST_F(SettingsTransferTest, AnEarlierExportIsOverwrittenWithoutAQuestionAndKept) {
    folder.write("app/settings.dat", "1");
    folder.write("share/ZOV-Settings.dat", "earlier");
    expectExportFolder(folder / "share");
    expectExported();
    exportSettings(installation, fake.surroundings);
    EXPECT_EQ(folder.read("share/ZOV-Settings.dat").size(), 3091U);
    EXPECT_EQ(folder.read(keptName("ZOV-Settings.dat")), "earlier");
}

TEST_F(SettingsTransferTest, AFailedExportIsTold) {
    folder.write("app/settings.dat", "1");
    expectExportFolder(folder / "missing");
    std::vector<std::string> boxes;
    fake.dialogs.onProblem = [&boxes](const std::string& box) { boxes.push_back(box); };
    exportSettings(installation, fake.surroundings);
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_THAT(boxes[0], testing::MatchesRegex("unexpected question: box \"Error\": An error occurred while exporting "
                                                "the settings. \\(.*missing.*\\)"));
}

TEST_F(SettingsTransferTest, AnExportIsImportedSavedAndDerived) {
    AppSettings other;
    other.localPath.assign(pageFromPath(folder / "elsewhere"));
    other.alertRecipient.assign(PageText{"LAB7"});
    other.useSharedDb = 1;
    const auto file = folder.write("share/ZOV-Settings.dat", encodeSettings(other));
    expectPick({file});
    EXPECT_TRUE(import());
    EXPECT_EQ(installation.paths().localPath, folder / "elsewhere");
    EXPECT_EQ(installation.settings.alertRecipient.trimmed().bytes, "LAB7");
    EXPECT_EQ(decodeSettings(folder.read("app/settings.dat")).localPath, other.localPath);
    EXPECT_EQ(fake.dialogs.lastPick().filter, "Settings File(Settings.Dat)|*Settings.dat|All Files(*.*)|*.*");
    EXPECT_EQ(fake.dialogs.lastPick().startFolder, folder / "local");
}

TEST_F(SettingsTransferTest, AnyFileOfTheRightLengthIsAccepted) {
    const auto file = folder.write("garbage", std::string(3091, '\xFF'));
    expectPick({file});
    EXPECT_TRUE(import());
    EXPECT_EQ(installation.settings.useSharedDb, -1);
    EXPECT_EQ(folder.read("app/settings.dat"), std::string(3091, '\xFF'));
}

TEST_F(SettingsTransferTest, AnotherLengthIsNoSettingsDatabase) {
    const AppSettings before = installation.settings;
    for (const std::size_t length : {0U, 3090U, 3092U}) {
        const auto file = folder.write("file", std::string(length, ' '));
        expectPick({file});
        fake.dialogs.expectBox("Error", "Not a settings database.", BoxAnswer::Ok, BoxStyle::Warning);
        EXPECT_FALSE(import());
    }
    EXPECT_EQ(installation.settings, before);
    EXPECT_FALSE(exists("app/settings.dat"));
}

TEST_F(SettingsTransferTest, ACancelOrAVanishedFileChangesNothing) {
    const AppSettings before = installation.settings;
    expectPick({});
    EXPECT_FALSE(import());
    expectPick({folder / "missing"});
    EXPECT_FALSE(import());
    EXPECT_EQ(installation.settings, before);
}

TEST_F(SettingsTransferTest, AFirstRunStartsAtTheRootOfTheFileSystem) {
    Installation first(folder / "app");
    expectPick({});
    EXPECT_FALSE(importSettings(first, fake.dialogs));
    EXPECT_EQ(fake.dialogs.lastPick().startFolder, NativePath("/"));
}

TEST_F(SettingsTransferTest, ARecordThatCannotBeSavedStandsInMemory) {
    Installation homeless(folder / "missing");
    AppSettings other;
    other.localPath.assign(pageFromPath(folder / "elsewhere"));
    expectPick({folder.write("file", encodeSettings(other))});
    EXPECT_TRUE(importSettings(homeless, fake.dialogs));
    EXPECT_EQ(homeless.paths().localPath, folder / "elsewhere");
}

}  // namespace
}  // namespace quillon::test
