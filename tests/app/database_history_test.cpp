// SPDX-License-Identifier: MIT
#include "app/database_history.h"

#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/folders.h"
#include "platform/host.h"
#include "platform/whole_file.h"
#include "support/failing_files.h"
#include "support/temp_folder.h"

using namespace quillon;
using quillon::test::TempFolder;
using std::chrono::milliseconds;

namespace {

constexpr LeaseTimes kAtOnce{milliseconds(0), milliseconds(20'000)};

class DatabaseHistoryTest : public testing::Test {
protected:
    DatabaseHistoryTest() {
        for (const char* folder : {"Database", "Settings"}) std::filesystem::create_directory(temp / folder);
    }
    [[nodiscard]] NativePath settings() const { return temp / "Settings"; }
    [[nodiscard]] static DatabaseChange change(const std::optional<std::string>& before,
                                               const std::optional<std::string>& after) {
        DatabaseChange change;
        change.screen = "Test";
        change.files = {{"Database/jpg.dat", before, after}};
        return change;
    }
    [[nodiscard]] Result<void> write(const std::string& bytes) const {
        return saveWholeFile(temp / "Database/jpg.dat", bytes);
    }
    [[nodiscard]] std::vector<DatabaseChange> notes() const { return readHistory(settings(), 100); }

    TempFolder temp;
};

TEST(DatabaseNote, ComesBackAsItWasWritten) {
    DatabaseChange change;
    change.id = "20261122T120000.000001Z-LAB7-1-0";
    change.computer = "LAB7";
    change.user = "\xC3\xA4nn";
    change.screen = "Extension Editor";
    change.job = "4711";
    change.undoes = "20261122T110000.000001Z-LAB7-1-0";
    change.remark = "two lines are one";
    change.files = {{"Database/jpg.dat", "1,a,T\r\n", std::nullopt},
                    {"Settings/SkipList.dat", std::nullopt, std::string("\0after: 3\nabc\n", 14)}};
    EXPECT_EQ(parseNote(noteBytes(change)), change);
}

TEST(DatabaseNote, IsPlainText) {
    DatabaseChange change;
    change.id = "ID";
    change.computer = "LAB7";
    change.screen = "Extension\nEditor";
    change.files = {{"Database/jpg.dat", std::nullopt, "1,a,T\r\n"}};
    EXPECT_EQ(noteBytes(change),
              "Quillon database change 1\nid: ID\ncomputer: LAB7\nscreen: Extension Editor\nfile: Database/jpg.dat\n"
              "before: none\nafter: 7\n1,a,T\r\n\n");
}

TEST(DatabaseNote, DamageIsNoNote) {
    DatabaseChange change;
    change.id = "ID";
    change.files = {{"Database/jpg.dat", "old", "new"}};
    const std::string whole = noteBytes(change);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const auto cut = parseNote(whole.substr(0, length));
        EXPECT_TRUE(!cut || cut->files.empty()) << length;
    }
    for (const char* bad : {"", "Quillon database change 2\n", "Quillon database change 1\nid\n",
                            "Quillon database change 1\nfile: x\nbefore: -1\n",
                            "Quillon database change 1\nfile: x\nbefore: 99999999999999999999\nx\n",
                            "Quillon database change 1\nfile: x\nafter: none\nbefore: none\n"})
        EXPECT_FALSE(parseNote(bad)) << bad;
}

TEST_F(DatabaseHistoryTest, EachChangeIsANoteInTheOrderOfTheChanges) {
    std::optional<std::string> before;
    for (int i = 0; i < 5; ++i) {
        DatabaseTurn turn(settings());
        const std::string after = std::to_string(i);
        ASSERT_TRUE(turn.make(change(before, after), [&] { return write(after); }));
        EXPECT_FALSE(turn.problem());
        before = after;
    }
    const auto all = notes();
    ASSERT_EQ(all.size(), 5U);
    EXPECT_EQ(all.front().files.front().after, "4");
    EXPECT_EQ(all.back().files.front().before, std::nullopt);
    EXPECT_EQ(all.front().computer, hostName());
    EXPECT_EQ(all.front().user, userName());
    EXPECT_EQ(readHistory(settings(), 2).size(), 2U);
    EXPECT_EQ(findChange(settings(), all[2].id), all[2]);
    EXPECT_FALSE(findChange(settings(), "../" + all[2].id));
}

// Another computer's clock may be a year ahead.
TEST_F(DatabaseHistoryTest, ALaterChangeSortsBehindWhateverTheClocksSay) {
    temp.write("Settings/History/2999-01/29990101T000000.000000Z-LAB8-1-0.txt",
               noteBytes(change(std::nullopt, "of the future")));
    ASSERT_TRUE(DatabaseTurn(settings()).note(change("a", "b")));
    const auto all = notes();
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all.front().files.front().after, "b");
    EXPECT_EQ(all.front().id.substr(0, 23), "29990101T000000.000001Z");
}

TEST_F(DatabaseHistoryTest, NothingIsNotedOfWhatFailedOrChangesNothing) {
    DatabaseTurn turn(settings());
    EXPECT_FALSE(turn.make(change("a", "b"), []() -> Result<void> { return failure(ErrorKind::PathAccess, "no"); }));
    EXPECT_TRUE(turn.make(change("a", "a"), [] { return Result<void>(); }));
    EXPECT_TRUE(notes().empty());
    EXPECT_TRUE(listEntries(turn.through())->empty());
}

TEST_F(DatabaseHistoryTest, AFullShareCostsTheNoteAndNotTheChange) {
    test::FailingFiles disk;
    DatabaseTurn turn(settings());
    disk.failAt(1, {ENOSPC, true}, "write");
    bool made = false;
    EXPECT_TRUE(turn.make(change("a", "b"), [&] {
        made = true;
        return Result<void>();
    }));
    EXPECT_TRUE(made);
    ASSERT_TRUE(turn.problem());
    EXPECT_NE(turn.problem()->text.find("No space left on device"), std::string::npos);
}

TEST_F(DatabaseHistoryTest, WithoutASettingsFolderChangesAreMadeAllTheSame) {
    for (const NativePath& none : {NativePath(), temp / "missing"}) {
        DatabaseTurn turn(none);
        EXPECT_TRUE(turn.make(change("a", "b"), [&] { return write("b"); }));
        EXPECT_FALSE(turn.problem());
    }
    EXPECT_FALSE(pathExists(temp / "missing"));
}

// A process that dies: before its change, between the change and the note, or behind both.
TEST_F(DatabaseHistoryTest, AProcessThatDiesLeavesTheChangeWithItsNoteOrNeither) {
    for (const bool written : {false, true}) {
        ASSERT_TRUE(write("a"));
        std::filesystem::remove_all(temp / "Settings/History");
        const pid_t child = fork();
        if (child == 0) {
            auto* const turn = new DatabaseTurn(settings());
            const auto made = turn->make(change("a", "b"), [&] {
                if (written && !write("b"))
                    _exit(1);
                _exit(0);
                return Result<void>();
            });
            _exit(made ? 2 : 3);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_EQ(status, 0);
        EXPECT_TRUE(notes().empty());
        const DatabaseTurn next(settings(), kAtOnce);
        EXPECT_EQ(notes().size(), written ? 1U : 0U);
        EXPECT_TRUE(takenLeases(historyFolder(settings())).empty());
    }
}

// It lost its turn while it was asleep: the one who took it changes the file, and its own change comes too late.
TEST_F(DatabaseHistoryTest, APausedOwnerThatReturnsChangesNothingAndNotesNothing) {
    ASSERT_TRUE(write("a"));
    DatabaseTurn paused(settings());
    const auto late = paused.make(change("a", "late"), [&]() -> Result<void> {
        DatabaseTurn next(settings(), kAtOnce);
        EXPECT_TRUE(next.make(change("a", "b"),
                              [&] { return saveWholeFileThrough(next.through(), temp / "Database/jpg.dat", "b"); }));
        EXPECT_TRUE(paused.isLost());
        // What it had ready went with its lock.
        return renameFile(paused.through() / "ready", temp / "Database/jpg.dat");
    });
    EXPECT_FALSE(late);
    EXPECT_EQ(readWholeFile(temp / "Database/jpg.dat").value(), "b");
    ASSERT_EQ(notes().size(), 1U);
    EXPECT_EQ(notes().front().files.front().after, "b");
}

// A share may do what it then says it could not.
TEST_F(DatabaseHistoryTest, AChangeThatWasMadeInSpiteOfWhatTheShareSaysIsNoted) {
    ASSERT_TRUE(write("a"));
    DatabaseTurn turn(settings());
    EXPECT_TRUE(turn.make(change("a", "b"), [&]() -> Result<void> {
        EXPECT_TRUE(write("b"));
        return failure(ErrorKind::PathAccess, "the answer was lost");
    }));
    ASSERT_EQ(notes().size(), 1U);
    EXPECT_FALSE(turn.problem());
}

// The share does not answer any more: whether the bytes got there is seen by whoever comes next.
TEST_F(DatabaseHistoryTest, AChangeWhoseEndNobodySawIsFinishedByTheNextTurn) {
    for (const bool arrived : {false, true}) {
        SCOPED_TRACE(arrived);
        ASSERT_TRUE(write("a"));
        {
            DatabaseTurn turn(settings());
            test::FailingFiles disk;
            disk.refuse("unlink", EIO);
            EXPECT_FALSE(turn.make(change("a", "b"),
                                   [&]() -> Result<void> { return failure(ErrorKind::PathAccess, "no answer"); }));
        }
        EXPECT_TRUE(notes().empty());
        if (arrived) {
            ASSERT_TRUE(write("b"));
        }
        const DatabaseTurn next(settings());
        EXPECT_EQ(notes().size(), arrived ? 1U : 0U);
        EXPECT_TRUE(takenLeases(historyFolder(settings())).empty());
    }
}

TEST_F(DatabaseHistoryTest, AShareThatDoesNotAnswerIsToldFromOneWithoutAHistory) {
    {
        const DatabaseTurn first(settings());
        EXPECT_FALSE(first.isShareAway());
    }
    for (const int number : {EIO, EROFS}) {
        test::FailingFiles disk;
        disk.refuse("rename", number);
        EXPECT_EQ(DatabaseTurn(settings()).isShareAway(), number == EIO);
    }
    EXPECT_FALSE(DatabaseTurn(temp / "none").isShareAway());
}

TEST_F(DatabaseHistoryTest, ARemarkIsANoteOfItsOwn) {
    DatabaseTurn turn(settings());
    DatabaseChange remark;
    remark.about = "20261122T110000.000001Z-LAB7-1-0";
    remark.remark = "the maker changed its header";
    ASSERT_TRUE(turn.note(remark));
    ASSERT_EQ(notes().size(), 1U);
    EXPECT_EQ(notes().front().remark, remark.remark);
}

}  // namespace
