// SPDX-License-Identifier: MIT
#include "testing/database_undo.h"

#include <map>
#include <random>

#include <gtest/gtest.h>

#include "platform/folders.h"
#include "platform/whole_file.h"
#include "setup/setup_folders.h"

namespace quillon::test {
namespace {

using State = std::map<std::string, std::string>;

class DatabaseUndoTest : public testing::Test {
protected:
    [[nodiscard]] NativePath settings() const { return folders.installation.paths().localSettings; }
    [[nodiscard]] NativePath pathOf(const std::string& file) const { return settings().parent_path() / file; }
    [[nodiscard]] std::string bytesOf(const std::string& file) const {
        return readWholeFile(pathOf(file)).value_or("(missing)");
    }
    /// A change as a screen makes one. No bytes: the file goes.
    std::string change(const std::string& file, const std::optional<std::string>& after) {
        EXPECT_TRUE(changeNoted(settings(), pathOf(file), {}, [&]() -> Result<void> {
            return after ? saveWholeFile(pathOf(file), *after) : removeFile(pathOf(file));
        }));
        return readHistory(settings(), 1).front().id;
    }
    [[nodiscard]] Result<LostNote> undo(const std::string& id) {
        return undoChange(folders.installation, folders.kept, HistoryRoot::Local, id, "Test");
    }

