// SPDX-License-Identifier: MIT
// The installation: reading and saving its record, and the paths that follow from it.
#include "app/installation.h"

#include <array>
#include <utility>

#include <gtest/gtest.h>

#include "app/app_fixture.h"

namespace quillon {
namespace {

using InstallationTest = test::AppFixture;

void putLittleEndian(std::string& record, std::size_t offset, std::uint32_t number) {
    for (std::size_t i = 0; i < 4; ++i)
        record[offset + i] = static_cast<char>(static_cast<unsigned char>(number >> (8 * i)));
}

std::string recordWith(std::size_t offset, const std::string& text, std::size_t width = 512) {
    std::string record(3091, '\0');
    std::string field = text;
    field.resize(width, ' ');
    record.replace(offset, width, field);
    return record;
}

TEST_F(InstallationTest, TheSettingsFileStandsInTheApplicationFolder) {
    EXPECT_EQ(installation.paths().settingsFile, temp / "app/settings.dat");
    EXPECT_EQ(installation.rawListPath(), temp / "app/tFile.csv");
    EXPECT_EQ(installation.defaultDatabasePath(), temp / "app/db.zip");
}

TEST_F(InstallationTest, PathsFollowFromTheRecord) {
    std::string record = recordWith(4, "/data/local");
    record.replace(516, 512, recordWith(516, "/data/zip").substr(516, 512));
    record.replace(2568, 512, recordWith(2568, "/mnt/share").substr(2568, 512));
    record[2566] = 1;
    record[3088] = '_';
    temp.write("app/settings.dat", record);
    ASSERT_TRUE(installation.loadSettingsRecord());
    const Paths& paths = installation.paths();
    EXPECT_EQ(paths.localPath, "/data/local");
    EXPECT_EQ(paths.localSettings, "/data/local/Settings");
    EXPECT_EQ(paths.localDatabase, "/data/local/Database");
    EXPECT_EQ(paths.zipPath, "/data/zip");
    EXPECT_EQ(paths.sharedPath, "/mnt/share");
    EXPECT_EQ(paths.sharedSettings, "/mnt/share/Settings");
    EXPECT_EQ(paths.sharedDatabase, "/mnt/share/Database");
    EXPECT_TRUE(paths.useSharedDb);
    EXPECT_EQ(paths.fileListSeparator, "_");
}

TEST_F(InstallationTest, SharingIsOnForOneAlone) {
    for (const int flag : {0, 1, 2, -1}) {
        installation.settings.useSharedDb = static_cast<std::int16_t>(flag);
        installation.refreshPathVariables();
        EXPECT_EQ(installation.paths().useSharedDb, flag == 1) << flag;
    }
}

TEST_F(InstallationTest, FoldersOfAnEmptyRootAreEmptyPaths) {
    installation.refreshPathVariables();
    EXPECT_TRUE(installation.paths().localPath.empty());
    EXPECT_TRUE(installation.paths().localSettings.empty());
    EXPECT_TRUE(installation.paths().sharedDatabase.empty());
}

TEST_F(InstallationTest, ASeparatorOfAZeroByteOrABlankMeansAHyphen) {
    const std::array<std::pair<char, const char*>, 4> cases = {
        {{'\0', "-"}, {' ', "-"}, {'_', "_"}, {'\xA7', "\xC2\xA7"}}};
    for (const auto& [byte, text] : cases) {
        std::string record(3091, '\0');
        record[3088] = byte;
        temp.write("app/settings.dat", record);
        ASSERT_TRUE(installation.loadSettingsRecord());
        EXPECT_EQ(installation.paths().fileListSeparator, text);
    }
}

TEST_F(InstallationTest, AFileOfAnyPositiveLengthIsReadAsTheRecord) {
    temp.write("app/settings.dat", recordWith(4, "/data/local").substr(0, 400));
    ASSERT_TRUE(installation.loadSettingsRecord());
    EXPECT_EQ(installation.paths().localPath, "/data/local");
    EXPECT_TRUE(installation.paths().zipPath.empty());

    temp.write("app/settings.dat", recordWith(4, "/data/other") + std::string(9000, 'x'));
    ASSERT_TRUE(installation.loadSettingsRecord());
    EXPECT_EQ(installation.paths().localPath, "/data/other");
    EXPECT_EQ(encodeSettings(installation.settings).size(), 3091U);
}

TEST_F(InstallationTest, AnEnormousSettingsFileIsReadAsTheRecord) {
    const auto path = temp.write("app/settings.dat", recordWith(4, "/data/local"));
    std::filesystem::resize_file(path, 1ULL << 32);
    ASSERT_TRUE(installation.loadSettingsRecord());
    EXPECT_EQ(installation.paths().localPath, "/data/local");
}

TEST_F(InstallationTest, APortStoredAsZeroBecomesItsDefaultInMemoryAndIsSavedBack) {
    const std::string stored = recordWith(4, "/data/local");
    temp.write("app/settings.dat", stored);
    ASSERT_TRUE(installation.loadSettingsRecord());
    EXPECT_EQ(installation.settings.alertSourcePort, 12020);
    EXPECT_EQ(installation.settings.alertListenPort, 12021);
    EXPECT_EQ(temp.read("app/settings.dat"), stored);

    ASSERT_TRUE(installation.saveSettingsRecord());
    std::string expected = stored;
    putLittleEndian(expected, 3080, 12020);
    putLittleEndian(expected, 3084, 12021);
    EXPECT_EQ(temp.read("app/settings.dat"), expected);
}

TEST_F(InstallationTest, APortThatIsStoredStays) {
    std::string record(3091, '\0');
    putLittleEndian(record, 3080, 40000);
    putLittleEndian(record, 3084, 40001);
    temp.write("app/settings.dat", record);
    ASSERT_TRUE(installation.loadSettingsRecord());
    EXPECT_EQ(installation.settings.alertSourcePort, 40000);
    EXPECT_EQ(installation.settings.alertListenPort, 40001);
}

TEST_F(InstallationTest, ASaveKeepsReservedFieldsByteForByte) {
    std::string record(3091, '\0');
    for (std::size_t i = 0; i < 512; ++i) record[2052 + i] = static_cast<char>(static_cast<unsigned char>(i));
    record.replace(3089, 2, "\x11\x22");
    temp.write("app/settings.dat", record);
    ASSERT_TRUE(installation.loadSettingsRecord());
    ASSERT_TRUE(installation.saveSettingsRecord());
    const std::string saved = temp.read("app/settings.dat");
    ASSERT_EQ(saved.size(), 3091U);
    EXPECT_EQ(saved.substr(2052, 512), record.substr(2052, 512));
    EXPECT_EQ(saved.substr(3089), record.substr(3089));
}

TEST_F(InstallationTest, APathLosesACharacterOutsideThePage) {
    installation.settings.localPath.assign(pageFromPath("/data/\xD0\x96/caf\xC3\xA9"));
    installation.refreshPathVariables();
    EXPECT_EQ(installation.settings.localPath.trimmed().bytes, "/data/?/caf\xE9");
    EXPECT_EQ(installation.paths().localPath, "/data/?/caf\xC3\xA9");
}

TEST_F(InstallationTest, AMissingOrUnreadableFileLeavesTheRecordInMemory) {
    usePaths();
    const AppSettings before = installation.settings;
    const Paths paths = installation.paths();
    EXPECT_FALSE(installation.loadSettingsRecord());
    makeFolder("app/settings.dat");
    EXPECT_FALSE(installation.loadSettingsRecord());
    EXPECT_EQ(installation.settings, before);
    EXPECT_EQ(installation.paths(), paths);
}

TEST_F(InstallationTest, AFailedSaveIsAFailureAndLeavesTheRecordInMemory) {
    usePaths();
    const AppSettings before = installation.settings;
    makeFolder("app/settings.dat/in the way");
    EXPECT_FALSE(installation.saveSettingsRecord());
    EXPECT_EQ(installation.settings, before);
}

TEST_F(InstallationTest, ASaveWritesEverythingThatIsHeldInMemory) {
    usePaths(true);
    installation.settings.alertRecipient.assign(PageText{"Query"});
    ASSERT_TRUE(installation.saveSettingsRecord());
    Installation other(temp / "app");
    ASSERT_TRUE(other.loadSettingsRecord());
    EXPECT_EQ(other.settings, installation.settings);
    EXPECT_EQ(other.paths(), installation.paths());
}

struct OddFolder {
    const char* name;
    NativePath path;
    const char* reason;
};
const OddFolder kOddFolders[] = {
    {"other characters", "/srv/\u6570\u636e", "it has characters that are not in the 8-bit page of the settings"},
    {"no text", "/srv/\xFF", "it has characters that are not in the 8-bit page of the settings"},
    {"long", NativePath("/srv") / std::string(600, 'x'), "it is longer than 512 characters"},
    {"a blank at the end", "/srv/blank ", "it ends in a blank"},
};

TEST_F(InstallationTest, AFolderThatTheRecordCannotHoldIsRememberedBesideIt) {
    EXPECT_EQ(whyNotInSettings("/srv/caf\u00e9"), "");
    for (const auto& odd : kOddFolders) {
        SCOPED_TRACE(odd.name);
        EXPECT_EQ(whyNotInSettings(odd.path), odd.reason);
        for (const auto which : {SettingsFolder::Local, SettingsFolder::Archive, SettingsFolder::Shared}) {
            Installation first(temp / "app");
            first.setFolder(which, odd.path);
            EXPECT_EQ(first.folder(which), odd.path);
            ASSERT_TRUE(first.saveSettingsRecord());
            EXPECT_EQ(temp.read("app/settings.dat").size(), kSettingsBytes);
            Installation second(temp / "app");
            ASSERT_TRUE(second.loadSettingsRecord());
            EXPECT_EQ(second.folder(which), odd.path);
            second.setFolder(which, "/srv/plain");
            ASSERT_TRUE(second.saveSettingsRecord());
            EXPECT_EQ(temp.read("app/preferences.ini").find("folder."), std::string::npos) << "it is forgotten again";
        }
    }
}

TEST_F(InstallationTest, WithoutSuchAFolderNoPreferencesAreWritten) {
    installation.setFolder(SettingsFolder::Local, "/srv/plain");
    ASSERT_TRUE(installation.saveSettingsRecord());
    EXPECT_FALSE(exists("app/preferences.ini"));
}

TEST_F(InstallationTest, ARememberedFolderCountsForItsOwnRecordAlone) {
    installation.setFolder(SettingsFolder::Shared, "/mnt/\u6570\u636e");
    ASSERT_TRUE(installation.saveSettingsRecord());
    AppSettings other;
    other.sharedPath.assign(PageText{"/mnt/share"});
    installation.settings = other;
    installation.refreshPathVariables();
    EXPECT_EQ(installation.paths().sharedPath, "/mnt/share") << "a record from elsewhere means what it says";
    ASSERT_TRUE(installation.saveSettingsRecord());
    ASSERT_TRUE(installation.loadSettingsRecord());
    EXPECT_EQ(installation.paths().sharedPath, "/mnt/share");
}

}  // namespace
}  // namespace quillon