    SetupFolders folders;
};

TEST_F(DatabaseUndoTest, TheBytesAreThoseOfBefore) {
    change("Database/jpg.dat", "1,a,T");
    const auto id = change("Database/jpg.dat", "1,a,T\r\n2,b,T\r\n");
    ASSERT_TRUE(undo(id));
    EXPECT_EQ(bytesOf("Database/jpg.dat"), "1,a,T");
    const auto newest = readHistory(settings(), 1).front();
    EXPECT_EQ(newest.undoes, id);
    EXPECT_EQ(newest.screen, "Test");
    ASSERT_TRUE(undo(newest.id)) << "an undo is a change like any other";
    EXPECT_EQ(bytesOf("Database/jpg.dat"), "1,a,T\r\n2,b,T\r\n");
}

TEST_F(DatabaseUndoTest, AFileThatCameGoesUnderKept) {
    const auto id = change("Database/jpg.dat", "1,a,T\r\n");
    ASSERT_TRUE(undo(id));
    EXPECT_EQ(bytesOf("Database/jpg.dat"), "(missing)");
    EXPECT_TRUE(pathExists(folders.folder / folders.keptName("Database/jpg.dat")));
}

TEST_F(DatabaseUndoTest, WhatCameLaterStays) {
    change("Database/jpg.dat", "1,a,T\r\n");
    const auto id = change("Database/jpg.dat", "1,a,T\r\n2,bad,T\r\n");
    change("Database/jpg.dat", "1,a,T\r\n2,bad,T\r\n3,c,T\r\n");
    ASSERT_TRUE(undo(id));
    EXPECT_EQ(bytesOf("Database/jpg.dat"), "1,a,T\r\n3,c,T\r\n");
}

TEST_F(DatabaseUndoTest, ARecordThatWasChangedAgainIsLeftAlone) {
    change("Database/jpg.dat", "1,a,T\r\n");
    const auto id = change("Database/jpg.dat", "1,b,T\r\n");
    change("Database/jpg.dat", "1,c,T\r\n");
    const auto undone = undo(id);
    ASSERT_FALSE(undone);
    EXPECT_EQ(undone.error().text,
              "Database/jpg.dat: the same records were changed again since. Undo the later change first");
    EXPECT_EQ(bytesOf("Database/jpg.dat"), "1,c,T\r\n");
}

TEST_F(DatabaseUndoTest, AnUnknownChangeAndAForeignFileAreRefused) {
    EXPECT_EQ(undo("20261122T110000.000001Z-LAB7-1-0").error().kind, ErrorKind::NotFound);
    EXPECT_EQ(undo("../x").error().kind, ErrorKind::NotFound);
    folders.folder.write("secret", "new");
    DatabaseChange foreign;
    foreign.files = {{"../secret", "old", "new"}};
    folders.folder.write("local/Settings/History/2026-11/20261122T110000.000001Z-LAB7-1-0.txt", noteBytes(foreign));
    EXPECT_EQ(undo("20261122T110000.000001Z-LAB7-1-0").error().kind, ErrorKind::BadName);
    EXPECT_EQ(readWholeFile(folders.folder / "secret").value(), "new");
}

TEST_F(DatabaseUndoTest, UndoAfterAHundredRandomChangesBringsBackAnyChosenTime) {
    const std::vector<std::string> files{"Database/a.dat", "Database/b.dat", "Settings/SkipList.dat",
                                         "Settings/Errors.dat"};
    std::mt19937 random(11);
    const auto state = [&] {
        State all;
        for (const auto& file : files) all[file] = bytesOf(file);
        return all;
    };
    std::vector<State> states{state()};
    std::vector<std::string> ids;
    for (int i = 0; i < 100; ++i) {
        const auto& file = files[random() % files.size()];
        const bool goes = random() % 8 == 0 && bytesOf(file) != "(missing)";
        std::string bytes;
        for (std::size_t line = random() % 4; line > 0; --line)
            bytes += std::to_string(random() % 3) + (random() % 5 == 0 ? "\n" : "\r\n");
        bytes += std::to_string(i);
        ids.push_back(change(file, goes ? std::nullopt : std::optional(bytes)));
        states.push_back(state());
    }
    std::size_t now = 100;
    for (const std::size_t chosen : {90U, 61U, 60U, 7U, 0U}) {
        for (; now > chosen; --now) ASSERT_TRUE(undo(ids[now - 1])) << now;
        EXPECT_EQ(state(), states[chosen]) << chosen;
    }
}

TEST_F(DatabaseUndoTest, OnAShareTheLocalCopyFollowsWhereItWasTheSame) {
    folders.installation.settings.useSharedDb = 1;
    folders.installation.refreshPathVariables();
    const Paths& paths = folders.installation.paths();
    ASSERT_EQ(rootInUse(paths), HistoryRoot::Shared);
    for (const char* name : {"jpg.dat", "png.dat"}) {
        ASSERT_TRUE(changeNoted(paths.sharedSettings, paths.sharedDatabase / name, {},
                                [&] { return saveWholeFile(paths.sharedDatabase / name, "1,new,T\r\n"); }));
        const auto id = readHistory(paths.sharedSettings, 1).front().id;
        const bool same = std::string_view(name) == "jpg.dat";
        folders.folder.write(std::string("local/Database/") + name, same ? "1,new,T\r\n" : "1,own,T\r\n");
        ASSERT_TRUE(undoChange(folders.installation, folders.kept, HistoryRoot::Shared, id, "Test"));
        EXPECT_FALSE(pathExists(paths.sharedDatabase / name));
        EXPECT_EQ(pathExists(paths.localDatabase / name), !same);
    }
}

TEST_F(DatabaseUndoTest, ALocalCopyThatFollowsWithoutANoteIsTold) {
    folders.installation.settings.useSharedDb = 1;
    folders.installation.refreshPathVariables();
    const Paths& paths = folders.installation.paths();
    ASSERT_TRUE(changeNoted(paths.sharedSettings, paths.sharedDatabase / "jpg.dat", {},
                            [&] { return saveWholeFile(paths.sharedDatabase / "jpg.dat", "1,new,T\r\n"); }));
    const auto id = readHistory(paths.sharedSettings, 1).front().id;
    folders.folder.write("local/Database/jpg.dat", "1,new,T\r\n");
    folders.folder.write("local/Settings/History", "a file where the folder should be");
    const auto undone = undoChange(folders.installation, folders.kept, HistoryRoot::Shared, id, "Test");
    ASSERT_TRUE(undone);
    ASSERT_TRUE(*undone);
    EXPECT_NE((*undone)->text.find("local/Settings/History"), std::string::npos) << (*undone)->text;
    EXPECT_FALSE(pathExists(paths.localDatabase / "jpg.dat"));
}

}  // namespace
}  // namespace quillon::test
